#include "upkeep/postgresql_place.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/startup.h"
#include "core/values.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/tool.h"

namespace kaunter {
namespace {

std::string HostOf(const ConnectionString& text) {
  return sql::FirstOf(text, {"server", "servername"});
}

}  // namespace

PostgresqlPlace::PostgresqlPlace(const Session& session, bool logs) : session_(session) {
  const auto source = session.data_sources.Find(session.ConnDataSource);
  text_ = ConnectionString::Parse(
      sql::OdbcString(ConnectionString::Parse(OfficeConnectionString(
                          session, session.ConnDatabase + (logs ? "-Logs" : ""))),
                      source ? source->target : "", sql::ReadOdbcInventory()));
  database_ = text_.Get("database");
  environment_ = {{"PGCONNECT_TIMEOUT", "10"}, {"PGCLIENTENCODING", "UTF8"}};
  const auto lend = [&](const char* name, const std::string& value) {
    if (!value.empty()) environment_[name] = value;
  };
  lend("PGHOST", HostOf(text_));
  lend("PGPORT", text_.Get("port"));
  lend("PGUSER", sql::FirstOf(text_, {"uid", "username"}));
  lend("PGPASSWORD", sql::FirstOf(text_, {"pwd", "password"}));
  lend("PGSSLMODE", text_.Get("sslmode"));
}

bool PostgresqlPlace::OnThisMachine() const {
  const std::string host = HostOf(text_);
  return host.empty() || host == "localhost" || host == "::1" || host.starts_with("127.") ||
         host.starts_with("/");
}

std::unique_ptr<Connection> PostgresqlPlace::Open(std::string_view name,
                                                  const std::string& database) const {
  return OpenOdbc(name, sql::OdbcWithDatabase(text_, database), session_.clock);
}

bool PostgresqlPlace::Run(const std::string& program, const std::vector<std::string>& arguments,
                          const Go& go_on) const {
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), "--no-password");  // it never stands and waits for one
  const ToolRun run = RunTool(program, words, environment_, go_on);
  if (run.stopped) return false;
  if (run.status == kNoProgram) {
    throw std::runtime_error(fmt::format(
        "{} does not run: install the programs of PostgreSQL on this machine (Debian's package "
        "postgresql-client)",
        program));
  }
  if (run.status != 0) {
    throw std::runtime_error(fmt::format("{} failed: {}", program, Trim(run.said)));
  }
  return true;
}

PostgresqlScratch::PostgresqlScratch(const PostgresqlPlace& place, std::string name)
    : place_(place), name_(std::move(name)) {
  const auto all = [] { return true; };
  try {
    place_.Run("dropdb", {"--if-exists", name_}, all);
    place_.Run("createdb", {"--template=template0", "--encoding=UTF8", name_}, all);
  } catch (const std::runtime_error& error) {
    why_ = error.what();
  }
}

PostgresqlScratch::~PostgresqlScratch() {
  if (kept_ || !made()) return;
  try {
    place_.Run("dropdb", {"--if-exists", name_}, [] { return true; });
  } catch (const std::runtime_error&) {
    return;  // the next one of this name drops it
  }
}

bool PostgresqlScratch::Fill(const std::string& dump, const PostgresqlPlace::Go& go_on) const {
  return place_.Run("pg_restore",
                    {"--no-owner", "--no-privileges", "--exit-on-error", "--dbname=" + name_, dump},
                    go_on);
}

}  // namespace kaunter
