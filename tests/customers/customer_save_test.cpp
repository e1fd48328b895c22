// The customer screen on a database: saves, widths, deletes, the credit bar, the import.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "customers/credit_limit.h"
#include "customers/customer_store.h"
#include "customers/document_store.h"
#include "customers/new_cust_frm.h"
#include "tests/customers/customer_test.h"

namespace kaunter {
namespace {

using CustomerSave = CustomerTest;

TEST_F(CustomerSave, AFailedDeleteKeepsEverything) {
  auto screen = Open();
  Fill(*screen);
  Save(*screen);
  ASSERT_EQ(screen->CustID.text(), "HQ0001");
  office.Run(
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanBal) VALUES "
      "('HQ0001-001','HQ0001','HQ',1)");
  const std::string before = Stored();
  for (int at = 1; at <= 20; ++at) {
    const bool hit = office.FailAt(at, Failure::passes, [&] {
      try {
        DeleteCustomer(office.session.Main(), "HQ0001");
      } catch (const SqlError&) {
      }
    });
    ASSERT_FALSE(office.session.Main().InTransaction()) << at;
    if (!hit) break;
    EXPECT_EQ(Stored(), before) << at;
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "1") << at;
  }
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CustMast"), "0");
}

TEST_F(CustomerSave, ACustomerDeletedByAnotherDesktopIsToldAndNotWritten) {
  auto screen = Open();
  Fill(*screen);
  Save(*screen);
  const std::string id = screen->CustID.text();
  office.Run("DELETE FROM CustMast WHERE CustID='" + id + "'");
  office.Run("DELETE FROM RefererMast WHERE CustID='" + id + "'");
  desk.messages.clear();
  screen->CustHP1.SetText("012-3456789");
  Save(*screen);
  ASSERT_FALSE(desk.messages.empty());
  EXPECT_NE(desk.messages.back().find(id + " not found"), std::string::npos)
      << desk.messages.back();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM RefererMast"), "0");
  EXPECT_EQ(screen->CustHP1.text(), "012-3456789");
}

TEST_F(CustomerSave, EveryTextBoxTakesItsColumnsWidthAndNotOneCharacterMore) {
  auto screen = Open();
  Fill(*screen);
  const std::string character = "陈";
  for (Control* control : screen->controls()) {
    if (control->type() != ControlType::text_box) continue;
    auto& box = static_cast<TextBox&>(*control);
    if (box.max_length == 0 || box.kind() != Kind::text || &box == &screen->CustID) continue;
    std::string text;
    for (int i = 0; i < box.max_length; ++i) text += i % 7 == 0 ? std::string("'") : character;
    EXPECT_TRUE(box.Type(text)) << box.name();
    EXPECT_FALSE(box.Type(text + "x")) << box.name();
    EXPECT_EQ(box.text(), text) << box.name();
  }
  desk.messages.clear();
  Save(*screen);
  ASSERT_FALSE(desk.messages.empty());
  EXPECT_NE(desk.messages.back().find("saved"), std::string::npos) << desk.messages.back();
  const std::string name = screen->CustName.text();
  EXPECT_EQ(name.size(), 300u / 7 + 1 + (300u - 300u / 7 - 1) * 3);
}

TEST_F(CustomerSave, TheCreditBarFollowsTheKindOfLimit) {
  office.Run(
      "INSERT INTO LoanMast (LoanID,CustID,LoanBal) VALUES ('A-1','A',100);"
      "INSERT INTO LoanMast (LoanID,CustID,LoanBal) VALUES ('A-2','A',0);"
      "INSERT INTO SchMast (SchID,LoanID,CapitalAmt,CapitalPayment) VALUES (1,'A-1',600.10,100);"
      "INSERT INTO SchMast (SchID,LoanID,CapitalAmt,CapitalPayment) VALUES (1,'A-2',300,290)");
  Connection& main = office.session.Main();
  const auto money = [](const char* text) { return Money::FromText(text); };
  EXPECT_EQ(MeasureCredit(main, "A", money("1000"), "Full Settled").label, "399.90");
  EXPECT_EQ(MeasureCredit(main, "A", money("1000"), "Outstanding").label, "489.90");
  EXPECT_EQ(MeasureCredit(main, "A", money("500"), "Full Settled").label, "-100.10");
  EXPECT_EQ(MeasureCredit(main, "A", money("500"), "Full Settled").share_used, 1);
  EXPECT_EQ(MeasureCredit(main, "A", Money(), "Full Settled").label, "0.00");
  EXPECT_EQ(MeasureCredit(main, "NOBODY", money("10"), "Full Settled").label, "10.00");
  office.Run(
      "INSERT INTO CustMast (CustID,CreditLimit,CreditLimitType) VALUES ('A',1000,'Full Settled')");
  Money left;
  EXPECT_TRUE(CheckCreditLimit(office.session, desk, "A", "", money("399.90"), &left));
  EXPECT_FALSE(CheckCreditLimit(office.session, desk, "A", "", money("399.91"), &left));
  EXPECT_EQ(left, money("399.90"));
  EXPECT_TRUE(CheckCreditLimit(office.session, desk, "A", "A-1", money("1000"), &left));
}

// Chooses a customer in every picker.
class PickingDesk : public AgreeingDesk {
 public:
  explicit PickingDesk(Session& session) : session_(session) {}
  void Show(std::string_view) override {
    session_.PickerName.clear();  // as the dialog does when it opens
    session_.CallerTag = "L1";
  }

 private:
  Session& session_;
};

TEST_F(CustomerSave, ImportsFromALinkedDatabaseOnceOnly) {
  const std::string linked = office.folder.File("linked.db");
  {
    auto other = OpenSqlite("LinkDB", linked, true, office.session.clock);
    CreateEmptyOffice(*other);
    other->Execute(
        "INSERT INTO CustMast (CustID,CustName,CustNIC,CustGender,CustRace,CustCompIncome) VALUES "
        "('L1','Siti ''Aini''','800131-10-5555','FEMALE','MELAYU',2500.5)");
  }
  office.session.data_sources.Add("Linked", {DataSource::Kind::kEmbedded, linked});
  office.session.LinkDBString = "Provider=SQLOLEDB.1;Data Source=Linked;Initial Catalog=Linked";
  PickingDesk picking(office.session);
  const auto import = [&](const std::string& company) {
    auto screen = std::make_unique<NewCustFrm>(office.session, picking);
    screen->Load();
    screen->CompCode.SetText(company);
    screen->Guard([&] { screen->CmdNew.Click(); });
    return screen;
  };
  EXPECT_TRUE(import("")->CustName.empty());
  EXPECT_NE(picking.messages.back().find("Company code is require"), std::string::npos);
  auto screen = import("HQ");
  ASSERT_NE(picking.messages.back().find("Data import successfully"), std::string::npos)
      << picking.messages.back();
  EXPECT_EQ(screen->CustName.text(), "Siti 'Aini'");
  EXPECT_EQ(screen->CustCompIncome.text(), "2,500.50");
  EXPECT_EQ(screen->DOB.text(), "31-01-1980");
  screen->AreaCode.SetText("PERSONAL");
  Save(*screen);
  ASSERT_EQ(screen->CustID.text(), "HQ0001") << picking.messages.back();
  // Linked once more, the identity number stops it.
  EXPECT_TRUE(import("HQ")->CustName.empty());
  EXPECT_NE(picking.messages.back().find("Customer New IC exist, no double import allow"),
            std::string::npos);
}

struct FileDesk : AgreeingDesk {
  std::string PickFile(std::string_view, std::string_view, std::string_view) override {
    return file;
  }
  // The person types the whole path, and gives up when it is refused.
  void ShowModal(Screen& screen) override {
    screen.Load();
    static_cast<TextBox*>(screen.Find("FileName"))->Type(file);
    static_cast<Button*>(screen.Find("OkCmd"))->Click();
  }
  std::string file;
};

TEST_F(CustomerSave, APhotoIsAPictureThatIsThere) {
  office.session.PhotoPath = office.folder.File("Photo");
  FileDesk choosing;
  NewCustFrm screen(office.session, choosing);
  screen.Load();
  Fill(screen);
  Save(screen);
  const struct {
    const char* file;
    const char* told;
  } choices[] = {{"letter.txt", "Invalid Picture Format"},
                 {"gone.jpg", "Picture Path not found"},
                 {"office.db/face.jpg", "Picture Path not found"},
                 {"letter.jpg", "Invalid Picture Format"},
                 {"face.JPG", ""}};
  for (const char* there : {"letter.txt", "letter.jpg"}) {
    std::ofstream(office.folder.File(there)) << "Dear Sir";
  }
  std::ofstream(office.folder.File("face.JPG")) << "\xFF\xD8\xFF face";
  for (const auto& choice : choices) {
    choosing.file = office.folder.File(choice.file);
    choosing.messages.clear();
    screen.Pic2.onSearch();
    const std::string told = choosing.messages.empty() ? ": " : choosing.messages.back();
    EXPECT_TRUE(told.ends_with(fmt::format(": {}", choice.told))) << choice.file << told;
    const std::string kept = office.Scalar("SELECT Pic2 FROM CustMast");
    EXPECT_EQ(kept.empty(), *choice.told != '\0');
    EXPECT_TRUE(kept.empty() || (kept.starts_with("pic2-20") && kept.ends_with(".JPG"))) << kept;
  }
}

// A code of an older office may hold what parts folders.
TEST(DocumentStore, AKeptFileStaysInItsFolderAndIsNotForEverybody) {
  Office office(Office::State::base);
  office.session.PhotoPath = office.folder.File("Photo");
  const std::string scan = office.folder.File("scan.JPG");
  std::ofstream(scan) << "paper";
  EXPECT_EQ(KeepFile(office.session, "HQ0001", scan, "A/B\\..#D0001"), "A-B-..#D0001.JPG");
  struct stat kept {};
  ASSERT_EQ(stat(KeptPath(office.session, "HQ0001", "A-B-..#D0001.JPG").c_str(), &kept), 0);
  EXPECT_EQ(kept.st_mode & 07777u, 0600u);
  const auto why = [&](const char* folder, const char* file) {
    const auto refusal = WhyNotOpened(KeptPath(office.session, folder, file));
    return refusal ? refusal->english : "";
  };
  EXPECT_EQ(why("HQ0001", "A-B-..#D0001.JPG"), "");
  EXPECT_EQ(why("HQ0001", "gone.pdf"), "File not found");
  EXPECT_EQ(why("HQ0009", "gone.pdf"), "Path not found");
}

}  // namespace
}  // namespace kaunter
