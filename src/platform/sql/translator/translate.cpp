#include "platform/sql/translator/translate.h"

#include <algorithm>

#include "platform/sql/translator/binder.h"
#include "platform/sql/translator/parser.h"
#include "platform/sql/translator/writer_postgresql.h"
#include "platform/sql/translator/writer_sqlite.h"

namespace kaunter::sql {
namespace {

// Every literal must have become a parameter: the next statement of the same shape brings others.
bool AllBound(const std::vector<Translated>& statements, int literals) {
  if (statements.size() != 1) return literals == 0;
  std::vector<bool> bound(static_cast<std::size_t>(literals), false);
  for (const Parameter& parameter : statements.front().parameters) bound[parameter.literal] = true;
  return std::find(bound.begin(), bound.end(), false) == bound.end();
}

}  // namespace

std::vector<Translated> Translate(std::string_view statement, const Catalogue& catalogue,
                                  Dialect dialect) {
  Parser parser(statement);
  Statement tree = parser.Parse();
  Binder(catalogue, tree).Bind();
  std::vector<Translated> translated;
  switch (dialect) {
    case Dialect::kSqlite:
      translated = SqliteWriter(tree).Write();
      break;
    case Dialect::kPostgresql:
      translated = PostgresWriter(tree).Write();
      break;
  }
  if (!AllBound(translated, parser.literal_count())) {
    for (Translated& one : translated) one.cacheable = false;
  }
  return translated;
}

}  // namespace kaunter::sql
