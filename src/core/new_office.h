// The tables of a new database: an office that nobody has connected to yet, and its audit database.
#pragma once

#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

// True when the database holds no table at all.
bool IsEmptyDatabase(Connection& connection);

// Makes the base tables with their first rows, all in one transaction: a process that dies on the
// way leaves the database empty. `key`, when given, becomes the setting KEY, which lets the
// built-in logon in while it equals the account of the PC. Throws SqlError.
void CreateEmptyOffice(Connection& main, std::string_view key = {});

// Makes TransLogs in an audit database that lacks it. Throws SqlError.
void CreateMissingAuditTables(Connection& logs);

// Runs a script statement by statement, as it stands. Throws SqlError at the first that fails.
void RunScript(Connection& connection, std::string_view script);

}  // namespace kaunter
