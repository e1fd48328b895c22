#include <windows.h>
#include <winsock2.h>
#include <ws2tcpip.h>
// The addresses of the network cards.
#include <iphlpapi.h>

#include <array>
#include <vector>

#include "platform/host.h"
#include "platform/windows_text.h"

namespace kaunter {

std::string MachineName() {
  std::array<wchar_t, 256> name{};
  DWORD length = static_cast<DWORD>(name.size());
  if (!GetComputerNameExW(ComputerNameDnsHostname, name.data(), &length) || length == 0) {
    return "unknown";
  }
  return FromWide({name.data(), length});
}

std::string MachineAddress() {
  constexpr ULONG kLeftOut =
      GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  ULONG size = 1 << 14;
  std::vector<IP_ADAPTER_ADDRESSES> cards;
  ULONG answer = ERROR_BUFFER_OVERFLOW;
  for (int i = 0; i < 3 && answer == ERROR_BUFFER_OVERFLOW; ++i) {
    cards.resize(size / sizeof(IP_ADAPTER_ADDRESSES) + 1);
    answer = GetAdaptersAddresses(AF_INET, kLeftOut, nullptr, cards.data(), &size);
  }
  if (answer == ERROR_NO_DATA) return "127.0.0.1";
  if (answer != NO_ERROR) return "unknown";
  for (const IP_ADAPTER_ADDRESSES* card = cards.data(); card != nullptr; card = card->Next) {
    if (card->IfType == IF_TYPE_SOFTWARE_LOOPBACK || card->OperStatus != IfOperStatusUp) continue;
    for (const auto* at = card->FirstUnicastAddress; at != nullptr; at = at->Next) {
      const auto* address = reinterpret_cast<const sockaddr_in*>(at->Address.lpSockaddr);
      std::array<wchar_t, INET_ADDRSTRLEN> text{};
      if (InetNtopW(AF_INET, &address->sin_addr, text.data(), text.size()) != nullptr) {
        return FromWide(text.data());
      }
    }
  }
  return "127.0.0.1";
}

}  // namespace kaunter
