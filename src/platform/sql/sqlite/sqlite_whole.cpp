#include "platform/sql/sqlite/sqlite_whole.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>
#include <map>

#include "platform/date_time.h"
#include "platform/private_file.h"
#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

constexpr std::size_t kDoublesTold = 20;
constexpr std::string_view kSealName = "sealed.";
constexpr const char* kTableNames =
    "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite_%'";

// The expression of a computed column, out of the text that made the table.
std::string ComputedText(const std::string& create, const std::string& column) {
  constexpr std::string_view kAs = "GENERATED ALWAYS AS (";
  const std::size_t name = create.find(QuotedName(column) + ' ');
  const std::size_t as = name == std::string::npos ? name : create.find(kAs, name);
  if (as == std::string::npos) return {};
  const std::size_t begin = as + kAs.size();
  int depth = 1;
  for (std::size_t at = begin; at < create.size(); ++at) {
    if (create[at] == '(') ++depth;
    if (create[at] == ')' && --depth == 0) return create.substr(begin, at - begin);
  }
  return {};
}

std::string DeclaredText(const std::string& kept, const Type& type) {
  if (type.kind == TypeKind::kText && type.width == 0) return "nvarchar(max)";
  return SameName(kept, "varbinary") ? "varbinary(max)" : kept;
}

class Reader final : public RowReader {
 public:
  Reader(sqlite3* db, const std::string& path, const WholeTable& table, const std::string& sql)
      : db_(db),
        path_(path),
        table_(table),
        columns_(table.Stored()),
        statement_(Prepare(db, sql, path)) {}

  bool Next(WholeRow* row) override {
    const int code = sqlite3_step(statement_.get());
    if (code == SQLITE_DONE) return false;
    if (code != SQLITE_ROW) {
      throw SqliteFailure(db_, sqlite3_extended_errcode(db_), path_, "SELECT");
    }
    row->resize(columns_.size());
    for (std::size_t i = 0; i < columns_.size(); ++i) Read(static_cast<int>(i), row);
    return true;
  }

 private:
  void Read(int i, WholeRow* row) {
    const WholeColumn& column = *columns_[static_cast<std::size_t>(i)];
    auto& field = (*row)[static_cast<std::size_t>(i)];
    const int held = sqlite3_column_type(statement_.get(), i);
    if (held == SQLITE_NULL) {
      field.reset();
      return;
    }
    if (!field) field.emplace();
    switch (column.type.kind) {
      case TypeKind::kText:
        TakeText(i, &*field);
        if (held == SQLITE_BLOB || !IsPortableText(*field)) {
          Refuse(i, row, "it holds signs that are no text");
        }
        return;
      case TypeKind::kInteger:
        if (held != SQLITE_INTEGER) Refuse(i, row, "it holds no whole number");
        *field = std::to_string(sqlite3_column_int64(statement_.get(), i));
        return;
      case TypeKind::kDecimal:
        return ReadDecimal(i, held, row);
      case TypeKind::kDouble: {
        if (held != SQLITE_FLOAT && held != SQLITE_INTEGER) Refuse(i, row, "it holds no number");
        const auto text =
            CanonicalDouble(fmt::format("{}", sqlite3_column_double(statement_.get(), i)));
        if (!text) Refuse(i, row, "it holds no finite number");
        *field = *text;
        return;
      }
      case TypeKind::kDate:
      case TypeKind::kDateTime: {
        TakeText(i, &*field);
        const auto date = DateTime::FromCanonical(*field);
        if (!date) Refuse(i, row, "it holds no date");
        if (column.type.kind == TypeKind::kDate && !date->IsMidnight()) {
          Refuse(i, row, "it holds a time of day");
        }
        *field = date->ToCanonical();
        return;
      }
      default:
        return ReadBinary(i, &*field);
    }
  }

  void TakeText(int i, std::string* to) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), i));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), i));
    if (text == nullptr) {
      to->clear();
    } else {
      to->assign(text, size);
    }
  }

  // The number that is stored must be the one that the column's places give.
  void ReadDecimal(int i, int held, WholeRow* row) {
    const int scale = columns_[static_cast<std::size_t>(i)]->type.scale;
    std::int64_t units = 0;
    bool exact = false;
    if (held == SQLITE_INTEGER) {
      exact = !__builtin_mul_overflow(sqlite3_column_int64(statement_.get(), i), PowerOfTen(scale),
                                      &units);
    } else if (held == SQLITE_FLOAT) {
      const double number = sqlite3_column_double(statement_.get(), i);
      exact = ScaleDouble(number, scale, &units) && Unscale(units, scale) == number;
    }
    if (!exact) Refuse(i, row, "it holds a number with other places than it declares, or none");
    (*row)[static_cast<std::size_t>(i)] = DecimalText(units, scale);
  }

  void ReadBinary(int i, std::string* to) {
    const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(statement_.get(), i));
    const int size = sqlite3_column_bytes(statement_.get(), i);
    to->clear();
    for (int at = 0; at < size; ++at) fmt::format_to(std::back_inserter(*to), "{:02X}", bytes[at]);
  }

  [[noreturn]] void Refuse(int i, WholeRow* row, std::string_view why) {
    for (auto at = static_cast<std::size_t>(i); at < row->size(); ++at) {
      const auto* text = sqlite3_column_text(statement_.get(), static_cast<int>(at));
      if (text != nullptr) (*row)[at] = reinterpret_cast<const char*>(text);
    }
    RefuseField(table_, *row, *columns_[static_cast<std::size_t>(i)], why);
  }

  sqlite3* db_;
  const std::string& path_;
  const WholeTable& table_;
  std::vector<const WholeColumn*> columns_;
  SqliteStatement statement_;
};

std::string ColumnList(const WholeTable& table) {
  std::string list;
  for (const WholeColumn* column : table.Stored()) {
    if (!list.empty()) list += ", ";
    list += QuotedName(column->name);
  }
  return list;
}

std::string OrderList(const WholeTable& table) {
  const auto stored = table.Stored();
  std::string list;
  for (const std::size_t place : table.KeyPlaces()) {
    if (!list.empty()) list += ", ";
    list += QuotedName(stored[place]->name);
    if (stored[place]->type.kind == TypeKind::kText) list += " COLLATE BINARY";
  }
  return list;
}

int BindField(sqlite3_stmt* statement, int index, const WholeColumn& column,
              const std::string& field) {
  switch (column.type.kind) {
    case TypeKind::kInteger: {
      std::int64_t number = 0;
      std::from_chars(field.data(), field.data() + field.size(), number);
      return sqlite3_bind_int64(statement, index, number);
    }
    case TypeKind::kDecimal: {
      // As the engine itself stores an amount: whole ones as integers, no finer than a double is.
      std::int64_t units = 0;
      const int scale = column.type.scale;
      if (ParseDecimal(field, scale, &units) != DecimalResult::kOk) return SQLITE_TOOBIG;
      const std::int64_t power = PowerOfTen(scale);
      if (units % power == 0) return sqlite3_bind_int64(statement, index, units / power);
      const double number = Unscale(units, scale);
      std::int64_t back = 0;
      if (!ScaleDouble(number, scale, &back) || back != units) return SQLITE_TOOBIG;
      return sqlite3_bind_double(statement, index, number);
    }
    case TypeKind::kDouble: {
      double number = 0;
      std::from_chars(field.data(), field.data() + field.size(), number);
      return sqlite3_bind_double(statement, index, number);
    }
    case TypeKind::kBinary: {
      std::string bytes;
      for (std::size_t at = 0; at + 1 < field.size(); at += 2) {
        unsigned int byte = 0;
        std::from_chars(field.data() + at, field.data() + at + 2, byte, 16);
        bytes += static_cast<char>(byte);
      }
      return sqlite3_bind_blob64(statement, index, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
    }
    default:
      return sqlite3_bind_text64(statement, index, field.data(), field.size(), SQLITE_STATIC,
                                 SQLITE_UTF8);
  }
}

}  // namespace

// A database of its own whose lock is the sign: it goes with the process on every system.
MovingSign::MovingSign(const std::string& path) : path_(MovingSignOf(path)) {
  MakePrivateFile(path_);
  sqlite3* raw = nullptr;
  sqlite3_open_v2(path_.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  db_.reset(raw);
  sqlite3_exec(raw, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
}

MovingSign::~MovingSign() {
  db_.reset();
  std::error_code stays;  // a file without its lock is no sign
  std::filesystem::remove(path_, stays);
}

std::vector<std::string> SqliteWhole::Names(const char* sql) {
  const SqliteStatement statement = Prepare(db_, sql, path_);
  std::vector<std::string> names;
  while (sqlite3_step(statement.get()) == SQLITE_ROW)
    names.push_back(ColumnText(statement.get(), 0));
  return names;
}

std::vector<std::string> SqliteWhole::Contents() {
  return Names(
      "SELECT type || ' ' || name FROM sqlite_schema WHERE name NOT LIKE 'sqlite_%' AND type IN "
      "('table','view','trigger') ORDER BY 1");
}

std::vector<WholeTable> SqliteWhole::Tables() {
  const SqliteStatement statement = Prepare(
      db_,
      "SELECT name, sql FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite_%' "
      "ORDER BY name",
      path_);
  std::vector<WholeTable> tables;
  while (sqlite3_step(statement.get()) == SQLITE_ROW) {
    tables.push_back(ReadTable(ColumnText(statement.get(), 0), ColumnText(statement.get(), 1)));
  }
  return tables;
}

WholeTable SqliteWhole::ReadTable(const std::string& name, const std::string& text) {
  WholeTable table;
  table.name = name;
  const SqliteStatement columns = Prepare(
      db_, "SELECT name, type, \"notnull\", dflt_value, pk, hidden FROM pragma_table_xinfo(?1)",
      path_);
  sqlite3_bind_text(columns.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
  std::map<int, std::string> key;
  while (sqlite3_step(columns.get()) == SQLITE_ROW) {
    WholeColumn column;
    column.name = ColumnText(columns.get(), 0);
    const std::string kept = ColumnText(columns.get(), 1);
    column.type = ParseType(kept);
    if (column.type.kind == TypeKind::kUnknown) {
      RefuseColumn(name, column.name, fmt::format("is of the type \"{}\"", kept));
    }
    column.declared = DeclaredText(kept, column.type);
    const int place = sqlite3_column_int(columns.get(), 4);
    if (place > 0) key[place] = column.name;
    column.nullable = sqlite3_column_int(columns.get(), 2) == 0 && place == 0;
    int counted = 0;
    sqlite3_table_column_metadata(db_, nullptr, name.c_str(), column.name.c_str(), nullptr, nullptr,
                                  nullptr, nullptr, &counted);
    column.identity = counted != 0;
    if (sqlite3_column_int(columns.get(), 5) > 1) {
      const auto computed = ComputedInTsql(ComputedText(text, column.name));
      if (!computed) RefuseColumn(name, column.name, "is computed");
      column.computed = *computed;
    } else if (sqlite3_column_type(columns.get(), 3) != SQLITE_NULL) {
      const auto value = DefaultInTsql(ColumnText(columns.get(), 3));
      if (!value) {
        RefuseColumn(name, column.name, "has the default " + ColumnText(columns.get(), 3));
      }
      column.default_value = *value;
    }
    if (column.identity) {
      table.last_identity = PlainInteger(
          db_,
          fmt::format("SELECT coalesce(max(seq), 0) FROM sqlite_sequence WHERE name = '{}'", name)
              .c_str(),
          path_);
    }
    table.columns.push_back(std::move(column));
  }
  for (const auto& [place, column] : key) table.primary_key.push_back(column);
  ReadKeys(&table);
  return table;
}

void SqliteWhole::ReadKeys(WholeTable* table) {
  const SqliteStatement list = Prepare(
      db_, "SELECT name, \"unique\", origin, partial FROM pragma_index_list(?1) ORDER BY name",
      path_);
  const std::string& name = table->name;
  sqlite3_bind_text(list.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
  while (sqlite3_step(list.get()) == SQLITE_ROW) {
    WholeIndex index;
    index.name = ColumnText(list.get(), 0);
    index.unique = sqlite3_column_int(list.get(), 1) != 0;
    const std::string origin = ColumnText(list.get(), 2);
    if (origin == "pk") continue;
    const SqliteStatement parts = Prepare(
        db_, "SELECT name, desc FROM pragma_index_xinfo(?1) WHERE key = 1 ORDER BY seqno", path_);
    sqlite3_bind_text(parts.get(), 1, index.name.data(), static_cast<int>(index.name.size()),
                      SQLITE_STATIC);
    bool plain = sqlite3_column_int(list.get(), 3) == 0;
    while (sqlite3_step(parts.get()) == SQLITE_ROW) {
      plain = plain && sqlite3_column_type(parts.get(), 0) != SQLITE_NULL;
      index.parts.push_back({ColumnText(parts.get(), 0), sqlite3_column_int(parts.get(), 1) != 0});
    }
    if (!plain) RefuseIndex(name, index.name);
    if (origin == "u") {
      std::vector<std::string>& columns = table->unique_keys.emplace_back();
      for (const WholeIndex::Part& part : index.parts) columns.push_back(part.column);
      continue;
    }
    if (index.name.starts_with(name + '.')) index.name.erase(0, name.size() + 1);
    table->indexes.push_back(std::move(index));
  }
}

void SqliteWhole::LockOut() {
  // Sorting a large table must not fill the memory.
  RunPlain(db_, "PRAGMA temp_store = FILE", path_);
  connection_.BeginTrans();
  sign_.emplace(path_);
}

std::unique_ptr<RowReader> SqliteWhole::Rows(const WholeTable& table, bool in_order) {
  const std::string from = QuotedName(table.name);
  std::string sql;
  if (!in_order) {
    sql = fmt::format("SELECT {} FROM {} ORDER BY rowid", ColumnList(table), from);
  } else if (table.primary_key.empty()) {
    sql = fmt::format("SELECT {} FROM {} ORDER BY {}", ColumnList(table), from, OrderList(table));
  } else {
    // Only the keys are sorted; the limit keeps the order of what stands inside.
    sql = fmt::format(
        "SELECT {} FROM (SELECT rowid AS k_row FROM {} ORDER BY {} LIMIT -1) CROSS JOIN {} ON "
        "{}.rowid = k_row",
        ColumnList(table), from, OrderList(table), from, from);
  }
  return std::make_unique<Reader>(db_, path_, table, sql);
}

void SqliteWhole::Create(const WholeTable& table) {
  connection_.Execute(CreateTableText(table, /*with_keys=*/true));
}

void SqliteWhole::Fill(const WholeTable& table, std::span<const WholeRow> rows) {
  const auto stored = table.Stored();
  if (filling_ != table.name) {
    std::string marks;
    for (std::size_t i = 0; i < stored.size(); ++i) marks += i == 0 ? "?" : ",?";
    insert_ = Prepare(db_,
                      fmt::format("INSERT INTO {} ({}) VALUES ({})", QuotedName(table.name),
                                  ColumnList(table), marks),
                      path_, true);
    filling_ = table.name;
    doubles_.clear();
  }
  for (const WholeRow& row : rows) {
    const ResetAtEnd reset(insert_.get());
    for (std::size_t i = 0; i < stored.size(); ++i) {
      const int index = static_cast<int>(i) + 1;
      const WholeColumn& column = *stored[i];
      if (row[i] && column.type.kind == TypeKind::kText && column.type.width > 0 &&
          CountChars(*row[i]) > static_cast<std::size_t>(column.type.width)) {
        RefuseField(table, row, column, "the text is longer than the column");
      }
      const int code = row[i] ? BindField(insert_.get(), index, column, *row[i])
                              : sqlite3_bind_null(insert_.get(), index);
      if (code != SQLITE_OK) {
        RefuseField(table, row, column, fmt::format("{} is more than it can hold", *row[i]));
      }
    }
    if (sqlite3_step(insert_.get()) == SQLITE_DONE) continue;
    const int code = sqlite3_extended_errcode(db_);
    if (code != SQLITE_CONSTRAINT_PRIMARYKEY && code != SQLITE_CONSTRAINT_UNIQUE &&
        code != SQLITE_CONSTRAINT_ROWID) {
      const SqlError failure = SqliteFailure(db_, code, path_, "INSERT");
      throw SqlError(failure.number(), fmt::format("{}: {}", RowName(table, row), failure.what()));
    }
    NoteDouble(table, row);
    if (doubles_.size() >= kDoublesTold) Complete(table);
  }
}

// The row that was there already is looked up by the key that the engine names: "UNIQUE constraint
// failed: T.A, T.B".
void SqliteWhole::NoteDouble(const WholeTable& table, const WholeRow& row) {
  const auto stored = table.Stored();
  const std::string words = sqlite3_errmsg(db_);
  std::string where;
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const std::string full = table.name + '.' + stored[i]->name;
    const std::size_t at = words.find(full);
    if (at == std::string::npos) continue;
    const char behind = at + full.size() < words.size() ? words[at + full.size()] : ',';
    if (behind != ',') continue;
    where += fmt::format("{}{} = ?", where.empty() ? "" : " AND ", QuotedName(stored[i]->name));
    places.push_back(i);
  }
  std::string other = "another row";
  if (!places.empty()) {
    const SqliteStatement find = Prepare(
        db_,
        fmt::format("SELECT {} FROM {} WHERE {}", ColumnList(table), QuotedName(table.name), where),
        path_);
    int index = 0;
    for (const std::size_t place : places) {
      if (row[place]) BindField(find.get(), ++index, *stored[place], *row[place]);
    }
    if (sqlite3_step(find.get()) == SQLITE_ROW) {
      WholeRow found(stored.size());
      for (std::size_t i = 0; i < stored.size(); ++i) {
        if (sqlite3_column_type(find.get(), static_cast<int>(i)) != SQLITE_NULL) {
          found[i] = ColumnText(find.get(), static_cast<int>(i));
        }
      }
      other = RowName(table, found);
    }
  }
  doubles_.push_back(fmt::format("{} and {}", other, RowName(table, row)));
}

void SqliteWhole::Complete(const WholeTable& table) {
  insert_.reset();
  filling_.clear();
  if (!doubles_.empty()) {
    std::string told = "These rows have one key for the embedded engine:";
    for (const std::string& pair : doubles_) told += "\n" + pair;
    doubles_.clear();
    throw SqlError(2627, told);
  }
  for (const WholeIndex& index : table.indexes) {
    connection_.Execute(CreateIndexText(table, index));
  }
  for (const WholeColumn& column : table.columns) {
    if (!column.identity || table.last_identity == 0) continue;
    const SqliteStatement drop = Prepare(db_, "DELETE FROM sqlite_sequence WHERE name = ?1", path_);
    const SqliteStatement add =
        Prepare(db_, "INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)", path_);
    sqlite3_bind_int64(add.get(), 2, table.last_identity);
    for (sqlite3_stmt* statement : {drop.get(), add.get()}) {
      sqlite3_bind_text(statement, 1, table.name.data(), static_cast<int>(table.name.size()),
                        SQLITE_STATIC);
      if (sqlite3_step(statement) != SQLITE_DONE) {
        throw SqliteFailure(db_, sqlite3_extended_errcode(db_), path_, "");
      }
    }
  }
}

void SqliteWhole::Seal(std::string_view words) {
  std::string quoted;
  for (const char c : words) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  for (const std::string& table : Names(kTableNames)) {
    for (const char* verb : {"INSERT", "UPDATE", "DELETE"}) {
      RunPlain(db_,
               fmt::format("CREATE TRIGGER {} BEFORE {} ON {} BEGIN SELECT RAISE(ABORT, '{}'); END",
                           QuotedName(fmt::format("{}{}.{}", kSealName, table, verb)), verb,
                           QuotedName(table), quoted)
                   .c_str(),
               path_);
    }
  }
}

// The log of a copy is as large as the copy: its room is free again for what follows.
void SqliteWhole::Settle() { RunPlain(db_, "PRAGMA wal_checkpoint(TRUNCATE)", path_); }

void SqliteWhole::Unseal() {
  for (const std::string& trigger :
       Names("SELECT name FROM sqlite_schema WHERE type = 'trigger' AND name LIKE 'sealed.%'")) {
    RunPlain(db_, ("DROP TRIGGER " + QuotedName(trigger)).c_str(), path_);
  }
}

void SqliteWhole::DropTables() {
  for (const std::string& table : Names(kTableNames)) {
    RunPlain(db_, ("DROP TABLE " + QuotedName(table)).c_str(), path_);
  }
}

}  // namespace kaunter::sql
