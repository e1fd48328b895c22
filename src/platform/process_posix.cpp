#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
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

int RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&quiet, stream, "/dev/null", O_RDWR, 0);
  }
  pid_t child = 0;
  const int error = posix_spawnp(&child, program.c_str(), &quiet, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&quiet);
  if (error != 0) return kNoProgram;
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return kNoProgram;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kNoProgram;
}

long ThisProcess() { return getpid(); }

bool ProcessRuns(long process) {
  return kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

bool Survives(const std::function<void(const std::function<bool()>& alive)>& trial,
              std::chrono::milliseconds silence) {
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
  for (pollfd wait{ends[0], POLLIN, 0}; alive;) {
    const int ready = poll(&wait, 1, static_cast<int>(silence.count()));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) {
      kill(child, SIGKILL);
      alive = false;
    } else if (read(ends[0], signs, sizeof signs) <= 0) {
      break;
    }
  }
  close(ends[0]);
  int status = 0;
  if (child > 0) waitpid(child, &status, 0);
  return child < 0 || (alive && WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

}  // namespace kaunter
