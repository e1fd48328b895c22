// A counter that lends: an office with one customer and two salesmen, a desk that notes what is
// said, and the loan screen filled with loans whose figures are worked out by hand.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "loans/new_loan_frm.h"
#include "tests/core/office.h"

namespace kaunter {

// Notes messages and questions in one list. Questions are answered yes; the manager's dialog as
// told.
class TalkingDesk : public SilentDesk {
 public:
  explicit TalkingDesk(Session& session) : session_(session) {}
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    SilentDesk::Message(kind, title, text);
    said.emplace_back(text);
    titles.emplace_back(title);
  }
  bool Ask(std::string_view title, std::string_view text) override {
    Message(MessageKind::question, title, text);
    // A question that comes back for ever is a fault of the test or of the screen.
    if (said.size() > 100) throw std::runtime_error("asked without end");
    return answer && text != refused_question;
  }
  // A picker closes with what is picked.
  void Show(std::string_view) override {
    session_.PickerName.clear();
    session_.CallerTag = picked;
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
  std::string picked;
  bool manager_agrees = false;
  int approvals_asked = 0;

 private:
  Session& session_;
};

inline constexpr char kLoan[] = "HQ0001-001";

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

  std::string Lines(const std::string& sql) { return office.Lines(sql, "|"); }
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

  using Failure = Office::Failure;

  Office office;
  TalkingDesk desk;
};

}  // namespace kaunter
