--- placeholders of a message
SELECT FieldID FROM SMSField
;;
--- instalments due between two dates, secured loans of a group
select s.loanid,sum(s.payableamt-s.payment) as DueAmt, sum(s.DragInt-s.DragIntPaid) as DueInt,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 from ((schmast as s inner join loanmast as l on l.loanid=s.loanid) inner join custmast as c on l.custid=c.custid) inner join CompMast as p on p.CompCode=l.CompCode where s.payableamt-s.payment > 0 and c.custHP1 <> '' and s.DueDate >= '2024-01-01' AND s.DueDate <= '2024-01-31' AND l.CompCode='AB' AND l.LoanGroupID='PINJAMAN SEMASA' AND l.LoanType='Collateral' group by s.loanid,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 order by s.loanid
;;
--- instalments due up to a date, all loans of a company
select s.loanid,sum(s.payableamt-s.payment) as DueAmt, sum(s.DragInt-s.DragIntPaid) as DueInt,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 from ((schmast as s inner join loanmast as l on l.loanid=s.loanid) inner join custmast as c on l.custid=c.custid) inner join CompMast as p on p.CompCode=l.CompCode where s.payableamt-s.payment > 0 and c.custHP1 <> '' and s.DueDate <= '2024-01-31' AND l.CompCode='AB' group by s.loanid,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 order by s.loanid
;;
--- instalments due up to a date, unsecured loans
select s.loanid,sum(s.payableamt-s.payment) as DueAmt, sum(s.DragInt-s.DragIntPaid) as DueInt,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 from ((schmast as s inner join loanmast as l on l.loanid=s.loanid) inner join custmast as c on l.custid=c.custid) inner join CompMast as p on p.CompCode=l.CompCode where s.payableamt-s.payment > 0 and c.custHP1 <> '' and s.DueDate <= '2024-01-31' AND l.CompCode='AB' AND l.LoanType='Non Collateral' group by s.loanid,c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,p.AreaCode,p.Tel1,p.HP1 order by s.loanid
;;
--- customers who settled all loans
SELECT c.CustID,p.AreaCode,c.CustName,c.custHP1,c.DOB,p.Tel1,p.HP1,l.CompCode FROM CustMast as c inner join CompMast as p on p.CompCode=c.CompCode INNER JOIN LoanMast as l on l.CustID=c.CustID WHERE c.CustStatus='ACTIVE' AND c.TotLoanBal=0 AND c.TotLoan <> 0  AND l.CompCode='AB'
;;
--- customers of a status and race who were born in a month
SELECT l.CustID,p.AreaCode,l.CustName,l.CustHP1,l.DOB,p.Tel1,p.HP1,l.CompCode FROM CustMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1  AND l.CompCode='AB' AND l.CustStatus='ACTIVE' AND l.CustRace='CINA' AND DateName(month,DOB) = 'January'
;;
--- customers of a company
SELECT l.CustID,p.AreaCode,l.CustName,l.CustHP1,l.DOB,p.Tel1,p.HP1,l.CompCode FROM CustMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1  AND l.CompCode='AB'
;;
--- staff of a level
SELECT l.UserID,p.AreaCode,l.UserName,l.UserHP1,l.UserLevel,p.Tel1,p.HP1,l.CompCode FROM UserMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1  AND l.CompCode='AB' AND l.UserLevel='Clerk'
;;
--- staff of a company
SELECT l.UserID,p.AreaCode,l.UserName,l.UserHP1,l.UserLevel,p.Tel1,p.HP1,l.CompCode FROM UserMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1  AND l.CompCode='AB'
;;
--- area of a company
SELECT AreaCode FROM CompMast WHERE CompCode='AB'
;;
--- telephone of a company
SELECT Tel1 FROM CompMast WHERE CompCode='AB'
;;
--- mobile number of a company
SELECT HP1 FROM CompMast WHERE CompCode='AB'
;;
--- messages that failed @conn=smsconn
SELECT l.SMSID,l.CustID,l.CustName,l.LoanID,l.CompCode,l.HP,l.SMSMsg,l.SMSStatus,l.UserID,l.DateSent FROM SMSList as l WHERE l.SMSStatus='FAIL' 
;;
--- a message enters the queue @conn=smsconn
INSERT INTO SMSList (CustID,CustName,LoanID,CompCode,HP,SMSMsg,SMSStatus,SMSLog,UserID,DateCreated) VALUES ('AB0012','O''Brien','AB0012-001','AB','60123456789','Dear O''Brien, RM983.33 is due on 31-01-2024; thank you','READY','','CLERK1','2024-01-31 14:05:09')
;;
--- a failed message goes again @conn=smsconn
UPDATE SMSList SET SMSStatus='READY' WHERE SMSID=1
;;
--- a new template
INSERT INTO SMSMast (TID,TrxDate,TName,SMSContent,UserID,DateCreated) VALUES ('S-0001','2024-01-31','Due','Dear {Customer Name}, RM{Due Amt} is due on {Due Date}','CLERK1','2024-01-31 14:05:09')
;;
--- a changed template
UPDATE SMSMast SET TName='Due',SMSContent='{Customer Name}: RM{Due Amt} on {Due Date}. {Company Tel}' WHERE TID='S-0001'
;;
--- one template
SELECT TID,TName,SMSContent FROM SMSMast WHERE TID='S-0001'
;;
--- a template is deleted
DELETE FROM SMSMast WHERE TID='S-0001'
;;
--- the last message of the queue @conn=smsconn
SELECT MAX(SMSID) FROM SMSList
;;
--- what was queued today already @conn=smsconn
SELECT SMSID,HP,SMSMsg FROM SMSList WHERE SMSID <= 7 AND DateCreated >= '2024-01-31' AND SMSStatus <> 'FAIL'
;;
--- what another desktop queued meanwhile @conn=smsconn
SELECT SMSID,HP,SMSMsg FROM SMSList WHERE SMSID > 7
;;
--- a message that may have been sent again meanwhile @conn=smsconn
SELECT SMSStatus FROM SMSList WHERE SMSID=1
;;
--- failed messages of a company @conn=smsconn
SELECT l.SMSID,l.CustID,l.CustName,l.LoanID,l.CompCode,l.HP,l.SMSMsg,l.SMSStatus,l.UserID,l.DateSent FROM SMSList as l WHERE l.SMSStatus='FAIL'  AND l.CompCode='AB'
;;
--- customers registered between two dates
SELECT l.CustID,p.AreaCode,l.CustName,l.CustHP1,l.DOB,p.Tel1,p.HP1,l.CompCode FROM CustMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1  AND l.CompCode='AB' AND l.TrxDate >= '2024-01-01' AND l.TrxDate < '2024-02-01'
