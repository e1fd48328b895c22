--- the six identifiers of the direct debit file
SELECT [Value] FROM Systemast WHERE Param like 'DD-%' ORDER BY Param
;;
--- instalments due for direct debit, one line a loan
SELECT LoanID,MAX(DueDate) as [DueDate],CustName,OldLoanCode,Memo5,MAX(Amt) as [Amt],BankAccNo,BankTransferName FROM (SELECT s.LoanID,s.DueDate,c.CustName,c.BankAccNo,c.BankTransferName,l.OldLoanCode,l.Memo5,s.PayableAmt-s.Payment as [Amt] FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE s.PayableAmt-s.Payment > 0 and s.DueDate <= '2024-01-31') as aa GROUP BY LoanID,CustName,OldLoanCode,Memo5,BankAccNo,BankTransferName
;;
--- identifiers of the direct debit file are replaced: old ones go
DELETE FROM Systemast WHERE Param like 'DD-%'
;;
