#include "platform/sql/odbc/odbc_silence.h"

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#include <sys/socket.h>
#endif

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/within.h"

namespace kaunter::sql {
namespace {

#ifdef _WIN32
using Socket = SOCKET;
constexpr int kBothWays = SD_BOTH;
#else
using Socket = int;
constexpr int kBothWays = SHUT_RDWR;
#endif
constexpr int kMostSockets = 65536;

constexpr std::chrono::seconds kLongestCall(25);
constexpr int kMostUnheard = 3;
constexpr int kSecondsToAnswer = 5;
constexpr int kUsualPort = 5432;

constexpr const char* kWho =
    "SELECT host(inet_server_addr()) || ' ' || pg_postmaster_start_time()::text, "
    "inet_server_port(), inet_client_port()";

using NameOf = decltype(&getsockname);

// 0 for what is no end of a connection.
int PortBy(NameOf name_of, Socket socket) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  if (name_of(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) return 0;
  if (address.ss_family == AF_INET) {
    return ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port);
  }
  if (address.ss_family == AF_INET6) {
    return ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port);
  }
  return 0;
}

// The driver does not give its socket away, so this process's are looked through.
bool CutLines(const std::function<bool(int own_port, int server_port)>& is_it) {
  bool cut = false;
  for (int number = 0; number < kMostSockets; ++number) {
    const auto socket = static_cast<Socket>(number);
    const int own_port = PortBy(&getsockname, socket);
    if (own_port == 0 || !is_it(own_port, PortBy(&getpeername, socket))) continue;
    shutdown(socket, kBothWays);
    cut = true;
  }
  return cut;
}

int Port(const Value& field) {
  const std::int64_t* port = field.AsInteger();
  return port == nullptr ? 0 : static_cast<int>(*port);
}

std::string Who(OdbcSession& session, int* server_port, int* own_port) {
  const OdbcOutcome outcome = session.Run(kWho, true);
  if (!outcome.rows || outcome.rows->Eof()) return {};
  *server_port = Port(outcome.rows->Field(1));
  *own_port = Port(outcome.rows->Field(2));
  return outcome.rows->Field(0).ToText();
}

}  // namespace

ServerWatch::ServerWatch(std::string odbc_string, std::string server)
    : odbc_string_(std::move(odbc_string)), server_(std::move(server)) {}

bool ServerWatch::Heard() {
  const auto leads = std::make_shared<std::string>();
  try {
    Within(kLongestCall, [leads, text = odbc_string_] {
      OpenOneOf(text, [&](const std::string& each) {
        OdbcSession session("Who leads", each, kSecondsToAnswer);
        int ports[2] = {};
        *leads = Who(session, &ports[0], &ports[1]);
      });
    });
  } catch (const SqlError& failure) {
    // One that refuses the call, for it has too many, is alive; of several it may be another one.
    const bool refuses = std::string_view(failure.what()).find("FATAL") != std::string_view::npos;
    if (!refuses || NamesSeveralServers(odbc_string_)) return ++unheard_ < kMostUnheard;
    *leads = server_;
  }
  unheard_ = 0;
  if (server_.empty()) server_ = *leads;
  return *leads == server_;
}

OdbcSilence::OdbcSilence(OdbcSession& session, const std::string& odbc_string)
    : watch_(odbc_string, Who(session, &server_port_, &own_port_)) {
  const std::string port = ConnectionString::Parse(odbc_string).Get("port");
  called_port_ = port.empty() ? kUsualPort : std::atoi(port.c_str());
}

// Behind a router that hands the call on the server sees other ports: then all lines of this
// process to the port that was called are cut.
void OdbcSilence::Ask() {
  if (watch_.Heard()) return;
  const bool cut =
      CutLines([&](int own, int server) { return own == own_port_ && server == server_port_; });
  if (!cut) CutLines([&](int, int server) { return server == called_port_; });
}

}  // namespace kaunter::sql
