// Rounding, conversion and arithmetic as the server does them.
#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_function_call.h"

namespace kaunter::sql {
namespace {

int ScaleArgument(const Call& call, int i) {
  const std::int64_t scale = call.Integer(i);
  return scale < 0 ? 0 : scale > kMaxScale ? kMaxScale : static_cast<int>(scale);
}

// Units back into a number: an integer where nothing stands behind the point.
void ReturnUnits(Call& call, std::int64_t units, int scale) {
  const std::int64_t power = PowerOfTen(scale);
  if (units % power == 0) return call.Return(units / power);
  call.Return(Unscale(units, scale));
}

// A sum or difference of decimals keeps a residue that may lie at a tie of the coarser scale:
// 983.30 - 983.295 is 0.00499999999. It is first brought to the places that it has.
void Round(Call& call) {
  if (call.IsInteger(0)) return call.ReturnArgument(0);
  const int scale = ScaleArgument(call, 1);
  std::int64_t units = 0;
  if (call.count() > 2) {
    const int from = ScaleArgument(call, 2);
    if (from > scale && ScaleDouble(call.Number(0), from, &units)) {
      return call.Return(Unscale(DivideHalfAway(units, PowerOfTen(from - scale)), scale));
    }
  }
  call.Return(Unscale(DecimalUnits(call.Raw(0), scale), scale));
}

void ToDecimal(Call& call) {
  if (call.IsInteger(0)) return call.ReturnArgument(0);
  const int scale = ScaleArgument(call, 1);
  ReturnUnits(call, DecimalUnits(call.Raw(0), scale), scale);
}

// The whole part of a number, in an integer type of so many digits.
std::int64_t WholePart(const Call& call, int digits) {
  const double number = call.Number(0);
  if (digits == kBitDigits) return number != 0 ? 1 : 0;
  std::int64_t value = call.IsInteger(0) ? call.Integer(0) : 0;
  if (!call.IsInteger(0)) {
    if (!(std::fabs(number) < 9.2e18)) RefuseOverflow("int");
    value = static_cast<std::int64_t>(number);
  }
  if (!FitsInteger(value, digits)) RefuseOverflow("int");
  return value;
}

void ToInteger(Call& call) {
  const int digits = call.count() > 1 ? static_cast<int>(call.Integer(1)) : 0;
  if (!call.IsText(0)) return call.Return(WholePart(call, digits));
  const std::string_view text = call.Text(0);
  if (text.find_first_not_of(' ') == std::string_view::npos) return call.Return(0);
  std::int64_t value = 0;
  const DecimalResult result = ParseInteger(text, /*cut=*/false, &value);
  if (result == DecimalResult::kNoNumber) {
    throw Refusal{
        245,
        fmt::format("Conversion failed when converting the nvarchar value '{}' to data type int.",
                    text)};
  }
  if (result == DecimalResult::kTooLarge || !FitsInteger(value, digits)) {
    throw Refusal{
        248,
        fmt::format("The conversion of the nvarchar value '{}' overflowed an int column.", text)};
  }
  call.Return(digits == kBitDigits ? value != 0 : value);
}

void ToFloat(Call& call) {
  if (!call.IsText(0)) return call.Return(call.Number(0));
  const std::string_view text = call.Text(0);
  if (text.find_first_not_of(' ') == std::string_view::npos) return call.Return(0.0);
  double value = 0;
  if (!ParseDouble(text, &value)) {
    throw Refusal{8114, "Error converting data type nvarchar to float."};
  }
  call.Return(value);
}

[[noreturn]] void RefuseZero() { throw Refusal{8134, "Divide by zero error encountered."}; }

void Divisor(Call& call) {
  if (call.Number(0) == 0) RefuseZero();
  call.ReturnArgument(0);
}

void Mod(Call& call) {
  if (call.Number(1) == 0) RefuseZero();
  if (call.IsInteger(0) && call.IsInteger(1)) {
    const std::int64_t b = call.Integer(1);
    return call.Return(b == -1 ? 0 : call.Integer(0) % b);
  }
  // Decimals leave no binary residue: 5.30 % 0.10 is 0.
  std::int64_t a = 0, b = 0;
  if (ScaleDouble(call.Number(0), 4, &a) && ScaleDouble(call.Number(1), 4, &b) && b != 0 &&
      Unscale(a, 4) == call.Number(0) && Unscale(b, 4) == call.Number(1)) {
    return ReturnUnits(call, a % b, 4);
  }
  call.Return(std::fmod(call.Number(0), call.Number(1)));
}

// ROUND of the server: an integer stays one, places may lie left of the point.
void RoundTsql(Call& call) {
  const std::int64_t places = call.Integer(1);
  const bool cut = call.count() > 2 && call.Integer(2) != 0;
  if (places < -18) return call.Return(0);
  if (places < 0) {
    const std::int64_t power = PowerOfTen(static_cast<int>(-places));
    if (!call.IsInteger(0)) {
      const double x = call.Number(0) / static_cast<double>(power);
      return call.Return((cut ? std::trunc(x) : std::round(x)) * static_cast<double>(power));
    }
    const std::int64_t x = call.Integer(0);
    std::int64_t rounded = x / power * power;
    const std::int64_t rest = x - rounded;
    const bool away = rest >= power - power / 2 || -rest >= power - power / 2;
    if (!cut && away && __builtin_add_overflow(rounded, x < 0 ? -power : power, &rounded)) {
      RefuseOverflow("int");
    }
    return call.Return(rounded);
  }
  if (call.IsInteger(0)) return call.ReturnArgument(0);
  std::int64_t units = 0;
  const int scale = ScaleArgument(call, 1);
  const bool fits =
      cut ? CutDouble(call.Number(0), scale, &units) : ScaleDouble(call.Number(0), scale, &units);
  // A number so large has no digits at that place.
  if (!fits) return call.ReturnArgument(0);
  call.Return(Unscale(units, scale));
}

void Floor(Call& call) {
  if (call.IsInteger(0)) return call.ReturnArgument(0);
  call.Return(std::floor(call.Number(0)));
}

void Ceiling(Call& call) {
  if (call.IsInteger(0)) return call.ReturnArgument(0);
  call.Return(std::ceil(call.Number(0)));
}

void Abs(Call& call) {
  if (!call.IsInteger(0)) return call.Return(std::fabs(call.Number(0)));
  const std::int64_t x = call.Integer(0);
  if (x == std::numeric_limits<std::int64_t>::min()) RefuseOverflow("int");
  call.Return(x < 0 ? -x : x);
}

void Sign(Call& call) {
  const double x = call.Number(0);
  call.Return(x > 0 ? 1 : x < 0 ? -1 : 0);
}

void Power(Call& call) {
  const double result = std::pow(call.Number(0), call.Number(1));
  if (std::isnan(result)) throw Refusal{3623, "An invalid floating point operation occurred."};
  if (std::isinf(result)) RefuseOverflow("float");
  if (!call.IsInteger(0) || !call.IsInteger(1)) return call.Return(result);
  if (!(std::fabs(result) < 9.2e18)) RefuseOverflow("int");
  call.Return(static_cast<std::int64_t>(result));
}

void Sqrt(Call& call) {
  if (call.Number(0) < 0) {
    throw Refusal{3623, "An invalid floating point operation occurred."};
  }
  call.Return(std::sqrt(call.Number(0)));
}

void IsNumeric(Call& call) {
  if (call.IsNull(0)) return call.Return(0);
  if (!call.IsText(0)) return call.Return(1);
  std::string plain;
  for (const char c : call.Text(0)) {
    if (c != ',') plain += c;
  }
  double value = 0;
  call.Return(ParseDouble(plain, &value) ? 1 : 0);
}

constexpr FunctionEntry kEntries[] = {
    {"k_round", Guarded<Round>},
    {"k_to_int", Guarded<ToInteger>},
    {"k_to_dec", Guarded<ToDecimal>},
    {"k_to_float", Guarded<ToFloat>},
    {"k_divisor", Guarded<Divisor>},
    {"k_mod", Guarded<Mod>},
    {"k_round_tsql", Guarded<RoundTsql>},
    {"k_floor", Guarded<Floor>},
    {"k_ceiling", Guarded<Ceiling>},
    {"k_abs", Guarded<Abs>},
    {"k_sign", Guarded<Sign>},
    {"k_power", Guarded<Power>},
    {"k_sqrt", Guarded<Sqrt>},
    {"k_isnumeric", Guarded<IsNumeric, false>},
};

}  // namespace

void RefuseOverflow(std::string_view type) {
  throw Refusal{
      8115, fmt::format("Arithmetic overflow error converting expression to data type {}.", type)};
}

std::int64_t DecimalUnits(sqlite3_value* value, int scale) {
  std::int64_t units = 0;
  const int type = sqlite3_value_type(value);
  bool fits = true;
  if (type == SQLITE_INTEGER) {
    fits = !__builtin_mul_overflow(sqlite3_value_int64(value), PowerOfTen(scale), &units);
  } else if (type == SQLITE_FLOAT) {
    fits = ScaleDouble(sqlite3_value_double(value), scale, &units);
  } else {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
    const DecimalResult result = ParseDecimal({text == nullptr ? "" : text, size}, scale, &units);
    if (result == DecimalResult::kNoNumber) {
      throw Refusal{8114, "Error converting data type nvarchar to numeric."};
    }
    fits = result == DecimalResult::kOk;
  }
  // Beyond the largest amount a double no longer holds the decimals.
  if (!fits || (scale >= 2 && (units / PowerOfTen(scale) > kLargestAmount ||
                               units / PowerOfTen(scale) < -kLargestAmount))) {
    RefuseOverflow("numeric");
  }
  return units;
}

std::span<const FunctionEntry> NumberFunctions() { return kEntries; }

}  // namespace kaunter::sql
