// The ODBC drivers that the tests run through.
#pragma once

#include <string>

namespace kaunter::testing {

// The file of a driver ("psqlodbcw.so"), looked for where distributions put them. Throws
// std::runtime_error that tells what to install: a test without its driver fails.
std::string OdbcDriverFile(const std::string& file, const std::string& package);

std::string SqliteDriver();
std::string PostgresDriver();
std::string FreeTdsDriver();

// What SQLite's driver takes for the database `file`, with the functions of this build.
std::string SqliteOdbcText(const std::string& file);

}  // namespace kaunter::testing
