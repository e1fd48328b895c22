-- The central database: the AML watch list, export statements, e-invoice settings and reference tables.

CREATE TABLE AMLAMast (
  RefNo            nvarchar(50)  NULL CONSTRAINT DF_AMLAMast_RefNo DEFAULT '',
  Name             nvarchar(300) NULL CONSTRAINT DF_AMLAMast_Name DEFAULT '',
  NRIC             nvarchar(50)  NULL CONSTRAINT DF_AMLAMast_NRIC DEFAULT '',
  PassportNo       nvarchar(50)  NULL CONSTRAINT DF_AMLAMast_PassportNo DEFAULT '',
  OtherInformation nvarchar(max) NULL CONSTRAINT DF_AMLAMast_OtherInformation DEFAULT ''
);

CREATE INDEX IX_AMLAMast_NRIC ON AMLAMast (NRIC);
CREATE INDEX IX_AMLAMast_PassportNo ON AMLAMast (PassportNo);

CREATE TABLE DataExport (
  SID          nvarchar(100) NOT NULL,
  FromDate     nvarchar(1)   NULL CONSTRAINT DF_DataExport_FromDate DEFAULT '',
  ToDate       nvarchar(1)   NULL CONSTRAINT DF_DataExport_ToDate DEFAULT '',
  SQLStatement nvarchar(max) NULL CONSTRAINT DF_DataExport_SQLStatement DEFAULT '',
  ExportHeader nvarchar(1)   NULL CONSTRAINT DF_DataExport_ExportHeader DEFAULT '',
  Quote        nvarchar(1)   NULL CONSTRAINT DF_DataExport_Quote DEFAULT '',
  CONSTRAINT PK_DataExport PRIMARY KEY (SID)
);

CREATE TABLE Systemast (
  Param nvarchar(50)   NOT NULL,
  Value nvarchar(1000) NULL,
  CONSTRAINT PK_Systemast PRIMARY KEY (Param)
);

CREATE TABLE eState (
  StateCode nvarchar(50)  NOT NULL,
  StateName nvarchar(100) NULL CONSTRAINT DF_eState_StateName DEFAULT '',
  CONSTRAINT PK_eState PRIMARY KEY (StateCode)
);

CREATE TABLE eCountry (
  CountryCode nvarchar(50)  NOT NULL,
  CountryName nvarchar(100) NULL CONSTRAINT DF_eCountry_CountryName DEFAULT '',
  CONSTRAINT PK_eCountry PRIMARY KEY (CountryCode)
);

CREATE TABLE eMiscCode (
  MiscCode nvarchar(50)  NOT NULL,
  MiscName nvarchar(200) NULL CONSTRAINT DF_eMiscCode_MiscName DEFAULT '',
  CONSTRAINT PK_eMiscCode PRIMARY KEY (MiscCode)
);

CREATE TABLE eClass (
  ClassCode nvarchar(50)  NOT NULL,
  ClassName nvarchar(500) NULL CONSTRAINT DF_eClass_ClassName DEFAULT '',
  CONSTRAINT PK_eClass PRIMARY KEY (ClassCode)
);

CREATE TABLE eTax (
  TaxCode nvarchar(10)  NOT NULL,
  TaxName nvarchar(200) NULL CONSTRAINT DF_eTax_TaxName DEFAULT '',
  CONSTRAINT PK_eTax PRIMARY KEY (TaxCode)
);
