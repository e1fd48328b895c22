#include "loans/rebuild.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "core/values.h"
#include "fmt/format.h"
#include "loans/charge_totals.h"
#include "loans/schedule_store.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr const char* kLoanRunning = "PINJAMAN SEMASA";
constexpr const char* kLoanDone = "PINJAMAN SELESAI";

// Every amount, and the interest rate with it, takes part with the two decimals of its shown form.
Money Shown(const Value& value) { return Money::FromText(ShowMoney(value)); }

Money ShownScalar(Connection& main, const std::string& sql) {
  const Recordset row = main.Query(sql);
  return row.Eof() ? Money() : Shown(row.Field(0));
}

std::string DateLiteral(const Value& value) {
  return value.AsDate() != nullptr ? SqlDate(*value.AsDate()) : "null";
}

std::string DateTimeLiteral(const Value& value) {
  return value.AsDate() != nullptr ? SqlDateTime(*value.AsDate()) : "null";
}

// A row of the schedule as it stands before a step of the rebuild.
struct Line {
  std::string SchID;
  Value DueDate;
  Money PayableAmt;
  Money CapitalAmt;
  Money InterestAmt;
  Money Payment;
  Money CapitalPayment;
  Money InterestPayment;
  Money PayExtra;
};

Line ReadLine(const Recordset& row) {
  return {.SchID = row.Field("SchID").ToText(),
          .DueDate = row.Field("DueDate"),
          .PayableAmt = Shown(row.Field("PayableAmt")),
          .CapitalAmt = Shown(row.Field("CapitalAmt")),
          .InterestAmt = Shown(row.Field("InterestAmt")),
          .Payment = Shown(row.Field("Payment")),
          .CapitalPayment = Shown(row.Field("CapitalPayment")),
          .InterestPayment = Shown(row.Field("InterestPayment")),
          .PayExtra = Shown(row.Field("PayExtra"))};
}

struct StoredPayment {
  std::string PayID;
  Value PayDate;
  Money IntAmt;
  Money ChargeAmt;
  Money CollectorAmt;
  Money DiscAmt;
  Money TopUpAmt;
  Money TopTerm;
  Money TopAmt;
  Money InstalAmt;
  Money PayExtra;
  std::string UserID;
  Value DateCreated;
  Money Memo5;
};

StoredPayment ReadPayment(const Recordset& row) {
  return {.PayID = NullToEmpty(row.Field("PayID")),
          .PayDate = row.Field("PayDate"),
          .IntAmt = Shown(row.Field("IntAmt")),
          .ChargeAmt = Shown(row.Field("ChargeAmt")),
          .CollectorAmt = Shown(row.Field("CollectorAmt")),
          .DiscAmt = Shown(row.Field("DiscAmt")),
          .TopUpAmt = Shown(row.Field("TopUpAmt")),
          .TopTerm = Shown(row.Field("TopTerm")),
          .TopAmt = Shown(row.Field("TopAmt")),
          .InstalAmt = Shown(row.Field("InstalAmt")),
          .PayExtra = Shown(row.Field("PayExtra")),
          .UserID = NullToEmpty(row.Field("UserID")),
          .DateCreated = row.Field("DateCreated"),
          .Memo5 = Shown(row.Field("Memo5"))};
}

struct Loan {
  std::string id;  // as a literal
  bool personal = false;
  bool derived = false;  // the interest of a flexi loan's rows is derived anew
  bool special = false;
  Money InsRate;
  Money Instalment;
  std::string CustID;
  std::string CompCode;
  std::string LoanGroupID;
};

struct Totals {
  Money pay;
  Money interest;
  Money charge;
  Money disc;
  Money memo5;
  Money extra;
  Value last_pay_date;
  std::string last_pay_id;
};

class LoanRebuild {
 public:
  explicit LoanRebuild(Connection& main) : main_(main) {}

  // False when there is no such loan.
  bool Run(std::string_view loan_id) {
    if (!ReadLoan(loan_id)) return false;
    ReadOpeningBalance();
    Wipe();
    if (loan_.derived && loan_.special) {
      CopySchedule(main_, loan_id, true, false);
    } else if (loan_.derived) {
      DeriveRows();
    }
    for (Recordset row = Payments(); !row.Eof(); row.MoveNext()) Replay(ReadPayment(row));
    WriteTotals();
    return true;
  }

 private:
  bool ReadLoan(std::string_view loan_id) {
    loan_id_ = loan_id;
    loan_.id = QuoteStr(loan_id);
    const Recordset row = main_.Query(
        "SELECT DragLoan,InsRate,InstallmentAmt2,CustID,CompCode,LateChargePerDay,SpecialSch,"
        "LoanGroupID FROM LoanMast WHERE LoanID=" +
        loan_.id);
    if (row.Eof()) return false;
    const std::string scheme = NullToEmpty(row.Field("DragLoan"));
    loan_.personal = scheme == "0";
    loan_.derived = scheme == "1";
    loan_.special = NullToEmpty(row.Field("SpecialSch")) == "1";
    loan_.InsRate = Shown(row.Field("InsRate"));
    loan_.Instalment = Shown(row.Field("InstallmentAmt2"));
    loan_.CustID = NullToEmpty(row.Field("CustID"));
    loan_.CompCode = NullToEmpty(row.Field("CompCode"));
    loan_.LoanGroupID = NullToEmpty(row.Field("LoanGroupID"));
    return true;
  }

  // Capital and interest together on a personal loan, the capital alone on a flexi loan.
  void ReadOpeningBalance() {
    opening_ = ShownScalar(
        main_, "SELECT SUM(PayableAmt),SUM(CapitalAmt) FROM SchMast WHERE LoanID=" + loan_.id);
    if (!loan_.personal) {
      opening_ = ShownScalar(main_, "SELECT LoanAmt FROM LoanMast WHERE LoanID=" + loan_.id);
    }
    balance_ = opening_;
    new_balance_ = opening_;
  }

  void Wipe() {
    main_.Execute(fmt::format(
        "UPDATE SchMast SET Payment=0,CapitalPayment=0,InterestPayment=0,LoanBal={},PayExtra=0 "
        "WHERE LoanID={}",
        opening_.ToText(), loan_.id));
    main_.Execute(
        fmt::format("DELETE FROM ChargeMast WHERE LoanID={} AND PType='Payment'", loan_.id));
  }

  // --- the rows of a flexi loan

  // The interest of one row on `balance`: the days of its month by the house's count, a year of 365
  // days, ties to even, never below zero.
  Money Interest(const Line& line, Money balance) const {
    const DateTime* due = line.DueDate.AsDate();
    if (due == nullptr) {
      throw std::runtime_error(fmt::format("Schedule {} has no due date", line.SchID));
    }
    const double days = DaysInMonth(due->month, due->year);
    const double interest = Round(days * ((CDbl(loan_.InsRate) * (CDbl(balance) / 100)) / 365), 2);
    return std::max(Money::FromDouble(interest), Money());
  }

  void DeriveRows() {
    Recordset rows = main_.Query(
        fmt::format("SELECT * FROM SchMast WHERE LoanID={} ORDER BY DueDate", loan_.id));
    Money left = opening_;  // not floored: an instalment below the interest lets it grow
    for (std::size_t i = 1; !rows.Eof(); rows.MoveNext(), ++i) {
      const Line line = ReadLine(rows);
      if (!line.InterestAmt.IsZero() && line.CapitalAmt.IsZero()) continue;  // interest only
      const Money interest = Interest(line, left);
      const Money capital = i == rows.RowCount() ? left : loan_.Instalment - interest;
      left = left - loan_.Instalment + interest;
      // The balance written is the opening one in every row; the replay puts the true one.
      main_.Execute(fmt::format(
          "UPDATE SchMast SET CapitalAmt={},InterestAmt={},PayableAmt={},LoanBal={} WHERE "
          "LoanID={} AND SchID={}",
          capital.ToText(), interest.ToText(), (capital + interest).ToText(), balance_.ToText(),
          loan_.id, line.SchID));
    }
  }

  // --- the replay

  Recordset Payments() {
    return main_.Query(
        "SELECT PayID,SchID,PayAmt,IntAmt,ChargeAmt,CollectorAmt,DiscAmt,PayDate,LastDueDate,"
        "TopUpAmt,TopTerm,TopAmt,NextDueDate,InstalAmt,PayExtra,UserID,DateCreated,Memo5 FROM "
        "PaymentMast WHERE LoanID=" +
        loan_.id + " ORDER BY PayID");
  }

  Recordset OpenRows() {
    return main_.Query(fmt::format(
        "SELECT * FROM SchMast WHERE LoanID={} AND Payment < PayableAmt ORDER BY DueDate",
        loan_.id));
  }

  void Replay(const StoredPayment& payment) {
    const Money old_balance = new_balance_;
    if (!payment.TopAmt.IsZero() && !payment.TopTerm.IsZero()) {
      new_balance_ = old_balance - payment.InstalAmt + payment.TopAmt * payment.TopTerm;
    } else if (loan_.personal) {
      new_balance_ = old_balance - payment.InstalAmt;
    }
    Count(payment);
    interest_paid_ = Money();
    capital_paid_ = Money();
    Walk(payment.InstalAmt);
    if (payment.PayExtra > Money()) TakeExtraCapital(payment);
    if (payment.IntAmt > Money()) ChargeLateInterest(payment);
    main_.Execute(fmt::format(
        "UPDATE PaymentMast SET OldLoanBal={},NewLoanBal={},IntPay={},CapPay={} WHERE PayID={}",
        old_balance.ToText(), new_balance_.ToText(), interest_paid_.ToText(),
        capital_paid_.ToText(), QuoteStr(payment.PayID)));
  }

  void Count(const StoredPayment& payment) {
    totals_.last_pay_date = payment.PayDate;
    totals_.last_pay_id = payment.PayID;
    totals_.pay += payment.InstalAmt;
    totals_.interest += payment.IntAmt;
    totals_.charge += payment.ChargeAmt;
    totals_.disc += payment.DiscAmt;
    totals_.memo5 += payment.Memo5;
    totals_.extra += payment.PayExtra;
  }

  // Pays the open rows one after another. The rows are asked for anew on every pass, and what is
  // left when no row is open any more is dropped without a trace; both are wanted.
  void Walk(Money amount) {
    Money rest = amount;
    Money to_split = amount;
    while (rest > Money()) {
      const Recordset rows = OpenRows();
      if (rows.Eof()) return;
      PayLine(ReadLine(rows), &rest, &to_split);
    }
  }

  void PayLine(const Line& line, Money* rest, Money* to_split) {
    Money paid = line.Payment + *rest;
    if (paid > line.PayableAmt) {
      *rest = paid - line.PayableAmt;
      paid = line.PayableAmt;
    } else {
      *rest = Money();
    }
    // Interest first.
    const bool covers_interest = paid > line.InterestAmt;
    const Money interest = covers_interest ? line.InterestAmt : paid;
    const Money capital = covers_interest ? paid - line.InterestAmt : Money();
    Split(line.InterestAmt - line.InterestPayment, to_split, &interest_paid_);
    Split(line.CapitalAmt - line.CapitalPayment, to_split, &capital_paid_);
    if (loan_.personal) {
      balance_ = balance_ - paid + line.Payment;
    } else {
      balance_ = balance_ - capital + line.CapitalPayment;
      new_balance_ = balance_;
    }
    main_.Execute(fmt::format(
        "UPDATE SchMast SET Payment={},CapitalPayment={},InterestPayment={},LoanBal={} WHERE "
        "LoanID={} AND SchID={}",
        paid.ToText(), capital.ToText(), interest.ToText(), balance_.ToText(), loan_.id,
        line.SchID));
    // The rows ahead always show the latest balance.
    main_.Execute(fmt::format("UPDATE SchMast SET LoanBal={} WHERE LoanID={} AND SchID > {}",
                              QuoteStr(balance_.ToText()), loan_.id, QuoteStr(line.SchID)));
  }

  // Moves from `amount` to `part` as much as the part lacks.
  static void Split(Money lacking, Money* amount, Money* part) {
    if (*amount <= Money()) return;
    const Money taken = std::min(*amount, lacking);
    *part += taken;
    *amount -= taken;
  }

  void TakeExtraCapital(const StoredPayment& payment) {
    capital_paid_ += payment.PayExtra;
    balance_ -= payment.PayExtra;
    new_balance_ = balance_;
    Recordset rows = OpenRows();
    if (rows.Eof()) return;
    const Line first = ReadLine(rows);
    Money left = balance_ + first.CapitalPayment;
    Money capital = first.CapitalAmt;
    Money extra = payment.PayExtra;
    for (; !rows.Eof(); rows.MoveNext()) {
      const Line line = ReadLine(rows);
      if (HasFallenDue(line, payment) || line.Payment > Money()) {
        left -= line.CapitalAmt;
        continue;
      }
      extra += line.PayExtra;
      const Money interest = Interest(line, left);
      capital = left > capital ? loan_.Instalment - interest : left;
      left = std::max(left - loan_.Instalment + interest, Money());
      main_.Execute(fmt::format(
          "UPDATE SchMast SET CapitalAmt={},InterestAmt={},PayableAmt={},LoanBal={},PayExtra={} "
          "WHERE LoanID={} AND SchID={}",
          capital.ToText(), interest.ToText(), (capital + interest).ToText(), balance_.ToText(),
          extra.ToText(), loan_.id, line.SchID));
      extra = Money();  // recorded once, on the first row that is cut anew
    }
  }

  static bool HasFallenDue(const Line& line, const StoredPayment& payment) {
    const DateTime* paid = payment.PayDate.AsDate();
    const DateTime* due = line.DueDate.AsDate();
    return paid != nullptr && due != nullptr && *paid >= *due;
  }

  void ChargeLateInterest(const StoredPayment& payment) {
    const std::string amount = (-payment.IntAmt).ToText();
    const std::string date = DateLiteral(payment.PayDate);
    main_.Execute(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,"
        "ChargeAmt,ChargeDesc,UserID,DateCreated,PType) VALUES "
        "({},{},{},{},{},{},{},0,{},'Payment Received',{},{},'Payment')",
        QuoteStr(payment.PayID), date, loan_.id, QuoteStr(loan_.CustID), QuoteStr(loan_.CompCode),
        date, amount, amount, QuoteStr(payment.UserID), DateTimeLiteral(payment.DateCreated)));
  }

  // --- the loan's own row

  // Empty when every row is paid: NextDueDate then stays as it was.
  std::string NextDueClause() {
    const Recordset row = main_.Query(fmt::format(
        "SELECT DueDate FROM SchMast WHERE LoanID={} AND Payment < PayableAmt ORDER BY DueDate",
        loan_.id));
    return row.Eof() ? "" : ",NextDueDate=" + DateLiteral(row.Field(0));
  }

  // The group follows the balance only where it is one of these two.
  std::string GroupClause() const {
    if (loan_.LoanGroupID != kLoanRunning && loan_.LoanGroupID != kLoanDone) return "";
    return ",LoanGroupID=" + QuoteStr(new_balance_.IsZero() ? kLoanDone : kLoanRunning);
  }

  void WriteTotals() {
    const std::string next_due = NextDueClause();
    const Money interest =
        ShownScalar(main_, "SELECT SUM(InterestAmt) FROM SchMast WHERE LoanID=" + loan_.id);
    const std::string totals = fmt::format(
        "UPDATE LoanMast SET TotPay={},TotInt={},TotCharge={},TotCollectorAmt={},TotDiscAmt={},"
        "LoanBal={}{},PayExtra={},LastPaymentDate={},LastPaymentNo={},TotLoanInt={}{} WHERE "
        "LoanID={}",
        totals_.pay.ToText(), totals_.interest.ToText(), totals_.charge.ToText(),
        totals_.memo5.ToText(), totals_.disc.ToText(), new_balance_.ToText(), next_due,
        totals_.extra.ToText(), DateLiteral(totals_.last_pay_date), QuoteStr(totals_.last_pay_id),
        QuoteStr(interest.ToText()), GroupClause(), loan_.id);
    main_.Execute(totals);
    main_.Execute(totals);                 // run twice in a row; the second run changes nothing
    RefreshChargeTotals(main_, loan_id_);  // over the totals written before
    main_.Execute(
        "UPDATE LoanMast SET TotLoanInt=(SELECT SUM(InterestAmt) FROM SchMast WHERE "
        "LoanMast.LoanID=SchMast.LoanID) WHERE LoanID=" +
        loan_.id);
    main_.Execute("UPDATE SchMast SET PayableAmt=CapitalAmt + InterestAmt WHERE LoanID=" +
                  loan_.id);
    main_.Execute(fmt::format(
        "UPDATE LoanMast SET CloseBal=LoanBal,LoanBal=0 WHERE LoanID={} AND LoanStatus='CLOSED'",
        loan_.id));
  }

  Connection& main_;
  std::string loan_id_;
  Loan loan_;
  Money opening_;
  Money balance_;      // as the walk lowers it
  Money new_balance_;  // as the payments tell it
  Money interest_paid_;
  Money capital_paid_;
  Totals totals_;
};

// "0": no loans, no sum.
std::string SumLiteral(const Value& sum) { return StripCommaOrZero(ShowMoney(sum)); }

void SumCustomer(Connection& main, std::string_view cust_id) {
  const std::string id = QuoteStr(cust_id);
  Transaction transaction(main);
  const Recordset sums = main.Query(
      "SELECT SUM(LoanAmt) as tTotLoan, SUM(TopUpAmt) as tTopUp, SUM(LoanBal) as tLoanBal FROM "
      "LoanMast WHERE CustID=" +
      id);
  main.Execute(
      fmt::format("UPDATE CustMast SET TotLoan={},TotTopUpAmt={},TotLoanBal={} WHERE CustID={}",
                  SumLiteral(sums.Field("tTotLoan")), SumLiteral(sums.Field("tTopUp")),
                  SumLiteral(sums.Field("tLoanBal")), id));
  transaction.Commit();
}

}  // namespace

Rebuilt RebuildLoan(Connection& main, std::string_view loan_id) {
  try {
    return {LoanRebuild(main).Run(loan_id), {}, {}};
  } catch (const std::exception& error) {
    return {false,
            {"Rebuild Loan", "重算贷款"},
            {fmt::format("an error occur during rebuild loan, Please contact software vendor\n{}",
                         error.what()),
             fmt::format("重算贷款时发生错误，请联系软件供应商\n{}", error.what())}};
  }
}

Rebuilt RebuildCustomer(Connection& main, std::string_view cust_id) {
  try {
    SumCustomer(main, cust_id);
    return {true, {}, {}};
  } catch (const std::exception&) {
    return {false,
            {"Rebuild Customer", "重算客户"},
            {"an error occur during rebuild customer, Please contact software vendor",
             "重算客户时发生错误，请联系软件供应商"}};
  }
}

}  // namespace kaunter
