--- whether the card reader's own table is used
SELECT [Value] FROM Systemast WHERE Param='MyKAD'
;;
--- the card reader's last reading goes @conn=MyKad64
DELETE FROM JPNInfo
;;
--- the card reader's new reading @conn=MyKad64
SELECT * FROM JPNInfo
;;
--- race of a card that the table lacks
INSERT INTO CustRaceMast (CustRaceID,CustRaceDesc) VALUES ('IBAN','IBAN')
;;
--- identity numbers of the legacy photo store @conn=photo
SELECT IC FROM CustPhoto
;;
--- name of the customer who owns an IC
SELECT TOP 1 CustName FROM CustMast WHERE CustNIC='800131-10-5555' OR CustOIC='800131-10-5555' OR CustOthIC='800131-10-5555'
;;
--- name of the first guarantor who owns an IC
SELECT TOP 1 GuarantorName FROM LoanMast WHERE GuarantorNIC='800131-10-5555' OR GuarantorOIC='800131-10-5555' OR GuarantorOthIC='800131-10-5555'
;;
--- name of the second guarantor who owns an IC
SELECT TOP 1 GuarantorName2 FROM LoanMast WHERE GuarantorNIC2='800131-10-5555' OR GuarantorOIC2='800131-10-5555' OR GuarantorOthIC2='800131-10-5555'
;;
--- own loans of an IC in the home company
SELECT c.CustName,l.CompCode,l.LoanID,l.OldLoanCode,l.TrxDate,l.NextDueDate,l.LoanAmt,l.LoanBal,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE l.CompCode='AB' AND (c.CustNIC='800131-10-5555' OR c.CustOIC='800131-10-5555' OR c.CustOthIC='800131-10-5555') ORDER BY l.CompCode,l.TrxDate
;;
--- guaranteed loans of an IC in the home company
SELECT c.CustName,l.CompCode,l.LoanID,l.OldLoanCode,l.TrxDate,l.NextDueDate,l.LoanAmt,l.LoanBal,l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE l.CompCode='AB' AND (l.GuarantorNIC='800131-10-5555' OR l.GuarantorOIC='800131-10-5555' OR l.GuarantorNIC2='800131-10-5555' OR l.GuarantorOIC2='800131-10-5555' OR l.GuarantorOthIC='800131-10-5555' OR l.GuarantorOthIC2='800131-10-5555') ORDER BY l.CompCode,l.TrxDate
