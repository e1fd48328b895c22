--- kinds of gold
SELECT GoldID FROM GoldTypeMast ORDER BY GoldID
;;
--- a new purchase
INSERT INTO GoldTransMast (LoanID,CompCode,CustID,TrxDate,TotEstAmt,TotAmt,OtherAmt,PayAmt,UserID,DateCreated,Remarks) VALUES ('B0001','AB','AB0012','2024-01-31',2600.00,2500.00,-20.00,2480.00,'CLERK1','2024-01-31 14:05:09','')
;;
--- a changed purchase
UPDATE GoldTransMast SET TrxDate='2024-01-31',CompCode='AB',TotEstAmt=2600.00,TotAmt=2500.00,OtherAmt=0,PayAmt=2500.00,Remarks='bracelet' WHERE LoanID='B0001'
;;
--- items of a purchase are replaced: old ones go
DELETE FROM LoanCollateral WHERE LoanID='B0001'
;;
--- items of a purchase are replaced: one item
INSERT INTO LoanCollateral (LoanID,CompCode,CustID,SeqNo,GoldID,GoldDesc,Qty,UnitPrice,Weight,TotalAmt,LoanAmt,Remarks) VALUES ('B0001','AB','AB0012',1,'NIL','Bracelet 916',1,250.00,10.4250,2606.25,2500.00,'')
;;
--- one purchase
SELECT * FROM GoldTransmast WHERE LoanID='B0001'
;;
--- items of a purchase
SELECT * FROM LoanCollateral WHERE LoanID='B0001' ORDER BY SeqNo
;;
--- items for sale, all companies
SELECT l.CompCode,l.LoanID,l.SeqNo,g.TrxDate,l.GoldID,l.GoldDesc,l.Qty,l.UnitPrice,l.Weight,l.TotalAmt,l.LoanAmt,l.Remarks,l.SoldAmt,l.SoldDate,l.SoldRemarks FROM GoldTransMast as g inner join LoanCollateral as l on g.LoanID=l.LoanID WHERE g.TrxDate >= '2024-01-01' AND g.TrxDate <='2024-01-31' ORDER BY l.LoanID,l.SeqNo
;;
--- items for sale of one company
SELECT l.CompCode,l.LoanID,l.SeqNo,g.TrxDate,l.GoldID,l.GoldDesc,l.Qty,l.UnitPrice,l.Weight,l.TotalAmt,l.LoanAmt,l.Remarks,l.SoldAmt,l.SoldDate,l.SoldRemarks FROM GoldTransMast as g inner join LoanCollateral as l on g.LoanID=l.LoanID WHERE g.TrxDate >= '2024-01-01' AND g.TrxDate <='2024-01-31' AND g.CompCode='AB' ORDER BY l.LoanID,l.SeqNo
;;
--- an item is sold
UPDATE LoanCollateral SET SoldDate='2024-02-15',SoldAmt=2700.00,SoldRemarks='to Kedai Emas Wah',SoldUserID='CLERK1' WHERE LoanID='B0001' AND SeqNo=1
;;
--- an item is not sold after all
UPDATE LoanCollateral SET SoldDate=null,SoldAmt=0,SoldRemarks='',SoldUserID='CLERK1' WHERE LoanID='B0001' AND SeqNo=1
;;
--- a purchase is deleted, no FROM
DELETE GoldTransMast WHERE LoanID='B0001'
;;
--- a deleted purchase's items go
DELETE FROM LoanCollateral WHERE LoanID='B0001'
;;
