// What the payment screen refuses, and in which order.
#include "tests/collections/payment_counter.h"

namespace kaunter {
namespace {

class PaymentChecks : public PaymentCounter {
 protected:
  void TurnAmlOn(const std::string& threshold, bool only_warn) {
    office.session.settings.AMLA = true;
    office.Run(fmt::format("UPDATE CompMast SET AMLA='1',AMLAPayment={},AMLAWarning='{}'",
                           threshold, only_warn ? 1 : 0));
  }
};

// At first everything is wrong; each row mends what the row before was refused for, and meets the
// next check.
TEST_F(PaymentChecks, StandInTheirOrder) {
  const std::string id = Store("112");
  TurnAmlOn("99.99", false);
  office.session.AllowEdit = office.session.AllowDisc = false;
  auto screen = Open("Edit Payment", {}, id);
  PaymentFrm& s = *screen;
  s.LoanID.SetText("");
  s.PayOutAmt.SetText("0.00");
  s.DiscAmt.SetText("1");
  s.IntAmt.SetText("soon");
  s.WithdrawDate.SetText("31-02-2024");
  s.PayAmt.SetText("1344.01");
  s.InstalAmt.SetText("2000");
  s.PayDate.SetText("");
  s.ChargeAmt.SetText("51");  // of a deposit of 50
  s.MPayment.SetText("12");   // of 11 rows ahead
  struct Step {
    std::function<void()> mend;
    const char* told;
  };
  const Step steps[] = {
      {[] {}, "Loan ID required"},
      {[&] { s.LoanID.SetText(kPersonal); }, "Loan not fully drawdown cannot make payment"},
      {[&] { s.PayOutAmt.SetText("1,200.00"); }, "User AMY are not allow to save discount payment"},
      {[&] { office.session.AllowDisc = true; },
       "User AMY Level not allow to edit or delete payment record"},
      {[&] { counter.manager = &office.session; }, "Invalid Interest Payment, Please check"},
      {[&] { s.IntAmt.SetText("-1"); }, "Invalid Withdraw Date, Please check"},
      {[&] { s.WithdrawDate.SetText(""); }, "Payment amount cannot more than loan balance amount"},
      {[&] { s.PayAmt.SetText("1344"); }, "Instalment & Extra not tally with Payment Amount"},
      {[&] { s.InstalAmt.SetText("1344"); }, "Date is required"},
      {[&] {
         s.PayDate.SetText("04-01-2024");
         for (TextBox* box : {&s.PayAmt, &s.InstalAmt, &s.IntAmt, &s.ChargeAmt}) box->SetText("0");
       },
       "No payment"},
      {[&] {
         s.PayAmt.SetText("100");
         s.InstalAmt.SetText("60");  // less than the payment passes
         s.ChargeAmt.SetText("51");
       },
       "Refund Deposit cannot more than 50.00 Deposit Amount, Please check"},
      {[&] { s.ChargeAmt.SetText("0"); }, "Cannot exceed 11 payment"},
      {[&] { s.MPayment.SetText("11"); }, "Payment date cannot eariler than loan date"},
  };
  for (const Step& step : steps) {
    step.mend();
    Save(s);
    EXPECT_EQ(Said(), std::string("Edit Payment: ") + step.told + "|");
  }
  s.PayDate.SetText("05-01-2024");
  s.IntAmt.SetText("1.50");
  Save(s);
  EXPECT_EQ(Said(),
            "AML/CFT Alert: AML/CFT Alert!\nPayment Amount RM100.50 more than BNM Cash Threshold "
            "Amount RM99.99\nPlease fill in the Source of Fund Explaination|");
  EXPECT_EQ(s.focus(), &s.AMLACode);
  s.AMLACode.SetText("SALARY");
  const std::string credit =
      "Interest Payment 1.50 is more than what is owed: 0.00 outstanding, of which the date waives "
      "0.00. The 1.50 too much is credited again with every later payment.\nSave all the same ?";
  counter.refused = credit;
  Save(s);
  EXPECT_EQ(Said(), "?" + credit + "|");
  EXPECT_EQ(s.focus(), &s.IntAmt);
  counter.refused.clear();
  Save(s);
  EXPECT_EQ(Said(), "?" + credit + "|?confirm to Save Loan ID " + id + " ?|Edit Payment: Loan ID " +
                        id + " Saved|");
  // The manager was asked until he signed in, and then no more.
  EXPECT_EQ(counter.asked_manager, 2);
  EXPECT_EQ(Lines("SELECT PayAmt,InstalAmt,IntAmt,DiscAmt,AMLACode FROM PaymentMast"),
            "100 60 1.5 1 SALARY\n");
  // A screen that was cleared asks anew; and a payment that is deleted is not asked for.
  s.Guard([&] { s.CmdClear.Click(); });
  Put(s.PayID, id);
  counter.manager = nullptr;
  office.session.OverrideOK = false;
  Save(s);
  EXPECT_EQ(counter.asked_manager, 3);
  Save(*Open("Delete Payment", {}, id));
  EXPECT_EQ(counter.asked_manager, 3);
  EXPECT_EQ(Payments(), "");
}

TEST_F(PaymentChecks, LettersAndAmountsBelowZeroAreToldByTheirBox) {
  struct Case {
    TextBox PaymentFrm::*box;
    const char* told;
    bool below_zero_too = true;
  };
  // The other amounts: counter_property_test.cpp.
  const Case cases[] = {
      {&PaymentFrm::PayAmt, "Invalid Amount, Please check"},
      {&PaymentFrm::BankOpenBal, "Invalid Open Balance, Please check", false},
      {&PaymentFrm::WithdrawAmt, "Invalid Withdraw Amount, Please check"},
      {&PaymentFrm::RepaymentAmt, "Invalid Repayment, Please check"},
      {&PaymentFrm::WithdrawDate, "Invalid Withdraw Date, Please check"},
      {&PaymentFrm::PayDate, "Invalid Date, Please check"},
  };
  for (const Case& one : cases) {
    auto screen = New(kFlexi);
    TextBox& box = (*screen).*one.box;
    if (&box != &screen->PayDate) Put(screen->PayDate, "31-01-2024");
    Put(screen->TotPay, "100");
    for (const char* text : {"1O0", "-5", "1';", "1e3"}) {
      if (!one.below_zero_too && text[0] == '-') continue;
      counter.messages.clear();
      const bool typed = box.Type(text);
      box.Enter();
      screen->Guard([&] { box.Leave(); });
      ASSERT_TRUE(typed) << box.name() << text;
      EXPECT_EQ(LastMessage(), std::string("New Payment: ") + one.told)
          << box.name() << " " << text;
      EXPECT_EQ(box.text(), text);
      EXPECT_EQ(screen->focus(), &box);
      // Nobody gets past it by pressing the button.
      Save(*screen);
      EXPECT_EQ(counter.questions.size(), 0u) << box.name() << " " << text << " " << Said();
      EXPECT_EQ(box.text(), text);
    }
  }
  EXPECT_EQ(Payments(), "");
}

}  // namespace
}  // namespace kaunter
