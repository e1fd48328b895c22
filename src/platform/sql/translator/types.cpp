// The types that columns declare.
#include <algorithm>
#include <string>

#include "platform/sql/text.h"
#include "platform/sql/translator/lexer.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {
namespace {

struct NamedType {
  std::string_view name;
  Type type;
};

constexpr int kMoneyScale = 4;
constexpr int kMaxScale = 10;  // the engines round no finer

constexpr NamedType kTypes[] = {
    {"nvarchar", {TypeKind::kText, 1, 0, 0}},
    {"varchar", {TypeKind::kText, 1, 0, 0}},
    {"nchar", {TypeKind::kText, 1, 0, 0}},
    {"char", {TypeKind::kText, 1, 0, 0}},
    {"character", {TypeKind::kText, 1, 0, 0}},
    {"text", {TypeKind::kText, 0, 0, 0}},
    {"ntext", {TypeKind::kText, 0, 0, 0}},
    {"sysname", {TypeKind::kText, 128, 0, 0}},
    {"uniqueidentifier", {TypeKind::kText, 36, 0, 0}},
    {"int", {TypeKind::kInteger, 0, 10, 0}},
    {"integer", {TypeKind::kInteger, 0, 10, 0}},
    {"bigint", {TypeKind::kInteger, 0, 19, 0}},
    {"smallint", {TypeKind::kInteger, 0, 5, 0}},
    {"tinyint", {TypeKind::kInteger, 0, 3, 0}},
    {"bit", {TypeKind::kInteger, 0, 1, 0}},
    {"decimal", {TypeKind::kDecimal, 0, 18, 0}},
    {"numeric", {TypeKind::kDecimal, 0, 18, 0}},
    {"dec", {TypeKind::kDecimal, 0, 18, 0}},
    {"money", {TypeKind::kDecimal, 0, 19, kMoneyScale, true}},
    {"smallmoney", {TypeKind::kDecimal, 0, 10, kMoneyScale, true}},
    {"float", {TypeKind::kDouble, 0, 0, 0}},
    {"real", {TypeKind::kDouble, 0, 0, 0}},
    {"datetime", {TypeKind::kDateTime, 0, 0, 0}},
    {"smalldatetime", {TypeKind::kDateTime, 0, 0, 0}},
    {"datetime2", {TypeKind::kDateTime, 0, 0, 0}},
    {"date", {TypeKind::kDate, 0, 0, 0}},
    {"varbinary", {TypeKind::kBinary, 0, 0, 0}},
    {"binary", {TypeKind::kBinary, 0, 0, 0}},
    {"image", {TypeKind::kBinary, 0, 0, 0}},
    {"timestamp", {TypeKind::kBinary, 0, 0, 0}},
    {"rowversion", {TypeKind::kBinary, 0, 0, 0}},
};

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The next number of "18, 2)"; -1 for none ("max").
int ReadNumber(std::string_view text, std::size_t& at) {
  while (at < text.size() && (IsBlank(text[at]) || text[at] == ',' || text[at] == '(')) ++at;
  int number = -1;
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
    number = std::min(std::max(number, 0) * 10 + (text[at] - '0'), 100000);
    ++at;
  }
  return number;
}

}  // namespace

Type ParseType(std::string_view declared) {
  std::size_t end = 0;
  while (end < declared.size() && declared[end] != '(' && !IsBlank(declared[end])) ++end;
  const std::string_view name = declared.substr(0, end);
  for (const NamedType& known : kTypes) {
    if (!SameName(known.name, name)) continue;
    Type type = known.type;
    std::size_t at = declared.find('(', end);
    if (type.kind == TypeKind::kText && type.width == 1) {
      // A bare "nvarchar" is how the embedded engine keeps nvarchar(max): SQLite takes no (max).
      type.width = at == std::string_view::npos ? 0 : std::max(ReadNumber(declared, at), 0);
    } else if (type.kind == TypeKind::kDecimal && at != std::string_view::npos) {
      type.precision = std::clamp(ReadNumber(declared, at), 1, 38);
      type.scale = std::clamp(ReadNumber(declared, at), 0, std::min(type.precision, kMaxScale));
    }
    return type;
  }
  return {};
}

}  // namespace kaunter::sql
