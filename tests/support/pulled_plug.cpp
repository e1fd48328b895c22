#include "tests/support/pulled_plug.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>

#include "platform/sql/sqlite/sqlite_functions.h"

namespace kaunter::test {

CrashRun RunAndCrash(const CrashPlan& plan, const std::function<void()>& save) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    InstallCrashVfs(plan);
    try {
      save();
      if (write(ends[1], "C", 1) != 1) _exit(4);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      _exit(5);
    }
    _exit(0);
  }
  close(ends[1]);
  CrashRun run;
  char told = 0;
  run.told = read(ends[0], &told, 1) == 1;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  run.died = WEXITSTATUS(status) == kCrashStatus;
  EXPECT_TRUE(run.died || WEXITSTATUS(status) == 0) << WEXITSTATUS(status);
  return run;
}

std::string IntegrityOf(const std::string& file) {
  sqlite3* raw = nullptr;
  sqlite3_open(file.c_str(), &raw);
  std::string answer = "unreadable";
  const Clock clock;
  sql::RegisterSqliteFunctions(raw, clock);  // the indices are in the engine's own order
  sqlite3_exec(
      raw, "PRAGMA integrity_check",
      [](void* to, int, char** fields, char**) {
        *static_cast<std::string*>(to) = fields[0];
        return 0;
      },
      &answer, nullptr);
  sqlite3_close(raw);
  return answer;
}

void DieEverywhere(const PulledPlug& plug) {
  long step = 1;
  int before_seen = 0, after_seen = 0;
  for (bool died = true; died; ++step) {
    ASSERT_LT(step, 2000);
    for (unsigned seed = 0; seed < plug.seeds && died; ++seed) {
      SCOPED_TRACE("step " + std::to_string(step) + " seed " + std::to_string(seed));
      plug.fresh();
      const CrashRun run = RunAndCrash({step, seed}, plug.save);
      died = run.died;
      ASSERT_EQ(IntegrityOf(plug.file), "ok");
      const std::string found = plug.state();
      if (run.told || !run.died) {
        ASSERT_EQ(found, plug.after);
      } else {
        ASSERT_TRUE(found == plug.before || found == plug.after) << found;
      }
      ++(found == plug.after ? after_seen : before_seen);
      if (plug.then) plug.then();
    }
  }
  EXPECT_GT(step, 5);
  EXPECT_GT(before_seen, 0);
  EXPECT_GT(after_seen, 0);
}

}  // namespace kaunter::test
