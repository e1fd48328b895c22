// A data source for an office's database on a server, made out of what a person knows of it.
#pragma once

#include <string>

namespace kaunter {

enum class ServerKind { postgresql, sql_server };

struct ServerPlace {
  ServerKind kind = ServerKind::postgresql;
  std::string server;  // with ":port" where it is not the usual one
  std::string database;
  std::string user;
  std::string password;
  bool encrypted = true;
};

// The port in a server's address; "" when it names none.
std::string PortOf(const std::string& server);
// The ODBC text, by the best driver of this PC; "" when it has none for this kind of server.
std::string ServerText(const ServerPlace& place);

}  // namespace kaunter
