#include "loans/due_dates.h"

#include <utility>

#include "loans/step_date.h"

namespace kaunter {
namespace {

// The day in the month of `date`, by the true calendar.
bool HasDay(const DateTime& date, int day) {
  return day <= CalendarDaysInMonth(date.month, date.year);
}

}  // namespace

DueDates::DueDates(std::string code, const DateTime& first)
    : code_(std::move(code)), first_(first.DateOnly()), running_(first_) {}

DateTime DueDates::Next() {
  // The step is taken on the first row too: a code that cannot be stepped fails at once.
  const DateTime stepped = StepDate(code_, running_, false);
  if (!started_) {
    started_ = true;
    return first_;
  }
  // The running date keeps a day that a short month has clamped; only the row's own date turns
  // back. That is a rule of the house: do not step from the corrected date.
  running_ = stepped;
  return TowardOriginalDay(stepped);
}

DateTime DueDates::TowardOriginalDay(const DateTime& stepped) const {
  if (code_ != "MONTH" || stepped.day == first_.day) return stepped;
  DateTime row = stepped;
  for (const int more : {3, 2, 1}) {
    if (!HasDay(stepped, stepped.day + more)) continue;
    row.day = HasDay(stepped, first_.day) ? first_.day : stepped.day + more;
    return row;
  }
  return stepped;
}

}  // namespace kaunter
