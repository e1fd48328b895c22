// The central database, a server of its own outside the office: the AML watch list, statements for
// exports, e-invoicing settings and codes. It is opened when needed and closed afterwards.
//
// Server, account and password stand in the settings of the PC, as the data source "AMLA".
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// This PC names a central database.
bool HasCentralDatabase(const Session& session);
// Opens it for `work` and closes it, all on another thread, and waits no longer than the limit for
// the whole (platform/sql/within.h): the work must own all that it touches. Throws SqlError.
void AskCentralDatabase(const Session& session, std::chrono::milliseconds limit,
                        std::function<void(Connection& central)> work);
// The rows of each statement, on the same road.
inline constexpr std::chrono::seconds kCentralTime(15);
std::vector<Recordset> ReadCentralDatabase(const Session& session,
                                           std::vector<std::string> statements,
                                           std::chrono::milliseconds limit = kCentralTime);

}  // namespace kaunter
