--- number of a new calculation
SELECT * FROM NumberMast WHERE CustID='#LC-'
;;
--- rows of an earlier try go
DELETE FROM SchMast2 WHERE LoanID='LC-0001'
;;
--- one row of a calculation
Insert into SchMast2 (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal) Values (1,'LC-0001','','2024-01-31',983.33,706.41,276.92,11800.00)
;;
--- rows of a calculation
SELECT * FROM SchMast2 WHERE LoanID='LC-0001' ORDER BY DueDate
;;
--- the screen closes
DELETE FROM SchMast2 WHERE LoanID='LC-0001'
