// Opening a database file: what is made, what is refused and in which words, and several desktops
// on one file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <vector>

#include "platform/sql/data_source.h"
#include "platform/sql/waiting.h"
#include "tests/platform/support/error_number.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;

class SqliteOpen : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("kaunter-open-" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  std::string Path(const char* name = "office.db") const { return (folder_ / name).string(); }
  std::unique_ptr<Connection> Open(const std::string& path, bool create = false) {
    return OpenSqlite("MainConn", path, create, clock_);
  }
  void ExpectRefused(const std::string& path, bool create, const char* why) {
    try {
      Open(path, create);
      FAIL() << path;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 4060) << error.what();
      EXPECT_THAT(error.what(), AllOf(HasSubstr(path), HasSubstr(why)));
    }
  }
  // The act in so many processes at once; each must come to its end.
  static void InProcesses(int count, const std::function<void()>& act) {
    std::vector<pid_t> children;
    for (int i = 0; i < count; ++i) {
      const pid_t child = fork();
      if (child == 0) {
        try {
          act();
          _exit(0);
        } catch (const std::exception& error) {
          fprintf(stderr, "%s\n", error.what());
          _exit(1);
        }
      }
      children.push_back(child);
    }
    for (const pid_t child : children) {
      int status = 0;
      waitpid(child, &status, 0);
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
  }
  static void Raw(const std::string& path, const char* sql) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
  }

  fs::path folder_;
  Clock clock_;
};

TEST_F(SqliteOpen, RefusesWhatIsNoDatabaseOfOurs) {
  ExpectRefused(Path("missing.db"), false, "no such file");
  EXPECT_FALSE(fs::exists(Path("missing.db")));
  ExpectRefused(Path("nofolder/office.db"), true, "no folder");
  ExpectRefused(folder_.string(), true, "it is a folder");
  const std::string letter = "Dear Sir, this is a letter and no database at all.";
  std::ofstream(Path("letter.db")) << letter;
  ExpectRefused(Path("letter.db"), true, "no database");
  EXPECT_EQ(fs::file_size(Path("letter.db")), letter.size());
  Raw(Path("other.db"), "PRAGMA application_id = 12345; CREATE TABLE t (a)");
  ExpectRefused(Path("other.db"), true, "another program");
  Open(Path("newer.db"), true);
  Raw(Path("newer.db"), "PRAGMA user_version = 999");
  ExpectRefused(Path("newer.db"), false, "newer Kaunter");
  if (geteuid() != 0) {  // to the super-user every file is readable
    Open(Path("locked.db"), true);
    chmod(Path("locked.db").c_str(), 0);
    ExpectRefused(Path("locked.db"), false, "right to read");
  }
}

TEST_F(SqliteOpen, AnEmptyFileOrALogWithoutItsFileIsNoNewOffice) {
  std::ofstream(Path("empty.db")) << "";
  ExpectRefused(Path("empty.db"), false, "is empty");
  std::ofstream(Path("empty.db-wal")) << "saves";
  std::ofstream(Path("gone.db-wal")) << "saves";
  for (const bool create : {false, true}) {
    ExpectRefused(Path("empty.db"), create, "empty.db-wal");
    ExpectRefused(Path("gone.db"), create, "gone.db-wal");
  }
  EXPECT_THROW(MakeSqlite("x", Path("gone.db"), clock_, [](Connection&) {}), SqlError);
  EXPECT_FALSE(fs::exists(Path("gone.db")));
  EXPECT_EQ(fs::file_size(Path("gone.db-wal")) + fs::file_size(Path("empty.db-wal")), 10u);
}

TEST_F(SqliteOpen, AFileThatWentTakesNoSave) {
  const std::function<void()> kActs[] = {
      [&] { fs::rename(Path(), Path("away.db")); },
      [&] { fs::remove(Path()); },
      [&] {
        Open(Path("backup.db"), true)->Execute("create table T (A int)");
        fs::rename(Path("backup.db"), Path());
      },
  };
  for (const auto& act : kActs) {
    fs::remove(Path());
    const auto db = Open(Path(), true);
    db->Execute("create table T (A int)");
    db->BeginTrans();
    db->Execute("insert into T values (1)");
    act();
    EXPECT_EQ(NumberOf(*db, "commit"), 945);
    db->RollbackTrans();
    EXPECT_EQ(NumberOf(*db, "begin transaction"), 945);
    EXPECT_EQ(NumberOf(*db, "insert into T values (2)"), 945);
    EXPECT_EQ(db->Query("select count(*) from T").Field(0).ToText(), "0");
    for (const char* log : {"-wal", "-shm"}) fs::remove(Path() + log);
  }
}

// Whole or not at all: killed on the way, failed, and by several starts at once, over nothing and
// over an empty file.
TEST_F(SqliteOpen, ANewFileComesWhole) {
  const auto files = [&] {
    return std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
  };
  const auto fill = [](Connection& db) {
    db.Execute("create table T (A int)");
    db.Execute("insert into T values (1)");
  };
  for (const bool empty : {false, true}) {
    fs::remove(Path());
    if (empty) std::ofstream(Path()) << "";
    InProcesses(1, [&] {
      MakeSqlite("x", Path(), clock_, [&](Connection& db) {
        fill(db);
        _exit(0);
      });
    });
    EXPECT_EQ(fs::exists(Path()), empty);
    EXPECT_THROW(MakeSqlite("x", Path(), clock_,
                            [&](Connection& db) {
                              fill(db);
                              throw SqlError(1105, "the disk is full");
                            }),
                 SqlError);
    EXPECT_EQ(files(), empty ? 1 : 0);
    InProcesses(4, [&] {
      MakeSqlite("x", Path(), clock_, fill);
      Open(Path())->Execute("insert into T values (2)");
    });
    EXPECT_EQ(Open(Path())->Query("select count(*) from T").Field(0).ToText(), "5");
    EXPECT_EQ(files(), 1);
  }
}

TEST_F(SqliteOpen, ItsFilesAreNotForEverybody) {
  const mode_t before = umask(0);
  for (const auto& [folder, wanted] : {std::pair{0755u, 0600u}, {0770u, 0660u}, {01777u, 0600u}}) {
    chmod(folder_.c_str(), folder);
    const auto db = Open(Path(), true);
    db->Execute("create table T (A int)");
    for (const char* ending : {"", "-wal", "-shm"}) {
      struct stat file {};
      ASSERT_EQ(stat((Path() + ending).c_str(), &file), 0);
      EXPECT_EQ(file.st_mode & 07777u, wanted) << ending;
    }
    fs::remove(Path());
    for (const char* log : {"-wal", "-shm"}) fs::remove(Path() + log);
  }
  umask(before);
}

// The windows go on painting while another desktop saves.
TEST_F(SqliteOpen, TheDesktopActsWhileAnotherSaves) {
  const auto mine = Open(Path(), true), others = Open(Path());
  others->BeginTrans();
  int acts = 0;
  SetWhileWaiting([&] {
    if (++acts == 5) fs::remove(Path("held"));
  });
  std::ofstream(Path("held")) << "";
  std::thread end([&] {
    while (fs::exists(Path("held"))) std::this_thread::yield();
    others->RollbackTrans();
  });
  mine->BeginTrans();
  end.join();
  SetWhileWaiting({});
  EXPECT_GE(acts, 5);
}

TEST_F(SqliteOpen, AFileWithADamagedBeginningIsRefusedWithItsPath) {
  Open(Path(), true)->Execute("create table T (A int)");
  {
    std::fstream file(Path(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(16);
    file << std::string(80, '\x7f');
  }
  ExpectRefused(Path(), false, "no database");
}

TEST_F(SqliteOpen, ADamagedPageIsTold) {
  {
    const auto db = Open(Path(), true);
    db->Execute("create table T (A int, B nvarchar(max))");
    db->BeginTrans();
    for (int i = 0; i < 200; ++i) {
      db->Execute("insert into T values (1,'" + std::string(500, 'b') + "')");
    }
    db->CommitTrans();
  }
  {
    std::fstream file(Path(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096);
    file << std::string(4096 * 8, '\x7f');
  }
  try {
    Open(Path())->Query("select * from T");
    FAIL();
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 824);
    EXPECT_THAT(error.what(), AllOf(HasSubstr(Path()), HasSubstr("backup")));
  }
}

TEST_F(SqliteOpen, ASaveWithoutRoomIsRefusedAndLeavesNothing) {
  {
    const auto db = Open(Path(), true);
    db->Execute("create table T (A int, B nvarchar(max)); insert into T values (1,'kept')");
  }
  // A limit on the size of files plays the full disk, in a process of its own.
  InProcesses(1, [&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{200'000, 200'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const auto db = Open(Path());
    try {
      db->BeginTrans();
      for (int i = 0; i < 100; ++i) {
        db->Execute("insert into T values (2,'" + std::string(8000, 'x') + "')");
      }
      db->CommitTrans();
    } catch (const SqlError& error) {
      db->RollbackTrans();
      const bool told = error.number() == 1105 || error.number() == 823;
      _exit(told && std::string(error.what()).find(Path()) != std::string::npos ? 0 : 2);
    }
    _exit(1);
  });
  const auto db = Open(Path());
  EXPECT_EQ(db->Query("select count(*) from T").Field(0).ToText(), "1");
  EXPECT_EQ(db->Query("select B from T").Field(0).ToText(), "kept");
}

TEST_F(SqliteOpen, AStartWithoutRoomSaysSo) {
  Open(Path(), true)->Execute("create table T (A int)");
  InProcesses(1, [&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};  // the index of the log is larger
    setrlimit(RLIMIT_FSIZE, &limit);
    try {
      Open(Path());
    } catch (const SqlError& error) {
      _exit(error.number() == 1105 && std::string(error.what()).find("no room") != std::string::npos
                ? 0
                : 2);
    }
    _exit(3);
  });
  const auto db = Open(Path());
  EXPECT_EQ(db->Query("select count(*) from T").Field(0).ToText(), "0");
}

TEST_F(SqliteOpen, TwoFirstStartsAtOnceBothSucceed) {
  InProcesses(4, [&] { Open(Path(), true); });
  EXPECT_EQ(Open(Path())->Query("select count(*) from INFORMATION_SCHEMA.TABLES").Field(0).ToText(),
            "0");
}

TEST_F(SqliteOpen, SeveralDesktopsCountWithoutLosingANumber) {
  constexpr int kDesktops = 4, kSaves = 25;
  {
    const auto db = Open(Path(), true);
    db->Execute(
        "create table NumberMast (CustID nvarchar(20) NOT NULL PRIMARY KEY, PaymentNo int);"
        "create table PaymentMast (PayID nvarchar(20) NOT NULL PRIMARY KEY);"
        "insert into NumberMast values ('C1',0)");
  }
  InProcesses(kDesktops, [&] {
    const auto db = Open(Path());
    for (int save = 0; save < kSaves; ++save) {
      db->BeginTrans();
      const std::string next =
          db->Query("select PaymentNo+1 from NumberMast where CustID='C1'").Field(0).ToText();
      db->Execute("update NumberMast set PaymentNo=" + next + " where CustID='C1'");
      db->Execute("insert into PaymentMast values ('P" + next + "')");
      db->CommitTrans();
    }
  });
  const auto db = Open(Path());
  EXPECT_EQ(db->Query("select count(*) from PaymentMast").Field(0).ToText(), "100");
  EXPECT_EQ(db->Query("select PaymentNo from NumberMast").Field(0).ToText(), "100");
}

}  // namespace
}  // namespace kaunter
