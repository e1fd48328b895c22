--- a loan is closed
UPDATE LoanMast SET LoanStatus='CLOSED',CloseBal=LoanBal,LoanBal=0 WHERE LoanID='AB0023-001'
;;
--- balance of a closed loan
SELECT CloseBal FROM LoanMast WHERE LoanID='AB0023-001'
;;
--- a closed loan is opened again
UPDATE LoanMast SET LoanStatus='ACTIVE',LoanBal=CloseBal, CloseBal=0 WHERE LoanID='AB0023-001'
;;
--- payments of a loan that is to be deleted
Select PayID from PaymentMast where LoanID='AB0023-001'
;;
--- a deleted loan's payments go
Delete from PaymentMast where LoanID='AB0023-001'
;;
--- a deleted loan's row goes
DELETE FROM LoanMast WHERE LoanID='AB0023-001'
;;
--- a deleted loan's charges go
DELETE FROM ChargeMast WHERE LoanID='AB0023-001'
;;
--- a deleted loan's planned payments go
DELETE FROM PaymentList WHERE LoanID='AB0023-001'
;;
--- a deleted loan's drawdowns go
DELETE FROM DrawDownMast WHERE LoanID='AB0023-001'
;;
--- a deleted loan's cheques go
Delete from ChqMast where LoanID = 'AB0023-001'
;;
--- a deleted loan's calls go
Delete from FollowUpMast where LoanID = 'AB0023-001'
;;
--- a deleted loan's payment counter goes
DELETE FROM NumberMast WHERE CustID='AB0023-001'
;;
--- a deleted loan's schedule goes
Delete From SchMast where LoanID='AB0023-001'
;;
--- customer of a loan whose schedule is to be amended
Select CM.CustID, CM.CustName from LoanMast as LM inner join CustMast as CM on LM.CustID = CM.CustID where LoanID='AB0023-002'
;;
--- payments of a loan whose schedule is to be amended
SELECT PayID FROM PaymentMast WHERE LoanID='AB0023-002'
;;
--- schedule that is to be amended
Select * from SchMast where LoanID='AB0023-002' order by DueDate
;;
--- balance before the amendment
Select LoanBal from LoanMast where LoanID = 'AB0023-002'
;;
--- schedule before the amendment goes
Delete from SchMast where LoanID = 'AB0023-002'
;;
--- one amended row, most columns left to their defaults
INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,IntChargeAmt,IntAmt,Payment,DragInt,DragIntPaid) VALUES (1,'AB0023-002','AB0023','2024-02-15',1000.00,0,0,0,0,0)
;;
--- interest of the old row goes onto the amended one
UPDATE SchMast SET InterestAmt=150.00,FIntAmt=276.92,CapitalAmt=PayableAmt-150.00,LoanBal=11800.00,IntDate=DueDate WHERE LoanID='AB0023-002' AND SchID=1
;;
--- balance after the amendment
UPDATE LoanMast SET LoanBal=11800.00,SchChanged='1' WHERE LoanID='AB0023-002'
;;
--- customer's balance before the amendment
SELECT TotLoanBal FROM CustMast WHERE CustID='AB0023'
;;
--- customer's balance after the amendment
UPDATE CustMast SET TotLoanBal=11800.00 WHERE CustID='AB0023'
;;
--- loan whose due dates are to be moved
SELECT a.CompCode,b.CustName,a.LoanTerm,a.LoanTypeID FROM LoanMast as a inner join CustMast as b on a.CustID=b.CustID WHERE a.LoanID='AB0023-002'
;;
--- rows whose due dates are to be moved, name of a column as a text
SELECT SchID,DueDate,PayableAmt,Payment,PayableAmt-Payment as 'Balance' FROM SchMast WHERE LoanID='AB0023-002' ORDER BY SchID
;;
--- one moved due date
UPDATE SchMast SET DueDate='2024-03-15' WHERE LoanID='AB0023-002' AND SchID=1
;;
--- next due date and next call of a moved loan
UPDATE LoanMast SET NextDueDate='2024-03-15',NextCall='2024-03-15' WHERE LoanID='AB0023-002'
;;
--- a deleted loan leaves its application
UPDATE AppMast SET LoanID='' WHERE LoanID='AB0023-001'
