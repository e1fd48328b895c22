// The desktop from its start to the sign-in dialog, on an empty office and on a large one: what an
// office has in its tables must not make a clerk wait in the morning.
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "bench/large_office.h"
#include "bench/ratio.h"

namespace kaunter {
namespace {

// The desktop takes pictures of what opens before anybody signs in, and ends.
void Start(const std::filesystem::path& folder, const std::string& office) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no second process");
  if (child == 0) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr ||
        std::freopen("/dev/null", "w", stderr) == nullptr) {
      _exit(126);
    }
    const std::string app = (folder / "app").string();
    const std::string pictures = (folder / "pictures").string();
    execl(KAUNTER_DESKTOP, KAUNTER_DESKTOP, "--app", app.c_str(), "--database", office.c_str(),
          "--now", "2024-01-31 09:00:00", "--screenshot", pictures.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error(fmt::format("the desktop ended with {}", WEXITSTATUS(status)));
  }
}

bool Run() {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const LargeOffice empty(0, 0);
  const LargeOffice large(100000, 200000);
  const std::filesystem::path folder = std::filesystem::path(large.file()).parent_path() / "start";
  std::filesystem::create_directories(folder / "app");
  return Compare(
      {"start to the sign-in dialog, 100,000 customers / none", 1.2, 5},
      [&] { Start(folder, large.file()); }, [&] { Start(folder, empty.file()); });
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Run); }
