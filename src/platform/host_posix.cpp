#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "platform/host.h"

namespace kaunter {

std::string MachineName() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0 || name[0] == '\0') return "unknown";
  return name.data();
}

std::string MachineAddress() {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) != 0) return "unknown";
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> guard(first, &freeifaddrs);
  for (const ifaddrs* at = first; at != nullptr; at = at->ifa_next) {
    if (at->ifa_addr == nullptr || at->ifa_addr->sa_family != AF_INET) continue;
    if ((at->ifa_flags & IFF_LOOPBACK) != 0) continue;
    std::array<char, INET_ADDRSTRLEN> text{};
    const auto* address = reinterpret_cast<const sockaddr_in*>(at->ifa_addr);
    if (inet_ntop(AF_INET, &address->sin_addr, text.data(), text.size()) != nullptr) {
      return text.data();
    }
  }
  return "127.0.0.1";
}

}  // namespace kaunter
