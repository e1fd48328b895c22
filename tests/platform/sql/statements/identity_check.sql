--- the card reader's last reading goes @conn=MyKad64
DELETE FROM JPNInfo
;;
--- the card reader's new reading @conn=MyKad64
SELECT * FROM JPNInfo
;;
--- identity numbers of the legacy photo store @conn=photo
SELECT IC FROM CustPhoto
;;
--- own loans of an IC in the home company
SELECT c.CustName,l.CompCode,l.LoanID,l.OldLoanCode,l.TrxDate,l.NextDueDate,l.LoanAmt,l.LoanBal,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE l.CompCode='AB' AND (c.CustNIC='800131-10-5555' OR c.CustOIC='800131-10-5555' OR c.CustOthIC='800131-10-5555') ORDER BY l.CompCode,l.TrxDate
;;
--- guaranteed loans of an IC in the home company
SELECT c.CustName,l.CompCode,l.LoanID,l.OldLoanCode,l.TrxDate,l.NextDueDate,l.LoanAmt,l.LoanBal,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE l.CompCode='AB' AND (l.GuarantorNIC='800131-10-5555' OR l.GuarantorOIC='800131-10-5555' OR l.GuarantorNIC2='800131-10-5555' OR l.GuarantorOIC2='800131-10-5555' OR l.GuarantorOthIC='800131-10-5555' OR l.GuarantorOthIC2='800131-10-5555') ORDER BY l.CompCode,l.TrxDate
;;
