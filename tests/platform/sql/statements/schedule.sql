--- all schedules are filled from their backups @alone
INSERT INTO SchMast SELECT SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,0,0,0,0,0,0,0,0,LoanBal,0,DueDate,FIntAmt FROM Schmast2
;;
