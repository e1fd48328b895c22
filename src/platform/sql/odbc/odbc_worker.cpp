#include "platform/sql/odbc/odbc_worker.h"

#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

constexpr std::chrono::milliseconds kBetweenActs(10);
constexpr std::chrono::seconds kSilence(10);

}  // namespace

OdbcWorker::~OdbcWorker() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

// Two threads take turns and are never in the driver together, but for a cancellation: the one that
// asks does not go on before the call has ended.
SQLRETURN OdbcWorker::Run(const std::function<SQLRETURN()>& call, SQLHANDLE statement) {
  if (!WaitIsUsed() && !silence_) return call();
  const Time::time_point begin = Time::now();
  Time::time_point acted = begin - waited_;
  Time::time_point asked = begin;
  {
    if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
    std::unique_lock lock(mutex_);
    call_ = &call;
    lock.unlock();  // whoever is woken up needs it
    changed_.notify_all();
    lock.lock();
    while (!changed_.wait_until(lock, acted + kBetweenActs, [this] { return call_ == nullptr; })) {
      lock.unlock();
      Act(statement);
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
  return result_;
}

void OdbcWorker::Act(SQLHANDLE statement) {
  ActWhileWaiting();
  // Again and again: a wish that arrives before the statement is lost.
  if (statement != SQL_NULL_HANDLE && StopAsked()) SQLCancel(statement);
}

void OdbcWorker::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return call_ != nullptr || ends_; });
    if (ends_) return;
    lock.unlock();
    const SQLRETURN result = (*call_)();
    lock.lock();
    result_ = result;
    call_ = nullptr;
    changed_.notify_all();
  }
}

}  // namespace kaunter::sql
