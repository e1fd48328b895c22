// Photos and documents between this PC and a real server: what is to be sent is never forgotten,
// the account is shown nowhere, and no stored name leads to another file.
#include "customers/photo_server.h"

#include <gmock/gmock.h>

#include "core/trace.h"
#include "core/unsent_files.h"
#include "customers/document_store.h"
#include "screen/meanwhile.h"
#include "tests/customers/customer_test.h"
#include "tests/support/ftp_server.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Goes on meanwhile, as a person at a window does.
class WindowDesk : public AgreeingDesk, public MeanwhileDesk {};

class PhotoServer : public CustomerTest {
 protected:
  PhotoServer() {
    office.session.PhotoPath = office.folder.File("Photo");
    std::filesystem::create_directories(office.folder.File("store"));
    office.Run(
        fmt::format("INSERT INTO Systemast (Param,[Value]) VALUES "
                    "('ftpUser','{}'),('ftpPassword','p:a\"s''s 1')",
                    test::FtpServerBeside::kUser));
  }
  // A file of its own content, kept as the screen keeps it.
  std::string Keep(const std::string& stem, const std::string& bytes) {
    std::ofstream(office.folder.File("scan.pdf"), std::ios::binary) << bytes;
    return KeepFile(office.session, "HQ0001", office.folder.File("scan.pdf"), stem);
  }
  std::string Here(const std::string& name) {
    return test::ReadAll(KeptPath(office.session, "HQ0001", name));
  }
  std::string Told() { return desk.messages.empty() ? "" : desk.messages.back(); }
  bool Until(const std::function<bool()>& true_now) {
    for (int i = 0; i < 1000; ++i) {
      if (true_now()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  static void ForgetProgram() { CloseStore(); }
  ~PhotoServer() override { CloseStore(); }
};

TEST_F(PhotoServer, WhatIsKeptGoesToTheServerAndComesBackFromIt) {
  const std::string trace = office.folder.File("trace");
  office.session.Main().SetTrace(OpenTrace(trace));
  auto screen = Open();
  const std::string name = Keep("#1", "paper");
  EXPECT_TRUE(SendPhoto(office.session, *screen, "HQ0001", name));
  EXPECT_EQ(OpenStore(office.session), nullptr);  // no server, nothing leaves
  test::FtpServerBeside server(office.folder.File("store"));
  office.session.settings.ftpAcc = server.host();
  EXPECT_TRUE(SendPhoto(office.session, *screen, "HQ0001", name)) << Told();
  EXPECT_EQ(server.Bytes("VKTPIC/HQ0001/#1.pdf"), "paper");
  std::filesystem::remove(KeptPath(office.session, "HQ0001", name));
  EXPECT_TRUE(FetchPhoto(office.session, *screen, "HQ0001", name)) << Told();
  EXPECT_EQ(Here(name), "paper");
  EXPECT_FALSE(FetchPhoto(office.session, *screen, "HQ0001", "other.pdf"));
  EXPECT_THAT(Told(), HasSubstr("fail to get photo from server,\nother.pdf"));
  EXPECT_FALSE(FetchPhoto(office.session, *screen, "HQ0001", "../../LoanMastList.rpt"));
  EXPECT_THAT(server.Commands(), Not(HasSubstr("LoanMastList")));
  std::filesystem::remove_all(office.folder.File("Photo/.unsent"));  // somebody tidies up
  // A code of an older office.
  EXPECT_FALSE(SendPhoto(office.session, *screen, "A/..", "gone\r\nDELE x"));
  std::ofstream(office.folder.File("x.pdf")) << "old";
  EXPECT_TRUE(SendPhoto(office.session, *screen, "A/1",
                        KeepFile(office.session, "A/1", office.folder.File("x.pdf"), "x")));
  EXPECT_EQ(server.Bytes("VKTPIC/A-1/x.pdf"), "old");

  // The account stands in no file of the program, no message, and no list of processes.
  server.Fault("readonly");
  EXPECT_FALSE(SendPhoto(office.session, *screen, "HQ0001", Keep("#2", "more")));
  EXPECT_THAT(Told(), HasSubstr("fail to send photo to server,"));
  const std::string secret = "p:a\"s";
  for (const std::string& message : desk.messages) EXPECT_THAT(message, Not(HasSubstr(secret)));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(office.folder.path())) {
    if (!entry.is_regular_file() || entry.path().filename().string().starts_with("office.db"))
      continue;
    EXPECT_THAT(test::ReadAll(entry.path()), Not(HasSubstr(secret))) << entry.path();
  }
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    EXPECT_THAT(test::ReadAll(entry.path() / "cmdline"), Not(HasSubstr(secret)));
  }
}

// A program that ends, a server that is away and a stop delay a copy and lose none.
TEST_F(PhotoServer, WhatWasNotSentIsSentLater) {
  test::FtpServerBeside server(office.folder.File("store"));
  const std::string big(3000000, 'x');
  auto screen = Open();
  office.session.settings.ftpAcc = "127.0.0.1:1";
  EXPECT_FALSE(SendPhoto(office.session, *screen, "HQ0001", Keep("#1", big)));
  EXPECT_FALSE(SendPhoto(office.session, *screen, "HQ0001", Keep("#2", "two")));
  const auto told = desk.messages.size();
  ForgetProgram();
  office.session.settings.ftpAcc = server.host();
  server.Fault("slow");
  FileStore* store = StoreOf(office.session);
  EXPECT_EQ(store->sending().waiting, 2);
  store->SendAll();
  ASSERT_TRUE(Until([&] { return store->sending().done > 200000; }));
  store->StopSending();
  ASSERT_TRUE(Until([&] { return !store->IsSending(); }));
  EXPECT_EQ(store->sending().waiting, 2);
  store->SendAll();
  ASSERT_TRUE(Until([&] { return store->sending().done > 200000; }));
  ForgetProgram();  // in the middle of it
  server.Fault("none");
  EXPECT_TRUE(server.Files().empty() || server.Files().begin()->find(".part") != std::string::npos);
  store = StoreOf(office.session);
  store->SendAll();
  ASSERT_TRUE(Until([&] { return !store->IsSending(); }));
  EXPECT_EQ(store->sending().waiting, 0);
  EXPECT_TRUE(server.Bytes("VKTPIC/HQ0001/#1.pdf") == big);
  EXPECT_EQ(server.Bytes("VKTPIC/HQ0001/#2.pdf"), "two");
  EXPECT_FALSE(TellUnsent(office.session, *screen));
  EXPECT_EQ(desk.messages.size(), told);
}

// At a window nothing is waited for: the photo is there a little later, a failure is told then.
TEST_F(PhotoServer, AtAWindowFilesComeAndGoBehindIt) {
  test::FtpServerBeside server(office.folder.File("store"));
  WindowDesk window;
  NewCustFrm screen(office.session, window);
  office.session.settings.ftpAcc = server.host();
  const std::string name = Keep("face", std::string(300000, 'f'));
  server.Fault("slow");
  EXPECT_TRUE(SendPhoto(office.session, screen, "HQ0001", name));
  EXPECT_TRUE(OpenStore(office.session)->IsSending());
  ASSERT_TRUE(Until([&] { return !OpenStore(office.session)->IsSending(); }));
  std::filesystem::remove(KeptPath(office.session, "HQ0001", name));
  ShownPhotos photos;
  photos.Path(office.session, screen, "HQ0001", name);
  EXPECT_EQ(Here(name), "");
  ASSERT_TRUE(Until([&] { return photos.Tick(office.session, screen); }));
  EXPECT_EQ(Here(name), std::string(300000, 'f'));
  photos.Path(office.session, screen, "HQ0001", "gone.jpg");
  ASSERT_TRUE(
      Until([&] { return photos.Tick(office.session, screen) || !window.messages.empty(); }));
  EXPECT_THAT(window.messages.back(), HasSubstr("gone.jpg"));
  server.Fault("readonly");
  EXPECT_TRUE(SendPhoto(office.session, screen, "HQ0001", name));
  ASSERT_TRUE(Until([&] { return TellUnsent(office.session, screen); }));
  EXPECT_FALSE(TellUnsent(office.session, screen));  // once
}

}  // namespace
}  // namespace kaunter
