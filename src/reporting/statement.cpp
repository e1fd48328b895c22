// Statement of account: per loan an opening row and the items since, debit in c1 and credit in c2;
// the report runs the balance over them. c7 to c14 take the same amounts apart by kind.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <optional>
#include <utility>

#include "core/session.h"
#include "core/values.h"
#include "reporting/staging.h"

namespace kaunter {
namespace {

// Columns of amounts.
constexpr int kDebit = 1;
constexpr int kCredit = 2;
constexpr int kInterest = 7;
constexpr int kDrawdown = 8;
constexpr int kInterestPaid = 9;
constexpr int kCapitalPaid = 10;
constexpr int kCharges = 11;
constexpr int kInterestAmt = 12;
constexpr int kExtraPaid = 13;
constexpr int kDiscount = 14;

// Literals by their column; a column that is not named takes 0.
using Amounts = std::vector<std::pair<int, std::string>>;

struct Item {
  std::string record_id;
  std::string s1;
  std::string s2;
  std::string date;  // a literal
  Amounts amounts;
};

class Statement {
 public:
  Statement(Connection& main, const StagedRun& run)
      : main_(main),
        run_(run),
        key_(QuoteStr(run.pcname) + "," + QuoteStr(run.report_name)),
        from_(NeededDate(run.date_from, "Date From")),
        cut_off_(SqlDate(
            NeededDate(run.date_to.empty() ? ServerNow(main, false) : run.date_to, "Date To"))),
        filter_(AndConditions(run.filters, "l.") + LoanRange(run)) {}

  // What the rows are made of; and the statements that write them, a batch for each step.
  void Read();
  void Compose() {
    for (void (Statement::*step)() :
         {&Statement::OpenRows, &Statement::Drawdowns, &Statement::Payments,
          &Statement::TotalInterest, &Statement::Charges, &Statement::MonthsOfBatch,
          &Statement::EarlierBatch, &Statement::TopUps}) {
      steps_.emplace_back();
      (this->*step)();
    }
  }
  void Write() {
    for (Batch& step : steps_) step.Send(main_);
  }

 private:
  static std::string LoanRange(const StagedRun& run) {
    if (run.id_from.empty()) return "";
    return fmt::format(" AND l.LoanID >= {} AND l.LoanID <= {}", QuoteStr(run.id_from),
                       QuoteStr(run.id_to.empty() ? run.id_from : run.id_to));
  }

  void OpenRows();
  void Drawdowns();
  void Payments();
  void TotalInterest();
  void Charges();
  void MonthsOfBatch();
  void EarlierBatch();
  void TopUps();

  // The rows of a statement that has its WHERE, filtered, up to the cut-off.
  Recordset UpToCutOff(std::string_view select, std::string_view date, std::string_view more = {}) {
    return main_.Query(fmt::format("{}{} AND {} <= {}{}", select, filter_, date, cut_off_, more));
  }
  bool Earlier(const Value& date) const {
    const std::optional<DateTime> day = DateOf(date);
    return day && *day < from_;
  }
  void List(const Value& loan_id, const Item& item) { List(loan_id, item, "", ""); }
  // `s11` is the column's name with its comma, and its literal.
  void List(const Value& loan_id, const Item& item, std::string_view s11,
            const std::string& s11_literal);
  void AddToOpening(const Value& loan_id, const Amounts& amounts);
  Batch& batch() { return steps_.back(); }

  Connection& main_;
  const StagedRun& run_;
  std::string key_;
  DateTime from_;
  std::string cut_off_;
  std::string filter_;

  Recordset loans_;
  Recordset drawdowns_;
  Recordset payments_;
  Recordset interests_;
  Recordset charges_;
  Recordset months_;
  Recordset earlier_batch_;
  Recordset top_ups_;
  std::vector<Batch> steps_;
};

// The filter asks for a drawdown's own company and loan: l is DrawDownMast there.
void Statement::Read() {
  loans_ = UpToCutOff(
      "SELECT l.LoanID,l.TrxDate,l.PayOutAmt,l.Bank,l.BankBranch,l.LoanAmt FROM LoanMast as l "
      "WHERE 1=1 ",
      "l.TrxDate");
  drawdowns_ = UpToCutOff(
      "SELECT l.LoanID,l.TrxDate,l.DrawDownAmt as [LoanAmt],ll.OldLoanCode,ll.Memo5 FROM "
      "DrawDownMast as l INNER JOIN LoanMast as ll on l.LoanID=ll.LoanID WHERE 1=1 ",
      "l.TrxDate");
  payments_ = UpToCutOff(
      "SELECT p.PayID,p.PayDate,p.LoanID,(p.PayAmt+p.IntAmt+p.ChargeAmt) as [Payment],p.Bank,"
      "p.ChqNo,p.IntPay,CapPay,p.PayExtra,p.IntAmt,p.CollectInfoID,p.DiscAmt FROM PaymentMast as p "
      "inner join LoanMast as l on l.LoanID=p.LoanID WHERE 1=1 ",
      "p.PayDate");
  interests_ = UpToCutOff("SELECT l.LoanID,l.TotLoanInt,l.TrxDate FROM LoanMast as l WHERE 1=1 ",
                          "l.TrxDate");
  charges_ = UpToCutOff(
      "SELECT c.ChargeID,c.LoanID,c.TrxDate,c.DueDate,c.ChargeAmt,c.PType,c.ChargeDesc FROM "
      "ChargeMast as c INNER JOIN LoanMast as l on l.LoanID=c.LoanID WHERE c.PType <> 'Batch'  AND "
      "c.PType <> 'Payment' ",
      "c.TrxDate");
  months_ = UpToCutOff(
      "SELECT DATEPART(Month,c.TrxDate) [Month], DATEPART(year,c.TrxDate) [Year],c.LoanID,"
      "MAX(c.BatchDate) [TrxDate],MIN(c.BatchDate) [MinTrxDate],MAX(c.DueDate) [DueDate],"
      "SUM(c.ChargeAmt) [ChargeAmt] FROM ChargeMast as c INNER JOIN LoanMast as l on "
      "l.LoanID=c.LoanID WHERE c.ChargeAmt > 0 ",
      "c.TrxDate",
      fmt::format(" AND c.PType = 'Batch' AND c.TrxDate >= {} group by DATEPART(Month,c.TrxDate) , "
                  "DATEPART(year,c.TrxDate),c.LoanID",
                  SqlDate(from_)));
  earlier_batch_ = main_.Query(fmt::format(
      "SELECT SUM(c.ChargeAmt) [ChargeAmt],c.LoanID as LoanID FROM ChargeMast as c INNER JOIN "
      "LoanMast as l on l.LoanID=c.LoanID WHERE c.ChargeAmt > 0 AND c.PType = 'Batch' AND "
      "c.TrxDate < {}{} GROUP BY c.LoanID",
      SqlDate(from_), filter_));
  top_ups_ = UpToCutOff(
      "SELECT p.PayID,p.PayDate,p.LoanID,p.TopAmt*p.TopTerm as [TopUp] FROM PaymentMast as p inner "
      "join LoanMast as l on l.LoanID=p.LoanID WHERE p.TopAmt*p.TopTerm <> 0 ",
      "p.PayDate");
}

std::string OpeningID(const Value& loan_id) { return "#-" + NullToEmpty(loan_id); }

void Statement::List(const Value& loan_id, const Item& item, std::string_view s11,
                     const std::string& s11_literal) {
  std::array<std::string_view, kDiscount + 1> amount;
  amount.fill("0");
  for (const auto& [column, literal] : item.amounts) {
    amount.at(static_cast<std::size_t>(column)) = literal;
  }
  batch().Add(fmt::format(
      "INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10{},c7,c8,c9,c10,"
      "c11,c12,c13,c14) VALUES ({},{},{},{},{},{},{},{},{}{},{})",
      s11, key_, QuoteStr(item.record_id), QuoteStr(item.s1), QuoteStr(item.s2), amount[kDebit],
      amount[kCredit], item.date, cut_off_, TextLiteral(loan_id), s11_literal,
      fmt::join(amount.begin() + kInterest, amount.end(), ",")));
}

void Statement::AddToOpening(const Value& loan_id, const Amounts& amounts) {
  std::string sums;
  for (const auto& [column, literal] : amounts) {
    sums += fmt::format("{}c{}=c{} + {}", sums.empty() ? "" : ",", column, column, literal);
  }
  batch().Add("UPDATE MasterReport SET " + sums + OfRow(run_, OpeningID(loan_id)));
}

void Statement::OpenRows() {
  const std::string day_before = SqlDate(from_.AddDays(-1));
  Recordset& loan = loans_;
  for (; !loan.Eof(); loan.MoveNext()) {
    const Value& id = loan.Field("LoanID");
    List(id, {OpeningID(id), "Balance BF", "", day_before, {}});
  }
}

void Statement::Drawdowns() {
  Recordset& row = drawdowns_;
  for (; !row.Eof(); row.MoveNext()) {
    const Value& id = row.Field("LoanID");
    const Value& date = row.Field("TrxDate");
    const std::string amount = AmountLiteral(row.Field("LoanAmt"));
    const Amounts amounts = {{kDebit, amount}, {kDrawdown, amount}};
    if (Earlier(date)) {
      AddToOpening(id, amounts);
    } else {
      List(id, {NullToEmpty(id), "Loan Drawdown", "", DateLiteral(date), amounts});
    }
  }
}

std::string Narration(const Recordset& payment) {
  const std::string means = NullToEmpty(payment.Field("CollectInfoID"));
  if (!SameText(means, "CHEQUE")) return means;
  return fmt::format("Cheque {} {}", NullToEmpty(payment.Field("Bank")),
                     NullToEmpty(payment.Field("ChqNo")));
}

void Statement::Payments() {
  Recordset& row = payments_;
  for (; !row.Eof(); row.MoveNext()) {
    const Value& id = row.Field("LoanID");
    const Value& date = row.Field("PayDate");
    const std::string discount = AmountLiteral(row.Field("DiscAmt"));
    Amounts amounts = {{kCredit, AmountLiteral(row.Field("Payment"))},
                       {kInterestPaid, AmountLiteral(row.Field("IntPay"))},
                       {kCapitalPaid, AmountLiteral(row.Field("CapPay"))},
                       {kInterestAmt, AmountLiteral(row.Field("IntAmt"))},
                       {kExtraPaid, AmountLiteral(row.Field("PayExtra"))}};
    if (Earlier(date)) {
      // The payment counts its discount already, so that is not added to the credit here. A listed
      // payment is shown net of the discount that stands below it.
      amounts.emplace_back(kDiscount, discount);
      AddToOpening(id, amounts);
      continue;
    }
    const std::string pay_id = NullToEmpty(row.Field("PayID"));
    const std::string narration = Narration(row);
    List(id, {pay_id, "Payment", narration, DateLiteral(date), amounts});
    if (!Money::FromText(discount).IsZero()) {
      List(id, {pay_id + "*",
                "Payment Discount",
                narration,
                DateLiteral(date),
                {{kCredit, discount}, {kDiscount, discount}}});
    }
  }
}

void Statement::TotalInterest() {
  Recordset& row = interests_;
  for (; !row.Eof(); row.MoveNext()) {
    const Value& id = row.Field("LoanID");
    const Value& date = row.Field("TrxDate");
    const std::string interest = AmountLiteral(row.Field("TotLoanInt"));
    const Amounts amounts = {{kDebit, interest}, {kInterest, interest}};
    if (Earlier(date)) {
      AddToOpening(id, amounts);
    } else {
      List(id, {NullToEmpty(id) + "-i", "Total Loan Interest", "", DateLiteral(date), amounts});
    }
  }
}

// How a charge is called, and the side that takes its amount as it stands: a credit note's is
// negative already, and is credited so.
struct ChargeKind {
  std::string_view ptype;
  std::string_view called;
  bool by_month = false;  // the month of its due date follows, else its own description
  int side = kDebit;
};
constexpr ChargeKind kChargeKinds[] = {
    {"Batch Loan Interest", "Loan Interest for ", true},
    {"Invoice", "Invoice - "},
    {"Credit Note", "CN - ", false, kCredit},
    {"Batch Term End Interest", "TE - "},
};

const ChargeKind& KindOf(const Value& ptype) {
  // A kind that this program does not write is a charge under its own description.
  static constexpr ChargeKind kOther = {"", ""};
  for (const ChargeKind& kind : kChargeKinds) {
    if (SameText(kind.ptype, Trim(NullToEmpty(ptype)))) return kind;
  }
  return kOther;
}

void Statement::Charges() {
  Recordset& row = charges_;
  for (; !row.Eof(); row.MoveNext()) {
    const Value& id = row.Field("LoanID");
    const Value& date = row.Field("TrxDate");
    const std::string amount = AmountLiteral(row.Field("ChargeAmt"));
    if (Earlier(date)) {
      AddToOpening(id, {{kDebit, amount}, {kCharges, amount}});  // whatever its kind
      continue;
    }
    const ChargeKind& kind = KindOf(row.Field("PType"));
    const std::optional<DateTime> due = DateOf(row.Field("DueDate"));
    const std::string what = kind.by_month ? (due ? Format(*due, "mmmm yyyy") : "")
                                           : NullToEmpty(row.Field("ChargeDesc"));
    List(id, {NullToEmpty(row.Field("ChargeID")),
              std::string(kind.called) + what,
              "",
              DateLiteral(date),
              {{kind.side, amount}, {kCharges, amount}}});
  }
}

void Statement::MonthsOfBatch() {
  Recordset& month = months_;
  for (; !month.Eof(); month.MoveNext()) {
    const Value& id = month.Field("LoanID");
    const std::string amount = AmountLiteral(month.Field("ChargeAmt"));
    if (Money::FromText(amount).IsZero()) continue;
    const std::string group = month.Field("Month").ToText() + month.Field("Year").ToText();
    const std::string first = ShowDate(month.Field("MinTrxDate"));
    const std::string last = ShowDate(month.Field("TrxDate"));
    List(id,
         {group + NullToEmpty(id),
          first == last ? "Overdue Interest for " + last
                        : fmt::format("Overdue Interest {} - {}", first, last),
          "",
          DateLiteral(month.Field("TrxDate")),
          {{kDebit, amount}, {kCharges, amount}}},
         ",s11", "," + QuoteStr(group));
  }
}

void Statement::EarlierBatch() {
  Recordset& sum = earlier_batch_;
  for (; !sum.Eof(); sum.MoveNext()) {
    const std::string amount = AmountLiteral(sum.Field("ChargeAmt"));
    AddToOpening(sum.Field("LoanID"), {{kDebit, amount}, {kCharges, amount}});
  }
}

// What a payment adds to its loan is owed like a drawdown.
void Statement::TopUps() {
  Recordset& row = top_ups_;
  for (; !row.Eof(); row.MoveNext()) {
    const Value& id = row.Field("LoanID");
    const std::string amount = AmountLiteral(row.Field("TopUp"));
    const Amounts amounts = {{kDebit, amount}, {kDrawdown, amount}};
    if (Earlier(row.Field("PayDate"))) {
      AddToOpening(id, amounts);
    } else {
      const std::string payment = NullToEmpty(row.Field("PayID"));
      List(id, {payment + "+", "Loan Top Up", payment, DateLiteral(row.Field("PayDate")), amounts});
    }
  }
}

}  // namespace

bool StageStatement(Session& session, Desk& desk, const StagedRun& run) {
  std::optional<Statement> statement;
  return Stage(
      session, desk, run, "an error occur during process statement of account",
      [&](Connection& main) {
        statement.emplace(main, run);
        statement->Read();
      },
      [&] { statement->Compose(); }, [&](Connection&) { statement->Write(); });
}

}  // namespace kaunter
