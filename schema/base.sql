-- The tables of an office before any program has connected to it, with the rows that an empty office
-- begins with. T-SQL for SQL Server 2008 and later; the embedded engine runs the same text.
--
-- Columns and tables that the program adds itself when it connects (the AML columns, OrgDueDate,
-- LastDownDate, the e-invoice and self-billing tables ...) must not stand here: adding them would fail.
-- Every default constraint is named after its table and column. Codes and keys are nvarchar(50), names and
-- addresses nvarchar(300), remarks nvarchar(1000); money is decimal(18, 2), a rate decimal(18, 4). Texts
-- and amounts default to '' and 0, since several inserts leave columns out and neither a sum nor a test
-- such as PayID='' may meet Null.

-- Customers. ATMCardNo and ATMPinNo are ordinary texts; SalaryDate is a day of the month.
CREATE TABLE CustMast (
  CustID                 nvarchar(50)   NOT NULL,
  CompCode               nvarchar(50)   NULL CONSTRAINT DF_CustMast_CompCode DEFAULT '',
  TrxDate                datetime       NULL,
  CustName               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustName DEFAULT '',
  CustNickName           nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustNickName DEFAULT '',
  CustNIC                nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustNIC DEFAULT '',
  CustOIC                nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustOIC DEFAULT '',
  CustOthIC              nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustOthIC DEFAULT '',
  CustGender             nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustGender DEFAULT '',
  CustRace               nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustRace DEFAULT '',
  AreaCode               nvarchar(50)   NULL CONSTRAINT DF_CustMast_AreaCode DEFAULT '',
  TotLoan                decimal(18, 2) NULL CONSTRAINT DF_CustMast_TotLoan DEFAULT 0,
  TotLoanBal             decimal(18, 2) NULL CONSTRAINT DF_CustMast_TotLoanBal DEFAULT 0,
  CustAdd1               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustAdd1 DEFAULT '',
  CustAdd2               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustAdd2 DEFAULT '',
  CustAdd3               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustAdd3 DEFAULT '',
  CustPostCode           nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustPostCode DEFAULT '',
  CustState              nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustState DEFAULT '',
  CustCity               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCity DEFAULT '',
  CustTel1               nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustTel1 DEFAULT '',
  CustTel2               nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustTel2 DEFAULT '',
  CustFax                nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustFax DEFAULT '',
  CustHP1                nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustHP1 DEFAULT '',
  CustHP2                nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustHP2 DEFAULT '',
  CustStatus             nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustStatus DEFAULT '',
  CustComp               nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustComp DEFAULT '',
  CustCompBiz            nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompBiz DEFAULT '',
  CustCompPos            nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompPos DEFAULT '',
  CustCompIncome         decimal(18, 2) NULL CONSTRAINT DF_CustMast_CustCompIncome DEFAULT 0,
  CustCompAdd1           nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompAdd1 DEFAULT '',
  CustCompAdd2           nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompAdd2 DEFAULT '',
  CustCompAdd3           nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompAdd3 DEFAULT '',
  CustCompPostCode       nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustCompPostCode DEFAULT '',
  CustCompTel1           nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustCompTel1 DEFAULT '',
  CustCompTel2           nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustCompTel2 DEFAULT '',
  CustCompFax            nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustCompFax DEFAULT '',
  CustCompName2          nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompName2 DEFAULT '',
  CustCompPos2           nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompPos2 DEFAULT '',
  CustCompWork2          nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustCompWork2 DEFAULT '',
  CustSpouseName         nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseName DEFAULT '',
  CustSpouseNIC          nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseNIC DEFAULT '',
  CustSpouseOIC          nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseOIC DEFAULT '',
  CustSpouseComp         nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseComp DEFAULT '',
  CustSpouseCompBiz      nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompBiz DEFAULT '',
  CustSpouseCompPos      nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompPos DEFAULT '',
  CustSpouseCompIncome   decimal(18, 2) NULL CONSTRAINT DF_CustMast_CustSpouseCompIncome DEFAULT 0,
  CustSpouseCompAdd1     nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompAdd1 DEFAULT '',
  CustSpouseCompAdd2     nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompAdd2 DEFAULT '',
  CustSpouseCompAdd3     nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompAdd3 DEFAULT '',
  CustSpouseCompPostCode nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseCompPostCode DEFAULT '',
  CustSpouseCompState    nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompState DEFAULT '',
  CustSpouseCompCity     nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseCompCity DEFAULT '',
  CustSpouseCompTel1     nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseCompTel1 DEFAULT '',
  CustSpouseCompFax1     nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseCompFax1 DEFAULT '',
  CustSpouseHP1          nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseHP1 DEFAULT '',
  CustSpouseRace         nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseRace DEFAULT '',
  CustSpouseDOB          datetime       NULL,
  CustSpouseGender       nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustSpouseGender DEFAULT '',
  CustSpouseemail        nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustSpouseemail DEFAULT '',
  Pic1                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic1 DEFAULT '',
  Pic2                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic2 DEFAULT '',
  Pic3                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic3 DEFAULT '',
  Pic4                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic4 DEFAULT '',
  Pic5                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic5 DEFAULT '',
  Pic6                   nvarchar(300)  NULL CONSTRAINT DF_CustMast_Pic6 DEFAULT '',
  CustVehicleNo          nvarchar(50)   NULL CONSTRAINT DF_CustMast_CustVehicleNo DEFAULT '',
  CustVehicleModel       nvarchar(300)  NULL CONSTRAINT DF_CustMast_CustVehicleModel DEFAULT '',
  CustChild              int            NULL CONSTRAINT DF_CustMast_CustChild DEFAULT 0,
  UserID                 nvarchar(50)   NULL CONSTRAINT DF_CustMast_UserID DEFAULT '',
  Employer               nvarchar(300)  NULL CONSTRAINT DF_CustMast_Employer DEFAULT '',
  CompCatCode            nvarchar(50)   NULL CONSTRAINT DF_CustMast_CompCatCode DEFAULT '',
  OldCode                nvarchar(50)   NULL CONSTRAINT DF_CustMast_OldCode DEFAULT '',
  DOB                    datetime       NULL,
  HouseStatus            nvarchar(50)   NULL CONSTRAINT DF_CustMast_HouseStatus DEFAULT '',
  ATMCardNo              nvarchar(50)   NULL CONSTRAINT DF_CustMast_ATMCardNo DEFAULT '',
  ATMPinNo               nvarchar(50)   NULL CONSTRAINT DF_CustMast_ATMPinNo DEFAULT '',
  BankAccNo              nvarchar(50)   NULL CONSTRAINT DF_CustMast_BankAccNo DEFAULT '',
  BankTransferName       nvarchar(300)  NULL CONSTRAINT DF_CustMast_BankTransferName DEFAULT '',
  BankCagaran            nvarchar(300)  NULL CONSTRAINT DF_CustMast_BankCagaran DEFAULT '',
  Remark                 nvarchar(1000) NULL CONSTRAINT DF_CustMast_Remark DEFAULT '',
  TotLoanAmt2            decimal(18, 2) NULL CONSTRAINT DF_CustMast_TotLoanAmt2 DEFAULT 0,
  JobType                nvarchar(50)   NULL CONSTRAINT DF_CustMast_JobType DEFAULT '',
  StartWorkDate          datetime       NULL,
  EndWorkDate            datetime       NULL,
  SalaryDate             nvarchar(50)   NULL CONSTRAINT DF_CustMast_SalaryDate DEFAULT '',
  TotTopUpAmt            decimal(18, 2) NULL CONSTRAINT DF_CustMast_TotTopUpAmt DEFAULT 0,
  DateCreated            datetime       NULL,
  MaritalStatus          nvarchar(50)   NULL CONSTRAINT DF_CustMast_MaritalStatus DEFAULT '',
  WargaNegara            nvarchar(50)   NULL CONSTRAINT DF_CustMast_WargaNegara DEFAULT '',
  MotherName             nvarchar(300)  NULL CONSTRAINT DF_CustMast_MotherName DEFAULT '',
  CompNo                 nvarchar(50)   NULL CONSTRAINT DF_CustMast_CompNo DEFAULT '',
  email                  nvarchar(300)  NULL CONSTRAINT DF_CustMast_email DEFAULT '',
  PreLanguage            nvarchar(50)   NULL CONSTRAINT DF_CustMast_PreLanguage DEFAULT '',
  AppID                  nvarchar(50)   NULL CONSTRAINT DF_CustMast_AppID DEFAULT '',
  Academic               nvarchar(50)   NULL CONSTRAINT DF_CustMast_Academic DEFAULT '',
  HouseLiving            nvarchar(50)   NULL CONSTRAINT DF_CustMast_HouseLiving DEFAULT '',
  CreditLimit            decimal(18, 2) NULL CONSTRAINT DF_CustMast_CreditLimit DEFAULT 0,
  CreditLimitType        nvarchar(50)   NULL CONSTRAINT DF_CustMast_CreditLimitType DEFAULT '',
  CONSTRAINT PK_CustMast PRIMARY KEY (CustID)
);

-- People who vouch for a customer; none to many a customer.
CREATE TABLE RefererMast (
  CustID              nvarchar(50)   NOT NULL,
  RefererName         nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererName DEFAULT '',
  RefererNIC          nvarchar(50)   NULL CONSTRAINT DF_RefererMast_RefererNIC DEFAULT '',
  RefererOIC          nvarchar(50)   NULL CONSTRAINT DF_RefererMast_RefererOIC DEFAULT '',
  RefererRelationship nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererRelationship DEFAULT '',
  RefererComp         nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererComp DEFAULT '',
  RefererCompBiz      nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererCompBiz DEFAULT '',
  RefererCompPos      nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererCompPos DEFAULT '',
  RefererCompIncome   decimal(18, 2) NULL CONSTRAINT DF_RefererMast_RefererCompIncome DEFAULT 0,
  RefererCompAdd1     nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererCompAdd1 DEFAULT '',
  RefererCompAdd2     nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererCompAdd2 DEFAULT '',
  RefererCompAdd3     nvarchar(300)  NULL CONSTRAINT DF_RefererMast_RefererCompAdd3 DEFAULT '',
  RefererCompTel1     nvarchar(50)   NULL CONSTRAINT DF_RefererMast_RefererCompTel1 DEFAULT '',
  RefererCompFax1     nvarchar(50)   NULL CONSTRAINT DF_RefererMast_RefererCompFax1 DEFAULT '',
  RefererHP1          nvarchar(50)   NULL CONSTRAINT DF_RefererMast_RefererHP1 DEFAULT '',
  Refereremail        nvarchar(300)  NULL CONSTRAINT DF_RefererMast_Refereremail DEFAULT ''
);

-- Loans: terms, two guarantors, totals, standing instruction, property, joint customer. LoanTerm,
-- LoanTerm2 and LoanTerm3 are texts, since they are joined to texts; DragLoan is a text too. InsRate,
-- InsRate2 and LateChargePerDay are percent a year, with four decimals.
CREATE TABLE LoanMast (
  LoanID                 nvarchar(50)   NOT NULL,
  CustID                 nvarchar(50)   NULL CONSTRAINT DF_LoanMast_CustID DEFAULT '',
  CompCode               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_CompCode DEFAULT '',
  TrxDate                datetime       NULL,
  LoanAmt                decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LoanAmt DEFAULT 0,
  InsRate                decimal(18, 4) NULL CONSTRAINT DF_LoanMast_InsRate DEFAULT 0,
  ProcessFee             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_ProcessFee DEFAULT 0,
  PayOutAmt              decimal(18, 2) NULL CONSTRAINT DF_LoanMast_PayOutAmt DEFAULT 0,
  DepositAmt             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_DepositAmt DEFAULT 0,
  LoanTerm               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanTerm DEFAULT '',
  LoanTypeID             nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanTypeID DEFAULT '',
  FirstPayment           decimal(18, 2) NULL CONSTRAINT DF_LoanMast_FirstPayment DEFAULT 0,
  InstallmentAmt         decimal(18, 2) NULL CONSTRAINT DF_LoanMast_InstallmentAmt DEFAULT 0,
  LastPayment            decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LastPayment DEFAULT 0,
  IntType                nvarchar(50)   NULL CONSTRAINT DF_LoanMast_IntType DEFAULT '',
  LateChargePerDay       decimal(18, 4) NULL CONSTRAINT DF_LoanMast_LateChargePerDay DEFAULT 0,
  NextDueDate            datetime       NULL,
  OfferDays              int            NULL CONSTRAINT DF_LoanMast_OfferDays DEFAULT 0,
  GuarantorName          nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorName DEFAULT '',
  GuarantorNIC           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorNIC DEFAULT '',
  GuarantorOIC           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorOIC DEFAULT '',
  GuarantorOthIC         nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorOthIC DEFAULT '',
  GuarantorRelationship  nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorRelationship DEFAULT '',
  GuarantorComp          nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorComp DEFAULT '',
  GuarantorCompBiz       nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompBiz DEFAULT '',
  GuarantorCompPos       nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompPos DEFAULT '',
  GuarantorCompIncome    decimal(18, 2) NULL CONSTRAINT DF_LoanMast_GuarantorCompIncome DEFAULT 0,
  GuarantorCompAdd1      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd1 DEFAULT '',
  GuarantorCompAdd2      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd2 DEFAULT '',
  GuarantorCompAdd3      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd3 DEFAULT '',
  GuarantorCompPostCode  nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompPostCode DEFAULT '',
  GuarantorCompCity      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompCity DEFAULT '',
  GuarantorCompState     nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompState DEFAULT '',
  GuarantorRace          nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorRace DEFAULT '',
  GuarantorGender        nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorGender DEFAULT '',
  GuarantorCompTel1      nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompTel1 DEFAULT '',
  GuarantorCompFax1      nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompFax1 DEFAULT '',
  GuarantorHP1           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorHP1 DEFAULT '',
  GuarantorMN            nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorMN DEFAULT '',
  GuarantorName2         nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorName2 DEFAULT '',
  GuarantorNIC2          nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorNIC2 DEFAULT '',
  GuarantorOIC2          nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorOIC2 DEFAULT '',
  GuarantorOthIC2        nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorOthIC2 DEFAULT '',
  GuarantorRelationship2 nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorRelationship2 DEFAULT '',
  GuarantorComp2         nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorComp2 DEFAULT '',
  GuarantorCompBiz2      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompBiz2 DEFAULT '',
  GuarantorCompPos2      nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompPos2 DEFAULT '',
  GuarantorCompIncome2   decimal(18, 2) NULL CONSTRAINT DF_LoanMast_GuarantorCompIncome2 DEFAULT 0,
  GuarantorCompAdd12     nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd12 DEFAULT '',
  GuarantorCompAdd22     nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd22 DEFAULT '',
  GuarantorCompAdd32     nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompAdd32 DEFAULT '',
  GuarantorCompPostCode2 nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompPostCode2 DEFAULT '',
  GuarantorCompCity2     nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompCity2 DEFAULT '',
  GuarantorCompState2    nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorCompState2 DEFAULT '',
  GuarantorRace2         nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorRace2 DEFAULT '',
  GuarantorGender2       nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorGender2 DEFAULT '',
  GuarantorCompTel12     nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompTel12 DEFAULT '',
  GuarantorCompFax12     nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorCompFax12 DEFAULT '',
  GuarantorHP12          nvarchar(50)   NULL CONSTRAINT DF_LoanMast_GuarantorHP12 DEFAULT '',
  GuarantorMN2           nvarchar(300)  NULL CONSTRAINT DF_LoanMast_GuarantorMN2 DEFAULT '',
  SalesmanID             nvarchar(50)   NULL CONSTRAINT DF_LoanMast_SalesmanID DEFAULT '',
  SalesmanComm           decimal(18, 2) NULL CONSTRAINT DF_LoanMast_SalesmanComm DEFAULT 0,
  AdvertiseID            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_AdvertiseID DEFAULT '',
  LoanStatus             nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanStatus DEFAULT '',
  LoanGroupID            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanGroupID DEFAULT '',
  TotPay                 decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotPay DEFAULT 0,
  TotInt                 decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotInt DEFAULT 0,
  TotCharge              decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotCharge DEFAULT 0,
  TotCollectorAmt        decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotCollectorAmt DEFAULT 0,
  TotDiscAmt             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotDiscAmt DEFAULT 0,
  LoanBal                decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LoanBal DEFAULT 0,
  Bank                   nvarchar(50)   NULL CONSTRAINT DF_LoanMast_Bank DEFAULT '',
  BankBranch             nvarchar(300)  NULL CONSTRAINT DF_LoanMast_BankBranch DEFAULT '',
  Memo1                  nvarchar(1000) NULL CONSTRAINT DF_LoanMast_Memo1 DEFAULT '',
  Memo2                  nvarchar(1000) NULL CONSTRAINT DF_LoanMast_Memo2 DEFAULT '',
  Memo4                  decimal(18, 2) NULL CONSTRAINT DF_LoanMast_Memo4 DEFAULT 0,
  Memo5                  nvarchar(1000) NULL CONSTRAINT DF_LoanMast_Memo5 DEFAULT '',
  LoanPurpose            nvarchar(300)  NULL CONSTRAINT DF_LoanMast_LoanPurpose DEFAULT '',
  LastPaymentNo          nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LastPaymentNo DEFAULT '',
  LastPaymentDate        datetime       NULL,
  UserID                 nvarchar(50)   NULL CONSTRAINT DF_LoanMast_UserID DEFAULT '',
  Introducer             nvarchar(300)  NULL CONSTRAINT DF_LoanMast_Introducer DEFAULT '',
  IntroducerAmt          decimal(18, 2) NULL CONSTRAINT DF_LoanMast_IntroducerAmt DEFAULT 0,
  CloseBal               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_CloseBal DEFAULT 0,
  DragLoan               nvarchar(10)   NULL CONSTRAINT DF_LoanMast_DragLoan DEFAULT '',
  LoanDuration           datetime       NULL,
  OldLoanCode            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_OldLoanCode DEFAULT '',
  AgreementNo            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_AgreementNo DEFAULT '',
  AgreementPrint         nvarchar(1)    NULL CONSTRAINT DF_LoanMast_AgreementPrint DEFAULT '',
  NumberToText           nvarchar(1000) NULL CONSTRAINT DF_LoanMast_NumberToText DEFAULT '',
  BankBook               nvarchar(300)  NULL CONSTRAINT DF_LoanMast_BankBook DEFAULT '',
  ATMCardNo              nvarchar(50)   NULL CONSTRAINT DF_LoanMast_ATMCardNo DEFAULT '',
  ATMPinNo               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_ATMPinNo DEFAULT '',
  NextCall               datetime       NULL,
  LoanAmt2               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LoanAmt2 DEFAULT 0,
  SchChanged             nvarchar(1)    NULL CONSTRAINT DF_LoanMast_SchChanged DEFAULT '',
  TopUpAmt               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TopUpAmt DEFAULT 0,
  LoanType               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanType DEFAULT '',
  DragIntType            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_DragIntType DEFAULT '',
  StampingDate           datetime       NULL,
  Pic1                   nvarchar(300)  NULL CONSTRAINT DF_LoanMast_Pic1 DEFAULT '',
  Pic2                   nvarchar(300)  NULL CONSTRAINT DF_LoanMast_Pic2 DEFAULT '',
  DateCreated            datetime       NULL,
  CollateralID           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_CollateralID DEFAULT '',
  LoanTerm2              nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanTerm2 DEFAULT '',
  InstallmentAmt2        decimal(18, 2) NULL CONSTRAINT DF_LoanMast_InstallmentAmt2 DEFAULT 0,
  LastPayment2           decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LastPayment2 DEFAULT 0,
  PayOutAmt2             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_PayOutAmt2 DEFAULT 0,
  InsRate2               decimal(18, 4) NULL CONSTRAINT DF_LoanMast_InsRate2 DEFAULT 0,
  TermInt                decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TermInt DEFAULT 0,
  OathsAmt               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_OathsAmt DEFAULT 0,
  LegalFee               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_LegalFee DEFAULT 0,
  MiscAmt                decimal(18, 2) NULL CONSTRAINT DF_LoanMast_MiscAmt DEFAULT 0,
  DepositAmt2            decimal(18, 2) NULL CONSTRAINT DF_LoanMast_DepositAmt2 DEFAULT 0,
  PayExtra               decimal(18, 2) NULL CONSTRAINT DF_LoanMast_PayExtra DEFAULT 0,
  SchAmt                 decimal(18, 2) NULL CONSTRAINT DF_LoanMast_SchAmt DEFAULT 0,
  SIBank                 nvarchar(50)   NULL CONSTRAINT DF_LoanMast_SIBank DEFAULT '',
  SIBankBranch           nvarchar(300)  NULL CONSTRAINT DF_LoanMast_SIBankBranch DEFAULT '',
  SIBankContactPerson    nvarchar(300)  NULL CONSTRAINT DF_LoanMast_SIBankContactPerson DEFAULT '',
  SIBankContactNo        nvarchar(50)   NULL CONSTRAINT DF_LoanMast_SIBankContactNo DEFAULT '',
  SIBankNo               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_SIBankNo DEFAULT '',
  SIBankAmt              decimal(18, 2) NULL CONSTRAINT DF_LoanMast_SIBankAmt DEFAULT 0,
  SIBankDate             datetime       NULL,
  ForceSalesAmt          decimal(18, 2) NULL CONSTRAINT DF_LoanMast_ForceSalesAmt DEFAULT 0,
  ValuerName             nvarchar(300)  NULL CONSTRAINT DF_LoanMast_ValuerName DEFAULT '',
  IntDate                datetime       NULL,
  ValuerFrom             nvarchar(300)  NULL CONSTRAINT DF_LoanMast_ValuerFrom DEFAULT '',
  ValuationDate          datetime       NULL,
  PropertyStatus         nvarchar(50)   NULL CONSTRAINT DF_LoanMast_PropertyStatus DEFAULT '',
  PropertyAdd1           nvarchar(300)  NULL CONSTRAINT DF_LoanMast_PropertyAdd1 DEFAULT '',
  PropertyType           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_PropertyType DEFAULT '',
  BuiltUpArea            nvarchar(50)   NULL CONSTRAINT DF_LoanMast_BuiltUpArea DEFAULT '',
  LandArea               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LandArea DEFAULT '',
  LandStatus             nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LandStatus DEFAULT '',
  LeaseHoldExpDate       datetime       NULL,
  ExpectRental           decimal(18, 2) NULL CONSTRAINT DF_LoanMast_ExpectRental DEFAULT 0,
  TitleType              nvarchar(50)   NULL CONSTRAINT DF_LoanMast_TitleType DEFAULT '',
  TitleNo                nvarchar(50)   NULL CONSTRAINT DF_LoanMast_TitleNo DEFAULT '',
  Mukim                  nvarchar(300)  NULL CONSTRAINT DF_LoanMast_Mukim DEFAULT '',
  LotNoPTNo              nvarchar(300)  NULL CONSTRAINT DF_LoanMast_LotNoPTNo DEFAULT '',
  District               nvarchar(300)  NULL CONSTRAINT DF_LoanMast_District DEFAULT '',
  SectionNo              nvarchar(50)   NULL CONSTRAINT DF_LoanMast_SectionNo DEFAULT '',
  State                  nvarchar(300)  NULL CONSTRAINT DF_LoanMast_State DEFAULT '',
  PurchasePrice          decimal(18, 2) NULL CONSTRAINT DF_LoanMast_PurchasePrice DEFAULT 0,
  PropertyLand           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_PropertyLand DEFAULT '',
  BumiPrice              decimal(18, 2) NULL CONSTRAINT DF_LoanMast_BumiPrice DEFAULT 0,
  Construction           nvarchar(50)   NULL CONSTRAINT DF_LoanMast_Construction DEFAULT '',
  InsuranceComp          nvarchar(300)  NULL CONSTRAINT DF_LoanMast_InsuranceComp DEFAULT '',
  SumInsured             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_SumInsured DEFAULT 0,
  ReminderDate           datetime       NULL,
  ReminderDate2          datetime       NULL,
  MRTA                   nvarchar(50)   NULL CONSTRAINT DF_LoanMast_MRTA DEFAULT '',
  CustID2                nvarchar(50)   NULL CONSTRAINT DF_LoanMast_CustID2 DEFAULT '',
  CustName2              nvarchar(300)  NULL CONSTRAINT DF_LoanMast_CustName2 DEFAULT '',
  CustNIC2               nvarchar(50)   NULL CONSTRAINT DF_LoanMast_CustNIC2 DEFAULT '',
  CustAdd12              nvarchar(300)  NULL CONSTRAINT DF_LoanMast_CustAdd12 DEFAULT '',
  TotLoanInt             decimal(18, 2) NULL CONSTRAINT DF_LoanMast_TotLoanInt DEFAULT 0,
  LoanTerm3              nvarchar(50)   NULL CONSTRAINT DF_LoanMast_LoanTerm3 DEFAULT '',
  SpecialSch             nvarchar(1)    NULL CONSTRAINT DF_LoanMast_SpecialSch DEFAULT '',
  LastDueDate            datetime       NULL,
  EndTermIntDate         datetime       NULL,
  StopInt                datetime       NULL,
  CreditLimit            decimal(18, 2) NULL CONSTRAINT DF_LoanMast_CreditLimit DEFAULT 0,
  OwnerName              nvarchar(300)  NULL CONSTRAINT DF_LoanMast_OwnerName DEFAULT '',
  Memo3                  nvarchar(max)  NULL CONSTRAINT DF_LoanMast_Memo3 DEFAULT '',
  CONSTRAINT PK_LoanMast PRIMARY KEY (LoanID)
);

-- Repayment schedule, one row an instalment. Exactly these 19 columns in this order: rows are copied
-- back from SchMast2 without a column list.
CREATE TABLE SchMast (
  SchID           int            NOT NULL,
  LoanID          nvarchar(50)   NOT NULL,
  CustID          nvarchar(50)   NULL CONSTRAINT DF_SchMast_CustID DEFAULT '',
  DueDate         datetime       NULL,
  PayableAmt      decimal(18, 2) NULL CONSTRAINT DF_SchMast_PayableAmt DEFAULT 0,
  CapitalAmt      decimal(18, 2) NULL CONSTRAINT DF_SchMast_CapitalAmt DEFAULT 0,
  InterestAmt     decimal(18, 2) NULL CONSTRAINT DF_SchMast_InterestAmt DEFAULT 0,
  IntChargeAmt    decimal(18, 2) NULL CONSTRAINT DF_SchMast_IntChargeAmt DEFAULT 0,
  IntAmt          decimal(18, 2) NULL CONSTRAINT DF_SchMast_IntAmt DEFAULT 0,
  Payment         decimal(18, 2) NULL CONSTRAINT DF_SchMast_Payment DEFAULT 0,
  CapitalPayment  decimal(18, 2) NULL CONSTRAINT DF_SchMast_CapitalPayment DEFAULT 0,
  InterestPayment decimal(18, 2) NULL CONSTRAINT DF_SchMast_InterestPayment DEFAULT 0,
  DragInt         decimal(18, 2) NULL CONSTRAINT DF_SchMast_DragInt DEFAULT 0,
  DragIntPaid     decimal(18, 2) NULL CONSTRAINT DF_SchMast_DragIntPaid DEFAULT 0,
  LateInt         decimal(18, 2) NULL CONSTRAINT DF_SchMast_LateInt DEFAULT 0,
  LoanBal         decimal(18, 2) NULL CONSTRAINT DF_SchMast_LoanBal DEFAULT 0,
  PayExtra        decimal(18, 2) NULL CONSTRAINT DF_SchMast_PayExtra DEFAULT 0,
  IntDate         datetime       NULL,
  FIntAmt         decimal(18, 2) NULL CONSTRAINT DF_SchMast_FIntAmt DEFAULT 0,
  CONSTRAINT PK_SchMast PRIMARY KEY (LoanID, SchID)
);

-- The schedule as it was generated. Exactly these 9 columns in this order.
CREATE TABLE SchMast2 (
  SchID       int            NOT NULL,
  LoanID      nvarchar(50)   NOT NULL,
  CustID      nvarchar(50)   NULL CONSTRAINT DF_SchMast2_CustID DEFAULT '',
  DueDate     datetime       NULL,
  PayableAmt  decimal(18, 2) NULL CONSTRAINT DF_SchMast2_PayableAmt DEFAULT 0,
  CapitalAmt  decimal(18, 2) NULL CONSTRAINT DF_SchMast2_CapitalAmt DEFAULT 0,
  InterestAmt decimal(18, 2) NULL CONSTRAINT DF_SchMast2_InterestAmt DEFAULT 0,
  LoanBal     decimal(18, 2) NULL CONSTRAINT DF_SchMast2_LoanBal DEFAULT 0,
  FIntAmt     decimal(18, 2) NULL CONSTRAINT DF_SchMast2_FIntAmt DEFAULT 0,
  CONSTRAINT PK_SchMast2 PRIMARY KEY (LoanID, SchID)
);

-- Payments. Memo5 is money: the rebuild of a loan sums it.
CREATE TABLE PaymentMast (
  PayID          nvarchar(50)   NOT NULL,
  LoanID         nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_LoanID DEFAULT '',
  CustID         nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_CustID DEFAULT '',
  SchID          int            NULL CONSTRAINT DF_PaymentMast_SchID DEFAULT 0,
  CompCode       nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_CompCode DEFAULT '',
  PayDate        datetime       NULL,
  CollectInfoID  nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_CollectInfoID DEFAULT '',
  PayAmt         decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_PayAmt DEFAULT 0,
  IntAmt         decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_IntAmt DEFAULT 0,
  ChargeAmt      decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_ChargeAmt DEFAULT 0,
  CollectorAmt   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_CollectorAmt DEFAULT 0,
  DiscAmt        decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_DiscAmt DEFAULT 0,
  Bank           nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_Bank DEFAULT '',
  ChqNo          nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_ChqNo DEFAULT '',
  SalesmanID     nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_SalesmanID DEFAULT '',
  SalesmanComm   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_SalesmanComm DEFAULT 0,
  LastDueDate    datetime       NULL,
  NextDueDate    datetime       NULL,
  PaymentStatus  nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_PaymentStatus DEFAULT '',
  DeletePayID    nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_DeletePayID DEFAULT '',
  OldLoanBal     decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_OldLoanBal DEFAULT 0,
  NewLoanBal     decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_NewLoanBal DEFAULT 0,
  PayableAmt     decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_PayableAmt DEFAULT 0,
  IntChargeAmt   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_IntChargeAmt DEFAULT 0,
  DragInt        decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_DragInt DEFAULT 0,
  Memo1          nvarchar(1000) NULL CONSTRAINT DF_PaymentMast_Memo1 DEFAULT '',
  Memo2          nvarchar(1000) NULL CONSTRAINT DF_PaymentMast_Memo2 DEFAULT '',
  Memo3          nvarchar(1000) NULL CONSTRAINT DF_PaymentMast_Memo3 DEFAULT '',
  Memo5          decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_Memo5 DEFAULT 0,
  UserID         nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_UserID DEFAULT '',
  DragLoan       nvarchar(10)   NULL CONSTRAINT DF_PaymentMast_DragLoan DEFAULT '',
  Settlement     nvarchar(1)    NULL CONSTRAINT DF_PaymentMast_Settlement DEFAULT '',
  WithdrawDate   datetime       NULL,
  BankOpenBal    decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_BankOpenBal DEFAULT 0,
  WithdrawAmt    decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_WithdrawAmt DEFAULT 0,
  RepaymentAmt   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_RepaymentAmt DEFAULT 0,
  BankinReturn   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_BankinReturn DEFAULT 0,
  BankCloseBal   decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_BankCloseBal DEFAULT 0,
  TopUpAmt       decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_TopUpAmt DEFAULT 0,
  TopTerm        int            NULL CONSTRAINT DF_PaymentMast_TopTerm DEFAULT 0,
  TopAmt         decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_TopAmt DEFAULT 0,
  DateCreated    datetime       NULL,
  InstalAmt      decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_InstalAmt DEFAULT 0,
  PayExtra       decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_PayExtra DEFAULT 0,
  ReceiptNo      nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_ReceiptNo DEFAULT '',
  IntPay         decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_IntPay DEFAULT 0,
  CapPay         decimal(18, 2) NULL CONSTRAINT DF_PaymentMast_CapPay DEFAULT 0,
  LampiranStatus nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_LampiranStatus DEFAULT '',
  OldPayID       nvarchar(50)   NULL CONSTRAINT DF_PaymentMast_OldPayID DEFAULT '',
  CONSTRAINT PK_PaymentMast PRIMARY KEY (PayID)
);

-- Expected payments of a loan.
CREATE TABLE PaymentList (
  LoanID      nvarchar(50)   NOT NULL,
  SeqNo       int            NOT NULL,
  DueDate     datetime       NULL,
  PayDate     datetime       NULL,
  PayAmt      decimal(18, 2) NULL CONSTRAINT DF_PaymentList_PayAmt DEFAULT 0,
  PayID       nvarchar(50)   NULL CONSTRAINT DF_PaymentList_PayID DEFAULT '',
  DateCreated datetime       NULL,
  UserID      nvarchar(50)   NULL CONSTRAINT DF_PaymentList_UserID DEFAULT '',
  CONSTRAINT PK_PaymentList PRIMARY KEY (LoanID, SeqNo)
);

-- Late charges, invoices, credit notes and their payments.
CREATE TABLE ChargeMast (
  ChargeID    nvarchar(50)   NOT NULL,
  TrxDate     datetime       NULL,
  LoanID      nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_LoanID DEFAULT '',
  CustID      nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_CustID DEFAULT '',
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_CompCode DEFAULT '',
  DueDate     datetime       NULL,
  LateAmt     decimal(18, 2) NULL CONSTRAINT DF_ChargeMast_LateAmt DEFAULT 0,
  LateInt     decimal(18, 2) NULL CONSTRAINT DF_ChargeMast_LateInt DEFAULT 0,
  ChargeAmt   decimal(18, 2) NULL CONSTRAINT DF_ChargeMast_ChargeAmt DEFAULT 0,
  ChargeDesc  nvarchar(300)  NULL CONSTRAINT DF_ChargeMast_ChargeDesc DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_UserID DEFAULT '',
  DateCreated datetime       NULL,
  PType       nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_PType DEFAULT '',
  OrgAmt      decimal(18, 2) NULL CONSTRAINT DF_ChargeMast_OrgAmt DEFAULT 0,
  OldChargeID nvarchar(50)   NULL CONSTRAINT DF_ChargeMast_OldChargeID DEFAULT '',
  BatchDate   datetime       NULL,
  CONSTRAINT PK_ChargeMast PRIMARY KEY (ChargeID)
);

-- Drawdowns of flexi loans.
CREATE TABLE DrawDownMast (
  SID         nvarchar(50)   NOT NULL,
  LoanID      nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_LoanID DEFAULT '',
  CustID      nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_CustID DEFAULT '',
  TrxDate     datetime       NULL,
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_CompCode DEFAULT '',
  DrawDownAmt decimal(18, 2) NULL CONSTRAINT DF_DrawDownMast_DrawDownAmt DEFAULT 0,
  Payee       nvarchar(300)  NULL CONSTRAINT DF_DrawDownMast_Payee DEFAULT '',
  Bank        nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_Bank DEFAULT '',
  ChqNo       nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_ChqNo DEFAULT '',
  Remarks     nvarchar(1000) NULL CONSTRAINT DF_DrawDownMast_Remarks DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_DrawDownMast_UserID DEFAULT '',
  DateCreated datetime       NULL,
  CONSTRAINT PK_DrawDownMast PRIMARY KEY (SID)
);

-- Cash book. The server numbers the rows.
CREATE TABLE CashBook (
  CompCode nvarchar(50)       NULL CONSTRAINT DF_CashBook_CompCode DEFAULT '',
  TranDate datetime           NULL,
  TranType nvarchar(50)       NULL CONSTRAINT DF_CashBook_TranType DEFAULT '',
  TranDesc nvarchar(300)      NULL CONSTRAINT DF_CashBook_TranDesc DEFAULT '',
  TranMemo nvarchar(1000)     NULL CONSTRAINT DF_CashBook_TranMemo DEFAULT '',
  TranAmt  decimal(18, 2)     NULL CONSTRAINT DF_CashBook_TranAmt DEFAULT 0,
  CashBal  decimal(18, 2)     NULL CONSTRAINT DF_CashBook_CashBal DEFAULT 0,
  BankBal  decimal(18, 2)     NULL CONSTRAINT DF_CashBook_BankBal DEFAULT 0,
  CBType   nvarchar(50)       NULL CONSTRAINT DF_CashBook_CBType DEFAULT '',
  CatCode  nvarchar(50)       NULL CONSTRAINT DF_CashBook_CatCode DEFAULT '',
  DocID    int IDENTITY(1, 1) NOT NULL,
  CONSTRAINT PK_CashBook PRIMARY KEY (DocID)
);

-- Expenses and other income. The server numbers the rows.
CREATE TABLE PersonalExp (
  TrxID        int IDENTITY(1, 1) NOT NULL,
  CompCode     nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_CompCode DEFAULT '',
  UserID       nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_UserID DEFAULT '',
  TrxDate      datetime           NULL,
  TrxDesc      nvarchar(300)      NULL CONSTRAINT DF_PersonalExp_TrxDesc DEFAULT '',
  DebitAmt     decimal(18, 2)     NULL CONSTRAINT DF_PersonalExp_DebitAmt DEFAULT 0,
  CreditAmt    decimal(18, 2)     NULL CONSTRAINT DF_PersonalExp_CreditAmt DEFAULT 0,
  CreatedDate  datetime           NULL,
  ModifiedDate datetime           NULL,
  ModifiedBy   nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_ModifiedBy DEFAULT '',
  CBCat        nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_CBCat DEFAULT '',
  Bank         nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_Bank DEFAULT '',
  ChqNo        nvarchar(50)       NULL CONSTRAINT DF_PersonalExp_ChqNo DEFAULT '',
  CONSTRAINT PK_PersonalExp PRIMARY KEY (TrxID)
);

-- The lending companies. CashInHand and CashInBank are running balances.
CREATE TABLE CompMast (
  CompCode        nvarchar(50)   NOT NULL,
  CompDesc        nvarchar(300)  NULL CONSTRAINT DF_CompMast_CompDesc DEFAULT '',
  AreaCode        nvarchar(50)   NULL CONSTRAINT DF_CompMast_AreaCode DEFAULT '',
  Address         nvarchar(300)  NULL CONSTRAINT DF_CompMast_Address DEFAULT '',
  PersonIncharge  nvarchar(300)  NULL CONSTRAINT DF_CompMast_PersonIncharge DEFAULT '',
  Tel1            nvarchar(50)   NULL CONSTRAINT DF_CompMast_Tel1 DEFAULT '',
  Tel2            nvarchar(50)   NULL CONSTRAINT DF_CompMast_Tel2 DEFAULT '',
  Fax             nvarchar(50)   NULL CONSTRAINT DF_CompMast_Fax DEFAULT '',
  HP1             nvarchar(50)   NULL CONSTRAINT DF_CompMast_HP1 DEFAULT '',
  HP2             nvarchar(50)   NULL CONSTRAINT DF_CompMast_HP2 DEFAULT '',
  CashInHand      decimal(18, 2) NULL CONSTRAINT DF_CompMast_CashInHand DEFAULT 0,
  CashInBank      decimal(18, 2) NULL CONSTRAINT DF_CompMast_CashInBank DEFAULT 0,
  CompNo          nvarchar(50)   NULL CONSTRAINT DF_CompMast_CompNo DEFAULT '',
  LicenseNo       nvarchar(50)   NULL CONSTRAINT DF_CompMast_LicenseNo DEFAULT '',
  email           nvarchar(300)  NULL CONSTRAINT DF_CompMast_email DEFAULT '',
  CompanyType     nvarchar(50)   NULL CONSTRAINT DF_CompMast_CompanyType DEFAULT '',
  ICNo            nvarchar(50)   NULL CONSTRAINT DF_CompMast_ICNo DEFAULT '',
  SerialReceiptNo nvarchar(1)    NULL CONSTRAINT DF_CompMast_SerialReceiptNo DEFAULT '',
  SMSName         nvarchar(100)  NULL CONSTRAINT DF_CompMast_SMSName DEFAULT '',
  CONSTRAINT PK_CompMast PRIMARY KEY (CompCode)
);

-- The business that runs this office; one row.
CREATE TABLE CompanyProfile (
  CompanyName nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_CompanyName DEFAULT '',
  RegNo       nvarchar(50)  NULL CONSTRAINT DF_CompanyProfile_RegNo DEFAULT '',
  LicenseNo   nvarchar(50)  NULL CONSTRAINT DF_CompanyProfile_LicenseNo DEFAULT '',
  Tel         nvarchar(50)  NULL CONSTRAINT DF_CompanyProfile_Tel DEFAULT '',
  Fax         nvarchar(50)  NULL CONSTRAINT DF_CompanyProfile_Fax DEFAULT '',
  email       nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_email DEFAULT '',
  Address1    nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_Address1 DEFAULT '',
  Address2    nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_Address2 DEFAULT '',
  Address3    nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_Address3 DEFAULT '',
  PostCode    nvarchar(50)  NULL CONSTRAINT DF_CompanyProfile_PostCode DEFAULT '',
  City        nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_City DEFAULT '',
  State       nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_State DEFAULT '',
  LogoFile    nvarchar(300) NULL CONSTRAINT DF_CompanyProfile_LogoFile DEFAULT ''
);

-- Users. UserDept holds the password hash, gcc2 the companies a user may see, one a line.
CREATE TABLE UserMast (
  UserID           nvarchar(50)  NOT NULL,
  UserName         nvarchar(300) NULL CONSTRAINT DF_UserMast_UserName DEFAULT '',
  UserLevel        nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserLevel DEFAULT '',
  UserDept         nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserDept DEFAULT '',
  Special          int           NULL CONSTRAINT DF_UserMast_Special DEFAULT 0,
  FollowUpFlag     int           NULL CONSTRAINT DF_UserMast_FollowUpFlag DEFAULT 0,
  CompCode         nvarchar(50)  NULL CONSTRAINT DF_UserMast_CompCode DEFAULT '',
  AccessLoan       int           NULL CONSTRAINT DF_UserMast_AccessLoan DEFAULT 0,
  AccessPayment    int           NULL CONSTRAINT DF_UserMast_AccessPayment DEFAULT 0,
  gcc2             nvarchar(max) NULL CONSTRAINT DF_UserMast_gcc2 DEFAULT '',
  DateCreated      datetime      NULL,
  UserNIC          nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserNIC DEFAULT '',
  UserDOB          datetime      NULL,
  UserOIC          nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserOIC DEFAULT '',
  UserGender       nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserGender DEFAULT '',
  UserRace         nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserRace DEFAULT '',
  UserAdd1         nvarchar(300) NULL CONSTRAINT DF_UserMast_UserAdd1 DEFAULT '',
  UserAdd2         nvarchar(300) NULL CONSTRAINT DF_UserMast_UserAdd2 DEFAULT '',
  UserAdd3         nvarchar(300) NULL CONSTRAINT DF_UserMast_UserAdd3 DEFAULT '',
  UserPostCode     nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserPostCode DEFAULT '',
  UserCity         nvarchar(300) NULL CONSTRAINT DF_UserMast_UserCity DEFAULT '',
  UserState        nvarchar(300) NULL CONSTRAINT DF_UserMast_UserState DEFAULT '',
  UserHP1          nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserHP1 DEFAULT '',
  UserHP2          nvarchar(50)  NULL CONSTRAINT DF_UserMast_UserHP2 DEFAULT '',
  TimeStart        nvarchar(5)   NULL CONSTRAINT DF_UserMast_TimeStart DEFAULT '',
  TimeEnd          nvarchar(5)   NULL CONSTRAINT DF_UserMast_TimeEnd DEFAULT '',
  Pic1             nvarchar(300) NULL CONSTRAINT DF_UserMast_Pic1 DEFAULT '',
  AllowDelete      int           NULL CONSTRAINT DF_UserMast_AllowDelete DEFAULT 0,
  AllowEdit        int           NULL CONSTRAINT DF_UserMast_AllowEdit DEFAULT 0,
  AllowDisc        int           NULL CONSTRAINT DF_UserMast_AllowDisc DEFAULT 0,
  AllowCreditLimit int           NULL CONSTRAINT DF_UserMast_AllowCreditLimit DEFAULT 0,
  CONSTRAINT PK_UserMast PRIMARY KEY (UserID)
);

-- Menu entries that a user may see.
CREATE TABLE UserAccess (
  UserID   nvarchar(50) NOT NULL,
  MenuList nvarchar(50) NOT NULL,
  MenuNo   int          NULL CONSTRAINT DF_UserAccess_MenuNo DEFAULT 0,
  CONSTRAINT PK_UserAccess PRIMARY KEY (UserID, MenuList)
);

-- Counters. CustID is the key of the counter, whatever it counts. Exactly three columns.
CREATE TABLE NumberMast (
  CustID    nvarchar(100) NOT NULL,
  LoanNo    nvarchar(50)  NULL CONSTRAINT DF_NumberMast_LoanNo DEFAULT '',
  PaymentNo nvarchar(50)  NULL CONSTRAINT DF_NumberMast_PaymentNo DEFAULT '',
  CONSTRAINT PK_NumberMast PRIMARY KEY (CustID)
);

-- Settings and the guard keys of the patches. Two columns take values; ID is another name of Param.
CREATE TABLE Systemast (
  Param nvarchar(50)   NOT NULL,
  Value nvarchar(1000) NULL,
  ID    AS Param,
  CONSTRAINT PK_Systemast PRIMARY KEY (Param)
);

-- Conversations about arrears.
CREATE TABLE FollowUpMast (
  HisDate     datetime       NULL,
  HisTime     nvarchar(8)    NULL CONSTRAINT DF_FollowUpMast_HisTime DEFAULT '',
  LoanID      nvarchar(50)   NULL CONSTRAINT DF_FollowUpMast_LoanID DEFAULT '',
  HisStatus   nvarchar(50)   NULL CONSTRAINT DF_FollowUpMast_HisStatus DEFAULT '',
  HisRemarks  nvarchar(1000) NULL CONSTRAINT DF_FollowUpMast_HisRemarks DEFAULT '',
  NextCall    datetime       NULL,
  UserID      nvarchar(50)   NULL CONSTRAINT DF_FollowUpMast_UserID DEFAULT '',
  DateCreated datetime       NULL
);

-- Documents of a customer.
CREATE TABLE DocumentMast (
  CustID      nvarchar(50)  NOT NULL,
  DocNo       nvarchar(50)  NOT NULL,
  CompCode    nvarchar(50)  NULL CONSTRAINT DF_DocumentMast_CompCode DEFAULT '',
  DocDesc     nvarchar(300) NULL CONSTRAINT DF_DocumentMast_DocDesc DEFAULT '',
  DocName     nvarchar(300) NULL CONSTRAINT DF_DocumentMast_DocName DEFAULT '',
  UserID      nvarchar(50)  NULL CONSTRAINT DF_DocumentMast_UserID DEFAULT '',
  DateCreated datetime      NULL,
  CONSTRAINT PK_DocumentMast PRIMARY KEY (CustID, DocNo)
);

-- Loan applications; the property columns are those of LoanMast.
CREATE TABLE AppMast (
  AppID            nvarchar(50)   NOT NULL,
  CompCode         nvarchar(50)   NULL CONSTRAINT DF_AppMast_CompCode DEFAULT '',
  LoanID           nvarchar(50)   NULL CONSTRAINT DF_AppMast_LoanID DEFAULT '',
  CustID           nvarchar(50)   NULL CONSTRAINT DF_AppMast_CustID DEFAULT '',
  TrxDate          datetime       NULL,
  NextDueDate      datetime       NULL,
  LoanAmt2         decimal(18, 2) NULL CONSTRAINT DF_AppMast_LoanAmt2 DEFAULT 0,
  TopUpAmt         decimal(18, 2) NULL CONSTRAINT DF_AppMast_TopUpAmt DEFAULT 0,
  LoanAmt          decimal(18, 2) NULL CONSTRAINT DF_AppMast_LoanAmt DEFAULT 0,
  FirstPayment     decimal(18, 2) NULL CONSTRAINT DF_AppMast_FirstPayment DEFAULT 0,
  InstallmentAmt   decimal(18, 2) NULL CONSTRAINT DF_AppMast_InstallmentAmt DEFAULT 0,
  LastPayment      decimal(18, 2) NULL CONSTRAINT DF_AppMast_LastPayment DEFAULT 0,
  TermInt          decimal(18, 2) NULL CONSTRAINT DF_AppMast_TermInt DEFAULT 0,
  LoanBal          decimal(18, 2) NULL CONSTRAINT DF_AppMast_LoanBal DEFAULT 0,
  LoanTypeID       nvarchar(50)   NULL CONSTRAINT DF_AppMast_LoanTypeID DEFAULT '',
  LoanType         nvarchar(50)   NULL CONSTRAINT DF_AppMast_LoanType DEFAULT '',
  DragLoan         nvarchar(10)   NULL CONSTRAINT DF_AppMast_DragLoan DEFAULT '',
  LoanPurpose      nvarchar(300)  NULL CONSTRAINT DF_AppMast_LoanPurpose DEFAULT '',
  InsRate          decimal(18, 4) NULL CONSTRAINT DF_AppMast_InsRate DEFAULT 0,
  LoanTerm         nvarchar(50)   NULL CONSTRAINT DF_AppMast_LoanTerm DEFAULT '',
  LoanTerm3        nvarchar(50)   NULL CONSTRAINT DF_AppMast_LoanTerm3 DEFAULT '',
  CollateralID     nvarchar(50)   NULL CONSTRAINT DF_AppMast_CollateralID DEFAULT '',
  Memo2            nvarchar(1000) NULL CONSTRAINT DF_AppMast_Memo2 DEFAULT '',
  Memo4            decimal(18, 2) NULL CONSTRAINT DF_AppMast_Memo4 DEFAULT 0,
  ForceSalesAmt    decimal(18, 2) NULL CONSTRAINT DF_AppMast_ForceSalesAmt DEFAULT 0,
  ValuerName       nvarchar(300)  NULL CONSTRAINT DF_AppMast_ValuerName DEFAULT '',
  ValuerFrom       nvarchar(300)  NULL CONSTRAINT DF_AppMast_ValuerFrom DEFAULT '',
  ValuationDate    datetime       NULL,
  PropertyStatus   nvarchar(50)   NULL CONSTRAINT DF_AppMast_PropertyStatus DEFAULT '',
  PropertyAdd1     nvarchar(300)  NULL CONSTRAINT DF_AppMast_PropertyAdd1 DEFAULT '',
  PropertyType     nvarchar(50)   NULL CONSTRAINT DF_AppMast_PropertyType DEFAULT '',
  BuiltUpArea      nvarchar(50)   NULL CONSTRAINT DF_AppMast_BuiltUpArea DEFAULT '',
  LandArea         nvarchar(50)   NULL CONSTRAINT DF_AppMast_LandArea DEFAULT '',
  LandStatus       nvarchar(50)   NULL CONSTRAINT DF_AppMast_LandStatus DEFAULT '',
  LeaseHoldExpDate datetime       NULL,
  ExpectRental     decimal(18, 2) NULL CONSTRAINT DF_AppMast_ExpectRental DEFAULT 0,
  TitleType        nvarchar(50)   NULL CONSTRAINT DF_AppMast_TitleType DEFAULT '',
  TitleNo          nvarchar(50)   NULL CONSTRAINT DF_AppMast_TitleNo DEFAULT '',
  Mukim            nvarchar(300)  NULL CONSTRAINT DF_AppMast_Mukim DEFAULT '',
  LotNoPTNo        nvarchar(300)  NULL CONSTRAINT DF_AppMast_LotNoPTNo DEFAULT '',
  District         nvarchar(300)  NULL CONSTRAINT DF_AppMast_District DEFAULT '',
  SectionNo        nvarchar(50)   NULL CONSTRAINT DF_AppMast_SectionNo DEFAULT '',
  State            nvarchar(300)  NULL CONSTRAINT DF_AppMast_State DEFAULT '',
  PurchasePrice    decimal(18, 2) NULL CONSTRAINT DF_AppMast_PurchasePrice DEFAULT 0,
  PropertyLand     nvarchar(50)   NULL CONSTRAINT DF_AppMast_PropertyLand DEFAULT '',
  BumiPrice        decimal(18, 2) NULL CONSTRAINT DF_AppMast_BumiPrice DEFAULT 0,
  Construction     nvarchar(50)   NULL CONSTRAINT DF_AppMast_Construction DEFAULT '',
  InsuranceComp    nvarchar(300)  NULL CONSTRAINT DF_AppMast_InsuranceComp DEFAULT '',
  SumInsured       decimal(18, 2) NULL CONSTRAINT DF_AppMast_SumInsured DEFAULT 0,
  ReminderDate     datetime       NULL,
  ReminderDate2    datetime       NULL,
  MRTA             nvarchar(50)   NULL CONSTRAINT DF_AppMast_MRTA DEFAULT '',
  AppStatus        nvarchar(50)   NULL CONSTRAINT DF_AppMast_AppStatus DEFAULT '',
  AppStatus2       nvarchar(50)   NULL CONSTRAINT DF_AppMast_AppStatus2 DEFAULT '',
  ApprovedUser     nvarchar(50)   NULL CONSTRAINT DF_AppMast_ApprovedUser DEFAULT '',
  ApprovedUser2    nvarchar(50)   NULL CONSTRAINT DF_AppMast_ApprovedUser2 DEFAULT '',
  ApprovalDate     datetime       NULL,
  ApprovalDate2    datetime       NULL,
  OtherCond        nvarchar(max)  NULL CONSTRAINT DF_AppMast_OtherCond DEFAULT '',
  Opt1             nvarchar(1)    NULL CONSTRAINT DF_AppMast_Opt1 DEFAULT '',
  Opt2             nvarchar(1)    NULL CONSTRAINT DF_AppMast_Opt2 DEFAULT '',
  Opt3             nvarchar(1)    NULL CONSTRAINT DF_AppMast_Opt3 DEFAULT '',
  Opt4             nvarchar(1)    NULL CONSTRAINT DF_AppMast_Opt4 DEFAULT '',
  Opt5             nvarchar(1)    NULL CONSTRAINT DF_AppMast_Opt5 DEFAULT '',
  UserID           nvarchar(50)   NULL CONSTRAINT DF_AppMast_UserID DEFAULT '',
  DateCreated      datetime       NULL,
  CONSTRAINT PK_AppMast PRIMARY KEY (AppID)
);

-- Further people of an application.
CREATE TABLE AppMastLink (
  AppID        nvarchar(50)  NOT NULL,
  CustID       nvarchar(50)  NOT NULL,
  AppType      nvarchar(50)  NULL CONSTRAINT DF_AppMastLink_AppType DEFAULT '',
  Relationship nvarchar(300) NULL CONSTRAINT DF_AppMastLink_Relationship DEFAULT '',
  CONSTRAINT PK_AppMastLink PRIMARY KEY (AppID, CustID)
);

-- What happened to an application.
CREATE TABLE AppHist (
  AppID       nvarchar(50)   NOT NULL,
  AppSeq      int            NOT NULL,
  TrxDate     datetime       NULL,
  AppDesc     nvarchar(1000) NULL CONSTRAINT DF_AppHist_AppDesc DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_AppHist_UserID DEFAULT '',
  DateCreated datetime       NULL,
  CONSTRAINT PK_AppHist PRIMARY KEY (AppID, AppSeq)
);

-- Reducing term insurance offers of an application.
CREATE TABLE MRTAMast (
  AppID          nvarchar(50)   NOT NULL,
  AppSeq         int            NOT NULL,
  MRTAName       nvarchar(300)  NULL CONSTRAINT DF_MRTAMast_MRTAName DEFAULT '',
  MRTASumInsured decimal(18, 2) NULL CONSTRAINT DF_MRTAMast_MRTASumInsured DEFAULT 0,
  MRTAPremium    decimal(18, 2) NULL CONSTRAINT DF_MRTAMast_MRTAPremium DEFAULT 0,
  CONSTRAINT PK_MRTAMast PRIMARY KEY (AppID, AppSeq)
);

-- Post-dated cheques of a loan.
CREATE TABLE ChqMast (
  LoanID    nvarchar(50)   NOT NULL,
  SeqNo     int            NOT NULL,
  ChqNo     nvarchar(50)   NULL CONSTRAINT DF_ChqMast_ChqNo DEFAULT '',
  ChqDate   datetime       NULL,
  ChqBank   nvarchar(50)   NULL CONSTRAINT DF_ChqMast_ChqBank DEFAULT '',
  ChqAmt    decimal(18, 2) NULL CONSTRAINT DF_ChqMast_ChqAmt DEFAULT 0,
  PayID     nvarchar(50)   NULL CONSTRAINT DF_ChqMast_PayID DEFAULT '',
  PayDate   datetime       NULL,
  ChqStatus nvarchar(50)   NULL CONSTRAINT DF_ChqMast_ChqStatus DEFAULT 'NEW',
  CONSTRAINT PK_ChqMast PRIMARY KEY (LoanID, SeqNo)
);

-- Papers to ask for, by kind of list.
CREATE TABLE CheckListMast (
  CheckListType nvarchar(50)  NOT NULL,
  CheckListSeq  int           NOT NULL,
  CheckListDesc nvarchar(300) NULL CONSTRAINT DF_CheckListMast_CheckListDesc DEFAULT '',
  CONSTRAINT PK_CheckListMast PRIMARY KEY (CheckListType, CheckListSeq)
);

-- The papers that a customer has brought.
CREATE TABLE CheckListTrans (
  CheckListType nvarchar(50)   NOT NULL,
  CustID        nvarchar(50)   NOT NULL,
  CheckListSeq  int            NOT NULL,
  CheckListDesc nvarchar(300)  NULL CONSTRAINT DF_CheckListTrans_CheckListDesc DEFAULT '',
  Detail        nvarchar(300)  NULL CONSTRAINT DF_CheckListTrans_Detail DEFAULT '',
  Checked       nvarchar(1)    NULL CONSTRAINT DF_CheckListTrans_Checked DEFAULT '2',
  Remarks       nvarchar(1000) NULL CONSTRAINT DF_CheckListTrans_Remarks DEFAULT '',
  CONSTRAINT PK_CheckListTrans PRIMARY KEY (CheckListType, CustID, CheckListSeq)
);

-- Gold purchase vouchers; LoanID is the number of the voucher.
CREATE TABLE GoldTransMast (
  LoanID      nvarchar(50)   NOT NULL,
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_GoldTransMast_CompCode DEFAULT '',
  CustID      nvarchar(50)   NULL CONSTRAINT DF_GoldTransMast_CustID DEFAULT '',
  TrxDate     datetime       NULL,
  TotEstAmt   decimal(18, 2) NULL CONSTRAINT DF_GoldTransMast_TotEstAmt DEFAULT 0,
  TotAmt      decimal(18, 2) NULL CONSTRAINT DF_GoldTransMast_TotAmt DEFAULT 0,
  OtherAmt    decimal(18, 2) NULL CONSTRAINT DF_GoldTransMast_OtherAmt DEFAULT 0,
  PayAmt      decimal(18, 2) NULL CONSTRAINT DF_GoldTransMast_PayAmt DEFAULT 0,
  UserID      nvarchar(50)   NULL CONSTRAINT DF_GoldTransMast_UserID DEFAULT '',
  DateCreated datetime       NULL,
  Remarks     nvarchar(1000) NULL CONSTRAINT DF_GoldTransMast_Remarks DEFAULT '',
  CONSTRAINT PK_GoldTransMast PRIMARY KEY (LoanID)
);

-- The pieces of gold of a voucher.
CREATE TABLE LoanCollateral (
  LoanID      nvarchar(50)   NOT NULL,
  SeqNo       int            NOT NULL,
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_LoanCollateral_CompCode DEFAULT '',
  CustID      nvarchar(50)   NULL CONSTRAINT DF_LoanCollateral_CustID DEFAULT '',
  GoldID      nvarchar(50)   NULL CONSTRAINT DF_LoanCollateral_GoldID DEFAULT '',
  GoldDesc    nvarchar(300)  NULL CONSTRAINT DF_LoanCollateral_GoldDesc DEFAULT '',
  Qty         decimal(18, 2) NULL CONSTRAINT DF_LoanCollateral_Qty DEFAULT 0,
  UnitPrice   decimal(18, 2) NULL CONSTRAINT DF_LoanCollateral_UnitPrice DEFAULT 0,
  Weight      decimal(18, 4) NULL CONSTRAINT DF_LoanCollateral_Weight DEFAULT 0,
  TotalAmt    decimal(18, 2) NULL CONSTRAINT DF_LoanCollateral_TotalAmt DEFAULT 0,
  LoanAmt     decimal(18, 2) NULL CONSTRAINT DF_LoanCollateral_LoanAmt DEFAULT 0,
  SoldAmt     decimal(18, 2) NULL CONSTRAINT DF_LoanCollateral_SoldAmt DEFAULT 0,
  Remarks     nvarchar(1000) NULL CONSTRAINT DF_LoanCollateral_Remarks DEFAULT '',
  SoldRemarks nvarchar(1000) NULL CONSTRAINT DF_LoanCollateral_SoldRemarks DEFAULT '',
  SoldDate    datetime       NULL,
  SoldUserID  nvarchar(50)   NULL CONSTRAINT DF_LoanCollateral_SoldUserID DEFAULT '',
  CONSTRAINT PK_LoanCollateral PRIMARY KEY (LoanID, SeqNo)
);

-- Suppliers.
CREATE TABLE SupplierMast (
  SuppID      nvarchar(50)   NOT NULL,
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_SupplierMast_CompCode DEFAULT '',
  SuppName    nvarchar(300)  NULL CONSTRAINT DF_SupplierMast_SuppName DEFAULT '',
  TrxDate     datetime       NULL,
  Add1        nvarchar(300)  NULL CONSTRAINT DF_SupplierMast_Add1 DEFAULT '',
  Add2        nvarchar(300)  NULL CONSTRAINT DF_SupplierMast_Add2 DEFAULT '',
  Add3        nvarchar(300)  NULL CONSTRAINT DF_SupplierMast_Add3 DEFAULT '',
  Add4        nvarchar(300)  NULL CONSTRAINT DF_SupplierMast_Add4 DEFAULT '',
  Tel1        nvarchar(50)   NULL CONSTRAINT DF_SupplierMast_Tel1 DEFAULT '',
  Tel2        nvarchar(50)   NULL CONSTRAINT DF_SupplierMast_Tel2 DEFAULT '',
  Remark      nvarchar(1000) NULL CONSTRAINT DF_SupplierMast_Remark DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_SupplierMast_UserID DEFAULT '',
  DateCreated datetime       NULL,
  CONSTRAINT PK_SupplierMast PRIMARY KEY (SuppID)
);

-- Invoices, credit notes and payments of suppliers.
CREATE TABLE SupplierTrans (
  TransID     nvarchar(50)   NOT NULL,
  SuppID      nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_SuppID DEFAULT '',
  LoanID      nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_LoanID DEFAULT '',
  CustID      nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_CustID DEFAULT '',
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_CompCode DEFAULT '',
  TrxDate     datetime       NULL,
  TransDesc   nvarchar(300)  NULL CONSTRAINT DF_SupplierTrans_TransDesc DEFAULT '',
  TransType   nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_TransType DEFAULT '',
  TransAmt    decimal(18, 2) NULL CONSTRAINT DF_SupplierTrans_TransAmt DEFAULT 0,
  UserID      nvarchar(50)   NULL CONSTRAINT DF_SupplierTrans_UserID DEFAULT '',
  DateCreated datetime       NULL,
  CONSTRAINT PK_SupplierTrans PRIMARY KEY (TransID)
);

-- Lines of bank files that were read.
CREATE TABLE PaymentReader (
  RefNo   nvarchar(300)  NOT NULL,
  Remarks nvarchar(1000) NULL CONSTRAINT DF_PaymentReader_Remarks DEFAULT '',
  PayID   nvarchar(50)   NULL CONSTRAINT DF_PaymentReader_PayID DEFAULT '',
  ErrMsg  nvarchar(1000) NULL CONSTRAINT DF_PaymentReader_ErrMsg DEFAULT '',
  CONSTRAINT PK_PaymentReader PRIMARY KEY (RefNo)
);

-- Which account of the accounting package takes which kind of money.
CREATE TABLE LinkAccMast (
  SeqNo       int           NOT NULL,
  LinkID      nvarchar(50)  NULL CONSTRAINT DF_LinkAccMast_LinkID DEFAULT '',
  LinkDesc    nvarchar(300) NULL CONSTRAINT DF_LinkAccMast_LinkDesc DEFAULT '',
  LinkAccCode nvarchar(50)  NULL CONSTRAINT DF_LinkAccMast_LinkAccCode DEFAULT '',
  LinkAccDesc nvarchar(300) NULL CONSTRAINT DF_LinkAccMast_LinkAccDesc DEFAULT '',
  CONSTRAINT PK_LinkAccMast PRIMARY KEY (SeqNo)
);

-- Templates of text messages.
CREATE TABLE SMSMast (
  TID         nvarchar(50)   NOT NULL,
  TrxDate     datetime       NULL,
  TName       nvarchar(300)  NULL CONSTRAINT DF_SMSMast_TName DEFAULT '',
  SMSContent  nvarchar(1000) NULL CONSTRAINT DF_SMSMast_SMSContent DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_SMSMast_UserID DEFAULT '',
  DateCreated datetime       NULL,
  CONSTRAINT PK_SMSMast PRIMARY KEY (TID)
);

-- Placeholders that a template may hold.
CREATE TABLE SMSField (
  FieldID nvarchar(100) NOT NULL,
  CONSTRAINT PK_SMSField PRIMARY KEY (FieldID)
);

-- Scratch rows of staged reports; several rows may share a recordid.
CREATE TABLE MasterReport (
  pcname     nvarchar(100)  NULL CONSTRAINT DF_MasterReport_pcname DEFAULT '',
  reportname nvarchar(100)  NULL CONSTRAINT DF_MasterReport_reportname DEFAULT '',
  recordid   nvarchar(150)  NULL CONSTRAINT DF_MasterReport_recordid DEFAULT '',
  s1         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s1 DEFAULT '',
  s2         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s2 DEFAULT '',
  s3         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s3 DEFAULT '',
  s4         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s4 DEFAULT '',
  s5         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s5 DEFAULT '',
  s6         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s6 DEFAULT '',
  s7         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s7 DEFAULT '',
  s8         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s8 DEFAULT '',
  s9         nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s9 DEFAULT '',
  s10        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s10 DEFAULT '',
  s11        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s11 DEFAULT '',
  s12        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s12 DEFAULT '',
  s13        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s13 DEFAULT '',
  s14        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s14 DEFAULT '',
  s15        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s15 DEFAULT '',
  s16        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s16 DEFAULT '',
  s17        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s17 DEFAULT '',
  s18        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s18 DEFAULT '',
  s19        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s19 DEFAULT '',
  s20        nvarchar(500)  NULL CONSTRAINT DF_MasterReport_s20 DEFAULT '',
  c1         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c1 DEFAULT 0,
  c2         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c2 DEFAULT 0,
  c3         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c3 DEFAULT 0,
  c4         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c4 DEFAULT 0,
  c5         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c5 DEFAULT 0,
  c6         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c6 DEFAULT 0,
  c7         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c7 DEFAULT 0,
  c8         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c8 DEFAULT 0,
  c9         decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c9 DEFAULT 0,
  c10        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c10 DEFAULT 0,
  c11        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c11 DEFAULT 0,
  c12        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c12 DEFAULT 0,
  c13        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c13 DEFAULT 0,
  c14        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c14 DEFAULT 0,
  c15        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c15 DEFAULT 0,
  c16        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c16 DEFAULT 0,
  c17        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c17 DEFAULT 0,
  c18        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c18 DEFAULT 0,
  c19        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c19 DEFAULT 0,
  c20        decimal(18, 2) NULL CONSTRAINT DF_MasterReport_c20 DEFAULT 0,
  d1         datetime       NULL,
  d2         datetime       NULL,
  d3         datetime       NULL,
  d4         datetime       NULL,
  d5         datetime       NULL
);

-- Figures of the yearly return, as texts; one row.
CREATE TABLE YearlyLoanMast (
  CompCode nvarchar(500) NULL CONSTRAINT DF_YearlyLoanMast_CompCode DEFAULT '',
  [year]   nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_year DEFAULT '',
  FromDate nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_FromDate DEFAULT '',
  ToDate   nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_ToDate DEFAULT '',
  field01  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field01 DEFAULT '',
  field02  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field02 DEFAULT '',
  field03  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field03 DEFAULT '',
  field04  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field04 DEFAULT '',
  field05  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field05 DEFAULT '',
  field06  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field06 DEFAULT '',
  field07  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field07 DEFAULT '',
  field08  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field08 DEFAULT '',
  field09  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field09 DEFAULT '',
  field10  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field10 DEFAULT '',
  field11  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field11 DEFAULT '',
  field12  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field12 DEFAULT '',
  field13  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field13 DEFAULT '',
  field14  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field14 DEFAULT '',
  field15  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field15 DEFAULT '',
  field16  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field16 DEFAULT '',
  field17  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field17 DEFAULT '',
  field18  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field18 DEFAULT '',
  field19  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field19 DEFAULT '',
  field20  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field20 DEFAULT '',
  field21  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field21 DEFAULT '',
  field22  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field22 DEFAULT '',
  field23  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field23 DEFAULT '',
  field24  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field24 DEFAULT '',
  field25  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field25 DEFAULT '',
  field26  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field26 DEFAULT '',
  field27  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field27 DEFAULT '',
  field28  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field28 DEFAULT '',
  field29  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field29 DEFAULT '',
  field30  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field30 DEFAULT '',
  field31  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field31 DEFAULT '',
  field32  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field32 DEFAULT '',
  field33  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field33 DEFAULT '',
  field34  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field34 DEFAULT '',
  field35  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field35 DEFAULT '',
  field36  nvarchar(50)  NULL CONSTRAINT DF_YearlyLoanMast_field36 DEFAULT ''
);

-- Emptied by the import of legacy data.
CREATE TABLE MonthlyMast (
  CompCode nvarchar(50) NULL CONSTRAINT DF_MonthlyMast_CompCode DEFAULT '',
  YYYYMM   nvarchar(50) NULL CONSTRAINT DF_MonthlyMast_YYYYMM DEFAULT ''
);

-- Code tables: a row a code.
CREATE TABLE AdvertiseMast (
  AdvertiseID   nvarchar(50)  NOT NULL,
  AdvertiseDesc nvarchar(300) NULL CONSTRAINT DF_AdvertiseMast_AdvertiseDesc DEFAULT '',
  CONSTRAINT PK_AdvertiseMast PRIMARY KEY (AdvertiseID)
);

CREATE TABLE AreaMast (
  AreaCode nvarchar(50)  NOT NULL,
  AreaDesc nvarchar(300) NULL CONSTRAINT DF_AreaMast_AreaDesc DEFAULT '',
  CONSTRAINT PK_AreaMast PRIMARY KEY (AreaCode)
);

CREATE TABLE BankMast (
  BankCode nvarchar(50)  NOT NULL,
  BankName nvarchar(300) NULL CONSTRAINT DF_BankMast_BankName DEFAULT '',
  CONSTRAINT PK_BankMast PRIMARY KEY (BankCode)
);

CREATE TABLE CampanyCategory (
  CompCatCode nvarchar(50)  NOT NULL,
  CompCatDesc nvarchar(300) NULL CONSTRAINT DF_CampanyCategory_CompCatDesc DEFAULT '',
  CONSTRAINT PK_CampanyCategory PRIMARY KEY (CompCatCode)
);

CREATE TABLE CashBookCat (
  CatCode nvarchar(50)  NOT NULL,
  CatDesc nvarchar(300) NULL CONSTRAINT DF_CashBookCat_CatDesc DEFAULT '',
  CONSTRAINT PK_CashBookCat PRIMARY KEY (CatCode)
);

CREATE TABLE CollateralMast (
  CollateralID   nvarchar(50)  NOT NULL,
  CollateralDesc nvarchar(300) NULL CONSTRAINT DF_CollateralMast_CollateralDesc DEFAULT '',
  CONSTRAINT PK_CollateralMast PRIMARY KEY (CollateralID)
);

CREATE TABLE CollectInfoMast (
  CollectInfoID   nvarchar(50)  NOT NULL,
  CollectInfoDesc nvarchar(300) NULL CONSTRAINT DF_CollectInfoMast_CollectInfoDesc DEFAULT '',
  CONSTRAINT PK_CollectInfoMast PRIMARY KEY (CollectInfoID)
);

CREATE TABLE CustRaceMast (
  CustRaceID   nvarchar(50)  NOT NULL,
  CustRaceDesc nvarchar(300) NULL CONSTRAINT DF_CustRaceMast_CustRaceDesc DEFAULT '',
  CONSTRAINT PK_CustRaceMast PRIMARY KEY (CustRaceID)
);

CREATE TABLE GoldTypeMast (
  GoldID   nvarchar(50)  NOT NULL,
  GoldDesc nvarchar(300) NULL CONSTRAINT DF_GoldTypeMast_GoldDesc DEFAULT '',
  CONSTRAINT PK_GoldTypeMast PRIMARY KEY (GoldID)
);

CREATE TABLE HisStatusMast (
  HisStatusID   nvarchar(50)  NOT NULL,
  HisStatusDesc nvarchar(300) NULL CONSTRAINT DF_HisStatusMast_HisStatusDesc DEFAULT '',
  CONSTRAINT PK_HisStatusMast PRIMARY KEY (HisStatusID)
);

CREATE TABLE LoanGroupMast (
  LoanGroupID   nvarchar(50)  NOT NULL,
  LoanGroupDesc nvarchar(300) NULL CONSTRAINT DF_LoanGroupMast_LoanGroupDesc DEFAULT '',
  CONSTRAINT PK_LoanGroupMast PRIMARY KEY (LoanGroupID)
);

CREATE TABLE LoanTypeMast (
  LoanTypeID   nvarchar(50)  NOT NULL,
  LoanTypeDesc nvarchar(300) NULL CONSTRAINT DF_LoanTypeMast_LoanTypeDesc DEFAULT '',
  CONSTRAINT PK_LoanTypeMast PRIMARY KEY (LoanTypeID)
);

CREATE TABLE OwnerMast (
  OwnerName nvarchar(300) NOT NULL,
  OwnerIC   nvarchar(50)  NULL CONSTRAINT DF_OwnerMast_OwnerIC DEFAULT '',
  PANo      nvarchar(50)  NULL CONSTRAINT DF_OwnerMast_PANo DEFAULT '',
  CONSTRAINT PK_OwnerMast PRIMARY KEY (OwnerName)
);

CREATE TABLE SalesmanMast (
  SalesmanID   nvarchar(50)   NOT NULL,
  SalesmanName nvarchar(300)  NULL CONSTRAINT DF_SalesmanMast_SalesmanName DEFAULT '',
  TotAccComm   decimal(18, 2) NULL CONSTRAINT DF_SalesmanMast_TotAccComm DEFAULT 0,
  TotPayComm   decimal(18, 2) NULL CONSTRAINT DF_SalesmanMast_TotPayComm DEFAULT 0,
  CONSTRAINT PK_SalesmanMast PRIMARY KEY (SalesmanID)
);

-- Indexes. Names are unique over the whole database.
CREATE INDEX IX_LoanMast_CustID ON LoanMast (CustID);
CREATE INDEX IX_LoanMast_CompCode_OldLoanCode ON LoanMast (CompCode, OldLoanCode);
CREATE INDEX IX_LoanMast_OldLoanCode ON LoanMast (OldLoanCode);
CREATE INDEX IX_LoanMast_CompCode_LoanID ON LoanMast (CompCode, LoanID);
CREATE INDEX IX_LoanMast_CompCode_TrxDate ON LoanMast (CompCode, TrxDate);
CREATE INDEX IX_LoanMast_NextDueDate ON LoanMast (NextDueDate);
CREATE INDEX IX_LoanMast_NextCall ON LoanMast (NextCall);
CREATE INDEX IX_LoanMast_AgreementNo_CompCode ON LoanMast (AgreementNo, CompCode);
CREATE INDEX IX_LoanMast_GuarantorNIC ON LoanMast (GuarantorNIC);
CREATE INDEX IX_LoanMast_GuarantorNIC2 ON LoanMast (GuarantorNIC2);
CREATE INDEX IX_SchMast_DueDate_LoanID_PayableAmt_Payment ON SchMast (DueDate, LoanID, PayableAmt, Payment);
CREATE INDEX IX_SchMast_CustID_DueDate ON SchMast (CustID, DueDate);
CREATE INDEX IX_PaymentMast_LoanID_PayID ON PaymentMast (LoanID, PayID);
CREATE INDEX IX_PaymentMast_LoanID_PayDate ON PaymentMast (LoanID, PayDate);
CREATE INDEX IX_PaymentMast_CompCode_ReceiptNo ON PaymentMast (CompCode, ReceiptNo);
CREATE INDEX IX_PaymentMast_CompCode_PayID ON PaymentMast (CompCode, PayID);
CREATE INDEX IX_PaymentMast_CompCode_PayDate ON PaymentMast (CompCode, PayDate);
CREATE INDEX IX_PaymentMast_CustID ON PaymentMast (CustID);
CREATE INDEX IX_PaymentMast_DateCreated ON PaymentMast (DateCreated);
CREATE INDEX IX_ChargeMast_CompCode_TrxDate ON ChargeMast (CompCode, TrxDate);
CREATE INDEX IX_ChargeMast_CustID ON ChargeMast (CustID);
CREATE INDEX IX_DrawDownMast_LoanID_TrxDate ON DrawDownMast (LoanID, TrxDate);
CREATE INDEX IX_DrawDownMast_CompCode_TrxDate ON DrawDownMast (CompCode, TrxDate);
CREATE INDEX IX_DrawDownMast_CustID ON DrawDownMast (CustID);
CREATE INDEX IX_CustMast_CompCode_CustNIC ON CustMast (CompCode, CustNIC);
CREATE INDEX IX_CustMast_CustNIC ON CustMast (CustNIC);
CREATE INDEX IX_CustMast_CustOIC ON CustMast (CustOIC);
CREATE INDEX IX_CustMast_CustOthIC ON CustMast (CustOthIC);
CREATE INDEX IX_CustMast_CompCode_CustName ON CustMast (CompCode, CustName);
CREATE INDEX IX_CustMast_CompCode_OldCode ON CustMast (CompCode, OldCode);
CREATE INDEX IX_RefererMast_CustID_RefererName ON RefererMast (CustID, RefererName);
CREATE INDEX IX_PaymentList_PayDate ON PaymentList (PayDate);
CREATE INDEX IX_ChqMast_PayID ON ChqMast (PayID);
CREATE INDEX IX_ChqMast_ChqDate ON ChqMast (ChqDate);
CREATE INDEX IX_FollowUpMast_LoanID_HisDate_HisTime ON FollowUpMast (LoanID, HisDate, HisTime);
CREATE INDEX IX_FollowUpMast_HisDate ON FollowUpMast (HisDate);
CREATE INDEX IX_AppMast_CustID ON AppMast (CustID);
CREATE INDEX IX_AppMast_LoanID ON AppMast (LoanID);
CREATE INDEX IX_AppMastLink_CustID ON AppMastLink (CustID);
CREATE INDEX IX_CashBook_CompCode_TranDate_DocID ON CashBook (CompCode, TranDate, DocID);
CREATE INDEX IX_PersonalExp_CompCode_TrxDate ON PersonalExp (CompCode, TrxDate);
CREATE INDEX IX_PersonalExp_CreatedDate ON PersonalExp (CreatedDate);
CREATE INDEX IX_GoldTransMast_CompCode_TrxDate ON GoldTransMast (CompCode, TrxDate);
CREATE INDEX IX_GoldTransMast_CustID ON GoldTransMast (CustID);
CREATE INDEX IX_SupplierTrans_SuppID ON SupplierTrans (SuppID);
CREATE INDEX IX_SupplierTrans_CompCode_TrxDate ON SupplierTrans (CompCode, TrxDate);
CREATE INDEX IX_MasterReport_pcname_reportname_recordid ON MasterReport (pcname, reportname, recordid);
CREATE UNIQUE INDEX IX_ChqMast_LoanID_ChqNo ON ChqMast (LoanID, ChqNo);
CREATE UNIQUE INDEX IX_LinkAccMast_LinkID ON LinkAccMast (LinkID);

-- First rows.
INSERT INTO CompMast (CompCode, CompDesc, SerialReceiptNo) VALUES ('HQ', 'Head Office', '0');
INSERT INTO CompanyProfile (CompanyName) VALUES ('');
INSERT INTO Systemast (Param, Value) VALUES ('LateIntDate', '');
INSERT INTO LoanTypeMast (LoanTypeID, LoanTypeDesc) VALUES ('MONTH', 'Monthly');
INSERT INTO LoanTypeMast (LoanTypeID, LoanTypeDesc) VALUES ('WEEK', 'Weekly');
INSERT INTO LoanTypeMast (LoanTypeID, LoanTypeDesc) VALUES ('DAILY', 'Daily');
INSERT INTO LoanTypeMast (LoanTypeID, LoanTypeDesc) VALUES ('14DAYS', 'Every 14 days');
INSERT INTO LoanGroupMast (LoanGroupID, LoanGroupDesc) VALUES ('PINJAMAN SEMASA', 'PINJAMAN SEMASA');
INSERT INTO LoanGroupMast (LoanGroupID, LoanGroupDesc) VALUES ('PINJAMAN SELESAI', 'PINJAMAN SELESAI');
INSERT INTO LoanGroupMast (LoanGroupID, LoanGroupDesc) VALUES ('DALAM PROSES DAPAT BALIK', 'DALAM PROSES DAPAT BALIK');
INSERT INTO LoanGroupMast (LoanGroupID, LoanGroupDesc) VALUES ('DALAM TINDAKAN MAHKAMAH', 'DALAM TINDAKAN MAHKAMAH');
INSERT INTO AreaMast (AreaCode, AreaDesc) VALUES ('PERSONAL', 'Personal');
INSERT INTO AreaMast (AreaCode, AreaDesc) VALUES ('COMPANY', 'Company');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('MELAYU', 'MELAYU');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('CINA', 'CINA');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('INDIA', 'INDIA');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('BUMIPUTERA (SABAH/SARAWAK)', 'BUMIPUTERA (SABAH/SARAWAK)');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('BUKAN WARGANEGARA', 'BUKAN WARGANEGARA');
INSERT INTO CustRaceMast (CustRaceID, CustRaceDesc) VALUES ('LAIN-LAIN', 'LAIN-LAIN');
INSERT INTO CollectInfoMast (CollectInfoID, CollectInfoDesc) VALUES ('CASH', 'Cash');
INSERT INTO CollectInfoMast (CollectInfoID, CollectInfoDesc) VALUES ('CHEQUE', 'Cheque');
INSERT INTO CollectInfoMast (CollectInfoID, CollectInfoDesc) VALUES ('BANK', 'Bank transfer');
INSERT INTO BankMast (BankCode, BankName) VALUES ('CASH', 'Cash');
INSERT INTO AdvertiseMast (AdvertiseID, AdvertiseDesc) VALUES ('NIL', 'None');
INSERT INTO SalesmanMast (SalesmanID, SalesmanName) VALUES ('NIL', 'None');
INSERT INTO CashBookCat (CatCode, CatDesc) VALUES ('LOAN', 'Loan');
INSERT INTO CashBookCat (CatCode, CatDesc) VALUES ('PAYMENT', 'Payment');
INSERT INTO HisStatusMast (HisStatusID, HisStatusDesc) VALUES ('NIL', 'None');
INSERT INTO CollateralMast (CollateralID, CollateralDesc) VALUES ('NIL', 'None');
INSERT INTO GoldTypeMast (GoldID, GoldDesc) VALUES ('NIL', 'None');
INSERT INTO CampanyCategory (CompCatCode, CompCatDesc) VALUES ('NIL', 'None');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (1, 'HP', 'Personal Loan (HP)');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (2, 'TL', 'Flexi Loan (TL)');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (3, 'MRTA', 'Non Finance MRTA');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (4, 'Stamp', 'Stamp Fee');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (5, 'Fire', 'Fire Insurance');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (6, 'Legal', 'Legal Fee');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (7, 'Process', 'Processing Fee');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (8, 'Misc', 'Misc Charges');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (9, 'ARINV', 'AR Invoice');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (10, 'ARCN', 'AR CN');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (11, 'APINV', 'AP Invoice');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (12, 'APCN', 'AP CN');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (13, 'HPLI', 'Personal Loan (HP) Late Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (14, 'TLLI', 'Flexi Loan (TL) Late Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (15, 'HPDD', 'Personal Loan (HP) Drawdown');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (16, 'TLDD', 'Flexi Loan (TL) Drawdown');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (17, 'HPMI', 'Personal Loan (HP) Monthly Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (18, 'TLMI', 'Flexi Loan (TL) Monthly Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (19, 'HPTE', 'Personal Loan (HP) Term End Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (20, 'TLTE', 'Flexi Loan (TL) Term End Interest');
INSERT INTO LinkAccMast (SeqNo, LinkID, LinkDesc) VALUES (21, 'PD', 'Payment Discount');
INSERT INTO SMSField (FieldID) VALUES ('{Customer Name}');
INSERT INTO SMSField (FieldID) VALUES ('{LoanID}');
INSERT INTO SMSField (FieldID) VALUES ('{Due Date}');
INSERT INTO SMSField (FieldID) VALUES ('{Due Amt}');
INSERT INTO SMSField (FieldID) VALUES ('{Loan Amt}');
INSERT INTO SMSField (FieldID) VALUES ('{Loan Date}');
INSERT INTO SMSField (FieldID) VALUES ('{Installment Amt}');
INSERT INTO SMSField (FieldID) VALUES ('{Loan Balance}');
INSERT INTO SMSField (FieldID) VALUES ('{Company Name}');
INSERT INTO SMSField (FieldID) VALUES ('{Day}');
INSERT INTO SMSField (FieldID) VALUES ('{Month}');
INSERT INTO SMSField (FieldID) VALUES ('{Year}');
INSERT INTO SMSField (FieldID) VALUES ('{Today}');
INSERT INTO SMSField (FieldID) VALUES ('{Staff Name}');
INSERT INTO SMSField (FieldID) VALUES ('{DOB}');
INSERT INTO SMSField (FieldID) VALUES ('{Company Tel}');
INSERT INTO SMSField (FieldID) VALUES ('{Company HP}');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 1, 'Copy of IC, front and back');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 2, 'Salary slips of the last three months');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 3, 'Bank statements of the last three months');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 4, 'Letter of the employer');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 5, 'Utility bill of the home address');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 6, 'Copy of IC of the guarantor');
INSERT INTO CheckListMast (CheckListType, CheckListSeq, CheckListDesc) VALUES ('CL', 7, 'Signed agreement');
