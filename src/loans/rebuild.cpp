#include "loans/rebuild.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "core/values.h"
#include "loans/charge_totals.h"
#include "loans/replay.h"
#include "loans/schedule_store.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr const char* kLoanRunning = "PINJAMAN SEMASA";
constexpr const char* kLoanDone = "PINJAMAN SELESAI";

Money ShownScalar(Connection& main, const std::string& sql) {
  const Recordset row = main.Query(sql);
  return row.Eof() ? Money() : ReplayAmount(row.Field(0));
}

std::string DateLiteral(const std::optional<DateTime>& date) {
  return date ? SqlDate(*date) : "null";
}

std::string DateTimeLiteral(const Value& value) {
  return value.AsDate() != nullptr ? SqlDateTime(*value.AsDate()) : "null";
}

ReplayLine ReadLine(const Recordset& row) {
  return {.SchID = CLng(row.Field("SchID").ToText()),
          .DueDate = ReplayDate(row.Field("DueDate")),
          .PayableAmt = ReplayAmount(row.Field("PayableAmt")),
          .CapitalAmt = ReplayAmount(row.Field("CapitalAmt")),
          .InterestAmt = ReplayAmount(row.Field("InterestAmt")),
          .Payment = ReplayAmount(row.Field("Payment")),
          .CapitalPayment = ReplayAmount(row.Field("CapitalPayment")),
          .InterestPayment = ReplayAmount(row.Field("InterestPayment")),
          .PayExtra = ReplayAmount(row.Field("PayExtra"))};
}

ReplayPayment ReadPayment(const Recordset& row) {
  return {.PayID = NullToEmpty(row.Field("PayID")),
          .PayDate = ReplayDate(row.Field("PayDate")),
          .IntAmt = ReplayAmount(row.Field("IntAmt")),
          .ChargeAmt = ReplayAmount(row.Field("ChargeAmt")),
          .DiscAmt = ReplayAmount(row.Field("DiscAmt")),
          .TopTerm = ReplayAmount(row.Field("TopTerm")),
          .TopAmt = ReplayAmount(row.Field("TopAmt")),
          .InstalAmt = ReplayAmount(row.Field("InstalAmt")),
          .PayExtra = ReplayAmount(row.Field("PayExtra")),
          .Memo5 = ReplayAmount(row.Field("Memo5"))};
}

// The rows of a loan's schedule where they are stored, a statement each.
class StoredRows : public ReplayRows {
 public:
  // `loan_id` as a literal.
  StoredRows(Connection& main, std::string loan_id) : main_(main), loan_id_(std::move(loan_id)) {}

  std::vector<ReplayLine> Lines() override {
    return Read(main_.Query(
        fmt::format("SELECT * FROM SchMast WHERE LoanID={} ORDER BY DueDate", loan_id_)));
  }

  std::vector<ReplayLine> OpenLines() override { return Read(QueryOpen()); }

  std::optional<ReplayLine> FirstOpenLine() override {
    Recordset rows = QueryOpen();
    if (rows.Eof()) return std::nullopt;
    ReplayLine first = ReadLine(rows);
    for (rows.MoveNext(); !rows.Eof() && ReplayDate(rows.Field("DueDate")) == first.DueDate;
         rows.MoveNext()) {
      const ReplayLine line = ReadLine(rows);
      if (Earlier(line, first)) first = line;
    }
    return first;
  }

  void Derive(const ReplayLine& line, Money capital, Money interest, Money balance) override {
    main_.Execute(fmt::format(
        "UPDATE SchMast SET CapitalAmt={},InterestAmt={},PayableAmt={},LoanBal={} WHERE "
        "LoanID={} AND SchID={}",
        capital.ToText(), interest.ToText(), (capital + interest).ToText(), balance.ToText(),
        loan_id_, line.SchID));
  }

  void Pay(const ReplayLine& line, Money paid, Money capital, Money interest,
           Money balance) override {
    main_.Execute(fmt::format(
        "UPDATE SchMast SET Payment={},CapitalPayment={},InterestPayment={},LoanBal={} WHERE "
        "LoanID={} AND SchID={}",
        paid.ToText(), capital.ToText(), interest.ToText(), balance.ToText(), loan_id_,
        line.SchID));
  }

  void SetBalanceAhead(const ReplayLine& line, Money balance) override {
    main_.Execute(fmt::format("UPDATE SchMast SET LoanBal={} WHERE LoanID={} AND SchID > {}",
                              QuoteStr(balance.ToText()), loan_id_,
                              QuoteStr(std::to_string(line.SchID))));
  }

  void Cut(const ReplayLine& line, Money capital, Money interest, Money balance,
           Money extra) override {
    main_.Execute(fmt::format(
        "UPDATE SchMast SET CapitalAmt={},InterestAmt={},PayableAmt={},LoanBal={},PayExtra={} "
        "WHERE LoanID={} AND SchID={}",
        capital.ToText(), interest.ToText(), (capital + interest).ToText(), balance.ToText(),
        extra.ToText(), loan_id_, line.SchID));
  }

 private:
  Recordset QueryOpen() {
    return main_.Query(fmt::format(
        "SELECT * FROM SchMast WHERE LoanID={} AND Payment < PayableAmt ORDER BY DueDate",
        loan_id_));
  }

  // Rows due on one day go by their number. No server promises that, and one that turned them round
  // from run to run would bring another truth each time.
  static bool Earlier(const ReplayLine& a, const ReplayLine& b) {
    return std::tie(a.DueDate, a.SchID) < std::tie(b.DueDate, b.SchID);
  }

  static std::vector<ReplayLine> Read(Recordset rows) {
    std::vector<ReplayLine> lines;
    for (; !rows.Eof(); rows.MoveNext()) lines.push_back(ReadLine(rows));
    std::sort(lines.begin(), lines.end(), Earlier);
    return lines;
  }

  Connection& main_;
  std::string loan_id_;
};

class LoanRebuild {
 public:
  LoanRebuild(Connection& main, std::string_view loan_id)
      : main_(main), loan_id_(loan_id), id_(QuoteStr(loan_id)), rows_(main, id_) {}

  // False when there is no such loan.
  bool Run() {
    if (!ReadLoan()) return false;
    const Money opening = OpeningBalance();
    Wipe(opening);
    LoanReplay replay(loan_, opening, rows_);
    if (loan_.derived && loan_.special) {
      CopySchedule(main_, loan_id_, /*update_rows=*/true, /*to_backup=*/false);
    } else if (loan_.derived) {
      replay.DeriveRows();
    }
    for (Recordset row = Payments(); !row.Eof(); row.MoveNext()) {
      const ReplayPayment payment = ReadPayment(row);
      const ReplaySplit split = replay.Replay(payment);
      if (payment.IntAmt > Money()) ChargeLateInterest(payment, row);
      WriteSplit(payment, split);
    }
    WriteTotals(replay);
    return true;
  }

 private:
  bool ReadLoan() {
    const Recordset row = main_.Query(
        "SELECT DragLoan,InsRate,InstallmentAmt2,CustID,CompCode,LateChargePerDay,SpecialSch,"
        "LoanGroupID FROM LoanMast WHERE LoanID=" +
        id_);
    if (row.Eof()) return false;
    loan_ = ReplayLoanOf(row.Field("DragLoan"), row.Field("SpecialSch"));
    loan_.InsRate = ReplayAmount(row.Field("InsRate"));
    loan_.Instalment = ReplayAmount(row.Field("InstallmentAmt2"));
    cust_id_ = NullToEmpty(row.Field("CustID"));
    comp_code_ = NullToEmpty(row.Field("CompCode"));
    loan_group_ = NullToEmpty(row.Field("LoanGroupID"));
    return true;
  }

  // Capital and interest together on a personal loan, the capital alone on a flexi loan.
  Money OpeningBalance() {
    const Money payable = ShownScalar(
        main_, "SELECT SUM(PayableAmt),SUM(CapitalAmt) FROM SchMast WHERE LoanID=" + id_);
    if (loan_.personal) return payable;
    return ShownScalar(main_, "SELECT LoanAmt FROM LoanMast WHERE LoanID=" + id_);
  }

  void Wipe(Money opening) {
    main_.Execute(fmt::format(
        "UPDATE SchMast SET Payment=0,CapitalPayment=0,InterestPayment=0,LoanBal={},PayExtra=0 "
        "WHERE LoanID={}",
        opening.ToText(), id_));
    main_.Execute(fmt::format("DELETE FROM ChargeMast WHERE LoanID={} AND PType='Payment'", id_));
  }

  Recordset Payments() {
    return main_.Query(
        "SELECT PayID,SchID,PayAmt,IntAmt,ChargeAmt,CollectorAmt,DiscAmt,PayDate,LastDueDate,"
        "TopUpAmt,TopTerm,TopAmt,NextDueDate,InstalAmt,PayExtra,UserID,DateCreated,Memo5 FROM "
        "PaymentMast WHERE LoanID=" +
        id_ + " ORDER BY PayID");
  }

  void ChargeLateInterest(const ReplayPayment& payment, const Recordset& row) {
    const std::string amount = (-payment.IntAmt).ToText();
    const std::string date = DateLiteral(payment.PayDate);
    main_.Execute(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,"
        "ChargeAmt,ChargeDesc,UserID,DateCreated,PType) VALUES "
        "({},{},{},{},{},{},{},0,{},'Payment Received',{},{},'Payment')",
        QuoteStr(payment.PayID), date, id_, QuoteStr(cust_id_), QuoteStr(comp_code_), date, amount,
        amount, QuoteStr(NullToEmpty(row.Field("UserID"))),
        DateTimeLiteral(row.Field("DateCreated"))));
  }

  void WriteSplit(const ReplayPayment& payment, const ReplaySplit& split) {
    main_.Execute(fmt::format(
        "UPDATE PaymentMast SET OldLoanBal={},NewLoanBal={},IntPay={},CapPay={} WHERE PayID={}",
        split.OldLoanBal.ToText(), split.NewLoanBal.ToText(), split.IntPay.ToText(),
        split.CapPay.ToText(), QuoteStr(payment.PayID)));
  }

  // --- the loan's own row

  // Empty when every row is paid: NextDueDate then stays as it was.
  std::string NextDueClause() {
    const Recordset row = main_.Query(fmt::format(
        "SELECT DueDate FROM SchMast WHERE LoanID={} AND Payment < PayableAmt ORDER BY DueDate",
        id_));
    return row.Eof() ? "" : ",NextDueDate=" + DateLiteral(ReplayDate(row.Field(0)));
  }

  // The group follows the balance only where it is one of these two.
  std::string GroupClause(Money balance) const {
    if (loan_group_ != kLoanRunning && loan_group_ != kLoanDone) return "";
    return ",LoanGroupID=" + QuoteStr(balance.IsZero() ? kLoanDone : kLoanRunning);
  }

  void WriteTotals(const LoanReplay& replay) {
    const ReplayTotals& sums = replay.totals();
    const std::string next_due = NextDueClause();
    const Money interest =
        ShownScalar(main_, "SELECT SUM(InterestAmt) FROM SchMast WHERE LoanID=" + id_);
    const std::string totals = fmt::format(
        "UPDATE LoanMast SET TotPay={},TotInt={},TotCharge={},TotCollectorAmt={},TotDiscAmt={},"
        "LoanBal={}{},PayExtra={},LastPaymentDate={},LastPaymentNo={},TotLoanInt={}{} WHERE "
        "LoanID={}",
        sums.pay.ToText(), sums.interest.ToText(), sums.charge.ToText(), sums.memo5.ToText(),
        sums.disc.ToText(), replay.new_balance().ToText(), next_due, sums.extra.ToText(),
        DateLiteral(sums.last_pay_date), QuoteStr(sums.last_pay_id), QuoteStr(interest.ToText()),
        GroupClause(replay.new_balance()), id_);
    main_.Execute(totals);
    main_.Execute(totals);                 // run twice in a row; the second run changes nothing
    RefreshChargeTotals(main_, loan_id_);  // over the totals written before
    main_.Execute(
        "UPDATE LoanMast SET TotLoanInt=(SELECT SUM(InterestAmt) FROM SchMast WHERE "
        "LoanMast.LoanID=SchMast.LoanID) WHERE LoanID=" +
        id_);
    main_.Execute("UPDATE SchMast SET PayableAmt=CapitalAmt + InterestAmt WHERE LoanID=" + id_);
    main_.Execute(fmt::format(
        "UPDATE LoanMast SET CloseBal=LoanBal,LoanBal=0 WHERE LoanID={} AND LoanStatus='CLOSED'",
        id_));
  }

  Connection& main_;
  std::string loan_id_;
  std::string id_;  // the same as a literal
  StoredRows rows_;
  ReplayLoan loan_;
  std::string cust_id_;
  std::string comp_code_;
  std::string loan_group_;
};

// "0": no loans, no sum.
std::string SumLiteral(const Value& sum) { return StripCommaOrZero(ShowMoney(sum)); }

}  // namespace

Rebuilt RebuildLoan(Connection& main, std::string_view loan_id) {
  try {
    return {LoanRebuild(main, loan_id).Run(), {}, {}, {}};
  } catch (const std::exception& error) {
    return {false,
            {"Rebuild Loan", "重算贷款"},
            {fmt::format("an error occur during rebuild loan, Please contact software vendor\n{}",
                         error.what()),
             fmt::format("重算贷款时发生错误，请联系软件供应商\n{}", error.what())},
            std::current_exception()};
  }
}

void SumLoansOfCustomer(Connection& main, std::string_view cust_id) {
  const std::string id = QuoteStr(cust_id);
  const Recordset sums = main.Query(
      "SELECT SUM(LoanAmt) as tTotLoan, SUM(TopUpAmt) as tTopUp, SUM(LoanBal) as tLoanBal FROM "
      "LoanMast WHERE CustID=" +
      id);
  main.Execute(
      fmt::format("UPDATE CustMast SET TotLoan={},TotTopUpAmt={},TotLoanBal={} WHERE CustID={}",
                  SumLiteral(sums.Field("tTotLoan")), SumLiteral(sums.Field("tTopUp")),
                  SumLiteral(sums.Field("tLoanBal")), id));
}

Rebuilt RebuildCustomer(Connection& main, std::string_view cust_id) {
  try {
    Transaction transaction(main);
    SumLoansOfCustomer(main, cust_id);
    transaction.Commit();
    return {true, {}, {}, {}};
  } catch (const std::exception&) {
    return {false,
            {"Rebuild Customer", "重算客户"},
            {"an error occur during rebuild customer, Please contact software vendor",
             "重算客户时发生错误，请联系软件供应商"},
            std::current_exception()};
  }
}

}  // namespace kaunter
