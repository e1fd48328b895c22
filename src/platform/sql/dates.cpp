#include "platform/sql/dates.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace kaunter::sql {
namespace {

constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};
constexpr const char* kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};

bool SameLetters(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if ((a[i] | 0x20) != (b[i] | 0x20)) return false;
  }
  return true;
}

// Reads a text from left to right.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}
  bool AtEnd() const { return at_ >= text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  std::size_t position() const { return at_; }
  void Back(std::size_t position) { at_ = position; }
  void Blanks() {
    while (Peek() == ' ') ++at_;
  }
  bool Take(char c) {
    if (Peek() != c) return false;
    ++at_;
    return true;
  }
  bool TakeWord(std::string_view word) {
    if (!SameLetters(text_.substr(at_, word.size()), word)) return false;
    at_ += word.size();
    return true;
  }
  // A number of at most `most` digits; its length through `length`.
  bool Number(int most, int* value, int* length = nullptr) {
    int digits = 0;
    *value = 0;
    while (Peek() >= '0' && Peek() <= '9') {
      if (++digits > most) return false;
      *value = *value * 10 + (text_[at_++] - '0');
    }
    if (length != nullptr) *length = digits;
    return digits > 0;
  }
  bool Month(int* month) {
    for (int m = 0; m < 12; ++m) {
      const std::string_view name = kMonths[m];
      if (TakeWord(name) || TakeWord(name.substr(0, 3))) {
        *month = m + 1;
        return true;
      }
    }
    return false;
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// h:mm[:ss[.fff]] [AM|PM] up to the end of the text.
bool ReadTime(Scanner* in, DateTime* date) {
  if (!in->Number(2, &date->hour) || !in->Take(':') || !in->Number(2, &date->minute)) return false;
  date->second = 0;
  if (in->Take(':')) {
    if (!in->Number(2, &date->second)) return false;
    int fraction = 0;
    if ((in->Take('.') || in->Take(':')) && !in->Number(9, &fraction)) return false;
  }
  in->Blanks();
  const bool pm = in->TakeWord("PM");
  if (pm || in->TakeWord("AM")) {
    if (date->hour < 1 || date->hour > 12) date->hour = 24;  // no hour of the calendar
    if (date->hour < 24) date->hour = date->hour % 12 + (pm ? 12 : 0);
  }
  return in->AtEnd();
}

DateResult ReadTimeBehind(Scanner* in, DateTime* date) {
  if (!in->AtEnd()) {
    if (!in->Take('T')) {
      if (in->Peek() != ' ') return DateResult::kNoDate;
      in->Blanks();
    }
    if (!ReadTime(in, date)) return DateResult::kNoDate;
  }
  return date->IsValid() ? DateResult::kOk : DateResult::kOutsideCalendar;
}

// yyyymmdd
bool ReadPlain(Scanner* in, DateTime* date) {
  const std::size_t start = in->position();
  int value = 0;
  int digits = 0;
  if (!in->Number(8, &value, &digits) || digits != 8) {
    in->Back(start);
    return false;
  }
  date->year = value / 10000;
  date->month = value / 100 % 100;
  date->day = value % 100;
  return true;
}

// "Jan 31 2024", "Jan 31, 2024"; with `day_first` "31 Jan 2024".
bool ReadNamed(Scanner* in, bool day_first, DateTime* date) {
  int digits = 0;
  if (day_first && !in->Number(2, &date->day)) return false;
  in->Blanks();
  if (!in->Month(&date->month)) return false;
  in->Blanks();
  if (!day_first && !in->Number(2, &date->day)) return false;
  in->Take(',');
  in->Blanks();
  return in->Number(4, &date->year, &digits) && digits == 4;
}

bool TakeSeparator(Scanner* in, char* separator) {
  const char c = in->Peek();
  if ((c != '-' && c != '/' && c != '.') || (*separator != '\0' && c != *separator)) return false;
  *separator = c;
  return in->Take(c);
}

enum class Order { kNone, kYmd, kDmy, kMdy };

// Three numbers between separators; a two-digit year only where the style says so, on the server's
// turning point (49 is 2049, 50 is 1950).
bool ReadOrdered(Scanner* in, Order order, bool short_year, DateTime* date) {
  int* const kSlots[3][3] = {{&date->year, &date->month, &date->day},
                             {&date->day, &date->month, &date->year},
                             {&date->month, &date->day, &date->year}};
  const auto& slots = kSlots[order == Order::kYmd ? 0 : order == Order::kDmy ? 1 : 2];
  char separator = '\0';
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && !TakeSeparator(in, &separator)) return false;
    const bool is_year = slots[i] == &date->year;
    int digits = 0;
    if (!in->Number(is_year ? 4 : 2, slots[i], &digits)) return false;
    if (!is_year) continue;
    if (digits != (short_year ? 2 : 4)) return false;
    if (short_year) date->year += date->year < 50 ? 2000 : 1900;
  }
  return true;
}

struct Style {
  int number;
  Order order;  // kNone for the named and the time-only styles
  char separator;
  bool short_year;
};

constexpr Style kOrdered[] = {
    {1, Order::kMdy, '/', true},     {2, Order::kYmd, '.', true},    {3, Order::kDmy, '/', true},
    {4, Order::kDmy, '.', true},     {5, Order::kDmy, '-', true},    {10, Order::kMdy, '-', true},
    {11, Order::kYmd, '/', true},    {12, Order::kYmd, '\0', true},  {101, Order::kMdy, '/', false},
    {102, Order::kYmd, '.', false},  {103, Order::kDmy, '/', false}, {104, Order::kDmy, '.', false},
    {105, Order::kDmy, '-', false},  {110, Order::kMdy, '-', false}, {111, Order::kYmd, '/', false},
    {112, Order::kYmd, '\0', false}, {20, Order::kYmd, '-', false},  {120, Order::kYmd, '-', false},
    {21, Order::kYmd, '-', false},   {121, Order::kYmd, '-', false}, {23, Order::kYmd, '-', false},
    {126, Order::kYmd, '-', false},
};

const Style* FindOrdered(int style) {
  for (const Style& s : kOrdered) {
    if (s.number == style) return &s;
  }
  return nullptr;
}

std::string OrderedText(const DateTime& d, const Style& style) {
  const std::string year =
      style.short_year ? fmt::format("{:02}", d.year % 100) : fmt::format("{:04}", d.year);
  const std::string month = fmt::format("{:02}", d.month);
  const std::string day = fmt::format("{:02}", d.day);
  const std::string sep = style.separator == '\0' ? "" : std::string(1, style.separator);
  switch (style.order) {
    case Order::kDmy:
      return day + sep + month + sep + year;
    case Order::kMdy:
      return month + sep + day + sep + year;
    default:
      return year + sep + month + sep + day;
  }
}

std::string Clock24(const DateTime& d) {
  return fmt::format("{:02}:{:02}:{:02}", d.hour, d.minute, d.second);
}

std::string Clock12(const DateTime& d) {
  const int hour = d.hour % 12 == 0 ? 12 : d.hour % 12;
  return fmt::format("{:2}:{:02}{}", hour, d.minute, d.hour < 12 ? "AM" : "PM");
}

long long SecondsOf(const DateTime& d) {
  return d.DayNumber() * 86400LL + d.hour * 3600LL + d.minute * 60LL + d.second;
}

long long FloorDiv(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }

DateTime FirstOfYear(int year) { return {year, 1, 1, 0, 0, 0}; }

int IsoWeek(const DateTime& date) {
  // The week belongs to the year of its Thursday.
  const int day = date.DayNumber();
  const int monday_based = (date.Weekday() + 6) % 7;
  const DateTime thursday = DateTime::FromDayNumber(day - monday_based + 3);
  return (thursday.DayNumber() - FirstOfYear(thursday.year).DayNumber()) / 7 + 1;
}

}  // namespace

DateResult ParseDateTime(std::string_view text, DateTime* date) {
  *date = DateTime();
  if (const auto canonical = DateTime::FromCanonical(text)) {
    *date = *canonical;
    return DateResult::kOk;
  }
  text = Trimmed(text);
  if (text.empty()) return DateResult::kOk;
  Scanner in(text);
  if (ReadPlain(&in, date) || ReadOrdered(&in, Order::kYmd, false, date)) {
    return ReadTimeBehind(&in, date);
  }
  *date = DateTime();
  in.Back(0);
  if (ReadTime(&in, date)) return date->IsValid() ? DateResult::kOk : DateResult::kOutsideCalendar;
  *date = DateTime();
  in.Back(0);
  if (ReadNamed(&in, false, date)) return ReadTimeBehind(&in, date);
  return DateResult::kNoDate;
}

DateResult FromDays(double days, DateTime* date) {
  if (!(std::fabs(days) < 4e6)) return DateResult::kOutsideCalendar;
  try {
    *date = DateTime().AddSeconds(std::llround(days * 86400));
  } catch (const std::out_of_range&) {
    return DateResult::kOutsideCalendar;
  }
  return DateResult::kOk;
}

bool KnownDateStyle(int style) {
  switch (style) {
    case 0:
    case 100:
    case 6:
    case 106:
    case 7:
    case 107:
    case 8:
    case 108:
    case 13:
    case 113:
    case 14:
    case 114:
      return true;
    default:
      return FindOrdered(style) != nullptr;
  }
}

DateResult ParseStyled(std::string_view text, int style, DateTime* date) {
  *date = DateTime();
  text = Trimmed(text);
  if (text.empty()) return DateResult::kOk;
  Scanner in(text);
  if (ReadPlain(&in, date)) return ReadTimeBehind(&in, date);
  bool read = false;
  if (const Style* ordered = FindOrdered(style)) {
    read = ReadOrdered(&in, ordered->order, ordered->short_year, date);
  } else if (style == 8 || style == 108 || style == 14 || style == 114) {
    if (!ReadTime(&in, date)) return DateResult::kNoDate;
    return date->IsValid() ? DateResult::kOk : DateResult::kOutsideCalendar;
  } else {
    read = ReadNamed(&in, style == 6 || style == 106 || style == 13 || style == 113, date);
  }
  return read ? ReadTimeBehind(&in, date) : DateResult::kNoDate;
}

std::string FormatStyled(const DateTime& d, int style) {
  if (const Style* ordered = FindOrdered(style)) {
    std::string text = OrderedText(d, *ordered);
    if (style == 20 || style == 120) text += fmt::format(" {}", Clock24(d));
    if (style == 21 || style == 121) text += fmt::format(" {}.000", Clock24(d));
    if (style == 126) text += fmt::format("T{}", Clock24(d));
    return text;
  }
  const std::string month = std::string(kMonths[d.month - 1], 3);
  switch (style) {
    case 6:
      return fmt::format("{:02} {} {:02}", d.day, month, d.year % 100);
    case 106:
      return fmt::format("{:02} {} {:04}", d.day, month, d.year);
    case 7:
      return fmt::format("{} {:02}, {:02}", month, d.day, d.year % 100);
    case 107:
      return fmt::format("{} {:02}, {:04}", month, d.day, d.year);
    case 8:
    case 108:
      return Clock24(d);
    case 13:
    case 113:
      return fmt::format("{:02} {} {:04} {}:000", d.day, month, d.year, Clock24(d));
    case 14:
    case 114:
      return Clock24(d) + ":000";
    default:
      return fmt::format("{} {:2} {:04} {}", month, d.day, d.year, Clock12(d));
  }
}

DatePart PartByName(std::string_view name) {
  static constexpr std::pair<std::string_view, DatePart> kNames[] = {
      {"year", DatePart::kYear},        {"quarter", DatePart::kQuarter},
      {"month", DatePart::kMonth},      {"dayofyear", DatePart::kDayOfYear},
      {"day", DatePart::kDay},          {"week", DatePart::kWeek},
      {"iso_week", DatePart::kIsoWeek}, {"weekday", DatePart::kWeekday},
      {"hour", DatePart::kHour},        {"minute", DatePart::kMinute},
      {"second", DatePart::kSecond},    {"millisecond", DatePart::kMillisecond},
  };
  for (const auto& [text, part] : kNames) {
    if (text == name) return part;
  }
  return DatePart::kNone;
}

int PartOf(DatePart part, const DateTime& d) {
  const int day_of_year = d.DayNumber() - FirstOfYear(d.year).DayNumber();
  switch (part) {
    case DatePart::kYear:
      return d.year;
    case DatePart::kQuarter:
      return (d.month + 2) / 3;
    case DatePart::kMonth:
      return d.month;
    case DatePart::kDayOfYear:
      return day_of_year + 1;
    case DatePart::kDay:
      return d.day;
    case DatePart::kWeek:
      return (day_of_year + FirstOfYear(d.year).Weekday()) / 7 + 1;
    case DatePart::kIsoWeek:
      return IsoWeek(d);
    case DatePart::kWeekday:
      return d.Weekday() + 1;
    case DatePart::kHour:
      return d.hour;
    case DatePart::kMinute:
      return d.minute;
    case DatePart::kSecond:
      return d.second;
    case DatePart::kMillisecond:
    case DatePart::kNone:
      break;
  }
  return 0;
}

std::string PartName(DatePart part, const DateTime& d) {
  if (part == DatePart::kMonth) return kMonths[d.month - 1];
  if (part == DatePart::kWeekday) return kWeekdays[d.Weekday()];
  return std::to_string(PartOf(part, d));
}

DateTime AddPart(DatePart part, long long count, const DateTime& d) {
  constexpr long long kMost = 400'000'000'000;  // longer than the calendar in seconds
  const long long bounded = count > kMost ? kMost : count < -kMost ? -kMost : count;
  const auto months = [&d](long long n) {
    if (n > 120'000 || n < -120'000) throw std::out_of_range("months");
    return d.AddMonths(static_cast<int>(n));
  };
  DateTime result;
  switch (part) {
    case DatePart::kYear:
      result = months(bounded * 12);
      break;
    case DatePart::kQuarter:
      result = months(bounded * 3);
      break;
    case DatePart::kMonth:
      result = months(bounded);
      break;
    case DatePart::kWeek:
      result = d.AddSeconds(bounded * 7 * 86400);
      break;
    case DatePart::kHour:
      result = d.AddSeconds(bounded * 3600);
      break;
    case DatePart::kMinute:
      result = d.AddSeconds(bounded * 60);
      break;
    case DatePart::kSecond:
      result = d.AddSeconds(bounded);
      break;
    case DatePart::kMillisecond:
      result = d.AddSeconds(FloorDiv(bounded, 1000));
      break;
    default:
      result = d.AddSeconds(bounded * 86400);
  }
  if (result.year < 1753) throw std::out_of_range("year");
  return result;
}

long long CountBoundaries(DatePart part, const DateTime& a, const DateTime& b) {
  const auto crossed = [&](long long unit) {
    return FloorDiv(SecondsOf(b), unit) - FloorDiv(SecondsOf(a), unit);
  };
  switch (part) {
    case DatePart::kYear:
      return b.year - a.year;
    case DatePart::kQuarter:
      return (b.year - a.year) * 4LL + (b.month - 1) / 3 - (a.month - 1) / 3;
    case DatePart::kMonth:
      return (b.year - a.year) * 12LL + b.month - a.month;
    case DatePart::kWeek:
      // Day number 3 (1970-01-04) was a Sunday.
      return FloorDiv(b.DayNumber() - 3LL, 7) - FloorDiv(a.DayNumber() - 3LL, 7);
    case DatePart::kHour:
      return crossed(3600);
    case DatePart::kMinute:
      return crossed(60);
    case DatePart::kSecond:
      return crossed(1);
    case DatePart::kMillisecond:
      return crossed(1) * 1000;
    default:
      return b.DayNumber() - a.DayNumber();
  }
}

}  // namespace kaunter::sql
