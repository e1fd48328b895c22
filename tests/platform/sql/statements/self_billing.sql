--- classification codes of the grid
SELECT ClassCode FROM eClass ORDER BY ClassCode
;;
--- tax codes of the grid
SELECT TaxCode FROM eTax ORDER BY TaxCode
;;
--- a new self-billed invoice
INSERT INTO SelfBillMast (SID,InvoiceNo,TrxDate,CompCode,SuppTin,SuppIDNo,SuppIDType,SuppMiscCode,SuppBankAcc,SuppSST,SuppName,SuppTel,SuppEmail,SuppAdd,SuppPostCode,SuppCity,SuppState,SuppCountry,SelfBillTaxAmt,SelfBillTaxCat,SelfBillAmt,SelfBillStatus,uuid,UserID,DateCreated) values ('SB0001','KEW-001','2024-01-31','AB','EI00000000010','800131105555','NRIC','00000','','','Kedai Emas Wah','+60312345678','','1, Jalan Satu','50000','Kuala Lumpur','14','MYS',0,'06',1200.00,'','','CLERK1','2024-01-31 14:05:09')
;;
--- a changed self-billed invoice
UPDATE SelfBillMast SET InvoiceNo = 'KEW-001',TrxDate = '2024-01-31',CompCode = 'AB',SuppTin = 'EI00000000010',SuppIDNo = '800131105555',SuppIDType = 'NRIC',SuppMiscCode = '00000',SuppBankAcc = '',SuppSST = '',SuppName = 'Kedai Emas Wah',SuppTel = '+60312345678',SuppEmail = '',SuppAdd = '1, Jalan Satu',SuppPostCode = '50000',SuppCity = 'Kuala Lumpur',SuppState = '14',SuppCountry = 'MYS',SelfBillTaxAmt = 0,SelfBillTaxCat = '06',SelfBillAmt = 1200.00,SelfBillStatus = '' WHERE SID = 'SB0001'
;;
--- items are replaced: old ones go, no FROM
DELETE SelfBillTrans WHERE SID = 'SB0001'
;;
--- items are replaced: one item
INSERT INTO SelfBillTrans (SID,SeqNo,SelfBillQty,SelfBillAmt,SelfBillTaxAmt,SelfBillTaxPer,SelfBillTaxCat,SelfBillClassCode,SelfBillDesc) VALUES ('SB0001',1,1,1200.00,0.00,0,'06','022','Valuation of gold')
;;
--- identifier that the tax service gives
UPDATE SelfBillMast set uuid='A1B2C3D4E5F6G7H8I9J0K1L2M3' WHERE SID='SB0001'
;;
--- one self-billed invoice
SELECT * FROM SelfBillMast WHERE SID='SB0001'
;;
--- items of a self-billed invoice
SELECT * FROM SelfBillTrans WHERE SID='SB0001' ORDER BY SeqNo
;;
--- status of a self-billed invoice
UPDATE SelfBillMast set SelfBillStatus='Valid' WHERE SID='SB0001'
;;
