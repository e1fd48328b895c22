#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/tool.h"

namespace kaunter {
namespace {

constexpr int kAskEvery = 100;  // milliseconds

std::vector<std::string> WholeEnvironment(const std::map<std::string, std::string>& more) {
  std::vector<std::string> whole;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (!more.contains(text.substr(0, text.find('=')))) whole.push_back(text);
  }
  for (const auto& [name, value] : more) {
    if (!value.empty()) whole.push_back(name + "=" + value);
  }
  return whole;
}

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ToolRun RunTool(const std::string& program, const std::vector<std::string>& arguments,
                const std::map<std::string, std::string>& environment,
                const std::function<bool()>& go_on) {
  ToolRun run;
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<std::string> whole = WholeEnvironment(environment);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return run;
  posix_spawn_file_actions_t streams;
  posix_spawn_file_actions_init(&streams);
  posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&streams, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&streams, ends[1], STDERR_FILENO);
  pid_t child = 0;
  const int error = posix_spawnp(&child, program.c_str(), &streams, nullptr, Pointers(words).data(),
                                 Pointers(whole).data());
  posix_spawn_file_actions_destroy(&streams);
  close(ends[1]);
  char portion[4096];
  while (error == 0) {
    pollfd wait{ends[0], POLLIN, 0};
    const int ready = poll(&wait, 1, kAskEvery);
    if (!run.stopped && !go_on()) {
      run.stopped = true;
      kill(child, SIGTERM);
    }
    if (ready <= 0) continue;
    const ssize_t got = read(ends[0], portion, sizeof portion);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    run.said.append(portion, static_cast<std::size_t>(got));
  }
  close(ends[0]);
  if (error != 0) return run;
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return run;
  }
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : kNoProgram;
  return run;
}

}  // namespace kaunter
