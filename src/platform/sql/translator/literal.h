// A literal of a statement as the value that an engine is given, by the converter that the binder
// chose for its shape. Every engine converts and refuses alike, since all go through here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

struct LiteralValue {
  enum class Kind { kText, kInteger, kDecimal, kDouble, kDate };
  Kind kind = Kind::kText;
  std::string_view text;     // kText; kDate: canonical. Lives in the literal, or in `made`
  std::int64_t integer = 0;  // kInteger; kDecimal: units of `scale` places
  int scale = 0;
  double number = 0;  // kDouble
  std::string made;
};

// Converts `literal` into `value`, which must stay where it is while `text` is used. Throws
// SqlError with the server's number for a literal that does not convert (8114, 245, 241, 242, 2628,
// 8115), naming the column where it is known.
void ConvertLiteral(std::string_view literal, const Parameter& parameter, LiteralValue* value);

}  // namespace kaunter::sql
