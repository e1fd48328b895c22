--- company of a customer
SELECT CompCode FROM CustMast WHERE CustiD='AB0012'
;;
--- tax look-up account of a company
SELECT MyTaxClientID FROM CompMast WHERE CompCode='AB'
;;
--- tax look-up password of a company
SELECT MyTaxClientSecret FROM CompMast WHERE CompCode='AB'
;;
--- states that are offered
SELECT * FROM eState where StateCode <> '17'
;;
--- saved tax identity
SELECT * FROM ECustMast WHERE CustID='AB0012'
;;
--- tax identity filled from the customer
SELECT case when AreaCode='COMPANY' then 'BRN' else case when CustNIC <> '' then 'NRIC' else 'PASSPORT' end end as [CustType],case when AreaCode='COMPANY' then CompNo else case when CustNIC <> '' then CustNIC else CustOIC end end as [CustTypeID],CustPostCode,CustCity,CustState,replace(CustAdd1,char(13) + char(10),' ') as [CustAdd1],CustHP1,email,CustName FROM CustMast WHERE CustID='AB0012'
;;
--- tax identity filled from the company
SELECT 'BRN' as [CustType],CompNo as [CustTypeID],replace(Address,char(13) + char(10),' ') as [Address],Tel1,email,CompDesc,Fax as [City],HP2 as [Postcode] FROM CompMast WHERE CompCode='AB'
;;
--- whether a state is there
SELECT StateCode FROM eState WHERE StateCode='01'
;;
--- name of a state
SELECT StateName FROM eState WHERE StateCode='01'
;;
--- code of a state by its name
SELECT StateCode FROM eState WHERE StateName='Johor'
;;
--- whether a country is there
SELECT CountryCode FROM eCountry WHERE CountryCode='MYS'
;;
--- name of a country
SELECT CountryName FROM eCountry WHERE CountryCode='MYS'
;;
--- whether a business code is there
SELECT MiscCode FROM eMiscCode WHERE MiscCode='64922'
;;
--- name of a business code
SELECT MiscName FROM eMiscCode WHERE MiscCode='64922'
;;
--- whether a tax identity is there already
SELECT CustID from ECustMast WHERE CustID='AB0012'
;;
--- a new tax identity
INSERT INTO ECustMast (CustID,TIN,MISCCode,Address,PostCode,City,State,Country,Phone,Email,CustType,CustTypeID,CustName) VALUES ('AB0012','IG12345678910','64922','1, Jalan Satu','81100','Johor Bahru','01','MYS','+60123456789','tan@example.com','NRIC','800131105555','Tan Ah Kow')
;;
--- a changed tax identity
UPDATE ECustMast set TIN='IG12345678910',MISCCode='64922',Address='2, Jalan Dua',PostCode='81100',City='Johor Bahru',State='01',Country='MYS',Phone='+60123456789',Email='',CustType='NRIC',CustTypeID='800131105555',CustName='Tan Ah Kow' WHERE CustID='AB0012'
;;
