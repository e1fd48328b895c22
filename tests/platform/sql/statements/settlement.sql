--- loan that is to be settled
SELECT l.LoanID,c.CustName,l.DragLoan,l.LoanAmt,l.TrxDate,l.InsRate,l.LoanTerm,l.InstallmentAmt,l.LastPayment,l.OldLoanCode,l.LoanBal,l.TotCollectorAmt,l.TotInt,l.NextDueDate FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.LoanId='AB0012-001'
;;
--- interest of a personal loan not yet due
SELECT SUM(InterestAmt-InterestPayment) FROM SchMast WHERE LoanID='AB0012-001' And DueDate > '2024-06-30'
;;
--- interest and capital of a flexi loan due by a date
SELECT SUM((InterestAmt)-(InterestPayment)),SUM((CapitalAmt)-(CapitalPayment)) FROM SchMast WHERE LoanID='AB0012-001' And DueDate <= '2024-06-30'
;;
--- first open row of a loan that is settled
SELECT SchID from SchMast WHERE LoanID='AB0025-001' and PayableAmt <> Payment ORDER BY SchID
;;
--- a settlement payment
Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,OldLoanBal,NewLoanBal,CollectorAmt,DeletePayID,UserID,settlement,CompCode,TopUpAmt,BankOpenBal,WithdrawAmt,RepaymentAmt,BankinReturn,BankCloseBal) Values ('AB0025-001-001','AB0025-001','AB0025',1,'2024-06-30','CASH',11800.00,0,0,200.00,'CASH','','NIL',0,'2024-06-30','2024-07-31','ACTIVE',983.33,150.00,833.33,'','','',11800.00,0,0,'','CLERK1','1','AB',0,0,0,0,0,0)
;;
--- one open row before the settlement
SELECT PayableAmt,DragInt,IntChargeAmt,IntAmt,DragIntPaid FROM SchMast WHERE SchID=1 AND LoanID='AB0025-001'
;;
--- one open row is marked as paid
UPDATE SchMast SET Payment=983.33,DragInt=0,IntChargeAmt=0,IntAmt=0,DragIntPaid=0 WHERE SchID=1 AND LoanID='AB0025-001'
;;
--- loan's totals before the settlement
SELECT TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt FROM LoanMast WHERE LoanID='AB0025-001'
;;
--- loan's totals after the settlement
UPDATE LoanMast SET TotPay=11800.00,TotInt=0,TotCollectorAmt=0,TotCharge=0,TotDiscAmt=200.00,LoanBal=0,NextDueDate='2024-07-31',LastPaymentNo='AB0025-001-001',LastPaymentDate='2024-06-30' WHERE LoanID='AB0025-001'
;;
--- customer's balance before the settlement
SELECT TotLoanBal FROM CustMast WHERE CustID='AB0025'
;;
--- customer's balance after the settlement
UPDATE CustMast SET TotLoanBal=0 WHERE CustID='AB0025'
;;
--- one settlement
SELECT a.PayID,a.PayDate,a.LoanID,a.CustID,a.PayAmt,a.DiscAmt,a.SchID,a.NextDueDate,b.TrxDate,b.TotPay,b.LoanAmt,b.LoanTerm,b.LoanTypeID,c.CustName,c.CustNIC,a.IntAmt,a.CompCode FROM (PaymentMast as a INNER JOIN LoanMast as b on a.LoanID=b.LoanID) INNER JOIN CustMast as c on a.CustID=c.CustID WHERE a.PayID='AB0025-001-001' and a.Settlement='1'
;;
--- a settlement is deleted
DELETE FROM PaymentMast WHERE PayID='AB0025-001-001'
;;
--- payment counter after a deleted settlement
Update NumberMast set LoanNo='001' where CustID='AB0025-001'
;;
--- rows that a deleted settlement had paid
SELECT SchID from SchMast WHERE LoanID='AB0025-001' and SchID>=1 ORDER BY SchID DESC
;;
--- one row that a deleted settlement had paid
SELECT Payment,DragInt,IntChargeAmt,IntAmt,DragIntPaid FROM SchMast WHERE SchID=1 AND LoanID='AB0025-001'
;;
--- one row is open again
UPDATE SchMast SET Payment=0,DragInt=833.33,IntChargeAmt=150.00,IntAmt=0,DragIntPaid=0 WHERE SchID=1 AND LoanID='AB0025-001'
;;
--- loan's totals before a settlement is taken back
SELECT TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt,LoanBal FROM LoanMast WHERE LoanID='AB0025-001'
;;
--- loan's totals after a settlement is taken back
UPDATE LoanMast SET TotPay=0,TotInt=0,TotCollectorAmt=0,TotCharge=0,TotDiscAmt=0,NextDueDate='2024-06-30',LoanBal=11800.00,LastPaymentNo='',LastPaymentDate=null WHERE LoanID='AB0025-001'
