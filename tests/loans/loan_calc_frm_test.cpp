#include "loans/loan_calc_frm.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

class LoanCalcfrmTest : public ::testing::Test {
 protected:
  LoanCalcfrmTest() { screen.Load(); }

  void Set(const char* name, const char* text) {
    Control* control = screen.Find(name);
    ASSERT_NE(control, nullptr) << name;
    control->Enter();
    if (auto* box = dynamic_cast<TextBox*>(control)) box->Type(text);
    if (auto* list = dynamic_cast<ComboBox*>(control)) {
      EXPECT_TRUE(list->Pick(text)) << text;
    }
    control->Leave();
  }
  void FillWorkedLoan() {
    Set("LoanAmt", "10000");
    Set("InsRate", "18");
    Set("LoanTerm", "12");
    Set("NextDueDate", "31-01-2024");
  }
  void Press(Button& button) {
    screen.Guard([&] { button.Click(); });
  }
  // The messages since the last call.
  std::vector<std::string> Told() {
    std::vector<std::string> told;
    told.swap(desk.messages);
    return told;
  }

  Office office{Office::State::patched};
  AgreeingDesk desk;
  LoanCalcfrm screen{office.session, desk};
};

using Texts = std::vector<std::string>;

// One grace row of a bullet of 0.125041..: the plain double rounds up, while money would make it
// 0.1250 first and then take the even 0.12.
TEST_F(LoanCalcfrmTest, TheGraceRowDividesThePlainDouble) {
  FillWorkedLoan();
  Set("LoanAmt", "100");
  Set("InsRate", "1.5005");
  Set("LoanTerm2", "1");
  Press(screen.Command3);
  EXPECT_EQ(screen.SchDG.Cell(0, 4), "0.13");
}

TEST_F(LoanCalcfrmTest, TheTermLoanShowsItsLastPayment) {
  FillWorkedLoan();
  Set("InsRate", "12");
  Set("DragLoan", "Term Loan");
  Press(screen.Command3);
  EXPECT_EQ(screen.InstallmentAmt.text(), "888.49");
  EXPECT_EQ(screen.LoanBal.text(), "10,000.00");
  EXPECT_EQ(screen.LastPayment.text(), "888.88");
  EXPECT_EQ(screen.SchDG.Row(1),
            (Texts{"2", "29-02-2024", "888.49", "800.65", "87.84", "10,000.00"}));
  // Decimals of the rate past the fourth are rounded away; with them it would be 22,419.52.
  Set("LoanAmt", "1000000");
  Set("InsRate", "12.34567");
  Set("LoanTerm", "60");
  Press(screen.Command3);
  EXPECT_EQ(screen.InstallmentAmt.text(), "22,419.54");
}

TEST_F(LoanCalcfrmTest, ANumberIsDrawnOnceAndItsRowsGoWithTheScreen) {
  FillWorkedLoan();
  Press(screen.Command3);
  Set("LoanTerm", "3");
  Press(screen.Command3);
  EXPECT_EQ(screen.LoanID.text(), "LC-0001");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast2 WHERE LoanID='LC-0001'"), "3");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast2 WHERE CustID=''"), "3");
  office.Run("INSERT INTO SchMast2 (SchID,LoanID) VALUES (1,'AB0001-001')");
  screen.Unload();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast2"), "1");

  LoanCalcfrm next(office.session, desk);
  next.Load();
  next.LoanAmt.Type("1000");
  next.InsRate.Type("18");
  next.LoanTerm.Type("1");
  next.NextDueDate.Type("31-01-2024");
  next.Command3.Click();
  EXPECT_EQ(next.LoanID.text(), "LC-0002");
  next.Unload();
}

// Row k of the table mends the box that the row before was about.
TEST_F(LoanCalcfrmTest, CalcPaymentRefusesTheFirstBoxThatDoesNotFit) {
  office.session.MsgTitle = "Check IC";
  Set("LoanTerm2", "");
  // A box, what is typed there before the press, what is told, where it leads.
  const std::array<const char*, 4> kCases[] = {
      {"CustName", "Tan", "Loan Amount is required", "LoanAmt"},
      {"LoanAmt", "5000", "Interest Rate is required", "InsRate"},
      {"InsRate", "18", "Loan Term is required", "LoanTerm"},
      {"LoanTerm", "0", "Loan Term is required", "LoanTerm"},
      {"LoanTerm", "12", "Next Due Date is required", "NextDueDate"},
      {"NextDueDate", "31-02-2024", "Invalid Next Due Date, Please check", "NextDueDate"},
      {"LoanTerm2", "1.5", "Invalid Grace Period", "LoanTerm2"},
      {"LoanTerm", "1.5", "Invalid Loan Term Value", "LoanTerm"},
      {"InsRate", "1,8", "Invalid Interest Rate", "InsRate"},
      {"LoanAmt", "5OOO", "Invalid Loan Amt", "LoanAmt"},
  };
  for (const auto& [box, text, message, focus] : kCases) {
    Set(box, text);
    Told();
    Press(screen.Command3);
    EXPECT_EQ(Told(), Texts{std::string("Check IC: ") + message});
    ASSERT_NE(screen.focus(), nullptr);
    EXPECT_EQ(screen.focus()->name(), focus);
    EXPECT_TRUE(screen.focus()->marked());
  }
  EXPECT_TRUE(screen.LoanID.empty());
  EXPECT_EQ(screen.LoanAmt.text(), "5OOO");  // nothing typed is lost
}

TEST_F(LoanCalcfrmTest, ABoxLeftWithAWrongTextSaysSoAndKeepsIt) {
  const std::array<const char*, 5> kCases[] = {
      {"LoanAmt", "12a", "Invalid Loan Amt", "1234.565", "1,234.57"},
      {"LoanAmt", "-1", "Invalid Loan Amt", "1,000", "1,000.00"},
      {"InsRate", "1,8", "Invalid Interest Rate", "1.8", "1.8"},
      {"LoanTerm", "0", "Invalid Loan Term Value", " 12 ", "12"},
      {"LoanTerm2", "-1", "Invalid Grace Period", "2", "2"},
      {"NextDueDate", "13-13-2024", "Invalid Next Due Date, Please check", "29-02-2024",
       "29-02-2024"},
      {"TrxDate", "2024-01-31", "Invalid Loan Date, Please check", "", ""},
  };
  for (const auto& [box, wrong, message, right, shown] : kCases) {
    Set(box, wrong);
    EXPECT_EQ(Told(), Texts{std::string("Loan Calculation: ") + message});
    EXPECT_EQ(screen.Find(box)->Text(), wrong);
    EXPECT_TRUE(screen.Find(box)->marked());
    Set(box, right);
    EXPECT_EQ(Told(), Texts{}) << box;
    EXPECT_EQ(screen.Find(box)->Text(), shown);
    EXPECT_FALSE(screen.Find(box)->marked()) << box;
  }
}

TEST_F(LoanCalcfrmTest, FiguresBeyondMoneyAreRefusedAndTheOldTableStays) {
  FillWorkedLoan();
  Press(screen.Command3);
  Set("LoanAmt", "2000000000");
  Set("InsRate", "99999999");
  Press(screen.Command3);
  EXPECT_EQ(Told(), Texts{"Loan Calculation: Loan Amount or Interest Rate is too large"});
  EXPECT_EQ(screen.SchDG.RowCount(), 12);
  FillWorkedLoan();
  Set("LoanTerm", "9999");
  Set("NextDueDate", "31-01-9500");
  Press(screen.Command3);
  EXPECT_EQ(Told(),
            Texts{"Loan Calculation: Loan Term is too long, the last due date is past year 9999"});
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast2"), "12");
}

TEST_F(LoanCalcfrmTest, PrintAsksForEveryBoxThenStartsTheReport) {
  screen.TrxDate.Clear();
  const std::array<const char*, 3> kCases[] = {
      {"LoanTerm2", "0", "Name is required"},
      {"CustName", "Tan; Ah Kow", "Loan Date is required"},
      {"TrxDate", "15-01-2024", "Next Due Date is required"},
      {"NextDueDate", "31-01-2024", "Loan Amount is required"},
      {"LoanAmt", "10000", "Interest Rate % PA is required"},
      {"InsRate", "18", "Loan Term is required"},
  };
  for (const auto& [box, text, message] : kCases) {
    Set(box, text);
    Press(screen.SaveCmd);
    EXPECT_EQ(Told(), Texts{std::string("Loan Calculation: ") + message});
  }
  Set("LoanTerm", "12");
  office.session.Special = true;
  Press(screen.SaveCmd);
  EXPECT_EQ(Told(), Texts{});
  ASSERT_EQ(desk.printed.size(), 1u);
  const ReportJob& job = desk.printed[0];
  EXPECT_EQ(job.ReportFileName, office.session.AppPath + "/LoanCalcList.rpt");
  EXPECT_EQ(job.SelectionFormula, "{SchMast2.LoanID}='LC-0001'");
  EXPECT_EQ(job.Connect, office.session.MainConn.get());
  EXPECT_EQ(job.ParameterFields, (std::map<int, std::string>{{0, "RptID;True;True"},
                                                             {1, "CustName;Tan; Ah Kow;True"},
                                                             {2, "TrxDate;15-01-2024;True"},
                                                             {3, "NextDueDate;31-01-2024;True"},
                                                             {4, "LoanAmt;10,000.00;True"},
                                                             {5, "InsRate;18;True"},
                                                             {6, "LoanTerm;12;True"}}));
  EXPECT_EQ(screen.SchDG.RowCount(), 12);
}

TEST_F(LoanCalcfrmTest, AFailingStatementIsToldAndTheBoxesStay) {
  FillWorkedLoan();
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("Insert into SchMast2")) throw SqlError(1105, "the disk is full");
  });
  Press(screen.Command3);
  office.session.Main().SetFaultHook(nullptr);
  EXPECT_EQ(Told(), (Texts{"Kaunter: the disk is full\nWhat was saved before stays saved. Mend the "
                           "cause, and look what is there before you do it again."}));
  EXPECT_EQ(screen.LoanAmt.text(), "10,000.00");
  Press(screen.Command3);
  EXPECT_EQ(screen.LoanID.text(), "LC-0001");
  EXPECT_EQ(screen.SchDG.RowCount(), 12);
}

TEST_F(LoanCalcfrmTest, SpeaksChineseWhenTheOfficeDoes) {
  office.session.ChineseFlag = true;
  LoanCalcfrm chinese(office.session, desk);
  chinese.Load();
  chinese.Command3.Click();
  EXPECT_EQ(Told(), Texts{"贷款计算: 请输入贷款金额"});
}

}  // namespace
}  // namespace kaunter
