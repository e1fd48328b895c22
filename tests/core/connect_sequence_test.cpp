#include "core/connect_sequence.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/local_settings.h"
#include "core/schema_patches.h"
#include "core/schema_text.h"
#include "core/sms_database.h"
#include "core/startup.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// Every statement that goes to the main connection, transaction words included.
class Recorder {
 public:
  explicit Recorder(Connection& connection) : connection_(connection) {
    connection.SetTrace([this](std::string_view, std::string_view sql) { all.emplace_back(sql); });
  }
  ~Recorder() { connection_.SetTrace(nullptr); }
  std::vector<std::string> Writes() const {
    std::vector<std::string> writes;
    std::copy_if(all.begin(), all.end(), std::back_inserter(writes),
                 [](const std::string& sql) { return !sql.starts_with("SELECT"); });
    return writes;
  }
  std::vector<std::string> all;

 private:
  Connection& connection_;
};

bool Has(const std::map<std::string, std::vector<std::string>>& shape, const std::string& table,
         const std::string& column) {
  const auto found = shape.find(table);
  return found != shape.end() &&
         std::find(found->second.begin(), found->second.end(), column) != found->second.end();
}

TEST(ConnectSequenceTest, ANewOfficePassesAllStepsInTheirOrder) {
  Office office(Office::State::base);
  office.Run("INSERT INTO CustMast (CustID) VALUES ('C1')");
  office.Run("INSERT INTO LoanMast (LoanID) VALUES ('L1')");
  office.Run("INSERT INTO SchMast (SchID,LoanID,DueDate) VALUES (1,'L1','2024-02-29')");
  office.Run("INSERT INTO DrawDownMast (SID,LoanID,TrxDate) VALUES ('D1','L1','2024-01-05')");
  office.Run("INSERT INTO DrawDownMast (SID,LoanID,TrxDate) VALUES ('D2','gone','2024-01-05')");
  office.Connect();
  EXPECT_THAT(
      office.steps,
      ElementsAre("TransLogs", "ftpAcc", "CapLock", "IntRate", "DefaultLateCharge", "LinkAcc",
                  "SMSServer", "LowInt", "LinkDB", "CompCode2", "PaymentReader", "SchInt",
                  "Patch-Drawdown", "PayToDate", "RoundedInstallment", "OldReceipt", "NoSignature",
                  "AMLA", "LockAMLAReasonCode", "DataExportFlag", "DisableSTR", "LampiranA",
                  "ORYYMMDD", "HolidayMast", "CheckHoliday", "AutoChangePayDate",
                  "PaymentReaderOldMethod", "IDEAL", "CalcAmt", "OrgDueDate", "EInv",
                  "AutoProcessingFeeRate", "AutoStampingFeeRate", "AutoLoanPurpose", "EInvCustName",
                  "EInvCancel", "LocalClientSecret", "OrgDueDate2", "LHDNQR", "LastDownDate",
                  "CreateSelfBillTable", "SuppCity", "MasterReportS4", "ChargeIndex",
                  "CompanyPictures", "CashBookOpening", "EInvSending", "PaymentReaderLine",
                  "EInvCodes", "MoveIn", "WatchListCopy", "LongLHDNQR", "EngineIndexes",
                  "BaseIndexes", "SaveMark", "YearIndexes", "ReasonIndexes", "SharedFigures"));
  for (const char* key : {"Patch-Drawdown",
                          "AMLA",
                          "DataExportFlag",
                          "DisableSTR",
                          "LampiranA",
                          "OrgDueDate",
                          "EInv",
                          "EInvCustName",
                          "EInvCancel",
                          "LocalClientSecret",
                          "OrgDueDate2",
                          "LHDNQR",
                          "LastDownDate",
                          "CreateSelfBillTable",
                          "SuppCity",
                          "MasterReportS4",
                          "ChargeIndex",
                          "CompanyPictures",
                          "CashBookOpening",
                          "EInvSending",
                          "PaymentReaderLine",
                          "EInvCodes",
                          "MoveIn",
                          "WatchListCopy",
                          "LongLHDNQR",
                          "BaseIndexes",
                          "SaveMark",
                          "YearIndexes",
                          "ReasonIndexes",
                          "SharedFigures"}) {
    EXPECT_EQ(ReadSetting(office.session.Main(), key), "1") << key;
  }
  auto shape = office.Shape();
  EXPECT_EQ(shape["LoanMast"].size(), 170u);
  EXPECT_EQ(shape["PaymentMast"].size(), 52u);
  EXPECT_EQ(shape["EInvMast"].size(), 18u);
  EXPECT_EQ(shape["SelfBillMast"].size(), 25u);
  EXPECT_EQ(shape["AMLATrans"].size(), 45u);
  EXPECT_EQ(office.Scalar("SELECT SID FROM DrawDownMast"), "D1");
  EXPECT_EQ(office.Scalar("SELECT OrgDueDate FROM LoanMast"), "2024-02-29");
  EXPECT_EQ(office.Scalar("SELECT LastDownDate FROM LoanMast"), "2024-01-05");
  EXPECT_EQ(office.Scalar("SELECT AMLA+AMLAOfficer+DisableSTR FROM CompMast"), "00");
  // Widened by the last patches.
  office.Run("INSERT INTO SelfBillMast (SID,SuppCity) VALUES ('S1','Kuala Terengganu')");
  office.Run("INSERT INTO MasterReport (s4) VALUES (" + QuoteStr(std::string(1407, 'x')) + ")");
  const Settings& settings = office.session.settings;
  EXPECT_TRUE(settings.AMLA && settings.DataExportFlag && settings.EInv);
  EXPECT_EQ(settings.LampiranA, "1");
  EXPECT_FALSE(settings.IDEAL);
  // No central database on this PC: a line for each of the two patches that ask for it, no box.
  EXPECT_THAT(office.Log(), SizeIs(2));
  EXPECT_THAT(office.Log(), Contains(HasSubstr("Transfer Setting Code")).Times(2));
  EXPECT_THAT(office.desk.messages, IsEmpty());
}

TEST(ConnectSequenceTest, ALaterStartReadsOnly) {
  Office office(Office::State::patched);
  Recorder recorder(office.session.Main());
  office.Connect();
  ASSERT_THAT(recorder.Writes(), SizeIs(2));
  EXPECT_THAT(recorder.Writes()[0], HasSubstr("DELETE FROM Systemast WHERE Param IN"));
  EXPECT_EQ(recorder.Writes()[1], patches::kFillOrgDueDate);
  EXPECT_TRUE(office.session.settings.IDEAL);
  EXPECT_TRUE(office.session.settings.EInv && office.session.settings.AMLA);
}

TEST(ConnectSequenceTest, SettingsReachTheSession) {
  Office office(Office::State::patched);
  struct Case {
    const char* key;
    const char* value;  // null for Null
    std::string (*field)(const Session&);
    const char* expected;
  };
  const auto yes = [](bool on) { return std::string(on ? "on" : "off"); };
  static const auto show = yes;
#define FLAG(name) [](const Session& session) { return show(session.settings.name); }
#define TEXT(name) [](const Session& session) { return session.settings.name; }
  const Case kCases[] = {
      {"PaymentReader", "1", FLAG(PaymentReader), "on"},
      {"PaymentReader", "0", FLAG(PaymentReader), "off"},
      {"PaymentReader", "2", FLAG(PaymentReader), "off"},
      {"PaymentReader", "true", FLAG(PaymentReader), "off"},
      {"ORYYMMDD", nullptr, FLAG(ORYYMMDD), "off"},
      {"CapLock", "0", FLAG(CapLock), "on"},
      {"CapLock", "", FLAG(CapLock), "off"},
      {"CapLock", nullptr, FLAG(CapLock), "off"},
      {"LowInt", "", TEXT(LowInt), "0"},
      {"LowInt", "1.5", TEXT(LowInt), "1.5"},
      {"RoundedInstallment", "x",
       [](const Session& s) { return std::to_string(s.settings.RoundedInstallment); }, "2"},
      {"RoundedInstallment", "0",
       [](const Session& s) { return std::to_string(s.settings.RoundedInstallment); }, "0"},
      {"RoundedInstallment", "99999999999",
       [](const Session& s) { return std::to_string(s.settings.RoundedInstallment); }, "2"},
      {"LinkDB", "Provider=SQLOLEDB.1;Data Source=x",
       [](const Session& s) { return s.LinkDBString; }, "Provider=SQLOLEDB.1;Data Source=x"},
      {"LampiranA", "2", TEXT(LampiranA), "2"},
      {"AutoLoanPurpose", "CAR", TEXT(AutoLoanPurpose), "CAR"},
      {"AMLA", "0", FLAG(AMLA), "off"},
      {"DataExportFlag", "0", FLAG(DataExportFlag), "off"},
      {"LinkAcc", "1", TEXT(LinkAcc), ""},  // ConnLinkAcc is not "1" on this PC
  };
#undef FLAG
#undef TEXT
  for (const Case& c : kCases) {
    const std::string key = QuoteStr(c.key);
    office.Run("DELETE FROM Systemast WHERE Param=" + key);
    office.Run("INSERT INTO Systemast (Param,Value) VALUES (" + key + "," +
               (c.value == nullptr ? "null" : QuoteStr(c.value)) + ")");
    office.session.settings = {};
    office.Connect();
    EXPECT_EQ(c.field(office.session), c.expected)
        << c.key << " " << (c.value == nullptr ? "null" : c.value);
  }
  EXPECT_EQ(office.session.AED, nullptr);
}

TEST(SettingsTest, TruthValues) {
  for (const char* text : {"1", "-1", "True", "true", " TRUE ", "2", "0.5"}) {
    EXPECT_TRUE(CountsAsTrue(text)) << text;
  }
  for (const char* text : {"", "0", "0.00", "False", "yes", "x"}) {
    EXPECT_FALSE(CountsAsTrue(text)) << text;
  }
}

// Of an office from before the indexes, and of one that has an index without the key.
TEST(ConnectSequenceTest, AnExistingOfficeGetsItsIndexes) {
  const std::pair<const char*, std::vector<const char*>> patches[] = {
      {"ChargeIndex", {"ChargeMast.IX_ChargeMast_LoanID_PType_TrxDate_ChargeAmt"}},
      {"YearIndexes",
       {"PaymentMast.IX_PaymentMast_PayDate_CompCode_Amounts",
        "DrawDownMast.IX_DrawDownMast_TrxDate_CompCode_DrawDownAmt"}},
      {"ReasonIndexes", {"PaymentMast.IX_PaymentMast_AMLACode", "LoanMast.IX_LoanMast_AMLACode"}}};
  for (const auto& [key, indexes] : patches) {
    for (const bool has_one : {false, true}) {
      SCOPED_TRACE(fmt::format("{} {}", key, has_one));
      Office office(Office::State::patched);
      const auto drop = [&](const char* index) { office.Run(fmt::format("DROP INDEX {}", index)); };
      for (const char* index : indexes) {
        if (!has_one || index != indexes.front()) drop(index);
      }
      office.Run(fmt::format("DELETE FROM Systemast WHERE Param='{}'", key));
      office.Connect();
      EXPECT_EQ(ReadSetting(office.session.Main(), key), "1");
      EXPECT_FALSE(office.session.Main().InTransaction());
      for (const char* index : indexes) drop(index);  // fails where there is none
      office.Connect();                               // once is enough
      EXPECT_THROW(drop(indexes.front()), SqlError);
      EXPECT_THAT(office.desk.messages, IsEmpty());
    }
  }
}

TEST(ConnectSequenceTest, ASwitchedOffFeatureIsNotPatched) {
  Office office(Office::State::base);
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('AMLA','0')");
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('DataExportFlag','0')");
  office.Connect();
  const auto shape = office.Shape();
  EXPECT_FALSE(Has(shape, "CompMast", "AMLA"));
  EXPECT_FALSE(shape.contains("DataExport"));
  EXPECT_FALSE(office.session.settings.AMLA || office.session.settings.DataExportFlag);
  EXPECT_EQ(ReadSetting(office.session.Main(), "AMLA"), "0");
}

TEST(ConnectSequenceTest, AnEmptyGuardCountsAsMissing) {
  Office office(Office::State::base);
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('AMLA','')");
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('SuppCity',null)");
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('SchInt','')");
  office.Connect();
  EXPECT_TRUE(office.session.settings.AMLA);
  EXPECT_EQ(ReadSetting(office.session.Main(), "SuppCity"), "1");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM Systemast WHERE Param='SchInt'"), "1");
}

TEST(ConnectSequenceTest, AConnectionThatDoesNotOpenNamesItselfAndItsSetting) {
  Office office(Office::State::patched);
  office.session.ConnLinkAcc = "1";
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('LinkAcc','1')");
  office.session.data_sources.Add("AEDMTS",
                                  {DataSource::Kind::kEmbedded, office.folder.File("missing.db")});
  try {
    office.Connect();
    FAIL() << "started without its accounting bridge";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 4060);
    EXPECT_THAT(error.what(), HasSubstr("connection AED, see the setting LinkAcc"));
  }
  EXPECT_FALSE(std::filesystem::exists(office.folder.File("missing.db")));
}

TEST(ConnectSequenceTest, StandInsOfForeignDatabasesAreMadeWhereThePcAsksForThem) {
  Office office(Office::State::patched);
  const std::string bridge = office.folder.File("bridge.db");
  const std::string central = office.folder.File("central.db");
  const std::string settings =
      "ConnAccount = MainUser\nConnDataSource = Office\nConnLinkAcc = 1\n[Office]\nfile = " +
      office.folder.File("office.db") + "\n[AEDMTS]\nfile = " + bridge +
      "\ncreate = yes\n[AMLA]\nfile = " + central + "\n";
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('LinkAcc','1')");
  for (int start = 1; start <= 2; ++start) {
    const LocalSettings local = LocalSettings::Parse(settings, "settings.ini");
    ApplyLocalSettings(office.session, local);
    OpenMainConnection(office.session, local);
    office.session.AED.reset();
    office.Connect();
    ASSERT_NE(office.session.AED, nullptr);
    // What was handed over before stays.
    EXPECT_EQ(ScalarQuery(*office.session.AED, "SELECT COUNT(*) FROM TM_Debtor"),
              std::to_string(start - 1));
    office.session.AED->Execute("INSERT INTO TM_Debtor (AccNo) VALUES ('C1')");
  }
  EXPECT_FALSE(std::filesystem::exists(central));
}

TEST(ConnectSequenceTest, AStandInBeginsWithTheRowsOfItsFolderWholeOrNotAtAll) {
  Office office(Office::State::patched);
  const std::string central = office.folder.File("central.db");
  const std::string folder = office.folder.File("rows");
  std::filesystem::create_directory(folder);
  const auto write = [&](const char* name, std::string_view text) {
    std::ofstream(folder + "/" + name) << text;
  };
  write("2.sql",
        "UPDATE AMLAMast SET Name=N'陈; \"B\"' WHERE NRIC='1';\nINSERT INTO eTax VALUES (1)");
  write("1.sql", "-- the list\nINSERT INTO AMLAMast (NRIC) VALUES ('1');");
  write("3.txt", "no statement");
  const auto start = [&] {
    const LocalSettings local = LocalSettings::Parse(
        "ConnDataSource = Office\n[Office]\nfile = " + office.folder.File("office.db") +
            "\n[AMLA]\nfile = " + central + "\ncreate = yes\nfill = " + folder + "\n",
        "settings.ini");
    ApplyLocalSettings(office.session, local);
    OpenMainConnection(office.session, local);
  };
  try {
    start();
    FAIL() << "eTax has two columns";
  } catch (const std::exception& failure) {
    EXPECT_THAT(failure.what(), ::testing::HasSubstr("2.sql: "));
  }
  EXPECT_FALSE(std::filesystem::exists(central));
  write("2.sql", "UPDATE AMLAMast SET Name=N'陈; \"B\"' WHERE NRIC='1'");
  for (int i = 0; i < 2; ++i) start();
  EXPECT_EQ(ScalarQuery(*OpenSqlite("AMLA", central, false, office.session.clock),
                        "SELECT Name FROM AMLAMast WHERE NRIC='1'"),
            "陈; \"B\"");
}

TEST(ConnectSequenceTest, AnSmsDatabaseThatIsAwayIsToldAndOpenedWhenItIsThere) {
  Office office(Office::State::patched);
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('SMSServer','SMS')");
  const std::string file = office.folder.File("sms.db");
  office.session.data_sources.Add("SMS", {DataSource::Kind::kEmbedded, file});
  office.Connect();
  ASSERT_EQ(office.desk.messages.size(), 1U);
  EXPECT_NE(office.desk.messages[0].find("see the setting SMSServer"), std::string::npos);
  EXPECT_EQ(office.session.smsconn, nullptr);
  EXPECT_THROW(SmsDatabase(office.session), SqlError);
  MakeSqlite("SMS", file, office.session.clock,
             [](Connection& made) { RunScript(made, SchemaText("sms")); });
  EXPECT_EQ(ScalarQuery(SmsDatabase(office.session), "SELECT COUNT(*) FROM SMSList"), "0");
}

TEST(ConnectSequenceTest, TheAuditDatabaseOfAnEmbeddedOfficeIsMadeBesideIt) {
  Office office(Office::State::patched);
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('TransLogs','1')");
  office.Connect();
  EXPECT_TRUE(std::filesystem::exists(office.folder.File("office-Logs.db")));
  EXPECT_EQ(ScalarQuery(*office.session.LogsConn, "SELECT COUNT(*) FROM TransLogs"), "0");
  office.session.LogsConn->Execute("INSERT INTO TransLogs (UserID) VALUES ('AMY')");
  office.Open();
  office.Connect();
  EXPECT_EQ(ScalarQuery(*office.session.LogsConn, "SELECT COUNT(*) FROM TransLogs"), "1");
}

// A start that dies at any of its writes: a patch is there with its key or not at all, and the next
// start ends as one that was not stopped.
TEST(ConnectSequenceTest, AStoppedStartGoesOnAtTheNextOne) {
  const auto whole = Office(Office::State::patched).Shape();
  const TempFolder folder;
  const Clock clock;
  const auto central = OpenSqlite("AMLA", folder.File("amla.db"), true, clock);
  RunScript(*central, SchemaText("central"));
  central->Execute("INSERT INTO eState VALUES ('01','Johor')");
  std::string died;
  for (int n = 1; n == 1 || !died.empty(); ++n) {
    Office office(Office::State::base);
    died.clear();
    office.session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, folder.File("amla.db")});
    office.session.Main().SetFaultHook([&, left = n](std::string_view sql) mutable {
      if (!died.empty() || sql.starts_with("SELECT")) return;
      if (sql.starts_with("CREATE INDEX ") && !sql.ends_with("(SuppID)"))
        return;  // one for them all
      if (--left > 0) return;
      died = sql;
      throw SqlError(1105, "the disk is full");
    });
    try {
      office.Connect();
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 1105) << died;
    }
    SCOPED_TRACE(died);
    office.Open();
    EXPECT_NO_THROW(office.Connect());
    EXPECT_EQ(office.Shape(), whole);
    // The patch and what it brings in stand in two transactions.
    EXPECT_EQ(office.Lines("SELECT StateName FROM eState"), "Johor \n");
    EXPECT_EQ(office.Lines("SELECT Param FROM Systemast WHERE Param='EInvCodesDue'"), "");
  }
}

// An office that a newer program has patched is told by the newest patch, and nothing is written.
TEST(Startup, AnOlderProgramRefusesANewerOffice) {
  Office office(Office::State::patched);
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('VERSION','0.0.1')");
  const std::string known = ReadSetting(office.session.Main(), "NewestPatch");
  EXPECT_EQ(known, std::string(ConnectSteps().back()) + " " + RunningVersion());
  const struct {
    std::string stored;
    std::vector<const char*> told;  // none: the program starts
  } rows[] = {{known, {}},
              {"", {}},
              {"MoveIn 0.0.9", {}},  // an office that was last open in an older program
              {"LoanGrades 1.2.0", {"(1.2.0)", "\"LoanGrades\"", "Install the newer version"}}};
  for (const auto& row : rows) {
    office.desk.messages.clear();
    office.Run("UPDATE Systemast SET [Value]='0.0.1' WHERE Param='VERSION'");
    office.Run(
        fmt::format("UPDATE Systemast SET [Value]='{}' WHERE Param='NewestPatch'", row.stored));
    Recorder recorder(office.session.Main());
    bool refused = false;
    try {
      CheckVersion(office.session, office.desk, RunningVersion());
    } catch (const StartRefused&) {
      refused = true;
    }
    EXPECT_EQ(refused, !row.told.empty()) << row.stored;
    EXPECT_EQ(recorder.Writes().empty(), refused) << row.stored;
    ASSERT_EQ(office.desk.messages.size(), refused ? 1U : 0U) << row.stored;
    for (const char* part : row.told) EXPECT_THAT(office.desk.messages[0], HasSubstr(part));
  }
  office.Run("UPDATE Systemast SET [Value]='MoveIn 0.0.9' WHERE Param='NewestPatch'");
  office.Connect();
  EXPECT_EQ(ReadSetting(office.session.Main(), "NewestPatch"), known);
}

// By their digits put together; only an installed copy raises what is stored.
TEST(Startup, TheStoredVersionIsComparedAndRaised) {
  const struct {
    const char *stored, *running;
    bool installed;
    const char *after, *refused;
  } rows[] = {{"", "1.10.0", true, "", ""},
              {"..", "1.10.0", true, "..", ""},
              {"1.9.9", "1.10.0", true, "1.10.0", ""},
              {"1.9.9", "1.10.0", false, "1.9.9", ""},
              {"1.10.0", "1.10.0", true, "1.10.0", ""},
              {"1.10.0", "1.9.9", true, "1.10.0",
               "New version 1.10.0 available for download, "
               "Please download update now"},
              {"v2", "1.9.9", true, "v2", "VERSION"}};
  for (const auto& row : rows) {
    Office office(Office::State::patched);
    if (!row.installed) std::ofstream(office.folder.File("CMakeCache.txt")) << "";
    office.Run(
        fmt::format("INSERT INTO Systemast (Param,Value) VALUES ('VERSION','{}')", row.stored));
    std::string told;
    try {
      CheckVersion(office.session, office.desk, row.running);
    } catch (const StartRefused& refused) {
      told = refused.what();
    }
    for (const std::string& message : office.desk.messages) told += message;
    EXPECT_EQ(told.empty(), *row.refused == '\0') << told;
    EXPECT_THAT(told, HasSubstr(row.refused)) << row.stored;
    EXPECT_EQ(ReadSetting(office.session.Main(), "VERSION"), row.after) << row.stored;
  }
}

}  // namespace
}  // namespace kaunter
