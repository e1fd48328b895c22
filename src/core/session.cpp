#include "core/session.h"

#include <stdexcept>

namespace kaunter {

Connection& Session::Main() const {
  if (MainConn == nullptr) throw std::logic_error("MainConn is used before it is open");
  return *MainConn;
}

}  // namespace kaunter
