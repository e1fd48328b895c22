// What the owner of an office looks at in the morning: what falls due, what is behind and how long,
// what came in and went out in the last twelve months. Every figure counts what the person's
// companies have; loans that are paid off (LoanBal 0) owe nothing, whatever their rows say.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/open_rows.h"

namespace kaunter {

class Session;

// How many, and what they come to.
struct Tally {
  int count = 0;
  Money amount;
  bool operator==(const Tally&) const = default;
};

// Open instalments by their own age in days. What falls due today is not behind yet.
enum AgeBand { kTo30Days, kTo60Days, kTo90Days, kOver90Days, kAgeBands };
constexpr int kBandDays[] = {30, 60, 90};  // upper ends of the bands; the last has none
constexpr int kDaysOfWeek = 7;

struct OverdueLoan {
  std::string loan_id;
  std::string customer;
  int days = 0;  // since the oldest open instalment fell due
  Money amount;  // all its instalments that are behind
  bool operator==(const OverdueLoan&) const = default;
};

struct MonthTally {
  int year = 0;
  int month = 0;
  Tally sum;
  bool operator==(const MonthTally&) const = default;
};

constexpr int kMonthsShown = 12;
using Year = std::array<MonthTally, kMonthsShown>;  // oldest first, the last is the running month

struct OfficeFigures {
  DateTime today;
  bool any_loan = true;  // until it is known that there is none
  Tally due_today;
  Tally due_week;  // today and the six days after it
  std::array<Tally, kAgeBands> by_age;
  Tally overdue;                 // loans, not instalments
  std::vector<OverdueLoan> top;  // the largest amounts first
  Year collected;  // money received: instalments, late interest, charges, collector, less discount
  Year disbursed;  // releases; with the Special right, the loans of the month with LoanAmt2
};

// What an instalment still asks for; an older office has NULL where nothing was paid.
inline constexpr std::string_view kOpenAmount = "s.PayableAmt-isnull(s.Payment,0)";
inline constexpr OpenRowsOf kOpenInstalments = {"SchMast", "DueDate", "PayableAmt", "Payment"};
// "FROM ... WHERE ...": an open loan's rows with something left to pay that fall due on the day
// `from`, or whenever, and before the day `to`: SchMast as s and LoanMast as l, of the person's
// companies.
std::string OpenRows(const Session& session, const std::optional<DateTime>& from,
                     const DateTime& to);

// Days and months that the figures of this day count, all of them zero.
OfficeFigures EmptyFigures(const DateTime& today);

// Each reads its part and leaves the rest as it is; one that throws (SqlError) has changed nothing.
// What they cost grows with the instalments that have fallen due and the payments of the office.
void ReadComingDue(Session& session, OfficeFigures& figures);
void ReadArrears(Session& session, OfficeFigures& figures);
// A part of the year, 0 to kYearParts-1: all payments of a year in one statement would hold the
// person up.
constexpr int kYearParts = 4;
void ReadCollections(Session& session, OfficeFigures& figures, int part);
void ReadDisbursements(Session& session, OfficeFigures& figures);

}  // namespace kaunter
