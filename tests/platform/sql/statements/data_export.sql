--- names of the stored statements
SELECT SID FROM DataExport ORDER BY SID
;;
--- whether a stored statement is there already
SELECT SID FROM DataExport WHERE SID='Loans by month'
;;
--- a new stored statement
INSERT INTO DataExport (SID,SQLStatement,FromDate,ToDate,ExportHeader) VALUES ('Loans by month','SELECT l.LoanID,c.CustName,l.TrxDate,l.LoanAmt FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.LoanGroupID<>''PINJAMAN SELESAI'' AND l.TrxDate >= @FromDate AND l.TrxDate <= @ToDate @gcc ORDER BY l.TrxDate','1','1','1')
;;
--- a changed stored statement
UPDATE DataExport SET SQLStatement='SELECT l.LoanID,l.TrxDate,l.LoanAmt FROM LoanMast as l WHERE l.TrxDate >= @FromDate AND l.TrxDate <= @ToDate @gcc ',FromDate='1',ToDate='1',ExportHeader='0' WHERE SID='Loans by month'
;;
--- one stored statement
SELECT * FROM DataExport WHERE SID='Loans by month'
;;
--- a stored statement runs for one company
SELECT l.LoanID,c.CustName,l.TrxDate,l.LoanAmt FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.LoanGroupID<>'PINJAMAN SELESAI' AND l.TrxDate >= '2024-01-01' AND l.TrxDate <= '2024-01-31'  and l.CompCode='AB'  ORDER BY l.TrxDate
;;
--- a stored statement runs for the allowed companies
SELECT l.LoanID,c.CustName,l.TrxDate,l.LoanAmt FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.LoanGroupID<>'PINJAMAN SELESAI' AND l.TrxDate >= '2024-01-01' AND l.TrxDate <= '2024-01-31'  and l.CompCode in ('AB','CD')  ORDER BY l.TrxDate
;;
--- statement of the regulator's upload @conn=AMLA
SELECT * FROM DataExport WHERE SID='IDEAL UPLOAD'
;;
--- a stored statement is deleted, no FROM
DELETE DataExport WHERE SID='Loans by month'
;;
