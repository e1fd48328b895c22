--- loan of a bank line
SELECT l.LoanID,c.CustID,c.CustName FROM LoanMast as l inner join CustMast as c on l.CustID=c.CustID WHERE l.LoanID='AB0012-001'
;;
--- what was noted on a bank line before
SELECT Remarks FROM PaymentReader WHERE RefNo='PBB240131.txt-001'
;;
--- payment that a bank line became before
SELECT PayID FROM PaymentReader WHERE RefNo='PBB240131.txt-001'
;;
--- trouble that a bank line had before
SELECT ErrMsg FROM PaymentReader WHERE RefNo='PBB240131.txt-001'
;;
--- planned payments due up to a date
SELECT p.LoanID,p.SeqNo,p.DueDate,p.PayDate,p.PayAmt,p.PayID,l.CompCode,c.CustID,c.CustName FROM PaymentList as p INNER JOIN LoanMast as l on p.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE p.PayDate <= '2024-01-31' AND p.PayID='' ORDER BY p.PayDate,p.LoanID
;;
--- open instalments of current loans up to a date
SELECT l.LoanID,l.CompCode,l.TrxDate,c.CustName,l.LoanAmt,l.LoanBal,l.LoanTerm,l.FirstPayment,s.SchID,s.DueDate,PayableAmt-Payment as [Payment] FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.loanGroupID='PINJAMAN SEMASA'  AND s.DueDate <= '2024-01-31' AND l.LoanBal > 0 and s.PayableAmt - s.Payment > 0  ORDER BY l.CompCode,l.LoanID,s.DueDate
;;
--- first and next due row of a loan
Select TOP 2 SchID,DueDate,PayableAmt-Payment as [PayableAmt] from SchMast where LoanID='AB0012-001' AND PayableAmt-Payment > 0 ORDER BY SchID
;;
--- loan that a bank line pays
Select CustID,LoanAmt,LoanBal,CompCode,PayOutAmt from LoanMast where LoanID='AB0012-001'
;;
--- a bank line becomes a payment
Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,TopUpAmt,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,Memo5,OldLoanBal,NewLoanBal,CollectorAmt,DeletePayID,UserID,settlement,CompCode,WithdrawDate,BankOpenBal,WithdrawAmt,RepaymentAmt,BankinReturn,BankCloseBal,TopTerm,TopAmt,DateCreated,InstalAmt,PayExtra,ReceiptNo,LampiranStatus) Values ('AB0026-001-001','AB0026-001','AB0026','1','2024-01-31','CASH',0,983.33,0,0,0,'CASH','','NIL',0,'2024-01-31','2024-02-29','ACTIVE',983.33,150.00,833.33,'','','',0,11800.00,10816.67,0,'','CLERK1','0','AB',null,0,0,0,0,0,0,0,'2024-01-31 14:05:09',983.33,0,'202401-0003','PINJAMAN SEMASA')
;;
--- result of a bank line
INSERT INTO PaymentReader (RefNo,Remarks,PayID,ErrMsg) VALUES ('PBB240131.txt-001','Payment Done','AB0026-001-001','')
;;
--- result of a bank line that was tried before
UPDATE PaymentReader SET Remarks='',PayID='',ErrMsg='Loan not fully drawdown' WHERE RefNo='PBB240131.txt-001'
;;
--- a planned payment is done
UPDATE PaymentList SET PayID='AB0026-001-001',DateCreated='2024-01-31 14:05:09',UserID='CLERK1' WHERE LoanID='AB0026-001' AND SeqNo=1
