--- customer whom a report is about
SELECT CustName,CustNIC,CustOIC,CustOthIC,CustAdd1,CustAdd2,CustAdd3,CustPostCode,CustCity,CustState,CustTel1,CustTel2,Custfax,CustHP1,CustGender,MaritalStatus,CustComp,CustCompPos,CustCompBiz,CustSpouseName,CustSpouseNIC,CustSpouseOIC FROM CustMast WHERE CustID='AB0012'
;;
--- a new report
INSERT INTO AMLATrans (TrxID,TrxDate,Nationality,Name1,Name2,Name3,Name4,NRIC,OldIC,OthIC,IDType,Gender,email,Tel1,Tel2,HP,Fax,Add1,Add2,Add3,Add4,BizType,Occupation,JobDetail,EmployerName,EmploymentArea,OtherWork,MaritalStatus,SpouseName,SpouseNIC,SpouseOIC,SpouseOthIC,SpouseIDType,SpousePassportNo,SpousePassportCountry,Trans,CustID,TransType,TransDate,TransAmt,LoanType,SuspiciousWork,CrimeDesc,CrimeEnv,CompCode) VALUES ('STR0001','2024-01-31','MALAYSIAN','Tan Ah Kow','','','','800131-10-5555','','','','MALE','','','','','','','','','','','','','','','','','','','','','','','','','AB0012','','2024-01-31',26000.00,'','Client settles loan with one lump sum payment','Paid 100% in cash; refused to say why','','AB')
;;
--- a changed report
UPDATE AMLATrans SET TrxDate='2024-01-31',Nationality='MALAYSIAN',Name1='Tan Ah Kow',Name2='',Name3='',Name4='',NRIC='800131-10-5555',OldIC='',OthIC='',IDType='',Gender='MALE',email='',Tel1='',Tel2='',HP='',Fax='',Add1='',Add2='',Add3='',Add4='',BizType='',Occupation='',JobDetail='',EmployerName='',EmploymentArea='',OtherWork='',MaritalStatus='',SpouseName='',SpouseNIC='',SpouseOIC='',SpouseOthIC='',SpouseIDType='',SpousePassportNo='',SpousePassportCountry='',Trans='',CustID='AB0012',TransType='',TransDate='2024-01-31',TransAmt=26000.00,LoanType='',SuspiciousWork='Client settles loan with one lump sum payment',CrimeDesc='Paid 100% in cash; refused to say why',CrimeEnv='',CompCode='AB' WHERE TrxID='STR0001'
;;
--- report of a loan
UPDATE LoanMast SET AMLAID='STR0001' WHERE LoanID='AB0012-001'
;;
--- report of a payment, by the loan column with the payment's number
UPDATE PaymentMast SET AMLAID='STR0001' WHERE LoanID='AB0012-001-001'
;;
--- one report
SELECT * FROM AMLATrans WHERE TrxID='STR0001'
;;
--- compliance officer of a company
SELECT AMLAOfficer FROM CompMast WHERE CompCode='AB'
