// Calls of a driver on a thread of their own, so that the thread that holds the windows paints them
// while the server thinks.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
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

  // Thrown some seconds behind a stop where the server has heard neither the call nor the stop.
  struct Unheard {};

  // What `call` gives; it must not throw. Where nobody acts during a wait it is called here and
  // now. Else the thread that asked acts meanwhile: for every hundredth of a second that it has to
  // wait, in one call or in several short ones. `statement`, where there is one, is cancelled as
  // long as a stop is asked for. Throws Unheard: the call goes on then with what it was given, so
  // it owns that, and only LeaveBehind may follow.
  SQLRETURN Run(std::function<SQLRETURN()> call, SQLHANDLE statement = SQL_NULL_HANDLE);
  // Behind Unheard: what the driver works on lives as long as it does.
  void LeaveBehind(std::shared_ptr<void> held);
  // `silence` is called whenever a call has gone on for another ten seconds; no other call passes
  // through this worker from within.
  void OnSilence(std::function<void()> silence) { silence_ = std::move(silence); }

 private:
  using Time = std::chrono::steady_clock;

  // Of all who may be in the driver; the last one lets go of what was left behind.
  struct Turn {
    std::mutex mutex;
    std::condition_variable changed;
    std::function<SQLRETURN()> call;  // none: the worker is idle
    SQLRETURN result = SQL_SUCCESS;
    bool cancels = false;
    bool ends = false;
    std::shared_ptr<void> held;
  };

  static void Work(const std::shared_ptr<Turn>& turn);
  void Act(SQLHANDLE statement);
  void Cancel(SQLHANDLE statement);
  void End();

  std::shared_ptr<Turn> turn_ = std::make_shared<Turn>();
  Time::duration waited_{};                  // since the last act
  std::optional<Time::time_point> stopped_;  // in the call that runs
  std::function<void()> silence_;
  std::thread thread_;  // begins with the first call that needs it
};

}  // namespace kaunter::sql
