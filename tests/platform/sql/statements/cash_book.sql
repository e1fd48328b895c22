--- a new movement entered by hand
INSERT INTO CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CBType,CatCode) VALUES ('AB','2024-01-31','Cash In','Float','Start of day',500.00,500.00,0,'M','LOAN')
;;
--- a movement by its number
SELECT * FROM CashBook WHERE DocID=1
;;
--- a movement by its number, home company only
SELECT * FROM CashBook WHERE DocID=1 and CompCode='AB'
;;
--- a changed movement
UPDATE CashBook SET CompCode='AB',TranDate='2024-01-31',TranType='Bank Out',TranDesc='Float',TranMemo='',TranAmt=450.00,CashBal=500.00,BankBal=-450.00,CBType='M',CatCode='LOAN' WHERE DocID=1
;;
--- a movement is deleted
DELETE FROM CashBook WHERE DocID=1
;;
--- movements entered by hand
SELECT DocID,CompCode,TranDate,TranAmt,TranType,TranDesc,TranMemo FROM CashBook WHERE CBType='M' 
;;
--- balances of a company
SELECT CashInHand,CashInBank FROM CompMast WHERE CompCode='AB'
;;
--- a loan is paid out
INSERT INTO CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CatCode,CBType) values ('AB','2024-01-31','Cash Out','Edit Loan in AB0012-001','Edit O''Brien''s loan with capital amount from  10000.00 adjusted to 9500.00',500.00,0,0,'LOAN','A')
;;
--- balances after a loan movement
UPDATE CompMast SET CashInHand=-9500.00,CashInBank=0 WHERE CompCode='AB'
;;
--- a payment comes in, no INTO
Insert CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CBType,CatCode) Values ('AB','2024-02-05','Bank In','New Payment in AB0012-001-001 (PBB 000123)','Payment receive from Tan Ah Kow by NIL',983.33,-9500.00,983.33,'A','PAYMENT')
;;
--- balances after a payment movement
Update CompMast set CashInHand=-9500.00,CashInBank=983.33 Where CompCode='AB'
;;
--- recalculated balances of several movements
UPDATE CashBook SET CashBal=r.Cash,BankBal=r.Bank FROM CashBook INNER JOIN (SELECT 1 AS DocID,500.00 AS Cash,0.00 AS Bank UNION ALL SELECT 2 AS DocID,-9500.00 AS Cash,983.33 AS Bank) AS r ON CashBook.DocID=r.DocID
;;
