#include <fmt/format.h>

#include "core/values.h"
#include "platform/host.h"
#include "reports/selection_formula.h"
#include "tests/reporting/report_counter.h"

namespace kaunter {
namespace {

std::string Rows(const Grid& grid) {
  std::string rows;
  for (int row = 0; row < grid.RowCount(); ++row) {
    rows += (rows.empty() ? "" : "|") + grid.Cell(row, 0);
  }
  return rows;
}

TEST(ReportFrm, ValuesMoveBetweenTheListsAndStayPacked) {
  ReportCounter counter;
  ReportFrm& frm = counter.Open("CashBook.rpt");
  frm.ListCombo.PickIndex(1);
  EXPECT_EQ(Rows(frm.List1), "Bank In|Bank Out|Cash In|Cash Out");
  EXPECT_FALSE(frm.InSingle.enabled()) << "no row is marked yet";
  frm.InSingle.Click();
  EXPECT_EQ(Rows(frm.List2), "");
  frm.List1.Select(1);
  frm.InSingle.Click();
  EXPECT_FALSE(frm.InSingle.enabled());
  frm.List1.Open(0, 0);
  EXPECT_EQ(Rows(frm.List1), "Cash In|Cash Out");
  EXPECT_EQ(Rows(frm.List2), "Bank Out|Bank In");
  // Another list leaves this one as it is.
  frm.ListCombo.PickIndex(0);
  EXPECT_EQ(Rows(frm.List1), "HQ|KL");
  EXPECT_FALSE(frm.OutAll.enabled());
  frm.InAll.Click();
  EXPECT_FALSE(frm.InAll.enabled());
  EXPECT_EQ(frm.SelectedLbl.Text(),
            "(Company Code - HQ or KL), (Trans Type - Bank Out or Bank In)");
  frm.ListCombo.PickIndex(1);
  frm.List2.Select(0);
  frm.OutSingle.Click();
  EXPECT_EQ(Rows(frm.List1), "Cash In|Cash Out|Bank Out");
  frm.OutAll.Click();
  EXPECT_EQ(Rows(frm.List2), "");
  EXPECT_EQ(frm.SelectedLbl.Text(), "(Company Code - HQ or KL)");
}

TEST(ReportFrm, AListThatStandsTwiceIsChosenByItsOwnName) {
  ReportCounter counter;
  ReportFrm& frm = counter.OpenJanuary("DueDate5.rpt");
  for (const char* name : {"Customer Type", "Customer Type (2)"}) {
    ASSERT_TRUE(frm.ListCombo.Pick(name));
    ASSERT_EQ(Rows(frm.List1), "COMPANY|PERSONAL") << name;
    frm.List1.Open(1, 0);
  }
  EXPECT_EQ(counter.Print()->ReportTitle,
            "From 01-01-2024 to 31-01-2024,  (Company Code - HQ) ,  (Customer Type - PERSONAL) ,  "
            "(Customer Type - PERSONAL) ");
}

TEST(ReportFrm, TheCompanyListHoldsWhatThePersonMaySee) {
  struct Case {
    int level;
    const char *allowed, *companies;
  };
  const Case cases[] = {{3, "", "HQ"},
                        {3, "\"KL\"", "KL"},
                        {3, "\"HQ\",\"KL\"", "HQ|KL"},
                        {4, "", "HQ|KL"},
                        {4, "\"KL\"", "HQ|KL"}};
  ReportCounter counter;
  for (const Case& c : cases) {
    counter.office.session.CurrentLevel = c.level;
    counter.office.session.AllowedCompanies = c.allowed;
    EXPECT_EQ(Rows(counter.Open("LoanMastList.rpt").List1), c.companies) << c.level << c.allowed;
  }
}

TEST(ReportFrm, DatesAreRefusedWithTheirTextAndTheFutureOnlyWhereNothingFallsDue) {
  ReportCounter counter;
  struct Case {
    const char *file, *typed, *shown, *message;
  };
  const Case cases[] = {
      {"PaymentList.rpt", "31-01-2024", "31-01-2024", ""},
      {"PaymentList.rpt", "31-02-2024", "31-02-2024", "Paper: Invalid Date"},
      {"PaymentList.rpt", "01-02-2024", "31-01-2024", "Paper: Date To cannot greater than today"},
      {"DueDateC.rpt", "01-02-2024", "31-01-2024", "Paper: Date To cannot greater than today"},
      {"DueDate.rpt", "01-02-2024", "01-02-2024", ""},
      {"DueDate3.rpt", "01-02-2024", "01-02-2024", ""},
  };
  for (const Case& c : cases) {
    counter.desk.messages.clear();
    ReportFrm& frm = counter.Open(c.file);
    frm.DateTo.Enter();
    frm.DateTo.Type(c.typed);
    frm.DateTo.Leave();
    EXPECT_EQ(frm.DateTo.text(), c.shown) << c.file;
    EXPECT_EQ(counter.desk.messages.empty() ? "" : counter.desk.messages.back(), c.message);
  }
}

TEST(ReportFrm, ASelectedLoanIsTheOnlyOne) {
  ReportCounter counter;
  counter.office.session.HandOverLoanID = "L1";
  ReportFrm& frm = counter.Open("StatementList.rpt");
  EXPECT_EQ(frm.IDFrom.text(), "L1");
  EXPECT_EQ(frm.IDTo.text(), "L1");
  EXPECT_FALSE(frm.IDFrom.enabled());
  EXPECT_FALSE(frm.SearchCmd1.visible());
  EXPECT_EQ(frm.DateFrom.text(), "05-01-2024");
  EXPECT_EQ(frm.DateTo.text(), "31-01-2024");
}

TEST(ReportFrm, WhichNumbersAreAskedFor) {
  struct Case {
    const char* file;
    bool boxes, editable, picker;
  };
  const Case cases[] = {
      {"LoanMastList.rpt", true, true, true}, {"SMSCompList.rpt", true, true, false},
      {"CashBook.rpt", false, false, false},  {"AccountReport.rpt", true, false, false},
      {"YearlyLoan.rpt", true, true, false},  {"CBIncome.rpt", true, false, false}};
  ReportCounter counter;
  for (const Case& c : cases) {
    ReportFrm& frm = counter.Open(c.file);
    EXPECT_EQ(frm.IDFrom.visible(), c.boxes) << c.file;
    EXPECT_EQ(frm.IDTo.Editable(), c.editable) << c.file;
    EXPECT_EQ(frm.SearchCmd2.visible(), c.picker) << c.file;
  }
}

TEST(ReportFrm, AListOfAnyLengthIsOfferedMovedAndPrintedWhole) {
  ReportCounter counter;
  counter.office.Run("DELETE FROM SalesmanMast");
  for (int i = 0; i < 230; ++i) {
    counter.office.Run(fmt::format("INSERT INTO SalesmanMast (SalesmanID) VALUES ('S{:03}')", i));
  }
  ReportFrm& frm = counter.OpenJanuary("LoanMastList.rpt");
  ASSERT_TRUE(frm.ListCombo.Pick("Salesman"));
  frm.InAll.Click();
  EXPECT_EQ(frm.List2.RowCount(), 230);
  EXPECT_EQ(frm.SelectedLbl.Text(),
            "(Company Code - HQ), (Salesman - S000 or S001 or S002 or S003 or S004 or S005 or S006 "
            "or S007 ... 230)");
  const ReportJob* job = counter.Print();
  ASSERT_NE(job, nullptr);
  for (const char* last : {"{LoanMast.SalesmanID} = 'S200' ", "= 'S229' ) "}) {
    EXPECT_NE(job->SelectionFormula.find(last), std::string::npos) << last;
  }
  EXPECT_NO_THROW(FormulaToCondition(job->SelectionFormula));
}

TEST(ReportFrm, ClosingDropsTheRowsOfThisPcAndReportAlone) {
  ReportCounter counter;
  ReportFrm& frm = counter.OpenJanuary("StatementList.rpt");
  counter.Print();
  EXPECT_NE(counter.office.Scalar("SELECT COUNT(*) FROM MasterReport"), "0");
  counter.office.Run(
      "INSERT INTO MasterReport (pcname,reportname,recordid) VALUES ('OTHER','StatementList.rpt',"
      "'1'); INSERT INTO MasterReport (pcname,reportname,recordid) SELECT TOP 1 "
      "pcname,'SummaryBS.rpt','2' FROM MasterReport");
  counter.office.session.CallerTag = "left";
  frm.Close();
  EXPECT_EQ(counter.office.session.CallerTag, "");
  EXPECT_EQ(counter.office.Scalar("SELECT COUNT(*) FROM MasterReport"), "2");
}

}  // namespace
}  // namespace kaunter
