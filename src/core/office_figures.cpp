#include "core/office_figures.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "core/company_access.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr std::size_t kTopLoans = 8;

Money Amount(const Value& sum) { return sum.IsNull() ? Money() : Money::FromText(sum.ToText()); }

int Count(const Value& count) { return static_cast<int>(CDbl(count.ToText())); }

DateTime Day(const Value& date) {
  const DateTime* day = date.AsDate();
  return day == nullptr ? DateTime() : day->DateOnly();
}

void Add(Tally& tally, int count, Money amount) {
  tally.count += count;
  tally.amount += amount;
}

Year EmptyYear(const DateTime& today) {
  Year year;
  const DateTime first{today.year, today.month, 1};
  for (int i = 0; i < kMonthsShown; ++i) {
    const DateTime month = first.AddMonths(i + 1 - kMonthsShown);
    year[static_cast<std::size_t>(i)] = {month.year, month.month, {}};
  }
  return year;
}

// "column >= first day of a month of the year AND column < first day of the month behind another".
std::string Within(const std::string& column, const MonthTally& from, const MonthTally& to) {
  return fmt::format("{0} >= {1} AND {0} < {2}", column,
                     SqlDate(DateTime{from.year, from.month, 1}),
                     SqlDate(DateTime{to.year, to.month, 1}.AddMonths(1)));
}

// Rows of a day, a count and a sum each, into these months, which are emptied first: a month is not
// computed for each row of the table.
void IntoMonths(std::span<MonthTally> months, Recordset days) {
  for (MonthTally& month : months) month.sum = {};
  for (; !days.Eof(); days.MoveNext()) {
    const DateTime day = Day(days.Field(0));
    for (MonthTally& month : months) {
      if (month.year != day.year || month.month != day.month) continue;
      Add(month.sum, Count(days.Field(1)), Amount(days.Field(2)));
    }
  }
}

void NameCustomers(Session& session, std::vector<OverdueLoan>& loans) {
  if (loans.empty()) return;
  std::string keys;
  for (const OverdueLoan& loan : loans) keys += (keys.empty() ? "" : ",") + QuoteStr(loan.loan_id);
  Recordset names = session.Main().Query(fmt::format(
      "SELECT l.LoanID,c.CustName FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID "
      "WHERE l.LoanID in ({})",
      keys));
  for (; !names.Eof(); names.MoveNext()) {
    for (OverdueLoan& loan : loans) {
      if (SameText(loan.loan_id, NullToEmpty(names.Field(0)))) {
        loan.customer = NullToEmpty(names.Field(1));
      }
    }
  }
}

}  // namespace

// The company is asked through isnull, which no index answers: going through the loans of the
// companies, and from each to its schedule, takes five times as long as the dates of the schedules
// alone.
std::string OpenRows(const Session& session, const std::optional<DateTime>& from,
                     const DateTime& to) {
  std::string dates;
  for (const std::string& day : {std::string("s.DueDate"), OpenDay(kOpenInstalments, "s")}) {
    if (from) dates += fmt::format("{}>={} AND ", day, SqlDate(*from));
    dates += fmt::format("{}<{} AND ", day, SqlDate(to));
  }
  return fmt::format(
      "FROM SchMast as s INNER JOIN LoanMast as l ON s.LoanID=l.LoanID WHERE {}"
      "s.PayableAmt>isnull(s.Payment,0) AND l.LoanBal>0{}",
      dates, AndCompany(session, "isnull(l.CompCode,'')"));
}

OfficeFigures EmptyFigures(const DateTime& today) {
  OfficeFigures figures;
  figures.today = today.DateOnly();
  figures.collected = figures.disbursed = EmptyYear(today);
  return figures;
}

void ReadComingDue(Session& session, OfficeFigures& figures) {
  const bool any_loan =
      !session.Main()
           .Query("SELECT TOP 1 LoanID FROM LoanMast " + CompanyFilter(session, "CompCode"))
           .Eof();
  Tally today;
  Tally week;
  Recordset days = session.Main().Query(fmt::format(
      "SELECT s.DueDate,count(*) as N,sum({}) as Amt {} GROUP BY s.DueDate", kOpenAmount,
      OpenRows(session, figures.today, figures.today.AddDays(kDaysOfWeek))));
  for (; !days.Eof(); days.MoveNext()) {
    const int count = Count(days.Field(1));
    const Money amount = Amount(days.Field(2));
    if (Day(days.Field(0)) == figures.today) Add(today, count, amount);
    Add(week, count, amount);
  }
  figures.any_loan = any_loan;
  figures.due_today = today;
  figures.due_week = week;
}

// One row a loan, its bands side by side: what is behind is read once for all three figures. The
// grouping is by the loan's own columns, since that of the schedule's key would walk every schedule
// of the office.
void ReadArrears(Session& session, OfficeFigures& figures) {
  std::string bands;
  for (int band = kTo30Days; band < kAgeBands; ++band) {
    std::string when = "s.DueDate<" + SqlDate(figures.today);
    if (band > kTo30Days) {
      when = "s.DueDate<" + SqlDate(figures.today.AddDays(-kBandDays[band - 1]));
    }
    if (band < kOver90Days) {
      when += " AND s.DueDate>=" + SqlDate(figures.today.AddDays(-kBandDays[band]));
    }
    bands += fmt::format(
        ",sum(case when {0} then 1 else 0 end) as N{1},sum(case when {0} then {2} else 0 end) as "
        "Amt{1}",
        when, band, kOpenAmount);
  }
  Recordset loans = session.Main().Query(
      fmt::format("SELECT l.CustID,l.LoanID,min(s.DueDate) as Oldest,sum({}) as Amt{} {} GROUP BY "
                  "l.CustID,l.LoanID",
                  kOpenAmount, bands, OpenRows(session, std::nullopt, figures.today)));
  std::array<Tally, kAgeBands> by_age{};
  Tally overdue;
  std::vector<OverdueLoan> all;
  all.reserve(loans.RowCount());
  for (; !loans.Eof(); loans.MoveNext()) {
    const Money amount = Amount(loans.Field("Amt"));
    Add(overdue, 1, amount);
    for (std::size_t band = kTo30Days; band < kAgeBands; ++band) {
      Add(by_age[band], Count(loans.Field(4 + 2 * band)), Amount(loans.Field(5 + 2 * band)));
    }
    all.push_back({NullToEmpty(loans.Field("LoanID")), "",
                   figures.today.DayNumber() - Day(loans.Field("Oldest")).DayNumber(), amount});
  }
  const auto top = all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), kTopLoans));
  std::partial_sort(all.begin(), top, all.end(), [](const OverdueLoan& a, const OverdueLoan& b) {
    if (a.amount != b.amount) return a.amount > b.amount;
    return a.days != b.days ? a.days > b.days : a.loan_id < b.loan_id;
  });
  all.erase(top, all.end());
  NameCustomers(session, all);
  figures.by_age = by_age;
  figures.overdue = overdue;
  figures.top = std::move(all);
}

void ReadCollections(Session& session, OfficeFigures& figures, int part) {
  constexpr std::size_t kMonths = kMonthsShown / kYearParts;
  const std::span<MonthTally> months =
      std::span(figures.collected).subspan(static_cast<std::size_t>(part) * kMonths, kMonths);
  IntoMonths(
      months,
      session.Main().Query(fmt::format(
          "SELECT p.PayDate,count(*) as N,sum(isnull(p.PayAmt,0)+isnull(p.IntAmt,0)+"
          "isnull(p.CollectorAmt,0)+isnull(p.ChargeAmt,0)-isnull(p.DiscAmt,0)) as Amt "
          "FROM PaymentMast as p WHERE {}{} GROUP BY p.PayDate",
          Within("p.PayDate", months.front(), months.back()), AndCompany(session, "p.CompCode"))));
}

void ReadDisbursements(Session& session, OfficeFigures& figures) {
  Year& year = figures.disbursed;
  const std::string statement =
      session.Special
          ? fmt::format(
                "SELECT l.TrxDate,count(*) as N,sum(l.LoanAmt2) as Amt FROM LoanMast as l "
                "WHERE {}{} AND l.PayOutAmt>0 GROUP BY l.TrxDate",
                Within("l.TrxDate", year.front(), year.back()), AndCompany(session, "l.CompCode"))
          : fmt::format(
                "SELECT d.TrxDate,count(*) as N,sum(d.DrawDownAmt) as Amt FROM "
                "DrawDownMast as d WHERE {}{} GROUP BY d.TrxDate",
                Within("d.TrxDate", year.front(), year.back()), AndCompany(session, "d.CompCode"));
  IntoMonths(year, session.Main().Query(statement));
}

}  // namespace kaunter
