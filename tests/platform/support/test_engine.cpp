#include "tests/platform/support/test_engine.h"

#include <fmt/format.h>

#include <filesystem>

#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_session.h"

namespace kaunter::testing {

void PrintTo(Engine engine, std::ostream* out) { *out << EngineName(engine); }

std::string EngineName(Engine engine) {
  return engine == Engine::kEmbedded ? "Embedded" : "PostgreSQL";
}

PostgresServer& SharedPostgres() {
  static PostgresServer server;
  server.Start();
  return server;
}

TestDatabases::TestDatabases(Engine engine) : engine_(engine) {
  static int number = 0;
  prefix_ = fmt::format("test{}_", ++number);
}

TestDatabases::~TestDatabases() {
  for (std::size_t at = 0; at < made_.size();) {
    const std::size_t end = std::min(made_.find(' ', at + 1), made_.size());
    try {
      sql::OdbcSession session("cleaner", SharedPostgres().OdbcText());
      session.Run(
          fmt::format("DROP DATABASE \"{}\" WITH (FORCE)", made_.substr(at + 1, end - at - 1)),
          false);
    } catch (const SqlError&) {
    }
    at = end;
  }
}

std::unique_ptr<Connection> TestDatabases::Open(const std::string& database, const Clock& clock,
                                                std::string connection) {
  if (connection.empty()) connection = database;
  if (engine_ == Engine::kEmbedded) {
    const std::string file = folder_.File(database + ".db");
    return OpenSqlite(connection, file, !std::filesystem::exists(file), clock);
  }
  const std::string name = prefix_ + database;
  if ((made_ + " ").find(" " + name + " ") == std::string::npos) {
    sql::OdbcSession session("maker", SharedPostgres().OdbcText());
    session.Run(fmt::format("CREATE DATABASE \"{}\" TEMPLATE template0 ENCODING 'UTF8'", name),
                false);
    made_ += " " + name;
  }
  return OpenOdbc(connection, SharedPostgres().OdbcText(name), clock);
}

}  // namespace kaunter::testing
