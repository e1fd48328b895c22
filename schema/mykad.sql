-- The card reader's table, emptied and filled by the reader program, and the legacy photo store.

CREATE TABLE JPNInfo (
  NewIC        nvarchar(50)   NULL CONSTRAINT DF_JPNInfo_NewIC DEFAULT '',
  NameOriginal nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_NameOriginal DEFAULT '',
  NameGMPC     nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_NameGMPC DEFAULT '',
  Gender       nvarchar(50)   NULL CONSTRAINT DF_JPNInfo_Gender DEFAULT '',
  OldIC        nvarchar(50)   NULL CONSTRAINT DF_JPNInfo_OldIC DEFAULT '',
  Race         nvarchar(50)   NULL CONSTRAINT DF_JPNInfo_Race DEFAULT '',
  Add1         nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_Add1 DEFAULT '',
  Add2         nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_Add2 DEFAULT '',
  Add3         nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_Add3 DEFAULT '',
  Postcode     nvarchar(50)   NULL CONSTRAINT DF_JPNInfo_Postcode DEFAULT '',
  City         nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_City DEFAULT '',
  State        nvarchar(300)  NULL CONSTRAINT DF_JPNInfo_State DEFAULT '',
  photo        varbinary(max) NULL
);

CREATE TABLE CustPhoto (
  IC          nvarchar(50)   NULL CONSTRAINT DF_CustPhoto_IC DEFAULT '',
  Name        nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_Name DEFAULT '',
  Gender      nvarchar(50)   NULL CONSTRAINT DF_CustPhoto_Gender DEFAULT '',
  Religion    nvarchar(50)   NULL CONSTRAINT DF_CustPhoto_Religion DEFAULT '',
  Citizenship nvarchar(50)   NULL CONSTRAINT DF_CustPhoto_Citizenship DEFAULT '',
  Add1        nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_Add1 DEFAULT '',
  Add2        nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_Add2 DEFAULT '',
  Add3        nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_Add3 DEFAULT '',
  PostCode    nvarchar(50)   NULL CONSTRAINT DF_CustPhoto_PostCode DEFAULT '',
  City        nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_City DEFAULT '',
  State       nvarchar(300)  NULL CONSTRAINT DF_CustPhoto_State DEFAULT '',
  [DateTime]  datetime       NULL,
  CustPhoto   varbinary(max) NULL
);
