// A slow, plain second model of the repayment schedule, for the property test: whole numbers and
// fractions instead of doubles, its own calendar walk, nothing shared with src/.
//
// Where a step of the house goes through a double, the fraction it stands for may lie on a tie of
// the rounding, and the double falls to either side. The model then accepts both neighbours and
// goes on from the one that was taken; everywhere else it knows the one right figure.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace kaunter::model {

__extension__ using Int128 = __int128;

// numerator / denominator, denominator above 0.
struct Fraction {
  Int128 numerator;
  Int128 denominator;
};

// `whole` is the fraction rounded to a whole number; on a tie, or closer to one than the noise of a
// double could tell, either neighbour.
inline bool IsRounded(Fraction f, std::int64_t whole) {
  const long double exact =
      static_cast<long double>(f.numerator) / static_cast<long double>(f.denominator);
  const long double miss = std::fabs(exact - static_cast<long double>(whole));
  return miss <= 0.5L + 1e-6L;
}

// Half away from zero, exactly.
inline std::int64_t HalfAway(Fraction f) {
  const bool negative = f.numerator < 0;
  const Int128 size = negative ? -f.numerator : f.numerator;
  const auto whole = static_cast<std::int64_t>((2 * size + f.denominator) / (2 * f.denominator));
  return negative ? -whole : whole;
}

// Ties to even, exactly.
inline std::int64_t HalfEven(Fraction f) {
  const bool negative = f.numerator < 0;
  const Int128 size = negative ? -f.numerator : f.numerator;
  Int128 whole = size / f.denominator;
  const Int128 rest2 = 2 * (size % f.denominator);
  if (rest2 > f.denominator || (rest2 == f.denominator && whole % 2 != 0)) ++whole;
  return static_cast<std::int64_t>(negative ? -whole : whole);
}

struct Day {
  int year;
  int month;
  int day;
  bool operator==(const Day&) const = default;
};

inline int TrueMonthLength(int month, int year) {
  if (month == 4 || month == 6 || month == 9 || month == 11) return 30;
  if (month != 2) return 31;
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return leap ? 29 : 28;
}

// One day after another.
inline Day PlusDays(Day day, int count) {
  for (int i = 0; i < count; ++i) {
    if (++day.day > TrueMonthLength(day.month, day.year)) {
      day.day = 1;
      if (++day.month > 12) {
        day.month = 1;
        ++day.year;
      }
    }
  }
  return day;
}

// Row `index` (from 0) of a monthly schedule: the first date's day where the month has it, else the
// month's last day.
inline Day MonthlyDue(Day first, int index) {
  const int months = first.year * 12 + (first.month - 1) + index;
  Day due{months / 12, months % 12 + 1, first.day};
  if (due.day > TrueMonthLength(due.month, due.year)) {
    due.day = TrueMonthLength(due.month, due.year);
  }
  return due;
}

}  // namespace kaunter::model
