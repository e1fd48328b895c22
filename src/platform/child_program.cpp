#include "platform/child_program.h"

#ifndef _WIN32

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/process.h"

namespace kaunter {

struct ChildProgram::System {
  pid_t child = 0;  // 0: none was started
  std::optional<int> end;
};

ChildProgram::ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& folder)
    : system_(std::make_unique<System>()) {
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
  }
  // A group of its own, so that what it starts goes with it.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&attributes, 0);
  const int error =
      posix_spawn(&system_->child, program.c_str(), &actions, &attributes, words.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) system_->child = 0;
}

ChildProgram::~ChildProgram() {
  if (!started()) return;
  if (Ended()) {
    waitpid(system_->child, nullptr, 0);
  } else {
    End();
  }
}

bool ChildProgram::started() const { return system_->child > 0; }

// It is not buried yet: as long as it is not, its group is nobody else's.
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

void ChildProgram::End() {
  constexpr auto kPatience = std::chrono::milliseconds(500);
  constexpr auto kLook = std::chrono::milliseconds(10);
  if (!started()) return;
  const auto begun = std::chrono::steady_clock::now();
  kill(-system_->child, SIGTERM);
  while (!Ended() && std::chrono::steady_clock::now() - begun < kPatience) {
    std::this_thread::sleep_for(kLook);
  }
  kill(-system_->child, SIGKILL);
  while (!Ended()) std::this_thread::sleep_for(kLook);
  waitpid(system_->child, nullptr, 0);
  system_->child = 0;
}

}  // namespace kaunter

#else

#include <windows.h>

#include <filesystem>

#include "platform/process.h"

namespace kaunter {

struct ChildProgram::System {
  HANDLE process = nullptr;
  HANDLE job = nullptr;  // holds what it starts itself
  std::optional<int> end;
};

namespace {

// A word of a command line as the started program takes it apart again.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t slashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') quoted.append(slashes + 1, L'\\');
    slashes = c == L'\\' ? slashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(slashes, L'\\') + L'"';
}

std::wstring Wide(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

}  // namespace

ChildProgram::ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& folder)
    : system_(std::make_unique<System>()) {
  std::wstring line = Quoted(Wide(program));
  for (const std::string& argument : arguments) line += L" " + Quoted(Wide(argument));
  system_->job = CreateJobObjectW(nullptr, nullptr);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION made = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE,
                     CREATE_NO_WINDOW | CREATE_SUSPENDED, nullptr, Wide(folder).c_str(), &start,
                     &made)) {
    AssignProcessToJobObject(system_->job, made.hProcess);
    ResumeThread(made.hThread);
    CloseHandle(made.hThread);
    system_->process = made.hProcess;
  }
}

ChildProgram::~ChildProgram() {
  if (!Ended()) End();
  if (started()) CloseHandle(system_->process);
  if (system_->job != nullptr) CloseHandle(system_->job);
}

bool ChildProgram::started() const { return system_->process != nullptr; }

std::optional<int> ChildProgram::Ended() {
  if (system_->end) return system_->end;
  if (!started()) return kNoProgram;
  DWORD code = 0;
  if (WaitForSingleObject(system_->process, 0) == WAIT_OBJECT_0) {
    GetExitCodeProcess(system_->process, &code);
    system_->end = static_cast<int>(code);
  }
  return system_->end;
}

void ChildProgram::End() {
  constexpr DWORD kPatience = 5000;  // milliseconds
  if (!started()) return;
  TerminateJobObject(system_->job, 1);
  WaitForSingleObject(system_->process, kPatience);
  Ended();
  CloseHandle(system_->process);
  system_->process = nullptr;
}

}  // namespace kaunter

#endif
