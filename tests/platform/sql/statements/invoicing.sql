--- service settings of the central database @conn=AMLA
select * FROM Systemast where Param in ('GetTokenurl','GetTINurl','Getclient_id','Getclient_secret','GetEInvAPIConsolidated','GetEInvAPICancel','GetEInvAPIInv','GetEInvAPIStatus','GetTokenInv','GetEInvAPISelfBill')
;;
--- states are replaced: old ones go
delete from eState
;;
--- states of the central database @conn=AMLA
SELECT * FROM eState
;;
--- states are replaced: one row
INSERT INTO eState (StateCode,StateName) VALUES ('01','Johor')
;;
--- countries are replaced: old ones go
delete from eCountry
;;
--- countries of the central database @conn=AMLA
SELECT * FROM eCountry
;;
--- countries are replaced: one row
INSERT INTO eCountry (CountryCode,CountryName) VALUES ('MYS','MALAYSIA')
;;
--- business codes are replaced: old ones go
delete from eMiscCode
;;
--- business codes of the central database @conn=AMLA
SELECT * FROM eMiscCode
;;
--- business codes are replaced: one row
INSERT INTO eMiscCode (MiscCode,MiscName) VALUES ('64922','MONEYLENDING')
;;
--- classification codes are replaced: old ones go
delete from eClass
;;
--- classification codes of the central database @conn=AMLA
SELECT * FROM eClass
;;
--- classification codes are replaced: one row
INSERT INTO eClass (ClassCode,ClassName) VALUES ('016','Loan interest')
;;
--- tax codes are replaced: old ones go
delete from eTax
;;
--- tax codes of the central database @conn=AMLA
SELECT * FROM eTax
;;
--- tax codes are replaced: one row
INSERT INTO eTax (TaxCode,TaxName) VALUES ('06','Not applicable')
;;
--- tax identity of the company
select ec.tin,ec.CustTypeID,ec.CustType,ec.MISCCode,em.MISCName,ec.CustName,ec.Phone,ec.Email,ec.Postcode,ec.City,ec.State,ec.Country,ec.Address from eCustMast as ec left outer join emisccode as em on ec.misccode=em.misccode WHERE CustID='AB'
;;
--- e-invoicing account of the company
select ClientID,ClientSecret from CompMast where compcode='AB'
;;
--- statement that selects the documents @conn=AMLA
SELECT SQLStatement FROM DataExport WHERE SID='VKT-Individual'
;;
--- documents of a company between two dates
SELECT a.PayID as eInvID,1 as SeqNo,a.PayDate as TrxDate,a.CustID,c.CustName,a.CompCode,a.LoanID,a.SchID,'Payment' as InvType,'06' as TaxType,'Interest of ' + a.LoanID as InvDesc,a.IntPay as InvAmt,1 as Qty,e.tin,e.CustTypeID,e.CustType,e.CustName,e.Phone,e.Email,e.Address,e.Postcode,e.City,e.State,e.Country FROM PaymentMast as a INNER JOIN CustMast as c on a.CustID=c.CustID LEFT OUTER JOIN ECustMast as e on a.CustID=e.CustID WHERE a.PayDate >= '2024-01-01' AND a.PayDate <= '2024-01-31' AND a.CompCode='AB' AND isnull(a.IntPay,0) <> 0 ORDER BY a.PayDate,a.PayID
;;
--- identifier of a document sent before
SELECT uuid FROM EinvMast WHERE eInvID='AB0012-001-001'
;;
--- status of a document sent before
SELECT lhdnstatus FROM EinvMast WHERE eInvID='AB0012-001-001'
;;
--- payment that a credit note reverses
SELECT OldPayID FROM PaymentMast WHERE PayID='AB0012-001-001'
;;
--- charge that a credit note reverses
SELECT OldChargeID FROM ChargeMast WHERE ChargeID='INV0001'
;;
--- whether a document was sent before
SELECT eInvID FROM EInvMast WHERE eInvID='AB0012-001-001'
;;
--- a document sent
INSERT INTO EInvMast (eInvID,SeqNo,TrxDate,CustID,CompCode,LoanID,SchID,InvType,InvTaxCode,InvDesc,InvAmt,InvQty,InvStatus,tin,uuid) values ('AB0012-001-001',1,'2024-02-05','AB0012','AB','AB0012-001','1','Payment','06','Interest of AB0012-001',101.92,1,'1','IG12345678910','A1B2C3D4E5F6G7H8I9J0K1L2M3')
;;
--- a document sent again
Update EInvMast set uuid='Z1B2C3D4E5F6G7H8I9J0K1L2M3' WHERE EInvID='AB0012-001-001'
;;
--- a document cancelled
Update EInvMast set Canceluuid='Z1B2C3D4E5F6G7H8I9J0K1L2M3' WHERE EInvID='AB0012-001-001'
;;
--- address of a validated document
UPDATE EInvMast SET LHDNQR='https://myinvois.example/A1B2C3/share/9' WHERE eInvID='AB0012-001-001'
;;
--- status of a document
UPDATE EInvMast SET LHDNStatus='Valid' WHERE eInvID='AB0012-001-001'
;;
