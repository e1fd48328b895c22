--- transactions of a supplier
SELECT * FROM SupplierTrans WHERE SuppID='S0001'
;;
--- name of a supplier
SELECT SuppName FROM SupplierMast WHERE SuppID='S0001'
;;
--- loan of a supplier's transaction
SELECT LoanID,CustID,CompCode FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- a new supplier
INSERT INTO SupplierMast (SuppID,CompCode,SuppName,TrxDate,Add1,Add2,Add3,Add4,Tel1,Tel2,Remark,UserID,DateCreated) VALUES ('S0001','AB','Kedai Emas Wah','2024-01-31','1, Jalan Satu','','','','03-12345678','','','CLERK1','2024-01-31 14:05:09')
;;
--- a changed supplier
UPDATE SupplierMast SET SuppName='Kedai Emas Wah Sdn Bhd',TrxDate='2024-01-31',Add1='2, Jalan Dua',Add2='',Add3='',Add4='',Tel1='03-12345678',Tel2='',Remark='net 30 days' WHERE SuppID='S0001'
;;
--- accounts of supplier documents that are not set up
SELECT COUNT(*) FROM LinkAccMast WHERE LinkID in ('APINV','APCN') AND LinkAccCode=''
;;
--- account of supplier invoices
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='APINV'
;;
--- a new transaction
INSERT INTO SupplierTrans (TransID,SuppID,LoanID,CustID,CompCode,TrxDate,TransDesc,TransType,TransAmt,UserID,DateCreated) VALUES ('T0001','S0001','AB0012-001','AB0012','AB','2024-01-31','Valuation','Payment',-100.00,'CLERK1','2024-01-31 14:05:09')
;;
--- a changed transaction
UPDATE SupplierTrans SET TrxDate='2024-01-31',LoanID='',CustID='',CompCode='AB',TransDesc='Valuation',TransType='Invoice',TransAmt=100.00 WHERE TransID='T0001'
;;
--- one supplier, two blanks behind WHERE
SELECT * FROM SupplierMast WHERE  SuppID='S0001'
;;
--- one transaction
SELECT * FROM SupplierTrans WHERE TransID='T0001'
;;
--- a transaction is deleted
DELETE FROM SupplierTrans WHERE TransID='T0001'
;;
--- a supplier is deleted
DELETE FROM SupplierMast WHERE SuppID='S0001'
;;
--- a deleted supplier's transactions go
DELETE FROM SupplierTrans WHERE SuppID='S0001'
