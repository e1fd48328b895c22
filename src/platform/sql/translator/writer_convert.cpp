// From one type to another, told (CONVERT, CAST) or silent.
#include <fmt/format.h>

#include <iterator>

#include "platform/sql/sql_error.h"
#include "platform/sql/translator/writer.h"

namespace kaunter::sql {

namespace {

// The places of a sum, difference or product; 0 for a quotient, which has its own digits, and for
// what is rounded already.
int PlacesOf(const Expr& value) {
  if (!IsDecimal(value) || value.kind != ExprKind::kBinary || value.op == Op::kDivide) return 0;
  return value.type.scale;
}

}  // namespace

void Writer::ToInteger(const Expr& value, int digits) {
  out_ += "k_to_int(";
  Argument(value);
  fmt::format_to(std::back_inserter(out_), ", {})", digits);
}

void Writer::Coercion(const Expr& value, const Type& target) {
  const bool text = IsText(value);
  switch (target.kind) {
    case TypeKind::kText:
      TextOf(value);
      return;
    case TypeKind::kInteger:
      ToInteger(value, target.precision);
      return;
    case TypeKind::kDecimal:
      if (text) {
        out_ += "k_to_dec(";
        Value(value);
        fmt::format_to(std::back_inserter(out_), ", {})", target.scale);
      } else {
        OpenRound();
        Operand(value);
        CloseRound(target.scale, PlacesOf(value));
      }
      return;
    case TypeKind::kDouble:
      if (text) {
        out_ += "k_to_float(";
        Value(value);
        out_ += ')';
      } else {
        ToDouble(value);
      }
      return;
    case TypeKind::kDate:
      out_ += "k_to_date(";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDateTime:
      out_ += "k_to_datetime(";
      Argument(value);
      out_ += ')';
      return;
    default:
      Value(value);
      return;
  }
}

// A number that does not fit must not lose digits; a text or a date is cut.
void Writer::ConvertedToText(const Expr& value, const Expr* style, int width) {
  constexpr int kLongestNumber = 30;
  const Type& from = value.type;
  const bool number = IsNumber(from);
  const bool narrow = width > 0 && !(number && width >= kLongestNumber) &&
                      !(from.kind == TypeKind::kText && from.width > 0 && from.width <= width);
  if (narrow) out_ += number ? "k_check_text(" : "k_left(";
  if (IsDate(from) && style != nullptr) {
    out_ += "k_convert(";
    Value(value);
    out_ += ", ";
    Value(*style);
    out_ += ')';
  } else if (from.money) {
    out_ += "k_money_text(";
    Value(value);
    out_ += ", ";
    if (style != nullptr) {
      Argument(*style);
    } else {
      out_ += '0';
    }
    out_ += ')';
  } else {
    TextOf(value);
  }
  if (narrow) fmt::format_to(std::back_inserter(out_), ", {}{})", width, number ? ", ''" : "");
}

void Writer::Converted(const Expr& expr) {
  const Expr& value = *expr.args[0];
  const Expr* style = expr.args.size() > 1 ? expr.args[1].get() : nullptr;
  const Type& from = value.type;
  const Type& target = expr.target;
  if (target.kind == TypeKind::kText) return ConvertedToText(value, style, target.width);
  if (IsDate(target) && IsText(value) && style != nullptr) {
    if (target.kind == TypeKind::kDate) out_ += "k_to_date(";
    out_ += "k_parse_date(";
    Value(value);
    out_ += ", ";
    Value(*style);
    out_ += target.kind == TypeKind::kDate ? "))" : ")";
    return;
  }
  if (IsDate(from) && target.kind == TypeKind::kInteger) {
    out_ += "k_datediff('day', '1900-01-01', ";
    Value(value);
    out_ += ')';
    return;
  }
  if (IsDate(from) && IsNumber(target)) {
    Fail(529, "Explicit conversion of a date to this number type is not known here.",
         statement_.text, expr.place);
  }
  if (from.kind == TypeKind::kInteger && target.kind == TypeKind::kInteger) {
    // A column is known to fit; what was worked out or written may be larger than its type.
    if (value.kind == ExprKind::kColumn && from.precision <= target.precision) {
      Value(value);
    } else {
      ToInteger(value, target.precision);
    }
    return;
  }
  const bool same =
      from.kind == target.kind && (from.kind != TypeKind::kDecimal || from.scale <= target.scale);
  const bool open = from.kind == TypeKind::kNull || from.kind == TypeKind::kUnknown;
  const bool wider = (from.kind == TypeKind::kInteger && target.kind == TypeKind::kDecimal) ||
                     (from.kind == TypeKind::kDate && target.kind == TypeKind::kDateTime);
  if (same || open || wider) {
    Value(value);
  } else {
    Coercion(value, target);
  }
}

}  // namespace kaunter::sql
