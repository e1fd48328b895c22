--- one day's late interest of an overdue row
INSERT INTO ChargeMast (ChargeID,TrxDate,BatchDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,ChargeAmt,ChargeDesc,UserID,DateCreated,PType,OrgAmt) VALUES ('AB0012-001-1-B20240201','2024-02-01','2024-02-01','AB0012-001','AB0012','AB','2024-01-31',983.33,0,0.48,'Late Interest','BATCH','2024-02-01 01:00:00','Batch',0)
;;
--- charges of a loan other than the daily ones
SELECT ChargeID,TrxDate,ChargeAmt,ChargeDesc,PType,DueDate FROM ChargeMast where PType <> 'Batch' AND LoanID='AB0012-001'
;;
--- daily late charges of a loan summed by month
SELECT DATEPART(year,TrxDate) as [Year],DATEPART(month,TrxDate) as [Month],SUM(ChargeAmt) as ChargeAmt,'Late Interest' as ChargeDesc,PType,Max(DueDate) as DueDate from ChargeMast WHERE PType = 'Batch' and LoanID='AB0012-001' GROUP BY DATEPART(year,TrxDate),DATEPART(month,TrxDate),PType
;;
--- daily late charges of a loan between two dates for correction
SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt,OrgAmt FROM ChargeMast WHERE PType='Batch' AND TrxDate >= '2024-02-01' AND TrxDate <= '2024-02-29' AND LoanID='AB0012-001'
;;
--- payments entered after they fell due
SELECT p.PayID,p.DateCreated,PayDate,p.LoanID,(p.PayAmt+p.IntAmt-p.DiscAmt) as [Payment],p.LastDueDate, c.CustName,l.OldLoanCode + ' (' + l.Memo5 + ')' as [LotNo] FROM PaymentMast  as p INNER JOIN CustMast as c on p.CustID=c.CustID INNER JOIN LoanMast as l on p.LoanID=l.LoanID WHERE p.DateCreated >= '2024-02-01' AND p.DateCreated <= '2024-02-29 23:59:59' AND p.DateCreated > p.LastDueDate ORDER BY p.PayDate,p.LoanID
;;
--- accounts of invoices and credit notes that are not set up
SELECT COUNT(*) FROM LinkAccMast WHERE LinkID in ('ARINV','ARCN') AND LinkAccCode=''
;;
--- a changed invoice
UPDATE ChargeMast SET TrxDate='2024-02-01',ChargeAmt=60,ChargeDesc='Legal letter, 2nd',DueDate='2024-02-01',LateAmt=60,LateInt=0 WHERE ChargeID='INV0001'
;;
--- account of invoices
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='ARINV'
;;
--- account of credit notes
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='ARCN'
;;
--- a charge is deleted
DELETE FROM ChargeMast WHERE ChargeID='INV0001'
;;
--- what fell due between two dates, by customer
SELECT s.LoanID,s.DueDate,s.PayableAmt-s.Payment as [Balance],c.CustName,c.OldCode,l.LoanTypeID,l.OfferDays,l.LateChargePerDay,l.LoanBal,l.DragLoan,l.OldLoanCode,l.CompCode,l.CustID FROM (SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID) INNER JOIN CustMast as c on l.CustID=c.CustID WHERE s.DueDate >= '2024-01-01' AND s.DueDate <= '2024-01-31' AND l.Bank='CASH' AND l.LoanGroupID='PINJAMAN SEMASA' AND s.PayableAmt-s.Payment > 0 AND l.CompCode='AB' ORDER BY c.CustName
;;
--- what fell due up to a date, by loan
SELECT s.LoanID,s.DueDate,s.PayableAmt-s.Payment as [Balance],c.CustName,c.OldCode,l.LoanTypeID,l.OfferDays,l.LateChargePerDay,l.LoanBal,l.DragLoan,l.OldLoanCode,l.CompCode,l.CustID FROM (SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID) INNER JOIN CustMast as c on l.CustID=c.CustID WHERE s.DueDate <= '2024-01-31' AND s.PayableAmt-s.Payment > 0 AND l.CompCode='AB' ORDER BY l.LoanID
;;
--- what fell due at a bank up to a date, by old code
SELECT s.LoanID,s.DueDate,s.PayableAmt-s.Payment as [Balance],c.CustName,c.OldCode,l.LoanTypeID,l.OfferDays,l.LateChargePerDay,l.LoanBal,l.DragLoan,l.OldLoanCode,l.CompCode,l.CustID FROM (SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID) INNER JOIN CustMast as c on l.CustID=c.CustID WHERE s.DueDate <= '2024-01-31' AND l.Bank='PBB' AND s.PayableAmt-s.Payment > 0 AND l.CompCode='AB' ORDER BY l.OldLoanCode
;;
--- what fell due in a group between two dates, by due date
SELECT s.LoanID,s.DueDate,s.PayableAmt-s.Payment as [Balance],c.CustName,c.OldCode,l.LoanTypeID,l.OfferDays,l.LateChargePerDay,l.LoanBal,l.DragLoan,l.OldLoanCode,l.CompCode,l.CustID FROM (SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID) INNER JOIN CustMast as c on l.CustID=c.CustID WHERE s.DueDate >= '2024-01-01' AND s.DueDate <= '2024-01-31' AND l.LoanGroupID='PINJAMAN SEMASA' AND s.PayableAmt-s.Payment > 0 AND l.CompCode='AB' ORDER BY s.DueDate
;;
