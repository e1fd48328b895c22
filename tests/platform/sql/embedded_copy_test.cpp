#include "platform/sql/embedded_copy.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "platform/sql/data_source.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::IsEmpty;

class EmbeddedCopyTest : public ::testing::Test {
 protected:
  EmbeddedCopyTest() {
    auto db = OpenSqlite("x", file, true, clock);
    db->Execute("create table T (K nvarchar(50) NOT NULL PRIMARY KEY, V nvarchar(400))");
    Add(*db, 0, 3000);
  }
  static void Add(Connection& db, int from, int to) {
    db.BeginTrans();
    for (int i = from; i < to; ++i) {
      db.Execute(fmt::format("insert into T values ('k{}','{}')", i, std::string(400, 'v')));
    }
    db.CommitTrans();
  }
  std::string Rows(const std::string& path) {
    return OpenSqlite("x", path, false, clock)->Query("select count(*) from T").Field(0).ToText();
  }
  static bool Go(std::int64_t, std::int64_t) { return true; }

  TempFolder folder;
  Clock clock;
  std::string file = folder.File("office.db");
  std::string copy = folder.File("copy.db");
};

// Saves in between are neither held up nor copied, however many there are.
TEST_F(EmbeddedCopyTest, IsOfOneMomentWhileADeskSaves) {
  const auto desk = OpenSqlite("desk", file, false, clock);
  const EmbeddedSnapshot snapshot(file);
  int saved = 3000;
  ASSERT_TRUE(snapshot.CopyTo(copy, [&](std::int64_t, std::int64_t) {
    Add(*desk, saved, saved + 500);
    saved += 500;
    return true;
  }));
  EXPECT_GE(saved, 4000);  // two portions or more
  EXPECT_EQ(snapshot.Rows().at("T"), 3000);
  EXPECT_EQ(Rows(copy), "3000");
  EXPECT_EQ(Rows(file), std::to_string(saved));
  EXPECT_THAT(FaultsOfEmbedded(copy, Go), IsEmpty());
}

TEST_F(EmbeddedCopyTest, StoppedItLeavesNothing) {
  EXPECT_FALSE(EmbeddedSnapshot(file).CopyTo(copy, [](auto, auto) { return false; }));
  EXPECT_FALSE(std::filesystem::exists(copy));
}

// A turned byte in the middle of a page, and a key that an index lacks.
TEST_F(EmbeddedCopyTest, DamageIsFound) {
  CopySqlite(file, copy);
  {
    std::fstream bytes(copy, std::ios::in | std::ios::out | std::ios::binary);
    bytes.seekp(5 * 4096);
    bytes << "\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f";
  }
  EXPECT_THAT(FaultsOfEmbedded(copy, Go), ::testing::Not(IsEmpty()));
}

TEST_F(EmbeddedCopyTest, NobodyElseIsThere) {
  {
    const auto desk = OpenSqlite("desk", file, false, clock);
    EXPECT_THROW(EmbeddedAlone{file}, SqlError);
    Add(*desk, 3000, 3001);  // which goes on
  }
  CopySqlite(file, copy);
  {
    const EmbeddedAlone alone(file);
    alone.CopyTo(folder.File("kept.db"));
    OpenSqlite("x", copy, false, clock)->Execute("delete from T where K<>'k1'");
    alone.Become(copy);
  }
  EXPECT_EQ(Rows(file), "1");
  EXPECT_EQ(Rows(folder.File("kept.db")), "3001");
}

// What lies there, and whether a log lies beside it.
TEST_F(EmbeddedCopyTest, APlaceThatHoldsNoOfficeTakesTheCopy) {
  CopySqlite(file, copy);
  const std::pair<const char*, bool> places[] = {{"", false},    {"", true},       {"torn", false},
                                                 {"torn", true}, {nullptr, false}, {nullptr, true}};
  for (const auto& [text, log] : places) {
    SCOPED_TRACE(fmt::format("{} {}", text == nullptr ? "missing" : text, log));
    const std::string place = folder.File("place.db"), kept = folder.File("was.db");
    for (const char* ending : {"", "-wal", "-shm"}) {
      std::filesystem::remove(place + ending);
      std::filesystem::remove(kept + ending);
    }
    if (text != nullptr) std::ofstream(place) << text;
    if (log) std::ofstream(place + "-wal") << "the last saves";
    PutInPlace(copy, place, kept);
    EXPECT_EQ(Rows(place), "3000");
    EXPECT_EQ(std::filesystem::exists(kept + "-wal"), log);
    EXPECT_EQ(std::filesystem::exists(kept), text != nullptr && *text != '\0');
  }
}

}  // namespace
}  // namespace kaunter
