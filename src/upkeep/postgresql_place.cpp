#include "upkeep/postgresql_place.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "core/startup.h"
#include "core/values.h"
#include "platform/sql/odbc/odbc_silence.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/tool.h"
#include "screen/caption_error.h"

namespace kaunter {
namespace {

constexpr std::chrono::seconds kBetweenLooks(10);
constexpr std::size_t kMostSaid = 500;
// So that the server lets go of what a program that it does not hear any more has held.
constexpr const char* kServerSide =
    "-c tcp_keepalives_idle=10 -c tcp_keepalives_interval=5 -c tcp_keepalives_count=3 "
    "-c tcp_user_timeout=30s";

std::string HostOf(const ConnectionString& text) {
  return sql::FirstOf(text, {"server", "servername"});
}

// Its first lines: the statement that it was at stands behind them, and may be long.
std::string Reason(std::string said) {
  for (const char* statement : {"detail: Query was", "Command was:"}) {
    const std::size_t at = said.find(statement);
    if (at != std::string::npos) said.resize(said.find_last_of('\n', at) + 1);
  }
  if (said.size() > kMostSaid) said = said.substr(0, kMostSaid) + " ...";
  return Trim(said);
}

}  // namespace

PostgresqlPlace::PostgresqlPlace(const Session& session, bool logs) : session_(session) {
  const auto source = session.data_sources.Find(session.ConnDataSource);
  text_ = ConnectionString::Parse(
      sql::OdbcString(ConnectionString::Parse(OfficeConnectionString(
                          session, session.ConnDatabase + (logs ? "-Logs" : ""))),
                      source ? source->target : "", sql::ReadOdbcInventory()));
  database_ = text_.Get("database");
  environment_ = {
      {"PGCONNECT_TIMEOUT", "10"}, {"PGCLIENTENCODING", "UTF8"}, {"PGOPTIONS", kServerSide}};
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
  if (HostOf(text_).empty() && text_.Has("dsn")) {
    // They read no DSN, and would turn to whichever server runs on this machine.
    throw CaptionFailure(
        {fmt::format("{} does not know the DSN {}: name driver and server themselves in the data "
                     "source of the settings (Driver={{...}};Server=...)",
                     program, text_.Get("dsn")),
         fmt::format("{} 不认识 DSN {}：请在设定的数据源中直接写明驱动程序与服务器"
                     "（Driver={{...}};Server=...）",
                     program, text_.Get("dsn"))});
  }
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), "--no-password");  // it never stands and waits for one
  using Time = std::chrono::steady_clock;
  sql::ServerWatch watch(sql::OdbcWithDatabase(text_, database_));
  bool heard = true;
  auto looked = Time::now();
  const ToolRun run = RunTool(program, words, environment_, [&] {
    if (Time::now() - looked >= kBetweenLooks) {
      heard = watch.Heard();
      looked = Time::now();
    }
    return heard && go_on();
  });
  if (!heard) {
    throw CaptionFailure(
        {fmt::format("The server does not answer any more, and {} was ended", program),
         fmt::format("服务器不再回应，{} 已被结束", program)});
  }
  if (run.stopped) return false;
  if (run.status == kNoProgram) {
    throw CaptionFailure(
        {fmt::format("{} does not run: install the programs of PostgreSQL on this machine "
                     "(Debian's package postgresql-client)",
                     program),
         fmt::format("无法执行 {}：请在此机器安装 PostgreSQL 的程序（Debian 的 postgresql-client）",
                     program)});
  }
  if (run.status != 0) {
    throw CaptionFailure({fmt::format("{} failed: {}", program, Reason(run.said)),
                          fmt::format("{} 失败：{}", program, Reason(run.said))});
  }
  return true;
}

std::string PostgresqlPlace::ToolDatabase(const std::string& database) const {
  std::string text = "dbname=";
  for (const char c : database) text.append(1, '\\').append(1, c);  // whatever it is
  return fmt::format("{} {}", text, text_.Get("pqopt"));
}

PostgresqlScratch::PostgresqlScratch(const PostgresqlPlace& place, std::string name)
    : place_(place), name_(std::move(name)) {
  try {
    Drop();
    place_.Run("createdb",
               {"--template=template0", "--encoding=UTF8",
                "--maintenance-db=" + place_.ToolDatabase("postgres"), name_},
               [] { return true; });
  } catch (const std::runtime_error& error) {
    why_ = error.what();
  }
}

PostgresqlScratch::~PostgresqlScratch() {
  if (kept_ || !made()) return;
  try {
    Drop();
  } catch (const std::runtime_error&) {
    return;  // the next one of this name drops it
  }
}

void PostgresqlScratch::Drop() const {
  place_.Run("dropdb",
             {"--if-exists", "--maintenance-db=" + place_.ToolDatabase("postgres"), name_},
             [] { return true; });
}

bool PostgresqlScratch::Fill(const std::string& dump, const PostgresqlPlace::Go& go_on) const {
  return place_.Run("pg_restore",
                    {"--no-owner", "--no-privileges", "--exit-on-error",
                     "--dbname=" + place_.ToolDatabase(name_), dump},
                    go_on);
}

}  // namespace kaunter
