// The papers over staged rows, printed through ReportFrm: what stands on them is added up and
// compared with plain statements over the tables that the staged rows were taken from.
#include <gmock/gmock.h>

#include <memory>

#include "tests/reporting/report_counter.h"
#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::Contains;
using ::testing::Not;

struct PaperCounter : ReportOffice {
  // A print: dates, company ("" for all), boxes ticked; the figures as ReportCheck takes them.
  struct Print {
    std::string file;
    std::string from;
    std::string to;
    std::string company = {};
    std::vector<ReportSum> sums = {};
    std::string count = {};
    std::string twin = {};
    std::vector<int> ticks = {};
    std::string form = {};  // the file that is started, if it is another
  };

  ReportFrm& Open(const std::string& file) {
    session().ReportFile = file;
    session().MsgTitle = "Paper";
    screen = std::make_unique<ReportFrm>(session(), paper_desk);
    screen->Load();
    return *screen;
  }

  // The job that ReportFrm starts; an empty one when it starts none.
  ReportJob Start(const Print& print) {
    ReportFrm& frm = Open(print.file);
    frm.DateFrom.SetText(print.from);
    frm.DateTo.SetText(print.to);
    for (const int tick : print.ticks) {
      CheckBox* boxes[] = {&frm.Check1, &frm.Check2, &frm.Check3, &frm.Check4};
      boxes[tick - 1]->SetChecked(true);
    }
    if (!print.company.empty()) {
      frm.ListCombo.PickIndex(0);
      for (int row = 0; row < frm.List1.RowCount(); ++row) {
        if (frm.List1.Cell(row, 0) == print.company) frm.List1.Select(row);
      }
      frm.InSingle.Click();
    }
    paper_desk.printed.clear();
    frm.Guard([&frm] { frm.SaveCmd.Click(); });
    return paper_desk.printed.empty() ? ReportJob{} : paper_desk.printed.back();
  }

  void Expect(const Print& print) {
    SCOPED_TRACE(print.file + " " + print.company);
    const ReportJob job = Start(print);
    const std::string form = print.form.empty() ? print.file : print.form;
    ASSERT_EQ(job.ReportFileName.substr(job.ReportFileName.rfind('/') + 1), form);
    ReportExpectation expected{form, print.sums, print.count, job.SelectionFormula, {}, print.twin};
    for (const auto& [number, field] : job.ParameterFields) {
      expected.parameters.resize(static_cast<std::size_t>(number) + 1);
      expected.parameters.back() = field;
    }
    ReportCheck(*this).Expect(expected);
  }

  PrintingDesk paper_desk;
  std::unique_ptr<ReportFrm> screen;
};

std::vector<std::string> TextsOf(const ReportJob& job) {
  ReportJob of_source = job;
  of_source.ReportFileName =
      test::SourceDir() + "/reports" + job.ReportFileName.substr(job.ReportFileName.rfind('/'));
  std::vector<std::string> texts;
  const ReportDocument document = RunWholeReport(of_source).document;
  for (const ReportPage& page : document.pages) {
    for (const PageText& text : page.texts) texts.push_back(text.text);
  }
  return texts;
}

TEST(StagedPapers, StatementOfAccount) {
  PaperCounter o;
  // Drawn, interest and all charges but what payments took off; a discount is a part of its
  // payment.
  const char* drawn = "(SELECT SUM(DrawDownAmt) FROM DrawDownMast)";
  o.Expect({"StatementList.rpt",
            "01-12-2023",
            "31-01-2024",
            "",
            {{"Debit", std::string("SELECT ") + drawn +
                           "+(SELECT SUM(TotLoanInt) FROM LoanMast)+(SELECT SUM(ChargeAmt) "
                           "FROM ChargeMast WHERE ChargeAmt > 0)"},
             {"Credit", "SELECT SUM(PayAmt+IntAmt+ChargeAmt)+10 FROM PaymentMast"}},
            // five openings; D2, two interests, three payments and a discount, I2, N1, a month
            "5+1+2+4+2+1"});
  // Nothing earlier: the opening rows are empty, and all five discounts and loans are listed.
  o.Expect({"StatementList.rpt",
            "01-01-2022",
            "31-01-2024",
            "KL",
            {{"Debit", "1200+120+300+4.75"}, {"Credit", "660+660"}},
            "2+1+2+3+1"});
}

// 4,800 + 900 + 25 less 1,981.67, of which 1.50 is a discount; the credit note of L2 lowers what
// its customer owes.
TEST(StagedPapers, StatementBalances) {
  PaperCounter o;
  const auto texts = TextsOf(o.Start({"StatementList.rpt", "01-12-2023", "31-01-2024", "HQ"}));
  EXPECT_THAT(texts, Contains("RM 3,743.33"));
  // 60,000 + 3,600 + 35.50 - 10 less 920 and 900
  EXPECT_THAT(texts, Contains("RM 61,805.50"));
  EXPECT_THAT(texts, Not(Contains("L5")));
}

TEST(StagedPapers, Summaries) {
  PaperCounter o;
  // Extra capital has cut this row: what is owed is the loan less what was repaid all the same.
  o.Run("UPDATE SchMast SET CapitalAmt=1000 WHERE LoanID='L1' AND SchID=3");
  o.Expect({"SummaryPnL.rpt",
            "20-01-2024",
            "31-01-2024",
            "",
            {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast"},
             {"PeriodInterest", "SELECT SUM(InterestAmt) FROM SchMast WHERE DueDate='2024-01-31'"},
             {"PeriodCharges", "0"},
             {"YearInterest", "300+900+900"},
             {"YearCharges", "SELECT SUM(ChargeAmt) FROM ChargeMast WHERE PType='Batch'"},
             {"YearIncome", "2125"}},
            "SELECT COUNT(*) FROM LoanMast"});
  EXPECT_THAT(TextsOf(o.Start({"SummaryPnL.rpt", "20-01-2024", "31-01-2024"})),
              Contains("20-01-2024 - 31-01-2024"));
  o.Expect({"SummaryBS.rpt",
            "01-01-2024",
            "30-01-2024",
            "HQ",
            {{"Capital", "SELECT SUM(CapitalAmt) FROM SchMast WHERE LoanID IN ('L1','L2','L4')"},
             {"CapitalPaid", "1666.67+1280"},
             {"CapitalOwed", "5000+60000+8000-1666.67-1280"}},
            "SELECT COUNT(*) FROM LoanMast WHERE CompCode='HQ'"});
}

// L1 was made before the first day: its payment is there all the same.
TEST(StagedPapers, DailyCollection) {
  PaperCounter o;
  const char* payments = " FROM PaymentMast WHERE PayDate BETWEEN '2023-12-01' AND '2024-01-31'";
  const std::vector<ReportSum> collected = {
      {"Collected",
       std::string("SELECT SUM(PayAmt)+SUM(IntAmt)+SUM(ChargeAmt)+SUM(CollectorAmt)-SUM(DiscAmt)") +
           payments},
      {"Instalment", std::string("SELECT SUM(PayAmt)") + payments},
      {"PaidOut", "60000"}};
  PaperCounter::Print print = {
      "DailyCollection.rpt", "01-12-2023", "31-01-2024", "", collected, "2+3"};
  o.Expect(print);
  print.company = "KL";
  print.sums = {{"LoanAmt", "SELECT LoanAmt FROM LoanMast WHERE LoanID='L5'"},
                {"Net", "0"}};  // not paid out yet
  print.count = "1";
  o.Expect(print);
  o.session().Special = true;
  print.sums = {{"LoanAmt", "3500"}, {"PaidOut", "3500"}};
  o.Expect(print);
}

TEST(StagedPapers, DailyAccount) {
  PaperCounter o;
  const char* taken =
      "SELECT SUM(PayAmt)+SUM(IntAmt)+SUM(ChargeAmt)+SUM(CollectorAmt)-SUM(DiscAmt) FROM "
      "PaymentMast WHERE PayDate>=";
  PaperCounter::Print print = {
      "AccountReport.rpt",
      "01-01-2024",
      "31-01-2024",
      "",
      {{"TakenIn", std::string(taken) + "'2000-01-01'"},
       {"PaidOut", "SELECT SUM(DrawDownAmt) FROM DrawDownMast"},
       {"Expense", "SELECT SUM(DebitAmt)-SUM(CreditAmt) FROM PersonalExp"}},
      // a line for each company, two payments, two expenses
      "SELECT (SELECT COUNT(*) FROM CompMast)+2+2"};
  o.Expect(print);
  print.ticks = {2};
  print.form = "AccountReport3.rpt";
  print.twin = "-";
  o.Expect(print);
  print.ticks = {1, 2};
  print.form = "AccountReport2.rpt";
  print.twin = "";
  print.sums = {{"TakenIn", std::string(taken) + "'2024-01-01'"},
                {"PaidOut", "0"},
                {"Expense", "45.20-1800"}};
  print.count = "4";
  o.Expect(print);
  print.company = "KL";
  print.ticks = {};
  print.form = "AccountReport.rpt";
  print.sums = {{"TakenIn", "660+660-5"}, {"PaidOut", "1200"}, {"Expense", "-212.35"}};
  print.count = "1";
  o.Expect(print);
}

TEST(StagedPapers, RecordOfTransactions) {
  PaperCounter o;
  PaperCounter::Print print = {
      "RekodTrans.rpt",
      "01-06-2022",
      "30-01-2024",
      "HQ",
      {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast WHERE CompCode='HQ'"},
       {"Interest", "SELECT SUM(TotLoanInt) FROM LoanMast WHERE CompCode='HQ'"},
       {"Paid", "1966.67-1.50+900+1400"}},
      "3",
      "-"};
  o.Expect(print);
  // L1 had paid on that very day and owed 3,933.33; L4 owed 7,400.
  o.session().settings.SchInt = "1";
  print.to = "05-12-2023";
  print.ticks = {2, 3, 4};
  print.form = "RekodTrans2.rpt";
  print.sums = {{"Interest", "SELECT SUM(InterestAmt) FROM SchMast WHERE LoanID IN ('L1','L4')"},
                {"Paid", "1966.67-1.50+1400"},
                {"BalThen", "3933.33+7400"}};
  print.count = "2";
  o.Expect(print);
  const auto texts = TextsOf(o.Start(print));
  EXPECT_THAT(texts, Contains("L4"));
  print.ticks = {};
  EXPECT_THAT(TextsOf(o.Start(print)), Not(Contains("L4")));
}

TEST(StagedPapers, LedgerOfAccount) {
  PaperCounter o;
  PaperCounter::Print print = {
      "LejarAkuan.rpt",
      "01-01-2022",
      "31-01-2024",
      "",
      {{"PayAmt", "SELECT SUM(PayAmt) FROM PaymentMast"},
       {"Interest", "SELECT SUM(IntPay) FROM PaymentMast"},
       {"LateAmt", "SELECT SUM(IntAmt)+SUM(ChargeAmt)+SUM(CollectorAmt) FROM PaymentMast"},
       {"DiscAmt", "1.5+5"}},
      // a line for each loan as well
      "SELECT COUNT(*)+5 FROM PaymentMast",
      "-"};
  o.Expect(print);
  print.ticks = {1};
  print.form = "LejarAkuan60.rpt";
  print.sums = {{"Interest", "SELECT SUM(IntPay) FROM PaymentMast"},
                {"Capital",
                 "SELECT SUM(CASE WHEN LoanID='L2' THEN CapPay ELSE PayAmt-IntPay END) "
                 "FROM PaymentMast"}};
  o.Expect(print);
  // What was settled, by the day of its last payment: L3, made in February as well.
  print.ticks = {1, 2};
  print.from = "15-02-2023";
  print.to = "15-02-2023";
  print.sums = {{"Interest", "SELECT SUM(IntPay) FROM PaymentMast WHERE LoanID='L3'"}};
  print.count = "3";
  o.Expect(print);
  for (const auto& [setting, marked] : {std::pair{"1", true}, std::pair{"", false}}) {
    o.session().settings.LampiranA = setting;
    const auto texts = TextsOf(o.Start(print));
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "LAMPIRAN A"), marked ? 1 : 0);
  }
}

// The audit's own database has no profile of the office.
TEST(StagedPapers, TheCompanyStandsAboveTheAudit) {
  PaperCounter o;
  o.logs();
  const auto texts = TextsOf(o.Start({"AuditLogs.rpt", "01-01-2024", "31-01-2024"}));
  EXPECT_THAT(texts, Contains("Kaunter Holdings Sdn Bhd"));
  EXPECT_THAT(texts, Contains("LoanAmt: 5,000.00"));
}

}  // namespace
}  // namespace kaunter
