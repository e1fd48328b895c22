#include "platform/sql/odbc/odbc_worker.h"

#include <system_error>
#include <utility>

#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

constexpr std::chrono::milliseconds kBetweenActs(10);
constexpr std::chrono::seconds kSilence(10);
constexpr std::chrono::seconds kHearsStop(5);

}  // namespace

OdbcWorker::~OdbcWorker() {
  if (!thread_.joinable()) return;
  End();
  thread_.join();
}

void OdbcWorker::End() {
  {
    const std::lock_guard lock(turn_->mutex);
    turn_->ends = true;
  }
  turn_->changed.notify_all();
}

void OdbcWorker::LeaveBehind(std::shared_ptr<void> held) {
  turn_->held = std::move(held);
  End();
  thread_.detach();
  turn_ = std::make_shared<Turn>();
}

// Two threads take turns and are never in the driver together, but for a cancellation: the one that
// asks does not go on before the call has ended, and the cancellation, which would meet the next
// statement.
SQLRETURN OdbcWorker::Run(std::function<SQLRETURN()> call, SQLHANDLE statement) {
  if (!WaitIsUsed() && !silence_) return call();
  const Time::time_point begin = Time::now();
  Time::time_point acted = begin - waited_;
  Time::time_point asked = begin;
  stopped_.reset();
  {
    if (!thread_.joinable()) thread_ = std::thread([turn = turn_] { Work(turn); });
    std::unique_lock lock(turn_->mutex);
    turn_->call = std::move(call);
    lock.unlock();  // whoever is woken up needs it
    turn_->changed.notify_all();
    lock.lock();
    while (!turn_->changed.wait_until(lock, acted + kBetweenActs,
                                      [this] { return !turn_->call && !turn_->cancels; })) {
      lock.unlock();
      Act(statement);
      if (stopped_ && Time::now() - *stopped_ >= kHearsStop) throw Unheard{};
      if (silence_ && Time::now() - asked >= kSilence) {
        silence_();
        asked = Time::now();
      }
      acted = Time::now();
      lock.lock();
    }
  }
  waited_ = Time::now() - acted;
  if (waited_ >= kBetweenActs) {
    Act(SQL_NULL_HANDLE);
    waited_ = {};
  }
  return turn_->result;
}

void OdbcWorker::Act(SQLHANDLE statement) {
  ActWhileWaiting();
  if (statement == SQL_NULL_HANDLE || !StopAsked()) return;
  if (!stopped_) stopped_ = Time::now();
  // Again and again: a wish that arrives before the statement is lost.
  Cancel(statement);
}

// A driver may wait for the server's answer to that, too.
void OdbcWorker::Cancel(SQLHANDLE statement) {
  {
    const std::lock_guard lock(turn_->mutex);
    if (std::exchange(turn_->cancels, true)) return;
  }
  const auto ended = [](Turn& turn) {
    {
      const std::lock_guard lock(turn.mutex);
      turn.cancels = false;
    }
    turn.changed.notify_all();
  };
  try {
    std::thread([turn = turn_, statement, ended] {
      SQLCancel(statement);
      ended(*turn);
    }).detach();
  } catch (const std::system_error&) {  // no more threads at this moment
    ended(*turn_);
  }
}

void OdbcWorker::Work(const std::shared_ptr<Turn>& turn) {
  std::unique_lock lock(turn->mutex);
  for (;;) {
    turn->changed.wait(lock, [&] { return turn->call || turn->ends; });
    if (!turn->call) return;
    lock.unlock();
    const SQLRETURN result = turn->call();
    lock.lock();
    turn->result = result;
    turn->call = nullptr;
    turn->changed.notify_all();
    if (turn->ends) return;
  }
}

}  // namespace kaunter::sql
