// How a loan or a payment comes on the payment screen, and how the money is split there. The
// limits of the boxes, and how they follow each other: counter_property_test.cpp.
#include "tests/collections/payment_counter.h"

namespace kaunter {
namespace {

class PaymentScreen : public PaymentCounter {
 protected:
  // Pay, instalment, extra, late interest, new balance.
  static std::string Split(PaymentFrm& s) {
    return s.PayAmt.text() + " " + s.InstalAmt.text() + " " + s.PayExtra.text() + " " +
           s.IntAmt.text() + " " + s.NewLoanBal.text();
  }
};

TEST_F(PaymentScreen, ALoanIsFoundByEitherCodeOrToldWhyNot) {
  office.Run(
      "UPDATE LoanMast SET OldLoanCode='OLD7',FirstPayment=112,LateChargePerDay=18,OfferDays=3 "
      "WHERE LoanID='HQ0001-001';INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus) VALUES "
      "('AB1','HQ0001','AB','ACTIVE');INSERT INTO LoanMast "
      "(LoanID,CustID,CompCode,LoanStatus,OldLoanCode) VALUES "
      "('AB2','HQ0001','AB','ACTIVE','OLD7');INSERT INTO LoanMast "
      "(LoanID,CustID,CompCode,LoanStatus,LoanBal) VALUES ('HQ9','HQ0001','HQ','CLOSED',0);INSERT "
      "INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,LoanBal,DragLoan) VALUES "
      "('HQ8','HQ0001','HQ','ACTIVE',0,'0'),('HQ7','HQ0001','HQ','ACTIVE',200,'0');INSERT INTO "
      "PaymentMast (PayID,LoanID,CompCode) VALUES ('HQ9-001','HQ9','HQ')");
  auto screen = New("");
  PaymentFrm& s = *screen;
  Put(s.PayDate, "31-01-2024");  // typed before the loan, it stays
  Put(s.LoanID, " OLD7 ");
  EXPECT_EQ(s.PayDate.text(), "31-01-2024");
  EXPECT_EQ(s.LoanID.text(), "HQ0001-001");
  EXPECT_EQ(s.CustName.text() + "|" + s.LoanTerm.text() + "|" + s.OldLoanBal.text() + "|" +
                s.NewLoanBal.text() + "|" + s.DragLoan.text() + "|" + s.OfferDays.text() + "|" +
                s.AltCode.text(),
            "Tan 'Ah' Kow|112.00 X 12 MONTH|1,344.00|1,344.00|Personal Loan|3|OLD7");
  EXPECT_EQ(s.SchID.text() + "|" + s.LastDueDate.text() + "|" + s.NextDueDate.text() + "|" +
                s.ActPayable.text() + "|" + s.OutDragAmt.text() + "|" + s.IntChargeAmt.text(),
            "1|31-01-2024|29-02-2024|112.00|100.00|12.00");
  EXPECT_TRUE(s.InstalAmt.locked() && s.PayExtra.locked() && s.SaveCmd.enabled());

  office.session.CurrentLevel = 3;
  for (const auto& [loan, told, listed] :
       std::initializer_list<std::tuple<const char*, const char*, int>>{
           {"HQ0001-9", "Loan ID HQ0001-9 not found", 0},
           {"AB1", "Loan ID not found", 0},
           {"x' or '1'='1", "Loan ID x' or '1'='1 not found", 0},
           {"HQ9", "No payment for CLOSED loan", 1},
           {"HQ8", "Loan settled, cannot make payment", 0},
           {"HQ7", "Loan HQ7 has no schedule: save the loan again first", 0}}) {
    auto refused = New(loan);
    EXPECT_EQ(Said(), std::string("New Payment: ") + told + "|");
    EXPECT_FALSE(refused->SaveCmd.enabled()) << loan;
    EXPECT_EQ(refused->DG.RowCount(), listed) << loan;
  }
}

TEST_F(PaymentScreen, ACustomersOnlyLoanComesByItself) {
  office.session.HandOverCustID = "HQ0001";
  EXPECT_EQ(New("")->LoanID.text(), "");  // two run: the clerk chooses
  office.Run("UPDATE LoanMast SET LoanBal=0 WHERE LoanID='HQ0001-002'");
  office.session.MsgTitle = "Edit Customer";
  auto screen = New("");
  EXPECT_EQ(screen->LoanID.text(), kPersonal);
  EXPECT_TRUE(screen->SaveCmd.enabled());
  screen->Close();
  EXPECT_EQ(office.session.MsgTitle, "Edit Customer");
}

TEST_F(PaymentScreen, WhatWasTypedBeforeTheLoanIsLookedAtWithIt) {
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',1,'C1',112,'MBB','HQ0001-001-009');INSERT INTO ChqMast "
      "(LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES ('HQ0001-001',2,'C2',200,'RHB','')");
  // `split` with the loan, and the total typed again.
  for (const auto& [total, cheque, split, told] : TextRows<4>{
           {"100", "", "100 100.00 0.00 0 1,244.00", ""},
           {"", "C2", "200.00 200.00 0.00 0.00 1,144.00", ""},
           {"", "C1", "0.00 0.00 0.00 0.00 1,344.00", "New Payment: Cheque, Cannot be reuse|"}}) {
    auto screen = Open("New Payment");
    Put(screen->PayDate, "30-12-2023");  // before the loan was made
    Put(screen->ReceiptNo, "BOOK 7");
    if (*total != '\0') Put(screen->TotPay, total);
    Put(screen->ChqNo, cheque);
    Put(screen->LoanID, kPersonal);
    EXPECT_EQ(Said(),
              std::string(told) + "New Payment: Payment date cannot eariler than loan date|");
    if (*total != '\0') Put(screen->TotPay, total);
    EXPECT_EQ(Split(*screen), split) << total << cheque;
    EXPECT_EQ(screen->ReceiptNo.text(), "BOOK 7");
    Put(screen->PayAmt, "1");
    Save(*screen);
    EXPECT_EQ(LastMessage(), "New Payment: Payment date cannot eariler than loan date");
  }
}

TEST_F(PaymentScreen, AChequeIsLookedUpThoughItsBoxWasNotLeft) {
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',1,'C1',112,'MBB','HQ0001-001-001')");
  auto screen = New();
  Put(screen->PayAmt, "150");
  Put(screen->PayDate, "31-01-2024");
  screen->ChqNo.SetText("C1");
  Save(*screen);
  EXPECT_EQ(Said(), "New Payment: Cheque, Cannot be reuse|");
}

TEST_F(PaymentScreen, TheBankCardIsReckoned) {
  auto screen = New();
  PaymentFrm& s = *screen;
  Put(s.PayAmt, "112");
  Put(s.CollectorAmt, "5");
  Put(s.DiscAmt, "2");
  Put(s.BankOpenBal, "500");
  EXPECT_EQ(s.BankCloseBal.text() + s.BankinReturn.text(), "");
  Put(s.WithdrawAmt, "150");
  EXPECT_EQ(s.BankCloseBal.text() + "|" + s.BankinReturn.text(), "350.00|");
  Put(s.RepaymentAmt, "");
  EXPECT_EQ(s.RepaymentAmt.text() + "|" + s.BankinReturn.text(), "115.00|35.00");
}

TEST_F(PaymentScreen, LateChargesOfLaterDaysAreFoundAndShown) {
  Late("L1", "2024-01-31", "0.48");  // the day of the payment: it stays
  Late("L2", "2024-02-01", "0.48");
  Late("L3", "2024-02-29", "0.48");  // the next due date
  Late("L4", "2024-03-01", "0.48");  // behind it
  Late("L5", "2024-02-02", "0.48", kFlexi);
  auto screen = New();
  EXPECT_FALSE(screen->ListCmd.visible());
  Put(screen->PayDate, "31-01-2024");
  EXPECT_EQ(screen->ListCmd.caption().english, "2 Late Charge Found");
  EXPECT_TRUE(screen->ListCmd.visible());
  counter.can_show = "BatchListfrm";
  screen->ListCmd.Click();
  EXPECT_EQ(counter.shown, std::vector<std::string>{"BatchListfrm"});
  EXPECT_EQ(main().Query(selection).RowCount(), 2u);
  Put(screen->PayDate, "29-02-2024");
  EXPECT_FALSE(screen->ListCmd.visible());
  Put(screen->PayDate, "04-01-2024");
  EXPECT_EQ(LastMessage(), "New Payment: Payment date cannot eariler than loan date");
}

TEST_F(PaymentScreen, APaymentOfTheMonthIsPointedOut) {
  Store("112", "02-02-2024");
  auto screen = New();
  Put(screen->PayDate, "29-01-2024");
  EXPECT_EQ(LastMessage(),
            "Alert !!: Payment already made on the month at 02-02-2024 please take note");
  counter.messages.clear();
  Put(screen->PayDate, "01-03-2024");
  EXPECT_EQ(LastMessage(), "");
}

}  // namespace
}  // namespace kaunter
