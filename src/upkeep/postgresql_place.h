// An office on a PostgreSQL server, as that server's own tools reach it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/session.h"
#include "platform/sql/data_source.h"

namespace kaunter {

class PostgresqlPlace {
 public:
  // The database of the office, or of its audit trail. Throws SqlError for a data source that does
  // not parse.
  PostgresqlPlace(const Session& session, bool logs);

  const std::string& database() const { return database_; }
  // The server runs on this machine, as far as its address tells.
  bool OnThisMachine() const;
  // A connection to another database of the same server. Throws SqlError.
  std::unique_ptr<Connection> Open(std::string_view name, const std::string& database) const;

  // Runs pg_dump, pg_restore, createdb, dropdb or psql as the account of the office: its password
  // goes by the environment, or is that of the user's password file. A database among the arguments
  // is named by ToolDatabase. False when it was stopped. A server that falls silent ends it. Throws
  // std::runtime_error with what the program said.
  using Go = std::function<bool()>;
  bool Run(const std::string& program, const std::vector<std::string>& arguments,
           const Go& go_on) const;
  // With what lets the programs notice that their line is dead.
  std::string ToolDatabase(const std::string& database) const;

 private:
  const Session& session_;
  ConnectionString text_;  // for ODBC
  std::string database_;
  std::map<std::string, std::string> environment_;
};

// A database beside that of the office, gone with this object unless it is kept. What a run that
// was killed left under the name goes first.
class PostgresqlScratch {
 public:
  PostgresqlScratch(const PostgresqlPlace& place, std::string name);
  ~PostgresqlScratch();
  PostgresqlScratch(const PostgresqlScratch&) = delete;
  PostgresqlScratch& operator=(const PostgresqlScratch&) = delete;

  bool made() const { return why_.empty(); }
  const std::string& why() const { return why_; }  // the account may make none ...
  const std::string& name() const { return name_; }
  // Restores a dump into it, under the account's own name. False when it was stopped. Throws
  // std::runtime_error.
  bool Fill(const std::string& dump, const PostgresqlPlace::Go& go_on) const;
  std::unique_ptr<Connection> Open(std::string_view name) const { return place_.Open(name, name_); }
  void Keep() { kept_ = true; }

 private:
  void Drop() const;

  const PostgresqlPlace& place_;
  std::string name_;
  std::string why_;
  bool kept_ = false;
};

}  // namespace kaunter
