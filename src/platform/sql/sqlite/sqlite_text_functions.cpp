// Text functions as the server does them: positions count characters from 1, searching is
// case-blind.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

#include "platform/sql/dates.h"
#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_function_call.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

constexpr std::size_t kLongestResult = 1'000'000;

std::string FloatText(double x) {
  // The server prints six significant digits and an exponent of three digits.
  std::string text = fmt::format("{:.6g}", x == 0 ? 0.0 : x);
  const std::size_t e = text.find('e');
  if (e != std::string::npos && text.size() - e == 4) text.insert(e + 2, 1, '0');
  return text;
}

void TextOf(Call& call) {
  const std::string_view code = call.Text(1);
  if (code == "da" || code == "dt") {
    DateTime date;
    if (!call.IsText(0) || ParseDateTime(call.Text(0), &date) != DateResult::kOk) {
      return call.Return(call.Text(0));
    }
    return call.Return(code == "da" ? date.DateOnly().ToCanonical() : FormatStyled(date, 0));
  }
  if (call.IsText(0)) return call.ReturnArgument(0);
  if (code.starts_with('d') && code.size() >= 2) {
    const int scale = std::atoi(std::string(code.substr(1)).c_str());
    const int bounded = scale > kMaxScale ? kMaxScale : scale;
    return call.Return(DecimalText(DecimalUnits(call.Raw(0), bounded), bounded));
  }
  if (code == "f") return call.Return(FloatText(call.Number(0)));
  call.Return(std::to_string(call.Integer(0)));
}

void MoneyText(Call& call) {
  constexpr int kSen = 2;
  constexpr int kAllPlaces = 4;
  const std::int64_t style = call.Integer(1);
  if (style == 2 || style == 126) {
    return call.Return(DecimalText(DecimalUnits(call.Raw(0), kAllPlaces), kAllPlaces));
  }
  if (style != 0 && style != 1) {
    throw Refusal{281, fmt::format("{} is not a valid style number when converting from money to a "
                                   "character string.",
                                   style)};
  }
  std::string text = DecimalText(DecimalUnits(call.Raw(0), kSen), kSen);
  const std::size_t first = text.front() == '-' ? 1 : 0;
  for (std::size_t at = text.size() - 3; style == 1 && at > first + 3;)
    text.insert(at -= 3, 1, ',');
  call.Return(text);
}

void CheckText(Call& call) {
  const std::string_view text = call.Text(0);
  const auto width = static_cast<std::size_t>(std::max<std::int64_t>(call.Integer(1), 0));
  if (text.size() <= width) {
    if (call.IsText(0)) return call.ReturnArgument(0);
    return call.Return(text);
  }
  std::size_t at = 0;
  for (std::size_t count = 0; count < width && at < text.size(); ++count) NextChar(text, &at);
  if (text.find_first_not_of(' ', at) != std::string_view::npos) {
    throw Refusal{
        2628, fmt::format("String or binary data would be truncated in column '{}'. It takes {} "
                          "characters. Truncated value: '{}'.",
                          call.Text(2), width, text.substr(0, at))};
  }
  call.Return(text.substr(0, at));
}

void Len(Call& call) {
  std::string_view text = call.Text(0);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  call.Return(static_cast<std::int64_t>(CountChars(text)));
}

template <char32_t (*kMap)(char32_t)>
void MapCase(Call& call) {
  std::u32string text = Decode(call.Text(0));
  for (char32_t& c : text) c = kMap(c);
  call.Return(Encode(text));
}

[[noreturn]] void RefuseLength(int number, std::string_view function) {
  throw Refusal{number,
                fmt::format("Invalid length parameter passed to the {} function.", function)};
}

// Characters from position `start` (1 is the first, below it is before the text) for `count`.
std::string Part(std::string_view text, std::int64_t start, std::int64_t count) {
  std::int64_t end = 0;
  if (__builtin_add_overflow(start, count, &end)) end = std::numeric_limits<std::int64_t>::max();
  start = std::max<std::int64_t>(start, 1);
  std::size_t at = 0;
  std::int64_t position = 1;
  for (; position < start && at < text.size(); ++position) NextChar(text, &at);
  const std::size_t begin = at;
  for (; position < end && at < text.size(); ++position) NextChar(text, &at);
  return std::string(text.substr(begin, at - begin));
}

void Left(Call& call) {
  if (call.Integer(1) < 0) RefuseLength(536, "left");
  call.Return(Part(call.Text(0), 1, call.Integer(1)));
}

void Right(Call& call) {
  if (call.Integer(1) < 0) RefuseLength(536, "right");
  const auto size = static_cast<std::int64_t>(CountChars(call.Text(0)));
  const std::int64_t count = std::min(call.Integer(1), size);
  call.Return(Part(call.Text(0), size - count + 1, count));
}

void Substring(Call& call) {
  if (call.Integer(2) < 0) RefuseLength(537, "substring");
  call.Return(Part(call.Text(0), call.Integer(1), call.Integer(2)));
}

void CharIndex(Call& call) {
  const std::u32string needle = Decode(call.Text(0));
  if (needle.empty()) return call.Return(0);
  const std::int64_t start = call.count() > 2 ? std::max<std::int64_t>(call.Integer(2), 1) : 1;
  const std::size_t found =
      FindText(Decode(call.Text(1)), needle, static_cast<std::size_t>(start - 1));
  call.Return(found == std::u32string::npos ? 0 : static_cast<std::int64_t>(found) + 1);
}

// The pattern from position to position: the first at which its part behind a leading % matches.
void PatIndex(Call& call) {
  const std::string_view pattern = call.Text(0);
  const std::string_view text = call.Text(1);
  if (!pattern.starts_with('%')) {
    return call.Return(LikePattern(pattern).Matches(text) ? 1 : 0);
  }
  const LikePattern rest(pattern.substr(1));
  std::int64_t position = 1;
  for (std::size_t at = 0; at <= text.size(); ++position) {
    if (rest.Matches(text.substr(at))) return call.Return(position);
    if (at == text.size()) break;
    NextChar(text, &at);
  }
  call.Return(0);
}

void Replace(Call& call) {
  const std::u32string text = Decode(call.Text(0));
  const std::u32string from = Decode(call.Text(1));
  if (from.empty()) return call.Return(call.Text(0));
  const std::string_view to = call.Text(2);
  std::string result;
  std::size_t at = 0;
  while (true) {
    const std::size_t found = FindText(text, from, at);
    const std::size_t end = std::min(found, text.size());
    result += Encode(std::u32string_view(text).substr(at, end - at));
    if (found == std::u32string::npos) break;
    result += to;
    if (result.size() > 4 * kLongestResult) RefuseOverflow("nvarchar");
    at = found + from.size();
  }
  call.Return(result);
}

void Stuff(Call& call) {
  const std::u32string text = Decode(call.Text(0));
  const std::int64_t start = call.Integer(1);
  const std::int64_t count = call.Integer(2);
  const auto size = static_cast<std::int64_t>(text.size());
  if (start < 1 || start > size || count < 0) return call.Null();
  const auto begin = static_cast<std::size_t>(start - 1);
  const auto cut = static_cast<std::size_t>(std::min(count, size - start + 1));
  call.Return(Encode(std::u32string_view(text).substr(0, begin)) + std::string(call.Text(3)) +
              Encode(std::u32string_view(text).substr(begin + cut)));
}

void Reverse(Call& call) {
  std::u32string text = Decode(call.Text(0));
  std::reverse(text.begin(), text.end());
  call.Return(Encode(text));
}

std::string Repeated(std::string_view text, std::int64_t count) {
  if (!text.empty() && count > static_cast<std::int64_t>(kLongestResult / text.size())) {
    RefuseOverflow("nvarchar");
  }
  std::string result;
  for (std::int64_t i = 0; i < count && !text.empty(); ++i) result += text;
  return result;
}

void Replicate(Call& call) {
  if (call.Integer(1) < 0) return call.Null();
  call.Return(Repeated(call.Text(0), call.Integer(1)));
}

void Space(Call& call) {
  if (call.Integer(0) < 0) return call.Null();
  call.Return(Repeated(" ", call.Integer(0)));
}

// Decimals give way to the length; a whole part that does not fit shows as asterisks.
void Str(Call& call) {
  const std::int64_t length = call.Integer(1);
  if (length < 0 || length > 8000) return call.Null();
  int decimals = static_cast<int>(std::clamp<std::int64_t>(call.Integer(2), 0, kMaxScale));
  std::int64_t units = 0;
  while (true) {
    if (!ScaleDouble(call.Number(0), decimals, &units)) {
      return call.Return(Repeated("*", length));
    }
    const std::string text = DecimalText(units, decimals);
    if (static_cast<std::int64_t>(text.size()) <= length) {
      return call.Return(fmt::format("{:>{}}", text, length));
    }
    if (decimals == 0) return call.Return(Repeated("*", length));
    --decimals;
  }
}

void Ascii(Call& call) {
  if (call.Text(0).empty()) return call.Null();
  std::size_t at = 0;
  call.Return(static_cast<std::int64_t>(NextChar(call.Text(0), &at)));
}

char32_t EscapeOf(Call& call) {
  if (call.count() < 3) return 0;
  const std::u32string escape = Decode(call.Text(2));
  if (escape.size() != 1) {
    throw Refusal{506, fmt::format("The invalid escape character \"{}\" was specified in a LIKE "
                                   "predicate.",
                                   call.Text(2))};
  }
  return escape[0];
}

// The pattern is made ready once a statement where it is the same for all rows.
void Like(Call& call) {
  auto* ready = static_cast<LikePattern*>(sqlite3_get_auxdata(call.context(), 0));
  if (ready != nullptr) return call.Return(ready->Matches(call.Text(1)) ? 1 : 0);
  auto pattern = std::make_unique<LikePattern>(call.Text(0), EscapeOf(call));
  call.Return(pattern->Matches(call.Text(1)) ? 1 : 0);
  // With an escape that changes from row to row the pattern is another one each time.
  if (call.count() == 2) {
    sqlite3_set_auxdata(call.context(), 0, pattern.release(),
                        [](void* p) { delete static_cast<LikePattern*>(p); });
  }
}

constexpr FunctionEntry kEntries[] = {
    {"k_text", Guarded<TextOf>},
    {"k_money_text", Guarded<MoneyText>},
    {"k_check_text", Guarded<CheckText>},
    {"k_len", Guarded<Len>},
    {"k_upper", Guarded<MapCase<ToUpper>>},
    {"k_lower", Guarded<MapCase<ToLower>>},
    {"k_left", Guarded<Left>},
    {"k_right", Guarded<Right>},
    {"k_substring", Guarded<Substring>},
    {"k_charindex", Guarded<CharIndex>},
    {"k_patindex", Guarded<PatIndex>},
    {"k_replace", Guarded<Replace>},
    {"k_stuff", Guarded<Stuff>},
    {"k_reverse", Guarded<Reverse>},
    {"k_replicate", Guarded<Replicate>},
    {"k_space", Guarded<Space>},
    {"k_str", Guarded<Str>},
    {"k_ascii", Guarded<Ascii>},
    {"like", Guarded<Like>},
};

}  // namespace

std::span<const FunctionEntry> TextFunctions() { return kEntries; }

}  // namespace kaunter::sql
