// Daily account report: the money that moved in the period, and a line per company with what moved
// before it.
#include <fmt/format.h>

#include "core/log.h"
#include "core/session.h"
#include "core/values.h"
#include "reporting/staging.h"

namespace kaunter {
namespace {

// Literals.
struct Movement {
  std::string record_id;
  std::string user = "''";
  std::string company;
  std::string description;
  std::string date;
  std::string paid_out = "0";  // c2 and, for a drawdown, c7
  std::string paid_out2 = "0";
  std::string taken_in = "0";  // c3
  std::string expense = "0";   // c4
  std::string top_up = "0";    // c5
  std::string loan_type = "''";
  std::string old_code = "''";
};

// "Tan Ah Kow (PBB 000123) - new customer".
std::string Described(const Recordset& row, std::string_view who, bool with_memo) {
  std::string text = NullToEmpty(row.Field(who));
  if (const std::string cheque = NullToEmpty(row.Field("ChqNo")); !cheque.empty()) {
    text += fmt::format(" ({} {})", NullToEmpty(row.Field("Bank")), cheque);
  }
  if (!with_memo) return QuoteStr(text);
  if (const std::string memo = NullToEmpty(row.Field("Memo1")); !memo.empty()) {
    text += " - " + memo;
  }
  return QuoteStr(text);
}

class Account {
 public:
  Account(Connection& main, const StagedRun& run)
      : main_(main),
        run_(run),
        from_(NeededDate(run.date_from, "Date From")),
        to_literal_(SqlDate(NeededDate(run.date_to, "Date To"))) {
    for (const StagedFilter& list : run.filters) {
      (SameText(ColumnOf(list), "Bank") ? banks_ : companies_).push_back(list);
    }
    filters_ = AndConditions(companies_, "a.") + AndConditions(banks_, "a.");
  }

  void Work() {
    Drawdowns();
    Payments();
    Expenses();
    OpeningLines();
    OpeningSums();
  }

 private:
  Recordset InPeriod(std::string_view select, std::string_view date) {
    return main_.Query(fmt::format("{0} WHERE ({1} >= {2} AND {1} <= {3}){4}", select, date,
                                   SqlDate(from_), to_literal_, filters_));
  }
  Recordset Before(std::string_view select, std::string_view date) {
    return main_.Query(fmt::format("{} WHERE ({} < {}){} GROUP BY a.CompCode", select, date,
                                   SqlDate(from_), filters_));
  }

  void Insert(const Movement& row) {
    batch_.Add(fmt::format(
        "INSERT MasterReport (pcname,reportname,recordid,S2,S3,S4,C1,C2,C3,C4,c5,c6,c7,c8,D1,s5,s6)"
        " VALUES ({},{},{},{},{},{},0,{},{},{},{},0,{},0,{},{},{})",
        QuoteStr(run_.pcname), QuoteStr(run_.report_name), row.record_id, row.user, row.company,
        row.description, row.paid_out, row.taken_in, row.expense, row.top_up, row.paid_out2,
        row.date, row.loan_type, row.old_code));
  }

  void Drawdowns();
  void Payments();
  void Expenses();
  void OpeningLines();
  void OpeningSums();
  void SetOpening(const Recordset& sum, const std::string& amounts) {
    batch_.Add("UPDATE MasterReport SET " + amounts +
               OfRow(run_, "#-" + NullToEmpty(sum.Field("CompCode"))));
  }

  Connection& main_;
  const StagedRun& run_;
  DateTime from_;
  std::string to_literal_;
  std::vector<StagedFilter> companies_;
  std::vector<StagedFilter> banks_;
  std::string filters_;
  Batch batch_;
};

void Account::Drawdowns() {
  Recordset row = InPeriod(
      "SELECT a.TrxDate,a.LoanID,a.UserID,a.CompCode,a.DrawDownAmt,0-a.DrawDownAmt as [PayOutAmt],"
      "c.CustName,l.OldLoanCode,l.LoanType,l.Memo1,a.Bank,a.ChqNo FROM DrawDownMast as a inner "
      "join "
      "LoanMast as l on a.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID",
      "a.TrxDate");
  for (; !row.Eof(); row.MoveNext()) {
    Movement drawdown;
    drawdown.record_id = TextLiteral(row.Field("LoanID"));
    drawdown.user = TextLiteral(row.Field("UserID"));
    drawdown.company = TextLiteral(row.Field("CompCode"));
    drawdown.description = Described(row, "CustName", true);
    drawdown.date = DateLiteral(row.Field("TrxDate"));
    drawdown.paid_out = drawdown.paid_out2 = AmountLiteral(row.Field("DrawDownAmt"));
    drawdown.loan_type = TextLiteral(row.Field("LoanType"));
    drawdown.old_code = TextLiteral(row.Field("OldLoanCode"));
    Insert(drawdown);
  }
  batch_.Send(main_);
}

void Account::Payments() {
  Recordset row = InPeriod(
      "SELECT a.PayID,a.PayDate,a.UserID,a.CompCode,(a.PayAmt+a.IntAmt+a.CollectorAmt+a.ChargeAmt-"
      "a.DiscAmt) as TotAmt,0-a.TopUpAmt as [TopUpAmt],b.CustName, l.OldLoanCode,a.Memo1,a.Bank,"
      "a.ChqNo FROM PaymentMast as a INNER JOIN CustMast as b on a.CustID=b.CustID inner join "
      "loanmast as l on a.loanid=l.loanid ",
      "a.PayDate");
  for (; !row.Eof(); row.MoveNext()) {
    Movement payment;
    payment.record_id = TextLiteral(row.Field("PayID"));
    payment.user = TextLiteral(row.Field("UserID"));
    payment.company = TextLiteral(row.Field("CompCode"));
    payment.description = Described(row, "CustName", true);
    payment.date = DateLiteral(row.Field("PayDate"));
    payment.taken_in = AmountLiteral(row.Field("TotAmt"));
    payment.top_up = AmountLiteral(row.Field("TopUpAmt"));
    payment.old_code = TextLiteral(row.Field("OldLoanCode"));
    Insert(payment);
  }
  batch_.Send(main_);
}

void Account::Expenses() {
  Recordset row = InPeriod(
      "SELECT a.TrxID,a.TrxDate,a.UserID,a.CompCode,(a.DebitAmt-a.CreditAmt) as TotAmt,a.TrxDesc,"
      "a.Bank,a.ChqNo FROM PersonalExp as a ",
      "a.TrxDate");
  for (; !row.Eof(); row.MoveNext()) {
    Movement expense;
    expense.record_id = TextLiteral(row.Field("TrxID"));
    expense.user = TextLiteral(row.Field("UserID"));
    expense.company = TextLiteral(row.Field("CompCode"));
    expense.description = Described(row, "TrxDesc", false);
    expense.date = DateLiteral(row.Field("TrxDate"));
    expense.expense = AmountLiteral(row.Field("TotAmt"));
    Insert(expense);
  }
  batch_.Send(main_);
}

// Written also for the report file that hides them.
void Account::OpeningLines() {
  std::string select = "SELECT a.CompCode FROM Compmast as a ";
  const char* joint = " WHERE ";
  for (const StagedFilter& list : companies_) {
    if (list.values.empty()) continue;
    select += joint + ListCondition(list, "a.");
    joint = " AND ";
  }
  Recordset row = main_.Query(select);
  for (; !row.Eof(); row.MoveNext()) {
    Movement opening;
    opening.record_id = QuoteStr("#-" + NullToEmpty(row.Field("CompCode")));
    opening.company = TextLiteral(row.Field("CompCode"));
    opening.description = "'OPEN BALANCE'";
    opening.date = SqlDate(from_.AddDays(-1));
    Insert(opening);
  }
  batch_.Send(main_);
}

void Account::OpeningSums() {
  Recordset sum = Before("SELECT a.CompCode,sum(a.DrawDownAmt) as [LoanAmt] FROM DrawDownMast as a",
                         "a.TrxDate");
  for (; !sum.Eof(); sum.MoveNext()) {
    SetOpening(sum, "C1=0,C2=" + AmountLiteral(sum.Field("LoanAmt")));
  }
  batch_.Send(main_);
  sum = Before(
      "SELECT a.CompCode,sum((a.PayAmt+a.IntAmt+a.CollectorAmt+a.ChargeAmt-a.DiscAmt)) as [TotAmt],"
      "sum(0-a.TopUpAmt) as [TopUpAmt] FROM PaymentMast as a",
      "a.PayDate");
  for (; !sum.Eof(); sum.MoveNext()) {
    SetOpening(sum, "c3=" + AmountLiteral(sum.Field("TotAmt")) +
                        ",c5=" + AmountLiteral(sum.Field("TopUpAmt")));
  }
  batch_.Send(main_);
  sum = Before("SELECT a.CompCode,sum((a.DebitAmt-a.CreditAmt)) as [TotAmt] FROM PersonalExp as a",
               "a.TrxDate");
  for (; !sum.Eof(); sum.MoveNext()) {
    SetOpening(sum, "c4=" + AmountLiteral(sum.Field("TotAmt")));
  }
  batch_.Send(main_);
}

// Without the number of the error that other saves log.
void LogFailure(const Session& session, const std::exception& failure) {
  try {
    WriteLog(session, LogLine(session, fmt::format("{} - error Rollback - {}", session.MsgTitle,
                                                   failure.what())));
  } catch (const std::exception&) {
    // The failure itself is told all the same.
  }
}

}  // namespace

bool StageAccountReport(Session& session, Desk& desk, const StagedRun& run) {
  // The text speaks of saving; it is this report's own.
  return Stage(
      session, desk, run, "an error occur during saving expenses",
      [&](Connection& main) { Account(main, run).Work(); }, LogFailure);
}

}  // namespace kaunter
