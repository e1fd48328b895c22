--- old schedule of a loan goes
Delete From SchMast where LoanID='AB0021-001'
;;
--- last instalment of a flexi loan
UPDATE LoanMast SET LastPayment=888.88 WHERE LoanID='AB0021-001'
;;
--- first row of a schedule
Insert into SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,IntChargeAmt,IntAmt,Payment,CapitalPayment,InterestPayment,DragInt,DragIntPaid,LateInt,LoanBal,PayExtra,IntDate,FIntAmt) Values (1,'AB0021-001','AB0021','2024-01-31',983.33,833.33,150,0,0,0,0,0,0,0,0,11800.00,0,'2024-01-31',276.92)
;;
--- row of a schedule whose instalment lies below the interest
Insert into SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,IntChargeAmt,IntAmt,Payment,CapitalPayment,InterestPayment,DragInt,DragIntPaid,LateInt,LoanBal,PayExtra,IntDate,FIntAmt) Values (2,'AB0021-001','AB0021','2024-02-29',100,-12.5,112.5,0,0,0,0,0,0,0,0,11800.00,0,'2024-02-29',253.85)
;;
--- whole interest of a loan
UPDATE LoanMast SET TotLoanInt=1800 WHERE LoanID='AB0021-001'
;;
--- first due date of a loan
UPDATE LoanMast SET OrgDueDate='2024-01-31' WHERE LoanID='AB0021-001'
;;
--- schedule is backed up, one batch
DELETE FROM SchMast2 WHERE LoanID='AB0021-001';INSERT INTO SchMast2 SELECT SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal,FIntAmt FROM Schmast where LoanID='AB0021-001'
;;
--- planned payments of a loan go
DELETE FROM PaymentList WHERE LoanID='AB0021-001'
;;
--- planned payments of a loan are made from its schedule
INSERT INTO PaymentList (LoanID,SeqNo,DueDate,PayDate,PayAmt,PayID,DateCreated,UserID) SELECT LoanID,SchID,DueDate,duedate,payableamt,'',null,'' from schmast where loanid='AB0021-001'
;;
--- figures of a schedule are taken back from its backup
UPDATE SchMast SET Schmast.PayableAmt=Schmast2.PayableAmt,Schmast.CapitalAmt=SchMast2.CapitalAmt,SchMast.InterestAmt=SchMast2.InterestAmt,SchMast.LoanBal=SchMast2.LoanBal,SchMast.FIntAmt=SchMast2.FIntAmt FROM SchMast INNER JOIN SchMast2 ON SchMast.LoanID=SchMast2.LoanID and SchMast.SchID=SchMast2.SchID WHERE SchMast.LoanID='AB0021-001'
;;
--- hand-edited row of a schedule
UPDATE SchMast SET PayableAmt=990.00,CapitalAmt= 840.00 WHERE LoanID='AB0021-001' and SchID=1
;;
--- schedule goes before its backup comes in its place
Delete From SchMast where LoanID='AB0021-001'
;;
--- schedule of one loan is filled from its backup
INSERT INTO SchMast SELECT SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,0,0,0,0,0,0,0,0,LoanBal,0,DueDate,FIntAmt FROM Schmast2 where LoanID='AB0021-001'
;;
--- schedule goes again
Delete From SchMast where LoanID='AB0021-001'
;;
--- all schedules are filled from their backups @alone
INSERT INTO SchMast SELECT SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,0,0,0,0,0,0,0,0,LoanBal,0,DueDate,FIntAmt FROM Schmast2
