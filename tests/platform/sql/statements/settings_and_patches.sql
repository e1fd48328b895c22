--- one setting
SELECT [Value] FROM Systemast WHERE Param='TransLogs'
;;
--- orphaned drawdowns go
Delete d from DrawDownMast as d left outer join loanmast as l on l.loanid=d.loanid where l.loanid is null
;;
--- key of the orphan patch @alone @unpatched
INSERT Systemast (Param,Value) values ('Patch-Drawdown','1')
;;
--- key of the orphan patch, set
UPDATE Systemast SET [Value]='1' WHERE param='Patch-Drawdown'
;;
--- key of the money-laundering patch @alone @unpatched
insert into systemast (param,value) values ('AMLA','1')
;;
--- table of reason codes @alone @unpatched
CREATE TABLE AMLADesc (SID nvarchar(10) NOT NULL,AMLADesc nvarchar(100) NOT NULL,CONSTRAINT PK_AMLADesc PRIMARY KEY (SID,AMLADesc))
;;
--- table of suspicious transaction reports @alone @unpatched
CREATE TABLE AMLATrans (TrxID nvarchar(100) NOT NULL,TrxDate datetime NULL,Nationality nvarchar(300) NULL,Name1 nvarchar(300) NULL,Name2 nvarchar(300) NULL,Name3 nvarchar(300) NULL,Name4 nvarchar(300) NULL,NRIC nvarchar(50) NULL,OldIC nvarchar(50) NULL,OthIC nvarchar(50) NULL,IDType nvarchar(100) NULL,Gender nvarchar(10) NULL,email nvarchar(100) NULL,Tel1 nvarchar(50) NULL,Tel2 nvarchar(50) NULL,HP nvarchar(50) NULL,FAX nvarchar(50) NULL,Add1 nvarchar(500) NULL,Add2 nvarchar(500) NULL,Add3 nvarchar(500) NULL,Add4 nvarchar(500) NULL,BizType nvarchar(100) NULL,Occupation nvarchar(100) NULL,JobDetail nvarchar(100) NULL,EmployerName nvarchar(100) NULL,EmploymentArea nvarchar(100) NULL,OtherWork nvarchar(100) NULL,MaritalStatus nvarchar(100) NULL,SpouseName nvarchar(300) NULL,SpouseNIC nvarchar(50) NULL,SpouseOIC nvarchar(50) NULL,SpouseOthIC nvarchar(50) NULL,SpouseIDType nvarchar(50) NULL,SpousePassportCountry nvarchar(100) NULL,Trans nvarchar(10) NULL,CustID nvarchar(50) NULL,TransType nvarchar(100) NULL,TransDate datetime NULL,TransAmt decimal(18,2) NULL,LoanType nvarchar(100) NULL,SuspiciousWork nvarchar(100) NULL,CrimeDesc nvarchar(1000) NULL,CrimeEnv nvarchar(1000) NULL,CompCode nvarchar(50) NULL,SpousePassportNo nvarchar(50) NULL,CONSTRAINT PK_AMLATrans PRIMARY KEY (TrxID))
;;
--- money-laundering settings of a company @alone @unpatched
alter table CompMast add AMLA nvarchar(1),AMLACheckIC nvarchar(1),AMLALoan decimal(18, 2),AMLAPayment  decimal(18, 2),AMLAWarning  nvarchar(1),AMLAOfficer nvarchar(100) 
;;
--- money-laundering settings of a company, first values
update compmast set AMLA='0',AMLACheckIC='0',AMLALoan=0,AMLAPayment=0,AMLAWarning='0',AMLAOfficer='' where AMLA is null
;;
--- reason columns of a loan @alone @unpatched
alter table LoanMast add AMLACode nvarchar(100),AMLADesc nvarchar(1000),AMLAID nvarchar(100)
;;
--- reason columns of a loan, first values
update LoanMast set AMLACode='',AMLADesc='',AMLAID='' where AMLACode is null
;;
--- reason columns of a payment @alone @unpatched
alter table PaymentMast add AMLACode nvarchar(100),AMLADesc nvarchar(1000),AMLAID nvarchar(100)
;;
--- reason columns of a payment, first values
update PaymentMast set AMLACode='',AMLADesc='',AMLAID='' where AMLACode is null
;;
--- table of stored export statements @alone @unpatched
CREATE TABLE DataExport (SID nvarchar(100) NOT NULL,FromDate nvarchar(1) NULL,ToDate nvarchar(1) NULL,SQLStatement nvarchar(max) NULL,ExportHeader nvarchar(1) NULL,CONSTRAINT PK_DataExport PRIMARY KEY (SID))
;;
--- key of the data export patch @alone @unpatched
insert into systemast (param,value) values ('DataExportFlag','1')
;;
--- switch that disables suspicious transaction reports @alone @unpatched
ALTER Table CompMast ADD DisableSTR nvarchar(1)
;;
--- switch that disables suspicious transaction reports, first value
UPDATE CompMast set DisableSTR='0' where DisableSTR is null
;;
--- key of that switch's patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('DisableSTR','1')
;;
--- key of the Lampiran A patch @alone @unpatched
INSERT INTO Systemast (Param,Value) values ('LampiranA','1')
;;
--- whether the table of holidays is there
SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE='BASE TABLE' and table_name = 'HolidayMast'
;;
--- table of holidays @alone @unpatched
CREATE TABLE HolidayMast (HolidayDate date NOT NULL,HolidayName nvarchar(100) NULL,UserID nvarchar(50) NULL,DateCreated datetime NOT NULL CONSTRAINT DF_HolidayMast_DateCreated DEFAULT (getdate()),CONSTRAINT PK_HolidayMast PRIMARY KEY (HolidayDate))
;;
--- name of the regulator's upload, no column list @alone @unpatched
INSERT INTO  Systemast values ('IDEAL','IDEAL UPLOAD')
;;
--- key of the first due date patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('OrgDueDate','1')
;;
--- first due date of a loan @alone @unpatched
ALTER Table LoanMast ADD OrgDueDate datetime
;;
--- first due date of a loan, first fill
UPDATE LoanMast SET OrgDueDate=(SELECT DueDate FROM SchMast WHERE LoanID=LoanMast.LoanID and SchID='1')
;;
--- key of the e-invoicing patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('EInv','1')
;;
--- table of business codes @alone @unpatched
CREATE TABLE eMiscCode (MiscCode nvarchar(50) NOT NULL,MiscName nvarchar(200) NULL,CONSTRAINT PK_eMiscCode PRIMARY KEY (MiscCode))
;;
--- table of states @alone @unpatched
CREATE TABLE eState (StateCode nvarchar(50) NOT NULL,StateName nvarchar(100) NULL,CONSTRAINT PK_eState PRIMARY KEY (StateCode))
;;
--- table of countries @alone @unpatched
CREATE TABLE eCountry (CountryCode nvarchar(50) NOT NULL,CountryName nvarchar(100) NULL,CONSTRAINT PK_eCountry PRIMARY KEY (CountryCode))
;;
--- table of classification codes @alone @unpatched
CREATE TABLE eClass (ClassCode nvarchar(50) NOT NULL,ClassName nvarchar(500) NULL,CONSTRAINT PK_eClass PRIMARY KEY (ClassCode))
;;
--- table of e-invoices sent @alone @unpatched
CREATE TABLE EInvMast (eInvID nvarchar(50) NOT NULL,SeqNo int NOT NULL,TrxDate datetime NULL,CustID nvarchar(50) NULL,CompCode nvarchar(50) NULL,LoanID nvarchar(50) NULL,SchID nvarchar(50) NULL,InvType nvarchar(50) NULL,InvTaxCode nvarchar(50) NULL,InvDesc nvarchar(200) NULL,InvAmt decimal(18,2) NULL,InvQty int NULL,CONSTRAINT PK_EInvMast PRIMARY KEY (eInvID,SeqNo))
;;
--- table of tax identities @alone @unpatched
CREATE TABLE ECustMast (CustID nvarchar(50) NOT NULL,TIN nvarchar(100) NULL,MISCCode nvarchar(50) NULL,Address nvarchar(300) NULL,Postcode nvarchar(10) NULL,City nvarchar(100) NULL,State nvarchar(100) NULL,Country nvarchar(100) NULL,Phone nvarchar(50) NULL,Email nvarchar(100) NULL,CustType nvarchar(50) NULL,CustTypeID nvarchar(50) NULL,CONSTRAINT PK_ECustMast PRIMARY KEY (CustID))
;;
--- e-invoices by company @alone @unpatched
create index CompCode on eInvMast (CompCode)
;;
--- e-invoices by customer @alone @unpatched
create index CustID on eInvMast (CustID)
;;
--- e-invoices by loan @alone @unpatched
create index LoanID on eInvMast (LoanID)
;;
--- key of the tax identity's name patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('EInvCustName','1')
;;
--- name in a tax identity @alone @unpatched
ALTER Table ECustMast ADD CustName nvarchar(200)
;;
--- database path of a company @alone @unpatched
ALTER Table CompMast ADD SQLPath nvarchar(100)
;;
--- e-invoicing account of a company @alone @unpatched
ALTER Table CompMast ADD ClientID nvarchar(100)
;;
--- e-invoicing password of a company @alone @unpatched
ALTER Table CompMast ADD ClientSecret nvarchar(100)
;;
--- tick of an e-invoice at sending @alone @unpatched
ALTER Table EInvMast ADD InvStatus nvarchar(1)
;;
--- identifier that the tax service gives an e-invoice @alone @unpatched
ALTER Table EInvMast ADD uuid nvarchar(100)
;;
--- customer's tax number on an e-invoice @alone @unpatched
ALTER Table EInvMast ADD tin nvarchar(50)
;;
--- key of the e-invoice status patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('EInvCancel','1')
;;
--- status of an e-invoice @alone @unpatched
ALTER Table EInvMast ADD LHDNStatus nvarchar(50)
;;
--- identifier of a cancelled e-invoice @alone @unpatched
ALTER Table EInvMast ADD Canceluuid nvarchar(100)
;;
--- key of the tax look-up account patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('LocalClientSecret','1')
;;
--- tax look-up account of a company @alone @unpatched
ALTER Table CompMast ADD MyTaxClientID nvarchar(100)
;;
--- tax look-up password of a company @alone @unpatched
ALTER Table CompMast ADD MyTaxClientSecret nvarchar(100)
;;
--- tax look-up account of a company, first value
Update CompMast set MyTaxClientID='' where MyTaxClientID is null 
;;
--- tax look-up password of a company, first value
Update CompMast set MyTaxClientSecret='' where MyTaxClientSecret is null 
;;
--- key of the second fill of the first due date @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('OrgDueDate2','1')
;;
--- first due date of loans that lack it, at every start
UPDATE LoanMast SET OrgDueDate=(SELECT DueDate FROM SchMast WHERE LoanID=LoanMast.LoanID and SchID='1') where OrgDueDate is null
;;
--- key of the e-invoice link patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('LHDNQR','1')
;;
--- address of a validated e-invoice @alone @unpatched
ALTER Table EInvMast ADD LHDNQR nvarchar(200)
;;
--- key of the last drawdown date patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('LastDownDate','1')
;;
--- last drawdown date of a loan @alone @unpatched
ALTER Table LoanMast add LastDownDate datetime
;;
--- last drawdown date of a loan, first fill
update loanmast set LastDownDate=(select max(trxdate) from DrawdownMast WHERE LoanID=loanmast.loanid) where LastDownDate is null
;;
--- key of the self-billing patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('CreateSelfBillTable','1')
;;
--- table of self-billed invoices @alone @unpatched
CREATE TABLE SelfBillMast (SID nvarchar(50) NOT NULL,TrxDate datetime NULL,InvoiceNo nvarchar(100) NULL,CompCode nvarchar(50) NULL,SuppTin nvarchar(50) NULL,SuppIDNo nvarchar(50) NULL,SuppIDType nvarchar(10) NULL,SuppMiscCode nvarchar(10) NULL,SuppBankAcc nvarchar(50) NULL,SuppSST nvarchar(50) NULL,SuppName nvarchar(100) NULL,SuppTel nvarchar(50) NULL,SuppEmail nvarchar(100) NULL,SuppAdd nvarchar(200) NULL,SuppPostCode nvarchar(10) NULL,SuppCity nvarchar(10) NULL,SuppState nvarchar(10) NULL,SuppCountry nvarchar(10) NULL,SelfBillTaxAmt decimal(18,2) NULL,SelfBillTaxCat nvarchar(10) NULL,SelfBillAmt decimal(18,2) NULL,SelfBillStatus nvarchar(50) NULL,uuid nvarchar(100) NULL,UserID nvarchar(50) NULL,DateCreated datetime NULL,CONSTRAINT PK_SelfBillMast PRIMARY KEY (SID))
;;
--- table of items of self-billed invoices @alone @unpatched
CREATE TABLE SelfBillTrans (SID nvarchar(50) NOT NULL,SeqNo int NOT NULL,SelfBillQty int NULL,SelfBillAmt decimal(18,2) NULL,SelfBillTaxAmt decimal(18,2) NULL,SelfBillTaxPer decimal(18,2) NULL,SelfBillTaxCat nvarchar(10) NULL,SelfBillClassCode nvarchar(10) NULL,SelfBillDesc nvarchar(200) NULL,CONSTRAINT PK_SelfBillTrans PRIMARY KEY (SID,SeqNo))
;;
--- table of tax codes @alone @unpatched
CREATE TABLE eTax (TaxCode nvarchar(10) NOT NULL,TaxName nvarchar(200) NULL,CONSTRAINT PK_eTax PRIMARY KEY (TaxCode))
;;
--- key of the supplier's city patch @alone @unpatched
INSERT INTO Systemast (Param,Value) VALUES ('SuppCity','1')
;;
--- room for a longer city of a supplier @alone
ALTER Table SelfbillMast alter column SuppCity nvarchar(100)
