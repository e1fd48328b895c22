// The few ways of asking the database that every screen shares.
#pragma once

#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;
class Desk;

// First field of the first row as text; "" when there is none. Throws SqlError.
std::string ScalarQuery(Connection& connection, std::string_view sql);
// The key behind `from` in the order of the keys, or the one before it; "" at the end. `within`
// narrows the walk (" AND CompCode='A'").
std::string NeighbourKey(Connection& connection, std::string_view table, std::string_view key,
                         std::string_view from, bool next, std::string_view within = {});
// Runs the statement on the main connection with the hourglass on; on an error shows "an error
// occur during process" under the title "Update1Feld" and gives false.
bool ExecSql(Session& session, Desk& desk, std::string_view sql);
// "Today" for the whole system: the server's clock, as dd-mm-yyyy or dd-mm-yyyy hh:nn:ss.
std::string ServerNow(Connection& connection, bool with_time);
// The same clock as a value, to the second.
DateTime ServerTime(Connection& connection);
bool TableExists(Connection& connection, std::string_view name);

}  // namespace kaunter
