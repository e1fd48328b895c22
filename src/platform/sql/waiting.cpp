#include "platform/sql/waiting.h"

#include <thread>
#include <utility>

namespace kaunter {
namespace {

thread_local std::function<void()> while_waiting;
thread_local std::function<bool()> stop_asked;
thread_local std::function<EndOfWait()> server_is_away;
thread_local bool waiting = false;

constexpr std::chrono::milliseconds kBetweenActs(10);

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

void SetWhileServerIsAway(std::function<EndOfWait()> begin) { server_is_away = std::move(begin); }

EndOfWait ServerIsAway() { return server_is_away && !waiting ? server_is_away() : EndOfWait(); }

bool EndsWait(const EndOfWait& asked, std::chrono::milliseconds since,
              std::chrono::milliseconds longest) {
  if (!asked || waiting) return false;
  waiting = true;
  const bool ends = asked(since, longest);
  waiting = false;
  return ends;
}

bool SleepActing(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(kBetweenActs);
    ActWhileWaiting();
    if (StopAsked()) return false;
  }
  return true;
}

bool WaitIsUsed() noexcept { return (while_waiting || stop_asked) && !waiting; }

}  // namespace kaunter
