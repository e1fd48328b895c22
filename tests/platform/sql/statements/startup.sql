--- server's clock, "today" of the whole system
SELECT GETDATE()
;;
--- slogan shown on the main window
SELECT [Value] FROM Systemast WHERE Param='TestMode'
;;
--- connection text of the card reader's data source
SELECT Value FROM Systemast WHERE Param='MyKadDatabase'
;;
--- stored client version
SELECT Value FROM Systemast WHERE Param='VERSION'
;;
--- raising the stored client version
UPDATE Systemast SET [Value]='1.10.2' WHERE Param='VERSION'
;;
--- download address of a newer client
SELECT Value FROM Systemast WHERE Param='URL'
;;
--- download address for the update menu entry
SELECT [Value] as url FROM Systemast WHERE PARAM='URL'
;;
--- storing a new slogan
UPDATE Systemast SET [Value]='Kira dulu, pinjam kemudian: it''s your money' WHERE Param='TestMode'
;;
--- whether a table is there
SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE='BASE TABLE' and table_name = 'HolidayMast'
;;
--- company name of the deployment
SELECT CompanyName FROM CompanyProfile
;;
--- today's due list, loans only, all companies
SELECT l.LoanID,l.NextDueDate,c.CustName,c.CustHP1,0 as TotDue,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID  AND l.NextDueDate<='2024-01-31' AND l.LoanBal > 0
;;
--- today's due list, unpaid instalments only, all companies
select l.loanid,l.NextDueDate,c.CustName,c.CustHP1,sum(payableamt-payment) as [TotDue],l.LoanGroupID from schmast as s inner join Loanmast as l on s.loanid=l.loanid inner join custmast as c on l.custid=c.custid where s.DueDate<='2024-01-31' and s.payableamt-s.payment > 0 group by l.Loanid,l.NextDueDate,c.CustName,c.CustHP1,l.LoanGroupID
;;
--- today's due list, all companies
select distinct(a.LoanID),a.nextduedate,a.custname,a.custhp1,sum(a.TotDue),a.LoanGroupID from (SELECT l.LoanID,l.NextDueDate,c.CustName,c.CustHP1,0 as TotDue,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID  AND l.NextDueDate<='2024-01-31' AND l.LoanBal > 0 union select l.loanid,l.NextDueDate,c.CustName,c.CustHP1,sum(payableamt-payment) as [TotDue],l.LoanGroupID from schmast as s inner join Loanmast as l on s.loanid=l.loanid inner join custmast as c on l.custid=c.custid where s.DueDate<='2024-01-31' and s.payableamt-s.payment > 0 group by l.Loanid,l.NextDueDate,c.CustName,c.CustHP1,l.LoanGroupID) as a group by a.LoanID,a.nextduedate,a.custname,a.custhp1,a.LoanGroupID
;;
--- today's due list, home company only
select distinct(a.LoanID),a.nextduedate,a.custname,a.custhp1,sum(a.TotDue),a.LoanGroupID from (SELECT l.LoanID,l.NextDueDate,c.CustName,c.CustHP1,0 as TotDue,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.CompCode='AB'  AND l.NextDueDate<='2024-01-31' AND l.LoanBal > 0 union select l.loanid,l.NextDueDate,c.CustName,c.CustHP1,sum(payableamt-payment) as [TotDue],l.LoanGroupID from schmast as s inner join Loanmast as l on s.loanid=l.loanid inner join custmast as c on l.custid=c.custid where s.DueDate<='2024-01-31' and s.payableamt-s.payment > 0 AND l.CompCode='AB' group by l.Loanid,l.NextDueDate,c.CustName,c.CustHP1,l.LoanGroupID) as a group by a.LoanID,a.nextduedate,a.custname,a.custhp1,a.LoanGroupID
;;
--- today's due list, the companies allowed to the user
select distinct(a.LoanID),a.nextduedate,a.custname,a.custhp1,sum(a.TotDue),a.LoanGroupID from (SELECT l.LoanID,l.NextDueDate,c.CustName,c.CustHP1,0 as TotDue,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.CompCode in ('AB','CD')  AND l.NextDueDate<='2024-01-31' AND l.LoanBal > 0 union select l.loanid,l.NextDueDate,c.CustName,c.CustHP1,sum(payableamt-payment) as [TotDue],l.LoanGroupID from schmast as s inner join Loanmast as l on s.loanid=l.loanid inner join custmast as c on l.custid=c.custid where s.DueDate<='2024-01-31' and s.payableamt-s.payment > 0 AND l.CompCode in ('AB','CD') group by l.Loanid,l.NextDueDate,c.CustName,c.CustHP1,l.LoanGroupID) as a group by a.LoanID,a.nextduedate,a.custname,a.custhp1,a.LoanGroupID
;;
--- loans without a stamp number, all companies
SELECT l.LoanID,l.TrxDate,c.CustName,LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID  AND l.AgreementNo='' order by l.TrxDate
;;
--- loans without a stamp number, home company only
SELECT l.LoanID,l.TrxDate,c.CustName,LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.CompCode='AB'  AND l.AgreementNo='' order by l.TrxDate
;;
--- loans without a stamp number, the companies allowed to the user
SELECT l.LoanID,l.TrxDate,c.CustName,LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.CompCode in ('AB','CD')  AND l.AgreementNo='' order by l.TrxDate
