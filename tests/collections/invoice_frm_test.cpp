// Invoices and credit notes: the order of the checks, numbers, the loan's totals after each act,
// and that a write that fails leaves nothing.
#include "collections/invoice_frm.h"

#include "tests/collections/charge_counter.h"

namespace kaunter {
namespace {

class InvoiceTest : public ChargeCounter {
 protected:
  std::unique_ptr<Invoicefrm> Open(const std::string& id = "") {
    auto screen = std::make_unique<Invoicefrm>(office.session, counter);
    screen->Load();
    if (!id.empty()) Put(screen->ChargeID, id);
    return screen;
  }
  std::unique_ptr<Invoicefrm> Filled(const std::string& kind, const std::string& amount,
                                     const std::string& loan = kLoan) {
    auto screen = Open();
    screen->PType.Pick(kind);
    Put(screen->TrxDate, "05-02-2024");
    Put(screen->LoanID, loan);
    Put(screen->ChargeAmt, amount);
    Put(screen->ChargeDesc, "Legal 'letter'");
    return screen;
  }
  // Saves one more charge and gives its number.
  std::string Raise(const std::string& kind, const std::string& amount) {
    auto screen = Filled(kind, amount);
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Title: Record saved");
    return screen->ChargeID.text();
  }
  void TurnLinkOn() {
    Session& session = office.session;
    session.settings.LinkAcc = "1";
    session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
    RunScript(*session.AED, SchemaText("accounting"));
  }
};

// Row k breaks check k and every later one, so each is met before all that follow it.
TEST_F(InvoiceTest, ChecksOfANewChargeComeInTheirOrder) {
  TurnLinkOn();
  counter.refused = "Link Account not complete setup\nDo you want to setup now ?";
  for (const auto& [id, date, amount, text, loan, told] :
       TextRows<6>{{"INV9", "", "", "", "", "Title: Invoice not found"},
                   {"", "", "", "", "", "Title: Date is required"},
                   {"", "31-02-2024", "", "", "", "Title: Invalid Date"},
                   {"", "01-02-2024", "", "", "", "Title: Amount is required"},
                   {"", "01-02-2024", "0.004", "", "", "Title: Amount is required"},
                   {"", "01-02-2024", "5'; --", "", "", "Title: Invalid Amount"},
                   {"", "01-02-2024", "5", " ", "", "Title: Description is required"},
                   {"", "01-02-2024", "5", "a", "", "Title: Loan ID is required"},
                   {"", "01-02-2024", "5", "a", "X'1", "Title: Loan ID X'1 not found"},
                   {"", "01-02-2024", "5", "a", "HQ0001-001", ""}}) {
    auto screen = Open();
    screen->ChargeID.SetText(id);
    screen->TrxDate.SetText(date);
    screen->ChargeAmt.SetText(amount);
    screen->ChargeDesc.SetText(text);
    screen->LoanID.SetText(loan);
    counter.messages.clear();
    counter.questions.clear();
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), told);
    EXPECT_EQ(screen->ChargeDesc.text(), text);
    EXPECT_EQ(LastQuestion(), *told == '\0' ? counter.refused : "");
  }
  EXPECT_TRUE(counter.shown.empty());
  office.Run("UPDATE LinkAccMast SET LinkAccCode='500-0000'");
  counter.refused = "Confirm to save record ?";
  auto screen = Filled("Invoice", "5");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastQuestion(), counter.refused);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM ChargeMast"), "0");
}

TEST_F(InvoiceTest, AChangeNeedsTheRightOrAManagerAskedOnceForEachAct) {
  const std::string id = Raise("Invoice", "50");
  office.session.AllowEdit = office.session.AllowDelete = false;
  auto screen = Open(id);
  screen->TrxDate.SetText("");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: User AMY Level not allow to edit or delete record");
  screen->CmdDelete.Click();
  EXPECT_EQ(LastMessage(), "Title: User AMY Level not allow to edit or delete record");
  EXPECT_EQ(counter.asked_manager, 2);
  counter.manager = &office.session;
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: Date is required");
  Put(screen->TrxDate, "06-02-2024");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: Record saved");
  screen->CmdDelete.Click();
  EXPECT_EQ(LastMessage(), "Title: INV0001 deleted");
  EXPECT_EQ(counter.asked_manager, 4);
  // A new record needs no manager; the next old one on the same screen asks again.
  counter.manager = nullptr;
  Raise("Invoice", "50");
  EXPECT_EQ(counter.asked_manager, 4);
  Put(screen->ChargeID, "INV0002");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.asked_manager, 5);
  // The right to change is not the right to delete, nor the other way round.
  for (const bool edits : {true, false}) {
    office.session.AllowEdit = edits;
    office.session.AllowDelete = !edits;
    Button& refused = edits ? screen->CmdDelete : screen->SaveCmd;
    refused.Click();
    EXPECT_EQ(LastMessage(), "Title: User AMY Level not allow to edit or delete record");
    counter.messages.clear();
    counter.refused = edits ? "Confirm to save record ?" : "Confirm to delete INV0002 ?";
    (edits ? screen->SaveCmd : screen->CmdDelete).Click();
    EXPECT_EQ(LastQuestion(), counter.refused);
    EXPECT_TRUE(counter.messages.empty());
  }
}

TEST_F(InvoiceTest, TheLoansTotalsFollowEveryAct) {
  AddCharge("L1", "Batch Loan Interest", "2024-02-01", "77");
  AddCharge("P1", "Payment", "2024-02-01", "-3");
  Raise("Invoice", "100");
  EXPECT_EQ(Totals(), "100 -3\n");
  Raise("Credit Note", "-30.25");
  EXPECT_EQ(Totals(), "100 -33.25\n");
  Raise("Credit Note", "10");  // the sign is what is typed
  EXPECT_EQ(Totals(), "110 -33.25\n");
  EXPECT_EQ(Lines("SELECT ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,"
                  "ChargeAmt,ChargeDesc,UserID,DateCreated,PType FROM ChargeMast WHERE UserID='AMY'"
                  " ORDER BY ChargeID"),
            "CN0001 2024-02-05 HQ0001-001 HQ0001 HQ 2024-02-05 -30.25 0 -30.25 Legal 'letter' AMY "
            "2024-01-31 14:05:09 Credit Note\n"
            "CN0002 2024-02-05 HQ0001-001 HQ0001 HQ 2024-02-05 10 0 10 Legal 'letter' AMY "
            "2024-01-31 14:05:09 Credit Note\n"
            "INV0001 2024-02-05 HQ0001-001 HQ0001 HQ 2024-02-05 100 0 100 Legal 'letter' AMY "
            "2024-01-31 14:05:09 Invoice\n");
  auto screen = Open("inv0001");
  EXPECT_EQ(screen->CustName.text(), "Tan 'Ah' Kow");
  Put(screen->ChargeAmt, "1,250.5");
  Put(screen->TrxDate, "29-02-2024");
  screen->SaveCmd.Click();
  EXPECT_EQ(Totals(), "1260.5 -33.25\n");
  EXPECT_EQ(Lines("SELECT DueDate,LateAmt,ChargeAmt FROM ChargeMast WHERE ChargeID='INV0001'"),
            "2024-02-29 1250.5 1250.5\n");
  Open("CN0001")->CmdDelete.Click();
  EXPECT_EQ(LastMessage(), "Title: CN0001 deleted");
  EXPECT_EQ(Totals(), "1260.5 -3\n");
  EXPECT_EQ(Totals(kOther), "0 0\n");
}

TEST_F(InvoiceTest, WhatMayBeDoneDependsOnItsKind) {
  for (const auto& [kind, deleted, saved, printed] :
       std::initializer_list<std::tuple<const char*, bool, bool, bool>>{
           {"Batch", true, true, true},
           {"Invoice", true, true, true},
           {"Credit Note", true, true, true},
           {"Batch Loan Interest", false, true, false},
           {"Batch Term End Interest", false, true, true},
           {"Payment", false, false, false}}) {
    AddCharge("C1", kind, "2024-02-01", "5");
    office.Run("UPDATE ChargeMast SET ChargeDesc='late'");
    auto screen = Open("C1");
    EXPECT_EQ(screen->PType.text(), kind);
    EXPECT_EQ(screen->CmdPrint.enabled(), printed) << kind;
    EXPECT_EQ(screen->LateInt.text() + screen->DueDate.text(), "18.0031-01-2024");
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(),
              saved ? "Title: Record saved" : "Title: You are not allow to edit record")
        << kind;
    screen->CmdDelete.Click();
    EXPECT_EQ(LastMessage(),
              deleted ? "Title: C1 deleted" : "Title: You are not allow to delete record");
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM ChargeMast"), deleted ? "0" : "1") << kind;
    office.Run("DELETE FROM ChargeMast");
  }
}

TEST_F(InvoiceTest, ANumberOfAnotherCompanyIsPassedOver) {
  AddCharge("INV0001", "Invoice", "2024-02-01", "5", "X");
  AddCharge("INV0002", "Invoice", "2024-02-01", "5", "X");
  AddCharge("CN0001", "Credit Note", "2024-02-01", "5", "X");
  EXPECT_EQ(Raise("Invoice", "1"), "INV0003");
  EXPECT_EQ(Raise("Credit Note", "1"), "CN0002");
  EXPECT_EQ(Raise("Invoice", "1"), "INV0004");
}

TEST_F(InvoiceTest, UnsavedChangesAreAskedAboutBeforeAnotherChargeComes) {
  Raise("Invoice", "10");
  auto screen = Filled("Invoice", "5");
  counter.refused = "Leave this record without saving the changes ?";
  Put(screen->ChargeID, "INV0001");
  EXPECT_EQ(screen->ChargeID.text() + screen->ChargeAmt.text(), "5.00");
  Put(screen->ChargeID, "INV0009");  // not there: nothing is lost
  EXPECT_EQ(LastMessage(), "Title: Invoice not found");
  EXPECT_EQ(screen->ChargeAmt.text(), "5.00");
  counter.refused.clear();
  Put(screen->ChargeID, "INV0001");
  EXPECT_EQ(screen->ChargeAmt.text(), "10.00");
}

TEST_F(InvoiceTest, EachStatementThatFailsLeavesNoTrace) {
  AddCharge("P1", "Payment", "2024-02-01", "-3");
  auto screen = Filled("Credit Note", "-20");
  EXPECT_GE(FailEverywhere(Click(*screen, screen->SaveCmd)), 9);
  // The number that a failed save had drawn went back.
  EXPECT_EQ(Scalar("SELECT ChargeID FROM ChargeMast WHERE PType='Credit Note'"), "CN0001");
  EXPECT_EQ(Totals(), "0 -23\n");
  Put(screen->ChargeAmt, "-21");
  EXPECT_GE(FailEverywhere(Click(*screen, screen->SaveCmd)), 6);
  EXPECT_EQ(Totals(), "0 -24\n");
  EXPECT_GE(FailEverywhere(Click(*screen, screen->CmdDelete)), 5);
  EXPECT_EQ(Totals(), "0 -3\n");
}

TEST_F(InvoiceTest, AChargeOrLoanThatIsGoneMeanwhileIsNotWrittenAnew) {
  auto screen = Filled("Invoice", "5");
  office.Run("DELETE FROM LoanMast WHERE LoanID='HQ0001-001'");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(),
            "Title: an error occur during saving record\nLoan ID HQ0001-001 not found");
  EXPECT_EQ(screen->ChargeID.text() + screen->ChargeAmt.text(), "5.00");
  AddCharge("INV1", "Invoice", "2024-02-01", "5", kOther);
  screen = Open("INV1");
  screen->ChargeDesc.SetText("late");
  office.Run("DELETE FROM ChargeMast");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: an error occur during saving record");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM ChargeMast"), "0");
}

TEST_F(InvoiceTest, TheAccountsAreToldAndTheirFailureUndoesNothing) {
  TurnLinkOn();
  office.Run(
      "UPDATE LinkAccMast SET LinkAccCode='500-1' WHERE LinkID='ARINV'; UPDATE LinkAccMast SET "
      "LinkAccCode='500-2' WHERE LinkID='ARCN'");
  Raise("Invoice", "100");
  Raise("Credit Note", "-30");
  Connection& aed = *office.session.AED;
  const auto line = [&](const std::string& sql) { return ScalarQuery(aed, sql); };
  EXPECT_EQ(line("SELECT DocNo+'|'+DebtorCode FROM TM_ARInvoice WHERE Total=100"),
            "INV0001|HQ0001");
  EXPECT_EQ(line("SELECT DocNo+'|'+SalesAccountNo+'|'+Description FROM TM_ARInvoiceDTL"),
            "INV0001|500-1|Invoice for Tan 'Ah' Kow");
  EXPECT_EQ(line("SELECT DocNo+'|'+DebitAccNo+'|'+Description FROM TM_ARCN"),
            "CN0001|500-2|Credit Note - Legal 'letter'");
  EXPECT_EQ(line("SELECT Amount FROM TM_ARCN"), "30");  // what the debt falls by
  aed.SetFaultHook([](std::string_view) { throw SqlError(1105, "away"); });
  for (const char* kind : {"Invoice", "Credit Note"}) {
    counter.messages.clear();
    Raise(kind, "1");
    ASSERT_EQ(counter.messages.size(), 3u);
    EXPECT_EQ(counter.messages[1],
              fmt::format("Alert !!: {} {}0002 to Tan 'Ah' Kow not linked", kind,
                          std::string_view(kind) == "Invoice" ? "INV" : "CN"));
  }
  EXPECT_EQ(Totals(), "102 -30\n");
  // The interest of the batch is no document.
  AddCharge("B1", "Batch", "2024-02-01", "5");
  counter.messages.clear();
  auto screen = Open("B1");
  screen->ChargeDesc.SetText("late");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.messages, std::vector<std::string>{"Title: Record saved"});
}

}  // namespace
}  // namespace kaunter
