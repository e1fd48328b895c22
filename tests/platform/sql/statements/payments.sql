--- due date of the next schedule row
SELECT DueDate FROM SchMast WHERE SchID='2' AND LoanID='AB0012-001'
;;
--- deposit of a loan
SELECT DepositAmt2 FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- deposit refunded by the other payments
SELECT SUM(ChargeAmt) FROM PaymentMast WHERE LoanID='AB0012-001' AND PayID <> 'AB0012-001-007'
;;
--- account of payment discounts
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='PD'
;;
--- a new payment
Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,TopUpAmt,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,Memo5,OldLoanBal,NewLoanBal,CollectorAmt,DeletePayID,UserID,settlement,CompCode,WithdrawDate,BankOpenBal,WithdrawAmt,RepaymentAmt,BankinReturn,BankCloseBal,TopTerm,TopAmt,DateCreated,InstalAmt,PayExtra,ReceiptNo,LampiranStatus) Values ('AB0024-001-001','AB0024-001','AB0024','1','2024-01-31','CHEQUE',0,983.33,0,0,0,'PBB','000123','NIL',25.00,'2024-01-31','2024-02-29','ACTIVE',983.33,150.00,833.33,'','','',0,11800.00,10816.67,0,'','CLERK1','0','AB',null,0,0,983.33,0,0,0,0,'2024-01-31 14:05:09',983.33,0,'202401-0001','PINJAMAN SEMASA')
;;
--- a changed payment
Update PaymentMast set LoanID='AB0024-001',CustID='AB0024',SchID='1',PayDate='2024-01-31',CollectInfoID='CHEQUE',TopUpAmt=0,PayAmt=983.33,IntAmt=0,ChargeAmt=0,DiscAmt=0,Bank='PBB',ChqNo='000123',SalesmanID='NIL',LastDueDate='2024-01-31',NextDueDate='2024-02-29',PaymentStatus='ACTIVE',PayableAmt=983.33,IntChargeAmt=150.00,DragInt=833.33,Memo1='',Memo2='',Memo3='',Memo5=0,OldLoanBal=11800.00,NewLoanBal=10816.67,CollectorAmt=0,DeletePayID='0',settlement='0',CompCode='AB',WithdrawDate=null,BankOpenBal=0,WithdrawAmt=0,BankinReturn=0,BankCloseBal=0,TopTerm=0,TopAmt=0,InstalAmt=983.33,PayExtra=0,ReceiptNo='202401-0001',LampiranStatus='PINJAMAN SEMASA' Where PayID='AB0024-001-001'
;;
--- schedule rows of a top-up
SELECT SchID,PayableAmt FROM SchMast WHERE LoanID='AB0024-001' AND SchID >=3 AND SCHID <=7 ORDER BY SchID
;;
--- a schedule row that only held the top-up goes
DELETE FROM SchMast WHERE LoanID='AB0024-001' AND SchID=7
;;
--- a schedule row loses the top-up
UPDATE SchMast SET PayableAmt=983.33 WHERE LoanID='AB0024-001' AND SchID=3
;;
--- next payment
SELECT TOP 1 PayID FROM PaymentMast WHERE PayID > 'AB0024-001-001' ORDER BY PayID ASC
;;
--- previous payment
SELECT TOP 1 PayID FROM PaymentMast WHERE PayID < 'AB0024-001-001' ORDER BY PayID DESC
;;
