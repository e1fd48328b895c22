#include "platform/sql/sqlite/sqlite_alter.h"

#include <fmt/format.h>

#include <optional>

#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/sqlite/sqlite_statement.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

bool IsWordChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         (c & 0x80) != 0;
}

// The end of the token that begins at `at`: a word, a quoted text or name, else one character.
std::size_t TokenEnd(std::string_view text, std::size_t at) {
  const char c = text[at];
  if (c == '\'' || c == '"' || c == '`' || c == '[') {
    const char close = c == '[' ? ']' : c;
    std::size_t end = at + 1;
    while (end < text.size()) {
      if (text[end] == close) {
        if (c == '[' || end + 1 >= text.size() || text[end + 1] != close) return end + 1;
        ++end;
      }
      ++end;
    }
    return end;
  }
  std::size_t end = at;
  while (end < text.size() && IsWordChar(text[end])) ++end;
  return end == at ? at + 1 : end;
}

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() &&
         (text[at] == ' ' || text[at] == '\n' || text[at] == '\t' || text[at] == '\r')) {
    ++at;
  }
  return at;
}

std::string Unquoted(std::string_view name) {
  const char open = name.empty() ? '\0' : name.front();
  if (open != '"' && open != '`' && open != '[') return std::string(name);
  std::string plain;
  for (std::size_t i = 1; i + 1 < name.size(); ++i) {
    plain += name[i];
    if (open != '[' && name[i] == open) ++i;
  }
  return plain;
}

// Where the item that begins at `at` ends: the next comma or closing bracket of its own depth.
std::size_t ItemEnd(std::string_view text, std::size_t at) {
  int depth = 0;
  while (at < text.size()) {
    if (text[at] == '(') ++depth;
    if (text[at] == ')' && depth-- == 0) return at;
    if (text[at] == ',' && depth == 0) return at;
    at = TokenEnd(text, at);
  }
  return at;
}

// The clause that the word begins, at the item's own depth, with the one token or bracket behind
// it.
std::string ClauseOf(std::string_view item, std::string_view word) {
  int depth = 0;
  for (std::size_t at = 0; at < item.size();) {
    const std::size_t end = TokenEnd(item, at);
    if (item[at] == '(') ++depth;
    if (item[at] == ')') --depth;
    if (depth != 0 || !SameName(item.substr(at, end - at), word)) {
      at = end;
      continue;
    }
    std::size_t value = SkipBlanks(item, end);
    if (value < item.size() && item[value] == '(') {
      int open = 0;
      do {
        if (item[value] == '(') ++open;
        if (item[value] == ')') --open;
        value = TokenEnd(item, value);
      } while (open > 0 && value < item.size());
    } else if (value < item.size()) {
      if (item[value] == '-' || item[value] == '+') ++value;
      value = TokenEnd(item, value);
      if (value < item.size() && item[value] == '.') value = TokenEnd(item, value + 1);
    }
    return std::string(item.substr(at, value - at));
  }
  return {};
}

std::string SchemaText(sqlite3* db, const std::string& path, const std::string& table) {
  const SqliteStatement read =
      Prepare(db, "SELECT sql FROM sqlite_schema WHERE type = 'table' AND name = ?1", path);
  sqlite3_bind_text(read.get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
  return sqlite3_step(read.get()) == SQLITE_ROW ? ColumnText(read.get(), 0) : std::string();
}

void ReplaceSchemaText(sqlite3* db, const std::string& path, const std::string& table,
                       const std::string& text) {
  RunPlain(db, "PRAGMA writable_schema = ON", path);
  try {
    const SqliteStatement write =
        Prepare(db, "UPDATE sqlite_schema SET sql = ?1 WHERE type = 'table' AND name = ?2", path);
    sqlite3_bind_text(write.get(), 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    sqlite3_bind_text(write.get(), 2, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
    if (sqlite3_step(write.get()) != SQLITE_DONE) {
      throw SqliteFailure(db, sqlite3_extended_errcode(db), path, "ALTER TABLE");
    }
  } catch (...) {
    sqlite3_exec(db, "PRAGMA writable_schema = OFF", nullptr, nullptr, nullptr);
    throw;
  }
  // A raised version makes every connection read the schema again, this one included.
  const std::int64_t version = PlainInteger(db, "PRAGMA schema_version", path);
  RunPlain(db, fmt::format("PRAGMA schema_version = {}", version + 1).c_str(), path);
  RunPlain(db, "PRAGMA writable_schema = RESET", path);
}

// The values of the column as the new type keeps them; "" when they stay as they are.
std::string Converted(const std::string& name, const Type& from, const Type& to) {
  switch (to.kind) {
    case TypeKind::kText: {
      const char* code = from.kind == TypeKind::kDateTime ? "dt" : "i";
      std::string value = name;
      if (from.kind == TypeKind::kDecimal) {
        value = fmt::format("k_text({}, 'd{}')", name, from.scale);
      } else if (from.kind == TypeKind::kInteger || from.kind == TypeKind::kDateTime) {
        value = fmt::format("k_text({}, '{}')", name, code);
      }
      if (to.width > 0) value = fmt::format("k_check_text({}, {}, {})", value, to.width, name);
      return value == name ? std::string() : value;
    }
    case TypeKind::kInteger:
      return from.kind == TypeKind::kInteger ? std::string() : fmt::format("k_to_int({})", name);
    case TypeKind::kDecimal:
      return fmt::format("k_to_dec({}, {})", name, to.scale);
    case TypeKind::kDouble:
      return fmt::format("k_to_float({})", name);
    case TypeKind::kDate:
      return fmt::format("k_to_date({})", name);
    case TypeKind::kDateTime:
      return fmt::format("k_to_datetime({})", name);
    default:
      return {};
  }
}

}  // namespace

std::string WithColumnDeclared(const std::string& create_table, const std::string& column,
                               const std::string& declaration) {
  const std::string_view text = create_table;
  std::size_t at = 0;
  while (at < text.size() && text[at] != '(') at = TokenEnd(text, at);
  while (at < text.size() && text[at] != ')') {
    at = SkipBlanks(text, at + 1);
    const std::size_t end = ItemEnd(text, at);
    if (at >= end) return {};
    const std::size_t name_end = TokenEnd(text, at);
    if (SameName(Unquoted(text.substr(at, name_end - at)), column)) {
      const std::string kept = ClauseOf(text.substr(name_end, end - name_end), "DEFAULT");
      return create_table.substr(0, name_end) + " " + declaration + (kept.empty() ? "" : " ") +
             kept + create_table.substr(end);
    }
    at = end;
  }
  return {};
}

void AlterColumnOf(sqlite3* db, const std::string& path, const Catalogue& catalogue,
                   const AlterColumn& change) {
  const CatalogueTable* table = catalogue.FindTable(change.table);
  if (table == nullptr) {
    throw SqlError(
        4902, fmt::format("Cannot find the object '{}' because it does not exist.", change.table));
  }
  const CatalogueColumn* column = nullptr;
  for (const CatalogueColumn& c : table->columns) {
    if (SameName(c.name, change.column)) column = &c;
  }
  if (column == nullptr) {
    throw SqlError(4924, fmt::format("ALTER TABLE ALTER COLUMN failed because column '{}' does not "
                                     "exist in table '{}'.",
                                     change.column, table->name));
  }
  for (const std::string& key : table->primary_key) {
    if (SameName(key, column->name)) {
      throw SqlError(5074, fmt::format("The primary key of '{}' is dependent on column '{}'.",
                                       table->name, column->name));
    }
  }
  const std::string before = SchemaText(db, path, table->name);
  const std::string after = WithColumnDeclared(before, column->name, change.declaration);
  if (after.empty()) {
    throw SqlError(4928, fmt::format("Cannot alter column '{}': the declaration of '{}' cannot be "
                                     "read.",
                                     column->name, table->name));
  }
  const Type from = column->type;
  const Type to = ParseType(change.declaration);
  const std::string name = QuotedName(column->name);
  const std::string quoted_table = QuotedName(table->name);
  ReplaceSchemaText(db, path, table->name, after);
  // Entries of an index on the column were made by the old type.
  RunPlain(db, fmt::format("REINDEX {}", quoted_table).c_str(), path);
  const std::string value = Converted(name, from, to);
  if (!value.empty()) {
    RunPlain(db, fmt::format("UPDATE {} SET {} = {}", quoted_table, name, value).c_str(), path);
  }
  if (PlainInteger(
          db, fmt::format("SELECT count(*) FROM {} WHERE {} IS NULL", quoted_table, name).c_str(),
          path) > 0 &&
      change.declaration.find("NOT NULL") != std::string::npos) {
    throw SqlError(515, fmt::format("Cannot insert the value NULL into column '{}', table '{}'; "
                                    "column does not allow nulls. ALTER TABLE fails.",
                                    column->name, table->name));
  }
}

}  // namespace kaunter::sql
