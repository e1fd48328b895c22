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
#include <memory>
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
void CutLine(int own_port, int server_port) {
  for (int number = 0; number < kMostSockets; ++number) {
    const auto socket = static_cast<Socket>(number);
    if (PortBy(&getsockname, socket) != own_port) continue;
    if (PortBy(&getpeername, socket) == server_port) shutdown(socket, kBothWays);
  }
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

OdbcSilence::OdbcSilence(OdbcSession& session, std::string odbc_string, int login_seconds)
    : odbc_string_(std::move(odbc_string)), login_seconds_(login_seconds) {
  server_ = Who(session, &server_port_, &own_port_);
}

void OdbcSilence::Ask() {
  if (server_.empty()) return;
  const auto leads = std::make_shared<std::string>();
  try {
    Within(kLongestCall, [leads, text = odbc_string_, seconds = login_seconds_] {
      OpenOneOf(text, [&](const std::string& each) {
        OdbcSession session("Who leads", each, seconds);
        int ports[2] = {};
        *leads = Who(session, &ports[0], &ports[1]);
      });
    });
    unheard_ = 0;
    if (*leads == server_) return;
  } catch (const SqlError&) {
    if (++unheard_ < kMostUnheard) return;
  }
  CutLine(own_port_, server_port_);
}

}  // namespace kaunter::sql
