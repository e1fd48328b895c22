#include "platform/sql/inside_texts.h"

#include <fmt/format.h>

#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/odbc/odbc_postgresql_dialect.h"

namespace kaunter {
namespace {

bool IsThere(sql::OdbcSession& session, const SearchedTexts& texts) {
  const sql::OdbcOutcome found =
      session.Run(fmt::format("SELECT 1 FROM pg_class i JOIN pg_index x ON x.indexrelid = i.oid "
                              "WHERE x.indrelid = to_regclass('\"{0}\"') AND i.relname = "
                              "'{0}.{1}'",
                              texts.table, sql::kInsideTexts),
                  true);
  return found.rows && !found.rows->Eof();
}

// Word for word what k_like and k_replace come down to: the server knows a search again by it.
std::string Expressions(const SearchedTexts& texts) {
  std::string all;
  const auto add = [&all](const std::string& text) {
    all += fmt::format("{}((kaunter_sql.k_fold({}::text)) COLLATE \"C\") gin_trgm_ops",
                       all.empty() ? "" : ", ", text);
  };
  for (const std::string& column : texts.columns) add(fmt::format("\"{}\"", column));
  for (const std::string& column : texts.numbers) {
    add(
        fmt::format("kaunter_sql.k_replace(kaunter_sql.k_replace(\"{}\", '-'::bpchar, ''::bpchar), "
                    "' '::bpchar, ''::bpchar)",
                    column));
  }
  return all;
}

void Index(sql::OdbcSession& session, const SearchedTexts& texts) {
  if (IsThere(session, texts)) return;
  session.Begin();
  try {
    sql::LockSetUp(session);  // another desktop may be making it
    if (!IsThere(session, texts)) {
      session.Run("CREATE EXTENSION IF NOT EXISTS pg_trgm SCHEMA kaunter_sql", false);
      session.Run(fmt::format("CREATE INDEX \"{0}.{1}\" ON \"{0}\" USING gin ({2})", texts.table,
                              sql::kInsideTexts, Expressions(texts)),
                  false);
    }
    session.Commit();
  } catch (const SqlError&) {
    if (session.InTransaction()) session.Rollback();
    throw;
  }
}

}  // namespace

void IndexInsideTexts(Connection& connection, const std::vector<SearchedTexts>& all) {
  auto* server = dynamic_cast<sql::OdbcConnection*>(&connection);
  if (server == nullptr || server->EngineName() != "PostgreSQL") return;
  for (const SearchedTexts& texts : all) Index(server->LendSession(), texts);
  server->TextsAreIndexed();
}

bool AreTextsIndexed(const Connection& connection) {
  const auto* server = dynamic_cast<const sql::OdbcConnection*>(&connection);
  return server != nullptr && server->texts_indexed();
}

}  // namespace kaunter
