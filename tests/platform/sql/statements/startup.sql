--- download address for the update menu entry
SELECT [Value] as url FROM Systemast WHERE PARAM='URL'
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
