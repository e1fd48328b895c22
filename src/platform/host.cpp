#include "platform/host.h"

#include <utility>

namespace kaunter {
namespace {

std::string& GivenName() {
  static std::string name;
  return name;
}

}  // namespace

void NameThisHost(std::string name) { GivenName() = std::move(name); }

std::string ThisHostName() { return GivenName().empty() ? MachineName() : GivenName(); }

Host ThisHost() { return {ThisHostName(), MachineAddress()}; }

}  // namespace kaunter
