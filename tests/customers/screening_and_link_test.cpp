// What a customer's save and boxes ask of the world outside: the watch list and the accounting
// bridge, each a real second database.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/schema_text.h"
#include "customers/new_cust_frm.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class AgreeingDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view) override {
    ++asked;
    return true;
  }
  int asked = 0;
};

class CustomerOutside : public ::testing::Test {
 protected:
  CustomerOutside() : office(Office::State::patched), session(office.session) {
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    session.AllowEdit = true;
    session.settings.AMLA = true;
    office.Run(
        "UPDATE CompMast SET AMLA='1',AMLACheckIC='1' WHERE CompCode='HQ';"
        "INSERT INTO CompMast (CompCode,AMLA,AMLACheckIC) VALUES ('AB','0','1')");
    const std::string list = office.folder.File("central.db");
    auto central = OpenSqlite("AMLA", list, true, session.clock);
    RunScript(*central, SchemaText("central"));
    central->Execute(
        "INSERT INTO AMLAMast (RefNo,Name,NRIC,PassportNo) VALUES "
        "('UN-7','ALI','700101-10-1111',''),('UN-8','IVAN','','A123')");
    session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, list});
    session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
    RunScript(*session.AED, SchemaText("accounting"));
    screen = std::make_unique<NewCustFrm>(session, desk);
    screen->Load();
    Type(screen->CustName, "  Tan  Ah   Kow ");
    screen->CustRace.SetText("CINA");
    screen->CustGender.SetText("MALE");
    screen->AreaCode.SetText("PERSONAL");
  }

  void Type(TextBox& box, const std::string& text) {
    screen->Guard([&] {
      box.Enter();
      box.Type(text);
      box.Leave();
    });
  }
  void Save() {
    desk.messages.clear();
    screen->Guard([&] { screen->SaveCmd.Click(); });
  }
  int Told(const std::string& part) {
    return static_cast<int>(std::count_if(
        desk.messages.begin(), desk.messages.end(),
        [&](const std::string& message) { return message.find(part) != std::string::npos; }));
  }
  std::string Status() { return office.Scalar("SELECT CustStatus FROM CustMast"); }
  std::string Debtor() {
    return ScalarQuery(*session.AED, "SELECT AccNo+'|'+CompanyName+'|'+Address4 FROM TM_Debtor");
  }

  Office office;
  Session& session;
  AgreeingDesk desk;
  std::unique_ptr<NewCustFrm> screen;
};

TEST_F(CustomerOutside, AListedIcShowsOnLeavingTheBoxAndAnotherOneFreesTheStatus) {
  const auto listed = [this] {
    return screen->CustStatus.text() == "AMLA" && !screen->CustStatus.enabled() &&
           screen->CustStatus.marked();
  };
  Type(screen->CustNIC, "700101101111");
  EXPECT_EQ(Told("AML/CFT detected on IC: 700101-10-1111"), 1);
  EXPECT_TRUE(listed());
  Type(screen->CustNIC, "800131-10-5555");
  EXPECT_TRUE(screen->CustStatus.enabled());
  Type(screen->CustOIC, "A123");  // looked up among the passports
  EXPECT_EQ(Told("AML/CFT detected on Passport No: A123"), 1);
  EXPECT_TRUE(listed());
  screen->CmdClear.Click();
  EXPECT_TRUE(screen->CustStatus.enabled());
  EXPECT_EQ(screen->CustStatus.text(), "ACTIVE");
}

TEST_F(CustomerOutside, ASaveScreensEachNumberAndStoresTheHit) {
  session.settings.TransLogs = true;
  session.LogsConn = OpenSqlite("LogsConn", office.folder.File("logs.db"), true, session.clock);
  CreateMissingAuditTables(*session.LogsConn);
  Type(screen->CustNIC, "800131-10-5555");
  Type(screen->CustOthIC, "A123");  // asked nowhere but in the save
  EXPECT_EQ(Told("AML/CFT"), 0);
  Save();
  EXPECT_EQ(Told("AML/CFT detected on Passport No: A123"), 1);
  EXPECT_EQ(Told("Customer ID HQ0001 saved"), 1);
  EXPECT_EQ(Status(), "AMLA");
  EXPECT_EQ(screen->CustStatus.text(), "AMLA");
  EXPECT_FALSE(screen->CustStatus.enabled());
  const auto audited = [this](const char* type) {
    return ScalarQuery(*session.LogsConn,
                       "SELECT COUNT(*) FROM TransLogs WHERE Type=" + QuoteStr(type));
  };
  EXPECT_EQ(audited("Create"), "1");
  EXPECT_EQ(audited("Modify"), "1");
  // The status has been stored: nothing is left to be lost.
  desk.asked = 0;
  EXPECT_TRUE(screen->RequestClose());
  EXPECT_EQ(desk.asked, 0);
  // Two listed numbers are told one by one, and a status set back comes again.
  screen->CustStatus.SetText("ACTIVE");
  screen->CustNIC.SetText("700101-10-1111");
  Save();
  EXPECT_EQ(Told("AML/CFT detected on"), 2);
  EXPECT_EQ(Status(), "AMLA");
  // One that was not stored is not left unasked.
  screen->CustStatus.SetText("ACTIVE");
  session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.ends_with("SET CustStatus='AMLA' where CustID='HQ0001'")) throw SqlError(1105, "full");
  });
  Save();
  session.Main().SetFaultHook({});
  EXPECT_EQ(Told("an error occur during process\nfull\nThis change is not stored."), 2);
  desk.asked = 0;
  screen->RequestClose();
  EXPECT_EQ(desk.asked, 1);
}

TEST_F(CustomerOutside, TheRulesAreThoseOfTheCustomersCompany) {
  screen->CompCode.Enter();
  screen->CompCode.Pick("AB");
  screen->CompCode.Leave();
  EXPECT_FALSE(session.aml.AMLA);
  session.aml.AMLA = true;  // as a screen of another company would leave them
  Type(screen->CustNIC, "700101-10-1111");
  Save();
  EXPECT_EQ(Told("AML/CFT"), 0);
  EXPECT_EQ(Status(), "ACTIVE");
}

TEST_F(CustomerOutside, AServerThatIsAwayIsWaitedForOnceAndTheSaveGoesOn) {
  screen->CustNIC.SetText("700101-10-1111");
  screen->CustOIC.SetText("A123");
  session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, office.folder.File("missing.db")});
  std::string status;
  session.status = [&](std::string_view text) { status = text; };
  Save();
  EXPECT_EQ(Told("Customer ID HQ0001 saved"), 1);
  EXPECT_EQ(desk.messages.size(), 1u);
  EXPECT_EQ(Status(), "ACTIVE");
  EXPECT_NE(status.find("central database is away"), std::string::npos);
  int notes = 0;
  for (const std::string& line : office.Log()) notes += line.find("not done") != line.npos ? 1 : 0;
  EXPECT_EQ(notes, 1);
}

// While the numbers are typed the line is tried once; the save tries it again.
TEST_F(CustomerOutside, ALineThatIsDownIsWaitedForOnceWhileTheNumbersAreTyped) {
  int tried = 0;
  const auto cut = [&](bool down) {
    session.data_sources.Add(
        "AMLA", {DataSource::Kind::kEmbedded, office.folder.File(down ? "gone.db" : "central.db")});
  };
  session.trace = [&](std::string_view connection, std::string_view) {
    tried += connection == "AMLA" ? 1 : 0;
  };
  cut(true);
  Type(screen->CustNIC, "700101-10-1111");
  cut(false);
  Type(screen->CustOIC, "A123");
  EXPECT_EQ(tried, 0);
  EXPECT_EQ(Told("AML/CFT detected"), 0);
  Save();
  EXPECT_EQ(tried, 2);
  EXPECT_EQ(Told("AML/CFT detected"), 2);
  EXPECT_EQ(Status(), "AMLA");
  cut(true);
  Type(screen->CustNIC, "800131-10-5555");
  screen->CmdClear.Click();
  cut(false);
  Type(screen->CustNIC, "700101-10-1111");  // another record
  EXPECT_EQ(tried, 3);
}

TEST_F(CustomerOutside, NamesAreTidiedUnlessTheFeatureIsOff) {
  EXPECT_EQ(screen->CustName.text(), "Tan Ah Kow");
  Type(screen->CustCompPos, " Head  Clerk");
  EXPECT_EQ(screen->CustCompPos.text(), "Head Clerk");
  session.settings.AMLA = false;
  Type(screen->CustAdd1, "1,  Jalan");
  EXPECT_EQ(screen->CustAdd1.text(), "1,  Jalan");
  Type(screen->CustNIC, "700101-10-1111");
  EXPECT_TRUE(desk.messages.empty());
}

TEST_F(CustomerOutside, ANewCustomerIsSentWithTheNumberAndAnExistingOneAgain) {
  session.settings.LinkAcc = "1";
  screen->CustCity.SetText("Johor Bahru");
  Save();
  EXPECT_EQ(Debtor(), "HQ0001|Tan Ah Kow|Johor Bahru");
  screen->CustCity.SetText("Muar");
  Save();
  EXPECT_EQ(Debtor(), "HQ0001|Tan Ah Kow|Muar");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT COUNT(*) FROM TM_Debtor"), "1");
  session.settings.LinkAcc.clear();
  screen->CustCity.SetText("Kluang");
  Save();
  EXPECT_EQ(Debtor(), "HQ0001|Tan Ah Kow|Muar");
}

TEST_F(CustomerOutside, ABridgeThatFailsIsToldAndTheRecordStands) {
  session.settings.LinkAcc = "1";
  session.AED->SetFaultHook([](std::string_view) { throw SqlError(1105, "away"); });
  for (const char* city : {"Muar", "Kluang"}) {  // new, then existing
    screen->CustCity.SetText(city);
    Save();
    EXPECT_EQ(Told("Create / Edit Debtor: an error occur on linkage to accounting system"), 1);
    EXPECT_EQ(Told("Alert !!: Debtor Code HQ0001 not linked"), 1);
    EXPECT_EQ(Told("Customer ID HQ0001 saved"), 1);
    EXPECT_EQ(office.Scalar("SELECT CustCity FROM CustMast WHERE CustID='HQ0001'"), city);
  }
}

TEST_F(CustomerOutside, ANewCustomerThatIsNotStoredIsNotSent) {
  session.settings.LinkAcc = "1";
  session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("INSERT INTO CustMast")) throw SqlError(1105, "the disk is full");
  });
  Save();
  session.Main().SetFaultHook(nullptr);
  EXPECT_EQ(Told("An error occurs during saving customer"), 1);
  EXPECT_EQ(Debtor(), "");
}

}  // namespace
}  // namespace kaunter
