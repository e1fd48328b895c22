// What a thread does while a statement of its own takes long, or while a server is away: the
// desktop's goes on painting its windows, and a person may end it.
#pragma once

#include <chrono>
#include <functional>

namespace kaunter {

// Called again and again while a statement runs, some hundred times a second; empty for nothing. It
// must not throw, and a statement sent from within is a fault (std::logic_error): the one that is
// running would be disturbed.
void SetWhileWaiting(std::function<void()> act);

// True within the act.
bool IsWaiting();

// While one lives, `asked` is called in the same way, and true ends the statement that is running
// with an SqlError; a server that still thinks is asked to give up. For statements that only read.
class MayStop {
 public:
  explicit MayStop(std::function<bool()> asked);
  ~MayStop();
  MayStop(const MayStop&) = delete;
  MayStop& operator=(const MayStop&) = delete;

 private:
  std::function<bool()> before_;
};

// `begin` is called when a server that was lost is waited for, and what it gives then again and
// again with the time since and the longest that it may take: true ends the wait. Like the act it
// must not throw and sends no statement. Empty for nothing.
using EndOfWait =
    std::function<bool(std::chrono::milliseconds since, std::chrono::milliseconds longest)>;
void SetWhileServerIsAway(std::function<EndOfWait()> begin);

// Sleeps, acting meanwhile; false when a stop was asked for.
bool SleepActing(std::chrono::milliseconds time);

// The engine's side.
void ActWhileWaiting() noexcept;
bool StopAsked() noexcept;
EndOfWait ServerIsAway();
bool EndsWait(const EndOfWait& asked, std::chrono::milliseconds since,
              std::chrono::milliseconds longest);
bool WaitIsUsed() noexcept;  // there is an act, or somebody may ask for a stop

}  // namespace kaunter
