// An office with a customer, a salesman and loans in it, a desk that agrees to everything, and the
// means to let the database fail at each statement in turn.
#pragma once

#include <fmt/format.h>

#include <functional>
#include <string>

#include "core/password_screens.h"
#include "loans/loan_totals.h"
#include "loans/schedule_store.h"
#include "screen/control.h"
#include "screen/grid.h"
#include "screen/report_job.h"
#include "tests/core/office.h"
#include "tests/loans/with_figures.h"

namespace kaunter {

// Says yes, until told otherwise; a manager signs in when told to. Keeps what it was asked, shown
// and given to print.
class AgreeingDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    questions.emplace_back(text);
    if (on_ask) on_ask();
    return agrees && text != refused;
  }
  void ShowModal(Screen& screen) override {
    if (dynamic_cast<frmUserSignIn*>(&screen) == nullptr) return;
    ++asked_manager;
    if (manager != nullptr) manager->OverrideOK = true;
  }
  bool CanShow(std::string_view screen) const override {
    return can_show == "*" || screen == can_show;
  }
  void Show(std::string_view screen) override {
    shown.emplace_back(screen);
    if (on_show) on_show();
  }
  void Print(const ReportJob& job) override { printed.push_back(job); }

  bool agrees = true;
  std::string refused;                    // the question that gets a no
  Session* manager = nullptr;             // set: a manager approves there
  std::string can_show;                   // a screen, or * for all of them
  std::function<void()> on_ask, on_show;  // what happens while a question or a screen stands
  int asked_manager = 0;
  std::vector<std::string> questions, shown;
  std::vector<ReportJob> printed;
};

// As a person does it: comes, types, goes.
inline void Put(TextBox& box, const std::string& text) {
  box.Enter();
  ASSERT_TRUE(box.Type(text)) << box.name();
  box.Leave();
}
// A column of a list, from its top.
inline std::string Column(const Grid& grid, int column) {
  std::string all;
  for (int row = 0; row < grid.RowCount(); ++row) all += grid.Cell(row, column) + " ";
  return all;
}
// A row a line, a blank between two fields.
inline std::string PlainLines(Connection& main, const std::string& sql) {
  std::string text;
  const Recordset rows = main.Query(sql);
  for (const auto& row : rows.rows()) {
    for (const Value& field : row) text += (&field == &row.front() ? "" : " ") + field.ToText();
    text += "\n";
  }
  return text;
}

struct LoanOffice {
  LoanOffice() { Begin(); }

  void Begin() {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    office.session.settings.TransLogs = false;
    office.Run(
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,"
        "TotTopUpAmt) VALUES ('HQ0001','HQ','Tan ''Ah'' Kow','ACTIVE',0,0,0,0);"
        "INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('HQ0001','000','000');"
        "INSERT INTO SalesmanMast (SalesmanID,TotAccComm,TotPayComm) VALUES ('SAM',0,0)");
  }

  Connection& main() { return office.session.Main(); }
  std::string Scalar(const std::string& sql) { return office.Scalar(sql); }

  // A stored loan of 12 per cent with its schedule, first due on 31-01-2024, in no total yet.
  void MakeLoan(const std::string& id, LoanScheme scheme, const std::string& amount,
                const std::string& term, const std::string& code = "MONTH") {
    LoanTerms terms;
    terms.DragLoan = scheme;
    terms.LoanTypeID = code;
    terms.NextDueDate = {2024, 1, 31};
    terms.LoanAmt = amount;
    terms.InsRate = "12";
    terms.LoanTerm = terms.LoanTerm3 = term;
    terms.LoanTerm2 = "0";
    terms = WithFigures(terms);
    if (terms.FirstPayment.empty()) terms.FirstPayment = terms.InstallmentAmt;
    main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,LoanGroupID,DragLoan,LoanTypeID,"
        "LoanTerm,TrxDate,NextDueDate,LoanAmt,LoanAmt2,TopUpAmt,InsRate,InstallmentAmt,"
        "InstallmentAmt2,FirstPayment,LastPayment,LoanBal,SalesmanID,SalesmanComm) VALUES "
        "({},'HQ0001','HQ','ACTIVE','PINJAMAN SEMASA',{},{},{},'2024-01-05','2024-01-31',{},{},5,"
        "12,{},{},{},{},{},'SAM',7.5)",
        QuoteStr(id), scheme == LoanScheme::kFlexi ? "'1'" : "'0'", QuoteStr(code), QuoteStr(term),
        amount, amount, terms.InstallmentAmt, terms.InstallmentAmt2,
        StripCommaOrZero(terms.FirstPayment), StripCommaOrZero(terms.LastPayment),
        StripCommaOrZero(terms.LoanBal)));
    main().Execute(fmt::format("Insert into NumberMast values ({},'001','001')", QuoteStr(id)));
    GenerateSchedule(main(), {id, "HQ0001"}, terms, false);
  }

  void Pay(const std::string& pay_id, const std::string& loan_id, const std::string& date,
           const std::string& instalment, const std::string& extra = "0") {
    main().Execute(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,InstalAmt,PayExtra,PayAmt) "
        "VALUES ({},{},'HQ0001','HQ',{},{},{},{}+{})",
        QuoteStr(pay_id), QuoteStr(loan_id), QuoteStr(date), instalment, extra, instalment, extra));
  }

  LoanFigures Figures(const std::string& id) {
    return ReadLoanFigures(main().Query("SELECT * FROM LoanMast WHERE LoanID=" + QuoteStr(id)));
  }

  std::string Lines(const std::string& sql) { return PlainLines(main(), sql); }

  // Everything that a loan touches.
  std::string Stored() {
    std::string all;
    for (const char* table :
         {"LoanMast", "SchMast", "SchMast2", "PaymentList", "PaymentMast", "ChargeMast",
          "DrawDownMast", "ChqMast", "FollowUpMast", "AppMast", "CustMast", "SalesmanMast",
          "NumberMast", "GoldTransMast", "LoanCollateral", "HolidayMast", "Systemast"}) {
      all +=
          fmt::format("{}\n{}", table, Lines(fmt::format("SELECT * FROM {} ORDER BY 1,2", table)));
    }
    return all;
  }

  bool FailAt(int at, const std::function<void()>& act) {
    return office.FailAt(at, Office::Failure::passes, act);
  }

  // The act fails at each of its statements in turn and leaves everything as it was, with no
  // transaction open; then it runs through, at the latest when what fails lies behind its commit.
  // Gives the number of statements up to there; 0 when a failure left a trace.
  int FailEverywhere(const std::function<void()>& act) {
    const std::string before = Stored();
    for (int at = 1; at < 500; ++at) {
      if (!FailAt(at, act) || committed) return at - 1;
      if (main().InTransaction() || Stored() != before) {
        ADD_FAILURE() << "a failure at statement " << at << " left a trace";
        return 0;
      }
    }
    return 0;
  }

  Office office{Office::State::patched};
  bool& committed = office.committed;
  AgreeingDesk desk;
};

}  // namespace kaunter
