// Screening against a real second database.
#include "compliance/aml.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "compliance/screening.h"
#include "core/schema_text.h"
#include "screen/control.h"
#include "screen/screen.h"
#include "tests/core/office.h"
#include "tests/support/odbc_driver.h"
#include "tests/support/silent_server.h"

namespace kaunter {
namespace {

class Aml : public ::testing::Test {
 protected:
  Aml() : office(Office::State::patched) {
    office.session.settings.AMLA = true;
    office.Run(
        "UPDATE CompMast SET AMLA='1',AMLACheckIC='1',AMLALoan=50000,AMLAPayment=25000.5,"
        "AMLAWarning='0',DisableSTR='1' WHERE CompCode='HQ'");
    office.session.status = [this](std::string_view text) { status = text; };
  }

  // The central database, with one person under a new IC and one under a passport.
  void MakeCentral() {
    const std::string file = office.folder.File("central.db");
    auto central = OpenSqlite("AMLA", file, true, office.session.clock);
    RunScript(*central, SchemaText("central"));
    central->Execute(
        "INSERT INTO AMLAMast (RefNo,Name,NRIC,PassportNo,OtherInformation) VALUES "
        "('UN-7','ALI ''THE'' HAND','700101-10-1111','','Order of 2014');"
        "INSERT INTO AMLAMast (RefNo,Name,NRIC,PassportNo) VALUES ('UN-8','IVAN','','A1234567')");
    Central(file);
  }
  void Central(const std::string& file) {
    office.session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, file});
  }
  Screening Screen(const char* ic, const char* passport1 = "", const char* passport2 = "") {
    return ScreenIdentity(office.session, office.desk, {ic, passport1, passport2}).found;
  }

  Office office;
  std::string status;
};

TEST_F(Aml, TheRulesOfACompanyAreReadAndAnUnknownOneLeavesThem) {
  EXPECT_TRUE(LoadAMLSettings(office.session, "HQ"));
  EXPECT_TRUE(office.session.aml.AMLACheckIC && office.session.aml.DisableSTR);
  EXPECT_FALSE(office.session.aml.AMLAWarning);
  EXPECT_EQ(office.session.aml.AMLAPayment, Money::FromText("25000.50"));
  EXPECT_FALSE(LoadAMLSettings(office.session, "GONE"));
  EXPECT_TRUE(office.session.aml.AMLA);
  office.Run(
      "INSERT INTO CompMast (CompCode,AMLA,AMLALoan) VALUES ('AB','0',NULL);"
      "UPDATE CompMast SET AMLALoan=NULL WHERE CompCode='AB'");
  EXPECT_FALSE(LoadAMLSettings(office.session, "AB"));
  EXPECT_FALSE(office.session.aml.AMLA);
  EXPECT_EQ(office.session.aml.AMLALoan, Money());
}

// Its columns were never made.
TEST_F(Aml, AnOfficeThatNeverHadTheFeatureIsNotAsked) {
  Office bare(Office::State::base);
  EXPECT_FALSE(LoadAMLSettings(bare.session, "HQ"));
}

TEST_F(Aml, OneNumberIsLookedUpTheFirstThatIsNotEmpty) {
  MakeCentral();
  LoadAMLSettings(office.session, "HQ");
  EXPECT_EQ(Screen("700101-10-1111"), Screening::hit);
  ASSERT_EQ(office.desk.messages.size(), 1u);
  EXPECT_EQ(office.desk.messages[0],
            "AML/CFT Screening: AML/CFT detected on IC: 700101-10-1111\n\nRef. No.: UN-7\n\n"
            "Name: ALI 'THE' HAND\n\nOrder of 2014");
  EXPECT_EQ(Screen("", "A1234567"), Screening::hit);
  EXPECT_NE(office.desk.messages[1].find("AML/CFT detected on Passport No: A1234567\n\nRef. No.: "
                                         "UN-8"),
            std::string::npos);
  EXPECT_EQ(Screen("", "", "A1234567"), Screening::hit);
  EXPECT_EQ(Screen("800131-10-5555", "A1234567"), Screening::clear);  // hidden by the IC
  EXPECT_EQ(Screen("", "B1", "A1234567"), Screening::clear);
  EXPECT_EQ(Screen("A1234567"), Screening::clear);  // a passport is no IC
  EXPECT_EQ(Screen("' OR 1=1 --"), Screening::clear);
  EXPECT_EQ(office.desk.messages.size(), 3u);
}

TEST_F(Aml, NothingIsOpenedWhereNothingIsToBeScreened) {
  Central(office.folder.File("missing.db"));  // would be told as away
  LoadAMLSettings(office.session, "HQ");
  EXPECT_EQ(Screen("", "", ""), Screening::clear);
  for (bool AMLSettings::*off : {&AMLSettings::AMLA, &AMLSettings::AMLACheckIC}) {
    LoadAMLSettings(office.session, "HQ");
    office.session.aml.*off = false;
    EXPECT_EQ(Screen("700101-10-1111"), Screening::clear);
  }
  EXPECT_TRUE(office.Log().empty());
}

TEST_F(Aml, AServerThatIsAwayIsNotedAndDoesNotStopTheCounter) {
  LoadAMLSettings(office.session, "HQ");
  EXPECT_EQ(Screen("700101-10-1111"), Screening::away);  // this PC names no central database
  Central(office.folder.File("missing.db"));
  EXPECT_EQ(Screen("700101-10-1111"), Screening::away);
  { auto empty = OpenSqlite("AMLA", office.folder.File("empty.db"), true, office.session.clock); }
  Central(office.folder.File("empty.db"));
  EXPECT_EQ(Screen("700101-10-1111"), Screening::away);  // it answers, without a list
  ASSERT_EQ(office.Log().size(), 3u);
  for (const std::string& line : office.Log()) {
    EXPECT_NE(line.find("AML/CFT screening of 700101-10-1111 not done: "), std::string::npos);
  }
  EXPECT_EQ(status, "AML/CFT screening not done: the central database is away");
  EXPECT_TRUE(office.desk.messages.empty());
  // No log folder and no main window either.
  std::filesystem::remove_all(office.folder.File("logs"));
  office.session.status = nullptr;
  EXPECT_EQ(Screen("700101-10-1111"), Screening::away);
}

// A host that takes the call and is silent, and one that swallows it, through both drivers: three
// numbers are not waited for three times.
TEST(AmlTime, TheCounterWaitsFiveSecondsInAll) {
  using Manner = test::SilentServer::Manner;
  const std::string kDrivers[] = {testing::FreeTdsDriver() + ";TDS_Version=7.4;Server=127.0.0.1",
                                  testing::PostgresDriver() + ";Server=127.0.0.1"};
  std::vector<std::thread> counters;
  for (const std::string& driver : kDrivers) {
    for (const Manner manner : {Manner::takes_the_call, Manner::swallows}) {
      counters.emplace_back([&driver, manner] {
        const test::SilentServer server(manner);
        Office office(Office::State::base);
        office.session.settings.AMLA = true;
        office.session.aml.AMLA = office.session.aml.AMLACheckIC = true;
        office.session.data_sources.Add(
            "AMLA", {DataSource::Kind::kOdbc,
                     "Driver=" + driver + ";UID=aml;PWD=hush;Port=" + server.port()});
        const auto begin = std::chrono::steady_clock::now();
        const auto results = LookUpIdentities(office.session, {{"700101-10-1111"}, {"", "A1"}, {}});
        const auto waited = std::chrono::steady_clock::now() - begin;
        EXPECT_GE(waited, std::chrono::milliseconds(4500)) << driver;
        EXPECT_LT(waited, std::chrono::milliseconds(8000)) << driver;
        EXPECT_EQ(results[0].found, Screening::away);
        EXPECT_EQ(results[1].found, Screening::away);
        EXPECT_EQ(results[2].found, Screening::clear);  // nothing to ask
        ASSERT_EQ(office.Log().size(), 1u) << driver;
        EXPECT_NE(office.Log()[0].find("screening of 700101-10-1111, A1 not done"),
                  std::string::npos);
        EXPECT_EQ(office.Log()[0].find("hush"), std::string::npos);
      });
    }
  }
  for (std::thread& counter : counters) counter.join();
}

// The list answers one number and then no more: that answer holds.
TEST_F(Aml, WhatWasAnsweredBeforeTheLineBrokeHolds) {
  const std::string file = office.folder.File("half.db");
  OpenSqlite("AMLA", file, true, office.session.clock)
      ->Execute(
          "CREATE TABLE AMLAMast (RefNo nvarchar(50),Name nvarchar(300),NRIC nvarchar(50),"
          "OtherInformation nvarchar(max));"
          "INSERT INTO AMLAMast VALUES ('UN-7','ALI','700101-10-1111','')");
  Central(file);
  LoadAMLSettings(office.session, "HQ");
  const auto results =
      LookUpIdentities(office.session, {{"700101-10-1111"}, {"", "A1234567"}, {"800131-10-5555"}});
  EXPECT_EQ(results[0].found, Screening::hit);
  EXPECT_EQ(results[1].found, Screening::away);
  EXPECT_EQ(results[2].found, Screening::away);
  EXPECT_NE(office.Log().at(0).find("screening of A1234567, 800131-10-5555 not done"),
            std::string::npos);
}

// The statement is seen as any other is.
TEST_F(Aml, ALookUpStandsInTheTrace) {
  MakeCentral();
  LoadAMLSettings(office.session, "HQ");
  std::string traced;
  office.session.trace = [&](std::string_view connection, std::string_view sql) {
    traced.append(connection).append("|").append(sql);
  };
  EXPECT_EQ(Screen("O'Hara"), Screening::clear);
  EXPECT_EQ(traced,
            "AMLA|SELECT RefNo,Name,NRIC,OtherInformation FROM AMLAMast WHERE NRIC='O''Hara'");
}

TEST(AmlText, NamesStandAsTheListPrintsThem) {
  const std::pair<const char*, const char*> kCases[] = {{"", ""},
                                                        {"   ", ""},
                                                        {" ALI  BIN     ABU ", "ALI BIN ABU"},
                                                        {"陈  亚九", "陈 亚九"},
                                                        {"A B", "A B"}};
  for (const auto& [text, tidy] : kCases) EXPECT_EQ(TidyText(text), tidy) << text;
}

TEST_F(Aml, ReasonsTypedOnceAreOfferedWithThoseSetUp) {
  office.Run(
      "INSERT INTO AMLADesc (SID,AMLADesc) VALUES ('LOAN','House'),('LOAN','Car'),"
      "('PAYMENT','Salary');"
      "INSERT INTO LoanMast (LoanID,AMLACode) VALUES ('L1','Car'),('L2','Boat'),('L3','Boat'),"
      "('L4','')");
  class Host : public kaunter::Screen {
   public:
    explicit Host(Desk& desk) : kaunter::Screen("Host", {}, desk) {}
    ComboBox AMLACode{*this, "AMLACode", {}, {}, true};
  } host(office.desk);
  host.AMLACode.SetText("Shop");
  const auto fill = [&](const char* table, const char* sid, bool blank) {
    FillReasonCodes(host.AMLACode, office.session.Main(), table, sid, blank);
    auto items = host.AMLACode.items();
    std::sort(items.begin() + (blank ? 1 : 0), items.end());
    return items;
  };
  EXPECT_EQ(fill("LoanMast", "LOAN", true), (std::vector<std::string>{"", "Boat", "Car", "House"}));
  EXPECT_EQ(fill("PaymentMast", "PAYMENT", false), std::vector<std::string>{"Salary"});
  EXPECT_EQ(host.AMLACode.text(), "Shop");
}

}  // namespace
}  // namespace kaunter
