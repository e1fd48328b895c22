// WholeDatabase: what copying a database from one engine to another asks of an engine beside
// statements. Each engine has its own (sqlite/, odbc/); the copy itself (src/upkeep) knows none.
//
// Rows travel as texts that are the same on both engines: what differs in one is another value.
//   text     as it is, trailing blanks included
//   integer  digits
//   decimal  exactly as many places as the column declares: "983.30"
//   double   the shortest text that gives the same number back
//   date     canonical, time only when not midnight
//   binary   hexadecimal, capitals
// Computed columns do not travel.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

struct WholeColumn {
  std::string name;
  std::string declared;  // as T-SQL declares it: "decimal(18, 2)"
  Type type;
  bool nullable = true;
  bool identity = false;
  std::string default_value;  // T-SQL; "" for none
  std::string computed;       // T-SQL; "" for a column that is stored
};

struct WholeIndex {
  struct Part {
    std::string column;
    bool descending = false;
    bool operator==(const Part&) const = default;
  };
  std::string name;
  bool unique = false;
  std::vector<Part> parts;
};

struct WholeTable {
  std::string name;
  std::vector<WholeColumn> columns;
  std::vector<std::string> primary_key;
  std::vector<std::vector<std::string>> unique_keys;
  std::vector<WholeIndex> indexes;
  std::int64_t last_identity = 0;  // the number that was given last

  // The columns that travel, in the order of the fields of a row.
  std::vector<const WholeColumn*> Stored() const;
  // Places in a row by which rows are told apart and put in order: the primary key, else all.
  std::vector<std::size_t> KeyPlaces() const;
};

using WholeRow = std::vector<std::optional<std::string>>;

// "LoanMast LoanID='AB0001', SchID=3": how a row is named to people.
std::string RowName(const WholeTable& table, const WholeRow& row);

// The order of `Rows`: by the key; Null first, texts by their bytes.
class KeyOrder {
 public:
  explicit KeyOrder(const WholeTable& table);
  // Below 0, 0 or above 0.
  int Compare(const WholeRow& a, const WholeRow& b) const;

 private:
  std::vector<std::pair<std::size_t, TypeKind>> parts_;
};

class RowReader {
 public:
  virtual ~RowReader() = default;
  // False at the end. `row` keeps its memory from one to the next. Throws SqlError, also for a
  // field that another engine could not hold; row and column are named.
  virtual bool Next(WholeRow* row) = 0;
};

class WholeDatabase {
 public:
  virtual ~WholeDatabase() = default;

  // Everything that lies in the database and is none of our functions: "table LoanMast", "view V".
  virtual std::vector<std::string> Contents() = 0;
  // All tables, by name. Throws SqlError for a column whose type, default or rule no other engine
  // takes over.
  virtual std::vector<WholeTable> Tables() = 0;

  // Begins a transaction. Until it ends, or the process does, nobody else writes anything into the
  // database; reading goes on. Throws SqlError 1222 where somebody is writing and does not end.
  virtual void LockOut() = 0;

  // The rows one by one, in the order in which they lie or in that of KeyOrder. One reader at a
  // time.
  virtual std::unique_ptr<RowReader> Rows(const WholeTable& table, bool in_order) = 0;

  // Makes the table, without what Complete adds.
  virtual void Create(const WholeTable& table) = 0;
  // Throws SqlError that names the row where a value does not fit.
  virtual void Fill(const WholeTable& table, std::span<const WholeRow> rows) = 0;
  // Keys, indexes and the counter. Throws SqlError 2627 that names the rows whose keys are equal
  // here and were not where they came from.
  virtual void Complete(const WholeTable& table) = 0;
  // Behind the commit of a copy: what the engine has to do about tables that were filled at once.
  virtual void Settle() = 0;

  // From the commit on every write to a table that is there is refused with `words` (3906), whoever
  // tries; Unseal takes it back.
  virtual void Seal(std::string_view words) = 0;
  virtual void Unseal() = 0;
  // Takes all tables away.
  virtual void DropTables() = 0;
};

// Throws SqlError for an engine that has none. `connection` must live as long.
std::unique_ptr<WholeDatabase> WholeDatabaseOf(Connection& connection);

// --- for the engines

// The statement that makes the table; keys stand in it `with_keys`.
std::string CreateTableText(const WholeTable& table, bool with_keys);
std::string CreateIndexText(const WholeTable& table, const WholeIndex& index);
// [name], for T-SQL.
std::string BracketName(std::string_view name);
// A default as an engine keeps it ("''", "'0'::numeric", "k_now()") in T-SQL; nothing for one that
// is none of ours.
std::optional<std::string> DefaultInTsql(std::string_view kept);
// The same for a computed column: another column's name is all that is taken.
std::optional<std::string> ComputedInTsql(std::string_view kept);
// A number with exactly `scale` places; nothing where that would take something away.
std::optional<std::string> DecimalWithScale(std::string_view number, int scale);
std::optional<std::string> CanonicalDouble(std::string_view number);
// A text that every engine holds: UTF-8, without a zero byte.
bool IsPortableText(std::string_view text);
// What one engine has declared and no other takes over.
[[noreturn]] void RefuseColumn(std::string_view table, std::string_view column,
                               std::string_view why);
[[noreturn]] void RefuseIndex(std::string_view table, std::string_view index);
[[noreturn]] void RefuseField(const WholeTable& table, const WholeRow& row_so_far,
                              const WholeColumn& column, std::string_view why);

}  // namespace kaunter::sql
