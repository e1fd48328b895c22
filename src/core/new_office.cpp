#include "core/new_office.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "core/data_access.h"
#include "core/schema_text.h"
#include "core/sql_literals.h"
#include "platform/sql/transaction.h"
#include "platform/sql/translator/translate.h"

namespace kaunter {

bool IsEmptyDatabase(Connection& connection) {
  return ScalarQuery(connection,
                     "SELECT TOP 1 TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE "
                     "TABLE_TYPE='BASE TABLE'")
      .empty();
}

void RunScript(Connection& connection, std::string_view script) {
  std::vector<std::string> statements;
  sql::SplitBatch(script, &statements);
  for (const std::string& statement : statements) connection.Execute(statement);
}

void CreateEmptyOffice(Connection& main, std::string_view key) {
  Transaction transaction(main);
  if (!IsEmptyDatabase(main)) return;  // another desktop that starts too was quicker
  RunScript(main, SchemaText("base"));
  if (!key.empty()) {
    main.Execute(
        fmt::format("INSERT INTO Systemast (Param,Value) VALUES ('KEY',{})", QuoteStr(key)));
  }
  transaction.Commit();
}

void CreateMissingAuditTables(Connection& logs) {
  if (TableExists(logs, "TransLogs")) return;
  Transaction transaction(logs);
  RunScript(logs, SchemaText("logs"));
  transaction.Commit();
}

}  // namespace kaunter
