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
      "WHERE LoanID='HQ0001-001';"
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus) VALUES ('AB1','HQ0001','AB',"
      "'ACTIVE');"
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,OldLoanCode) VALUES "
      "('AB2','HQ0001','AB','ACTIVE','OLD7');"
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,LoanBal) VALUES "
      "('HQ9','HQ0001','HQ','CLOSED',0);"
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,LoanBal,DragLoan) VALUES "
      "('HQ8','HQ0001','HQ','ACTIVE',0,'0'),('HQ7','HQ0001','HQ','ACTIVE',200,'0');"
      "INSERT INTO PaymentMast (PayID,LoanID,CompCode) VALUES ('HQ9-001','HQ9','HQ')");
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
  struct Case {
    const char* loan;
    const char* told;
    int listed;
  };
  for (const Case& one : std::initializer_list<Case>{
           {"HQ0001-9", "Loan ID HQ0001-9 not found", 0},
           {"AB1", "Loan ID not found", 0},
           {"x' or '1'='1", "Loan ID x' or '1'='1 not found", 0},
           {"HQ9", "No payment for CLOSED loan", 1},
           {"HQ8", "Loan settled, cannot make payment", 0},
           {"HQ7", "Loan HQ7 has no schedule: save the loan again first", 0}}) {
    auto refused = New(one.loan);
    EXPECT_EQ(Said(), std::string("New Payment: ") + one.told + "|");
    EXPECT_FALSE(refused->SaveCmd.enabled()) << one.loan;
    EXPECT_EQ(refused->DG.RowCount(), one.listed) << one.loan;
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

TEST_F(PaymentScreen, LateInterestIsPaidFirst) {
  struct Case {
    const char* charged;
    const char* paid;
    const char* total;
    const char* split;
  };
  for (const Case& one : std::initializer_list<Case>{
           {"0", "0", "112", "112 112.00 0.00 0 1,232.00"},
           {"40.5", "-10.5", "30", "0 0.00 0.00 30 1,344.00"},        // just the charges
           {"40.5", "-10.5", "30.01", "0.01 0.01 0.00 30 1,343.99"},  // and a sen
           {"40.5", "-10.5", "12.34", "0 0.00 0.00 12.34 1,344.00"},
           {"10", "-15", "100", "105 105.00 0.00 -5 1,239.00"},  // over-paid before
           {"1500", "0", "2,000.00", "500 500.00 0.00 1500 844.00"},
           {"0", "0", "", "0 0.00 0.00 0 1,344.00"},
       }) {
    office.Run(
        fmt::format("UPDATE LoanMast SET TotCollectorAmt={},TotInt={}", one.charged, one.paid));
    auto screen = New();
    Put(screen->TotPay, one.total);
    EXPECT_EQ(Split(*screen), one.split) << one.total << " of " << one.charged;
    EXPECT_EQ(screen->TotPay.text(), *one.total == '\0' ? "0" : one.total);
  }
  // A split that was changed by hand is not undone by passing the total.
  office.Run("UPDATE LoanMast SET TotCollectorAmt=30");
  auto screen = New();
  Put(screen->TotPay, "130");
  Put(screen->IntAmt, "0");
  Put(screen->PayAmt, "130");
  Put(screen->TotPay, screen->TotPay.text());
  EXPECT_EQ(Split(*screen), "130 130.00 0.00 0 1,214.00");
  Put(screen->TotPay, "131");
  EXPECT_EQ(Split(*screen), "101 101.00 0.00 30 1,243.00");
}

TEST_F(PaymentScreen, WhatWasTypedBeforeTheLoanIsLookedAtWithIt) {
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',1,'C1',112,'MBB','HQ0001-001-009');"
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',2,'C2',200,'RHB','')");
  struct Case {
    const char* total;
    const char* cheque;
    const char* split;  // with the loan, and the total typed again
    const char* told;
  };
  for (const Case& one : std::initializer_list<Case>{
           {"100", "", "100 100.00 0.00 0 1,244.00", ""},
           {"", "C2", "200.00 200.00 0.00 0.00 1,144.00", ""},
           {"", "C1", "0.00 0.00 0.00 0.00 1,344.00", "New Payment: Cheque, Cannot be reuse|"}}) {
    auto screen = Open("New Payment");
    Put(screen->PayDate, "30-12-2023");  // before the loan was made
    Put(screen->ReceiptNo, "BOOK 7");
    if (*one.total != '\0') Put(screen->TotPay, one.total);
    Put(screen->ChqNo, one.cheque);
    Put(screen->LoanID, kPersonal);
    EXPECT_EQ(Said(),
              std::string(one.told) + "New Payment: Payment date cannot eariler than loan date|");
    if (*one.total != '\0') Put(screen->TotPay, one.total);
    EXPECT_EQ(Split(*screen), one.split) << one.total << one.cheque;
    EXPECT_EQ(screen->ReceiptNo.text(), "BOOK 7");
    Put(screen->PayAmt, "1");
    Save(*screen);
    EXPECT_EQ(LastMessage(), "New Payment: Payment date cannot eariler than loan date");
  }
}

TEST_F(PaymentScreen, AChequeBringsItsAmountUnlessItIsTaken) {
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',1,'C1',112,'MBB','HQ0001-001-001');"
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,ChqBank,PayID) VALUES "
      "('HQ0001-001',2,'C2',200,'RHB','')");
  auto screen = New();
  PaymentFrm& s = *screen;
  EXPECT_EQ(s.ChqNo.items(), std::vector<std::string>{"C2"});
  Put(s.ChqNo, "C1");
  EXPECT_EQ(LastMessage(), "New Payment: Cheque, Cannot be reuse");
  EXPECT_EQ(s.ChqNo.text(), "");
  Put(s.IntAmt, "3");
  Put(s.ChqNo, "C2");
  EXPECT_EQ(Split(s), "200.00 200.00 0.00 3 1,144.00");
  EXPECT_EQ(s.Bank.text() + s.CollectInfoID.text() + s.TotPay.text(), "RHBCHEQUE203.00");
  // The amount may still be changed, and the cheque be passed by.
  Put(s.PayAmt, "150");
  Put(s.ChqNo, "C2");
  EXPECT_EQ(s.PayAmt.text(), "150");
  // Taken by another desktop meanwhile: the save sees it although the box was not left.
  Put(s.PayDate, "31-01-2024");
  s.ChqNo.SetText("C1");
  Save(s);
  EXPECT_EQ(Said(), "New Payment: Cheque, Cannot be reuse|");
  // A cheque of which the office knows nothing is no fault.
  Put(s.ChqNo, "777");
  Save(s);
  EXPECT_EQ(Lines("SELECT ChqNo,CollectInfoID FROM PaymentMast"), "777 CHEQUE\n");
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
  EXPECT_EQ(main().Query(counter.selection).RowCount(), 2u);
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

TEST_F(PaymentScreen, ASettlementQuotationIsHandedOver) {
  struct Case {
    SettlementQuote quote;
    const char* loan;
    const char* split;
    const char* discount;
  };
  const Case cases[] = {{{"0", "31-01-2024", "1,212.00", "1,344.00", "132.00", "7.50", "0"},
                         "HQ0001-001",
                         "1,344.00 1,344.00 0.00 7.50 0.00",
                         "132.00"},
                        {{"1", "31-01-2024", "1,212.00", "112.00", "1,100.00", "7.50", "0"},
                         "HQ0001-002",
                         "1,212.00 112.00 1,100.00 7.50",
                         "0"}};
  Late("L2", "2024-02-01", "0.48");
  for (const Case& one : cases) {
    office.session.HandOverQuote = one.quote;
    auto screen = New(one.loan);
    EXPECT_EQ(Split(*screen).substr(0, std::string(one.split).size()), one.split);
    EXPECT_EQ(screen->DiscAmt.text(), one.discount);
    EXPECT_EQ(screen->PayDate.text(), "31-01-2024");
    EXPECT_EQ(screen->ListCmd.visible(), one.loan == kPersonal);
    // What was handed over is lost only when the person agrees.
    counter.agrees = false;
    EXPECT_FALSE(screen->RequestClose());
    counter.agrees = true;
    // Passed by, the split stays.
    Put(screen->PayAmt, screen->PayAmt.text());
    EXPECT_EQ(Split(*screen).substr(0, std::string(one.split).size()), one.split);
    office.session.HandOverQuote = {};
    EXPECT_EQ(New(one.loan)->PayDate.text(), "");
  }
}

}  // namespace
}  // namespace kaunter
