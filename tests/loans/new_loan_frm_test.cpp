// The loan screen before its save: what recalculates when, locks, modes, keys, grids.
#include "loans/new_loan_frm.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "loans/loan_glance.h"
#include "loans/schedule_store.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

using Texts = std::map<std::string, std::string>;

class LoanScreen : public ::testing::Test {
 protected:
  LoanScreen() : office(Office::State::patched) {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    office.session.MsgTitle = "Loan";
    desk.agrees = false;
    desk.can_show = "*";
    office.Run(
        "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('AB','Ah Beng');INSERT INTO UserMast "
        "(UserID,UserLevel,CompCode,AccessPayment) VALUES ('AMY','Admin','HQ',1)");
    Customer("HQ0001", "HQ", "Tan Ah Kow", "ACTIVE");
  }

  void Customer(const std::string& id, const std::string& company, const std::string& name,
                const std::string& status) {
    office.Run(
        fmt::format("INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC,CustStatus) VALUES "
                    "('{0}','{1}','{2}','IC-{0}','{3}')",
                    id, company, name, status));
  }

  // A stored loan of 10,000 over 12 months at 18 %, flat, first due on 31-01-2024.
  void Loan(const std::string& id, const std::string& pay_out = "0",
            const std::string& status = "ACTIVE", const std::string& company = "HQ",
            const std::string& cust_id = "HQ0001") {
    office.Run(fmt::format(
        "INSERT INTO LoanMast "
        "(LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanAmt2,InsRate,InsRate2,LoanTerm,LoanTerm2,"
        "LoanTerm3,LoanTypeID,LoanType,DragLoan,LoanPurpose,FirstPayment,InstallmentAmt,"
        "InstallmentAmt2,LastPayment,LoanBal,NextDueDate,LoanStatus,PayOutAmt,Bank) VALUES "
        "('{}','{}','{}','2023-12-31',10000,10000,18,18,'12','0','12','MONTH','Unsecured','0','"
        "FLAT',983.33,983.33,983.33,983.37,11800,'2024-01-31','{}',{},'CASH')",
        id, cust_id, company, status, pay_out));
    LoanTerms terms;
    terms.LoanTypeID = "MONTH";
    terms.NextDueDate = {2024, 1, 31};
    terms.LoanAmt = "10000";
    terms.InsRate = "18";
    terms.LoanTerm = "12";
    terms.LoanTerm2 = "0";
    terms.InstallmentAmt = "983.33";
    terms.LastPayment = "983.37";
    terms.LoanBal = "11800";
    terms.PayOutAmt2 = "0";
    GenerateSchedule(office.session.Main(), {id, cust_id}, terms, false);
  }

  NewLoanFrm& Open(const std::string& mode) {
    office.session.CallerTag = mode;
    screen = std::make_unique<NewLoanFrm>(office.session, desk);
    screen->Load();
    desk.messages.clear();
    return *screen;
  }
  NewLoanFrm& Open(const std::string& mode, const std::string& loan) {
    Open(mode);
    Set("LoanID", loan);
    return *screen;
  }

  // As a person does it: comes, types or picks, goes.
  void Set(const std::string& name, const std::string& text) {
    Control* control = screen->Find(name);
    ASSERT_NE(control, nullptr) << name;
    screen->Guard([&] {
      control->Enter();
      if (auto* box = dynamic_cast<TextBox*>(control)) box->Type(text);
      if (auto* list = dynamic_cast<ComboBox*>(control)) list->Pick(text);
      if (auto* check = dynamic_cast<CheckBox*>(control)) check->Tick(text == "1");
      control->Leave();
    });
  }
  std::string Text(const std::string& name) { return screen->Find(name)->Text(); }
  // The messages since the last call, without their title.
  std::vector<std::string> Told() {
    std::vector<std::string> told;
    for (const std::string& message : desk.messages) {
      told.push_back(message.substr(message.find(": ") + 2));
    }
    desk.messages.clear();
    return told;
  }
  void FillWorkedLoan() {
    Set("CustID", "HQ0001");
    Set("TrxDate", "31-12-2023");
    Set("LoanType", "Unsecured");
    Set("DragLoan", "Personal Loan");
    Set("LoanPurpose", "FLAT");
    Set("LoanAmt", "10000");
    Set("InsRate", "18");
    Set("LoanTerm", "12");
    desk.messages.clear();
  }

  Office office;
  AgreeingDesk desk;  // says no here, until told otherwise
  std::unique_ptr<NewLoanFrm> screen;
};

using Lines = std::vector<std::string>;

// --- what recalculates when

TEST_F(LoanScreen, ABoxThatIsLeftBringsItsOwnFigures) {
  office.session.settings.AutoProcessingFeeRate = "2.5";
  office.session.settings.AutoStampingFeeRate = "0.5";
  office.session.settings.CapLock = true;
  const std::tuple<const char*, std::vector<std::pair<const char*, const char*>>, Texts> rows[] = {
      {"the worked loan",
       {},
       {{"InstallmentAmt", "983.33"},
        {"FirstPayment", "983.33"},
        {"LastPayment", "983.37"},
        {"LoanBal", "11,800.00"},
        {"LoanTerm3", "12"},
        {"LoanTerm2", "0"},
        {"LateChargePerDay", "18"},
        {"ProcessFee", "250.00"},
        {"DepositAmt", "50.00"}}},
      // 1,001 x 0.5 % = 5.005: the display format takes the tie away from zero.
      {"fees take the display's tie", {{"LoanAmt", "1001"}}, {{"DepositAmt", "5.01"}}},
      // 10,000 x 18 % / 12 x 6 = 900; 10,900 / 6 = 1,816.67; 5 x 1,816.67 = 9,083.35.
      {"a shorter term",
       {{"LoanTerm", "6"}},
       {{"InstallmentAmt", "1816.67"}, {"LastPayment", "1816.65"}, {"LoanTerm3", "6"}}},
      {"grace is whole, cut downwards",
       {{"LoanTerm", "6"}, {"LoanTerm2", "2.9"}},
       {{"LoanTerm2", "2"}, {"LoanBal", "11,200.00"}, {"InstallmentAmt", "1816.67"}}},
      {"texts go to capitals, remarks do not",
       {{"CustName2", "Siti"}, {"SIBankBranch", "Ipoh"}, {"Memo1", "By hand"}},
       {{"CustName2", "SITI"}, {"SIBankBranch", "IPOH"}, {"Memo1", "By hand"}}},
      {"another rate", {{"InsRate", "12"}}, {{"LoanBal", "11,200.00"}, {"LateChargePerDay", "18"}}},
      {"a blank rate says nothing and changes nothing",
       {{"InsRate", ""}},
       {{"InsRate", ""}, {"LoanBal", "11,800.00"}}},
      {"the first instalment is no figure of its own",
       {{"FirstPayment", "1000"}},
       {{"FirstPayment", "983.33"}, {"LastPayment", "983.37"}}},
      {"an instalment",
       {{"InstallmentAmt", "1000"}},
       {{"InstallmentAmt", "1,000.00"}, {"LastPayment", "800.00"}}},
      // 10 x 983.33 + 900 + 983.33
      {"the last payment",
       {{"LastPayment", "900"}},
       {{"LastPayment", "900.00"}, {"LoanBal", "11,716.63"}}},
      {"first payment without a balance: its form only",
       {{"LoanBal", ""}, {"FirstPayment", "1000"}},
       {{"FirstPayment", "1,000.00"}, {"LastPayment", "983.37"}}},
      {"weeks", {{"LoanTypeID", "WEEK"}}, {{"NextDueDate", "07-01-2024"}}},
      {"a date", {{"TrxDate", "31-01-2024"}}, {{"NextDueDate", "29-02-2024"}}},
      {"secured", {{"LoanType", "Secured"}}, {{"InsRate", "12"}, {"LoanBal", "11,800.00"}}},
      {"flexi",
       {{"InsRate", "12"}, {"DragLoan", "Flexi Loan"}},
       {{"InstallmentAmt", "888.49"}, {"LastPayment", "0"}, {"LoanBal", "10,000.00"}}},
      {"back from flexi",
       {{"DragLoan", "Flexi Loan"},
        {"LoanTerm3", "5"},
        {"SpecialSch", "1"},
        {"DragLoan", "Personal Loan"}},
       {{"LoanTerm3", "12"}, {"SpecialSch", "0"}, {"InstallmentAmt", "983.33"}}},
      {"a blank bullet term takes the grace",
       {{"DragLoan", "Flexi Loan"}, {"LoanTerm2", "3"}, {"LoanTerm3", ""}},
       {{"LoanTerm3", "3"}}},
      {"top up", {{"TopUpAmt", "1234.5"}}, {{"TopUpAmt", "1,234.50"}}},
  };
  for (const auto& [name, acts, after] : rows) {
    SCOPED_TRACE(name);
    Open("New Loan");
    FillWorkedLoan();
    for (const auto& [box, text] : acts) {
      if (std::string(box) == "LoanBal") {
        screen->LoanBal.Clear();
      } else {
        Set(box, text);
      }
    }
    EXPECT_EQ(Told(), Lines());
    for (const auto& [box, text] : after) EXPECT_EQ(Text(box), text) << box;
  }
}

TEST_F(LoanScreen, TheSchemeOpensItsOwnBoxes) {
  Open("New Loan");
  FillWorkedLoan();
  EXPECT_FALSE(screen->SpecialSch.enabled());
  EXPECT_FALSE(screen->LoanTerm3.enabled());
  Set("DragLoan", "Flexi Loan");
  EXPECT_TRUE(screen->SpecialSch.enabled());
  EXPECT_TRUE(screen->LoanTerm3.enabled());
}

TEST_F(LoanScreen, CalculationsWithPromptsNameTheFirstBlank) {
  Open("New Loan");
  const std::array<const char*, 3> steps[] = {
      {"LoanAmt", "10000", "Loan Amount is required"},
      {"InsRate", "18", "Interest Rate is required"},
      {"LoanTerm", "12", "Loan Term is required"},
      {"LoanTerm3", "12", "Loan Term is required"},
      {"DragLoan", "Personal Loan", "Scheme / Flexi Loan is require"},
  };
  for (const auto& [box, text, refusal] : steps) {
    screen->Command3.Click();
    EXPECT_EQ(Told(), Lines{refusal}) << box;
    Set(box, text);
  }
  screen->SchChanged.SetChecked(true);
  screen->Command3.Click();
  EXPECT_EQ(Told(), Lines());
  EXPECT_FALSE(screen->SchChanged.checked());
  EXPECT_EQ(screen->InstallmentAmt.text(), "983.33");
  // ((10 x 983.33 + 983.33 + 983.37) - 10,000) / 12 x 100 / 10,000
  screen->Command5.Click();
  EXPECT_EQ(screen->InsRate.text(), "1.5");
}

TEST_F(LoanScreen, LettersAndBlanksInEveryNumberAndDateBox) {
  Open("New Loan");
  FillWorkedLoan();
  const Texts told = {
      {"LoanAmt", "Invalid Loan Amt"},
      {"InsRate", "Invalid Interest Amount"},
      {"LoanTerm", "Invalid Loan Term Value"},
      {"LoanTerm3", "Invalid Loan Bullet Term Value"},
      {"TopUpAmt", "Invalid Depostit Amount"},
      {"FirstPayment", "Invalid First Payment Amount, Please check"},
      {"InstallmentAmt", "Invalid Installment Amount"},
      {"LastPayment", "Invalid Final Payment Amount"},
      {"Memo4", "Invalid Value"},
      {"TrxDate", "Invalid date, Please check"},
      {"LateChargePerDay", "Invalid Late Interest Rate"},
      {"OfferDays", "Invalid Offer Days"},
  };
  const Texts replaced = {{"InsRate", "0"}, {"LoanTerm2", ""}};
  int boxes = 0;
  for (Control* control : screen->controls()) {
    auto* box = dynamic_cast<TextBox*>(control);
    const bool counted = box != nullptr && !box->locked() &&
                         (box->kind() == Kind::money || box->kind() == Kind::rate ||
                          box->kind() == Kind::integer || box->kind() == Kind::date);
    if (!counted) continue;
    SCOPED_TRACE(box->name());
    ++boxes;
    const std::string before = box->text();
    const auto text = told.find(box->name());
    const std::string expected = text != told.end()          ? text->second
                                 : box->kind() == Kind::date ? "Invalid Date"
                                                             : "Invalid Amount";
    for (const char* typed : {"abc", "1,2x", "99-99-2024"}) {
      Set(box->name(), typed);
      EXPECT_EQ(Told(), Lines{expected}) << typed;
      EXPECT_TRUE(box->marked());
      EXPECT_EQ(screen->focus(), box);
      const auto instead = replaced.find(box->name());
      EXPECT_EQ(box->text(), instead == replaced.end() ? typed : instead->second);
    }
    Set(box->name(), "  ");
    EXPECT_EQ(Told(), Lines());
    EXPECT_FALSE(box->marked());
    Set(box->name(), before);
    Told();
  }
  EXPECT_GT(boxes, 40);
}

TEST_F(LoanScreen, NothingButATermIsATerm) {
  Open("New Loan");
  FillWorkedLoan();
  Set("DragLoan", "Flexi Loan");
  const std::array<const char*, 3> rows[] = {
      {"LoanTerm", "0", "Loan Term cannot in 0"},
      {"LoanTerm", "00", "Loan Term cannot in 0"},
      {"LoanTerm", "1.5", "Invalid Loan Term Value"},
      {"LoanTerm", "-3", "Invalid Loan Term Value"},
      {"LoanTerm3", "0", "Bullet Term cannot in 0"},
      {"LoanTerm2", "-1", "Invalid Amount"},
      {"LoanAmt", "-5", "Invalid Loan Amt"},
      {"LoanAmt", "99999999999999999999", "Invalid Loan Amt"},
      {"InsRate", "1,8", "Invalid Interest Amount"},
  };
  for (const auto& [box, typed, refusal] : rows) {
    Set(box, typed);
    EXPECT_EQ(Told(), Lines{refusal}) << box << " " << typed;
  }
}

TEST_F(LoanScreen, ACollateralBelowTheLoanNeedsAManager) {
  const std::tuple<int, const char*, bool, Lines, const char*> rows[] = {
      {2, "10000", false, {}, "10,000.00"},
      {2, "9999.99", false, {"Authorised failed"}, ""},
      {2, "9999.99", true, {"Authorised failed"}, ""},  // the dialog was closed
      {3, "9999.99", false, {}, "9,999.99"},
  };
  for (const auto& [level, value, yes, told, after] : rows) {
    Open("New Loan");
    FillWorkedLoan();
    office.session.CurrentLevel = level;
    desk.agrees = yes;
    Set("Memo4", value);
    EXPECT_EQ(Told(), told) << level << value;
    EXPECT_EQ(Text("Memo4"), after);
  }
  Open("New Loan");
  Set("Memo4", "5");
  EXPECT_EQ(Told(), Lines{"Loan Amount is required"});
}

// --- keys, modes, locks

TEST_F(LoanScreen, BothKeysLoadALoanAndAnotherCompanyHasNone) {
  Loan("HQ0001-001");
  Customer("AB0001", "AB", "Chong", "ACTIVE");
  Loan("AB0001-001", "0", "ACTIVE", "AB", "AB0001");
  office.Run(
      "UPDATE LoanMast SET OldLoanCode='L77' WHERE LoanID='HQ0001-001';UPDATE LoanMast SET "
      "OldLoanCode='L78' WHERE LoanID='AB0001-001'");
  const std::tuple<int, const char*, const char*, Lines> rows[] = {
      {1, "HQ0001-001", "HQ0001-001", {}},
      {1, " hq0001-001 ", "HQ0001-001", {}},
      {1, "l77", "HQ0001-001", {}},
      {1, "AB0001-001", "", {"Laon ID not found"}},
      {1, "L78", "", {"Laon ID L78 not found"}},
      {4, "AB0001-001", "AB0001-001", {}},
      {4, "X'; DROP TABLE LoanMast --", "", {"Laon ID X'; DROP TABLE LoanMast -- not found"}},
  };
  for (const auto& [level, typed, loaded, told] : rows) {
    office.session.CurrentLevel = level;
    Open("Edit Loan", typed);
    EXPECT_EQ(Told(), told) << typed;
    // A code that nothing is found by stays, to be mended.
    EXPECT_EQ(Text("LoanID"), *loaded == '\0' ? typed : loaded) << typed;
    EXPECT_EQ(Text("LoanAmt"), *loaded == '\0' ? "" : "10,000.00");
  }
}

TEST_F(LoanScreen, TheModeDecidesWhichLoanComesIn) {
  Loan("HQ0001-001");
  Loan("HQ0001-002", "10000", "CLOSED");
  const std::tuple<const char*, bool, bool> rows[] = {
      {"New Loan", true, false},   {"Edit Loan", true, false}, {"Delete Loan", true, true},
      {"Close Loan", true, false}, {"Open Loan", false, true}, {"Due Date Inquiry", true, true},
      {"Follow Up", true, true}};
  for (const auto& [opened_in, active, comes_closed] : rows) {
    for (const bool closed : {false, true}) {
      SCOPED_TRACE(fmt::format("{} {}", opened_in, closed));
      office.session.HandOverLoanID = closed ? "HQ0001-002" : "HQ0001-001";
      office.session.CallerTag = opened_in;
      screen = std::make_unique<NewLoanFrm>(office.session, desk);
      desk.messages.clear();
      screen->Load();
      office.session.HandOverLoanID.clear();
      const bool comes = closed ? comes_closed : active;
      EXPECT_EQ(Text("LoanAmt"), comes ? "10,000.00" : "");
      EXPECT_EQ(Told(), comes ? Lines()
                              : Lines{closed ? "Cannot edit for CLOSED Loan"
                                             : "Cannot edit for ACTIVE Loan"});
      const std::string mode = opened_in == std::string("New Loan") ? "Edit Loan" : opened_in;
      EXPECT_EQ(Text("LoanLBL"), mode);
      EXPECT_EQ(screen->title().english, "Loan - " + mode);
    }
  }
}

TEST_F(LoanScreen, MoneyThatWentOutLocksTheTerms) {
  const char* locked[] = {"LoanTerm",       "LoanTerm3",   "LoanTerm2", "FirstPayment",
                          "InstallmentAmt", "LastPayment", "LoanAmt",   "TopUpAmt",
                          "DepositAmt2",    "TermInt",     "OathsAmt",  "LegalFee",
                          "MiscAmt",        "PayOutAmt2",  "InsRate",   "LoanTypeID",
                          "CompCode",       "SchChanged",  "Command3",  "Command5"};
  const std::tuple<const char*, const char*, const char*, bool> rows[] = {
      {"Edit Loan", "0", "0", true},        {"Edit Loan", "0", "1", true},
      {"Edit Loan", "0.01", "1", false},    {"Edit Loan", "10000", "0", false},
      {"Delete Loan", "0", "1", false},     {"Close Loan", "0", "0", true},
      {"Due Date Inquiry", "0", "1", false}};
  int number = 0;
  for (const auto& [mode, pay_out, scheme, open] : rows) {
    const std::string id = fmt::format("HQ0001-{:03}", ++number);
    SCOPED_TRACE(fmt::format("{} {} {}", mode, pay_out, scheme));
    Loan(id, pay_out);
    office.Run(fmt::format("UPDATE LoanMast SET DragLoan='{}' WHERE LoanID='{}'", scheme, id));
    Open(mode, id);
    for (const char* name : locked) {
      EXPECT_EQ(screen->Find(name)->enabled(), open) << name;
    }
    EXPECT_EQ(screen->SpecialSch.enabled(), open && scheme == std::string("1"));
    EXPECT_EQ(screen->vsd3.CellEditable(0, 2), open);
    EXPECT_TRUE(screen->ProcessFee.enabled());
    // A choice that stays open recalculates nothing on locked terms.
    Set("LoanType", "Secured");
    Set("DragLoan", "Flexi Loan");
    if (!open) {
      EXPECT_EQ(Text("InsRate"), "18.00");
      EXPECT_EQ(Text("LoanBal"), "11,800.00");
      EXPECT_FALSE(screen->SpecialSch.enabled());
    }
  }
}

TEST_F(LoanScreen, ANewLoanStartsBlankAndForItsCustomer) {
  Loan("HQ0001-001");
  office.Run("UPDATE LoanMast SET Bank='MBB',BankBranch='Klang',ATMCardNo='4411'");
  office.session.HandOverCustID = "HQ0001";
  Open("New Loan");
  EXPECT_EQ(Text("CustName"), "Tan Ah Kow");
  const Texts after = {{"LoanStatus", "ACTIVE"}, {"LoanTypeID", "MONTH"}, {"IntType", "$"},
                       {"CompCode", "HQ"},       {"Bank", "MBB"},         {"BankBranch", "Klang"},
                       {"ATMCardNo", "4411"},    {"LoanID", ""},          {"TrxDate", ""}};
  for (const auto& [box, text] : after) EXPECT_EQ(Text(box), text) << box;
  EXPECT_FALSE(screen->LoanID.enabled());
  EXPECT_TRUE(screen->CustID.enabled());
  office.session.HandOverCustID.clear();
  // From a loan on the screen to a new one: nothing of it stays.
  Open("Edit Loan", "HQ0001-001");
  screen->CmdNew.Click();
  for (const char* box : {"LoanID", "CustID", "CustName", "LoanAmt", "Memo3", "Bank"}) {
    EXPECT_EQ(Text(box), "") << box;
  }
  EXPECT_EQ(screen->vsd3.RowCount(), 0);
  EXPECT_EQ(Text("LoanLBL"), "New Loan");
}

TEST_F(LoanScreen, ACustomerIsFoundByThreeKeysAndMustBeActive) {
  Loan("HQ0001-001");
  office.Run("UPDATE LoanMast SET OldLoanCode='L77'");
  Customer("HQ0002", "HQ", "Wong", "BAD DEBT");
  Customer("AB0001", "AB", "Chong", "ACTIVE");
  const std::tuple<int, const char*, const char*, const char*, Lines> rows[] = {
      {1, "hq0001", "HQ0001", "Tan Ah Kow", {}},
      {1, "L77", "HQ0001", "Tan Ah Kow", {}},
      {1, "ic-hq0001", "HQ0001", "Tan Ah Kow", {}},
      {1, "HQ0002", "", "", {"No loan for BAD DEBT customer"}},
      {1, "NOBODY", "NOBODY", "", {"Customer ID NOBODY not found"}},
      {1, "AB0001", "AB0001", "", {"Customer ID AB0001 not found"}},
      {4, "AB0001", "AB0001", "Chong", {}},
  };
  for (const auto& [level, typed, id, name, told] : rows) {
    office.session.CurrentLevel = level;
    Open("New Loan");
    Set("CustID", typed);
    EXPECT_EQ(Told(), told) << typed;
    EXPECT_EQ(Text("CustID"), id) << typed;
    EXPECT_EQ(Text("CustName"), name) << typed;
  }
  EXPECT_EQ(Text("CompCode"), "AB");
  EXPECT_EQ(Text("Bank"), "CASH");
  // A loan that stands comes in with a note.
  office.Run("UPDATE CustMast SET CustStatus='BLACKLIST' WHERE CustID='HQ0001'");
  Open("Edit Loan", "HQ0001-001");
  EXPECT_EQ(Told(), Lines{"BLACKLIST customer, Please take note"});
  EXPECT_EQ(Text("LoanAmt"), "10,000.00");
}

TEST_F(LoanScreen, TheSpecialUserSeesTheBooks) {
  Loan("HQ0001-001");
  office.Run("UPDATE LoanMast SET InsRate2=12");
  for (const bool special : {false, true}) {
    office.session.Special = special;
    Open("Edit Loan", "HQ0001-001");
    for (const char* name : {"Label51", "LoanAmt", "TopUpAmt", "Command5", "InsRate"}) {
      EXPECT_EQ(screen->Find(name)->visible(), !special) << name;
    }
    EXPECT_EQ(screen->InsRate2.visible(), special);
    EXPECT_EQ(Text("InsRate2"), "12.00");
  }
}

TEST_F(LoanScreen, AnInquiryChangesNothing) {
  Loan("HQ0001-001");
  office.Run("INSERT INTO PaymentMast (PayID,LoanID,PayAmt) VALUES ('P1','HQ0001-001',100)");
  for (const char* mode : {"Due Date Inquiry", "Follow Up"}) {
    Open(mode, "HQ0001-001");
    desk.agrees = true;
    EXPECT_FALSE(screen->SaveCmd.visible());
    for (const char* box : {"Memo1", "LoanPurpose", "NextDueDate", "GuarantorName(0)", "Bank"}) {
      EXPECT_FALSE(screen->Find(box)->Editable()) << box;
    }
    screen->vsd4.Select(0);
    screen->vsd4.Key("Delete");
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast"), "1");
    EXPECT_TRUE(screen->RequestClose());
  }
  EXPECT_EQ(office.Scalar("SELECT Memo3 FROM LoanMast"), "RM 983.33 X 11\r\nRM 983.37 X 1");
}

TEST_F(LoanScreen, AnAlternateCodeBelongsToOneOnly) {
  Loan("HQ0001-001");
  Loan("HQ0001-002");
  Customer("AB0001", "AB", "Chong", "ACTIVE");
  Loan("AB0001-001", "0", "ACTIVE", "AB", "AB0001");
  office.Run(
      "UPDATE LoanMast SET OldLoanCode='L1' WHERE LoanID='HQ0001-001';UPDATE LoanMast SET "
      "OldLoanCode='L2' WHERE LoanID='HQ0001-002';UPDATE LoanMast SET OldLoanCode='L3' WHERE "
      "LoanID='AB0001-001'");
  Open("Edit Loan", "HQ0001-001");
  for (const char* good : {"", "L1", "L3", "AB0001-001", "new"}) {
    Set("OldLoanCode", good);
    EXPECT_EQ(Told(), Lines()) << good;
  }
  for (const char* taken : {"L2", "hq0001-002", "HQ0001"}) {
    Set("OldLoanCode", taken);
    EXPECT_EQ(Told(), Lines{fmt::format("{} is belong to Tan Ah Kow Loan, Please check", taken)});
    EXPECT_EQ(screen->focus(), &screen->OldLoanCode);
  }
}

TEST_F(LoanScreen, NeighboursStayInThePersonsCompanies) {
  Customer("HQ0002", "HQ", "Wong", "ACTIVE");
  Customer("HQ0003", "HQ", "Lee", "ACTIVE");
  Loan("HQ0001-001");
  Loan("HQ0002-001", "0", "ACTIVE", "AB", "HQ0002");
  Loan("HQ0003-001", "0", "ACTIVE", "HQ", "HQ0003");
  const struct {
    int level;
    Lines walk;
  } rows[] = {{4, {"HQ0002-001", "HQ0003-001", "HQ0003-001"}},
              {1, {"HQ0003-001", "HQ0003-001", "HQ0003-001"}}};
  for (const auto& row : rows) {
    office.session.CurrentLevel = row.level;
    Open("Edit Loan", "HQ0001-001");
    Lines walk;
    for (int i = 0; i < 3; ++i) {
      screen->CmdNext.Click();
      walk.push_back(Text("LoanID"));
    }
    EXPECT_EQ(walk, row.walk);
    screen->CmdPrev.Click();
    EXPECT_EQ(Text("LoanID"), row.level == 4 ? "HQ0002-001" : "HQ0001-001");
  }
}

// --- the grids

TEST_F(LoanScreen, AnInstalmentIsChangedInItsPlace) {
  Loan("HQ0001-001");
  Open("Edit Loan", "HQ0001-001");
  Grid& grid = screen->vsd3;
  EXPECT_TRUE(grid.Edit(0, 2, "x"));
  EXPECT_EQ(Told(), Lines{"Invlid amount"});
  EXPECT_EQ(grid.Cell(0, 2), "983.33");
  EXPECT_FALSE(screen->SchChanged.checked());
  EXPECT_TRUE(grid.Edit(0, 2, "1,083.335"));
  EXPECT_EQ(Told(), Lines());
  EXPECT_EQ(grid.Cell(0, 2), "1,083.34");
  EXPECT_EQ(grid.Cell(0, 3), "933.34");  // the interest of 150.00 stays
  EXPECT_EQ(grid.Cell(0, 4), "150.00");
  EXPECT_EQ(grid.Cell(0, 8), "1,083.34");
  EXPECT_TRUE(screen->SchChanged.checked());
  EXPECT_EQ(Text("ScheduleTotalLBL"),
            "12 instalments: payable 11,900.01, capital 10,100.01, interest 1,800.00, paid 0.00, "
            "balance 11,900.01");
  EXPECT_FALSE(grid.Edit(0, 3, "1"));
  EXPECT_FALSE(screen->RequestClose());  // it counts as a change
  screen->Command3.Click();              // the terms anew: the edit is given up, to be seen
  EXPECT_EQ(Told(), Lines());
  EXPECT_EQ(grid.Cell(0, 2), "983.33");
  EXPECT_FALSE(screen->SchChanged.checked());
}

TEST_F(LoanScreen, TheRepaymentTextIsBuiltOnce) {
  Loan("HQ0001-001");
  office.Run("UPDATE SchMast SET PayableAmt=500 WHERE SchID=6");
  Open("Edit Loan", "HQ0001-001");
  const std::string text = "RM 983.33 X 5\r\nRM 500.00 X 1\r\nRM 983.33 X 5\r\nRM 983.37 X 1";
  EXPECT_EQ(Text("Memo3"), text);
  office.Run("UPDATE SchMast SET PayableAmt=600 WHERE SchID=6");
  Open("Edit Loan", "HQ0001-001");
  EXPECT_EQ(Text("Memo3"), text);
  EXPECT_EQ(office.Scalar("SELECT Memo3 FROM LoanMast"), text);
  EXPECT_TRUE(screen->RequestClose());  // it is no change of the person's
}

TEST_F(LoanScreen, APaymentIsDeletedByRightOnlyAndWhole) {
  Loan("HQ0001-001", "10000");
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,PayDate,PayAmt,ChqNo,Settlement) VALUES "
      "('HQ0001-001-001','HQ0001-001','HQ0001','2024-01-31',983.33,'C1','0');INSERT INTO "
      "PaymentMast (PayID,LoanID,CustID,PayDate,PayAmt,InstalAmt,Settlement) VALUES "
      "('HQ0001-001-002','HQ0001-001','HQ0001','2024-02-29',500,500,'1');INSERT INTO ChqMast "
      "(LoanID,SeqNo,ChqNo,ChqAmt,PayID) VALUES ('HQ0001-001',1,'C1',983.33,'HQ0001-001-001')");
  const auto press = [&](int row) {
    desk.questions.clear();
    screen->vsd4.Select(row);
    screen->Guard([&] { screen->vsd4.Key("Delete"); });
  };
  const auto stored = [&] { return office.Scalar("SELECT COUNT(*) FROM PaymentMast"); };
  office.Run("UPDATE UserMast SET AccessPayment=2");
  desk.agrees = true;
  Open("Edit Loan", "HQ0001-001");
  press(0);
  EXPECT_EQ(Told(), Lines{"You are not allow to delete record"});
  office.Run("UPDATE UserMast SET AccessPayment=1");
  press(1);  // a settlement
  EXPECT_EQ(Told(), Lines{"You are not allow to delete record"});
  desk.agrees = false;
  press(0);
  EXPECT_EQ(desk.questions, Lines{"Confirm to delete payment ?"});
  EXPECT_EQ(stored(), "2");
  desk.agrees = true;
  // The disk fails at the cheque: the payment stays.
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("UPDATE ChqMast")) throw SqlError(1105, "the disk is full");
  });
  press(0);
  office.session.Main().SetFaultHook({});
  EXPECT_EQ(Told(), Lines{"an error occur during delete payment\nthe disk is full\nNothing of it "
                          "was kept. Mend the cause and do it again."});
  EXPECT_EQ(stored(), "2");
  EXPECT_FALSE(office.session.Main().InTransaction());
  press(0);
  EXPECT_EQ(Told(), Lines{"Payment deleted successfull"});
  EXPECT_EQ(stored(), "1");
  EXPECT_EQ(office.Scalar("SELECT PayID FROM ChqMast"), "");
  // Rebuilt from the 500 that is left.
  EXPECT_EQ(office.Scalar("SELECT TotPay FROM LoanMast"), "500");
  EXPECT_EQ(Text("TotPay"), "500.00");
  EXPECT_EQ(screen->vsd4.RowCount(), 1);
}

TEST_F(LoanScreen, AFreeChequeIsChangedAtOnceAndAPaidOneNever) {
  Loan("HQ0001-001");
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqDate,ChqAmt,PayID) VALUES "
      "('HQ0001-001',1,'C1','2024-01-31',100,'P1');INSERT INTO ChqMast "
      "(LoanID,SeqNo,ChqNo,ChqDate,ChqAmt) VALUES ('HQ0001-001',2,'C2','2024-02-29',100)");
  Open("Edit Loan", "HQ0001-001");
  Grid& grid = screen->vsd;
  const std::tuple<int, int, const char*, Lines, const char*> rows[] = {
      {1, 3, "1a", {"Invalid Amount"}, "100.00"},
      {1, 3, "1234.5", {}, "1,234.50"},
      {1, 0, "30-02-2024", {"Invalid Date"}, "29-02-2024"},
      {1, 0, "01-03-2024", {}, "01-03-2024"},
      {0, 3, "5", {"cannot change a cheque that is paid in"}, "100.00"},
  };
  for (const auto& [row, column, typed, told, shown] : rows) {
    screen->Guard([&] { grid.Edit(row, column, typed); });
    EXPECT_EQ(Told(), told) << typed;
    EXPECT_EQ(grid.Cell(row, column), shown) << typed;
  }
  EXPECT_EQ(office.Scalar("SELECT ChqAmt FROM ChqMast WHERE SeqNo=2"), "1234.5");
  EXPECT_EQ(office.Scalar("SELECT ChqDate FROM ChqMast WHERE SeqNo=2"), "2024-03-01");
  EXPECT_EQ(office.Scalar("SELECT ChqAmt FROM ChqMast WHERE SeqNo=1"), "100");
  desk.agrees = true;
  for (const int row : {0, 1}) {
    grid.Select(row);
    screen->Guard([&] { grid.Key("Delete"); });
  }
  EXPECT_EQ(Told(), Lines{"cannot delete cheque"});
  EXPECT_EQ(desk.questions.back(), "Confirm to delete cheque C2 ?");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM ChqMast"), "1");
  EXPECT_EQ(grid.RowCount(), 1);
}

TEST_F(LoanScreen, LateInterestIsSummedByMonth) {
  Loan("HQ0001-001");
  int number = 0;
  for (const auto& [date, amount, kind] :
       std::vector<std::array<const char*, 3>>{{"2023-12-31", "1.10", "Batch"},
                                               {"2024-01-01", "2.20", "Batch"},
                                               {"2024-01-31", "3.30", "Batch"},
                                               {"2024-01-15", "50", "Invoice"}}) {
    office.Run(
        fmt::format("INSERT INTO ChargeMast (ChargeID,LoanID,TrxDate,ChargeAmt,PType,DueDate) "
                    "VALUES ('C{}','HQ0001-001','{}',{},'{}','{}')",
                    ++number, date, amount, kind, date));
  }
  Open("Edit Loan", "HQ0001-001");
  EXPECT_EQ(screen->ChargesDG.RowCount(), 1);
  ASSERT_EQ(screen->ChargesDG2.RowCount(), 2);
  EXPECT_EQ(screen->ChargesDG2.Row(0),
            (Lines{"12-2023", "1.10", "Late Interest", "Batch", "31-12-2023"}));
  EXPECT_EQ(screen->ChargesDG2.Row(1),
            (Lines{"01-2024", "5.50", "Late Interest", "Batch", "31-01-2024"}));
}

TEST_F(LoanScreen, AGuarantorComesFromTheLatestLoanWithEitherSet) {
  Loan("HQ0001-001");
  Loan("HQ0001-002");
  office.Run(
      "UPDATE LoanMast SET GuarantorName2='Lim "
      "Bee',GuarantorNIC2='700101-14-5555',GuarantorCompAdd12='Jalan "
      "2',GuarantorCompIncome2=3500,GuarantorGender2='FEMALE' WHERE LoanID='HQ0001-001'");
  Open("Edit Loan", "HQ0001-002");
  GuarantorBoxes& first = screen->guarantors[0];
  first.CmdGetGuarantor.Click();
  EXPECT_EQ(Told(), Lines{"No info found"});  // nothing typed
  Set("GuarantorNIC(0)", "700101145555");
  first.CmdGetGuarantor.Click();
  EXPECT_EQ(Told(), Lines{"Guarantor Info assigned"});
  const Texts after = {{"GuarantorName(0)", "Lim Bee"},
                       {"GuarantorCompAdd1(0)", "Jalan 2"},
                       {"GuarantorCompIncome(0)", "3,500.00"},
                       {"GuarantorGender(0)", "FEMALE"}};
  for (const auto& [box, text] : after) EXPECT_EQ(Text(box), text) << box;
  Set("GuarantorName(1)", "Nobody");
  screen->guarantors[1].CmdGetGuarantor.Click();
  EXPECT_EQ(Told(), Lines{"No info found"});
  EXPECT_EQ(Text("GuarantorName(1)"), "Nobody");
}

TEST_F(LoanScreen, OneQueryAGridWhateverItsRows) {
  Loan("HQ0001-001", "10000");
  Loan("HQ0001-002", "10000");
  for (int i = 13; i <= 360; ++i) {
    office.Run(
        fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt) VALUES "
                    "({},'HQ0001-002','2030-01-01',10)",
                    i));
  }
  for (int i = 0; i < 500; ++i) {
    office.Run(
        fmt::format("INSERT INTO PaymentMast (PayID,LoanID,PayDate,PayAmt) VALUES "
                    "('P{:03}','HQ0001-002','2024-01-31',10)",
                    i));
  }
  class Redraws : public ScreenObserver {
   public:
    void ControlChanged(Control& control) override { ++count[&control]; }
    void FocusMoved(Control&) override {}
    void TitleChanged() override {}
    void Closed() override {}
    std::map<const Control*, int> count;
  };
  std::size_t statements[2] = {};
  for (const int loan : {0, 1}) {
    Open("Edit Loan");
    Redraws redraws;
    screen->observer = &redraws;
    office.session.Main().SetTrace([&](std::string_view, std::string_view) { ++statements[loan]; });
    Set("LoanID", loan == 0 ? "HQ0001-001" : "HQ0001-002");
    office.session.Main().SetTrace({});
    screen->observer = nullptr;
    // Cleared, filled, and the columns' editing set at most twice.
    EXPECT_LE(redraws.count[&screen->vsd3], 5);
    EXPECT_LE(redraws.count[&screen->vsd4], 2);
  }
  EXPECT_EQ(screen->vsd3.RowCount(), 360);
  EXPECT_EQ(screen->vsd4.RowCount(), 500);
  EXPECT_EQ(statements[0], statements[1]);
  EXPECT_LE(statements[0], 20u);
}

TEST_F(LoanScreen, TheAmlPageFollowsTheOfficeAndTheCompany) {
  Customer("AB0001", "AB", "Chong", "ACTIVE");
  office.Run(
      "UPDATE CompMast SET AMLA='1' WHERE CompCode='AB';INSERT INTO AMLADesc (SID,AMLADesc) VALUES "
      "('LOAN','House');INSERT INTO AMLADesc (SID,AMLADesc) VALUES ('PAYMENT','Sale of land')");
  const std::tuple<bool, const char*, bool> rows[] = {
      {true, "HQ0001", false}, {true, "AB0001", true}, {false, "AB0001", false}};
  for (const auto& [office_on, customer, shown] : rows) {
    office.session.settings.AMLA = office_on;
    Open("New Loan");
    Set("CustID", customer);
    EXPECT_EQ(screen->AmlPage.visible(), shown) << customer << office_on;
  }
  // Free text, until the office allows its own list alone.
  office.session.settings.AMLA = true;
  for (const bool locked : {false, true}) {
    office.session.settings.LockAMLAReasonCode = locked;
    Open("New Loan");
    Set("CustID", "AB0001");
    Set("AMLACode", "House");
    Set("AMLACode", "Sale of land");
    EXPECT_EQ(Told(), locked ? Lines{"Choose the Loan Purpose from the list"} : Lines());
    EXPECT_EQ(Text("AMLACode"), locked ? "" : "Sale of land");
  }
}

// --- other screens

TEST_F(LoanScreen, ADrawdownIsOpenedForTheStoredLoanAndLocksItOnReturn) {
  Loan("HQ0001-001");
  Open("Edit Loan", "HQ0001-001");
  Set("Memo1", "typed");
  screen->CmdDrawDown.Click();
  EXPECT_EQ(Told(), Lines{"Please save the changes of the loan first"});
  EXPECT_EQ(desk.shown, Lines());
  EXPECT_EQ(Text("Memo1"), "typed");
  Open("Edit Loan", "HQ0001-001");
  Lines handed;
  desk.on_show = [&] {
    handed = {office.session.CallerTag, office.session.HandOverLoanID};
    office.Run(
        "INSERT INTO DrawDownMast (SID,LoanID,TrxDate,DrawDownAmt) VALUES "
        "('DL0001','HQ0001-001','2024-01-31',4000);UPDATE LoanMast SET PayOutAmt=4000");
  };
  screen->CmdDrawDown.Click();
  EXPECT_EQ(handed, (Lines{"", "HQ0001-001"}));
  EXPECT_EQ(Text("PayOutAmt"), "4,000.00");
  EXPECT_FALSE(screen->LoanAmt.enabled());
  desk.on_show = [&] { handed = {office.session.CallerTag, office.session.HandOverLoanID}; };
  screen->DrawDownDG.Open(0, 0);
  EXPECT_EQ(handed, (Lines{"DL0001", ""}));
  EXPECT_EQ(office.session.CallerTag, "Edit Loan");  // the screen's own command is back
}

TEST_F(LoanScreen, APaymentIsOpenedByRightOnly) {
  Loan("HQ0001-001", "10000");
  office.Run("INSERT INTO PaymentMast (PayID,LoanID,PayAmt) VALUES ('P1','HQ0001-001',100)");
  Open("Edit Loan", "HQ0001-001");
  for (const char* right : {"0", "2", "1"}) {
    office.Run(fmt::format("UPDATE UserMast SET AccessPayment={}", right));
    screen->vsd4.Open(0, 0);
    EXPECT_EQ(desk.shown.size(), std::string(right) == "1" ? 1u : 0u) << right;
  }
}

TEST_F(LoanScreen, AnApplicationFillsTheLoan) {
  Customer("HQ0002", "HQ", "Wong", "ACTIVE");
  office.Run(
      "INSERT INTO AppMast "
      "(AppID,CompCode,CustID,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,LoanTypeID,LoanType,DragLoan,"
      "LoanPurpose,InsRate,LoanTerm,LoanTerm3,TermInt,TitleNo,Memo4) VALUES "
      "('AP0001','HQ','HQ0001','2024-02-29',50000,100,10000,'MONTH','Secured','0','FLAT',18,'6','2'"
      ",75,'GM 12',60000);INSERT INTO AppMastLink (AppID,CustID,AppType) VALUES "
      "('AP0001','HQ0001','Applicant');INSERT INTO AppMastLink (AppID,CustID,AppType) VALUES "
      "('AP0001','HQ0002','Applicant')");
  Open("New Loan");
  screen->SSCommand3.Click();
  EXPECT_EQ(Told(), Lines{"Customer Code is requried"});
  Set("CustID", "HQ0001");
  desk.on_show = [&] {
    EXPECT_EQ(office.session.PickerName, "AppPop");
    EXPECT_EQ(office.session.PickerExtra, "LOAN HQ0001");  // ready for this customer's loan
    office.session.PickerName.clear();
    office.session.CallerTag = "AP0001";
  };
  screen->SSCommand3.Click();
  // 10,000 x 18 % / 12 x 6 = 900 for the repaying instalments, 300 for two of interest only.
  const Texts after = {{"AgreementNo", "AP0001"},
                       {"NextDueDate", "29-02-2024"},
                       {"LoanAmt", "10,000.00"},
                       {"LoanAmt2", "50,000.00"},
                       {"TopUpAmt", "100.00"},
                       {"LoanType", "Secured"},
                       {"DragLoan", "Personal Loan"},
                       {"LoanTerm", "6"},
                       {"LoanTerm2", "2"},
                       {"LoanTerm3", "2"},
                       {"TermInt", "75.00"},
                       {"TitleNo", "GM 12"},
                       {"Memo4", "60,000.00"},
                       {"CustID2", "HQ0002"},
                       {"CustName2", "Wong"},
                       {"InstallmentAmt", "1816.67"},
                       {"LoanBal", "11,200.00"}};
  for (const auto& [box, text] : after) EXPECT_EQ(Text(box), text) << box;
}

// --- at a glance

TEST(LoanGlance, PaidDueAndOpen) {
  const auto money = [](int ringgit) { return Money::FromInteger(ringgit); };
  const DateTime jan{2024, 1, 31}, feb{2024, 2, 29}, mar{2024, 3, 31}, apr{2024, 4, 30};
  const struct {
    const char* name;
    DateTime today;
    int payments[4];
    int paid, due, open, days, arrears;
    std::optional<DateTime> next;
  } rows[] = {
      {"nothing due yet", {2024, 1, 30}, {0, 0, 0, 0}, 0, 0, 4, 0, 0, jan},
      {"due today is not in arrears", jan, {0, 0, 0, 0}, 0, 0, 4, 0, 0, jan},
      {"the day after", {2024, 2, 1}, {0, 0, 0, 0}, 0, 1, 3, 1, 100, jan},
      {"part paid", {2024, 3, 1}, {100, 40, 0, 0}, 1, 1, 2, 1, 60, feb},
      {"two behind, at any hour", {2024, 3, 2, 23, 59, 59}, {0, 0, 0, 0}, 0, 2, 2, 31, 200, jan},
      {"over paid", {2024, 3, 1}, {150, 100, 0, 0}, 2, 0, 2, 0, 0, mar},
      {"paid ahead of an open one", {2024, 3, 1}, {100, 0, 100, 0}, 2, 1, 1, 1, 100, feb},
      {"all paid", {2025, 1, 1}, {100, 100, 100, 100}, 4, 0, 0, 0, 0, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<GlanceRow> instalments;
    const DateTime dates[] = {jan, feb, mar, apr};
    for (int i = 0; i < 4; ++i) {
      instalments.push_back({dates[i], money(100), money(row.payments[i])});
    }
    const LoanGlance glance = GlanceAt(instalments, row.today);
    EXPECT_EQ(glance.paid, row.paid);
    EXPECT_EQ(glance.due, row.due);
    EXPECT_EQ(glance.open, row.open);
    EXPECT_EQ(glance.days_in_arrears, row.days);
    EXPECT_EQ(glance.arrears, money(row.arrears));
    EXPECT_EQ(glance.next_due, row.next);
  }
}

}  // namespace
}  // namespace kaunter
