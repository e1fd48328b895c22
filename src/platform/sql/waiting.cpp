#include "platform/sql/waiting.h"

#include <utility>

namespace kaunter {
namespace {

std::function<void()> while_waiting;
bool waiting = false;

}  // namespace

void SetWhileWaiting(std::function<void()> act) { while_waiting = std::move(act); }

bool IsWaiting() { return waiting; }

void ActWhileWaiting() noexcept {
  if (!while_waiting || waiting) return;
  waiting = true;
  while_waiting();
  waiting = false;
}

}  // namespace kaunter
