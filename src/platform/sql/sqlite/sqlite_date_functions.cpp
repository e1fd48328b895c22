// Date functions: a date goes in and out as its canonical text.
#include <fmt/format.h>

#include <array>
#include <cmath>

#include "platform/digest.h"
#include "platform/sql/dates.h"
#include "platform/sql/sqlite/sqlite_function_call.h"

namespace kaunter::sql {
namespace {

[[noreturn]] void Refuse(DateResult result) {
  if (result == DateResult::kOutsideCalendar) {
    throw Refusal{242,
                  "The conversion of a nvarchar data type to a datetime data type resulted in an "
                  "out-of-range value."};
  }
  throw Refusal{241, "Conversion failed when converting date and/or time from character string."};
}

DateResult Read(const Call& call, int i, DateTime* date) {
  if (!call.IsText(i)) return FromDays(call.Number(i), date);
  return ParseDateTime(call.Text(i), date);
}

DateTime Date(const Call& call, int i) {
  DateTime date;
  const DateResult result = Read(call, i, &date);
  if (result != DateResult::kOk) Refuse(result);
  return date;
}

void ToDate(Call& call) { call.Return(Date(call, 0).DateOnly().ToCanonical()); }

// What the server's datetime holds begins in 1753.
DateResult ReadDateTime(const Call& call, int i, DateTime* date) {
  const DateResult result = Read(call, i, date);
  if (result == DateResult::kOk && date->year < 1753) return DateResult::kOutsideCalendar;
  return result;
}

void ToDateTime(Call& call) {
  DateTime date;
  const DateResult result = ReadDateTime(call, 0, &date);
  if (result != DateResult::kOk) Refuse(result);
  call.Return(date.ToCanonical());
}

void IsDate(Call& call) {
  DateTime date;
  // An empty text converts, yet is no date.
  const bool empty =
      call.IsText(0) && call.Text(0).find_first_not_of(' ') == std::string_view::npos;
  call.Return(!call.IsNull(0) && call.IsText(0) && !empty &&
                      ReadDateTime(call, 0, &date) == DateResult::kOk
                  ? 1
                  : 0);
}

int Style(const Call& call, int i) {
  const std::int64_t style = call.Integer(i);
  if (style < 0 || style > 200 || !KnownDateStyle(static_cast<int>(style))) {
    throw Refusal{281, fmt::format("{} is not a valid style number when converting from datetime "
                                   "to a character string.",
                                   style)};
  }
  return static_cast<int>(style);
}

void ParseDate(Call& call) {
  DateTime date;
  const int style = Style(call, 1);
  const DateResult result =
      call.IsText(0) ? ParseStyled(call.Text(0), style, &date) : FromDays(call.Number(0), &date);
  if (result != DateResult::kOk) Refuse(result);
  call.Return(date.ToCanonical());
}

void Convert(Call& call) {
  const int style = Style(call, 1);
  call.Return(FormatStyled(Date(call, 0), style));
}

DatePart Part(const Call& call) {
  const DatePart part = PartByName(call.Text(0));
  if (part == DatePart::kNone) {
    throw Refusal{155, fmt::format("'{}' is not a recognized datepart option.", call.Text(0))};
  }
  return part;
}

void GetPart(Call& call) { call.Return(PartOf(Part(call), Date(call, 1))); }

void GetName(Call& call) { call.Return(PartName(Part(call), Date(call, 1))); }

template <typename Compute>
void ReturnInCalendar(Call& call, Compute compute) {
  try {
    call.Return(compute().ToCanonical());
  } catch (const std::out_of_range&) {
    throw Refusal{517, "Adding a value to a 'datetime' column caused an overflow."};
  }
}

void Add(Call& call) {
  const DatePart part = Part(call);
  const DateTime date = Date(call, 2);
  const double count = call.Number(1);
  if (!(std::fabs(count) < 1e15)) {
    throw Refusal{517, "Adding a value to a 'datetime' column caused an overflow."};
  }
  ReturnInCalendar(call, [&] { return AddPart(part, static_cast<long long>(count), date); });
}

void Diff(Call& call) {
  call.Return(static_cast<std::int64_t>(CountBoundaries(Part(call), Date(call, 1), Date(call, 2))));
}

void Plus(Call& call) {
  const DateTime date = Date(call, 0);
  const double days = call.Number(1);
  if (!(std::fabs(days) < 1e7)) {
    throw Refusal{517, "Adding a value to a 'datetime' column caused an overflow."};
  }
  ReturnInCalendar(call,
                   [&] { return AddPart(DatePart::kSecond, std::llround(days * 86400), date); });
}

void EndOfMonth(Call& call) {
  const DateTime date = Date(call, 0).DateOnly();
  ReturnInCalendar(call, [&] {
    DateTime end = AddPart(DatePart::kMonth, call.Integer(1), date);
    end.day = CalendarDaysInMonth(end.month, end.year);
    return end;
  });
}

void NewId(Call& call) {
  std::array<unsigned char, 16> bytes{};
  FillWithRandom(bytes);
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += fmt::format("{:02X}", bytes[i]);
  }
  call.Return(text);
}

constexpr FunctionEntry kEntries[] = {
    {"k_to_date", Guarded<ToDate>},       {"k_to_datetime", Guarded<ToDateTime>},
    {"k_isdate", Guarded<IsDate, false>}, {"k_parse_date", Guarded<ParseDate>},
    {"k_convert", Guarded<Convert>},      {"k_datepart", Guarded<GetPart>},
    {"k_datename", Guarded<GetName>},     {"k_dateadd", Guarded<Add>},
    {"k_datediff", Guarded<Diff>},        {"k_date_plus", Guarded<Plus>},
    {"k_eomonth", Guarded<EndOfMonth>},   {"k_newid", Guarded<NewId>},
};

}  // namespace

std::span<const FunctionEntry> DateFunctions() { return kEntries; }

}  // namespace kaunter::sql
