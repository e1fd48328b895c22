--- counter of a letter series
SELECT * FROM NumberMast WHERE CustID='AB#D'
;;
--- first number of a letter series
INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('AB#D',1,'0')
;;
--- next number of a letter series, a bare number into the text column
UPDATE NumberMast SET LoanNo=2 WHERE CustID='AB#D'
;;
--- customer counter of a company
Select LoanNo,PaymentNo from NumberMast where CustID = 'AB'
;;
--- first customer of a company
Insert into NumberMast values ('AB','0001','0')
;;
--- next customer of a company
Update NumberMast set CustID='AB',LoanNo = '0002' where CustID = 'AB'
;;
--- a new customer's own loan counter
Insert into NumberMast (CustID,LoanNo,PaymentNo) values ('AB0002','000','000')
;;
--- loan counter of a customer
SELECT LoanNo FROM NumberMast WHERE CustID='AB0002'
;;
--- next loan number of a customer
Update NumberMast set LoanNo='002' where CustID='AB0002'
;;
--- a new loan's own payment counter
Insert into NumberMast values ('AB0002-001','001','001')
;;
--- payment counter of a loan
Select LoanNo from NumberMast where CustID='AB0002-001'
;;
--- payment counter made by the first payment of a loan that lacks it
Insert into NumberMast values ('AB0002-002','002','000')
;;
--- next payment number of a loan
Update NumberMast set LoanNo='003' where CustID='AB0002-002'
;;
--- a deleted loan takes its payment counter along
DELETE FROM NumberMast WHERE CustID='AB0002-002'
