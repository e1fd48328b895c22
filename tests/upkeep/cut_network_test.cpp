// The network goes in the middle of a backup, a restore, a move and an upgrade: the line breaks, or
// nothing passes any more. Each ends with a text, and the next attempt does the whole.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "core/local_settings.h"
#include "core/startup.h"
#include "tests/core/office.h"
#include "tests/support/cutting_proxy.h"
#include "tests/upkeep/moved_offices.h"
#include "tests/upkeep/old_offices.h"
#include "upkeep/backup.h"
#include "upkeep/restore.h"

namespace kaunter {
namespace {

using test::ServerPlace;
using Cut = test::CuttingProxy::Cut;

bool GoOn(const UpkeepStep&) { return true; }

struct Work {
  const char* name;
  std::vector<const char*> cut_at;  // words of its own connections or of the server's programs
  std::function<void(Session&, const std::string& folder)> act;
};

LocalSettings SettingsOf(const ServerPlace& place, const std::string& folder) {
  return LocalSettings::Parse(
      fmt::format("ConnDataSource = Office\n[Office]\n{}\n[File]\nfile = {}/new.db\n",
                  place.Settings(), folder),
      "settings.ini");
}

void Do(const Work& work, const ServerPlace& place, const std::string& folder) {
  Session session;
  session.AppPath = folder;
  const LocalSettings local = SettingsOf(place, folder);
  ApplyLocalSettings(session, local);
  if (work.act) return work.act(session, folder);
  test::StartOn(place);
}

void BackUp(Session& session, const std::string& folder) {
  OpenMainConnection(session, {});
  TakeBackup(session, folder + "/backups", {}, GoOn);
}

void Restore(Session& session, const std::string& folder) {
  PrepareRestore(session, BackupsIn(folder + "/backups").at(0).folder, GoOn)->Run();
}

void MoveToFile(Session& session, const std::string& folder) {
  MoveRequest request;
  request.local.ConnDataSource = session.ConnDataSource;
  request.local.sources = session.data_sources;
  request.settings_file = folder + "/settings.ini";
  request.to = "File";
  MoveOffice(request, [](const OfficeMoveProgress&) { return true; });
}

const Work kWorks[] = {
    {"backup", {"TO stdout", "FROM stdin"}, BackUp},
    {"restore", {"FROM stdin", "RENAME TO"}, Restore},
    {"move", {"LOCK TABLE", "FETCH"}, MoveToFile},
    {"upgrade", {"ALTER TABLE", "COMMIT"}, {}},
};

// Its end within the time that a person would wait, as the status of a process.
int Cutting(const Work& work, const std::string& name, const std::string& folder,
            const std::string& words, Cut cut) {
  constexpr int kLongest = 150;
  alarm(kLongest);
  test::CuttingProxy proxy(std::atoi(std::getenv("PGPORT")));
  proxy.CutAt(words, cut);
  try {
    Do(work, ServerPlace(name, std::to_string(proxy.port())), folder);
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "{} at {}: {}\n", name, words, failure.what());
    return proxy.cuts() == 0 ? 2 : 1;
  }
}

TEST(PostgresqlNetwork, ThatGoesEndsEachWorkAndTheNextDoesItWhole) {
  if (std::getenv("PGPORT") == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
  const TempFolder folder;
  const ServerPlace old("network_old"), whole("network_whole");
  old.Load(test::OldOffices(".sql").front());
  whole.CopyFrom(old);
  test::StartOn(whole);
  struct Case {
    const Work& work;
    std::string name;
    std::string words;
    Cut cut;
    std::string before = {};
    pid_t child = 0;
  };
  std::vector<Case> cases;
  for (const Work& work : kWorks) {
    for (const Cut cut : {Cut::before, Cut::silence}) {
      for (const char* words : work.cut_at) {
        cases.push_back({work, fmt::format("network_{}", cases.size()), words, cut});
      }
    }
  }
  for (Case& one : cases) {
    std::filesystem::create_directory(folder.File(one.name));
    const ServerPlace place(one.name);
    place.CopyFrom(one.work.act ? whole : old);
    if (&one.work == &kWorks[1]) Do(kWorks[0], place, folder.File(one.name));
    one.before = place.Everything();
  }
  for (Case& one : cases) {
    one.child = fork();
    if (one.child != 0) continue;
    _exit(Cutting(one.work, one.name, folder.File(one.name), one.words, one.cut));
  }
  for (const Case& one : cases) {
    SCOPED_TRACE(fmt::format("{} {} {}", one.work.name, one.words, static_cast<int>(one.cut)));
    int status = 0;
    waitpid(one.child, &status, 0);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 1);
    const ServerPlace place(one.name);
    const std::string backups = folder.File(one.name) + "/backups";
    if (one.work.act) {
      EXPECT_EQ(place.Everything(), one.before);
    }
    if (&one.work == &kWorks[0]) {
      EXPECT_EQ(BackupsIn(backups).size(), 0U);
    }
    EXPECT_NO_THROW(Do(one.work, place, folder.File(one.name)));
    if (!one.work.act) {
      EXPECT_EQ(place.Everything(), whole.Everything());
    }
    if (&one.work == &kWorks[0]) {
      EXPECT_EQ(BackupsIn(backups).size(), 1U);
    }
  }
}

}  // namespace
}  // namespace kaunter
