#include "core/data_access.h"

#include <fmt/format.h>

#include <exception>
#include <optional>
#include <stdexcept>

#include "core/log.h"
#include "core/session.h"
#include "core/shown.h"
#include "core/sql_literals.h"
#include "core/telling.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr std::string_view kServerClock = "SELECT GETDATE()";

Value ServerClock(Connection& connection) {
  const Recordset rows = connection.Query(kServerClock);
  return rows.Field(0);
}

}  // namespace

std::string ScalarQuery(Connection& connection, std::string_view sql) {
  const Recordset rows = connection.Query(sql);
  return rows.Eof() ? std::string() : NullToEmpty(rows.Field(0));
}

std::string NeighbourKey(Connection& connection, std::string_view table, std::string_view key,
                         std::string_view from, bool next, std::string_view within) {
  return ScalarQuery(
      connection,
      fmt::format("SELECT TOP 1 {0} FROM {1} WHERE {0} {2} {3}{4} ORDER BY {0} {5}", key, table,
                  next ? ">" : "<", QuoteStr(from), within, next ? "ASC" : "DESC"));
}

bool ExecSql(Session& session, Desk& desk, std::string_view sql) {
  try {
    const Hourglass hourglass(desk);
    session.Main().Execute(sql);
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session, "Update1Feld", failure);
    desk.Message(MessageKind::critical, "Update1Feld",
                 session.In(Failed("an error occur during process", failure, kNotStored)));
    return false;
  }
}

std::string ServerNow(Connection& connection, bool with_time) {
  const Value now = ServerClock(connection);
  return with_time ? ShowDateTime(now) : ShowDate(now);
}

DateTime ServerTime(Connection& connection) {
  const Value now = ServerClock(connection);
  if (const DateTime* date = now.AsDate()) return *date;
  const std::optional<DateTime> date = DateTime::FromCanonical(now.ToText());
  if (!date) throw std::runtime_error("the server's clock gave \"" + now.ToText() + "\"");
  return *date;
}

bool TableExists(Connection& connection, std::string_view name) {
  return !ScalarQuery(connection,
                      "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE='BASE "
                      "TABLE' and table_name = " +
                          QuoteStr(name))
              .empty();
}

}  // namespace kaunter
