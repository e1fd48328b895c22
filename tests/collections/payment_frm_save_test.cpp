// What a save and a delete at the counter write, what they leave when a statement fails, and what
// follows them: waived charges, the accounting link, papers.
#include <filesystem>
#include <fstream>

#include "collections/ledger_check.h"
#include "tests/collections/payment_counter.h"

namespace kaunter {
namespace {

class PaymentSave : public PaymentCounter {
 protected:
  std::function<void()> Click(PaymentFrm& screen) {
    return [&] { screen.Guard([&] { screen.SaveCmd.Click(); }); };
  }
  std::string Log() {
    std::string text;
    for (const auto& file : std::filesystem::directory_iterator(office.session.AppPath + "/logs")) {
      std::ifstream in(file.path());
      text.append(std::istreambuf_iterator<char>(in), {});
    }
    return text;
  }
  // A new payment of 150 with 5 late interest, as much as is owed, and 2 discount, ready to be
  // saved.
  std::unique_ptr<PaymentFrm> Typed() {
    office.Run("UPDATE LoanMast SET TotCollectorAmt=5-TotInt WHERE LoanID='HQ0001-001'");
    auto screen = New();
    Put(screen->PayDate, "31-01-2024");
    Put(screen->PayAmt, "150");
    Put(screen->IntAmt, "5");
    Put(screen->DiscAmt, "2");
    return screen;
  }
};

// What is written of the payments themselves: counter_property_test.cpp.
TEST_F(PaymentSave, EachSaveIsToldLoggedAndDoneOnce) {
  office.OpenAudit();
  auto screen = Typed();
  Save(*screen);
  EXPECT_EQ(Said(), "?Confirm to save ?|New Payment: Payment ID HQ0001-001-001 Saved|");
  EXPECT_TRUE(std::exchange(office.session.PaymentsChanged, false));
  EXPECT_EQ(screen->DG.RowCount(), 1);
  EXPECT_EQ(screen->focus(), &screen->CmdPrint);
  // A second press stores nothing: the screen shows what was stored.
  EXPECT_FALSE(screen->SaveCmd.enabled());
  Save(*screen);
  EXPECT_EQ(Said(), "");

  auto edit = Open("Edit Payment", {}, "HQ0001-001-001");
  EXPECT_EQ(edit->OldLoanBal.text() + "|" + edit->NewLoanBal.text() + "|" + edit->TotPay.text(),
            "1,344.00|1,194.00|155.00");
  Put(edit->PayAmt, "112");
  Save(*edit);
  EXPECT_EQ(
      Said(),
      "?confirm to Save Loan ID HQ0001-001-001 ?|Edit Payment: Loan ID HQ0001-001-001 Saved|");

  office.session.PaymentsChanged = false;
  auto gone = Open("Delete Payment", {}, "HQ0001-001-001");
  EXPECT_TRUE(gone->PayAmt.locked());
  Save(*gone);
  EXPECT_EQ(Said(),
            "?Confirm to delete Loan ID HQ0001-001-001 ?|Delete Payment: Loan ID HQ0001-001-001 "
            "Deleted|");
  EXPECT_TRUE(office.session.PaymentsChanged);
  EXPECT_EQ(gone->LoanID.text() + gone->PayID.text(), "");
  for (const char* line : {"New Payment - Collection ID HQ0001-001-001 Saved",
                           "Edit Payment - Collection ID HQ0001-001-001 Saved",
                           "Delete Payment - Collection ID HQ0001-001-001 Deleted"}) {
    EXPECT_NE(Log().find(line), std::string::npos) << line;
  }
  // The audit compares with what was loaded.
  EXPECT_NE(
      ScalarQuery(*office.session.LogsConn, "SELECT Remarks FROM TransLogs WHERE Type='Modify'")
          .find("150.00/112.00"),
      std::string::npos);
  EXPECT_EQ(ScalarQuery(*office.session.LogsConn, "SELECT COUNT(*) FROM TransLogs"), "3");
}

TEST_F(PaymentSave, AFailureIsToldOnceAndTheScreenKeepsWhatWasTyped) {
  Late("L2", "2024-02-20", "0.50");
  auto screen = Typed();
  const std::string before = Stored();
  int at = 1;
  for (; at < 500; ++at) {
    counter.messages.clear();
    const bool reached = FailAt(at, Click(*screen));
    if (!reached || committed) break;
    ASSERT_EQ(Stored(), before) << at;
    ASSERT_FALSE(main().InTransaction()) << at;
    ASSERT_EQ(counter.messages.size(), 1u) << at << " " << Said();
    ASSERT_EQ(screen->PayAmt.text() + screen->IntAmt.text() + screen->PayDate.text() +
                  screen->PayID.text() + screen->ReceiptNo.text(),
              "150531-01-2024")
        << at;
    ASSERT_TRUE(screen->SaveCmd.enabled()) << at;
  }
  EXPECT_GT(at, 10);
  EXPECT_EQ(counter.messages.size(), 2u) << Said();  // the first statement behind the commit failed
  EXPECT_EQ(Payments(), "HQ0001-001-001 150 150 0 5\n");
}

TEST_F(PaymentSave, AFailureBehindTheCommitLeavesOnePayment) {
  for (int behind = 1; behind < 200; ++behind) {
    office.Run(
        "DELETE FROM PaymentMast;DELETE FROM ChargeMast;DELETE FROM NumberMast WHERE CustID LIKE "
        "'HQ%';UPDATE SchMast SET Payment=0,CapitalPayment=0,InterestPayment=0,IntAmt=0;UPDATE "
        "LoanMast SET LoanBal=1344,TotPay=0,TotInt=0,TotCollectorAmt=0;UPDATE CustMast SET "
        "TotLoan=2400,TotTopUpAmt=10,TotLoanBal=2688");
    Late("L1", "2024-01-20", "5");
    Late("L2", "2024-02-20", "0.50");
    auto screen = Typed();
    counter.messages.clear();
    int count = 0;
    bool stored = false;
    bool failed = false;
    main().SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with("ROLLBACK")) return;
      if (stored && ++count == behind) {
        failed = true;
        throw SqlError(1105, "the disk is full");
      }
      stored = stored || sql.starts_with("COMMIT");
    });
    Click (*screen)();
    Click (*screen)();  // the clerk presses again
    main().SetFaultHook({});
    ASSERT_EQ(Payments(), "HQ0001-001-001 150 150 0 5\n") << behind;
    ASSERT_FALSE(main().InTransaction()) << behind;
    ASSERT_FALSE(screen->SaveCmd.enabled()) << behind;
    // What did not come to its end is seen by the check of the ledger, the customer's sums too.
    const bool holds =
        CheckLoan(main(), kPersonal).empty() && CheckCustomer(main(), "HQ0001").empty();
    EXPECT_TRUE(holds || failed);
    if (holds) {
      EXPECT_EQ(Lines("SELECT LoanBal FROM LoanMast WHERE LoanID='HQ0001-001'") +
                    Lines("SELECT TotLoanBal FROM CustMast"),
                "1194\n2538\n")
          << behind;
    }
    if (!failed) return;
    // Told, and the save besides it.
    ASSERT_EQ(counter.messages.size(), 2u) << behind << " " << Said();
  }
  FAIL() << "no end of the statements";
}

TEST_F(PaymentSave, AFailedDeleteKeepsThePaymentAndItsSums) {
  const std::string id = Store("150");
  auto screen = Open("Delete Payment", {}, id);
  const std::string before = Stored();
  int at = 1;
  for (; at < 500; ++at) {
    counter.messages.clear();
    const bool reached = FailAt(at, Click(*screen));
    if (!reached || committed) {
      // The rebuild commits too: only a payment that is gone ends the loop.
      if (Payments().empty()) break;
    }
    ASSERT_EQ(Stored(), before) << at;
    ASSERT_FALSE(main().InTransaction()) << at;
    ASSERT_EQ(counter.messages.size(), 1u) << at << " " << Said();
    ASSERT_TRUE(LastMessage().starts_with(
        "Delete Payment: an error occurs during deleting payment\nthe disk is full"))
        << at << Said();
    ASSERT_EQ(screen->PayID.text(), id);
    ASSERT_TRUE(screen->SaveCmd.enabled());
  }
  EXPECT_GT(at, 10);
  EXPECT_NE(Log().find("Delete Payment - error Rollback 1105 - the disk is full"),
            std::string::npos);
}

TEST_F(PaymentSave, AReceiptNumberInUseStopsTheSave) {
  Store("10");
  auto screen = Typed();
  const std::string before = Stored();
  Put(screen->ReceiptNo, "202401-0001");
  Save(*screen);
  EXPECT_EQ(Said(), "?Confirm to save ?|New Payment: Same Receipt No detected - 202401-0001|");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->PayAmt.text() + screen->PayID.text(), "150");
  EXPECT_NE(Log().find("New Payment - error Rollback - Same Receipt No - 202401-0001"),
            std::string::npos);
  Put(screen->ReceiptNo, " ");  // the next one is drawn
  Save(*screen);
  EXPECT_EQ(screen->ReceiptNo.text(), "202401-0002");
}

TEST_F(PaymentSave, ATopUpTakenBackLeavesRowsThatExtraCapitalHasCutToNothing) {
  const std::string rows = Lines("SELECT LoanID,SchID,PayableAmt FROM SchMast ORDER BY 1,2");
  // Rows that extra capital has cut to nothing are the loan's own, and come back with their sums.
  auto topped = New(kFlexi);
  Put(topped->PayDate, "10-01-2024");
  Put(topped->TopAmt, "0.01");
  Put(topped->TopTerm, "1");
  Save(*topped);
  const std::string extra = [&] {
    auto screen = New(kFlexi);
    Put(screen->PayDate, "11-01-2024");
    Put(screen->PayAmt, "1200");
    Put(screen->PayExtra, "1200");
    Save(*screen);
    return screen->PayID.text();
  }();
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast WHERE LoanID='HQ0001-002' AND PayableAmt=0"),
            "12");
  Save(*Open("Delete Payment", {}, topped->PayID.text()));
  Save(*Open("Delete Payment", {}, extra));
  EXPECT_EQ(Lines("SELECT LoanID,SchID,PayableAmt FROM SchMast ORDER BY 1,2"), rows);
}

// Desktops that save at once come in turn, and the second may find the first's payment stored and
// not replayed yet.
TEST_F(PaymentSave, APaymentThatIsNotReplayedYetCounts) {
  for (const std::string& loan : {kPersonal, kFlexi}) {
    auto slow = New(loan);
    auto quick = New(loan);
    for (PaymentFrm* screen : {slow.get(), quick.get()}) {
      Put(screen->PayDate, "31-01-2024");
      Put(screen->TotPay, "1200");
    }
    int behind = 0;  // statements behind the commit of the quick one
    main().SetFaultHook([&](std::string_view sql) {
      if (behind > 0 || sql.starts_with("COMMIT")) ++behind;
      if (behind != 2) return;
      Save(*slow);
      EXPECT_EQ(LastMessage(),
                "New Payment: An error occurs during saving payment\n0 - Payment amount cannot "
                "more than loan balance amount");
    });
    Save(*quick);
    main().SetFaultHook({});
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast WHERE LoanID=" + QuoteStr(loan)), "1");
  }
}

// What happened on another desktop between load and save is told; nothing is stored, and what was
// typed stays.
TEST_F(PaymentSave, AnotherDesktopChangedLoanOrPaymentWhileTheQuestionStood) {
  const char* const kClosed = "UPDATE LoanMast SET LoanStatus='BAD DEBT' WHERE LoanID='HQ0001-001'";
  const char* const kChanged = "UPDATE PaymentMast SET PayAmt=80,ChqNo='C2'";
  const char* const kChangedTold =
      "Payment HQ0001-001-001 was changed meanwhile, Please load it again";
  for (const auto& [mode, meanwhile, told] :
       TextRows<3>{{"New Payment", kClosed, "0 - No payment for BAD DEBT loan"},
                   {"Edit Payment", kClosed, "0 - No payment for BAD DEBT loan"},
                   {"Delete Payment", kClosed, "No payment for BAD DEBT loan"},
                   {"New Payment", "UPDATE LoanMast SET LoanID='gone' WHERE LoanID='HQ0001-001'",
                    "0 - Loan ID HQ0001-001 not found"},
                   {"New Payment", "UPDATE SchMast SET LoanID='gone' WHERE LoanID='HQ0001-001'",
                    "0 - Loan HQ0001-001 has no schedule"},
                   {"Edit Payment", kChanged, kChangedTold},
                   {"Delete Payment", kChanged, kChangedTold},
                   {"Edit Payment", "DELETE FROM PaymentMast", "50000 - HQ0001-001-001 not found"},
                   {"Delete Payment", "DELETE FROM PaymentMast", "HQ0001-001-001 not found"}}) {
    office.Run(
        "DELETE FROM PaymentMast;DELETE FROM NumberMast WHERE CustID LIKE 'HQ%';UPDATE LoanMast "
        "SET LoanStatus='ACTIVE';UPDATE LoanMast SET LoanID='HQ0001-001' WHERE "
        "LoanID='gone';UPDATE SchMast SET LoanID='HQ0001-001' WHERE LoanID='gone'");
    const std::string id = Store("100");
    auto screen = Open(mode, kPersonal, id);
    if (screen->PayID.empty()) Put(screen->PayDate, "31-01-2024");
    if (!screen->PayAmt.locked()) Put(screen->PayAmt, "90");
    const std::string typed = screen->PayAmt.text();
    std::string payments;
    counter.on_ask = [&] {
      office.Run(meanwhile);
      payments = Payments();
    };
    Save(*screen);
    counter.on_ask = nullptr;
    EXPECT_NE(LastMessage().find(told), std::string::npos) << mode << meanwhile << Said();
    EXPECT_EQ(Payments(), payments) << mode << meanwhile;
    EXPECT_EQ(screen->PayAmt.text(), typed);
    EXPECT_TRUE(screen->SaveCmd.enabled());
    EXPECT_FALSE(main().InTransaction());
  }
}

// A payment taken meanwhile moves the balances on later rows, and is no change of theirs.
TEST_F(PaymentSave, AnotherPaymentOfTheLoanIsNoChangeOfThisOne) {
  const std::string id = Store("100", "31-01-2024");
  auto edit = Open("Edit Payment", {}, id);
  office.Run("UPDATE PaymentMast SET OldLoanBal=1300,NewLoanBal=1200,CapPay=1");
  Put(edit->Memo1, "kept");
  Save(*edit);
  EXPECT_EQ(LastMessage(), "Edit Payment: Loan ID " + id + " Saved");
}

TEST_F(PaymentSave, AnEditKeepsTheRefundThatStandsAndTheGroupThatTheClerkChose) {
  auto screen = Typed();
  Put(screen->ChargeAmt, "50");
  Save(*screen);
  office.Run("UPDATE LoanMast SET DepositAmt2=10");
  auto edit = Open("Edit Payment", {}, screen->PayID.text());
  std::string groups;
  for (const char* amount : {"1344", "150", "1344"}) {
    Put(edit->PayAmt, amount);
    groups += edit->LampiranStatus.text() + "|";
    if (groups.size() > 20) edit->LampiranStatus.SetText("OWN");
  }
  EXPECT_EQ(groups, "PINJAMAN SELESAI|PINJAMAN SEMASA|OWN|");
  Save(*edit);
  EXPECT_EQ(LastMessage(), "Edit Payment: Loan ID HQ0001-001-001 Saved");
}

TEST_F(PaymentSave, WhatIsNoPaymentToEditIsShownAndNotSaved) {
  const std::string id = Store("100");
  for (const auto& [change, told] :
       TextRows<2>{{"UPDATE PaymentMast SET PaymentStatus='VOID'", "No Edit for VOID record"},
                   {"UPDATE PaymentMast SET PaymentStatus='ACTIVE',Settlement='1'",
                    "Settlement Payment cannot be edit"},
                   {"UPDATE PaymentMast SET Settlement='0';UPDATE LoanMast SET LoanStatus='CLOSED'",
                    "No payment for CLOSED loan"},
                   {"UPDATE LoanMast SET LoanStatus='ACTIVE';UPDATE PaymentMast SET CompCode='AB'",
                    "Payment ID not found"},
                   {"DELETE FROM PaymentMast", "Payment ID HQ0001-001-001 not found"}}) {
    office.session.CurrentLevel = 3;
    office.Run(change);
    for (const char* mode : {"Edit Payment", "Delete Payment"}) {
      auto screen = Open(mode, {}, id);
      EXPECT_EQ(Said(), std::string(mode) + ": " + told + "|");
      EXPECT_FALSE(screen->SaveCmd.enabled()) << told;
    }
  }
}

TEST_F(PaymentSave, WalksThroughThePaymentsAndAsksBeforeItLeavesOne) {
  const std::string first = Store("10");
  const std::string second = Store("20");
  const std::string other = Store("30", "31-01-2024", kFlexi);
  auto screen = Open("Edit Payment", {}, first);
  Put(screen->PayID, "P 12");  // the box is cleared, and its text told
  EXPECT_EQ(LastMessage(), "Edit Payment: Payment ID P 12 not found");
  Put(screen->PayID, first);
  const auto press = [&](Button& button) {
    screen->Guard([&] { button.Click(); });
    return screen->PayID.text();
  };
  EXPECT_EQ(press(screen->CmdNext), second);
  EXPECT_EQ(press(screen->CmdNext), other);
  EXPECT_EQ(press(screen->CmdNext), other);  // the last one
  EXPECT_EQ(press(screen->CmdPrev), second);
  Put(screen->Memo1, "half typed");
  counter.agrees = false;
  EXPECT_EQ(press(screen->CmdPrev), second);
  Put(screen->LoanID, kFlexi);
  EXPECT_EQ(screen->LoanID.text() + screen->Memo1.text(), kPersonal + "half typed");
  counter.agrees = true;
  EXPECT_EQ(press(screen->CmdPrev), first);
  // Another loan chosen: the payment goes from the screen, so that none changes its loan.
  Put(screen->LoanID, kFlexi);
  EXPECT_EQ(screen->PayID.text(), "");
  EXPECT_FALSE(screen->SaveCmd.enabled());
  screen->Guard([&] { screen->DG.Open(0, 0); });
  EXPECT_EQ(screen->PayID.text(), other);
}

TEST_F(PaymentSave, TheAccountsHearOfPaymentAndDiscount) {
  Session& session = office.session;
  session.settings.LinkAcc = "1";
  session.ConnLinkAcc = "1";
  office.Run(
      "DELETE FROM LinkAccMast WHERE LinkID='PD';INSERT INTO LinkAccMast "
      "(SeqNo,LinkID,LinkAccCode) VALUES (21,'PD','900-1000')");
  session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
  auto screen = Typed();
  Save(*screen);
  ASSERT_EQ(counter.messages.size(), 3u) << Said();
  EXPECT_EQ(counter.messages[1],
            "Alert !!: Payment ID HQ0001-001-001 from Tan 'Ah' Kow not linked");
  EXPECT_EQ(Payments(), "HQ0001-001-001 150 150 0 5\n");

  session.AED->Execute(
      "CREATE TABLE TM_ARPayment (DocNo nvarchar(50), DocDate datetime, DebtorCode nvarchar(50), "
      "Description nvarchar(50), PaymentMethod nvarchar(50), ChequeNo nvarchar(50), PaymentAmount "
      "decimal(18, 2));CREATE TABLE TM_ARCN (DocNo nvarchar(50), DocDate datetime, DebtorCode "
      "nvarchar(50), Description nvarchar(50), DebitAccNo nvarchar(50), ProjNo nvarchar(50), "
      "Amount decimal(18, 2))");
  const auto sent = [&](const char* sql) { return ScalarQuery(*session.AED, sql); };
  screen = Typed();
  Put(screen->CollectorAmt, "3");
  Put(screen->ChargeAmt, "1");
  Save(*screen);
  // The discount goes its own way.
  EXPECT_EQ(sent("SELECT PaymentAmount FROM TM_ARPayment"), "159");
  EXPECT_EQ(sent("SELECT Description FROM TM_ARPayment"), "Installment Payment From Tan 'Ah' Kow");
  EXPECT_EQ(sent("SELECT DocNo FROM TM_ARCN"), "HQ0001-001-002");
  EXPECT_EQ(sent("SELECT Amount FROM TM_ARCN WHERE DebitAccNo='900-1000'"), "2");
  // A new payment without one sends none; a changed one sends what it is, nothing included.
  Store("10");
  EXPECT_EQ(sent("SELECT COUNT(*) FROM TM_ARCN"), "1");
  auto edit = Open("Edit Payment", {}, "HQ0001-001-002");
  Put(edit->DiscAmt, "0");
  Save(*edit);
  EXPECT_EQ(sent("SELECT Amount FROM TM_ARCN"), "0");
  Save(*Open("Delete Payment", {}, "HQ0001-001-002"));
  EXPECT_EQ(sent("SELECT COUNT(*) FROM TM_ARPayment WHERE DocNo='HQ0001-001-002'"), "1");
}

TEST_F(PaymentSave, TheReceiptTakesTheFormOfTheOffice) {
  const std::string id = Store("10");
  for (const auto& [old_receipt, own_form, file, parameter] :
       TextRows<4>{{"", "", "Payment Receipt.rpt", "RptID;0;True"},
                   {"1", "", "Payment Receipt Old.rpt", "RptID;1;True"},
                   {"0", "", "Payment Receipt Old.rpt", "RptID;0;True"},
                   {"True", "Small.rpt", "Small.rpt", "RptID;1;True"},
                   {"", "Small.rpt", "Small.rpt", "RptID;0;True"}}) {
    office.session.settings.OldReceipt = old_receipt;
    office.Run(
        fmt::format("DELETE FROM Systemast WHERE Param='OR';INSERT INTO Systemast (Param,Value) "
                    "VALUES ('OR','{}')",
                    own_form));
    auto screen = Open("Edit Payment", {}, id);
    screen->Guard([&] { screen->CmdPrint.Click(); });
    ASSERT_FALSE(counter.printed.empty());
    const ReportJob& job = counter.printed.back();
    EXPECT_EQ(job.ReportFileName, office.session.AppPath + "/" + file);
    EXPECT_EQ(job.SelectionFormula, "{PaymentMast.PayID}='HQ0001-001-001'");
    EXPECT_EQ(job.ParameterFields.at(0), parameter);
  }
  // Nothing to print before there is a payment.
  EXPECT_FALSE(New()->CmdPrint.enabled());
}

TEST_F(PaymentSave, ASuspicionIsHandedOnWhereItsScreenExists) {
  office.session.settings.AMLA = true;
  office.Run("UPDATE CompMast SET AMLA='1',AMLAPayment=9999");
  const std::string id = Store("10");
  EXPECT_FALSE(Open("Edit Payment", {}, id)->SSCommand5.visible());
  counter.can_show = "AMLAFrm";
  auto screen = Open("Edit Payment", {}, id);
  screen->SSCommand5.Click();
  EXPECT_EQ(Said(), "?Confirm to report AML/CFT STR to Bank Negara ?|");
  EXPECT_EQ(handed_over, "HQ0001 HQ0001-001 " + id);
  EXPECT_EQ(office.session.HandOverCustID + office.session.PickerExtra, "");
  EXPECT_FALSE(screen->SSCommand6.visible());
  std::ofstream(office.session.AppPath + "/CDD2.rpt") << "x";
  screen = Open("Edit Payment", {}, id);
  screen->SSCommand6.Click();
  ASSERT_EQ(counter.printed.size(), 1u);
  EXPECT_EQ(counter.printed[0].SelectionFormula, "{PaymentMast.PayID}='" + id + "'");
  EXPECT_EQ(counter.printed[0].ParameterFields.at(0), "RptID;;True");
}

}  // namespace
}  // namespace kaunter
