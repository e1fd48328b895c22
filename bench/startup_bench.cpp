// The desktop from its start to the sign-in dialog, on an empty office and on a large one: what an
// office has in its tables must not make a clerk wait in the morning.
#include <fmt/format.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "bench/large_office.h"
#include "bench/ratio.h"

namespace kaunter {
namespace {

// Starts the desktop and ends it when the picture of its sign-in dialog is there. The picture waits
// for the dialog to settle (a third of a second), on both sides alike.
void Start(const std::filesystem::path& folder, const std::string& office) {
  const std::filesystem::path pictures = folder / "pictures";
  std::filesystem::remove_all(pictures);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no second process");
  if (child == 0) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr ||
        std::freopen("/dev/null", "w", stderr) == nullptr) {
      _exit(126);
    }
    const std::string app = (folder / "app").string();
    execl(KAUNTER_DESKTOP, KAUNTER_DESKTOP, "--app", app.c_str(), "--database", office.c_str(),
          "--now", "2024-01-31 09:00:00", "--screenshot", pictures.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  while (!std::filesystem::exists(pictures / "UserLogin-en-light.png")) {
    if (waitpid(child, &status, WNOHANG) == child) {
      throw std::runtime_error("the desktop ended before its sign-in dialog");
    }
    usleep(2000);
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
}

bool Run() {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const LargeOffice empty(0, 0);
  // With a schedule, as every real loan: the first start fills OrgDueDate, later ones find none
  // left.
  const LargeOffice large(100000, 200000, 1);
  const std::filesystem::path folder = std::filesystem::path(large.file()).parent_path() / "start";
  std::filesystem::create_directories(folder / "app");
  return Compare(
      {"start to the sign-in dialog, 100,000 customers / none", 1.2, 5},
      [&] { Start(folder, large.file()); }, [&] { Start(folder, empty.file()); });
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Run); }
