-- The accounting bridge: rows that a bridge program hands on to the accounting package, and its chart of
-- accounts. A document is written again by deleting its old row first, so there are no keys.

CREATE TABLE GLMast (
  AccNo       nvarchar(50)  NOT NULL,
  Description nvarchar(300) NULL CONSTRAINT DF_GLMast_Description DEFAULT '',
  CONSTRAINT PK_GLMast PRIMARY KEY (AccNo)
);

-- Receivables.
CREATE TABLE TM_Debtor (
  AccNo        nvarchar(50)  NULL CONSTRAINT DF_TM_Debtor_AccNo DEFAULT '',
  CompanyName  nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_CompanyName DEFAULT '',
  Desc2        nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_Desc2 DEFAULT '',
  IC           nvarchar(50)  NULL CONSTRAINT DF_TM_Debtor_IC DEFAULT '',
  Address1     nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_Address1 DEFAULT '',
  Address2     nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_Address2 DEFAULT '',
  Address3     nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_Address3 DEFAULT '',
  Address4     nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_Address4 DEFAULT '',
  Phone1       nvarchar(50)  NULL CONSTRAINT DF_TM_Debtor_Phone1 DEFAULT '',
  Phone2       nvarchar(50)  NULL CONSTRAINT DF_TM_Debtor_Phone2 DEFAULT '',
  Fax1         nvarchar(50)  NULL CONSTRAINT DF_TM_Debtor_Fax1 DEFAULT '',
  EmailAddress nvarchar(300) NULL CONSTRAINT DF_TM_Debtor_EmailAddress DEFAULT ''
);

CREATE TABLE TM_ARInvoice (
  DocNo      nvarchar(50)   NULL CONSTRAINT DF_TM_ARInvoice_DocNo DEFAULT '',
  DocDate    datetime       NULL,
  DebtorCode nvarchar(50)   NULL CONSTRAINT DF_TM_ARInvoice_DebtorCode DEFAULT '',
  Total      decimal(18, 2) NULL CONSTRAINT DF_TM_ARInvoice_Total DEFAULT 0
);

CREATE TABLE TM_ARInvoiceDTL (
  DocNo          nvarchar(50)   NULL CONSTRAINT DF_TM_ARInvoiceDTL_DocNo DEFAULT '',
  SalesAccountNo nvarchar(50)   NULL CONSTRAINT DF_TM_ARInvoiceDTL_SalesAccountNo DEFAULT '',
  Description    nvarchar(300)  NULL CONSTRAINT DF_TM_ARInvoiceDTL_Description DEFAULT '',
  Amount         decimal(18, 2) NULL CONSTRAINT DF_TM_ARInvoiceDTL_Amount DEFAULT 0
);

CREATE TABLE TM_ARCN (
  DocNo       nvarchar(50)   NULL CONSTRAINT DF_TM_ARCN_DocNo DEFAULT '',
  DocDate     datetime       NULL,
  DebtorCode  nvarchar(50)   NULL CONSTRAINT DF_TM_ARCN_DebtorCode DEFAULT '',
  Description nvarchar(300)  NULL CONSTRAINT DF_TM_ARCN_Description DEFAULT '',
  DebitAccNo  nvarchar(50)   NULL CONSTRAINT DF_TM_ARCN_DebitAccNo DEFAULT '',
  ProjNo      nvarchar(50)   NULL CONSTRAINT DF_TM_ARCN_ProjNo DEFAULT '',
  Amount      decimal(18, 2) NULL CONSTRAINT DF_TM_ARCN_Amount DEFAULT 0
);

CREATE TABLE TM_ARPayment (
  DocNo         nvarchar(50)   NULL CONSTRAINT DF_TM_ARPayment_DocNo DEFAULT '',
  DocDate       datetime       NULL,
  DebtorCode    nvarchar(50)   NULL CONSTRAINT DF_TM_ARPayment_DebtorCode DEFAULT '',
  Description   nvarchar(300)  NULL CONSTRAINT DF_TM_ARPayment_Description DEFAULT '',
  PaymentMethod nvarchar(50)   NULL CONSTRAINT DF_TM_ARPayment_PaymentMethod DEFAULT '',
  ChequeNo      nvarchar(50)   NULL CONSTRAINT DF_TM_ARPayment_ChequeNo DEFAULT '',
  PaymentAmount decimal(18, 2) NULL CONSTRAINT DF_TM_ARPayment_PaymentAmount DEFAULT 0
);

-- Payables.
CREATE TABLE TM_Creditor (
  AccNo        nvarchar(50)  NULL CONSTRAINT DF_TM_Creditor_AccNo DEFAULT '',
  CompanyName  nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_CompanyName DEFAULT '',
  Desc2        nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_Desc2 DEFAULT '',
  IC           nvarchar(50)  NULL CONSTRAINT DF_TM_Creditor_IC DEFAULT '',
  Address1     nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_Address1 DEFAULT '',
  Address2     nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_Address2 DEFAULT '',
  Address3     nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_Address3 DEFAULT '',
  Address4     nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_Address4 DEFAULT '',
  Phone1       nvarchar(50)  NULL CONSTRAINT DF_TM_Creditor_Phone1 DEFAULT '',
  Phone2       nvarchar(50)  NULL CONSTRAINT DF_TM_Creditor_Phone2 DEFAULT '',
  Fax1         nvarchar(50)  NULL CONSTRAINT DF_TM_Creditor_Fax1 DEFAULT '',
  EmailAddress nvarchar(300) NULL CONSTRAINT DF_TM_Creditor_EmailAddress DEFAULT ''
);

CREATE TABLE TM_APInvoice (
  DocNo        nvarchar(50)   NULL CONSTRAINT DF_TM_APInvoice_DocNo DEFAULT '',
  DocDate      datetime       NULL,
  CreditorCode nvarchar(50)   NULL CONSTRAINT DF_TM_APInvoice_CreditorCode DEFAULT '',
  Total        decimal(18, 2) NULL CONSTRAINT DF_TM_APInvoice_Total DEFAULT 0
);

CREATE TABLE TM_APInvoiceDTL (
  DocNo             nvarchar(50)   NULL CONSTRAINT DF_TM_APInvoiceDTL_DocNo DEFAULT '',
  PurchaseAccountNo nvarchar(50)   NULL CONSTRAINT DF_TM_APInvoiceDTL_PurchaseAccountNo DEFAULT '',
  Description       nvarchar(300)  NULL CONSTRAINT DF_TM_APInvoiceDTL_Description DEFAULT '',
  Amount            decimal(18, 2) NULL CONSTRAINT DF_TM_APInvoiceDTL_Amount DEFAULT 0
);

CREATE TABLE TM_APCN (
  DocNo        nvarchar(50)   NULL CONSTRAINT DF_TM_APCN_DocNo DEFAULT '',
  DocDate      datetime       NULL,
  CreditorCode nvarchar(50)   NULL CONSTRAINT DF_TM_APCN_CreditorCode DEFAULT '',
  Description  nvarchar(300)  NULL CONSTRAINT DF_TM_APCN_Description DEFAULT '',
  CreditAccNo  nvarchar(50)   NULL CONSTRAINT DF_TM_APCN_CreditAccNo DEFAULT '',
  ProjNo       nvarchar(50)   NULL CONSTRAINT DF_TM_APCN_ProjNo DEFAULT '',
  Amount       decimal(18, 2) NULL CONSTRAINT DF_TM_APCN_Amount DEFAULT 0
);

CREATE TABLE TM_APPayment (
  DocNo         nvarchar(50)   NULL CONSTRAINT DF_TM_APPayment_DocNo DEFAULT '',
  DocDate       datetime       NULL,
  CreditorCode  nvarchar(50)   NULL CONSTRAINT DF_TM_APPayment_CreditorCode DEFAULT '',
  Description   nvarchar(300)  NULL CONSTRAINT DF_TM_APPayment_Description DEFAULT '',
  PaymentMethod nvarchar(50)   NULL CONSTRAINT DF_TM_APPayment_PaymentMethod DEFAULT '',
  ChequeNo      nvarchar(50)   NULL CONSTRAINT DF_TM_APPayment_ChequeNo DEFAULT '',
  PaymentAmount decimal(18, 2) NULL CONSTRAINT DF_TM_APPayment_PaymentAmount DEFAULT 0
);
