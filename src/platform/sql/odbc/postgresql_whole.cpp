#include "platform/sql/odbc/postgresql_whole.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "platform/date_time.h"
#include "platform/sql/odbc/engine_index.h"
#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_postgresql_dialect.h"
#include "platform/sql/odbc/odbc_postgresql_error.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

constexpr int kRowsAtOnce = 500;
constexpr std::size_t kBytesAtOnce = 256 * 1024;
constexpr int kDoublesTold = 20;

std::string Quoted(std::string_view text, char mark) {
  std::string quoted(1, mark);
  for (const char c : text) {
    quoted += c;
    if (c == mark) quoted += c;
  }
  return quoted + mark;
}

std::string Named(std::string_view name) { return Quoted(name, '"'); }
std::string Literal(std::string_view text) { return Quoted(text, '\''); }

std::string NameList(const std::vector<std::string>& names, std::string_view before = {}) {
  std::string list;
  for (const std::string& name : names) {
    if (!list.empty()) list += ", ";
    list += before;
    list += Named(name);
  }
  return list;
}

std::vector<std::string> StoredNames(const WholeTable& table) {
  std::vector<std::string> names;
  for (const WholeColumn* column : table.Stored()) names.push_back(column->name);
  return names;
}

// What the program itself makes, or reads as what it makes.
bool IsPortable(std::string_view server_type) {
  constexpr std::string_view kTypes[] = {"bpchar", "varchar", "text",      "numeric",
                                         "int2",   "int4",    "int8",      "float4",
                                         "float8", "date",    "timestamp", "bytea"};
  return std::find(std::begin(kTypes), std::end(kTypes), server_type) != std::end(kTypes);
}

class Reader final : public RowReader {
 public:
  Reader(OdbcConnection& connection, const WholeTable& table, const std::string& order)
      : connection_(connection), table_(table), columns_(table.Stored()) {
    Run("CLOSE ALL", false);
    Run(fmt::format("DECLARE k_rows NO SCROLL CURSOR FOR SELECT ROW({})::text FROM {}{}",
                    NameList(StoredNames(table)), Named(table.name), order),
        false);
  }

  bool Next(WholeRow* row) override {
    if (portion_.Eof()) {
      if (!first_ && portion_.RowCount() < kRowsAtOnce) return false;
      first_ = false;
      portion_ = Run(fmt::format("FETCH FORWARD {} FROM k_rows", kRowsAtOnce), true);
      if (portion_.Eof()) return false;
    }
    const std::string* text = portion_.Field(0).AsText();
    row->resize(columns_.size());
    ReadRowText(text == nullptr ? "()" : *text, row);
    if (row->size() != columns_.size()) {
      throw SqlError(50000, fmt::format("A row of {} came with other columns.", table_.name));
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if ((*row)[i]) MakeCanonical(*columns_[i], row, &*(*row)[i]);
    }
    portion_.MoveNext();
    return true;
  }

 private:
  Recordset Run(const std::string& sql, bool rows) {
    OdbcSession& session = connection_.LendSession();
    try {
      OdbcOutcome outcome = session.Run(sql, rows);
      return outcome.rows ? std::move(*outcome.rows) : Recordset();
    } catch (const SqlError& error) {
      throw PostgresFailure(error, session.source(), "SELECT");
    }
  }

  void MakeCanonical(const WholeColumn& column, WholeRow* row, std::string* field) {
    switch (column.type.kind) {
      case TypeKind::kText:
      case TypeKind::kInteger:
        return;
      case TypeKind::kDecimal:
        return Take(column, row, field, DecimalWithScale(*field, column.type.scale),
                    "it holds a number with other places than it declares, or none");
      case TypeKind::kDouble:
        return Take(column, row, field, CanonicalDouble(*field), "it holds no finite number");
      case TypeKind::kDate:
      case TypeKind::kDateTime: {
        const auto date = DateTime::FromCanonical(*field);
        return Take(column, row, field, date ? std::optional(date->ToCanonical()) : std::nullopt,
                    "it holds a time that is finer than a second, or out of the calendar");
      }
      default:
        field->erase(0, 2);  // \x
        std::transform(field->begin(), field->end(), field->begin(), [](char c) {
          return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
        });
    }
  }

  void Take(const WholeColumn& column, WholeRow* row, std::string* field,
            std::optional<std::string> canonical, std::string_view why) {
    if (!canonical) RefuseField(table_, *row, column, why);
    *field = std::move(*canonical);
  }

  OdbcConnection& connection_;
  const WholeTable& table_;
  std::vector<const WholeColumn*> columns_;
  Recordset portion_;
  bool first_ = true;
};

// One sign of a field inside a row inside a list of rows inside a literal.
void AppendNested(std::string& out, char c) {
  switch (c) {
    case '"':
      out += "\\\"\\\"";
      break;
    case '\\':
      out += "\\\\\\\\";
      break;
    case '\'':
      out += "''";
      break;
    default:
      out += c;
  }
}

bool IsKeyColumn(const WholeTable& table, const std::string& name) {
  return std::any_of(table.primary_key.begin(), table.primary_key.end(),
                     [&](const std::string& key) { return SameName(key, name); });
}

}  // namespace

void ReadRowText(std::string_view text, WholeRow* row) {
  std::size_t field = 0;
  std::size_t at = 1;
  const auto take = [&]() -> std::optional<std::string>& {
    if (field == row->size()) row->emplace_back();
    return (*row)[field++];
  };
  while (at < text.size()) {
    std::optional<std::string>& to = take();
    if (text[at] == ',' || text[at] == ')') {
      to.reset();
    } else if (text[at] != '"') {
      const std::size_t end = std::min(text.find_first_of(",)", at), text.size());
      if (!to) to.emplace();
      to->assign(text.substr(at, end - at));
      at = end;
    } else {
      if (!to) to.emplace();
      to->clear();
      for (++at; at < text.size(); ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) {
          *to += text[++at];
        } else if (text[at] != '"') {
          *to += text[at];
        } else if (at + 1 < text.size() && text[at + 1] == '"') {
          *to += text[++at];
        } else {
          break;
        }
      }
      ++at;
    }
    if (at >= text.size() || text[at] == ')') break;
    ++at;  // the comma
  }
  row->resize(field);
}

std::string RowsLiteral(const WholeTable& table, std::span<const WholeRow> rows) {
  std::string out = "'{";
  for (const WholeRow& row : rows) {
    out += out.size() == 2 ? "\"(" : ",\"(";
    std::size_t place = 0;
    bool first = true;
    for (const WholeColumn& column : table.columns) {
      if (!first) out += ',';
      first = false;
      if (!column.computed.empty()) continue;
      const auto& field = row[place++];
      if (!field) continue;
      out += "\\\"";
      if (column.type.kind == TypeKind::kBinary) out += "\\\\\\\\x";
      for (const char c : *field) AppendNested(out, c);
      out += "\\\"";
    }
    out += ")\"";
  }
  return out + "}'";
}

void PostgresWhole::Run(const std::string& sql) {
  OdbcSession& session = connection_.LendSession();
  try {
    session.Run(sql, false);
  } catch (const SqlError& error) {
    throw PostgresFailure(error, session.source(), "");
  }
}

PostgresWhole::Lines PostgresWhole::Ask(const std::string& sql, std::size_t fields) {
  OdbcSession& session = connection_.LendSession();
  Lines lines;
  try {
    OdbcOutcome outcome = session.Run(sql, true);
    for (; outcome.rows && !outcome.rows->Eof(); outcome.rows->MoveNext()) {
      std::vector<std::string>& line = lines.emplace_back();
      for (std::size_t i = 0; i < fields; ++i) line.push_back(outcome.rows->Field(i).ToText());
    }
  } catch (const SqlError& error) {
    throw PostgresFailure(error, session.source(), "");
  }
  return lines;
}

std::vector<std::string> PostgresWhole::Contents() {
  std::vector<std::string> contents;
  for (const auto& line : Ask("SELECT CASE relkind WHEN 'v' THEN 'view' WHEN 'm' THEN 'view' WHEN "
                              "'f' THEN 'foreign table' WHEN 'S' THEN 'sequence' ELSE 'table' END "
                              "|| ' ' || relname FROM pg_class c WHERE relnamespace = "
                              "current_schema()::regnamespace AND relkind IN "
                              "('r','p','v','m','f','S') AND NOT EXISTS (SELECT FROM pg_depend d "
                              "WHERE d.objid = c.oid AND d.deptype IN ('a','i') AND d.refobjid <> "
                              "0 AND relkind = 'S') UNION ALL SELECT 'trigger ' || tgname FROM "
                              "pg_trigger t JOIN pg_class c ON c.oid = tgrelid WHERE relnamespace "
                              "= current_schema()::regnamespace AND NOT tgisinternal ORDER BY 1",
                              1)) {
    contents.push_back(line[0]);
  }
  return contents;
}

std::vector<std::string> PostgresWhole::TableNames() {
  std::vector<std::string> names;
  for (const auto& line :
       Ask("SELECT relname::text FROM pg_class WHERE relnamespace = "
           "current_schema()::regnamespace AND relkind IN ('r','p') ORDER BY relname",
           1)) {
    names.push_back(line[0]);
  }
  return names;
}

std::vector<WholeTable> PostgresWhole::Tables() {
  std::vector<WholeTable> tables;
  for (std::string& name : TableNames()) tables.emplace_back().name = std::move(name);
  ReadColumns(&tables);
  ReadKeys(&tables);
  ReadCounters(&tables);
  return tables;
}

void PostgresWhole::ReadColumns(std::vector<WholeTable>* tables) {
  std::size_t at = 0;
  for (const auto& line :
       Ask("SELECT d.relname::text, d.attname::text, d.declared, d.attnotnull::int, "
           "d.identity::int, d.computed::int, coalesce(pg_get_expr(x.adbin, x.adrelid), ''), "
           "t.typname::text FROM kaunter_sql.declared d JOIN pg_attribute a ON a.attrelid = "
           "d.relid AND a.attnum = d.attnum JOIN pg_type t ON t.oid = a.atttypid LEFT JOIN "
           "pg_attrdef x ON x.adrelid = d.relid AND x.adnum = d.attnum WHERE d.relkind IN "
           "('r','p') ORDER BY d.relname, d.attnum",
           8)) {
    while (at < tables->size() && (*tables)[at].name != line[0]) ++at;
    if (at == tables->size()) {
      throw SqlError(50000, fmt::format("The table {} came while the tables were read.", line[0]));
    }
    const auto refuse = [&](const std::string& why) { RefuseColumn(line[0], line[1], why); };
    WholeColumn column;
    column.name = line[1];
    column.declared = line[2];
    column.type = ParseType(column.declared);
    column.nullable = line[3] == "0";
    column.identity = line[4] == "1";
    if (!IsPortable(line[7]) || column.type.kind == TypeKind::kUnknown) {
      refuse(fmt::format("is of the type \"{}\"", line[7]));
    }
    const auto rule = line[5] == "1" ? ComputedInTsql(line[6]) : DefaultInTsql(line[6]);
    if (!line[6].empty() && !rule) refuse("has the rule " + line[6]);
    if (line[5] == "1") {
      column.computed = rule.value_or("");
    } else if (!line[6].empty()) {
      column.default_value = *rule;
    }
    (*tables)[at].columns.push_back(std::move(column));
  }
}

void PostgresWhole::ReadKeys(std::vector<WholeTable>* tables) {
  std::size_t at = 0;
  for (const auto& line :
       Ask("SELECT t.relname::text, i.relname::text, x.indisprimary::int, x.indisunique::int, "
           "coalesce(k.contype::text, ''), (x.indpred IS NOT NULL OR x.indexprs IS NOT NULL)::int, "
           "(SELECT string_agg(CASE WHEN x.indoption[p] & 1 = 1 THEN '-' ELSE '+' END || "
           "a.attname, E'\\n' ORDER BY p) FROM generate_series(0, x.indnkeyatts - 1) p JOIN "
           "pg_attribute a ON a.attrelid = t.oid AND a.attnum = x.indkey[p]) FROM pg_index x JOIN "
           "pg_class i ON i.oid = x.indexrelid JOIN pg_class t ON t.oid = x.indrelid LEFT JOIN "
           "pg_constraint k ON k.conindid = i.oid AND k.contype IN ('p','u') WHERE "
           "t.relnamespace = current_schema()::regnamespace AND t.relkind IN ('r','p') AND " +
               IsNoEngineIndex("i.relname") + " ORDER BY t.relname, i.relname",
           7)) {
    while (at < tables->size() && (*tables)[at].name != line[0]) ++at;
    if (at == tables->size()) return;
    WholeTable& table = (*tables)[at];
    WholeIndex index;
    index.name = line[1];
    index.unique = line[3] == "1";
    if (line[5] == "1") RefuseIndex(table.name, index.name);
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < line[6].size();) {
      const std::size_t end = std::min(line[6].find('\n', begin), line[6].size());
      names.push_back(line[6].substr(begin + 1, end - begin - 1));
      index.parts.push_back({names.back(), line[6][begin] == '-'});
      begin = end + 1;
    }
    if (line[2] == "1") {
      table.primary_key = names;
    } else if (line[4] == "u") {
      table.unique_keys.push_back(names);
    } else {
      if (index.name.starts_with(table.name + '.')) index.name.erase(0, table.name.size() + 1);
      table.indexes.push_back(std::move(index));
    }
  }
}

void PostgresWhole::ReadCounters(std::vector<WholeTable>* tables) {
  for (WholeTable& table : *tables) {
    for (const WholeColumn& column : table.columns) {
      if (!column.identity) continue;
      const std::string sequence =
          Ask(fmt::format("SELECT pg_get_serial_sequence({}, {})", Literal(Named(table.name)),
                          Literal(column.name)),
              1)[0][0];
      const std::string last = Ask(
          fmt::format("SELECT CASE WHEN is_called THEN last_value ELSE last_value - 1 END FROM {}",
                      sequence),
          1)[0][0];
      std::from_chars(last.data(), last.data() + last.size(), table.last_identity);
    }
  }
}

// The lock that saves take, and one on each table for what is written without it. A program that
// dies gives them back with its connection; a cable that is cut, within some two minutes.
void PostgresWhole::LockOut() {
  connection_.BeginTrans();
  Run(fmt::format("SELECT pg_advisory_xact_lock({})", kMovingLock));
  Run("SET LOCAL idle_in_transaction_session_timeout = 0; SET LOCAL tcp_keepalives_idle = 60; "
      "SET LOCAL tcp_keepalives_interval = 10; SET LOCAL tcp_keepalives_count = 6; "
      "SET LOCAL tcp_user_timeout = '60s'");
  const std::vector<std::string> tables = TableNames();
  if (!tables.empty()) {
    Run(fmt::format("LOCK TABLE {} IN SHARE ROW EXCLUSIVE MODE", NameList(tables)));
  }
}

std::unique_ptr<RowReader> PostgresWhole::Rows(const WholeTable& table, bool in_order) {
  const auto stored = table.Stored();
  std::string order;
  for (const std::size_t place : in_order ? table.KeyPlaces() : std::vector<std::size_t>()) {
    const WholeColumn& column = *stored[place];
    const std::string name = Named(column.name);
    order += order.empty() ? " ORDER BY " : ", ";
    order += column.type.kind == TypeKind::kText
                 ? fmt::format("kaunter_sql.k_raw({}::bpchar) COLLATE \"C\"", name)
                 : name;
    order += " NULLS FIRST";
  }
  return std::make_unique<Reader>(connection_, table, order);
}

void PostgresWhole::Create(const WholeTable& table) {
  WholeTable declared = table;
  // A column of a key that is made later takes no Null from the beginning.
  for (WholeColumn& column : declared.columns) {
    if (IsKeyColumn(table, column.name)) column.nullable = false;
  }
  connection_.Execute(CreateTableText(declared, /*with_keys=*/false));
}

void PostgresWhole::Fill(const WholeTable& table, std::span<const WholeRow> rows) {
  std::size_t begin = 0;
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const auto& field : rows[i]) bytes += field ? field->size() + 5 : 1;
    if (bytes < kBytesAtOnce && i + 1 < rows.size()) continue;
    FillAtOnce(table, rows.subspan(begin, i + 1 - begin));
    begin = i + 1;
    bytes = 0;
  }
}

void PostgresWhole::FillAtOnce(const WholeTable& table, std::span<const WholeRow> rows) {
  const std::vector<std::string> names = StoredNames(table);
  try {
    Run(fmt::format("INSERT INTO {} ({}) OVERRIDING SYSTEM VALUE SELECT {} FROM unnest({}::{}[]) r",
                    Named(table.name), NameList(names), NameList(names, "r."),
                    RowsLiteral(table, rows), Named(table.name)));
  } catch (const SqlError& error) {
    if (connection_.Lost() || error.number() == kLostNumber || error.number() == 1105) throw;
    if (rows.size() == 1) {
      throw SqlError(error.number(),
                     fmt::format("{}: {}", RowName(table, rows.front()), error.what()));
    }
    // One of them does not fit: which one.
    FillAtOnce(table, rows.first(rows.size() / 2));
    FillAtOnce(table, rows.subspan(rows.size() / 2));
    throw;
  }
}

// Keys come behind the rows: they are made faster so, and all that clash are told at once.
void PostgresWhole::Complete(const WholeTable& table) {
  const auto add = [&](const std::vector<std::string>& key, std::string_view kind) {
    RefuseDoubles(table, key);
    Run(fmt::format("ALTER TABLE {} ADD {} ({})", Named(table.name), kind, NameList(key)));
  };
  if (!table.primary_key.empty()) add(table.primary_key, "PRIMARY KEY");
  for (const auto& key : table.unique_keys) add(key, "UNIQUE");
  for (const WholeIndex& index : table.indexes) {
    std::vector<std::string> key;
    for (const WholeIndex::Part& part : index.parts) key.push_back(part.column);
    if (index.unique) RefuseDoubles(table, key);
    connection_.Execute(CreateIndexText(table, index));
  }
  for (const WholeColumn& column : table.columns) {
    if (!column.identity) continue;
    Run(fmt::format("ALTER TABLE {} ALTER COLUMN {} RESTART WITH {}", Named(table.name),
                    Named(column.name), table.last_identity + 1));
  }
}

void PostgresWhole::RefuseDoubles(const WholeTable& table, const std::vector<std::string>& key) {
  std::string not_null;
  for (const std::string& name : key) {
    not_null += fmt::format("{}{} IS NOT NULL", not_null.empty() ? "" : " AND ", Named(name));
  }
  std::string told;
  for (const auto& line :
       Ask(fmt::format("SELECT string_agg(ROW({0})::text, '  =  ') FROM {1} WHERE {2} GROUP BY {0} "
                       "HAVING count(*) > 1 LIMIT {3}",
                       NameList(key), Named(table.name), not_null, kDoublesTold),
           1)) {
    told += "\n" + line[0];
  }
  if (told.empty()) return;
  std::string columns;
  for (const std::string& name : key) columns += (columns.empty() ? "" : ", ") + name;
  throw SqlError(2627, fmt::format("These rows of {} have one key ({}) for PostgreSQL:{}",
                                   table.name, columns, told));
}

void PostgresWhole::Settle() { Run("ANALYZE"); }

void PostgresWhole::Seal(std::string_view words) {
  Run(
      fmt::format("CREATE OR REPLACE FUNCTION kaunter_sql.k_sealed() RETURNS trigger LANGUAGE "
                  "plpgsql AS $seal$ BEGIN RAISE EXCEPTION USING ERRCODE = 'K3906', MESSAGE = {}; "
                  "END $seal$",
                  Literal(words)));
  for (const std::string& table : TableNames()) {
    Run(
        fmt::format("CREATE TRIGGER k_sealed BEFORE INSERT OR UPDATE OR DELETE OR TRUNCATE ON {} "
                    "FOR EACH STATEMENT EXECUTE FUNCTION kaunter_sql.k_sealed()",
                    Named(table)));
  }
}

void PostgresWhole::Unseal() { Run("DROP FUNCTION IF EXISTS kaunter_sql.k_sealed() CASCADE"); }

void PostgresWhole::DropTables() {
  for (const std::string& table : TableNames()) Run("DROP TABLE " + Named(table));
}

}  // namespace kaunter::sql
