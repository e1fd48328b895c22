#include "platform/sql/retry.h"

#include "platform/sql/connection.h"

namespace kaunter {
namespace {

constexpr int kAttempts = 5;
constexpr int kDeadlock = 1205;
constexpr int kBusy = 1222;

}  // namespace

void WriteAgainUntilDone(const std::function<void()>& write) {
  for (int attempt = 1;; ++attempt) {
    try {
      return write();
    } catch (const SqlError& error) {
      const bool passing = error.number() == kDuplicateKeyNumber || error.number() == kDeadlock ||
                           error.number() == kBusy;
      if (!passing || attempt == kAttempts) throw;
    }
  }
}

}  // namespace kaunter
