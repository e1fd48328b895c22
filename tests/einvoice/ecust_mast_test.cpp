// The tax identity of a customer or company: what the screen opens with, what it refuses and in
// which order, what it writes, and the look-up of the tax number.
#include "einvoice/ecust_mast.h"

#include <gmock/gmock.h>

#include "tests/einvoice/raw_server.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kTitle = "Customer Detial - E-Invocing: ";

class ECustMastTest : public ::testing::Test {
 protected:
  ECustMastTest() {
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy"}) unsetenv(name);
    for (const char* row : {
             "DELETE FROM eState",
             "DELETE FROM eCountry",
             "DELETE FROM eMiscCode",
             "INSERT INTO eState VALUES ('01','Johor')",
             "INSERT INTO eState VALUES ('15','Wilayah Persekutuan Labuan')",
             "INSERT INTO eState VALUES ('17','Not Applicable')",
             "INSERT INTO eCountry VALUES ('MYS','MALAYSIA')",
             "INSERT INTO eMiscCode VALUES ('64922','Money lending')",
             "DELETE FROM CompMast",
             "INSERT INTO CompMast "
             "(CompCode,CompDesc,CompNo,Address,Tel1,email,Fax,HP2,MyTaxClientID,"
             "MyTaxClientSecret) VALUES ('AB','Alpha Sdn Bhd','2008-0101','1, Jalan Satu' + "
             "char(13) + "
             "char(10) + 'Taman Dua','03-2145','a@b.my','Klang','41000','own id','own secret')",
             "INSERT INTO CompMast (CompCode,MyTaxClientID,MyTaxClientSecret) VALUES ('CD','','x')",
             "INSERT INTO CustMast (CustID,CompCode,AreaCode,CustName,CustNIC,CustAdd1,CustAdd2,"
             "CustCity,CustState,CustHP1,email) VALUES ('AB1','AB','PERSONAL','Tan Ah Kow',"
             "'800131-10-5555','2, Jalan Dua,','Taman Tiga','Kulai','JOHOR','012-345 6789','t@x')",
             "INSERT INTO CustMast (CustID,CompCode,AreaCode,CustName,CustOIC,CustState) VALUES "
             "('AB2','AB','PERSONAL','Lim','A-1234','W.P. LABUAN')",
             "INSERT INTO CustMast (CustID,CompCode,AreaCode,CustName,CompNo,CustNIC,CustState) "
             "VALUES "
             "('CD1','CD','COMPANY','Beta','99-1','800131105555','Texas')",
         }) {
      office.Run(row);
    }
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "AB";
    office.session.AllowEdit = true;
  }

  std::unique_ptr<ECustMast> Opened(const std::string& id) {
    office.session.HandOverCustID = id;
    auto screen = std::make_unique<ECustMast>(office.session, desk);
    screen->Load();
    return screen;
  }
  static std::string Boxes(const ECustMast& screen) {
    std::string all;
    for (const Control* box : std::initializer_list<const Control*>{
             &screen.CustType, &screen.CustTypeID, &screen.CustName, &screen.Address,
             &screen.PostCode, &screen.City, &screen.State, &screen.StateName, &screen.Country,
             &screen.Phone, &screen.Email, &screen.TIN}) {
      all += box->Text() + "|";
    }
    return all;
  }
  std::vector<std::string> Pressed(Button& button) {
    desk.messages.clear();
    desk.questions.clear();
    button.Click();
    return desk.messages;
  }
  void Fill(ECustMast& screen) {
    Put(screen.MISCCode, "64922");
    Put(screen.Phone, "+6012-3456789");
    Put(screen.City, "Klang");
    screen.State.Pick("01 - Johor");
  }
  std::string Stored() { return office.Lines("SELECT * FROM ECustMast", "|"); }

  Office office{Office::State::patched};
  AgreeingDesk desk;
};

TEST_F(ECustMastTest, OpensWithTheFirstThatItFinds) {
  const struct {
    const char *id, *boxes;
  } rows[] = {
      {"AB1",
       "NRIC|800131105555|Tan Ah Kow|2, Jalan Dua, Taman Tiga|00000|Kulai|01|Johor|MYS|"
       "012345 6789|t@x||"},
      {"AB2", "PASSPORT|A1234|Lim||00000||15|Wilayah Persekutuan Labuan|MYS||||"},
      {"CD1", "BRN|991|Beta||00000||||MYS||||"},
      {"AB",
       "BRN|20080101|Alpha Sdn Bhd|1, Jalan Satu Taman Dua|41000|Klang|||MYS|032145|a@b.my||"},
  };
  for (const auto& row : rows) EXPECT_EQ(Boxes(*Opened(row.id)), row.boxes);
  EXPECT_THAT(Opened("AB1")->State.items(), ElementsAre("01 - Johor", EndsWith("Labuan")));

  office.Run(
      "INSERT INTO ECustMast (CustID,TIN,CustType,CustTypeID,CustName,State,Country) VALUES "
      "('AB1','IG1','PASSPORT','K7','Saved','17','MYS')");
  const auto saved = Opened("AB1");
  EXPECT_EQ(Boxes(*saved), "PASSPORT|K7|Saved||||17|Not Applicable|MYS|||IG1|");
  EXPECT_TRUE(saved->RequestClose());
  EXPECT_THAT(desk.questions, IsEmpty());

  office.session.CurrentLevel = 1;
  for (const char* not_theirs : {"CD1", "CD", "ZZ", ""}) {
    desk.messages.clear();
    EXPECT_TRUE(Opened(not_theirs)->closed());
    EXPECT_THAT(desk.messages, ElementsAre(EndsWith("not found"))) << not_theirs;
  }
}

// Each line mends what the one before was refused for.
TEST_F(ECustMastTest, ChecksComeInTheirOrder) {
  const auto screen = Opened("CD");
  for (TextBox* box : {&screen->Country, &screen->PostCode}) box->Clear();
  const struct {
    const char *box, *text, *said;
  } steps[] = {
      {"TIN", "", "Misc Code required"},
      {"MISCCode", "64922", "Address required"},
      {"Address", "1,  Jalan   Satu ", "Phone required"},
      {"Phone", "+60312345678", "PostCode required"},
      {"PostCode", "41000", "City required"},
      {"City", "Klang", "State required"},
      {"State", "01", "Country required"},
      {"Country", "mys", nullptr},
      {"MISCCode", "1", "Invalid Misc Code"},
      {"MISCCode", "64922", nullptr},
      {"Phone", "0312345678", "Invalid Phone format\nExample : +60123456789"},
      {"Phone", "+6 0312", "Invalid Phone format"},
      {"Phone", "+", "Invalid Phone format"},
      {"Phone", "+603-1234 ", nullptr},
      {"PostCode", "4100", "Invalid Post Code"},
      {"PostCode", "41000", nullptr},
      {"State", "99", "Invalid State Code"},
      {"State", "17", nullptr},
      {"Country", "XXX", "Invalid Country Code"},
      {"Country", "MYS", nullptr},
      {"Email", "a.b", "Invalid email"},
      {"Email", " a@b ", nullptr},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(std::string(step.box) + "=" + step.text);
    Control& box = *screen->Find(step.box);
    box.Enter();
    auto* list = dynamic_cast<ComboBox*>(&box);
    ASSERT_TRUE(list != nullptr ? list->Pick(step.text)
                                : dynamic_cast<TextBox&>(box).Type(step.text));
    desk.messages.clear();
    box.Leave();
    const bool told_on_leaving = !desk.messages.empty();
    EXPECT_EQ(told_on_leaving,
              step.said != nullptr && std::string(step.said).starts_with("Invalid"));
    desk.agrees = false;
    Pressed(screen->SaveCmd);
    if (step.said == nullptr) {
      EXPECT_THAT(desk.questions, ElementsAre("Confirm to save Customer Detail ?"));
      EXPECT_THAT(desk.messages, IsEmpty());
    } else {
      EXPECT_THAT(desk.messages, ElementsAre(kTitle + step.said));
      EXPECT_THAT(desk.questions, IsEmpty());
    }
  }
  desk.agrees = true;
  EXPECT_THAT(Pressed(screen->SaveCmd), ElementsAre(kTitle + "Customer detail saved"));
  EXPECT_EQ(Stored(),
            "CD||64922|1, Jalan Satu|41000|Klang|17|MYS|+6031234|a@b|BRN||"
            "|\n");
}

TEST_F(ECustMastTest, SavesAsOneAndNoDesktopWritesOverAnother) {
  const auto here = Opened("AB1");
  const auto there = Opened("AB1");
  Fill(*here);
  Fill(*there);
  Put(there->TIN, "IG9");
  // A save that fails at any of its statements keeps nothing, and may be pressed again.
  for (int at = 1; office.FailAt(at, Office::Failure::passes,
                                 [&] { here->Guard([&] { here->SaveCmd.Click(); }); });
       ++at) {
    EXPECT_EQ(Stored(), "") << at;
    EXPECT_FALSE(here->RequestClose() &&
                 desk.questions.back() == "Confirm to save Customer Detail ?");
  }
  const std::string first =
      "AB1||64922|2, Jalan Dua, Taman Tiga|00000|Klang|01|MYS|+60123456789|t@x|NRIC|"
      "800131105555|Tan Ah Kow|\n";
  EXPECT_EQ(Stored(), first);
  EXPECT_THAT(Pressed(there->SaveCmd),
              ElementsAre(HasSubstr("an error occur during saving customer detail"),
                          HasSubstr("AB1 was changed on another desktop")));
  EXPECT_EQ(Stored(), first);
  EXPECT_EQ(there->TIN.text(), "IG9");
  desk.agrees = false;
  EXPECT_FALSE(there->RequestClose());
  desk.agrees = true;

  const auto again = Opened("AB1");
  Put(again->TIN, "IG5");
  EXPECT_THAT(Pressed(again->SaveCmd), ElementsAre(kTitle + "Customer detail saved"));
  EXPECT_THAT(Stored(), HasSubstr("AB1|IG5|64922|"));
  // A stored one is changed by right or a manager's word only.
  office.session.AllowEdit = false;
  office.session.CurrentLevel = 1;
  Put(again->TIN, "IG6");
  EXPECT_THAT(Pressed(again->SaveCmd), ElementsAre(HasSubstr("Level not allow to edit")));
  EXPECT_EQ(desk.asked_manager, 1);
  office.Run("DELETE FROM ECustMast");
  desk.manager = &office.session;
  EXPECT_THAT(Pressed(again->SaveCmd), ElementsAre(HasSubstr("an error occur"),
                                                   HasSubstr("another desktop has deleted it")));
}

class GetTin : public ECustMastTest {
 protected:
  void Set(const std::string& key, const std::string& value) {
    office.Run("INSERT INTO Systemast (Param,Value) VALUES (" + QuoteStr(key) + "," +
               QuoteStr(value) + ")");
  }
  std::string EverythingTold() {
    std::string all;
    for (const std::string& line : office.Log()) all += line + "\n";
    for (const std::string& message : desk.messages) all += message + "\n";
    return all;
  }
};

TEST_F(GetTin, AsksWithATokenThatItKeeps) {
  RawServer server([](int number, const std::string&) {
    return number == 0 ? Reply(R"({"access_token":"tok/1"})") : Reply(R"({"tin":"IG123"})");
  });
  auto screen = Opened("AB1");
  EXPECT_THAT(Pressed(screen->Command1), ElementsAre(kTitle + "Missing get Token URL"));
  Set("GetTokenURL", server.Url("/token"));
  Set("Getclient_id", "maintainer");
  Set("Getclient_secret", "hush");
  EXPECT_THAT(Pressed(screen->Command1), ElementsAre(kTitle + "Missing get TIN URL"));
  Set("GetTINURL", server.Url("/tin"));
  for (int i = 0; i < 2; ++i) {
    EXPECT_THAT(Pressed(screen->Command1), IsEmpty());
    EXPECT_EQ(screen->TIN.text(), "IG123");
  }
  const std::vector<std::string> requests = server.requests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_THAT(requests[0], HasSubstr("POST /token "));
  EXPECT_THAT(requests[0], EndsWith("\r\n\r\ngrant_type=client_credentials&scope=InvoicingAPI&"
                                    "client_id=own id&client_secret=own secret"));
  for (int i : {1, 2}) {
    EXPECT_THAT(requests[static_cast<std::size_t>(i)],
                HasSubstr("GET /tin?idType=NRIC&idValue=800131105555 HTTP"));
    EXPECT_THAT(requests[static_cast<std::size_t>(i)], HasSubstr("Bearer tok/1\r\n"));
  }
  // A company without access of its own takes the maintainer's.
  screen = Opened("CD1");
  Pressed(screen->Command1);
  EXPECT_THAT(server.requests()[3], EndsWith("client_id=maintainer&client_secret=hush"));
  screen->CustTypeID.Clear();
  EXPECT_THAT(Pressed(screen->Command1), ElementsAre(kTitle + "ID No required"));
  EXPECT_EQ(server.requests().size(), 4U);
}

// Four times, in whatever way, and no request goes out any more from this screen.
TEST_F(GetTin, GivesUpAfterFourFailures) {
  RawServer server([](int number, const std::string&) {
    const std::string replies[] = {"",
                                   Reply("broken"),
                                   Reply(R"({"access_token":"tok-1"})"),
                                   Reply(R"({"message":"tok-1 is late, own id"})"),
                                   Reply(R"({"access_token":"tok-2"})"),
                                   std::string()};
    return replies[std::min(number, 5)];
  });
  Set("GetTokenURL", server.Url("/token"));
  Set("GetTINURL", server.Url("/tin"));
  const auto screen = Opened("AB1");
  const std::string told[] = {kTitle + "Fail to get Token\nNo whole reply came from",
                              kTitle + "Fail to get Token",
                              kTitle + "The service gives no TIN for NRIC 800131105555",
                              kTitle + "Fail to get TIN\nNo whole reply came from",
                              kTitle + "Fail to get TIN, Please try later",
                              kTitle + "Fail to get TIN, Please try later"};
  for (const std::string& one : told) {
    EXPECT_THAT(Pressed(screen->Command1), ElementsAre(::testing::StartsWith(one)));
  }
  EXPECT_EQ(server.requests().size(), 6U);
  EXPECT_THAT(EverythingTold(), HasSubstr("*** is late, ***"));
  for (const char* secret : {"own id", "own secret", "tok-1", "tok-2"}) {
    EXPECT_THAT(EverythingTold(), Not(HasSubstr(secret)));
  }
  EXPECT_FALSE(Pressed(Opened("AB1")->Command1).empty());  // a new screen asks again
  EXPECT_EQ(server.requests().size(), 7U);
}

}  // namespace
}  // namespace kaunter
