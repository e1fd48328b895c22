// What a save does about the cash threshold: each case once at the loan screen, with a loan of
// 10,000, and once at the payment screen, with 100 + 5 + 3 + 1 - 9 = 100 taken.
#include "compliance/aml.h"
#include "tests/collections/payment_counter.h"
#include "tests/loans/loan_counter.h"

namespace kaunter {
namespace {

enum Does { kPasses, kWarns, kStops, kTakesDefault };
constexpr const char* kShown[] = {"passes", "warns", "stops", "takes the default"};

struct Case {
  const char* what;
  const char* office;     // the setting AMLA
  const char* company;    // "AMLA,AMLAWarning": as they stand in CompMast
  const char* threshold;  // =: exactly the amount, <: a sen below it
  const char* reason;
  const char* default_reason;
  Does loan;
  Does payment;  // it has no default
  bool locked = false;
};

const Case kCases[] = {
    {"the office takes no part", "0", "'1','0'", "<", "", "", kPasses, kPasses},
    {"the company takes no part", "1", "'0','0'", "<", "", "", kPasses, kPasses},
    {"nor where nothing stands", "1", "NULL,'0'", "<", "", "", kPasses, kPasses},
    {"exactly the threshold, warning", "1", "'1','1'", "=", "", "", kPasses, kPasses},
    {"exactly the threshold", "1", "'1','0'", "=", "", "", kPasses, kPasses},
    {"above, warning", "1", "'1','1'", "<", "", "", kWarns, kWarns},
    {"above, warning, whatever the reason", "1", "'1','1'", "<", "House", "", kWarns, kWarns},
    {"above, warning, no default is taken", "1", "'1','1'", "<", "", "Car", kWarns, kWarns},
    {"above", "1", "'1','0'", "<", "", "", kStops, kStops},
    {"above, warning null", "1", "'1',NULL", "<", "", "", kStops, kStops},
    {"above, warning something else", "1", "'1','Y'", "<", "", "", kStops, kStops},
    {"above, reason filled", "1", "'1','0'", "<", "House", "", kPasses, kPasses},
    {"above, reason filled, default", "1", "'1','0'", "<", "House", "Car", kPasses, kPasses},
    {"above, default", "1", "'1','0'", "<", "", "Car", kTakesDefault, kStops},
    {"exactly, default", "1", "'1','0'", "=", "", "Car", kPasses, kPasses},
    {"above, chosen from the list only", "1", "'1','0'", "<", "", "", kStops, kStops, true},
    {"threshold 0", "1", "'1','0'", "0", "", "", kStops, kStops},
    {"threshold 0, warning", "1", "'1','1'", "0", "", "", kWarns, kWarns},
    {"threshold null", "1", "'1','0'", "NULL", "", "", kStops, kStops},
    {"threshold null, warning", "1", "'1','1'", "NULL", "", "", kWarns, kWarns},
};

void Set(Office& office, const Case& c, const char* column, const char* exactly,
         const char* sen_below) {
  office.session.settings.AMLA = std::string(c.office) == "1";
  office.session.settings.AutoLoanPurpose = c.default_reason;
  office.session.settings.LockAMLAReasonCode = c.locked;
  const std::string rules = c.company;
  const auto comma = rules.find(',');
  const std::string threshold = c.threshold[0] == '='   ? exactly
                                : c.threshold[0] == '<' ? sen_below
                                                        : c.threshold;
  office.Run(fmt::format("UPDATE CompMast SET AMLA={},AMLAWarning={},{}={}", rules.substr(0, comma),
                         rules.substr(comma + 1), column, threshold));
}

std::string Alert(const char* what, const char* amount, const std::string& threshold,
                  const char* last) {
  return fmt::format("AML/CFT Alert!\n{} Amount RM{} more than BNM Cash Threshold Amount RM{}\n{}",
                     what, amount, threshold, last);
}

// What became of the act, told by what was said, whether it went on, and the reason afterwards.
std::string Came(const std::string& said, bool went_on, const std::string& reason, const Case& c,
                 const std::string& warning, const std::string& demand) {
  if (said == demand && !went_on && reason == c.reason) return kShown[kStops];
  if (said == warning && went_on && reason == c.reason) return kShown[kWarns];
  if (said.empty() && went_on && reason == c.reason) return kShown[kPasses];
  if (said.empty() && went_on && reason == c.default_reason) return kShown[kTakesDefault];
  return fmt::format("said '{}', {}, reason '{}'", said, went_on ? "went on" : "stopped", reason);
}

struct Lender : LoanSave {
  void TestBody() override {}
  std::string Try(const Case& c, bool hidden = false) {
    Set(office, c, "AMLALoan", "10000", "9999.99");
    auto screen = Open("New Loan");
    Fill(*screen);
    screen->Guard([&] { screen->CompCode.onLeave(); });
    screen->AMLACode.SetText(c.reason);
    if (hidden) screen->AmlPage.SetVisible(false);
    if (c.what == std::string("gone")) office.Run("DELETE FROM CompMast");
    desk.said.clear();
    desk.refused_question = "Confirm to save ?";
    Save(*screen);
    const bool went_on = desk.last() == desk.refused_question;
    if (went_on) desk.said.pop_back();
    EXPECT_TRUE(went_on || screen->focus() == &screen->AMLACode);
    const std::string threshold = c.threshold[0] == '<' ? "9,999.99" : "0.00";
    return Came(desk.said.empty() ? "" : desk.said[0], went_on, screen->AMLACode.text(), c,
                Alert("Loan", "10,000.00", threshold, "Please fill CDD Manually"),
                Alert("Loan", "10,000.00", threshold, "Please fill in the the Loan Purpose"));
  }
  using LoanSave::desk;
  using LoanSave::Fill;
  using LoanSave::NewLoan;
  using LoanSave::office;
  using LoanSave::Open;
  using LoanSave::Save;
};

struct Cashier : PaymentCounter {
  void TestBody() override {}
  std::string Try(const Case& c, bool hidden = false) {
    office.Run("DELETE FROM PaymentMast");
    Set(office, c, "AMLAPayment", "100", "99.99");
    auto screen = New();
    Put(screen->PayDate, "31-01-2024");
    Put(screen->PayAmt, "100");
    Put(screen->IntAmt, "5");
    Put(screen->CollectorAmt, "3");
    Put(screen->ChargeAmt, "1");
    Put(screen->DiscAmt, "9");
    screen->AMLACode.SetText(c.reason);
    if (hidden) screen->AmlPage.SetVisible(false);
    if (c.what == std::string("gone")) office.Run("DELETE FROM CompMast");
    return SaveIt(*screen, c);
  }
  std::string SaveIt(PaymentFrm& screen, const Case& c) {
    Save(screen);
    const bool went_on = !counter.questions.empty();
    std::string said = counter.messages.empty() ? "" : counter.messages[0];
    const std::string title = "AML/CFT Alert: ";
    said = said.starts_with(title) ? said.substr(title.size()) : "";
    EXPECT_TRUE(went_on || screen.focus() == &screen.AMLACode);
    const std::string threshold = c.threshold[0] == '<' ? "99.99" : "0.00";
    return Came(
        said, went_on, screen.AMLACode.text(), c,
        Alert("Payment", "100.00", threshold, "Please fill CDD Form Manually"),
        Alert("Payment", "100.00", threshold, "Please fill in the Source of Fund Explaination"));
  }
  using LoanOffice::office;
  using PaymentCounter::Open;
  using PaymentCounter::Save;
  using PaymentCounter::Store;
};

TEST(ThresholdDecision, EveryCaseAtBothScreens) {
  Lender lender;
  Cashier cashier;
  for (const Case& c : kCases) {
    EXPECT_EQ(lender.Try(c), kShown[c.loan]) << "loan: " << c.what;
    EXPECT_EQ(cashier.Try(c), kShown[c.payment]) << "payment: " << c.what;
  }
  Case c = kCases[8];
  ASSERT_EQ(c.loan, kStops);
  EXPECT_EQ(lender.Try(c, true), kShown[kPasses]) << "the page is hidden";
  EXPECT_EQ(cashier.Try(c, true), kShown[kPasses]);
  c.what = "gone";
  EXPECT_EQ(lender.Try(c), kShown[kPasses]) << "the company has no row any more";
  EXPECT_EQ(cashier.Try(c), kShown[kPasses]);
}

// What is deleted is not asked for; amounts that are null count for nothing; another company's
// threshold holds as soon as it is chosen.
TEST(ThresholdDecision, DeletionsNullsAndAnotherCompany) {
  const Case& above = kCases[8];
  Lender lender;
  lender.office.Run("INSERT INTO CompMast (CompCode,AMLA,AMLALoan) VALUES ('KL','1',20000)");
  Case c = above;
  EXPECT_EQ(lender.Try(c), kShown[kStops]);
  {
    Lender& at = lender;
    Set(at.office, c, "AMLALoan", "10000", "20000");
    at.office.Run("UPDATE CompMast SET AMLALoan=9999.99 WHERE CompCode='HQ'");
    auto screen = at.Open("New Loan");
    at.Fill(*screen);
    screen->CompCode.SetText("KL");
    screen->Guard([&] { screen->CompCode.onLeave(); });
    at.desk.said.clear();
    at.Save(*screen);
    EXPECT_FALSE(at.desk.said[0].starts_with("AML/CFT Alert!")) << at.desk.said[0];
  }
  lender.office.Run("UPDATE CompMast SET AMLALoan=99999");
  lender.desk.refused_question.clear();
  lender.NewLoan();
  Set(lender.office, above, "AMLALoan", "10000", "9999.99");
  auto deletes = lender.Open("Delete Loan", kLoan);
  lender.Save(*deletes);
  EXPECT_EQ(lender.office.Scalar("SELECT COUNT(*) FROM LoanMast"), "0") << lender.desk.last();

  Cashier cashier;
  const std::string id = cashier.Store("100");
  cashier.office.Run(
      "UPDATE PaymentMast SET IntAmt=NULL,CollectorAmt=NULL,ChargeAmt=NULL,DiscAmt=NULL,"
      "AMLACode=NULL");
  for (const auto& [threshold, does] : {std::pair("<", kStops), {"=", kPasses}}) {
    c = above;
    c.threshold = threshold;
    Set(cashier.office, c, "AMLAPayment", "100", "99.99");
    auto screen = cashier.Open("Edit Payment", {}, id);
    EXPECT_EQ(cashier.SaveIt(*screen, c), kShown[does]) << threshold;
  }
  Set(cashier.office, above, "AMLAPayment", "100", "99.99");
  cashier.Save(*cashier.Open("Delete Payment", {}, id));
  EXPECT_EQ(cashier.office.Scalar("SELECT COUNT(*) FROM PaymentMast"), "0");
}

}  // namespace
}  // namespace kaunter
