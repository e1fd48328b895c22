#include "platform/sql/inside_texts.h"

#include <fmt/format.h>

#include "platform/sql/odbc/engine_index.h"
#include "platform/sql/odbc/odbc_connection.h"

namespace kaunter {
namespace {

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

}  // namespace

void IndexInsideTexts(Connection& connection, const std::vector<SearchedTexts>& all) {
  bool indexed = !all.empty();
  for (const SearchedTexts& texts : all) {
    indexed &= sql::MakeEngineIndex(connection, texts.table, sql::kInsideTexts,
                                    fmt::format("USING gin ({})", Expressions(texts)),
                                    "CREATE EXTENSION IF NOT EXISTS pg_trgm SCHEMA kaunter_sql");
  }
  if (indexed) dynamic_cast<sql::OdbcConnection&>(connection).TextsAreIndexed();
}

bool AreTextsIndexed(const Connection& connection) {
  const auto* server = dynamic_cast<const sql::OdbcConnection*>(&connection);
  return server != nullptr && server->texts_indexed();
}

}  // namespace kaunter
