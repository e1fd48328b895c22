// Settlement: the figures of a quotation, its way to the payment screen and to the letter, and the
// settlement of the main menu with what stays of it. The usual day stands in
// tests/play/settlement.play.
#include <gtest/gtest.h>

#include "collections/loan_settlement_frm.h"
#include "collections/settlement_frm.h"
#include "collections/settlement_quote.h"
#include "loans/rebuild.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const std::string kId = "HQ0001-001";

class SettlementTest : public ::testing::Test, protected LoanOffice {
 protected:
  SettlementTest() { counter.can_show = "*"; }

  // A loan whose schedule is given row by row, so that sums are done in the head.
  void MakeSmallLoan(const std::string& scheme, const std::string& balance) {
    office.Run(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,DragLoan,InsRate,LoanTerm,LoanBal,"
        "TotCollectorAmt,TotInt,NextDueDate,LoanGroupID,LoanAmt,InstallmentAmt2) VALUES "
        "('{}','HQ0001','HQ','ACTIVE','{}',12,'3',{},0,0,'2024-01-31','PINJAMAN SEMASA',300,104)",
        kId, scheme, balance));
    const std::tuple<int, const char*, const char*, const char*> rows[] = {
        {1, "2024-01-31", "10.05", "99.95"},
        {2, "2024-02-29", "6.03", "100"},
        {3, "2024-03-31", "3", "100.05"}};
    for (const auto& [id, due, interest, capital] : rows) {
      office.Run(fmt::format(
          "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
          "VALUES ({},'{}','HQ0001','{}',{}+{},{},{})",
          id, kId, due, capital, interest, capital, interest));
    }
  }
  void Owe(const std::string& charged, const std::string& paid) {
    office.Run(fmt::format("UPDATE LoanMast SET TotCollectorAmt={},TotInt={}", charged, paid));
  }

  template <typename Screen>
  std::unique_ptr<Screen> Open(const std::string& loan = "") {
    office.session.HandOverLoanID = loan;
    auto screen = std::make_unique<Screen>(office.session, counter);
    screen->Load();
    office.session.HandOverLoanID.clear();
    return screen;
  }
  static std::string Figures(const Settlementfrm& screen, int column) {
    const auto& one = screen.columns[static_cast<std::size_t>(column)];
    return fmt::format("{} | {} {} {} {}", one.SettledDate.text(), one.NPayment.text(),
                       one.EPayment.text(), one.OPayment.text(), one.SettledAmt.text());
  }
  std::string LastMessage() { return counter.messages.empty() ? "" : counter.messages.back(); }

  std::unique_ptr<LoanSettlementfrm> Filled(const std::string& payment = "250",
                                            const std::string& forfeit = "7.50") {
    auto screen = Open<LoanSettlementfrm>();
    Put(screen->LoanID, kId);
    Put(screen->PayDate, "10-02-2024");
    Put(screen->IntAmt, forfeit);
    Put(screen->Payment, payment);
    return screen;
  }
  std::unique_ptr<LoanSettlementfrm> Loaded(const std::string& number = "002") {
    auto screen = Open<LoanSettlementfrm>();
    Put(screen->PayID, kId + "-" + number);
    return screen;
  }
  static std::function<void()> Clicking(Screen& screen, Button& button) {
    return [&] { screen.Guard([&] { button.Click(); }); };
  }

  AgreeingDesk counter;
};

// --- the figures

TEST_F(SettlementTest, APersonalLoanForgivesTheInterestOfTheRowsDueAfterTheDate) {
  // Of the first row's interest 4.05 are paid; 319.08 - 4.05 = 315.03 are owed.
  MakeSmallLoan("0", "315.03");
  office.Run("UPDATE SchMast SET Payment=4.05,InterestPayment=4.05 WHERE SchID=1");
  for (const auto& [date, charged, late_paid, npayment, epayment, opayment, settled] :
       TextRows<7>{// 6.00 + 6.03 + 3 lie ahead.
                   {"30-01-2024", "0", "0", "315.03", "15.03", "0", "300"},
                   // A row that falls due on the date is no row ahead.
                   {"31-01-2024", "0", "0", "315.03", "9.03", "0", "306"},
                   {"01-03-2024", "20", "-5.5", "315.03", "11.5", "14.5", "326.53"},
                   // After the last row nothing is forgiven: the discount is the other charges.
                   {"01-04-2024", "20", "-5.5", "315.03", "14.5", "14.5", "329.53"},
                   // Too much late interest was paid: the customer gets it back here.
                   {"30-01-2024", "0", "-12.5", "315.03", "27.53", "-12.5", "287.5"}}) {
    const OwedLoan loan = {kId, true, Money::FromText("315.03"),
                           Money::FromText(charged) + Money::FromText(late_paid)};
    const QuoteColumn column = QuoteOn(main(), loan, date);
    EXPECT_EQ(column.NPayment.ToText(), npayment) << date;
    EXPECT_EQ(column.EPayment.ToText(), epayment) << date;
    EXPECT_EQ(column.OPayment.ToText(), opayment) << date;
    EXPECT_EQ(column.SettledAmt.ToText(), settled) << date;
  }
}

TEST_F(SettlementTest, AFlexiLoanPaysTheInterestDueAndAllOfItsCapital) {
  MakeSmallLoan("1", "280.05");
  office.Run(
      "UPDATE SchMast SET Payment=30,InterestPayment=10.05,CapitalPayment=19.95 WHERE SchID=1");
  for (const auto& [date, other, npayment, epayment, settled] :
       TextRows<5>{{"30-01-2024", "0", "0", "280.05", "280.05"},  // no row is due by then
                   {"31-01-2024", "0", "80", "200.05", "280.05"},
                   {"29-02-2024", "14.5", "186.03", "100.05", "300.58"},
                   {"01-04-2024", "0", "289.08", "0", "289.08"},
                   {"31-01-2024", "-12.5", "80", "200.05", "267.55"}}) {
    const OwedLoan loan = {kId, false, Money::FromText("280.05"), Money::FromText(other)};
    const QuoteColumn column = QuoteOn(main(), loan, date);
    EXPECT_EQ(column.NPayment.ToText(), npayment) << date;
    EXPECT_EQ(column.EPayment.ToText(), epayment) << date;
    EXPECT_EQ(column.OPayment.ToText(), other) << date;
    EXPECT_EQ(column.SettledAmt.ToText(), settled) << date;
  }
}

// --- the quotation screen

TEST_F(SettlementTest, TheLaterDatesFollowByMonthsAndAreClampedToTheMonth) {
  MakeSmallLoan("0", "319.08");
  auto screen = Open<Settlementfrm>(kId);
  EXPECT_EQ(screen->columns[0].EPayment.caption().english, "Settlement Disc");
  Put(screen->columns[0].SettledDate, "31-01-2024");
  EXPECT_EQ(Figures(*screen, 0), "31-01-2024 | 319.08 9.03 0.00 310.05");
  EXPECT_EQ(Figures(*screen, 1), "29-02-2024 | 319.08 3.00 0.00 316.08");
  EXPECT_EQ(Figures(*screen, 2), "31-03-2024 | 319.08 0.00 0.00 319.08");
  // A date that stands is not moved.
  Put(screen->columns[0].SettledDate, "15-02-2024");
  EXPECT_EQ(Figures(*screen, 1), "29-02-2024 | 319.08 3.00 0.00 316.08");
}

TEST_F(SettlementTest, ADateThatIsRefusedHasNoFigures) {
  MakeSmallLoan("0", "319.08");
  for (const auto& [at, date, told] :
       std::initializer_list<std::tuple<int, const char*, const char*>>{
           {0, "30-02-2024", "Settlement: Invalid Redemption Date"},
           {1, "soon", "Settlement: Invalid Redemption Date"},
           {0, "30-01-2024", "Settlement: Redemption date cannot less than Next Due Date"},
           {2, "30-01-2024", "Settlement: Redemption date cannot less than Next Due Date"},
           {1, "", ""}}) {
    auto screen = Open<Settlementfrm>(kId);
    Put(screen->columns[0].SettledDate, "31-01-2024");
    counter.messages.clear();
    auto& column = screen->columns[static_cast<std::size_t>(at)];
    Put(column.SettledDate, date);
    EXPECT_EQ(LastMessage(), told);
    EXPECT_EQ(Figures(*screen, at), std::string(date) + " |    ");
    EXPECT_EQ(Figures(*screen, at == 0 ? 1 : 0).empty(), false);
    if (at != 0) continue;
    // And is not settled on.
    screen->Command4.Click();
    EXPECT_EQ(LastMessage(), "Settlement: Settlement Amount is required");
    EXPECT_TRUE(counter.shown.empty());
  }
}

TEST_F(SettlementTest, TheQuotationGoesToThePaymentScreenAndIsGoneAfterwards) {
  for (const bool personal : {true, false}) {
    office.Run("DELETE FROM LoanMast; DELETE FROM SchMast");
    MakeSmallLoan(personal ? "0" : "1", personal ? "319.08" : "300");
    Owe("1020", "-5.5");
    auto screen = Open<Settlementfrm>(kId);
    screen->Command4.Click();
    EXPECT_EQ(LastMessage(), "Settlement: Settlement date is required");
    Put(screen->columns[0].SettledDate, "31-01-2024");
    counter.agrees = false;
    screen->Command4.Click();
    EXPECT_EQ(counter.questions.back(), "Confirm to settlement ?");
    EXPECT_TRUE(counter.shown.empty());
    counter.agrees = true;
    std::string handed;
    counter.on_show = [&] {
      const SettlementQuote& quote = office.session.HandOverQuote;
      handed = fmt::format("{} {} | {} {} | {} {} {} {} {} {}", office.session.CallerTag,
                           office.session.HandOverLoanID, quote.DragLoan, quote.SettledDate,
                           quote.PayAmt, quote.NPayment, quote.EPayment, quote.OPayment,
                           quote.ChargeAmt, counter.shown.back());
      office.Run("UPDATE LoanMast SET LoanBal=1");  // paid there
      office.session.MsgTitle = "New Payment";
    };
    screen->Command4.Click();
    // Personal: 319.08 + 1,014.50 - 9.03 = 1,324.55. Flexi: 300 + 1,014.50 + 10.05 = 1,324.55.
    EXPECT_EQ(handed, personal ? "New Payment HQ0001-001 | 0 31-01-2024 | 310.05 319.08 1,005.47 "
                                 "1,014.50 0 PaymentFrm"
                               : "New Payment HQ0001-001 | 1 31-01-2024 | 310.05 110.00 200.05 "
                                 "1,014.50 0 PaymentFrm");
    EXPECT_EQ(office.session.HandOverQuote.DragLoan + office.session.HandOverQuote.PayAmt +
                  office.session.HandOverLoanID + office.session.CallerTag +
                  office.session.MsgTitle,
              "");
    EXPECT_EQ(screen->LoanBal.text(), "1.00");
    counter.on_show = nullptr;
    counter.shown.clear();
  }
}

TEST_F(SettlementTest, TheLetterTakesTheThreeDates) {
  MakeSmallLoan("0", "319.08");
  auto screen = Open<Settlementfrm>();
  screen->CmdPrint.Click();
  EXPECT_EQ(LastMessage(), "Settlement: Loan ID is required");
  Put(screen->LoanID, kId);
  Put(screen->columns[0].SettledDate, "31-01-2024");
  Put(screen->columns[2].SettledDate, "30-01-2024");  // before the due date: refused, not quoted
  screen->CmdPrint.Click();
  EXPECT_EQ(counter.questions.back(), "Confirm to print settlement letter ?");
  ASSERT_EQ(counter.printed.size(), 1u);
  const ReportJob& job = counter.printed[0];
  EXPECT_TRUE(job.ReportFileName.ends_with("/SettlementLetter.rpt"));
  EXPECT_EQ(job.SelectionFormula, "{LoanMast.LoanID}='HQ0001-001'");
  std::string fields;
  for (const auto& [number, text] : job.ParameterFields) {
    fields += fmt::format("{} {}\n", number, text);
  }
  EXPECT_EQ(fields,
            "0 RptID;N;True\n1 SettleAmt;310.05;True\n2 SettleDate;31-01-2024;True\n"
            "3 SettleAmt2;316.08;True\n4 SettleDate2;29-02-2024;True\n5 SettleAmt3;;True\n"
            "6 SettleDate3;;True\n");
}

TEST_F(SettlementTest, ALoanThatIsReadHalfIsNotShown) {
  MakeSmallLoan("0", "319.08");
  for (int at = 1; at <= 3; ++at) {
    auto screen = Open<Settlementfrm>();
    screen->columns[0].SettledDate.SetText("31-01-2024");
    ASSERT_TRUE(FailAt(at, [&] { Put(screen->LoanID, kId); })) << at;
    EXPECT_EQ(LastMessage(), "Settlement: An error occur during reading the record" + kReadAgain);
    EXPECT_EQ(screen->LoanID.text() + screen->CustName.text(), kId);
    EXPECT_EQ(Figures(*screen, 0), "31-01-2024 |    ");
    Put(screen->LoanID, kId);
    EXPECT_EQ(Figures(*screen, 0), "31-01-2024 | 319.08 9.03 0.00 310.05");
  }
}

TEST_F(SettlementTest, AnotherCompanysLoanIsNotShown) {
  MakeSmallLoan("0", "319.08");
  office.Run("UPDATE LoanMast SET CompCode='AB'");
  office.session.CurrentLevel = 3;
  auto quote = Open<Settlementfrm>();
  Put(quote->LoanID, kId);
  EXPECT_EQ(LastMessage(), "Settlement: Loan ID HQ0001-001 not found");
  EXPECT_EQ(quote->CustName.text(), "");
  auto screen = Open<LoanSettlementfrm>();
  Put(screen->LoanID, kId);
  EXPECT_EQ(LastMessage(), "Loan Settlement: Laon ID HQ0001-001 belong to company AB");
  EXPECT_EQ(screen->LoanBal.text(), "");
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,Settlement) VALUES "
      "('HQ0001-001-002','HQ0001-001','HQ0001','AB','1')");
  EXPECT_EQ(Loaded()->Command4.enabled(), false);
  EXPECT_EQ(LastMessage(), "Loan Settlement: Settlement ID HQ0001-001-002 belong to company AB");
}

// --- the settlement of the main menu

class LoanSettlementTest : public SettlementTest {
 protected:
  LoanSettlementTest() {
    // 10,000 over ten months at 12 %: a thousand and a hundred each; the second is paid in part.
    MakeLoan(kId, LoanScheme::kPersonal, "10000", "10");
    Pay(kId + "-001", kId, "2024-01-31", "1600");
    office.Run("UPDATE NumberMast SET LoanNo='002' WHERE CustID='HQ0001-001'");
    EXPECT_TRUE(RebuildLoan(main(), kId).done);
    EXPECT_TRUE(RebuildCustomer(main(), "HQ0001").done);
    office.Run("UPDATE LoanMast SET PayOutAmt=10000");
  }
  std::string OfLoan() {
    return Lines(
               "SELECT LoanBal,TotPay,TotInt,TotDiscAmt,TotCollectorAmt,LastPaymentNo,"
               "LastPaymentDate,NextDueDate FROM LoanMast") +
           Lines("SELECT TotLoanBal FROM CustMast");
  }
};

TEST_F(LoanSettlementTest, WhatIsTypedIsChecked) {
  auto screen = Open<LoanSettlementfrm>();
  screen->PayDate.SetText("10-02-2024");
  screen->Payment.SetText("1");
  screen->Command1.Click();
  EXPECT_EQ(LastMessage(), "Loan Settlement: Loan ID is required");
  Put(screen->LoanID, kId);
  EXPECT_EQ(screen->LoanBal.text(), "9,400.00");
  struct Case {
    const char* date;
    const char* payment;
    const char* forfeit;
    const char* told;
    const char* meanwhile = "";
  };
  for (const Case& one : std::initializer_list<Case>{
           {"", "", "", "Date is require"},
           {"31-02-2024", "", "", "Invalid Date"},
           {"10-02-2024", "", "x", "Payment is require"},
           {"10-02-2024", "0.004", "", "Payment is require"},
           {"10-02-2024", "plenty", "", "Invalid Amount"},
           {"10-02-2024", "-1", "", "Invalid Amount"},
           {"10-02-2024", "9400.01", "x", "Payment Amount cannot more than Loan Balance"},
           {"04-01-2024", "9400", "1'; DROP TABLE x", "Invalid Amount"},
           {"04-01-2024", "9400", "", "Payment date cannot eariler than loan date"},
           {"04-01-2024", "9400", "", "Loan not fully drawdown cannot make payment",
            "UPDATE LoanMast SET PayOutAmt=0"},
           {"04-01-2024", "9400", "", "No payment for CLOSED loan",
            "UPDATE LoanMast SET LoanStatus='CLOSED'"}}) {
    office.Run(one.meanwhile);
    screen->PayDate.SetText(one.date);
    screen->Payment.SetText(one.payment);
    screen->IntAmt.SetText(one.forfeit);
    screen->Command1.Click();
    EXPECT_EQ(LastMessage(), "Loan Settlement: " + std::string(one.told));
    EXPECT_EQ(screen->Payment.text(), one.payment);
  }
  Put(screen->IntAmt, "7.5");
  Put(screen->Payment, "9000");
  EXPECT_EQ(screen->Payment.text() + " " + screen->IntAmt.text() + " " + screen->DiscAmt.text(),
            "9,000.00 7.50 400.00");
  Put(screen->Payment, "");
  EXPECT_EQ(screen->DiscAmt.text(), "0.00");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "1");
}

TEST_F(LoanSettlementTest, ItIsWrittenInOneGoAndMostlyUndoneByItsRebuild) {
  const std::string rows =
      "SELECT SchID,Payment,IntChargeAmt,IntAmt,LoanBal FROM SchMast WHERE "
      "SchID in (1,2,3,10) ORDER BY SchID";
  const std::string before = OfLoan();
  EXPECT_EQ(before, "9400 1600 0 0 0 HQ0001-001-001 2024-01-31 2024-02-29\n9400\n");
  // The rebuild does not come: what the transaction itself wrote.
  auto screen = Filled("9000");
  office.session.Main().SetFaultHook([this](std::string_view sql) {
    if (sql.starts_with("SELECT DragLoan")) throw SqlError(1105, "the disk is full");
    if (sql.starts_with("SELECT SUM(LoanAmt)")) throw SqlError(1105, "the disk is full");
  });
  screen->Command1.Click();
  main().SetFaultHook({});
  EXPECT_EQ(counter.questions.back(), "Confirm to Settle Loan Amount HQ0001-001 ?");
  EXPECT_EQ(LastMessage(), "Loan Settlement: Loan HQ0001-001 settled");
  EXPECT_EQ(OfLoan(), "0 11000 7.5 400 0 HQ0001-001-002 2024-02-10 2024-02-29\n0\n");
  EXPECT_EQ(Lines(rows),
            "1 1100 0 0 9900\n2 1100 7.5 7.5 9400\n3 1100 0 0 9400\n10 1100 0 0 9400\n");
  EXPECT_EQ(
      Lines("SELECT SchID,PayDate,CollectInfoID,PayAmt,IntAmt,ChargeAmt,DiscAmt,Bank,"
            "SalesmanID,LastDueDate,NextDueDate,PaymentStatus,PayableAmt,IntChargeAmt,DragInt,"
            "OldLoanBal,NewLoanBal,Settlement,CompCode,InstalAmt,UserID,ReceiptNo FROM "
            "PaymentMast WHERE PayID='HQ0001-001-002'"),
      "2 2024-02-10 CASH 9400 7.5 0 400 CASH NIL 2024-02-29 2024-02-29 ACTIVE 1100 0 600 9400 "
      "0 1 HQ 0 AMY \n");
  EXPECT_TRUE(office.Log().back().ends_with("Loan Settlement Loan ID HQ0001-001 Settled"));

  // With it: no instalment was paid, so the schedule and the balance are back; the rebate stays,
  // and the deposit that was kept counts as late interest received.
  EXPECT_TRUE(RebuildLoan(main(), kId).done);
  EXPECT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  EXPECT_EQ(OfLoan(), "9400 1600 -7.5 400 0 HQ0001-001-002 2024-02-10 2024-02-29\n9400\n");
  EXPECT_EQ(Lines(rows), "1 1100 0 0 9900\n2 500 7.5 7.5 9400\n3 0 0 0 9400\n10 0 0 0 9400\n");
}

TEST_F(LoanSettlementTest, DeletingItBringsBackWhatWas) {
  const std::string before = Stored();
  Filled("9000")->Command1.Click();
  EXPECT_EQ(LastMessage(), "Loan Settlement: Loan HQ0001-001 settled");
  auto screen = Loaded();
  EXPECT_EQ(screen->Payment.text() + " " + screen->DiscAmt.text() + " " + screen->LoanBal.text() +
                " " + screen->IntAmt.text() + " " + screen->PayDate.text(),
            "9,000.00 400.00 9,400.00 7.50 10-02-2024");
  EXPECT_FALSE(screen->Command1.enabled());
  EXPECT_EQ(screen->DG.RowCount(), 2);
  screen->Command4.Click();
  EXPECT_EQ(counter.questions.back(), "Confirm to delete Settlement HQ0001-001-002 ?");
  EXPECT_EQ(LastMessage(), "Loan Settlement: Settlement payment deleted");
  EXPECT_EQ(Stored(), before);
  EXPECT_TRUE(
      office.Log().back().ends_with("Loan Settlement Settlement ID HQ0001-001-002 deleted"));
  // A payment that is none of this screen's cannot be taken back here.
  Put(screen->PayID, kId + "-001");
  EXPECT_EQ(LastMessage(), "Loan Settlement: Settlement ID HQ0001-001-001 not found");
  EXPECT_FALSE(screen->Command4.enabled());
}

// A top-up keeps a balance beside rows that are all paid: nothing of the schedule is settled.
TEST_F(LoanSettlementTest, WithoutAnOpenRowTheScheduleAndItsDateStay) {
  Pay(kId + "-002", kId, "2024-03-01", "9400");
  office.Run(
      "UPDATE PaymentMast SET TopAmt=250,TopTerm=2 WHERE PayID='HQ0001-001-002';"
      "UPDATE NumberMast SET LoanNo='003' WHERE CustID='HQ0001-001'");
  ASSERT_TRUE(RebuildLoan(main(), kId).done);
  ASSERT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  EXPECT_EQ(OfLoan(), "500 11000 0 0 0 HQ0001-001-002 2024-03-01 2024-02-29\n500\n");
  const std::string before = Stored();
  const std::string first_row = "SELECT IntChargeAmt,IntAmt FROM SchMast WHERE SchID=1";
  Filled("400")->Command1.Click();
  EXPECT_EQ(OfLoan(), "500 11000 -7.5 100 0 HQ0001-001-003 2024-02-10 2024-02-29\n500\n");
  EXPECT_EQ(Lines("SELECT SchID,LastDueDate,NextDueDate,PayableAmt FROM PaymentMast WHERE "
                  "Settlement='1'"),
            "1  2024-02-29 0\n");
  EXPECT_EQ(Lines(first_row), "0 0\n");
  Loaded("003")->Command4.Click();
  EXPECT_EQ(LastMessage(), "Loan Settlement: Settlement payment deleted");
  EXPECT_EQ(Lines(first_row), "0 0\n");
  EXPECT_EQ(Stored(), before);
}

// The counter at 0 stays there, and a payment made since keeps its number.
TEST_F(LoanSettlementTest, ALoweredCounterNeverMeetsAPaymentThatIsThere) {
  Filled()->Command1.Click();
  Pay(kId + "-003", kId, "2024-02-12", "10");
  office.Run("UPDATE NumberMast SET LoanNo='000' WHERE CustID='HQ0001-001'");
  Loaded()->Command4.Click();
  EXPECT_EQ(Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='HQ0001-001'"), "000");
  EXPECT_EQ(Scalar("SELECT LastPaymentNo FROM LoanMast"), "HQ0001-001-003");
  Filled()->Command1.Click();
  Filled()->Command1.Click();
  EXPECT_EQ(Lines("SELECT PayID FROM PaymentMast WHERE Settlement='1' ORDER BY PayID"),
            "HQ0001-001-002\nHQ0001-001-004\n");
}

TEST_F(LoanSettlementTest, EachStatementThatFailsLeavesNoTrace) {
  auto screen = Filled("9000");
  // Nine open rows, a read and a write each, and eleven more.
  EXPECT_GE(FailEverywhere(Clicking(*screen, screen->Command1)), 29);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "2");
  auto loaded = Loaded();
  EXPECT_GE(FailEverywhere(Clicking(*loaded, loaded->Command4)), 28);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "1");

  screen = Filled("9000");
  FailAt(3, Clicking(*screen, screen->Command1));
  EXPECT_EQ(LastMessage(),
            "Loan Settlement: An error occur during saving record - the disk is full\n"
            "Nothing of it was kept. Mend the cause and do it again.");
  EXPECT_EQ(screen->Payment.text(), "9,000.00");
  screen->Command1.Click();
  loaded = Loaded();
  loaded->SetChinese(office.session.ChineseFlag = true);
  FailAt(2, Clicking(*loaded, loaded->Command4));
  EXPECT_TRUE(LastMessage().ends_with(
      "删除资料时发生错误 - the disk is full\n此次的更改全未保留。请排除原因后再做一次。"));
  office.session.ChineseFlag = false;
  FailAt(1, [&] { Put(screen->LoanID, kId); });
  EXPECT_EQ(LastMessage(),
            "Loan Settlement: An error occur during reading the record" + kReadAgain);
  EXPECT_EQ(screen->LoanID.text() + screen->CustName.text(), kId);
}

TEST_F(LoanSettlementTest, AnotherDesktopPaidOrDeletedMeanwhile) {
  auto screen = Filled("9000");
  // Stored there, and not replayed yet.
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,PayDate,PayAmt,InstalAmt) VALUES "
      "('HQ0001-001-009','HQ0001-001','2024-02-09',10,10)");
  screen->Command1.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Settlement: An error occur during saving record - The balance of HQ0001-001 is "
            "9,390.00 now, please load the loan again");
  office.Run("DELETE FROM PaymentMast WHERE PayID='HQ0001-001-009';UPDATE SchMast SET LoanID='-'");
  screen->Command1.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Settlement: An error occur during saving record - Loan HQ0001-001 has no "
            "schedule: delete its drawdown and save the loan again first");
  office.Run("UPDATE SchMast SET LoanID='HQ0001-001'");
  screen->Command1.Click();
  auto loaded = Loaded();
  office.Run("DELETE FROM PaymentMast WHERE Settlement='1'");
  loaded->Command4.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Settlement: An error occur during deleting record - HQ0001-001-002 not found");
}

}  // namespace
}  // namespace kaunter
