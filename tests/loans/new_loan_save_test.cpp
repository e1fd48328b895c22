// The save of a loan: the order of its checks, the write whole or not at all, the totals with their
// asymmetries, and what two desktops do to each other.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "loans/new_loan_frm.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

// Notes messages and questions in one list. Questions are answered yes; the manager's dialog as
// told.
class TalkingDesk : public SilentDesk {
 public:
  explicit TalkingDesk(Session& session) : session_(session) {}
  void Message(MessageKind, std::string_view title, std::string_view text) override {
    said.emplace_back(text);
    titles.emplace_back(title);
  }
  bool Ask(std::string_view title, std::string_view text) override {
    Message(MessageKind::question, title, text);
    // A question that comes back for ever is a fault of the test or of the screen.
    if (said.size() > 100) throw std::runtime_error("asked without end");
    return answer && text != refused_question;
  }
  void ShowModal(Screen&) override {
    ++approvals_asked;
    session_.OverrideOK = manager_agrees;
  }
  std::string last() const { return said.empty() ? "" : said.back(); }

  std::vector<std::string> said;
  std::vector<std::string> titles;
  bool answer = true;
  std::string refused_question;
  bool manager_agrees = false;
  int approvals_asked = 0;

 private:
  Session& session_;
};

constexpr char kLoan[] = "HQ0001-001";

class LoanSave : public ::testing::Test {
 protected:
  LoanSave() : office(Office::State::patched), desk(office.session) {
    Prepare(office.session);
    office.Run(
        "INSERT INTO CustMast (CustID,CustName,CompCode,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,"
        "TotTopUpAmt) VALUES ('HQ0001','O''Brien','HQ','ACTIVE',0,0,0,0)");
    office.Run("INSERT INTO NumberMast VALUES ('HQ0001','000','000')");
    for (const char* salesman : {"SLM1", "SLM2"}) {
      office.Run(std::string("INSERT INTO SalesmanMast (SalesmanID,TotAccComm) VALUES ('") +
                 salesman + "',0)");
    }
  }

  static void Prepare(Session& session) {
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    session.AllowEdit = true;
    session.settings.TransLogs = false;
  }

  std::unique_ptr<NewLoanFrm> Open(const std::string& mode, const std::string& loan = "") {
    return Open(office.session, desk, mode, loan);
  }
  static std::unique_ptr<NewLoanFrm> Open(Session& session, Desk& at, const std::string& mode,
                                          const std::string& loan) {
    session.CallerTag = mode;
    session.HandOverLoanID = loan;
    auto screen = std::make_unique<NewLoanFrm>(session, at);
    screen->Load();
    session.HandOverLoanID.clear();
    return screen;
  }

  // A personal loan, flat, 10,000 at 18 % over 12 months: 983.33 eleven times, then 983.37; the
  // balance is 11,800.
  static void Fill(NewLoanFrm& screen) {
    screen.CustID.SetText("HQ0001");
    screen.CustName.SetText("O'Brien");
    screen.CompCode.SetText("HQ");
    screen.TrxDate.SetText("31-01-2024");
    screen.NextDueDate.SetText("29-02-2024");
    screen.LoanTypeID.SetText("MONTH");
    screen.LoanType.SetText("Unsecured");
    screen.DragLoan.SetIndex(0);
    screen.LoanPurpose.SetText("FLAT");
    screen.LoanAmt.SetText("10,000.00");
    screen.InsRate.SetText("18");
    screen.LoanTerm.SetText("12");
    screen.LoanTerm2.SetText("0");
    screen.LoanTerm3.SetText("12");
    screen.LateChargePerDay.SetText("18");
    screen.TopUpAmt.SetText("100");
    screen.SalesmanID.SetText("SLM1");
    screen.SalesmanComm.SetText("50");
    screen.Command3.Click();
  }

  // 10,000 at 12 %: 888.49 a month on the running balance.
  static void FillFlexi(NewLoanFrm& screen) {
    Fill(screen);
    screen.DragLoan.SetIndex(1);
    screen.InsRate.SetText("12");
    screen.FirstPayment.SetText("888.49");
    screen.Command3.Click();
  }

  // As a face does it: a failure never leaves the screen.
  static void Save(NewLoanFrm& screen) {
    screen.Guard([&] { screen.SaveCmd.Click(); });
  }

  void NewLoan() {
    auto screen = Open("New Loan");
    Fill(*screen);
    Save(*screen);
    ASSERT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "1") << desk.last();
    desk.said.clear();
  }

  std::string Lines(const std::string& sql) {
    std::string all;
    const Recordset rows = office.session.Main().Query(sql);
    for (const auto& row : rows.rows()) {
      for (const Value& value : row) all += value.ToText() + "|";
      all += "\n";
    }
    return all;
  }
  // Everything that a loan's save touches.
  std::string Stored(const std::string& customer_columns) {
    return Lines("SELECT " + customer_columns + " FROM CustMast ORDER BY CustID") +
           Lines("SELECT * FROM LoanMast ORDER BY LoanID") +
           Lines("SELECT * FROM NumberMast ORDER BY CustID") +
           Lines("SELECT * FROM SalesmanMast ORDER BY SalesmanID") +
           Lines("SELECT AppID,LoanID FROM AppMast ORDER BY AppID") +
           Lines("SELECT * FROM SchMast ORDER BY LoanID,SchID") +
           Lines("SELECT * FROM SchMast2 ORDER BY LoanID,SchID") +
           Lines("SELECT * FROM PaymentList ORDER BY LoanID,SeqNo");
  }
  std::string Stored() { return Stored("*"); }
  // TotLoanAmt2 only falls, with each edit.
  std::string StoredButOne() { return Stored("CustID,TotLoan,TotLoanBal,TotTopUpAmt"); }

  std::string Totals() {
    return Lines("SELECT TotLoan,TotLoanBal,TotTopUpAmt,TotLoanAmt2 FROM CustMast");
  }
  std::string Commissions() {
    return Lines("SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID LIKE 'SLM%'");
  }

  // Fails statement `at` of the action, once or from there on; true when it was reached.
  bool FailAt(int at, bool stays, const std::function<void()>& act) {
    int count = 0;
    bool hit = false;
    office.session.Main().SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with("ROLLBACK")) return;
      ++count;
      if (count == at || (stays && count > at)) {
        hit = true;
        throw SqlError(1105, "the disk is full");
      }
    });
    act();
    office.session.Main().SetFaultHook({});
    return hit;
  }

  Office office;
  TalkingDesk desk;
};

// --- the checks

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
           f.CollateralID.Clear();
         },
         "Collateral Type required"},
        {"7 description",
         [](F& f) {
           f.LoanType.SetText("Secured");
           f.CollateralID.SetText("CAR");
           f.Memo2.Clear();
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

TEST_F(LoanChecks, AReasonBelowTheThresholdComesFromTheSettingOrIsLeftToPaper) {
  office.Run("UPDATE CompMast SET AMLALoan=100 WHERE CompCode='HQ'");
  office.session.settings.AutoLoanPurpose = "BUSINESS";
  auto screen = Open("New Loan");
  Fill(*screen);
  desk.refused_question = "Confirm to save ?";
  Save(*screen);
  EXPECT_EQ(screen->AMLACode.text(), "BUSINESS");
  EXPECT_EQ(desk.last(), "Confirm to save ?");

  office.Run("UPDATE CompMast SET AMLAWarning='1' WHERE CompCode='HQ'");
  screen = Open("New Loan");
  Fill(*screen);
  desk.said.clear();
  Save(*screen);
  ASSERT_EQ(desk.said.size(), 2u);
  EXPECT_EQ(desk.said[0],
            "AML/CFT Alert!\nLoan Amount RM10,000.00 more than BNM Cash Threshold Amount "
            "RM100.00\nPlease fill CDD Manually");
  EXPECT_EQ(screen->AMLACode.text(), "");
}

// --- the write

TEST_F(LoanSave, AFailureAtAnyStatementIsMendedByTheNextSave) {
  std::string whole;
  {
    auto screen = Open("New Loan");
    Fill(*screen);
    Save(*screen);
    ASSERT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
    EXPECT_EQ(desk.titles.back(), "New Loan");
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "12");
    whole = StoredButOne();
  }
  for (const bool stays : {false, true}) {
    bool hit = true;
    int before_commit = 0;
    int without_rows = 0;
    for (int at = 1; hit; ++at) {
      SCOPED_TRACE(at);
      desk.said.clear();
      ASSERT_LT(at, 400);
      for (const char* table : {"LoanMast", "SchMast", "SchMast2", "PaymentList", "NumberMast"}) {
        office.Run(std::string("DELETE FROM ") + table);
      }
      office.Run("INSERT INTO NumberMast VALUES ('HQ0001','000','000')");
      office.Run("UPDATE CustMast SET TotLoan=0,TotLoanBal=0,TotLoanAmt2=0,TotTopUpAmt=0");
      office.Run("UPDATE SalesmanMast SET TotAccComm=0");
      const std::string before = Stored();
      auto screen = Open("New Loan");
      Fill(*screen);
      hit = FailAt(at, stays, [&] { Save(*screen); });
      ASSERT_FALSE(office.session.Main().InTransaction());
      if (Stored() == before) {
        ++before_commit;
        EXPECT_EQ(screen->LoanID.text(), "");
        EXPECT_EQ(screen->LoanLBL.Text(), "New Loan");
      } else {
        EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "1");
        if (office.Scalar("SELECT COUNT(*) FROM SchMast") == "0") ++without_rows;
      }
      EXPECT_EQ(screen->LoanAmt.text(), "10,000.00");
      if (hit) Save(*screen);
      EXPECT_EQ(StoredButOne(), whole) << desk.last();
    }
    // The transaction has some eight statements, the two schedules some sixteen each.
    EXPECT_GT(before_commit, 8);
    EXPECT_GT(without_rows, 16);
  }
}

TEST_F(LoanSave, AFailedEditLeavesWhatWasStored) {
  NewLoan();
  const std::string before = Stored();
  bool hit = true;
  int failed = 0;
  for (int at = 1; hit; ++at) {
    ASSERT_LT(at, 200);
    auto screen = Open("Edit Loan", kLoan);
    screen->LoanAmt.SetText("12,000.00");
    screen->SalesmanID.SetText("SLM2");
    screen->Command3.Click();
    hit = FailAt(at, true, [&] { Save(*screen); });
    ASSERT_FALSE(office.session.Main().InTransaction()) << at;
    if (Stored() != before) break;
    ++failed;
    EXPECT_EQ(screen->LoanAmt.text(), "12,000.00") << at;
  }
  EXPECT_GT(failed, 8);
  EXPECT_EQ(Totals(), "12000|14160|100|-10000|\n");
  EXPECT_EQ(Commissions(), "0|\n50|\n");
}

TEST_F(LoanSave, ACustomerWithoutACounterIsToldWithoutATextOfTheDatabase) {
  office.Run("DELETE FROM NumberMast");
  auto screen = Open("New Loan");
  Fill(*screen);
  const std::string before = Stored();
  Save(*screen);
  EXPECT_EQ(desk.last(), "An error occurs during saving loan\n\n");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->LoanID.text(), "");
  ASSERT_FALSE(office.Log().empty());
  EXPECT_NE(office.Log().back().find("New Loan - error Rollback 0 - "), std::string::npos);
}

TEST_F(LoanSave, ALetterInANumberNobodyChecksIsToldUnderItsName) {
  auto screen = Open("New Loan");
  Fill(*screen);
  screen->SIBankAmt.SetText("1; DROP TABLE LoanMast");
  Save(*screen);
  EXPECT_NE(desk.last().find("An error occurs during saving loan\nSI Amount: "), std::string::npos)
      << desk.last();
  EXPECT_EQ(screen->focus(), &screen->SIBankAmt);
  screen->SIBankAmt.SetText("1,000.50");
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(office.Scalar("SELECT SIBankAmt FROM LoanMast"), "1000.5");
}

// --- the schedule that follows

TEST_F(LoanSave, OpenTermsAreGeneratedAnewAndTakeTheLinesEditedByHand) {
  NewLoan();
  auto screen = Open("Edit Loan", kLoan);
  // 100 of capital from the second instalment to the first.
  const auto edit = [&](int row, const char* payable) {
    ASSERT_TRUE(screen->vsd3.Edit(row, 2, payable));
  };
  edit(0, "1083.33");
  edit(1, "883.33");
  screen->SchChanged.SetChecked(true);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(desk.titles.back(), "Edit Loan");
  EXPECT_EQ(
      Lines("SELECT PayableAmt,CapitalAmt,InterestAmt FROM SchMast WHERE SchID<4 ORDER BY SchID"),
      "1083.33|933.33|150|\n883.33|733.33|150|\n983.33|833.33|150|\n");
}

TEST_F(LoanSave, LockedTermsLeaveTheScheduleAlone) {
  NewLoan();
  office.Run("UPDATE LoanMast SET PayOutAmt=0.01");
  office.Run("UPDATE SchMast SET DueDate='2024-03-05' WHERE SchID=1");
  const std::string before = Lines("SELECT * FROM SchMast ORDER BY SchID");
  auto screen = Open("Edit Loan", kLoan);
  EXPECT_FALSE(screen->LoanAmt.enabled());
  screen->SchChanged.SetChecked(true);
  screen->Memo1.SetText("called");
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(Lines("SELECT * FROM SchMast ORDER BY SchID"), before);
  EXPECT_EQ(office.Scalar("SELECT Memo1 FROM LoanMast"), "called");
}

TEST_F(LoanSave, OpenTermsOfALoanWithPaymentsKeepWhatWasPaid) {
  NewLoan();
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,SchID,PayAmt,"
      "InstalAmt) VALUES "
      "('HQ0001-001-001','HQ0001-001','HQ0001','HQ','2024-02-29',1,983.33,983.33)");
  auto screen = Open("Edit Loan", kLoan);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(Lines("SELECT Payment FROM SchMast WHERE SchID<3 ORDER BY SchID"), "983.33|\n0|\n");
  EXPECT_EQ(office.Scalar("SELECT LoanBal FROM LoanMast"), "10816.67");
  EXPECT_EQ(office.Scalar("SELECT TotLoanBal FROM CustMast"), "10816.67");
}

// --- totals

TEST_F(LoanSave, TotalsFollowTheLoanSaveTheToldAsymmetries) {
  NewLoan();
  EXPECT_EQ(Totals(), "10000|11800|100|0|\n");
  EXPECT_EQ(Commissions(), "50|\n0|\n");
  auto screen = Open("Edit Loan", kLoan);
  screen->LoanAmt.SetText("12,000.00");
  screen->TopUpAmt.SetText("20");
  screen->SalesmanID.SetText("SLM2");
  screen->SalesmanComm.SetText("70");
  screen->Command3.Click();
  Save(*screen);
  EXPECT_EQ(Totals(), "12000|14160|20|-10000|\n");
  EXPECT_EQ(Commissions(), "0|\n70|\n");
  const struct {
    const char* mode;
    const char* told;
    const char* totals;
    const char* log;
  } steps[] = {
      {"Close Loan", "Loan ID HQ0001-001 closed", "12000|0|20|-20000|\n",
       "Close Loan - Loan ID HQ0001-001 closed"},
      {"Open Loan", "Loan ID HQ0001-001 opened", "12000|14160|20|-30000|\n",
       "Open Loan - Loan ID HQ0001-001 opened"},
      {"Delete Loan", "Loan ID HQ0001-001 deleted", "0|0|0|-40000|\n",
       "Delete Loan - Loan ID HQ0001-001 deleted"},
  };
  for (const auto& step : steps) {
    screen = Open(step.mode, kLoan);
    desk.said.clear();
    Save(*screen);
    EXPECT_EQ(desk.last(), step.told);
    EXPECT_EQ(Totals(), step.totals) << step.mode;
    EXPECT_NE(office.Log().back().find(step.log), std::string::npos) << office.Log().back();
    EXPECT_EQ(screen->LoanID.text(), "") << step.mode;
  }
  EXPECT_EQ(Commissions(), "0|\n0|\n");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "0");
}

TEST_F(LoanSave, ANewFlexiLoanCountsWithItsInstalmentsAndGoesWithItsBalance) {
  auto screen = Open("New Loan");
  FillFlexi(*screen);
  Save(*screen);
  // Twelve months less the last, which nobody knows yet: 888.49 x 11.
  EXPECT_EQ(Totals(), "10000|9773.39|100|0|\n");
  screen = Open("Delete Loan", kLoan);
  Save(*screen);
  EXPECT_EQ(Totals(), "0|-226.61|0|-10000|\n");
}

TEST_F(LoanSave, ALoanWithPaymentsIsAskedForTwice) {
  NewLoan();
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,PayAmt) VALUES ('HQ0001-001-001','HQ0001-001',1)");
  const std::string question = "Warning! 1 payment record(s)\nwill be deleted\n Proceed on ?";
  auto screen = Open("Delete Loan", kLoan);
  desk.refused_question = question;
  const std::string before = Stored();
  Save(*screen);
  EXPECT_EQ(desk.last(), question);
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->LoanID.text(), kLoan);
  // A failure keeps everything too, and says so.
  desk.refused_question.clear();
  for (int at = 1; at < 40; ++at) {
    desk.said.clear();
    if (!FailAt(at, false, [&] { Save(*screen); })) break;
    const bool committed = std::find(desk.said.begin(), desk.said.end(),
                                     "Loan ID HQ0001-001 deleted") != desk.said.end();
    if (committed) break;
    EXPECT_EQ(Stored(), before) << at << desk.last();
  }
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast"), "0");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "0");
}

// --- audit and accounting

TEST_F(LoanSave, TheAuditShowsTheScreenAgainstWhatIsStored) {
  office.session.settings.TransLogs = true;
  office.session.LogsConn =
      OpenSqlite("LogsConn", office.folder.File("logs.db"), true, office.session.clock);
  office.session.LogsConn->Execute(
      "CREATE TABLE TransLogs (TrxDate datetime NULL, UserID nvarchar(50) NULL, UserName "
      "nvarchar(50) NULL, ConmpCode nvarchar(50) NULL, Type nvarchar(50) NULL, Module "
      "nvarchar(50) NULL, TrxID nvarchar(50) NULL, Remarks nvarchar(1000) NULL)");
  NewLoan();
  auto screen = Open("Edit Loan", kLoan);
  screen->LoanAmt.SetText("12,000.00");
  screen->Command3.Click();
  Save(*screen);
  std::string all;
  const Recordset rows = office.session.LogsConn->Query(
      "SELECT Type,Module,ConmpCode,TrxID,Remarks FROM TransLogs ORDER BY Type");
  for (const auto& row : rows.rows()) {
    for (const Value& value : row) all += value.ToText() + "|";
    all += "\n";
  }
  EXPECT_EQ(all,
            "Create|Loan|HQ|HQ0001-001|Date 31-01-2024/31-01-2024, Loan Amount "
            "10,000.00/10,000.00, Capital 0.00/0.00|\n"
            "Modify|Loan|HQ|HQ0001-001|Date 31-01-2024/31-01-2024, Loan Amount "
            "12,000.00/10,000.00, Capital 0.00/0.00|\n");
}

TEST_F(LoanSave, TheFeesGoToTheAccountsAndAFailedLinkKeepsTheLoan) {
  Session& session = office.session;
  session.settings.LinkAcc = "1";
  office.Run("UPDATE LinkAccMast SET LinkAccCode='500-0000'");
  session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
  const auto save = [&] {
    auto screen = Open("New Loan");
    Fill(*screen);
    screen->TermInt.SetText("1,200.00");
    screen->DepositAmt.SetText("50.10");
    screen->DepositAmt2.SetText("7");  // no fee
    Save(*screen);
  };
  save();
  const auto alert = std::find(desk.said.begin(), desk.said.end(),
                               "Alert !!\nLoan ID HQ0001-001 from O'Brien not linked");
  EXPECT_NE(alert, desk.said.end());
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "12");

  session.AED->Execute(
      "CREATE TABLE TM_ARInvoice (DocNo nvarchar(50), DocDate datetime, DebtorCode nvarchar(50), "
      "Total decimal(18, 2))");
  session.AED->Execute(
      "CREATE TABLE TM_ARInvoiceDTL (DocNo nvarchar(50), SalesAccountNo nvarchar(50), Description "
      "nvarchar(50), Amount decimal(18, 2))");
  session.AED->Execute(
      "CREATE TABLE TM_ARPayment (DocNo nvarchar(50), DocDate datetime, DebtorCode nvarchar(50), "
      "Description nvarchar(50), PaymentMethod nvarchar(50), ChequeNo nvarchar(50), PaymentAmount "
      "decimal(18, 2))");
  save();
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT Total FROM TM_ARInvoice"), "1250.1");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT COUNT(*) FROM TM_ARInvoiceDTL"), "7");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT SUM(Amount) FROM TM_ARInvoiceDTL"), "1250.1");
  EXPECT_EQ(ScalarQuery(*session.AED,
                        "SELECT Amount FROM TM_ARInvoiceDTL WHERE Description='Loan for O''Brien'"),
            "0");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT Description FROM TM_ARPayment"),
            "Loan Charges for O'Brien");
}

// --- two desktops

class TwoDesktops : public LoanSave {
 protected:
  TwoDesktops() : desk2(session2) {
    session2.AppPath = office.session.AppPath;
    session2.CurrentUserID = "BEN";
    session2.clock.Set({2024, 1, 31, 14, 5, 9});
    session2.MainConn =
        OpenSqlite("MainConn", office.folder.File("office.db"), false, session2.clock);
    Prepare(session2);
  }
  Session session2;
  TalkingDesk desk2;
};

TEST_F(TwoDesktops, TwoNewLoansOfOneCustomerGetTwoNumbers) {
  auto a = Open("New Loan");
  auto b = Open(session2, desk2, "New Loan", "");
  Fill(*a);
  Fill(*b);
  Save(*a);
  Save(*b);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(desk2.last(), "Loan ID HQ0001-002 saved");
  EXPECT_EQ(Totals(), "20000|23600|200|0|\n");
}

TEST_F(TwoDesktops, AnEditOfFiguresThatHaveChangedSinceIsRefused) {
  NewLoan();
  auto a = Open("Edit Loan", kLoan);
  auto b = Open(session2, desk2, "Edit Loan", kLoan);
  a->LoanAmt.SetText("12,000.00");
  a->Command3.Click();
  Save(*a);
  const std::string before = Stored();
  b->Memo1.SetText("my remark");
  Save(*b);
  EXPECT_EQ(desk2.last(),
            "An error occurs during saving loan\nLoan HQ0001-001 was changed meanwhile, Please "
            "load it again\n");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(b->Memo1.text(), "my remark");
  // A loan that is gone is told by its number.
  auto c = Open("Delete Loan", kLoan);
  Save(*c);
  Save(*b);
  EXPECT_EQ(desk2.last(), "An error occurs during saving loan\nHQ0001-001 not found\n");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "0");
}

}  // namespace
}  // namespace kaunter
