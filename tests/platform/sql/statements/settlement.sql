--- one settlement
SELECT a.PayID,a.PayDate,a.LoanID,a.CustID,a.PayAmt,a.DiscAmt,a.SchID,a.NextDueDate,b.TrxDate,b.TotPay,b.LoanAmt,b.LoanTerm,b.LoanTypeID,c.CustName,c.CustNIC,a.IntAmt,a.CompCode FROM (PaymentMast as a INNER JOIN LoanMast as b on a.LoanID=b.LoanID) INNER JOIN CustMast as c on a.CustID=c.CustID WHERE a.PayID='AB0025-001-001' and a.Settlement='1'
;;
--- loan's totals after a settlement is taken back
UPDATE LoanMast SET TotPay=0,TotInt=0,TotCollectorAmt=0,TotCharge=0,TotDiscAmt=0,NextDueDate='2024-06-30',LoanBal=11800.00,LastPaymentNo='',LastPaymentDate=null WHERE LoanID='AB0025-001'
;;
