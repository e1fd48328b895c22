// Files to a real server and back while it cuts, refuses, forgets and fills up: a file is whole
// under its name or not there, on either side.
#include "platform/ftp_line.h"

#include <gmock/gmock.h>

#include <future>
#include <random>

#include "tests/platform/support/temp_folder.h"
#include "tests/support/ftp_server.h"

namespace kaunter {
namespace {

using End = FtpResult::End;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr const char* kFolder = "HQ0001";

class FtpLineTest : public ::testing::Test {
 protected:
  FtpLineTest() {
    std::filesystem::create_directories(folder.File("store"));
    std::filesystem::create_directories(folder.File("here"));
  }
  std::string Make(const std::string& name, std::size_t size, unsigned seed = 1) {
    std::mt19937 chance(seed);
    std::string bytes(size, '\0');
    for (char& c : bytes) c = static_cast<char>(chance());
    std::ofstream(folder.File("here/" + name), std::ios::binary) << bytes;
    return bytes;
  }
  FtpServer At(const test::FtpServerBeside& server) const {
    return {server.host(), server.kUser, server.kPassword, false, {}};
  }
  FtpResult Send(const FtpServer& server, const std::string& file, const std::string& as,
                 const FtpWatch& watch = {}) {
    return FtpLine(server).Send({"VKTPIC", kFolder}, as, folder.File("here/" + file), watch);
  }
  FtpResult Fetch(const FtpServer& server, const std::string& name, const FtpWatch& watch = {}) {
    return FtpLine(server).Fetch({"VKTPIC", kFolder}, name, folder.File("here/back"),
                                 folder.File("here/part"), watch);
  }
  std::set<std::string> Here() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.File("here"))) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  testing::TempFolder folder;
};

// Each fault hits once while a file goes and once while it comes; then the server is well again and
// the same call brings the bytes through.
TEST_F(FtpLineTest, AFileIsWholeOrNotThereWhateverTheServerDoes) {
  test::FtpServerBeside server(folder.File("store"));
  const std::string bytes = Make("scan", 700001);
  const std::string old = Make("old", 5);
  ASSERT_EQ(Send(At(server), "old", "taken.jpg").cause, "");
  const struct {
    const char* fault;
    End sending, fetching;
  } rows[] = {{"cut 0", End::away, End::away},       {"cut 300000", End::away, End::away},
              {"full 300000", End::away, End::done}, {"short 300000", End::away, End::done},
              {"readonly", End::refused, End::done}, {"keep", End::done, End::done},
              {"none", End::done, End::done}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    server.Fault(row.fault);
    EXPECT_EQ(Send(At(server), "scan", "new.jpg").end, row.sending);
    EXPECT_EQ(Send(At(server), "scan", "taken.jpg").end, row.sending);
    const bool through = row.sending == End::done;
    server.Fault("none");
    EXPECT_TRUE(server.Bytes("VKTPIC/HQ0001/taken.jpg") == (through ? bytes : old));
    EXPECT_TRUE(server.Bytes("VKTPIC/HQ0001/new.jpg") == (through ? bytes : ""));
    for (const std::string& file : server.Files()) EXPECT_THAT(file, Not(HasSubstr(".part")));
    ASSERT_EQ(Send(At(server), "scan", "new.jpg").cause, "");
    server.Fault(row.fault);
    EXPECT_EQ(Fetch(At(server), "new.jpg").end, row.fetching);
    EXPECT_TRUE(test::ReadAll(folder.File("here/back")) ==
                (row.fetching == End::done ? bytes : ""));
    EXPECT_FALSE(Here().contains("part"));
    server.Fault("none");
    EXPECT_EQ(Fetch(At(server), "new.jpg").cause, "");
    EXPECT_TRUE(test::ReadAll(folder.File("here/back")) == bytes);
    // For the next row.
    std::filesystem::remove(folder.File("here/back"));
    std::filesystem::remove(folder.File("store/VKTPIC/HQ0001/new.jpg"));
    ASSERT_EQ(Send(At(server), "old", "taken.jpg").cause, "");
  }
  EXPECT_EQ(Fetch(At(server), "none.jpg").end, End::absent);
  FtpServer wrong = At(server);
  wrong.password = "no";
  EXPECT_EQ(Send(wrong, "scan", "x.jpg").end, End::away);
  wrong.host = "127.0.0.1:1";
  EXPECT_EQ(Fetch(wrong, "new.jpg").end, End::away);
}

TEST_F(FtpLineTest, NamesAreNamesAndNeverCommandsOrWaysOut) {
  test::FtpServerBeside server(folder.File("store"));
  const std::string bytes = Make("scan", 1000);
  for (const char* good : {"陈亚九's \"photo\" #1.jpg", "a b  c;d&e%20.pdf", "-x", "*DELE y"}) {
    EXPECT_EQ(Send(At(server), "scan", good).cause, "") << good;
    EXPECT_TRUE(server.Bytes(fmt::format("VKTPIC/HQ0001/{}", good)) == bytes) << good;
    EXPECT_EQ(Fetch(At(server), good).cause, "") << good;
    EXPECT_EQ(test::ReadAll(folder.File("here/back")), bytes) << good;
  }
  const std::string said = server.Commands();
  const std::string longest(250, 'x');
  EXPECT_EQ(Send(At(server), "scan", longest).cause, "");
  for (const std::string& bad :
       {std::string("x\r\nDELE old"), std::string("x\nSITE y"), std::string(".."), std::string("."),
        std::string(), std::string("../x"), std::string("a\\b"), std::string("a\0b", 3),
        std::string("\xFF\xF4"), std::string(256, 'x')}) {
    EXPECT_EQ(Send(At(server), "scan", bad).end, End::refused);
    EXPECT_EQ(Fetch(At(server), bad).end, End::refused);
    EXPECT_EQ(FtpLine(At(server)).Send({"VKTPIC", bad}, "x", folder.File("here/scan"), {}).end,
              End::refused);
  }
  EXPECT_EQ(server.Files().size(), 5U);
  EXPECT_THAT(server.Commands(), Not(HasSubstr("DELE old")));
  EXPECT_THAT(server.Commands(), Not(HasSubstr("SITE")));
  FtpServer crooked = At(server);
  crooked.user = "me\r\nDELE x";
  EXPECT_THROW(Send(crooked, "scan", "x"), std::runtime_error);
}

// The one that came last stands, whole; a rename that is refused is fought out.
TEST_F(FtpLineTest, DesksThatSendTheSameFileAtOnceLeaveOneWholeFile) {
  test::FtpServerBeside server(folder.File("store"));
  const std::string one = Make("one", 400000, 1);
  const std::string two = Make("two", 300000, 2);
  for (const char* fault : {"none", "keep"}) {
    server.Fault(fault);
    std::vector<std::future<FtpResult>> desks;
    for (const char* file : {"one", "two", "one", "two"}) {
      desks.push_back(
          std::async(std::launch::async, [&, file] { return Send(At(server), file, "x.jpg"); }));
    }
    for (auto& desk : desks) EXPECT_EQ(desk.get().cause, "") << fault;
    const std::string kept = server.Bytes("VKTPIC/HQ0001/x.jpg");
    EXPECT_TRUE(kept == one || kept == two);
    EXPECT_THAT(server.Files(), UnorderedElementsAre("VKTPIC/HQ0001/x.jpg"));
  }
}

TEST_F(FtpLineTest, AStopEndsATransferAndADeafServerAtOnce) {
  test::FtpServerBeside server(folder.File("store"));
  Make("scan", 3000000);
  const auto begun = std::chrono::steady_clock::now();
  for (const char* fault : {"slow", "deaf"}) {
    server.Fault(fault);
    const auto started = std::chrono::steady_clock::now();
    FtpWatch watch;
    std::int64_t most = 0;
    watch.moved = [&](std::int64_t done, std::int64_t) { most = done; };
    watch.stop_asked = [&] {
      return most > 200000 || std::chrono::steady_clock::now() - started > std::chrono::seconds(2);
    };
    EXPECT_EQ(Send(At(server), "scan", "x.jpg", watch).end, End::stopped);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(20));
  server.Fault("none");
  EXPECT_FALSE(server.Files().contains("VKTPIC/HQ0001/x.jpg"));
}

TEST_F(FtpLineTest, TheLineIsEncryptedWhereItIsOfferedAndTrustedWhereItMustBe) {
  const std::string certificate = test::SelfMadeCertificate(folder.path().string());
  std::string key;
  {
    FILE* said =
        popen(("openssl x509 -pubkey -noout -in " + certificate +
               " | openssl pkey -pubin -outform der | openssl dgst -sha256 -binary | base64")
                  .c_str(),
              "r");
    char line[100] = {};
    ASSERT_NE(fgets(line, sizeof line, said), nullptr);
    pclose(said);
    key = std::string(line, 44);
  }
  test::FtpServerBeside safe(folder.File("store"), certificate);
  test::FtpServerBeside open(folder.File("open"));
  const std::string bytes = Make("scan", 500000);
  const std::string other = "AAAA" + key.substr(4);
  const struct {
    const test::FtpServerBeside& server;
    bool must;
    std::string key;
    End end;
    bool password;  // was told to the server
  } rows[] = {{safe, false, "", End::done, true},    {safe, true, "", End::away, false},
              {safe, true, key, End::done, true},    {safe, false, key, End::done, true},
              {safe, true, other, End::away, false}, {open, false, "", End::done, true},
              {open, true, "", End::away, false},    {open, false, key, End::away, false}};
  for (const auto& row : rows) {
    FtpServer server = At(row.server);
    server.must_encrypt = row.must;
    server.key = row.key;
    const std::size_t before = row.server.Commands().size();
    const std::string name = fmt::format("{}-{}.jpg", row.must, row.key.size());
    const FtpResult sent = Send(server, "scan", name);
    EXPECT_EQ(sent.end, row.end) << row.must << row.key << sent.cause;
    const std::string said = row.server.Commands().substr(before);
    EXPECT_EQ(said.find("PASS") != said.npos, row.password) << said;
    EXPECT_THAT(sent.cause, Not(HasSubstr(server.password)));
    if (&row.server != &safe || row.end != End::done) continue;
    EXPECT_LT(said.find("AUTH SSL"), said.find("USER")) << said;
    EXPECT_THAT(said, HasSubstr("PROT P"));
    EXPECT_EQ(Fetch(server, name).cause, "");
    EXPECT_TRUE(test::ReadAll(folder.File("here/back")) == bytes);
  }
}

}  // namespace
}  // namespace kaunter
