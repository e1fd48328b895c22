-- The audit database of an office ("<database>-Logs"): who did what to which record. Inserts only, no key.
CREATE TABLE TransLogs (
  TrxDate   datetime      NULL,
  UserID    nvarchar(50)  NULL CONSTRAINT DF_TransLogs_UserID DEFAULT '',
  UserName  nvarchar(300) NULL CONSTRAINT DF_TransLogs_UserName DEFAULT '',
  ConmpCode nvarchar(50)  NULL CONSTRAINT DF_TransLogs_ConmpCode DEFAULT '',
  Type      nvarchar(50)  NULL CONSTRAINT DF_TransLogs_Type DEFAULT '',
  Module    nvarchar(50)  NULL CONSTRAINT DF_TransLogs_Module DEFAULT '',
  TrxID     nvarchar(100) NULL CONSTRAINT DF_TransLogs_TrxID DEFAULT '',
  Remarks   nvarchar(max) NULL CONSTRAINT DF_TransLogs_Remarks DEFAULT ''
);

CREATE INDEX IX_TransLogs_TrxDate ON TransLogs (TrxDate);
CREATE INDEX IX_TransLogs_Module_TrxID ON TransLogs (Module, TrxID);
