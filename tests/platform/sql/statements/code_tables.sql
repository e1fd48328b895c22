--- rows of a code table
SELECT * FROM AdvertiseMast
;;
--- rows of the company category table, so spelt
SELECT * FROM CampanyCategory
;;
--- a changed description
UPDATE AreaMast SET AreaDesc='JOHOR' WHERE AreaCode='JOHOR'
;;
--- a code is deleted
DELETE FROM AreaMast WHERE AreaCode='JOHOR'
;;
--- customers of a race
SELECT COUNT(*) FROM CustMast WHERE CustRace='CINA'
;;
--- guarantors of a race
SELECT COUNT(*) FROM LoanMast WHERE GuarantorRace='CINA' OR GuarantorRace2='CINA'
;;
--- customers of an area
SELECT COUNT(*) FROM CustMast WHERE AreaCode='JOHOR'
;;
--- loans of a salesman
SELECT COUNT(*) FROM LoanMast WHERE SalesmanID='LIM'
;;
--- payments of a salesman
SELECT COUNT(*) FROM PaymentMast WHERE SalesmanID='LIM'
;;
--- loans of an advertisement
SELECT COUNT(*) FROM LoanMast WHERE AdvertiseID='NIL'
;;
--- payments of a collection type
SELECT COUNT(*) FROM PaymentMast WHERE CollectInfoID='CASH'
;;
--- loans of a repayment code
SELECT COUNT(*) FROM LoanMast WHERE LoanTypeID='14DAYS'
;;
--- loans of a status
SELECT COUNT(*) FROM LoanMast WHERE LoanGroupID='PINJAMAN SEMASA'
;;
--- calls of a follow-up status
SELECT COUNT(*) FROM FollowUpMast WHERE HisStatus='NIL'
;;
--- customers of a company category
SELECT COUNT(*) FROM CustMast WHERE CompCatCode='NIL'
;;
--- expenses of a cash book category
SELECT Count(TrxID) FROM PersonalExp WHERE CBCat='LOAN'
;;
--- loans of a loan type
SELECT Count(LoanID) FROM LoanMast WHERE LoanPurpose='NIL'
;;
--- loans of a collateral type
SELECT Count(LoanID) FROM LoanMast WHERE CollateralID='NIL'
;;
--- loans of a bank
SELECT Count(LoanID) FROM LoanMast WHERE Bank='CASH'
;;
--- payments of a bank
SELECT Count(PayID) FROM PaymentMast WHERE Bank='CASH'
;;
--- drawdowns of a bank
SELECT Count(SID) FROM DrawDownMast WHERE Bank='CASH'
;;
--- loans of a holder of a power of attorney
SELECT Count(LoanID) FROM LoanMast WHERE OwnerName='LEE KIM'
;;
--- a new company, money-laundering settings on
INSERT INTO CompMast (CompCode,CompDesc,AreaCode,Address,PersonIncharge,Tel1,Tel2,Fax,HP1,HP2,CashInHand,CashInBank,CompNo,LicenseNo,email,CompanyType,ICNo,SerialReceiptNo,AMLA,AMLACheckIC,AMLALoan,AMLAPayment,AMLAWarning,AMLAOfficer,DisableSTR,SQLPath,ClientID,ClientSecret,MyTaxClientID,MyTaxClientSecret,SMSName) VALUES ('AB','AB Kredit Sdn Bhd','COMPANY','1, Jalan Satu
50000 Kuala Lumpur','Mr O''Hara','03-12345678','','','','',0,0,'','WL1234/01/01-1/010125','','','','1','1','0',25000.00,25000.00,'1','Siti','0','','','','','','AB Kredit')
;;
--- a new company, money-laundering settings off
INSERT INTO CompMast (CompCode,CompDesc,AreaCode,Address,PersonIncharge,Tel1,Tel2,Fax,HP1,HP2,CashInHand,CashInBank,CompNo,LicenseNo,email,CompanyType,ICNo,SerialReceiptNo,DisableSTR,SQLPath,ClientID,ClientSecret,MyTaxClientID,MyTaxClientSecret,SMSName) VALUES ('AB2','AB Kredit Sdn Bhd','COMPANY','1, Jalan Satu
50000 Kuala Lumpur','Mr O''Hara','03-12345678','','','','',0,0,'','WL1234/01/01-1/010125','','','','1','0','','','','','','AB Kredit')
;;
--- a changed company, money-laundering settings on
UPDATE CompMast SET CompDesc='AB Kredit Sdn Bhd',AreaCode='COMPANY',Address='1, Jalan Satu
50000 Kuala Lumpur',PersonIncharge='Mr O''Hara',Tel1='03-12345678',Tel2='',Fax='',HP1='',HP2='',CompNo='',LicenseNo='WL1234/01/01-1/010125',email='',CompanyType='',ICNo='',SerialReceiptNo='1',AMLA='1',AMLACheckIC='0',AMLALoan=25000.00,AMLAPayment=25000.00,AMLAWarning='1',AMLAOfficer='Siti',DisableSTR='0',SQLPath='',ClientID='',ClientSecret='',MyTaxClientID='',MyTaxClientSecret='',SMSName='AB Kredit' WHERE CompCode='AB'
;;
--- a changed company, money-laundering settings off
UPDATE CompMast SET CompDesc='AB Kredit Sdn Bhd',AreaCode='COMPANY',Address='1, Jalan Satu
50000 Kuala Lumpur',PersonIncharge='Mr O''Hara',Tel1='03-12345678',Tel2='',Fax='',HP1='',HP2='',CompNo='',LicenseNo='WL1234/01/01-1/010125',email='',CompanyType='',ICNo='',SerialReceiptNo='1',DisableSTR='0',SQLPath='',ClientID='',ClientSecret='',MyTaxClientID='',MyTaxClientSecret='',SMSName='AB Kredit' WHERE CompCode='AB2'
;;
--- a company is deleted
DELETE FROM CompMast WHERE CompCode='AB2'
;;
--- changed profile of the deployment
UPDATE CompanyProfile SET CompanyName='AB Kredit Sdn Bhd',RegNo='123456-X',LicenseNo='WL1234/01/01-1/010125',Tel='03-12345678',Fax='',email='ab@example.com',Address1='1, Jalan Satu',Address2='',Address3='',PostCode='50000',City='Kuala Lumpur',State='WP'
;;
