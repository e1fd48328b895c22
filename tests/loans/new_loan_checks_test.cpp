// The checks of a loan's save: each comes before all later ones; blanks are filled on the way; the
// strict edges.
#include <functional>
#include <string>
#include <vector>

#include "tests/loans/loan_counter.h"

namespace kaunter {
namespace {

struct Row {
  const char* check;
  std::function<void(NewLoanFrm&)> break_it;
  std::string told;
  const char* focus = nullptr;  // where the refusal leads; null: it stays where it was
};

class LoanChecks : public LoanSave {
 protected:
  LoanChecks() {
    office.Run("UPDATE CompMast SET AMLA='1',AMLAWarning='0',AMLALoan=1000000 WHERE CompCode='HQ'");
    office.Run(
        "INSERT INTO LoanMast (LoanID,OldLoanCode,CustID,CompCode) VALUES ('HQ0001-900','ALT9',"
        "'HQ0001','HQ')");
    office.session.settings.AMLA = true;
    office.session.CurrentLevel = 3;
  }

  void Settle() {
    office.session.Special = false;
    office.session.settings.LinkAcc = "";
    office.session.settings.LowInt = "0";
    office.Run("UPDATE CustMast SET CreditLimit=0,CreditLimitType=''");
    office.Run("UPDATE CompMast SET AMLALoan=1000000 WHERE CompCode='HQ'");
    desk.said.clear();
  }

  static Row Blank(const char* check, std::string told, const char* focus,
                   TextBox NewLoanFrm::*box) {
    return {check, [box](NewLoanFrm& screen) { (screen.*box).Clear(); }, std::move(told), focus};
  }
  static Row Blank(const char* check, std::string told, const char* focus,
                   ComboBox NewLoanFrm::*box) {
    return {check, [box](NewLoanFrm& screen) { (screen.*box).Clear(); }, std::move(told), focus};
  }

  // In the order of the page.
  std::vector<Row> Rows() {
    using F = NewLoanFrm;
    return {
        {"2", [this](F&) { office.session.Special = true; },
         "You are not allow to amend this record"},
        Blank("3", "Company Code is required", nullptr, &F::CompCode),
        Blank("3", "Loan Type required", "LoanTypeID", &F::LoanTypeID),
        Blank("3", "Collateral Type required", "LoanType", &F::LoanType),
        Blank("3", "Next due date required", nullptr, &F::NextDueDate),
        Blank("3", "Customer ID required", "CustID", &F::CustID),
        Blank("3", "Loan Date required", "TrxDate", &F::TrxDate),
        Blank("3", "Loan Amount required", "LoanAmt", &F::LoanAmt),
        Blank("3", "Interest Rate required", "InsRate", &F::InsRate),
        {"5", [](F& f) { f.LoanTerm.SetText("0"); }, "Loan Term required", "LoanTerm"},
        Blank("6", "First Payment required", nullptr, &F::FirstPayment),
        {"7 type",
         [](F& f) {
           f.LoanType.SetText("Secured");
           f.property.CollateralID.Clear();
         },
         "Collateral Type required"},
        {"7 description",
         [](F& f) {
           f.LoanType.SetText("Secured");
           f.property.CollateralID.SetText("CAR");
           f.property.Memo2.Clear();
         },
         "Collateral Desc required"},
        Blank("9", "Late Interest Rate PA required", "LateChargePerDay", &F::LateChargePerDay),
        {"11", [](F& f) { f.guarantors[0].GuarantorCompIncome.SetText("much"); },
         "Guarantor Income required"},
        {"11 second", [](F& f) { f.guarantors[1].GuarantorCompIncome.SetText("much"); },
         "Guarantor 2 Income required"},
        {"12", [](F& f) { f.DragLoan.SetIndex(-1); }, "Scheme / Flexi Loan is require"},
        Blank("14", "Grace Period is require", nullptr, &F::LoanTerm2),
        {"16", [](F& f) { f.OldLoanCode.SetText("ALT9"); },
         "ALT9 is belong to O'Brien Loan, Please check", "OldLoanCode"},
        {"figures", [](F& f) { f.NextDueDate.SetText("30-02-2024"); }, "Invalid Date",
         "NextDueDate"},
        {"17", [this](F&) { office.session.settings.LowInt = "1200"; },
         "Interest rate cannot lower than 1,200.00"},
        // 10,000 and a year at 150 %: the 15,000 of interest make 25,000. 888.49 a month and the
        // first payment of 20,000 make 28,884.90.
        {"18", [](F& f) { f.FirstPayment.SetText("20,000.00"); },
         "Total installment (28,884.90) more than Loan amount + Interest (25,000.00)\n\nStill "
         "Proceed ?"},
        {"19", [this](F&) { office.session.settings.LinkAcc = "1"; },
         "Link Account not complete setup\nDo you want to setup now ?"},
        {"20",
         [this](F&) {
           office.Run("UPDATE CustMast SET CreditLimit=9999.99,CreditLimitType='Full Settled'");
         },
         "Loan amount cannot exceed 9,999.99, please check !"},
        {"21", [](F& f) { f.SchChanged.SetChecked(true); },
         "Total capital payable 0.00 not tally with loan amount 10,000.00", "vsd3"},
        {"22", [](F&) {},  // the rate of all rows
         "Warning!\nTotal Interest 150% are more than 100%, proceed ?"},
        {"23",
         [this](F&) {
           desk.refused_question.clear();
           office.Run("UPDATE CompMast SET AMLALoan=9999.99 WHERE CompCode='HQ'");
         },
         "AML/CFT Alert!\nLoan Amount RM10,000.00 more than BNM Cash Threshold Amount "
         "RM9,999.99\nPlease fill in the the Loan Purpose",
         "AMLACode"},
    };
  }
};

TEST_F(LoanChecks, EachComesBeforeAllLaterOnes) {
  const std::vector<Row> rows = Rows();
  for (std::size_t k = 0; k < rows.size(); ++k) {
    SCOPED_TRACE(rows[k].check);
    Settle();
    auto screen = Open("New Loan");
    FillFlexi(*screen);
    screen->InsRate.SetText("150");
    desk.refused_question = "Warning!\nTotal Interest 150% are more than 100%, proceed ?";
    // Backwards, so that an earlier row has the last word on a box that two rows touch.
    for (std::size_t i = rows.size(); i-- > k;) rows[i].break_it(*screen);
    // Only the row's own question is refused.
    if (rows[k].check != std::string("23")) desk.refused_question = rows[k].told;
    screen->FocusOn(screen->Memo1);
    desk.said.clear();
    Save(*screen);
    // What was asked before and granted: the question of 22 stands before 23.
    ASSERT_EQ(desk.said.size(), rows[k].check == std::string("23") ? 2u : 1u) << desk.last();
    EXPECT_EQ(desk.last(), rows[k].told);
    EXPECT_EQ(screen->focus()->name(), rows[k].focus != nullptr ? rows[k].focus : "Memo1");
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "1");
  }
}

TEST_F(LoanChecks, AClerkWithoutTheRightNeedsAManagerOnceAScreen) {
  office.session.AllowEdit = false;
  office.session.Special = true;  // the next check, to be reached once a manager has agreed
  auto screen = Open("Edit Loan");
  Save(*screen);
  EXPECT_EQ(desk.last(), "User AMY Level not allow to edit or delete loan record");
  desk.manager_agrees = true;
  Save(*screen);
  Save(*screen);
  EXPECT_EQ(desk.last(), "You are not allow to amend this record");
  EXPECT_EQ(desk.approvals_asked, 2);
  // A new loan asks nobody.
  screen = Open("New Loan");
  Save(*screen);
  EXPECT_EQ(desk.approvals_asked, 2);
}

TEST_F(LoanChecks, BlanksAreFilledAndStayWhenALaterCheckRefuses) {
  auto screen = Open("New Loan");
  Fill(*screen);
  for (TextBox* box : {&screen->InstallmentAmt, &screen->LastPayment, &screen->OfferDays,
                       &screen->SalesmanComm, &screen->ProcessFee, &screen->TopUpAmt,
                       &screen->LoanAmt2, &screen->NextCall, &screen->LoanTerm2}) {
    box->Clear();
  }
  for (ComboBox* box : {&screen->Bank, &screen->AdvertiseID, &screen->LoanGroupID,
                        &screen->SalesmanID, &screen->IntType}) {
    box->Clear();
  }
  Save(*screen);
  EXPECT_EQ(desk.last(), "Grace Period is require");
  const struct {
    const Control& box;
    const char* text;
  } filled[] = {{screen->PayOutAmt, "0"},         {screen->InstallmentAmt, "983.33"},
                {screen->LastPayment, "983.33"},  {screen->IntType, "$"},
                {screen->OfferDays, "0"},         {screen->guarantors[1].GuarantorCompIncome, "0"},
                {screen->Bank, "CASH"},           {screen->ProcessFee, "0"},
                {screen->AdvertiseID, "NIL"},     {screen->LoanGroupID, "PINJAMAN SEMASA"},
                {screen->SalesmanID, "NIL"},      {screen->SalesmanComm, "0"},
                {screen->NextCall, "29-02-2024"}, {screen->TopUpAmt, "0.00"},
                {screen->LoanAmt2, "10,000.00"}};
  for (const auto& one : filled) EXPECT_EQ(one.box.Text(), one.text) << one.box.name();
}

TEST_F(LoanChecks, TheStrictEdges) {
  struct Edge {
    const char* name;
    std::function<void(NewLoanFrm&)> set;
    std::vector<std::string> said;
  };
  const std::string saving = "Confirm to save ?";
  const Edge edges[] = {
      {"a year at exactly 100 %", [](NewLoanFrm& f) { f.InsRate.SetText("100"); }, {saving}},
      {"one instalment counts alone",
       [](NewLoanFrm& f) {
         f.LoanTerm.SetText("1");
         f.FirstPayment.SetText("10150");
         f.LastPayment.SetText("99999");
       },
       {saving}},
      {"two leave the middle out",
       [](NewLoanFrm& f) {
         f.LoanTerm.SetText("2");
         f.FirstPayment.SetText("5150");
         f.LastPayment.SetText("5150");
         f.InstallmentAmt.SetText("99999");
       },
       {saving}},
      {"a sen too much is asked",
       [](NewLoanFrm& f) { f.LastPayment.SetText("983.38"); },
       {"Total installment (11,800.01) more than Loan amount + Interest (11,800.00)\n\nStill "
        "Proceed ?",
        saving}},
      {"exactly the threshold",
       [this](NewLoanFrm&) { office.Run("UPDATE CompMast SET AMLALoan=10000"); },
       {saving}},
      {"the term 00 goes past its own check and no further",
       [](NewLoanFrm& f) { f.LoanTerm.SetText("00"); },
       {"Invalid Loan Term Value"}},
      {"letters in an instalment",
       [](NewLoanFrm& f) { f.LastPayment.SetText("none"); },
       {"Invalid Last Payment Amount"}},
      {"a special schedule without rows",
       [](NewLoanFrm& f) {
         f.DragLoan.SetIndex(1);
         f.SpecialSch.SetChecked(true);
       },
       {"Special Schedule has no rows, Please check"}},
  };
  for (const Edge& edge : edges) {
    SCOPED_TRACE(edge.name);
    Settle();
    desk.refused_question = saving;
    auto screen = Open("New Loan");
    Fill(*screen);
    edge.set(*screen);
    Save(*screen);
    EXPECT_EQ(desk.said, edge.said);
  }
}

}  // namespace
}  // namespace kaunter
