// A PostgreSQL server of the tests' own: on loopback, on a free port, in a temporary folder. It
// ends with its owner, and with the test program should that die.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/platform/support/temp_folder.h"

namespace kaunter::testing {

class PostgresServer {
 public:
  // Makes the cluster and starts it. Throws std::runtime_error with the end of the server's log, or
  // with what to install.
  PostgresServer();
  ~PostgresServer();

  // Stops at once, as a pulled plug would; Start brings it up again on the same port.
  void Stop();
  void Start();
  // What the ODBC driver takes.
  std::string OdbcText(const std::string& database = "postgres") const;
  int port() const { return port_; }

 private:
  // A child that has given up root: the server refuses to run as root.
  pid_t Spawn(const std::vector<std::string>& command) const;
  bool RunToEnd(const std::vector<std::string>& command) const;
  std::string LogEnd() const;

  TempFolder folder_;
  std::string programs_;  // folder of initdb and postgres
  int port_ = 0;
  pid_t server_ = -1;
};

}  // namespace kaunter::testing
