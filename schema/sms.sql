-- The SMS database: a queue that a gateway program outside this system reads and marks.
CREATE TABLE SMSList (
  SMSID       int IDENTITY(1, 1) NOT NULL,
  CustID      nvarchar(50)   NULL CONSTRAINT DF_SMSList_CustID DEFAULT '',
  CustName    nvarchar(300)  NULL CONSTRAINT DF_SMSList_CustName DEFAULT '',
  LoanID      nvarchar(50)   NULL CONSTRAINT DF_SMSList_LoanID DEFAULT '',
  CompCode    nvarchar(50)   NULL CONSTRAINT DF_SMSList_CompCode DEFAULT '',
  HP          nvarchar(50)   NULL CONSTRAINT DF_SMSList_HP DEFAULT '',
  SMSMsg      nvarchar(1000) NULL CONSTRAINT DF_SMSList_SMSMsg DEFAULT '',
  SMSStatus   nvarchar(50)   NULL CONSTRAINT DF_SMSList_SMSStatus DEFAULT '',
  SMSLog      nvarchar(1000) NULL CONSTRAINT DF_SMSList_SMSLog DEFAULT '',
  UserID      nvarchar(50)   NULL CONSTRAINT DF_SMSList_UserID DEFAULT '',
  DateCreated datetime       NULL,
  DateSent    datetime       NULL,
  CONSTRAINT PK_SMSList PRIMARY KEY (SMSID)
);

CREATE INDEX IX_SMSList_SMSStatus ON SMSList (SMSStatus);
