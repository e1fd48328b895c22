// The report on a suspicious transaction: what it refuses, where its number goes, and that a save
// that fails leaves nothing.
#include "compliance/suspicion.h"

#include <gtest/gtest.h>

#include "compliance/amla_frm.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

// Says yes, and fills in the report that a loan or payment opens.
class Officer : public SilentDesk {
 public:
  bool Ask(std::string_view title, std::string_view text) override {
    messages.push_back("?" + std::string(title) + ": " + std::string(text));
    return true;
  }
  void Show(std::string_view) override {
    AMLAFrm screen(*session, *this);
    screen.Load();
    if (!screen.Guard([&] { act(screen); })) ADD_FAILURE() << "the act failed";
    screen.Close();
  }
  std::string Said() {
    return messages.empty() ? "" : messages.back().substr(messages.back().find(": ") + 2);
  }

  Session* session = nullptr;
  std::function<void(AMLAFrm&)> act = [](AMLAFrm& screen) { screen.SaveCmd.Click(); };
};

class Suspicious : public ::testing::Test {
 protected:
  Suspicious() : office(Office::State::patched) {
    desk.session = &office.session;
    office.session.CurrentLevel = 2;
    office.session.CurrentCompCode = "HQ";
    office.Run(
        "INSERT INTO CompMast (CompCode) VALUES ('KL');"
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC,CustAdd1,CustPostCode,CustCity,"
        "CustState,CustComp) VALUES ('C1','HQ',N'O''Brien 陈','800131-10-5555','12, Jalan Dua',"
        "'50000','KUALA LUMPUR','W.P.',''),('C2','KL','Tan','','','','','',''),"
        "('C3','HQ','Ali','','','','','','');"
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanType) VALUES "
        "('C1-001','C1','HQ','2024-01-03',26000,'Secured'),('C2-001','C2','KL','2024-01-03',1,''),"
        "('C2-002','C2','HQ','2024-01-03',2,'');"
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,IntAmt,CollectorAmt,"
        "ChargeAmt,DiscAmt) VALUES ('P1','C1-001','C1','HQ','2024-01-20',100,20,3,4.5,0.25)");
  }
  std::string Report(const Suspicion& about) {
    return ReportSuspicion(office.session, desk, about);
  }
  std::string Stored() {
    return office.Lines(
        "SELECT (SELECT COUNT(*) FROM AMLATrans),(SELECT COUNT(*) FROM NumberMast),"
        "(SELECT AMLAID FROM LoanMast WHERE LoanID='C1-001')");
  }

  Office office;
  Officer desk;
};

TEST_F(Suspicious, EachRefusalInItsOrderAndThenTheNumberOfTheReport) {
  desk.act = [&](AMLAFrm& screen) {
    const struct {
      Control& box;
      const char* wrong;
      const char* right;
      const char* said;
    } cases[] = {{screen.TrxID, "STR9", "", "Record not found"},
                 {screen.TrxDate, "", "31-01-2024", "Invalid Date, Please check"},
                 {screen.CompCode, "KL", "HQ", "Company Code is require"},
                 {screen.Name1, " ", "O'Brien", "Name is required"},
                 {screen.NRIC, "80013-10-5555", "800131105555", "Invalid New IC, Please check"},
                 {screen.SpouseNIC, "X", "", "Invalid New IC, Please check"},
                 {screen.Trans, "PERHAPS", "no", "Invalid value, Please check"},
                 {screen.TransDate, "30-02-2024", "29-02-2024", "Invalid Date, Please check"},
                 {screen.TransAmt, "-1", "1,000.5", "Invalid Amount, Please check"},
                 {screen.SuspiciousWork, "Others (please specify)", "",
                  "Please specify the grounds for suspicion"},
                 {screen.EmployerName, nullptr, "Kedai", "Employer has at most 100 characters"}};
    const auto put = [](Control& box, const std::string& text) {
      if (auto* list = dynamic_cast<ComboBox*>(&box)) list->SetText(text);
      if (auto* typed = dynamic_cast<TextBox*>(&box)) typed->SetText(text);
    };
    for (const auto& one : cases) put(one.box, one.wrong ? one.wrong : std::string(101, 'k'));
    for (const auto& one : cases) {
      screen.SaveCmd.Click();
      EXPECT_EQ(desk.Said(), one.said);
      EXPECT_EQ(screen.focus(), one.box.name() == "SuspiciousWork" ? &screen.CrimeDesc : &one.box);
      put(one.box, one.right);
    }
    screen.SaveCmd.Click();
    EXPECT_EQ(desk.Said(), "Record saved");
    screen.SaveCmd.Click();  // keeps its number
  };
  EXPECT_EQ(Report({"C1", "HQ", "", ""}), "STR0001");
  EXPECT_EQ(
      office.Lines("SELECT TrxID,Name1,NRIC,Add1,Trans,TransDate,TransAmt,CustID,CompCode FROM "
                   "AMLATrans",
                   "|"),
      "STR0001|O'Brien|800131-10-5555|12, Jalan Dua, 50000 KUALA LUMPUR, W.P.|NO|2024-02-29|"
      "1000.5|C1|HQ|\n");
  EXPECT_EQ(office.session.HandOverCustID + office.session.CallerTag, "");
}

// Who asks, what is filled in, and which record keeps the number.
TEST_F(Suspicious, TheNumberGoesToTheRecordThatWasHandedOverAndToNoOther) {
  const auto nothing = [](AMLAFrm&) {};
  const auto other = [](AMLAFrm& screen) {
    screen.TrxID.SetText("STR0001");
    screen.TrxID.onLeave();
    screen.SaveCmd.Click();
  };
  const auto save = desk.act;
  const struct {
    Suspicion about;
    std::function<void(AMLAFrm&)> act;
    const char* number;
    const char* said;
    const char* loans;  // AMLAID of C1-001 and C2-002
  } cases[] = {
      {{"C3", "HQ", "", ""}, save, "STR0001", "Record saved", "||"},
      {{"C1", "HQ", "C1-001", ""}, nothing, "", "", "||"},
      // Looked up meanwhile, and it is about somebody else.
      {{"C1", "HQ", "C1-001", ""}, other, "STR0001", "Record saved", "||"},
      {{"C1", "HQ", "C1-001", "P1"}, save, "STR0002", "Record saved", "STR0002||"},
      {{"C1", "HQ", "C1-001", ""}, save, "STR0002", "Record saved", "STR0002||"},  // opened again
      // A loan of the own company shows a customer of another; a loan or customer of another, none.
      {{"C2", "HQ", "C2-002", ""}, save, "STR0003", "Record saved", "STR0002|STR0003|"},
      {{"C2", "KL", "C2-001", ""}, save, "", "Name is required", "STR0002|STR0003|"},
      {{"C2", "KL", "", ""}, save, "", "Name is required", "STR0002|STR0003|"},
      {{"C1", "HQ", "GONE", ""}, save, "", "Name is required", "STR0002|STR0003|"}};
  for (const auto& one : cases) {
    desk.messages.clear();
    desk.act = one.act;
    EXPECT_EQ(Report(one.about), one.number);
    EXPECT_EQ(desk.Said(), one.said) << one.about.loan_id;
    EXPECT_EQ(
        office.Scalar("SELECT (SELECT isnull(AMLAID,'') FROM LoanMast WHERE LoanID='C1-001')+'|'+"
                      "(SELECT isnull(AMLAID,'') FROM LoanMast WHERE LoanID='C2-002')+'|'"),
        one.loans);
  }
  EXPECT_EQ(office.Lines("SELECT TransType,TransDate,TransAmt,LoanType FROM AMLATrans WHERE "
                         "TrxID='STR0002'",
                         "|"),
            "LOAN REPAYMENT|2024-01-20|127.25|Secured|\n");
  EXPECT_EQ(office.Scalar("SELECT AMLAID FROM PaymentMast"), "");
}

TEST_F(Suspicious, AFailureAtAnyStatementLeavesNothingAndTheNextSaveHasTheNumber) {
  const std::string before = Stored();
  const Suspicion payment = {"C1", "HQ", "C1-001", "P1"};
  bool reached = true;
  int at = 0;
  desk.act = [&](AMLAFrm& screen) {
    reached = office.FailAt(++at, Office::Failure::passes, [&] { screen.SaveCmd.Click(); });
    if (!reached) return;
    EXPECT_TRUE(desk.Said().starts_with("an error occur during saving of record")) << at;
    EXPECT_EQ(screen.TrxID.text(), "");
    EXPECT_EQ(Stored(), before) << at;
  };
  while (reached) Report(payment);
  EXPECT_GE(at, 8);  // begin, number, report, loan, payment, commit
  EXPECT_EQ(office.Scalar("SELECT AMLAID FROM LoanMast WHERE LoanID='C1-001'"), "STR0001");
}

TEST_F(Suspicious, TwoDesktopsHaveTwoNumbersAndAReportThatIsGoneIsToldSo) {
  Session second;
  second.clock = office.session.clock;
  second.AppPath = office.session.AppPath;
  second.CurrentCompCode = "HQ";
  second.CurrentLevel = 4;
  second.MainConn = OpenSqlite("MainConn", office.folder.File("office.db"), false, second.clock);
  Officer colleague;
  colleague.session = &second;
  desk.act = [&](AMLAFrm& screen) {
    EXPECT_EQ(ReportSuspicion(second, colleague, {"C3", "HQ", "", ""}), "STR0001");
    screen.SaveCmd.Click();
    EXPECT_EQ(screen.TrxID.text(), "STR0002");
    second.Main().Execute("DELETE FROM AMLATrans WHERE TrxID='STR0002'");
    screen.SaveCmd.Click();
    EXPECT_TRUE(desk.Said().starts_with("STR0002 is not there any more")) << desk.Said();
  };
  Report({"C1", "HQ", "C1-001", ""});
}

}  // namespace
}  // namespace kaunter
