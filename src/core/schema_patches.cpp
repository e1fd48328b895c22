#include "core/schema_patches.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/einvoice_codes.h"
#include "core/schema_text.h"
#include "core/settings.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

// Tables that the program makes itself, in the form that existing offices have them.
constexpr std::string_view kMakeAMLADesc =
    "CREATE TABLE AMLADesc (SID nvarchar(10) NOT NULL, AMLADesc nvarchar(100) NOT NULL, "
    "CONSTRAINT PK_AMLADesc PRIMARY KEY (SID,AMLADesc))";
constexpr std::string_view kMakeAMLATrans =
    "CREATE TABLE AMLATrans (TrxID nvarchar(100) NOT NULL, TrxDate datetime NULL, "
    "Nationality nvarchar(300) NULL, Name1 nvarchar(300) NULL, Name2 nvarchar(300) NULL, "
    "Name3 nvarchar(300) NULL, Name4 nvarchar(300) NULL, NRIC nvarchar(50) NULL, "
    "OldIC nvarchar(50) NULL, OthIC nvarchar(50) NULL, IDType nvarchar(100) NULL, "
    "Gender nvarchar(10) NULL, email nvarchar(100) NULL, Tel1 nvarchar(50) NULL, "
    "Tel2 nvarchar(50) NULL, HP nvarchar(50) NULL, FAX nvarchar(50) NULL, "
    "Add1 nvarchar(500) NULL, Add2 nvarchar(500) NULL, Add3 nvarchar(500) NULL, "
    "Add4 nvarchar(500) NULL, BizType nvarchar(100) NULL, Occupation nvarchar(100) NULL, "
    "JobDetail nvarchar(100) NULL, EmployerName nvarchar(100) NULL, "
    "EmploymentArea nvarchar(100) NULL, OtherWork nvarchar(100) NULL, "
    "MaritalStatus nvarchar(100) NULL, SpouseName nvarchar(300) NULL, "
    "SpouseNIC nvarchar(50) NULL, SpouseOIC nvarchar(50) NULL, "
    "SpouseOthIC nvarchar(50) NULL, SpouseIDType nvarchar(50) NULL, "
    "SpousePassportCountry nvarchar(100) NULL, Trans nvarchar(10) NULL, "
    "CustID nvarchar(50) NULL, TransType nvarchar(100) NULL, TransDate datetime NULL, "
    "TransAmt decimal(18,2) NULL, LoanType nvarchar(100) NULL, "
    "SuspiciousWork nvarchar(100) NULL, CrimeDesc nvarchar(1000) NULL, "
    "CrimeEnv nvarchar(1000) NULL, CompCode nvarchar(50) NULL, "
    "SpousePassportNo nvarchar(50) NULL, CONSTRAINT PK_AMLATrans PRIMARY KEY (TrxID))";
constexpr std::string_view kMakeDataExport =
    "CREATE TABLE DataExport (SID nvarchar(100) NOT NULL, FromDate nvarchar(1) NULL, "
    "ToDate nvarchar(1) NULL, SQLStatement nvarchar(max) NULL, "
    "ExportHeader nvarchar(1) NULL, CONSTRAINT PK_DataExport PRIMARY KEY (SID))";
constexpr std::string_view kMakeEMiscCode =
    "CREATE TABLE eMiscCode (MiscCode nvarchar(50) NOT NULL, MiscName nvarchar(200) NULL, "
    "CONSTRAINT PK_eMiscCode PRIMARY KEY (MiscCode))";
constexpr std::string_view kMakeEState =
    "CREATE TABLE eState (StateCode nvarchar(50) NOT NULL, StateName nvarchar(100) NULL, "
    "CONSTRAINT PK_eState PRIMARY KEY (StateCode))";
constexpr std::string_view kMakeECountry =
    "CREATE TABLE eCountry (CountryCode nvarchar(50) NOT NULL, "
    "CountryName nvarchar(100) NULL, CONSTRAINT PK_eCountry PRIMARY KEY (CountryCode))";
constexpr std::string_view kMakeEClass =
    "CREATE TABLE eClass (ClassCode nvarchar(50) NOT NULL, ClassName nvarchar(500) NULL, "
    "CONSTRAINT PK_eClass PRIMARY KEY (ClassCode))";
constexpr std::string_view kMakeEInvMast =
    "CREATE TABLE EInvMast (eInvID nvarchar(50) NOT NULL, SeqNo int NOT NULL, "
    "TrxDate datetime NULL, CustID nvarchar(50) NULL, CompCode nvarchar(50) NULL, "
    "LoanID nvarchar(50) NULL, SchID nvarchar(50) NULL, InvType nvarchar(50) NULL, "
    "InvTaxCode nvarchar(50) NULL, InvDesc nvarchar(200) NULL, InvAmt decimal(18,2) NULL, "
    "InvQty int NULL, CONSTRAINT PK_EInvMast PRIMARY KEY (eInvID,SeqNo))";
constexpr std::string_view kMakeECustMast =
    "CREATE TABLE ECustMast (CustID nvarchar(50) NOT NULL, TIN nvarchar(100) NULL, "
    "MISCCode nvarchar(50) NULL, Address nvarchar(300) NULL, Postcode nvarchar(10) NULL, "
    "City nvarchar(100) NULL, State nvarchar(100) NULL, Country nvarchar(100) NULL, "
    "Phone nvarchar(50) NULL, Email nvarchar(100) NULL, CustType nvarchar(50) NULL, "
    "CustTypeID nvarchar(50) NULL, CONSTRAINT PK_ECustMast PRIMARY KEY (CustID))";
constexpr std::string_view kMakeSelfBillMast =
    "CREATE TABLE SelfBillMast (SID nvarchar(50) NOT NULL, TrxDate datetime NULL, "
    "InvoiceNo nvarchar(100) NULL, CompCode nvarchar(50) NULL, SuppTin nvarchar(50) NULL, "
    "SuppIDNo nvarchar(50) NULL, SuppIDType nvarchar(10) NULL, "
    "SuppMiscCode nvarchar(10) NULL, SuppBankAcc nvarchar(50) NULL, "
    "SuppSST nvarchar(50) NULL, SuppName nvarchar(100) NULL, SuppTel nvarchar(50) NULL, "
    "SuppEmail nvarchar(100) NULL, SuppAdd nvarchar(200) NULL, "
    "SuppPostCode nvarchar(10) NULL, SuppCity nvarchar(10) NULL, "
    "SuppState nvarchar(10) NULL, SuppCountry nvarchar(10) NULL, "
    "SelfBillTaxAmt decimal(18,2) NULL, SelfBillTaxCat nvarchar(10) NULL, "
    "SelfBillAmt decimal(18,2) NULL, SelfBillStatus nvarchar(50) NULL, "
    "uuid nvarchar(100) NULL, UserID nvarchar(50) NULL, DateCreated datetime NULL, "
    "CONSTRAINT PK_SelfBillMast PRIMARY KEY (SID))";
constexpr std::string_view kMakeSelfBillTrans =
    "CREATE TABLE SelfBillTrans (SID nvarchar(50) NOT NULL, SeqNo int NOT NULL, "
    "SelfBillQty int NULL, SelfBillAmt decimal(18,2) NULL, "
    "SelfBillTaxAmt decimal(18,2) NULL, SelfBillTaxPer decimal(18,2) NULL, "
    "SelfBillTaxCat nvarchar(10) NULL, SelfBillClassCode nvarchar(10) NULL, "
    "SelfBillDesc nvarchar(200) NULL, "
    "CONSTRAINT PK_SelfBillTrans PRIMARY KEY (SID,SeqNo))";
constexpr std::string_view kMakeETax =
    "CREATE TABLE eTax (TaxCode nvarchar(10) NOT NULL, TaxName nvarchar(200) NULL, "
    "CONSTRAINT PK_eTax PRIMARY KEY (TaxCode))";

// The indexes of the base tables, a line of their script each.
std::vector<std::string_view> BaseIndexes() {
  std::vector<std::string_view> statements;
  for (std::string_view left = SchemaText("base"); !left.empty();) {
    const std::string_view line = left.substr(0, left.find('\n'));
    left.remove_prefix(std::min(left.size(), line.size() + 1));
    if (line.starts_with("CREATE INDEX ")) statements.push_back(line.substr(0, line.rfind(';')));
  }
  // An earlier edition of kCashBookOpening had none.
  statements.push_back(
      "create index IX_CashBook_CompCode_TranDate on CashBook (CompCode,TranDate)");
  statements.push_back("INSERT INTO Systemast (Param,Value) VALUES ('BaseIndexes','1')");
  return statements;
}

bool IsThereAlready(const SqlError& error) {
  constexpr std::array kNumbers = {1913, 2714, 2705};  // an index, another object, a column
  return std::find(kNumbers.begin(), kNumbers.end(), error.number()) != kNumbers.end();
}

}  // namespace

namespace patches {

const Patch kDrawdown = {
    "Patch-Drawdown",
    {"Delete d from DrawDownMast as d left outer join loanmast as l on l.loanid=d.loanid where "
     "l.loanid is null",
     "INSERT Systemast (Param,Value) values ('Patch-Drawdown','1')",
     "UPDATE Systemast SET [Value]='1' WHERE param='Patch-Drawdown'"}};

const Patch kAmla = {
    "AMLA",
    {"insert into systemast (param,value) values ('AMLA','1')", kMakeAMLADesc, kMakeAMLATrans,
     "alter table CompMast add AMLA nvarchar(1),AMLACheckIC nvarchar(1),AMLALoan decimal(18, "
     "2),AMLAPayment  decimal(18, 2),AMLAWarning  nvarchar(1),AMLAOfficer nvarchar(100) ",
     "update compmast set AMLA='0',AMLACheckIC='0',AMLALoan=0,AMLAPayment=0,AMLAWarning='0',"
     "AMLAOfficer='' where AMLA is null",
     "alter table LoanMast add AMLACode nvarchar(100),AMLADesc nvarchar(1000),AMLAID "
     "nvarchar(100)",
     "update LoanMast set AMLACode='',AMLADesc='',AMLAID='' where AMLACode is null",
     "alter table PaymentMast add AMLACode nvarchar(100),AMLADesc nvarchar(1000),AMLAID "
     "nvarchar(100)",
     "update PaymentMast set AMLACode='',AMLADesc='',AMLAID='' where AMLACode is null"}};

const Patch kDataExportFlag = {
    "DataExportFlag",
    {kMakeDataExport, "insert into systemast (param,value) values ('DataExportFlag','1')"}};

const Patch kDisableSTR = {"DisableSTR",
                           {"ALTER Table CompMast ADD DisableSTR nvarchar(1)",
                            "UPDATE CompMast set DisableSTR='0' where DisableSTR is null",
                            "INSERT INTO Systemast (Param,Value) VALUES ('DisableSTR','1')"}};

const Patch kLampiranA = {"LampiranA",
                          {"INSERT INTO Systemast (Param,Value) values ('LampiranA','1')"}};

const Patch kIdeal = {"IDEAL", {"INSERT INTO  Systemast values ('IDEAL','IDEAL UPLOAD')"}};

// The index keeps the unguarded update of every start (kOrgDueDate2) from reading all loans.
const Patch kOrgDueDate = {
    "OrgDueDate",
    {"INSERT INTO Systemast (Param,Value) VALUES ('OrgDueDate','1')",
     "ALTER Table LoanMast ADD OrgDueDate datetime",
     "UPDATE LoanMast SET OrgDueDate=(SELECT DueDate FROM SchMast WHERE LoanID=LoanMast.LoanID and "
     "SchID='1')",
     "create index IX_LoanMast_OrgDueDate on LoanMast (OrgDueDate)"}};

const Patch kEInv = {
    "EInv",
    {"INSERT INTO Systemast (Param,Value) VALUES ('EInv','1')", kMakeEMiscCode, kMakeEState,
     kMakeECountry, kMakeEClass, kMakeEInvMast, kMakeECustMast,
     "create index CompCode on eInvMast (CompCode)", "create index CustID on eInvMast (CustID)",
     "create index LoanID on eInvMast (LoanID)", kMarkRefreshDue}};

const Patch kEInvCustName = {
    "EInvCustName",
    {"INSERT INTO Systemast (Param,Value) VALUES ('EInvCustName','1')",
     "ALTER Table ECustMast ADD CustName nvarchar(200)",
     "ALTER Table CompMast ADD SQLPath nvarchar(100)",
     "ALTER Table CompMast ADD ClientID nvarchar(100)",
     "ALTER Table CompMast ADD ClientSecret nvarchar(100)",
     "ALTER Table EInvMast ADD InvStatus nvarchar(1)",
     "ALTER Table EInvMast ADD uuid nvarchar(100)", "ALTER Table EInvMast ADD tin nvarchar(50)"}};

const Patch kEInvCancel = {"EInvCancel",
                           {"INSERT INTO Systemast (Param,Value) VALUES ('EInvCancel','1')",
                            "ALTER Table EInvMast ADD LHDNStatus nvarchar(50)",
                            "ALTER Table EInvMast ADD Canceluuid nvarchar(100)"}};

const Patch kLocalClientSecret = {
    "LocalClientSecret",
    {"INSERT INTO Systemast (Param,Value) VALUES ('LocalClientSecret','1')",
     "ALTER Table CompMast ADD MyTaxClientID nvarchar(100)",
     "ALTER Table CompMast ADD MyTaxClientSecret nvarchar(100)",
     "Update CompMast set MyTaxClientID='' where MyTaxClientID is null ",
     "Update CompMast set MyTaxClientSecret='' where MyTaxClientSecret is null "}};

const std::string_view kFillOrgDueDate =
    "UPDATE LoanMast SET OrgDueDate=(SELECT DueDate FROM SchMast WHERE LoanID=LoanMast.LoanID and "
    "SchID='1') where OrgDueDate is null";

const Patch kOrgDueDate2 = {
    "OrgDueDate2",
    {"INSERT INTO Systemast (Param,Value) VALUES ('OrgDueDate2','1')", kFillOrgDueDate}};

const Patch kLHDNQR = {"LHDNQR",
                       {"INSERT INTO Systemast (Param,Value) VALUES ('LHDNQR','1')",
                        "ALTER Table EInvMast ADD LHDNQR nvarchar(200)", kMarkRefreshDue}};

const Patch kLastDownDate = {
    "LastDownDate",
    {"INSERT INTO Systemast (Param,Value) VALUES ('LastDownDate','1')",
     "ALTER Table LoanMast add LastDownDate datetime",
     "update loanmast set LastDownDate=(select max(trxdate) from DrawdownMast WHERE "
     "LoanID=loanmast.loanid) where LastDownDate is null"}};

const Patch kCreateSelfBillTable = {
    "CreateSelfBillTable",
    {"INSERT INTO Systemast (Param,Value) VALUES ('CreateSelfBillTable','1')", kMakeSelfBillMast,
     kMakeSelfBillTrans, kMakeETax}};

const Patch kSuppCity = {"SuppCity",
                         {"INSERT INTO Systemast (Param,Value) VALUES ('SuppCity','1')",
                          "ALTER Table SelfbillMast alter column SuppCity nvarchar(100)"}};

// A customer's name, the cheque and a memo stand in one description of the account report: 1407
// characters at most.
const Patch kLongDescription = {
    "MasterReportS4",
    {"ALTER Table MasterReport alter column s4 nvarchar(1500)",
     "INSERT INTO Systemast (Param,Value) VALUES ('MasterReportS4','1')"}};

// The charges of a loan are summed from their index alone.
const Patch kChargeIndex = {
    "ChargeIndex",
    {"create index IX_ChargeMast_LoanID_PType_TrxDate_ChargeAmt on ChargeMast "
     "(LoanID,PType,TrxDate,ChargeAmt)",
     "INSERT INTO Systemast (Param,Value) VALUES ('ChargeIndex','1')"}};

// What heads the letters of a company: names of pictures.
const Patch kCompanyPictures = {
    "CompanyPictures",
    {"ALTER Table CompMast ADD LogoFile nvarchar(300)",
     "ALTER Table CompMast ADD Letterhead nvarchar(300)",
     "INSERT INTO Systemast (Param,Value) VALUES ('CompanyPictures','1')"}};

// Where a recalculation of the cash book begins.
const Patch kCashBookOpening = {
    "CashBookOpening",
    {"ALTER Table CompMast ADD CBOpenDate datetime",
     "ALTER Table CompMast ADD CBOpenCash decimal(18,2)",
     "ALTER Table CompMast ADD CBOpenBank decimal(18,2)",
     "create index IX_CashBook_CompCode_TranDate on CashBook (CompCode,TranDate)",
     "INSERT INTO Systemast (Param,Value) VALUES ('CashBookOpening','1')"}};

// What is on its way to the e-invoicing service, a row a line of a document and what is asked of
// it.
const Patch kEInvSending = {
    "EInvSending",
    {"CREATE TABLE EInvSending (eInvID nvarchar(50) NOT NULL, SeqNo int NOT NULL, "
     "Mode nvarchar(10) NOT NULL, Stamp nvarchar(50) NULL, State nvarchar(20) NULL, "
     "UserID nvarchar(50) NULL, PCName nvarchar(100) NULL, SentAt datetime NULL, "
     "uuid nvarchar(100) NULL, Reply nvarchar(500) NULL, "
     "CONSTRAINT PK_EInvSending PRIMARY KEY (eInvID,SeqNo,Mode))",
     "INSERT INTO Systemast (Param,Value) VALUES ('EInvSending','1')"}};

// Which line of a bank's file was taken, whatever the file was called, by whom and when.
const Patch kPaymentReaderLine = {
    "PaymentReaderLine",
    {"ALTER Table PaymentReader ADD LineHash nvarchar(64)",
     "ALTER Table PaymentReader ADD UserID nvarchar(50)",
     "ALTER Table PaymentReader ADD DateCreated datetime",
     "create index IX_PaymentReader_LineHash on PaymentReader (LineHash)",
     "INSERT INTO Systemast (Param,Value) VALUES ('PaymentReaderLine','1')"}};

// Behind the shipped codes, which fill what is empty.
const Patch kEInvCodes = {"EInvCodes",
                          {"INSERT INTO Systemast (Param,Value) VALUES ('EInvCodes','1')"}};

// What was moved in from old books, under the code that it had there, and by whom.
const Patch kMoveIn = {
    "MoveIn",
    {"CREATE TABLE MoveInMast (Kind nvarchar(20) NOT NULL, CompCode nvarchar(50) NOT NULL, "
     "OldCode nvarchar(200) NOT NULL, NewID nvarchar(50) NULL, FileName nvarchar(300) NULL, "
     "FileLine int NULL, UserID nvarchar(50) NULL, DateCreated datetime NULL, "
     "CONSTRAINT PK_MoveInMast PRIMARY KEY (Kind,CompCode,OldCode))",
     "INSERT INTO Systemast (Param,Value) VALUES ('MoveIn','1')"}};

// A copy of the watch list, what is decided about customers who are like an entry of it, and the
// runs over all customers. A copy counts once it is finished, and stays beside the one before it. A
// decision keeps both sides as they stood, so that a change of either is seen.
const Patch kWatchListCopy = {
    "WatchListCopy",
    {"INSERT INTO Systemast (Param,Value) VALUES ('WatchListCopy','1')",
     "CREATE TABLE AMLACopyHead (CopyID int NOT NULL, CopyDate datetime NOT NULL, Entries int NOT "
     "NULL, Finished nvarchar(1) NOT NULL, UserID nvarchar(50) NULL, CONSTRAINT PK_AMLACopyHead "
     "PRIMARY KEY (CopyID))",
     "CREATE TABLE AMLACopy (CopyID int NOT NULL, EntryNo int NOT NULL, RefNo nvarchar(50) NULL, "
     "Name nvarchar(300) NULL, NRIC nvarchar(50) NULL, PassportNo nvarchar(50) NULL, "
     "OtherInformation nvarchar(max) NULL, CONSTRAINT PK_AMLACopy PRIMARY KEY (CopyID,EntryNo))",
     "create index IX_AMLACopy_CopyID_NRIC on AMLACopy (CopyID,NRIC)",
     "create index IX_AMLACopy_CopyID_PassportNo on AMLACopy (CopyID,PassportNo)",
     "CREATE TABLE AMLADecision (CustID nvarchar(50) NOT NULL, SeqNo int NOT NULL, CompCode "
     "nvarchar(50) NULL, CustName nvarchar(300) NULL, CustNIC nvarchar(50) NULL, CustOIC "
     "nvarchar(50) NULL, CustOthIC nvarchar(50) NULL, RefNo nvarchar(50) NULL, ListName "
     "nvarchar(300) NULL, ListNRIC nvarchar(50) NULL, ListPassportNo nvarchar(50) NULL, ListOther "
     "nvarchar(max) NULL, Reason nvarchar(max) NULL, Decision nvarchar(10) NOT NULL, Remark "
     "nvarchar(500) NULL, UserID nvarchar(50) NULL, DateCreated datetime NOT NULL, CONSTRAINT "
     "PK_AMLADecision PRIMARY KEY (CustID,SeqNo))",
     "CREATE TABLE AMLARun (RunID int NOT NULL, RunDate datetime NOT NULL, CopyDate datetime NOT "
     "NULL, Companies nvarchar(max) NULL, Customers int NOT NULL, Hits int NOT NULL, Undecided int "
     "NOT NULL, UserID nvarchar(50) NULL, CONSTRAINT PK_AMLARun PRIMARY KEY (RunID))"}};

// The address of a validated document is as long as the tax authority makes it.
const Patch kLongQR = {"LongLHDNQR",
                       {"ALTER Table EInvMast alter column LHDNQR nvarchar(1000)",
                        "INSERT INTO Systemast (Param,Value) VALUES ('LongLHDNQR','1')"}};

// An office keeps the indexes that it began with; those that came since are made here.
const Patch kBaseIndexes = {"BaseIndexes", BaseIndexes()};

// By which a save whose answer was lost with the server is found again: a row for each desktop.
const Patch kSaveMark = {
    "SaveMark",
    {"CREATE TABLE SaveMark (Mark nvarchar(50) NOT NULL, SavedAt datetime NOT NULL, CONSTRAINT "
     "PK_SaveMark PRIMARY KEY (Mark))",
     "INSERT INTO Systemast (Param,Value) VALUES ('SaveMark','1')"}};

// What came in and went out in a year is summed from an index of those days alone, however old the
// office is.
const Patch kYearIndexes = {
    "YearIndexes",
    {"create index IX_PaymentMast_PayDate_CompCode_Amounts on PaymentMast "
     "(PayDate,CompCode,PayAmt,IntAmt,CollectorAmt,ChargeAmt,DiscAmt)",
     "create index IX_DrawDownMast_TrxDate_CompCode_DrawDownAmt on DrawDownMast "
     "(TrxDate,CompCode,DrawDownAmt)",
     "INSERT INTO Systemast (Param,Value) VALUES ('YearIndexes','1')"}};

// The reasons that were given so far are offered at each opening of a payment or a loan, and hardly
// one has any.
const Patch kReasonIndexes = {"ReasonIndexes",
                              {"create index IX_PaymentMast_AMLACode on PaymentMast (AMLACode)",
                               "create index IX_LoanMast_AMLACode on LoanMast (AMLACode)",
                               "INSERT INTO Systemast (Param,Value) VALUES ('ReasonIndexes','1')"}};

// What one desktop has read for the home pages of all who see the same: FiguresMast can be emptied
// at any time.
const Patch kSharedFigures = {
    "SharedFigures",
    {"CREATE TABLE FiguresMast (ViewKey nvarchar(64) NOT NULL, ReadAt datetime NULL, BegunAt "
     "datetime NULL, Cost int NOT NULL, Figures nvarchar(max) NULL, CONSTRAINT PK_FiguresMast "
     "PRIMARY KEY (ViewKey))",
     "INSERT INTO Systemast (Param,Value) VALUES ('SharedFigures','1')"}};

const std::string_view kHolidayMast =
    "CREATE TABLE HolidayMast (HolidayDate date NOT NULL, HolidayName nvarchar(100) NULL, "
    "UserID nvarchar(50) NULL, "
    "DateCreated datetime NOT NULL CONSTRAINT DF_HolidayMast_DateCreated DEFAULT getdate(), "
    "CONSTRAINT PK_HolidayMast PRIMARY KEY (HolidayDate))";

}  // namespace patches

void RunPatch(Connection& main, const Patch& patch, std::string_view found, Existing existing) {
  const auto done_meanwhile = [&] { return ReadSetting(main, patch.key) != found; };
  try {
    WriteAgainUntilDone([&] {
      Transaction transaction(main);
      if (done_meanwhile()) return;
      for (const std::string_view statement : patch.statements) {
        try {
          main.Execute(statement);
        } catch (const SqlError& error) {
          if (existing == Existing::fails || !IsThereAlready(error)) throw;
        }
      }
      transaction.Commit();
    });
  } catch (const SqlError&) {
    // A server without one lock for all saves lets two run at once: the slower one fails.
    if (!done_meanwhile()) throw;
  }
}

}  // namespace kaunter
