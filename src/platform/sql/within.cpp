#include "platform/sql/within.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/sql/connection.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

using Time = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenActs(10);
constexpr int kMostLeftBehind = 8;

std::atomic<int> left_behind = 0;

struct Wait {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> work;
  std::exception_ptr failure;
  bool ended = false;
  std::atomic<bool> left = false;
};

void Work(Wait& wait) {
  const MayStop stop([&wait] { return wait.left.load(); });
  std::exception_ptr failure;
  try {
    wait.work();
  } catch (...) {
    failure = std::current_exception();
  }
  wait.work = {};  // what it held may wait for the server once more
  const std::lock_guard lock(wait.mutex);
  wait.failure = std::move(failure);
  wait.ended = true;
  if (wait.left) --left_behind;
  wait.changed.notify_all();
}

[[noreturn]] void LeaveBehind(Wait& wait, const char* why) {
  wait.left = true;
  ++left_behind;
  throw SqlError(kTimedOutNumber, why);
}

}  // namespace

void Within(std::chrono::milliseconds limit, std::function<void()> work) {
  if (left_behind >= kMostLeftBehind) {
    throw SqlError(kTimedOutNumber, "Earlier calls of the server are still without an answer.");
  }
  const auto end = Time::now() + limit;
  const auto wait = std::make_shared<Wait>();
  wait->work = std::move(work);
  std::thread([wait] { Work(*wait); }).detach();
  std::unique_lock lock(wait->mutex);
  while (!wait->changed.wait_for(lock, kBetweenActs, [&] { return wait->ended; })) {
    if (Time::now() >= end) LeaveBehind(*wait, "The server did not answer in time.");
    lock.unlock();
    ActWhileWaiting();
    const bool stop = StopAsked();
    lock.lock();
    if (stop && !wait->ended) LeaveBehind(*wait, "The wait was ended.");
  }
  if (wait->failure) std::rethrow_exception(std::move(wait->failure));
}

}  // namespace kaunter
