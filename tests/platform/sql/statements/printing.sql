--- whether a loan is secured
SELECT LoanType FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- customer of a loan
SELECT CustID FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- picture of a loan's customer
SELECT c.Pic1 FROM LoanMast as l inner join CustMast as c on l.CustID=c.CustID WHERE l.LoanID='AB0012-001'
;;
--- date of the first reminder
UPDATE LoanMast SET ReminderDate='2024-01-31' WHERE LoanID='AB0012-001'
;;
--- date of the second reminder
UPDATE LoanMast SET ReminderDate2='2024-01-31' WHERE LoanID='AB0012-001'
