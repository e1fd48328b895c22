#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <thread>

#include "platform/child_program.h"

namespace kaunter {
namespace {

constexpr auto kLook = std::chrono::milliseconds(10);

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

struct ChildProgram::System {
  void Signal(int sign) const { kill(family ? -child : child, sign); }

  pid_t child = 0;  // 0: none was started
  bool family = false;
  int ear = -1;
  std::optional<int> end;
};

ChildProgram::ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const ChildSetting& setting)
    : system_(std::make_unique<System>()) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<std::string> environment = WholeEnvironment(setting.environment);
  int ends[2] = {-1, -1};
  if (setting.heard && pipe2(ends, O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (!setting.folder.empty()) {
    posix_spawn_file_actions_addchdir_np(&actions, setting.folder.c_str());
  }
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    if (setting.heard) {
      posix_spawn_file_actions_adddup2(&actions, ends[1], stream);
    } else {
      posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    }
  }
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  if (setting.whole_family) {  // a group of its own
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
  }
  const int error = posix_spawnp(&system_->child, program.c_str(), &actions, &attributes,
                                 Pointers(words).data(), Pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (ends[1] >= 0) close(ends[1]);
  system_->ear = ends[0];
  system_->family = setting.whole_family;
  if (error != 0) system_->child = 0;
}

ChildProgram::~ChildProgram() {
  if (started() && Ended()) {
    waitpid(system_->child, nullptr, 0);
  } else {
    End();
  }
  if (system_->ear >= 0) close(system_->ear);
}

bool ChildProgram::started() const { return system_->child > 0; }

// It is not buried yet: as long as it is not, its number and its group are nobody else's.
std::optional<int> ChildProgram::Ended() {
  if (system_->end) return system_->end;
  if (!started()) return kNoProgram;
  siginfo_t told = {};
  const int result =
      waitid(P_PID, static_cast<id_t>(system_->child), &told, WEXITED | WNOHANG | WNOWAIT);
  if (result == 0 && told.si_pid == system_->child) {
    system_->end = told.si_code == CLD_EXITED ? told.si_status : kNoProgram;
  } else if (result != 0 && errno != EINTR) {
    system_->end = kNoProgram;
  }
  return system_->end;
}

std::string ChildProgram::Hear(std::chrono::milliseconds longest) {
  std::array<char, 4096> portion{};
  const bool ended = Ended().has_value();
  pollfd wait{system_->ear, POLLIN, 0};
  if (poll(&wait, 1, ended ? 0 : static_cast<int>(longest.count())) <= 0) return {};
  const ssize_t got = read(system_->ear, portion.data(), portion.size());
  if (got > 0) return {portion.data(), static_cast<std::size_t>(got)};
  if (!ended) std::this_thread::sleep_for(kLook);  // it has closed its mouth, and goes in a moment
  return {};
}

void ChildProgram::End(const std::function<void()>& meanwhile) {
  constexpr auto kPatience = std::chrono::milliseconds(500);
  if (!started()) return;
  const auto wait = [&] {
    if (meanwhile) meanwhile();
    std::this_thread::sleep_for(kLook);
  };
  const auto begun = std::chrono::steady_clock::now();
  system_->Signal(SIGTERM);
  while (!Ended() && std::chrono::steady_clock::now() - begun < kPatience) wait();
  system_->Signal(SIGKILL);
  while (!Ended()) wait();
  waitpid(system_->child, nullptr, 0);
  system_->child = 0;
}

}  // namespace kaunter
