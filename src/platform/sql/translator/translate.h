// Translation of T-SQL for an engine that does not speak it: statement text -> tree (parser) ->
// types (binder, with the catalogue) -> the engine's own text (one writer a dialect).
//
// What the parser or binder does not know, or what SQL Server would refuse, is refused with SQL
// Server's number and a text that shows the statement and the place; a guess is never sent.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter::sql {

enum class TypeKind {
  kUnknown,
  kNull,
  kText,
  kInteger,
  kDecimal,
  kDouble,
  kDate,
  kDateTime,
  kBinary
};

struct Type {
  TypeKind kind = TypeKind::kUnknown;
  int width = 0;       // kText: longest text, 0 for max
  int precision = 0;   // kDecimal
  int scale = 0;       // kDecimal
  bool money = false;  // kDecimal: money, which has a text of its own
  bool operator==(const Type&) const = default;
};

struct CatalogueColumn {
  std::string name;
  Type type;
  bool nullable = true;
  bool has_default = false;
  bool identity = false;
  bool computed = false;
};

struct CatalogueTable {
  std::string name;
  std::vector<CatalogueColumn> columns;  // in declared order
  std::vector<std::string> primary_key;
};

// What the binder knows of the database. Names are looked up without regard to case.
class Catalogue {
 public:
  virtual ~Catalogue() = default;
  // Null when there is no such table.
  virtual const CatalogueTable* FindTable(std::string_view name) const = 0;
};

// How a literal taken out of the text reaches the engine: its converter is chosen once by the
// binder.
enum class Conversion { kAsText, kAsInteger, kAsDecimal, kAsDouble, kAsDate, kAsDateTime };

struct Parameter {
  std::size_t literal = 0;  // index into the literals of the statement, in text order
  Conversion conversion = Conversion::kAsText;
  int scale = 0;  // kAsDecimal: decimals to round to, half away from zero
  // Into a column, 0 for none: kAsText the longest text (2628 beyond), kAsInteger and kAsDecimal
  // the digits it takes (8115 beyond; 1 is a bit, which holds 0 or 1).
  int width = 0;
  std::string column;  // for messages; may be empty
};

struct ResultColumn {
  std::string name;
  Type type;
};

// ALTER TABLE t ALTER COLUMN c: SQLite has no statement for it, so the engine does it itself. It
// may only widen or retype a text or number column; rows that do not fit are the engine's error.
struct AlterColumn {
  std::string table;
  std::string column;
  std::string declaration;  // as CREATE TABLE would write it behind the name, with its collation
};

// One statement for the engine.
struct Translated {
  std::string text;  // with ?1, ?2 ... ($1, $2 ... on PostgreSQL) for the parameters, in order
  std::vector<Parameter> parameters;
  std::vector<ResultColumn> columns;  // of a SELECT; empty otherwise
  bool is_query = false;
  bool is_ddl = false;  // the catalogue and the shape cache are stale afterwards
  // The text holds the value of some literal itself (a default, an alias, a matched GROUP BY):
  // another statement of the same shape must be translated anew.
  bool cacheable = true;
  // BEGIN, COMMIT, ROLLBACK TRAN: the engine's own transaction handling, text is empty.
  enum class Transaction { kNone, kBegin, kCommit, kRollback };
  Transaction transaction = Transaction::kNone;
  std::optional<AlterColumn> alter_column;  // then text is empty
  bool is_noop = false;                     // SET NOCOUNT ON and the like; text is empty
};

enum class Dialect { kSqlite, kPostgresql };

// A statement cut out of a batch with its literals taken out: the key of the shape cache. Two
// statements of the same shape differ only in literals. The number of decimals of a numeric literal
// belongs to the key.
struct Shape {
  std::string key;
  std::vector<std::string> literals;  // text literals without quotes, '' undone; numbers as written
  std::size_t begin = 0;              // where the statement stands in its batch,
  std::size_t end = 0;                // and one past its end
};

// Splits a batch into statements by tokens and takes out the literals; cheap, no tree is built.
// Throws SqlError 105 for a text without its end.
std::vector<Shape> SplitBatch(std::string_view batch, std::vector<std::string>* statements);

// Translates one statement (as SplitBatch cut it). A statement may become several for the engine
// (ALTER TABLE ADD a, b). Throws SqlError.
std::vector<Translated> Translate(std::string_view statement, const Catalogue& catalogue,
                                  Dialect dialect);

// Parses the type as a column declares it ("decimal(18, 2)", "nvarchar(50)").
Type ParseType(std::string_view declared);

}  // namespace kaunter::sql
