// Calls of a driver on a thread of their own, so that the thread that holds the windows paints them
// while the server thinks.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/sql/odbc/odbc_api.h"

namespace kaunter::sql {

class OdbcWorker {
 public:
  OdbcWorker() = default;
  ~OdbcWorker();
  OdbcWorker(const OdbcWorker&) = delete;
  OdbcWorker& operator=(const OdbcWorker&) = delete;

  // What `call` gives; it must not throw. Where nobody acts during a wait it is called here and
  // now. Else the thread that asked acts meanwhile: for every hundredth of a second that it has to
  // wait, in one call or in several short ones. `statement`, where there is one, is cancelled as
  // long as a stop is asked for.
  SQLRETURN Run(const std::function<SQLRETURN()>& call, SQLHANDLE statement = SQL_NULL_HANDLE);
  // `silence` is called whenever a call has gone on for another ten seconds; no other call passes
  // through this worker from within.
  void OnSilence(std::function<void()> silence) { silence_ = std::move(silence); }

 private:
  using Time = std::chrono::steady_clock;

  void Work();
  void Act(SQLHANDLE statement);

  std::mutex mutex_;
  std::condition_variable changed_;
  const std::function<SQLRETURN()>* call_ = nullptr;  // none: the worker is idle
  SQLRETURN result_ = SQL_SUCCESS;
  bool ends_ = false;
  Time::duration waited_{};  // since the last act
  std::function<void()> silence_;
  std::thread thread_;  // begins with the first call that needs it
};

}  // namespace kaunter::sql
