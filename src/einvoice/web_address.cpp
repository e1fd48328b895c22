#include "einvoice/web_address.h"

#include <fmt/format.h>

#include "core/texts.h"

namespace kaunter {
namespace {

std::string Percent(char c) { return fmt::format("%{:02X}", static_cast<unsigned char>(c)); }

}  // namespace

std::string EncodedForm(std::string_view value) {
  std::string encoded;
  for (const char c : value) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '-' || c == '_' || c == '.' || c == '~';
    encoded += plain ? std::string(1, c) : Percent(c);
  }
  return encoded;
}

std::string SendableAddress(std::string_view address) {
  std::string sendable;
  for (const char c : address) {
    const bool plain =
        c > ' ' && c < 0x7F && std::string_view("\"<>\\^`{|}").find(c) == std::string_view::npos;
    sendable += plain ? std::string(1, c) : Percent(c);
  }
  return sendable;
}

std::string HostOf(std::string_view address) {
  const std::size_t colon = address.find("://");
  if (colon == std::string_view::npos) return {};
  const std::string scheme = Lower(address.substr(0, colon));
  if (scheme != "http" && scheme != "https") return {};
  std::string_view host = address.substr(colon + 3);
  host = host.substr(0, host.find_first_of("/?#"));
  // A name and password before the host are nobody's to read.
  const std::size_t at = host.rfind('@');
  return std::string(at == std::string_view::npos ? host : host.substr(at + 1));
}

}  // namespace kaunter
