// The functions, aggregates and the collation that the embedded engine adds to SQLite, and that the
// SQLite writer writes calls to. What stands here is the contract between the two.
//
// Values: text is UTF-8, and lengths and positions count characters (code points). A date is its
// canonical text (DateTime::ToCanonical). A decimal is a number (integer or real, as SQLite keeps
// it). Unless told otherwise a null argument gives null, and a function that refuses raises the SQL
// Server number given in brackets, with that server's words.
//
// Collation KAUNTER1: case-blind for all scripts, trailing blanks count for nothing, otherwise by
// code point of the folded character. Text functions that search (k_charindex, k_replace,
// k_patindex, LIKE) are case-blind in the same way.
//
// Scalar functions. They are deterministic (so that they may stand in indexes and in computed
// columns) except where "not constant" is told; all are innocuous.
//
//   numbers
//   k_round(x, scale[, from]) nearest decimal with `scale` places, half away from zero, decided on
//                             the 15 digits of the shortest text; scale 0 to 10. A real or an
//                             integer, never -0.0. Beyond 9*10^13 with a scale of 2 or more [8115].
//                             With `from`, x is first rounded to the places that it has.
//   k_to_int(x[, digits])     number: fraction cut; text: blanks around, sign and digits, '' is 0,
//                             anything else [245]. What is outside 64 bits or the type of so many
//                             digits (10 int, 5 smallint, 3 tinyint): a text [248], a number
//                             [8115]; 1 digit is a bit.
//   k_to_dec(x, scale)        number as k_round; text: blanks around, sign, digits, one point, else
//                             [8114] ('' and '1,234.50' too).
//   k_to_float(x)             number as it is (as real); text as a number with exponent, '' is 0,
//                             else [8114].
//   k_divisor(x)              x; zero [8134].
//   k_mod(a, b)               remainder with the sign of a, of reals too; b zero [8134].
//   k_round_tsql(x, n[, mode])  ROUND: n may be negative; mode not 0 cuts instead of rounding.
//                             An integer stays an integer.
//   k_floor(x), k_ceiling(x), k_abs(x), k_sign(x), k_power(x, y), k_sqrt(x)
//                             k_sqrt of a negative number [3623]. Integers stay integers in the
//                             first four; k_power of two integers is an integer.
//   k_isnumeric(x)            1 or 0, null gives 0: an integer, decimal or exponent text, commas
//                             allowed, not ''; a number is 1.
//
//   text
//   k_text(x, code)           canonical text of a value of the type `code`: 'i' integer, 'd<n>'
//                             decimal with exactly n places ('d2': 983.30, -0.50), 'f' floating
//                             (up to six significant digits, as the server prints it), 'da' date
//                             (yyyy-mm-dd), 'dt' date with time ("Jan 31 2024 12:00AM", day padded
//                             with a blank to two). Text is given back as it is.
//   k_money_text(x, style)    money by convert style: 0 two decimals, 1 with a comma every three
//                             digits as well, 2 and 126 four decimals; unknown [281]
//   k_check_text(x, width, column)  x when it has at most `width` characters; excess made of blanks
//                             only is cut; longer [2628] naming the column. Never given width 0.
//   k_len(x)                  characters without trailing blanks
//   k_upper(x), k_lower(x)    for all scripts
//   k_left(x, n), k_right(x, n), k_substring(x, start, n)
//                             start counts from 1 and may be below it (the part before 1 counts
//                             towards n, as the server does); n negative [536] ([537] for
//                             k_substring).
//   k_charindex(needle, hay[, start])  position from 1, 0 when absent; an empty needle gives 0
//   k_patindex(pattern, text)  position of the first match of a LIKE pattern, 0 when none
//   k_replace(x, from, to)    every occurrence; an empty `from` changes nothing
//   k_stuff(x, start, n, with)  null when start is outside the text or n negative
//   k_reverse(x), k_replicate(x, n), k_space(n)   n negative gives null; a result past 1,000,000
//                             characters [8115]
//   k_str(x, length, decimals)  right-aligned in `length` (STR); asterisks when it does not fit
//   k_ascii(x)                code of the first character; '' gives null
//   k_isdate(x)               1 when k_to_datetime would take it, else 0; null gives 0
//   like(pattern, text[, escape])  replaces the built-in, so that `x LIKE y` uses it: case-blind,
//                             `%`, `_`, `[a-z]`, `[^x]`; trailing blanks of the text are ignored;
//                             escape longer than a character [506].
//
//   dates
//   k_now()                   the clock, with its time; one reading a statement; not constant, yet
//                             innocuous (it stands in column defaults)
//   k_to_date(x), k_to_datetime(x)  text to canonical, k_to_date without the time. Taken:
//   yyyy-mm-dd
//                             and yyyymmdd and yyyy/mm/dd, optionally followed by a blank or T and
//                             h:mm[:ss[.fff]] with optional AM or PM; a time alone is on
//                             1900-01-01;
//                             '' is 1900-01-01; also "Jan 31 2024" with an optional time. A number
//                             is that many days from 1900-01-01 (a fraction is a time). No date at
//                             all [241]; a day or month outside the calendar [242]. Fractions of a
//                             second are cut.
//   k_parse_date(x, style)    text of a convert style (101, 103, 104, 105, 110, 112, 120 ...) to
//                             canonical; else [241]/[242]; unknown style [281]
//   k_convert(x, style)       canonical date to text by convert style: 0/100, 1/101, 2/102, 3/103,
//                             4/104, 5/105, 6/106, 7/107, 8/108, 10/110, 11/111, 12/112, 13/113,
//                             14/114, 20/120, 21/121, 23, 126; unknown [281]
//   k_datepart(part, x)       integer; part is one of year quarter month dayofyear day week
//                             iso_week weekday (Sunday 1) hour minute second millisecond
//   k_datename(part, x)       text; month and weekday by their English names
//   k_dateadd(part, n, x)     parts as above; n is cut to an integer; months clamp to the month's
//                             end; outside the years 1753 to 9999 [517]
//   k_datediff(part, a, b)    boundaries crossed from a to b
//   k_date_plus(x, days)      x plus a number of days, a fraction is time
//   k_eomonth(x, months)      last day of the month that is `months` further
//   k_newid()                 a random UUID in upper case; not constant
//
// Aggregates
//   k_sum(x[, scale])         exact sum of decimals: each value rounded to ten-thousandths (to
//                             millionths when scale is above 4, to ten places above 6), added in
//                             128 bits; null without values. Rounded to `scale` (10). Integers
//                             and floating columns use SQLite's own sum.
//   k_avg(x[, scale])         k_sum divided by the number of values, cut to `scale` places
//   k_avg_int(x)              integer average, cut towards zero
//   k_one(x)                  the value of the only row; null without rows (and for a null value);
//                             a second row [512]: a subquery that stands for one value
#pragma once

namespace kaunter::sql {

inline constexpr char kCollation[] = "KAUNTER1";

struct FunctionSignature {
  const char* name;
  int min_arguments;
  int max_arguments;
  bool aggregate = false;
  bool constant = true;  // may be registered as deterministic
};

// Everything above, for the registration and for the test that nothing is missing.
inline constexpr FunctionSignature kFunctions[] = {
    {"k_round", 2, 3},
    {"k_to_int", 1, 2},
    {"k_to_dec", 2, 2},
    {"k_to_float", 1, 1},
    {"k_divisor", 1, 1},
    {"k_mod", 2, 2},
    {"k_round_tsql", 2, 3},
    {"k_floor", 1, 1},
    {"k_ceiling", 1, 1},
    {"k_abs", 1, 1},
    {"k_sign", 1, 1},
    {"k_power", 2, 2},
    {"k_sqrt", 1, 1},
    {"k_isnumeric", 1, 1},
    {"k_text", 2, 2},
    {"k_money_text", 2, 2},
    {"k_check_text", 3, 3},
    {"k_len", 1, 1},
    {"k_upper", 1, 1},
    {"k_lower", 1, 1},
    {"k_left", 2, 2},
    {"k_right", 2, 2},
    {"k_substring", 3, 3},
    {"k_charindex", 2, 3},
    {"k_patindex", 2, 2},
    {"k_replace", 3, 3},
    {"k_stuff", 4, 4},
    {"k_reverse", 1, 1},
    {"k_replicate", 2, 2},
    {"k_space", 1, 1},
    {"k_str", 3, 3},
    {"k_ascii", 1, 1},
    {"k_isdate", 1, 1},
    {"like", 2, 3},
    {"k_now", 0, 0, false, false},
    {"k_to_date", 1, 1},
    {"k_to_datetime", 1, 1},
    {"k_parse_date", 2, 2},
    {"k_convert", 2, 2},
    {"k_datepart", 2, 2},
    {"k_datename", 2, 2},
    {"k_dateadd", 3, 3},
    {"k_datediff", 3, 3},
    {"k_date_plus", 2, 2},
    {"k_eomonth", 2, 2},
    {"k_newid", 0, 0, false, false},
    {"k_sum", 1, 2, true},
    {"k_avg", 1, 2, true},
    {"k_avg_int", 1, 1, true},
    {"k_one", 1, 1, true},
};

}  // namespace kaunter::sql
