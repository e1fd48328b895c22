// T-SQL through SQLite's ODBC driver: each statement of a batch is translated as for the embedded
// engine, its literals are put back into the text, and the driver gets it alone (it takes one
// statement a call). The source must load the embedded engine's functions:
// LoadExt=kaunter_sqlite.so.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/sql/odbc/odbc_dialect.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// The tables as the database declares them, asked for through the connection.
class OdbcSqliteCatalogue : public Catalogue {
 public:
  explicit OdbcSqliteCatalogue(OdbcSession& session) : session_(session) {}
  const CatalogueTable* FindTable(std::string_view name) const override;

 private:
  OdbcSession& session_;
  mutable std::map<std::string, std::unique_ptr<CatalogueTable>> tables_;  // names in lower case
};

class OdbcSqliteDialect : public TranslatingDialect {
 public:
  void Forget() override {
    catalogue_.reset();
    TranslatingDialect::Forget();
  }

 private:
  void RunStatement(OdbcSession& session, const std::string& statement, const Shape& shape,
                    bool want_rows, OdbcOutcome* outcome) override;
  void RunSteps(OdbcSession& session, const std::vector<Translated>& steps, const Shape& shape,
                bool want_rows, OdbcOutcome* outcome);
  void RunStep(OdbcSession& session, const Translated& step, const Shape& shape, bool want_rows,
               OdbcOutcome* outcome);

  std::unique_ptr<OdbcSqliteCatalogue> catalogue_;
};

// `text` with each ?N replaced by the literal that belongs to it, converted by the rules of the
// embedded engine. Throws SqlError for a literal that does not convert.
std::string WithLiterals(const Translated& step, const Shape& shape);

}  // namespace kaunter::sql
