--- loan that is replayed
SELECT DragLoan,InsRate,InstallmentAmt2,CustID,CompCode,LateChargePerDay,SpecialSch,LoanGroupID FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- opening balance of a personal loan
SELECT SUM(PayableAmt),SUM(CapitalAmt) FROM SchMast WHERE LoanID='AB0012-001'
;;
--- opening balance of a flexi loan
SELECT LoanAmt FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- paid columns of the schedule are wiped
UPDATE SchMast SET Payment=0,CapitalPayment=0,InterestPayment=0,LoanBal=11800.00,PayExtra=0 WHERE LoanID='AB0012-001'
;;
--- paid late interest of the loan is wiped
DELETE FROM ChargeMast WHERE LoanID='AB0012-001' AND PType='Payment'
;;
--- figures of a special schedule are taken back from the backup
UPDATE SchMast SET Schmast.PayableAmt=Schmast2.PayableAmt,Schmast.CapitalAmt=SchMast2.CapitalAmt,SchMast.InterestAmt=SchMast2.InterestAmt,SchMast.LoanBal=SchMast2.LoanBal,SchMast.FIntAmt=SchMast2.FIntAmt FROM SchMast INNER JOIN SchMast2 ON SchMast.LoanID=SchMast2.LoanID and SchMast.SchID=SchMast2.SchID WHERE SchMast.LoanID='AB0012-001'
;;
--- schedule of a flexi loan
SELECT * FROM SchMast WHERE LoanID='AB0012-001' ORDER BY DueDate
;;
--- one row of a flexi loan is derived anew
UPDATE SchMast SET CapitalAmt=786.57,InterestAmt=101.92,PayableAmt=888.49,LoanBal=10000.00 WHERE LoanID='AB0012-001' AND SchID=1
;;
--- payments that are replayed
SELECT PayID,SchID,PayAmt,IntAmt,ChargeAmt,CollectorAmt,DiscAmt,PayDate,LastDueDate,TopUpAmt,TopTerm,TopAmt,NextDueDate,InstalAmt,PayExtra,UserID,DateCreated,Memo5 FROM PaymentMast WHERE LoanID='AB0012-001' ORDER BY PayID
;;
--- open rows of the schedule
SELECT * FROM SchMast WHERE LoanID='AB0012-001' AND Payment < PayableAmt ORDER BY DueDate
;;
--- a row is paid
UPDATE SchMast SET Payment=888.49,CapitalPayment=786.57,InterestPayment=101.92,LoanBal=9213.43 WHERE LoanID='AB0012-001' AND SchID=1
;;
--- rows ahead show the balance, number and row as quoted texts
UPDATE SchMast SET LoanBal='9213.43' WHERE LoanID='AB0012-001' AND SchID > '1'
;;
--- a row ahead is cut anew after extra capital
UPDATE SchMast SET CapitalAmt=800.65,InterestAmt=87.84,PayableAmt=888.49,LoanBal=8412.78,PayExtra=500.00 WHERE LoanID='AB0012-001' AND SchID=2
;;
--- late interest paid
INSERT INTO ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,ChargeAmt,ChargeDesc,UserID,DateCreated,PType) VALUES ('AB0012-001-001','2024-02-05','AB0012-001','AB0012','AB','2024-02-05',-12.4,0,-12.4,'Payment Received','CLERK1','2024-02-05 10:20:30','Payment')
;;
--- balances and split of a payment
UPDATE PaymentMast SET OldLoanBal=10000.00,NewLoanBal=9213.43,IntPay=101.92,CapPay=786.57 WHERE PayID='AB0012-001-001'
;;
--- next due date of a loan
SELECT DueDate FROM SchMast WHERE LoanID='AB0012-001' AND Payment < PayableAmt ORDER BY DueDate
;;
--- whole interest of a loan
SELECT SUM(InterestAmt) FROM SchMast WHERE LoanID='AB0012-001'
;;
--- totals of a loan with a payment, group kept in step
UPDATE LoanMast SET TotPay=888.49,TotInt=12.4,TotCharge=0,TotCollectorAmt=0,TotDiscAmt=0,LoanBal=9213.43,NextDueDate='2024-02-29',PayExtra=0,LastPaymentDate='2024-02-05',LastPaymentNo='AB0012-001-001',TotLoanInt='662.27',LoanGroupID='PINJAMAN SEMASA' WHERE LoanID='AB0012-001'
;;
--- totals of a loan with a payment, group left alone
UPDATE LoanMast SET TotPay=888.49,TotInt=12.4,TotCharge=0,TotCollectorAmt=0,TotDiscAmt=0,LoanBal=9213.43,NextDueDate='2024-02-29',PayExtra=0,LastPaymentDate='2024-02-05',LastPaymentNo='AB0012-001-001',TotLoanInt='662.27' WHERE LoanID='AB0012-001'
;;
--- totals of a fully paid loan, no next due date
UPDATE LoanMast SET TotPay=10662.27,TotInt=0,TotCharge=0,TotCollectorAmt=0,TotDiscAmt=0,LoanBal=0,PayExtra=0,LastPaymentDate='2024-12-31',LastPaymentNo='AB0012-001-012',TotLoanInt='662.27',LoanGroupID='PINJAMAN SELESAI' WHERE LoanID='AB0012-001'
;;
--- totals of a loan without payments
UPDATE LoanMast SET TotPay=0,TotInt=0,TotCharge=0,TotCollectorAmt=0,TotDiscAmt=0,LoanBal=11800.00,NextDueDate='2024-01-31',PayExtra=0,LastPaymentDate=null,LastPaymentNo='',TotLoanInt='0' WHERE LoanID='AB0012-001'
;;
--- what a loan was charged
UPDATE LoanMast SET TotCollectorAmt=(SELECT (CASE WHEN SUM(ChargeAmt) is null then 0 else SUM(ChargeAmt) END) FROM ChargeMast WHERE LoanMast.LoanID=ChargeMast.LoanID AND ChargeMast.ChargeAmt > 0 AND PType <> 'Batch Loan Interest') WHERE LoanID='AB0012-001'
;;
--- what a loan paid of its charges
UPDATE LoanMast SET TotInt=(SELECT (CASE WHEN SUM(ChargeAmt) is null then 0 else SUM(ChargeAmt) END) FROM ChargeMast WHERE LoanMast.LoanID=ChargeMast.LoanID AND ChargeMast.ChargeAmt < 0 AND PType <> 'Batch Loan Interest') WHERE LoanID='AB0012-001'
;;
--- whole interest of a loan from its schedule
UPDATE LoanMast SET TotLoanInt=(SELECT SUM(InterestAmt) FROM SchMast WHERE LoanMast.LoanID=SchMast.LoanID) WHERE LoanID='AB0012-001'
;;
--- payable amounts are capital and interest
UPDATE SchMast SET PayableAmt=CapitalAmt + InterestAmt WHERE LoanID='AB0012-001'
;;
--- totals of a customer's loans
SELECT SUM(LoanAmt) as tTotLoan, SUM(TopUpAmt) as tTopUp, SUM(LoanBal) as tLoanBal FROM LoanMast WHERE CustID='AB0012'
;;
--- totals of a customer
UPDATE CustMast SET TotLoan=10000.00,TotTopUpAmt=0,TotLoanBal=9213.43 WHERE CustID='AB0012'
