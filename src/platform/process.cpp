#include "platform/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

namespace kaunter {

void OutliveFailedWrites() {
#ifndef _WIN32
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
#endif
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

}  // namespace kaunter
