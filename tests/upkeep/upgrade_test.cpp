// Offices of earlier versions are brought up to this one: whole, half way, by several desktops at
// once, on a disk that fills and with the power lost.
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <random>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"
#include "tests/support/full_disk.h"
#include "tests/support/pulled_plug.h"
#include "tests/upkeep/old_offices.h"
#include "upkeep/office_check.h"

namespace kaunter {
namespace {

using namespace test;

// Of each kind of number that must come through.
constexpr const char* kSums[] = {"SELECT COUNT(*) FROM CustMast",
                                 "SELECT COUNT(*) FROM LoanMast",
                                 "SELECT SUM(LoanBal) FROM LoanMast",
                                 "SELECT SUM(PayAmt) FROM PaymentMast",
                                 "SELECT SUM(PayableAmt-Payment) FROM SchMast",
                                 "SELECT SUM(ChargeAmt) FROM ChargeMast",
                                 "SELECT COUNT(*) FROM UserAccess",
                                 "SELECT SUM(CashInHand+CashInBank) FROM CompMast"};

std::string Sums(Connection& main) {
  std::string sums;
  for (const char* sum : kSums) sums += ScalarQuery(main, sum) + "\n";
  return sums;
}

class Embedded : public ::testing::Test {
 protected:
  EmbeddedPlace Copy(const std::string& old) {
    EmbeddedPlace place(folder.File("office.db"));
    for (const char* behind : {"", "-wal", "-shm"}) std::filesystem::remove(place.file() + behind);
    std::filesystem::copy_file(old, place.file());
    return place;
  }
  // The oldest office that has loans, and what this version makes of it.
  std::string Oldest() { return OldOffices(".db").at(1); }
  std::string Upgraded() {
    const EmbeddedPlace place = Copy(Oldest());
    StartOn(place);
    return place.Everything();
  }
  TempFolder folder;
};

void BringsUp(const OfficePlace& place, Connection& before, const Shape& fresh,
              const std::string& name) {
  SCOPED_TRACE(name);
  const Shape old = place.ShapeOf();
  const std::string sums = Sums(before);
  StartOn(place, [&](Connection& main) {
    EXPECT_EQ(Sums(main), sums);
    const OfficeCheck check =
        CheckOffice(main, [](const std::string&, const LedgerProgress&) { return true; });
    EXPECT_TRUE(check.complete);
    for (const LedgerFault& fault : check.faults) {
      ADD_FAILURE() << fault.LoanID << fault.CustID << " " << fault.what.english << " is "
                    << fault.stored << ", should be " << fault.should_be;
    }
  });
  const Shape now = place.ShapeOf();
  EXPECT_EQ(Lacks(now, old), "");
  EXPECT_EQ(Lacks(now, fresh), "") << "what a new office has";
  for (const auto& [table, columns] : fresh.tables) {
    for (const auto& [column, kind] : columns) {
      EXPECT_EQ(now.tables.at(table).at(column).type, kind.type) << table << "." << column;
    }
  }
  const std::string once = place.Everything();
  StartOn(place);
  EXPECT_EQ(place.Everything(), once) << "a second start";
}

TEST_F(Embedded, OfficesOfAllVersionsAreBroughtUpAndHold) {
  const EmbeddedPlace fresh(folder.File("fresh.db"));
  const Clock clock;
  MakeSqlite("fresh", fresh.file(), clock, [](Connection& main) { CreateEmptyOffice(main); });
  StartOn(fresh);
  const auto offices = OldOffices(".db");
  EXPECT_GE(offices.size(), 4U);
  for (const std::string& old : offices) {
    const EmbeddedPlace place = Copy(old);
    BringsUp(place, *OpenSqlite("old", place.file(), false, clock), fresh.ShapeOf(), old);
  }
}

// A statement of a patch fails: the office is as the patch before left it, an older program finds
// all it knows and can write there, and the next start ends as one that did not fail.
TEST_F(Embedded, AFailureAtAnyStatementLeavesTheOfficeToTheOlderProgram) {
  const std::string whole = Upgraded();
  const Shape old = EmbeddedPlace(Oldest()).ShapeOf();
  EmbeddedPlace place = Copy(Oldest());
  std::vector<std::string> held;  // before each write, or before its transaction
  std::vector<std::string> kinds;
  const auto is_write = [](std::string_view sql) { return !sql.starts_with("SELECT"); };
  bool inside = false;
  StartOn(place, {}, [&](std::string_view sql) {
    if (!is_write(sql)) return;
    kinds.emplace_back(sql.substr(0, 12));
    held.push_back(inside ? held.back() : place.Everything());
    if (sql == "BEGIN TRANSACTION") inside = true;
    if (sql == "COMMIT" || sql == "ROLLBACK") inside = false;
  });
  EXPECT_GT(held.size(), 100U);
  for (std::size_t n = 0; n < held.size(); ++n) {
    if (n > 0 && kinds[n] == kinds[n - 1] && n % 8 != 0) continue;  // of many like ones some
    SCOPED_TRACE(n);
    place = Copy(Oldest());
    std::size_t at = 0;
    std::string failed;
    const auto start = [&] {
      StartOn(place, {}, [&](std::string_view sql) {
        if (!failed.empty() && sql == "ROLLBACK") return;
        if (!is_write(sql) || at++ < n) return;
        failed = sql;
        throw SqlError(1105, "the disk is full");
      });
    };
    EXPECT_ANY_THROW(start());
    ASSERT_TRUE(place.Everything() == held[n]) << failed;
    const Shape left = place.ShapeOf();
    EXPECT_EQ(Lacks(left, old), "") << failed;
    for (const auto& [table, columns] : old.tables) {
      for (const auto& [name, column] : left.tables.at(table)) {
        EXPECT_FALSE(column.refuses_null && !columns.contains(name)) << table << "." << name;
      }
    }
    if (n % 10 != 0) continue;
    StartOn(place);
    EXPECT_TRUE(place.Everything() == whole) << failed;
  }
}

// Runs the act in a process of its own; no database is open in this one.
pid_t Start(const std::function<void()>& act) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    act();
    _exit(0);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    _exit(1);
  }
}

int EndOf(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void StartAtOnce(const OfficePlace& place, std::mt19937& random) {
  std::vector<pid_t> desktops;
  for (int i = 0; i < 3; ++i) {
    const auto later = static_cast<useconds_t>(random() % 30'000);
    desktops.push_back(Start([&] {
      usleep(later);
      // Between the look at a key and the lock.
      StartOn(place, {}, [](std::string_view sql) {
        if (sql == "BEGIN TRANSACTION") usleep(4000);
      });
    }));
  }
  for (const pid_t desktop : desktops) EXPECT_EQ(EndOf(desktop), 0);
}

// Ends a start by force somewhere on its way.
void KillOnItsWay(const OfficePlace& place, std::mt19937& random) {
  const pid_t desktop = Start([&] { StartOn(place); });
  usleep(static_cast<useconds_t>(random() % 300'000));
  kill(desktop, SIGKILL);
  EndOf(desktop);
}

TEST_F(Embedded, DesktopsThatBringItUpAtOnceAllStart) {
  std::mt19937 random(20240201);
  const std::string whole = Upgraded();
  for (int round = 0; round < 8; ++round) {
    const EmbeddedPlace place = Copy(Oldest());
    StartAtOnce(place, random);
    EXPECT_TRUE(place.Everything() == whole);
  }
}

TEST_F(Embedded, AStartThatIsKilledLosesPowerOrRoomIsMadeGoodByTheNextOne) {
  std::mt19937 random(20240202);
  const std::string whole = Upgraded();
  int stopped = 0;
  for (int round = 0; round < 36; ++round) {
    SCOPED_TRACE(round);
    const EmbeddedPlace place = Copy(Oldest());
    if (round % 3 == 0) {
      KillOnItsWay(place, random);
    } else if (round % 3 == 1) {
      stopped +=
          RunAndCrash({static_cast<long>(1 + random() % 900), static_cast<unsigned>(round)}, [&] {
            StartOn(place);
          }).died;
    } else {
      // A file, its log among them, may not grow past this.
      const auto most = static_cast<rlim_t>(200'000 + random() % 2'000'000);
      stopped += OnAFullDisk(most, [&] {
                   StartOn(place);
                   return 0;
                 }) != 0;
    }
    ASSERT_EQ(IntegrityOf(place.file()), "ok");
    StartOn(place);
    EXPECT_TRUE(place.Everything() == whole);
  }
  EXPECT_GT(stopped, 6);
}

class PostgresqlUpgrade : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("KAUNTER_POSTGRESQL") == nullptr) {
      GTEST_SKIP() << "no PostgreSQL server to play on";
    }
  }
  ServerPlace old{"upgrade_old"};
  ServerPlace place{"upgrade"};
  Clock clock;
};

TEST_F(PostgresqlUpgrade, OfficesOfAllVersionsAreBroughtUpAndHold) {
  const ServerPlace fresh("upgrade_fresh");
  fresh.Make();
  CreateEmptyOffice(*OpenOdbc("fresh", fresh.Settings().substr(7), clock));
  StartOn(fresh);
  const auto offices = OldOffices(".sql");
  EXPECT_GE(offices.size(), 3U);
  for (const std::string& dump : offices) {
    old.Load(dump);
    place.CopyFrom(old);
    auto before = OpenOdbc("old", old.Settings().substr(7), clock);
    BringsUp(place, *before, fresh.ShapeOf(), dump);
  }
}

TEST_F(PostgresqlUpgrade, StopsAndDesktopsAtOnceComeToTheSameOffice) {
  std::mt19937 random(20240203);
  old.Load(OldOffices(".sql").front());
  place.CopyFrom(old);
  std::size_t writes = 0;
  StartOn(place, {}, [&](std::string_view sql) { writes += sql.starts_with("SELECT") ? 0 : 1; });
  const std::string whole = place.Everything();
  for (int round = 0; round < 9; ++round) {
    SCOPED_TRACE(round);
    place.CopyFrom(old);
    if (round % 3 == 0) {
      StartAtOnce(place, random);
    } else if (round % 3 == 1) {
      KillOnItsWay(place, random);
    } else {
      std::size_t left = random() % writes;
      EXPECT_ANY_THROW(StartOn(place, {}, [&](std::string_view sql) {
        if (!sql.starts_with("SELECT") && left-- == 0) throw SqlError(1105, "the disk is full");
      }));
    }
    StartOn(place);
    EXPECT_EQ(place.Everything(), whole);
  }
}

}  // namespace
}  // namespace kaunter
