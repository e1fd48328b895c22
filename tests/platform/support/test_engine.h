// The engines that statements are tried on, each with empty databases of the test's own.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "platform/clock.h"
#include "platform/sql/connection.h"
#include "tests/platform/support/postgres_server.h"
#include "tests/platform/support/temp_folder.h"

namespace kaunter::testing {

enum class Engine { kEmbedded, kPostgresql };

void PrintTo(Engine engine, std::ostream* out);
std::string EngineName(Engine engine);

// One server for all tests of a program; it ends with the program.
PostgresServer& SharedPostgres();

// Databases by name; they are gone with their owner.
class TestDatabases {
 public:
  explicit TestDatabases(Engine engine);
  ~TestDatabases();

  // A connection, called `name` or as the database `database`, which is made when it is asked for
  // first.
  std::unique_ptr<Connection> Open(const std::string& database, const Clock& clock,
                                   std::string name = "");

 private:
  Engine engine_;
  TempFolder folder_;
  std::string prefix_;
  std::string made_;  // names of server databases, each behind a blank
};

}  // namespace kaunter::testing
