// A work that is waited for no longer than its limit.
#include "platform/sql/within.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>

#include "platform/sql/connection.h"
#include "platform/sql/data_source.h"
#include "platform/sql/waiting.h"
#include "tests/platform/support/temp_folder.h"

namespace kaunter {
namespace {

using std::chrono::milliseconds;
using Time = std::chrono::steady_clock;

std::string WordsOf(milliseconds limit, std::function<void()> work) {
  try {
    Within(limit, std::move(work));
  } catch (const SqlError& error) {
    return (error.number() == kTimedOutNumber ? "late: " : "") + std::string(error.what());
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

TEST(Within, TheWorkEndsOrFailsAsByItself) {
  const std::thread::id here = std::this_thread::get_id();
  bool elsewhere = false;
  EXPECT_EQ(WordsOf(milliseconds(5000), [&] { elsewhere = std::this_thread::get_id() != here; }),
            "");
  EXPECT_TRUE(elsewhere);
  EXPECT_EQ(WordsOf(milliseconds(5000), [] { throw SqlError(4060, "no such server"); }),
            "no such server");
  EXPECT_EQ(WordsOf(milliseconds(5000), [] { throw std::logic_error("ours"); }), "ours");
}

TEST(Within, WhatHangsIsLeftBehindAndTooManyAreNotBegun) {
  const auto go_on = std::make_shared<std::counting_semaphore<64>>(0);
  const auto ended = std::make_shared<std::atomic<int>>(0);
  int acts = 0;
  SetWhileWaiting([&] { ++acts; });
  const auto hang = [=] {
    go_on->acquire();
    ++*ended;
  };
  const auto begin = Time::now();
  constexpr int kMost = 8;
  for (int i = 0; i < kMost; ++i) {
    EXPECT_EQ(WordsOf(milliseconds(50), hang), "late: The server did not answer in time.");
  }
  SetWhileWaiting({});
  EXPECT_GE(Time::now() - begin, milliseconds(kMost * 50));
  EXPECT_GE(acts, kMost);
  EXPECT_EQ(WordsOf(milliseconds(5000), [] { FAIL(); }),
            "late: Earlier calls of the server are still without an answer.");
  go_on->release(kMost);
  while (*ended < kMost) std::this_thread::sleep_for(milliseconds(1));
  std::string words = "late";
  for (int i = 0; i < 1000 && words.starts_with("late"); ++i) {
    words = WordsOf(milliseconds(5000), [] {});  // the last thread may not have told yet
  }
  EXPECT_EQ(words, "");
}

// A server that lives is told to stop, and the thread ends with its statement.
TEST(Within, AStatementThatRunsIsAskedToGiveUp) {
  const auto number = std::make_shared<std::atomic<int>>(0);
  const testing::TempFolder folder;
  const auto run = [number, file = folder.File("list.db")] {
    const Clock clock;
    const auto own = OpenSqlite("AMLA", file, true, clock);
    own->Execute("CREATE TABLE T (A int)");
    for (int i = 0; i < 200; ++i) own->Execute("INSERT INTO T VALUES (1)");
    try {
      own->Query(
          "SELECT COUNT(*) FROM T AS a CROSS JOIN T AS b CROSS JOIN T AS c CROSS JOIN T AS d");
    } catch (const SqlError& error) {
      *number = error.number() == 0 ? -1 : error.number();
    }
  };
  EXPECT_EQ(WordsOf(milliseconds(300), run), "late: The server did not answer in time.");
  for (int i = 0; i < 500 && *number == 0; ++i) std::this_thread::sleep_for(milliseconds(10));
  EXPECT_NE(*number, 0);
  const MayStop stop([] { return true; });
  EXPECT_EQ(WordsOf(milliseconds(5000), [] { std::this_thread::sleep_for(milliseconds(300)); }),
            "late: The wait was ended.");
}

}  // namespace
}  // namespace kaunter
