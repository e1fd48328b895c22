--- drawdowns of a loan
SELECT SID,TrxDate,DrawDownAmt,UserID,Payee,Remarks FROM DrawDownMast WHERE LoanID='AB0012-001' ORDER BY TrxDate
;;
--- sum of the drawdowns of a loan
SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID='AB0012-001'
;;
--- one drawdown
SELECT LoanID,TrxDate,DrawDownAmt,Bank,ChqNo,Remarks,Payee FROM DrawDownMast WHERE SID='DL0001'
;;
--- loan of a new drawdown
SELECT l.CustID,l.LoanAmt,l.TrxDate,l.TotPay,l.CompCode,l.DragLoan,c.CustName,l.StampingDate FROM LoanMast as l inner join CustMast as c on l.CustID=c.CustID WHERE l.LoanID='AB0012-001'
;;
--- sum of the other drawdowns of a loan
SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID='AB0012-001' AND SID <> 'DL0001'
;;
--- a new drawdown
INSERT INTO DrawDownMast (SID,LoanID,CustID,TrxDate,CompCode,DrawDownAmt,Payee,Bank,ChqNo,Remarks,UserID,DateCreated) VALUES ('DL0001','AB0012-001','AB0012','2024-01-31','AB',10000.00,'Tan Ah Kow','CASH','','','CLERK1','2024-01-31 14:05:09')
;;
--- a changed drawdown
UPDATE DrawDownMast SET TrxDate='2024-01-31',DrawDownAmt=9500.5,Payee='Tan Ah Kow',Bank='PBB',ChqNo='000123',Remarks='2nd release' WHERE SID='DL0001'
;;
--- paid-out amount of the loan
UPDATE LoanMast SET PayOutAmt=(SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID='AB0012-001') WHERE LoanID='AB0012-001'
;;
--- last drawdown date of the loan
UPDATE LoanMast SET LastDownDate=(SELECT MAX(TrxDate) FROM DrawDownMast WHERE LoanID='AB0012-001') WHERE LoanID='AB0012-001'
;;
--- account of a personal loan
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='HP'
;;
--- account of a flexi loan
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='TL'
;;
--- a drawdown is deleted
DELETE FROM DrawDownMast WHERE SID='DL0001'
;;
--- paid-out amount of a loan without drawdowns goes back to zero
UPDATE LoanMast SET PayOutAmt=0 WHERE PayOutAmt is null and LoanID='AB0012-001'
