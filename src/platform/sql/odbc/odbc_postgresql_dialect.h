// T-SQL for PostgreSQL through ODBC. A shape that comes again is prepared on the server: the
// statement is then "EXECUTE k7('AB0001', 150.00)".
//
// Transactions: the server would let two desktops draw the same number and refuse one of them at
// its primary key, as SQL Server does. That refusal is right but it is met by a person who has
// typed a page. So each transaction first takes one lock of the whole database, as the embedded
// engine does: desktops queue here and each sees what the one before has stored. Transactions are
// short (nobody is asked anything inside one), and statements outside of them, reading above all,
// wait for nobody. A desktop that dies gives the lock back with its connection.
//
// A failed statement leaves its transaction usable, as on SQL Server: the driver sets a savepoint
// before each.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/sql/odbc/odbc_dialect.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// Among the server's locks; whoever holds it copies the whole office.
inline constexpr int kMovingLock = 1263488343;

// The tables of the database, each asked for when a statement first names it.
class PostgresCatalogue : public Catalogue {
 public:
  explicit PostgresCatalogue(OdbcSession& session) : session_(session) {}
  const CatalogueTable* FindTable(std::string_view name) const override;
  bool empty() const { return tables_.empty(); }
  void Clear() { tables_.clear(); }

 private:
  OdbcSession& session_;
  mutable std::map<std::string, std::unique_ptr<CatalogueTable>> tables_;  // names in lower case
};

class PostgresDialect : public TranslatingDialect {
 public:
  // Makes the schema "kaunter_sql" when the database has none or an older one, and sets the session
  // up. Throws SqlError 4060 with what the administrator has to do.
  PostgresDialect(OdbcSession& session, const Clock& clock);

  void Begin(OdbcSession& session) override;
  void BeginReading(OdbcSession& session) override;
  void Forget() override;

 protected:
  std::string_view OnlyRead() const override { return "SET TRANSACTION READ ONLY"; }
  void ForgetSinceMark() override { sent_clock_.reset(); }

 private:
  struct Plan {
    std::vector<Translated> steps;
    std::string prepared;  // name on the server; "" before the second run
    int runs = 0;
  };

  void RunStatement(OdbcSession& session, const std::string& statement, const Shape& shape,
                    bool want_rows, OdbcOutcome* outcome) override;
  Plan& FindPlan(const std::string& statement, const Shape& shape, Plan* own);
  void RunPlan(OdbcSession& session, Plan& plan, const Shape& shape, bool want_rows,
               OdbcOutcome* outcome, bool* sent);
  std::string TextOf(Plan& plan, const Shape& shape);
  void SendClock(OdbcSession& session);
  void ForgetSchema();

  const Clock& clock_;
  std::optional<DateTime> sent_clock_;
  PostgresCatalogue catalogue_;
  std::unordered_map<std::string, Plan> plans_;
  int names_ = 0;                // of prepared statements
  bool drop_prepared_ = false;   // those on the server are of a forgotten schema
  bool schema_changed_ = false;  // in the open transaction
  std::int64_t touched_ = 0;     // rows, by the last statement
};

// Inside a transaction: until its end no other desktop makes what the program itself keeps in the
// database.
void LockSetUp(OdbcSession& session);

// `text` with each $N replaced by the literal that belongs to it. Throws SqlError for a literal
// that does not convert.
std::string WithPostgresLiterals(const Translated& step, const Shape& shape);

}  // namespace kaunter::sql
