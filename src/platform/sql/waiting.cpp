#include "platform/sql/waiting.h"

#include <utility>

namespace kaunter {
namespace {

thread_local std::function<void()> while_waiting;
thread_local std::function<bool()> stop_asked;
thread_local bool waiting = false;

}  // namespace

void SetWhileWaiting(std::function<void()> act) { while_waiting = std::move(act); }

bool IsWaiting() { return waiting; }

void ActWhileWaiting() noexcept {
  if (!while_waiting || waiting) return;
  waiting = true;
  while_waiting();
  waiting = false;
}

MayStop::MayStop(std::function<bool()> asked)
    : before_(std::exchange(stop_asked, std::move(asked))) {}

MayStop::~MayStop() { stop_asked = std::move(before_); }

bool StopAsked() noexcept {
  if (!stop_asked || waiting) return false;
  waiting = true;
  const bool stop = stop_asked();
  waiting = false;
  return stop;
}

bool WaitIsUsed() noexcept { return (while_waiting || stop_asked) && !waiting; }

}  // namespace kaunter
