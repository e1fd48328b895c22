#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

#include "platform/process.h"

namespace kaunter {

void SettleProcess() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

std::string ProgramFolder(const char* argv0) {
  std::error_code error;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(argv0);
  return program.parent_path().string();
}

long ThisProcess() { return getpid(); }

bool ProcessRuns(long process) {
  return kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

bool Survives(const std::function<void(const std::function<bool()>& alive)>& trial,
              std::chrono::milliseconds silence, const std::function<void()>& meanwhile) {
  using Time = std::chrono::steady_clock;
  constexpr int kLook = 20;  // milliseconds
  int ends[2];
  if (pipe(ends) != 0) return true;
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    trial([end = ends[1]] { return write(end, ".", 1) == 1; });
    _exit(0);
  }
  close(ends[1]);
  bool alive = child > 0;
  char signs[256];
  auto heard = Time::now();
  for (pollfd wait{ends[0], POLLIN, 0}; alive;) {
    meanwhile();
    if (poll(&wait, 1, kLook) > 0) {
      if (read(ends[0], signs, sizeof signs) <= 0) break;
      heard = Time::now();
    } else if (Time::now() - heard > silence) {
      kill(child, SIGKILL);
      alive = false;
    }
  }
  close(ends[0]);
  int status = 0;
  if (child > 0) waitpid(child, &status, 0);
  return child < 0 || (alive && WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

}  // namespace kaunter
