--- loan by its old code in a company
SELECT LoanID FROM LoanMast WHERE OldLoanCode='L-77' AND CompCode='AB'
;;
--- loan that is to be paid
SELECT CustID,CompCode,LoanBal,LoanTypeID,OfferDays,IntType,FirstPayment,InstallmentAmt,LoanAmt,LoanAmt2,LateChargePerDay,LoanStatus,DragLoan,OldLoanCode,NextDueDate,InsRate,LoanTerm,oldloancode,Memo5,PayOutAmt,TotCollectorAmt,TotInt FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- cheques of a loan not yet taken
SELECT ChqNo FROM ChqMast WHERE LoanID='AB0012-001' AND PayID='' ORDER BY SeqNo
;;
--- schedule rows for the first open one
Select SchID, PayableAmt,Payment from SchMast where LoanID='AB0012-001' order by DueDate
;;
--- details of one schedule row
SELECT DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,IntDate FROM SchMast WHERE SchID=1 AND LoanID='AB0012-001'
;;
--- due date of the next schedule row
SELECT DueDate FROM SchMast WHERE SchID='2' AND LoanID='AB0012-001'
;;
--- payments of the loan so far
Select PayID,SchID,PayDate,PayAmt,IntAmt,Memo5,DiscAmt,TopUpAmt,NewLoanBal,Memo1,ChargeAmt,ReceiptNo,CapPay,IntPay from PaymentMast where LoanID = 'AB0012-001' order by PayID
;;
--- deposit of a loan
SELECT DepositAmt2 FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- deposit refunded by the other payments
SELECT SUM(ChargeAmt) FROM PaymentMast WHERE LoanID='AB0012-001' AND PayID <> 'AB0012-001-007'
;;
--- what a flexi loan still owes
SELECT SUM(CapitalAmt+InterestAmt) - SUM(CapitalPayment+InterestPayment) FROM SchMast WHERE LoanID='AB0012-001'
;;
--- a quoted cheque
SELECT ChqAmt,ChqBank,PayID FROM ChqMast WHERE LoanID='AB0012-001' AND ChqNo='000123'
;;
--- daily late charges made obsolete by an earlier payment date
SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt FROM ChargeMast WHERE PType='Batch' AND ChargeAmt > 0 AND TrxDate >'2024-02-05' AND TrxDate <= '2024-02-29' AND LoanID='AB0012-001'
;;
--- daily late charges made obsolete are waived
UPDATE ChargeMast SET OrgAmt=ChargeAmt,ChargeAmt=0 WHERE PType='Batch' AND ChargeAmt > 0 AND TrxDate >'2024-02-05' AND TrxDate <= '2024-02-29' AND LoanID='AB0012-001'
;;
--- account of payment discounts
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='PD'
;;
--- payment counter of a loan
Select LoanNo from NumberMast where CustID='AB0024-001'
;;
--- payment counter of a loan that lacks it
Insert into NumberMast values ('AB0024-001','002','001')
;;
--- payment counter of a loan is raised
Update NumberMast set LoanNo='003' where CustID='AB0024-001'
;;
--- a new payment
Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,TopUpAmt,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,Memo5,OldLoanBal,NewLoanBal,CollectorAmt,DeletePayID,UserID,settlement,CompCode,WithdrawDate,BankOpenBal,WithdrawAmt,RepaymentAmt,BankinReturn,BankCloseBal,TopTerm,TopAmt,DateCreated,InstalAmt,PayExtra,ReceiptNo,LampiranStatus) Values ('AB0024-001-001','AB0024-001','AB0024','1','2024-01-31','CHEQUE',0,983.33,0,0,0,'PBB','000123','NIL',25.00,'2024-01-31','2024-02-29','ACTIVE',983.33,150.00,833.33,'','','',0,11800.00,10816.67,0,'','CLERK1','0','AB',null,0,0,983.33,0,0,0,0,'2024-01-31 14:05:09',983.33,0,'202401-0001','PINJAMAN SEMASA')
;;
--- a new payment with its source of funds
Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,TopUpAmt,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,Memo5,OldLoanBal,NewLoanBal,CollectorAmt,DeletePayID,UserID,settlement,CompCode,WithdrawDate,BankOpenBal,WithdrawAmt,RepaymentAmt,BankinReturn,BankCloseBal,TopTerm,TopAmt,DateCreated,InstalAmt,PayExtra,ReceiptNo,LampiranStatus,AMLACode,AMLADesc,AMLAID) Values ('AB0024-001-002','AB0024-001','AB0024','1','2024-01-31','CHEQUE',0,983.33,0,0,0,'PBB','000123','NIL',25.00,'2024-01-31','2024-02-29','ACTIVE',983.33,150.00,833.33,'','','',0,11800.00,10816.67,0,'','CLERK1','0','AB',null,0,0,983.33,0,0,0,0,'2024-01-31 14:05:09',983.33,0,'202401-0002','PINJAMAN SEMASA','Salary','','')
;;
--- another payment with the same receipt number
SELECT PayID FROM PaymentMast WHERE CompCode='AB' AND PayID <> 'AB0024-001-001' AND ReceiptNo='202401-0001'
;;
--- a changed payment
Update PaymentMast set LoanID='AB0024-001',CustID='AB0024',SchID='1',PayDate='2024-01-31',CollectInfoID='CHEQUE',TopUpAmt=0,PayAmt=983.33,IntAmt=0,ChargeAmt=0,DiscAmt=0,Bank='PBB',ChqNo='000123',SalesmanID='NIL',LastDueDate='2024-01-31',NextDueDate='2024-02-29',PaymentStatus='ACTIVE',PayableAmt=983.33,IntChargeAmt=150.00,DragInt=833.33,Memo1='',Memo2='',Memo3='',Memo5=0,OldLoanBal=11800.00,NewLoanBal=10816.67,CollectorAmt=0,DeletePayID='0',settlement='0',CompCode='AB',WithdrawDate=null,BankOpenBal=0,WithdrawAmt=0,BankinReturn=0,BankCloseBal=0,TopTerm=0,TopAmt=0,InstalAmt=983.33,PayExtra=0,ReceiptNo='202401-0001',LampiranStatus='PINJAMAN SEMASA' Where PayID='AB0024-001-001'
;;
--- a changed payment with its source of funds
Update PaymentMast set LoanID='AB0024-001',CustID='AB0024',SchID='1',PayDate='2024-01-31',CollectInfoID='CHEQUE',TopUpAmt=0,PayAmt=983.33,IntAmt=0,ChargeAmt=0,DiscAmt=0,Bank='PBB',ChqNo='000123',SalesmanID='NIL',LastDueDate='2024-01-31',NextDueDate='2024-02-29',PaymentStatus='ACTIVE',PayableAmt=983.33,IntChargeAmt=150.00,DragInt=833.33,Memo1='',Memo2='',Memo3='',Memo5=0,OldLoanBal=11800.00,NewLoanBal=10816.67,CollectorAmt=0,DeletePayID='0',settlement='0',CompCode='AB',WithdrawDate=null,BankOpenBal=0,WithdrawAmt=0,BankinReturn=0,BankCloseBal=0,TopTerm=0,TopAmt=0,InstalAmt=983.33,PayExtra=0,ReceiptNo='202401-0002',LampiranStatus='PINJAMAN SEMASA',AMLACode='Salary',AMLADesc='',AMLAID='' Where PayID='AB0024-001-002'
;;
--- a payment frees its old cheque and takes the quoted one, one batch
UPDATE ChqMast SET PayID='',PayDate=null WHERE PayID='AB0024-001-001';Update ChqMast set PayID='AB0024-001-001',PayDate='2024-01-31' WHERE LoanID='AB0024-001' AND ChqNo='000123'
;;
--- a payment is deleted
DELETE FROM PaymentMast WHERE PayID='AB0024-001-002'
;;
--- a deleted payment frees its cheque
UPDATE ChqMast SET PayID='',PayDate=null WHERE LoanID='AB0024-001' AND ChqNo='000123'
;;
--- commission paid to a salesman
SELECT TotPayComm FROM SalesmanMast WHERE SalesmanID='NIL'
;;
--- commission of a deleted payment is taken back
UPDATE SalesmanMast SET TotPayComm=-25.00 WHERE SalesmanID='NIL'
;;
--- loan's totals before a payment is taken back
Select TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt,LoanBal,TopUpAmt from LoanMast where LoanID='AB0024-001'
;;
--- loan's totals after a payment is taken back
Update LoanMast set TotPay=0,LoanBal=11800.00,TotInt=0,TotCollectorAmt=0,TotCharge=0,TotDiscAmt=0,TopUpAmt=0 Where LoanID='AB0024-001'
;;
--- schedule row before a payment is taken back
Select Payment,IntChargeAmt,DragInt,DragIntPaid,IntAmt,PayableAmt from SchMast where LoanID='AB0024-001' and SchID=1
;;
--- schedule row after a payment is taken back
Update SchMast set Payment=0,IntChargeAmt=-150.00,DragInt=-833.33,DragIntPaid=0,IntAmt=0,PayableAmt=983.33 where LoanID='AB0024-001' and SchID=1
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
--- customer's totals before a payment is taken back
Select TotLoanBal,TotTopUpAmt from CustMast where CustID='AB0024'
;;
--- customer's totals after a payment is taken back
Update CustMast set TotLoanBal=11800.00,TotTopUpAmt=0 where CustID='AB0024'
;;
--- commission paid to a salesman, read again
Select TotPayComm from SalesmanMast where SalesmanID='NIL'
;;
--- next payment
SELECT TOP 1 PayID FROM PaymentMast WHERE PayID > 'AB0024-001-001' ORDER BY PayID ASC
;;
--- previous payment
SELECT TOP 1 PayID FROM PaymentMast WHERE PayID < 'AB0024-001-001' ORDER BY PayID DESC
;;
--- one payment
SELECT * FROM PaymentMast WHERE PayID='AB0024-001-001'
