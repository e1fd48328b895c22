#include "collections/daily_batch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <vector>

#include "collections/late_interest.h"
#include "core/settings.h"
#include "core/values.h"
#include "loans/charge_totals.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr std::string_view kLastDay = "DailyBatchDate";
// Charges of one transaction. A loan is never parted.
constexpr std::int64_t kRowsAtOnce = 1000;
// Totals of one transaction: each is summed over all charges that its loan ever took.
constexpr std::size_t kTotalsAtOnce = 100;

std::string DayOfKey(const DateTime& day) {
  return fmt::format("{:04}{:02}{:02}", day.year, day.month, day.day);
}

// --- which rows and loans take a charge on a day

// A date column counts from 2000 on; an earlier one is how an unset date hides.
std::string Reached(std::string_view column, const std::string& day) {
  return fmt::format("({0} >= '2000-01-01' AND {0} <= {1})", column, day);
}
std::string NotReached(std::string_view column, const std::string& day) {
  return fmt::format("({0} is null OR {0} < '2000-01-01' OR {0} > {1})", column, day);
}

std::string ChargeableLoan(const std::string& day) {
  // Extra capital may leave a row open behind a balance of nothing.
  return "l.LoanStatus='ACTIVE' AND l.PayOutAmt > 0 AND l.LoanBal > 0 AND " +
         NotReached("l.StopInt", day);
}

// Overdue rows. The days of grace are never charged later on.
std::string OverdueRows(const DateTime& date) {
  const std::string day = SqlDate(date);
  return fmt::format(
      " FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.LateChargePerDay > "
      "0 AND s.PayableAmt-s.Payment > 0 AND s.DueDate <= {0} AND "
      "DATEADD(day,isnull(l.OfferDays,0),s.DueDate) <= {0} AND {1} AND {2}",
      day, ChargeableLoan(day), NotReached("l.EndTermIntDate", day));
}

// Loans past the start of their term end interest.
std::string TermEndLoans(const DateTime& date) {
  const std::string day = SqlDate(date);
  return fmt::format(" FROM LoanMast as l WHERE l.InsRate > 0 AND {} AND {}", ChargeableLoan(day),
                     Reached("l.EndTermIntDate", day));
}

// The charge of this key is not there yet.
std::string NotCharged(const std::string& key) {
  return fmt::format(" AND NOT EXISTS (SELECT c.ChargeID FROM ChargeMast as c WHERE c.ChargeID={})",
                     key);
}
std::string NoBatchCharge(const DateTime& day) {
  return NotCharged("s.LoanID + '-' + CONVERT(nvarchar(20),s.SchID) + " +
                    QuoteStr("-B" + DayOfKey(day)));
}
std::string NoTermEndCharge(const DateTime& day) {
  return NotCharged("l.LoanID + " + QuoteStr("-T" + DayOfKey(day)));
}

// --- one charge

struct Charge {
  std::string ChargeID;
  std::string LoanID;
  std::string CustID;
  std::string CompCode;
  Value DueDate;
  Money LateAmt;  // what it is worked out from
  Value LateInt;  // the rate
  Money ChargeAmt;
};

constexpr std::string_view kLate = "Batch";
constexpr std::string_view kTermEnd = "Batch Term End Interest";

constexpr int kLongestShut = 31;  // days

// Nothing when none has been posted yet.
std::optional<DateTime> LastDay(Connection& main) {
  const std::string stored(Trim(ReadSetting(main, kLastDay)));
  if (stored.empty()) return std::nullopt;
  const auto last = DateTime::FromCanonical(stored);
  if (!last) {
    throw BatchRefused(
        fmt::format("The setting {} holds \"{}\", which is no date: put the last day that was "
                    "posted there (yyyy-mm-dd), or empty it to begin anew",
                    kLastDay, stored));
  }
  return last->DateOnly();
}

class DailyBatch {
 public:
  DailyBatch(Connection& main, std::string_view user,
             const std::function<void(const BatchProgress&)>& progress)
      : main_(main), user_(QuoteStr(user)), progress_(progress) {}

  BatchOutcome Run(const DateTime& date) {
    if (date > ServerTime(main_).DateOnly()) {
      throw BatchRefused(
          fmt::format("{} lies in the future: late interest is posted up to today at the latest",
                      ShowDate(date)));
    }
    const DateTime first = FirstDay(date);
    outcome_ = {.first_day = first, .last_day = date, .posted = 0, .amount = {}};
    days_ = date.DayNumber() - first.DayNumber() + 1;
    for (days_done_ = 0; days_done_ < days_; ++days_done_) {
      day_ = first.AddDays(days_done_);
      PostOverdueRows();
      PostTermEnds();
      MarkDone();
      Tell(1);
    }
    SumTotals();
    return outcome_;
  }

 private:
  DateTime FirstDay(const DateTime& date) {
    const auto last = LastDay(main_);
    return last ? std::min(date, last->AddDays(1)) : date;
  }

  // --- a day in portions

  struct Portion {
    std::string first_loan;
    std::string last_loan;
    std::int64_t rows = 0;  // at the most
  };

  // `counts` gives loans in their order, with the number of charges that each may take.
  static std::vector<Portion> Portions(Recordset counts) {
    std::vector<Portion> portions;
    for (; !counts.Eof(); counts.MoveNext()) {
      const std::string loan = counts.Field(0).ToText();
      const std::int64_t rows = CLng(counts.Field(1).ToText());
      if (portions.empty() || portions.back().rows + rows > kRowsAtOnce) {
        portions.push_back({loan, loan, 0});
      }
      portions.back().last_loan = loan;
      portions.back().rows += rows;
    }
    return portions;
  }

  static std::string Within(std::string_view column, const Portion& portion) {
    return fmt::format(" AND {0} >= {1} AND {0} <= {2}", column, QuoteStr(portion.first_loan),
                       QuoteStr(portion.last_loan));
  }

  void PostOverdueRows() {
    const std::string rows = OverdueRows(day_);
    const auto portions = Portions(main_.Query(
        fmt::format("SELECT s.LoanID,COUNT(*){} GROUP BY s.LoanID ORDER BY s.LoanID", rows)));
    std::int64_t total = 0;
    for (const Portion& portion : portions) total += portion.rows;
    std::int64_t done = 0;
    for (const Portion& portion : portions) {
      PostPortion(kLate, "Late Interest", [&] {
        std::vector<Charge> charges;
        Recordset row = main_.Query(
            "SELECT s.LoanID,s.SchID,s.DueDate,s.PayableAmt-s.Payment as BalDue,"
            "l.LateChargePerDay,l.CustID,l.CompCode" +
            rows + Within("l.LoanID", portion) + NoBatchCharge(day_) +
            " ORDER BY s.LoanID,s.SchID");
        for (; !row.Eof(); row.MoveNext()) charges.push_back(OverdueCharge(row));
        return charges;
      });
      done += portion.rows;
      // Never the whole day: its term end interest is still to come.
      Tell(static_cast<double>(done) / static_cast<double>(total + 1));
    }
  }

  Charge OverdueCharge(const Recordset& row) const {
    const std::string loan = row.Field(0).ToText();
    const Money due = Amount(row.Field(3));
    return {.ChargeID = BatchChargeID(loan, row.Field(1).ToText(), day_),
            .LoanID = loan,
            .CustID = NullToEmpty(row.Field(5)),
            .CompCode = NullToEmpty(row.Field(6)),
            .DueDate = row.Field(2),
            .LateAmt = due,
            .LateInt = row.Field(4),
            .ChargeAmt = DayCharge(due, CDbl(row.Field(4).ToText()))};
  }

  void PostTermEnds() {
    const std::string loans = TermEndLoans(day_);
    for (const Portion& portion :
         Portions(main_.Query("SELECT l.LoanID,1" + loans + " ORDER BY l.LoanID"))) {
      PostPortion(kTermEnd, "Term End Interest", [&] {
        std::vector<Charge> charges;
        Recordset row = main_.Query(
            "SELECT l.LoanID,l.EndTermIntDate,l.LoanBal,l.InsRate,l.CustID,l.CompCode" + loans +
            Within("l.LoanID", portion) + NoTermEndCharge(day_) + " ORDER BY l.LoanID");
        for (; !row.Eof(); row.MoveNext()) charges.push_back(TermEndCharge(row));
        return charges;
      });
    }
  }

  Charge TermEndCharge(const Recordset& row) const {
    const std::string loan = row.Field(0).ToText();
    const Money balance = Amount(row.Field(2));
    return {.ChargeID = TermEndChargeID(loan, day_),
            .LoanID = loan,
            .CustID = NullToEmpty(row.Field(4)),
            .CompCode = NullToEmpty(row.Field(5)),
            .DueDate = row.Field(1),
            .LateAmt = balance,
            .LateInt = row.Field(3),
            .ChargeAmt = DayCharge(balance, CDbl(row.Field(3).ToText()))};
  }

  static Money Amount(const Value& value) { return Money::FromText(value.ToText()); }

  // --- one portion, one transaction

  // `read` asks inside the transaction, for what is still open and not yet charged. Where a second
  // batch got in between, the key stops one of the two; that one looks again.
  void PostPortion(std::string_view kind, std::string_view text,
                   const std::function<std::vector<Charge>()>& read) {
    std::vector<Charge> charges;
    AsOne([&] {
      charges = read();
      // What is less than half a sen a day is nothing.
      std::erase_if(charges, [](const Charge& charge) { return charge.ChargeAmt.IsZero(); });
      Write(kind, text, charges);
    });
    outcome_.posted += static_cast<std::int64_t>(charges.size());
    for (const Charge& charge : charges) {
      outcome_.amount += charge.ChargeAmt;
      charged_.insert(charge.LoanID);
    }
  }

  void AsOne(const std::function<void()>& write) {
    WriteAgainUntilDone([&] {
      Transaction transaction(main_);
      write();
      transaction.Commit();
    });
  }

  void Write(std::string_view kind, std::string_view text, const std::vector<Charge>& charges) {
    const std::string day = SqlDate(day_);
    for (const Charge& charge : charges) {
      main_.Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,TrxDate,BatchDate,LoanID,CustID,CompCode,DueDate,"
          "LateAmt,LateInt,ChargeAmt,OrgAmt,ChargeDesc,UserID,DateCreated,PType) VALUES "
          "({},{},{},{},{},{},{},{},{},{},0,{},{},getdate(),{})",
          QuoteStr(charge.ChargeID), day, day, QuoteStr(charge.LoanID), QuoteStr(charge.CustID),
          QuoteStr(charge.CompCode), SqlDateTime(*charge.DueDate.AsDate()), charge.LateAmt.ToText(),
          charge.LateInt.ToText(), charge.ChargeAmt.ToText(), QuoteStr(text), user_,
          QuoteStr(kind)));
    }
    Money of_loan;
    for (std::size_t i = 0; i < charges.size(); ++i) {
      of_loan += charges[i].ChargeAmt;
      const bool last_of_loan =
          i + 1 == charges.size() || !SameText(charges[i].LoanID, charges[i + 1].LoanID);
      if (!last_of_loan) continue;
      RaiseTotal(charges[i].LoanID, of_loan);
      of_loan = Money();
    }
  }

  void RaiseTotal(const std::string& loan, Money by) {
    main_.Execute(
        fmt::format("UPDATE LoanMast SET TotCollectorAmt=isnull(TotCollectorAmt,0)+{} WHERE "
                    "LoanID={}",
                    by.ToText(), QuoteStr(loan)));
  }

  // --- the end of the run

  // Day by day a total is only raised, so that a catch-up of many days sums no loan more than once;
  // here one that another program spoilt, or that holds nothing, is put right.
  void SumTotals() {
    for (auto loan = charged_.begin(); loan != charged_.end();) {
      const auto first = loan;
      for (std::size_t i = 0; i < kTotalsAtOnce && loan != charged_.end(); ++i) ++loan;
      AsOne([&] {
        for (auto each = first; each != loan; ++each) RefreshChargeTotals(main_, *each);
      });
    }
  }

  // --- the end of a day

  // Only ever raised: another batch may be further on.
  void MarkDone() {
    const std::string value = QuoteStr(day_.ToCanonical());
    const std::string key = QuoteStr(kLastDay);
    main_.Execute(
        fmt::format("INSERT INTO Systemast (Param,Value) SELECT {0},'' WHERE NOT EXISTS (SELECT "
                    "Param FROM Systemast WHERE Param={0})",
                    key));
    main_.Execute(fmt::format(
        "UPDATE Systemast SET [Value]={0} WHERE Param={1} AND ([Value] is null OR [Value] < {0})",
        value, key));
  }

  // `part` of the day in work.
  void Tell(double part) const {
    if (progress_) {
      progress_({.day = day_,
                 .percent = static_cast<int>((days_done_ + part) * 100 / days_),
                 .posted = outcome_.posted});
    }
  }

  Connection& main_;
  std::string user_;  // as a literal
  const std::function<void(const BatchProgress&)>& progress_;
  DateTime day_;
  int days_ = 0;
  int days_done_ = 0;
  std::set<std::string> charged_;  // loans that this run has charged
  BatchOutcome outcome_;
};

}  // namespace

void RefuseUnlikelyToday(Connection& main, const DateTime& today) {
  const auto last = LastDay(main);
  if (!last || std::abs(today.DayNumber() - last->DayNumber()) <= kLongestShut) return;
  throw BatchRefused(fmt::format(
      "The last day that was posted is {}, and today would be {}: is the clock of the office right "
      "? If it is, run the batch once with the day written out: DailyBatch {}. If {} is wrong, put "
      "the last day that was posted into the setting {} (yyyy-mm-dd)",
      ShowDate(*last), ShowDate(today), ShowDate(today), ShowDate(*last), kLastDay));
}

std::string BatchChargeID(std::string_view loan_id, std::string_view sch_id, const DateTime& day) {
  return fmt::format("{}-{}-B{}", loan_id, sch_id, DayOfKey(day));
}

std::string TermEndChargeID(std::string_view loan_id, const DateTime& day) {
  return fmt::format("{}-T{}", loan_id, DayOfKey(day));
}

BatchOutcome RunDailyBatch(Connection& main, const DateTime& date, std::string_view user,
                           const std::function<void(const BatchProgress&)>& progress) {
  return DailyBatch(main, user, progress).Run(date.DateOnly());
}

}  // namespace kaunter
