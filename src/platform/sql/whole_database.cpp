#include "platform/sql/whole_database.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/sql/decimal.h"
#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/odbc/postgresql_whole.h"
#include "platform/sql/sqlite/sqlite_connection.h"
#include "platform/sql/sqlite/sqlite_whole.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

constexpr std::size_t kColumnsThatName = 3;  // of a table without a key
constexpr std::size_t kLongestShown = 60;

std::string ShownField(const WholeColumn& column, const std::optional<std::string>& field) {
  if (!field) return "NULL";
  std::string shown = field->substr(0, kLongestShown);
  if (shown.size() < field->size()) shown += "...";
  return column.type.kind == TypeKind::kText ? "'" + shown + "'" : shown;
}

int Sign(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

// Of two decimal texts of the same number of places: sign, length, digits.
int CompareDecimals(std::string_view a, std::string_view b) {
  const bool below = a.starts_with('-');
  if (below != b.starts_with('-')) return below ? -1 : 1;
  const int size = a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
  const int order = size != 0 ? size : Sign(a.compare(b));
  return below ? -order : order;
}

int CompareFields(TypeKind kind, const std::string& a, const std::string& b) {
  if (kind == TypeKind::kInteger || kind == TypeKind::kDecimal) return CompareDecimals(a, b);
  if (kind != TypeKind::kDouble) return Sign(a.compare(b));
  double x = 0;
  double y = 0;
  ParseDouble(a, &x);
  ParseDouble(b, &y);
  return x < y ? -1 : x > y ? 1 : 0;
}

bool IsPlainNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.front() != '.' && text.back() != '.' &&
         text.find_first_not_of("0123456789.") == std::string_view::npos &&
         std::count(text.begin(), text.end(), '.') <= 1;
}

std::string_view WithoutBrackets(std::string_view text) {
  while (text.size() > 1 && text.front() == '(' && text.back() == ')') {
    text = text.substr(1, text.size() - 2);
  }
  return text;
}

// "'it''s'" to its end; 0 where the text does not begin with a literal.
std::size_t LiteralLength(std::string_view text) {
  if (!text.starts_with('\'')) return 0;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] != '\'') continue;
    if (at + 1 == text.size() || text[at + 1] != '\'') return at + 1;
    ++at;
  }
  return 0;
}

void AppendNames(std::string& out, const std::vector<std::string>& names) {
  const char* separator = "(";
  for (const std::string& name : names) {
    out += separator + BracketName(name);
    separator = ",";
  }
  out += ')';
}

}  // namespace

std::vector<const WholeColumn*> WholeTable::Stored() const {
  std::vector<const WholeColumn*> stored;
  for (const WholeColumn& column : columns) {
    if (column.computed.empty()) stored.push_back(&column);
  }
  return stored;
}

std::vector<std::size_t> WholeTable::KeyPlaces() const {
  const auto stored = Stored();
  std::vector<std::size_t> places;
  for (const std::string& key : primary_key) {
    for (std::size_t i = 0; i < stored.size(); ++i) {
      if (SameName(stored[i]->name, key)) places.push_back(i);
    }
  }
  if (!places.empty()) return places;
  for (std::size_t i = 0; i < stored.size(); ++i) places.push_back(i);
  return places;
}

std::string RowName(const WholeTable& table, const WholeRow& row) {
  const auto stored = table.Stored();
  std::vector<std::size_t> places = table.KeyPlaces();
  if (table.primary_key.empty()) places.resize(std::min(places.size(), kColumnsThatName));
  std::string name = table.name;
  const char* separator = " ";
  for (const std::size_t place : places) {
    if (place >= row.size()) break;
    name += fmt::format("{}{}={}", separator, stored[place]->name,
                        ShownField(*stored[place], row[place]));
    separator = ", ";
  }
  return name;
}

KeyOrder::KeyOrder(const WholeTable& table) {
  const auto stored = table.Stored();
  for (const std::size_t place : table.KeyPlaces()) {
    parts_.emplace_back(place, stored[place]->type.kind);
  }
}

int KeyOrder::Compare(const WholeRow& a, const WholeRow& b) const {
  for (const auto& [place, kind] : parts_) {
    const auto& x = a[place];
    const auto& y = b[place];
    if (x.has_value() != y.has_value()) return x ? 1 : -1;
    if (!x) continue;
    if (const int order = CompareFields(kind, *x, *y)) return order;
  }
  return 0;
}

std::string BracketName(std::string_view name) {
  std::string quoted = "[";
  for (const char c : name) {
    quoted += c;
    if (c == ']') quoted += c;
  }
  return quoted + ']';
}

std::string CreateTableText(const WholeTable& table, bool with_keys) {
  std::string text = "CREATE TABLE " + BracketName(table.name);
  const char* separator = " (";
  for (const WholeColumn& column : table.columns) {
    text += separator + BracketName(column.name);
    separator = ", ";
    if (!column.computed.empty()) {
      text += " AS " + column.computed;
      continue;
    }
    text += ' ' + column.declared;
    if (column.identity) text += " IDENTITY(1,1)";
    if (!column.nullable) text += " NOT NULL";
    if (!column.default_value.empty()) text += " DEFAULT " + column.default_value;
  }
  if (with_keys && !table.primary_key.empty()) {
    text += ", PRIMARY KEY ";
    AppendNames(text, table.primary_key);
  }
  if (with_keys) {
    for (const auto& key : table.unique_keys) {
      text += ", UNIQUE ";
      AppendNames(text, key);
    }
  }
  return text + ')';
}

std::string CreateIndexText(const WholeTable& table, const WholeIndex& index) {
  std::string text = fmt::format("CREATE {}INDEX {} ON {}", index.unique ? "UNIQUE " : "",
                                 BracketName(index.name), BracketName(table.name));
  const char* separator = " (";
  for (const WholeIndex::Part& part : index.parts) {
    text += separator + BracketName(part.column) + (part.descending ? " DESC" : "");
    separator = ",";
  }
  return text + ')';
}

std::optional<std::string> DefaultInTsql(std::string_view kept) {
  std::string_view text = WithoutBrackets(kept);
  const std::size_t literal = LiteralLength(text);
  if (const std::size_t cast = text.find("::", literal); cast != std::string_view::npos) {
    text = WithoutBrackets(text.substr(0, cast));
  }
  if (text.starts_with("kaunter_sql.")) text.remove_prefix(12);
  if (text == "k_now()") return "getdate()";
  if (text == "k_newid()") return "newid()";
  if (IsPlainNumber(text) || (literal > 0 && LiteralLength(text) == text.size())) {
    return std::string(text);
  }
  return std::nullopt;
}

std::optional<std::string> ComputedInTsql(std::string_view kept) {
  std::string_view text = WithoutBrackets(kept);
  if (text.starts_with('"') && text.ends_with('"') && text.size() > 2) {
    text = text.substr(1, text.size() - 2);
  }
  if (text.empty() || text.find_first_of("\"()'| +-*/,:") != std::string_view::npos) {
    return std::nullopt;
  }
  return BracketName(text);
}

std::optional<std::string> DecimalWithScale(std::string_view number, int scale) {
  if (!IsPlainNumber(number)) return std::nullopt;
  std::string text(number);
  std::size_t point = text.find('.');
  if (point == std::string::npos) {
    if (scale == 0) return text;
    point = text.size();
    text += '.';
  }
  const std::size_t wanted = point + 1 + static_cast<std::size_t>(scale);
  while (text.size() > wanted && text.back() == '0') text.pop_back();
  if (text.size() > wanted) return std::nullopt;
  text.append(wanted - text.size(), '0');
  if (scale == 0) text.pop_back();
  return text;
}

std::optional<std::string> CanonicalDouble(std::string_view number) {
  double value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return fmt::format("{}", value == 0 ? 0.0 : value);
}

bool IsPortableText(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == 0) return false;
    if (byte < 0x80) {
      ++at;
      continue;
    }
    const std::size_t begin = at;
    if (NextChar(text, &at) == U'\uFFFD' && at == begin + 1) return false;
  }
  return true;
}

void RefuseColumn(std::string_view table, std::string_view column, std::string_view why) {
  throw SqlError(40510, fmt::format("The column {} of the table {} {}. No other engine takes that "
                                    "over; take it out first.",
                                    column, table, why));
}

void RefuseIndex(std::string_view table, std::string_view index) {
  throw SqlError(40510, fmt::format("The index {} of the table {} is over an expression or a part "
                                    "of the rows. Drop it first.",
                                    index, table));
}

void RefuseField(const WholeTable& table, const WholeRow& row_so_far, const WholeColumn& column,
                 std::string_view why) {
  throw SqlError(8114, fmt::format("{}, column {} ({}): {}.", RowName(table, row_so_far),
                                   column.name, column.declared, why));
}

std::unique_ptr<WholeDatabase> WholeDatabaseOf(Connection& connection) {
  if (auto* embedded = dynamic_cast<SqliteConnection*>(&connection)) {
    return std::make_unique<SqliteWhole>(*embedded);
  }
  auto* server = dynamic_cast<OdbcConnection*>(&connection);
  if (server != nullptr && server->EngineName() == "PostgreSQL") {
    return std::make_unique<PostgresWhole>(*server);
  }
  throw SqlError(40510, fmt::format("A whole office goes between the embedded engine and "
                                    "PostgreSQL; {} is neither.",
                                    connection.EngineName()));
}

}  // namespace kaunter::sql
