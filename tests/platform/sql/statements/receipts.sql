--- receipt counter of a company by month
SELECT * FROM NumberMast WHERE CustID='AB#202401-'
;;
--- first receipt of a month
INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('AB#202401-',1,'0')
;;
--- next receipt of a month
UPDATE NumberMast SET LoanNo=2 WHERE CustID='AB#202401-'
;;
--- receipt counter of a company by day
SELECT * FROM NumberMast WHERE CustID='ORAB#240131-'
;;
--- date of a loan
SELECT TrxDate FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- another payment with the typed receipt number
SELECT PayID FROM PaymentMast WHERE CompCode='AB' AND PayID <> '' AND ReceiptNo='R0012'
;;
--- a payment with the drawn receipt number
SELECT PayID FROM PaymentMast WHERE CompCode='AB' AND ReceiptNo='202401-0002'
;;
--- receipt style of a company
SELECT SerialReceiptNo FROM CompMast WHERE CompCode='AB'
;;
--- whether a date is a holiday
SELECT HolidayDate FROM HolidayMast WHERE HolidayDate='2024-02-12'
;;
--- name of a holiday
SELECT HolidayName FROM HolidayMast WHERE HolidayDate='2024-02-12'
;;
--- a new holiday
INSERT INTO HolidayMast (HolidayDate,HolidayName,UserID) VALUES ('2024-02-12','Tahun Baru Cina','CLERK1')
;;
--- payments of a loan from this month on
SELECT PayID,PayDate FROM PaymentMast WHERE LoanID='AB0012-001' AND PayDate >= '2024-01-01' ORDER BY PayDate
;;
--- receipt counters of a company are dropped @alone
DELETE NumberMast WHERE CustID like 'AB#%' or CustID like 'AB#R%'
;;
--- one receipt counter of a company is dropped
DELETE NumberMast WHERE CustID='AB#R'
;;
--- first number of the running receipt series
INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('AB#R','1000','0')
;;
--- last number of the running receipt series before a date
SELECT MAX(ReceiptNo) FROM PaymentMast WHERE CompCode='AB' and ReceiptNo like 'R%' and PayDate < '2024-01-01'
;;
--- payments whose receipts are to be numbered anew, two blanks before WHERE
SELECT PayID,PayDate FROM PaymentMast  WHERE CompCode='AB' AND PayDate >= '2024-01-01' ORDER BY PayDate,DateCreated
;;
--- one receipt is numbered anew
UPDATE PaymentMast SET ReceiptNo='R1001' WHERE PayID='AB0012-001-001'
;;
--- last number of the running receipt series
SELECT LoanNo FROM NumberMast WHERE CustID='AB#R'
;;
--- last number of the running receipt series is set
UPDATE NumberMast SET LoanNo=1234 WHERE CustID='AB#R'
