#include <windows.h>

#include <array>

#include "platform/tool.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

constexpr DWORD kAskEvery = 100;  // milliseconds

// What stood in the environment before comes back.
class Lent {
 public:
  explicit Lent(const std::map<std::string, std::string>& environment) {
    for (const auto& [name, value] : environment) {
      const std::wstring wide = ToWide(name);
      std::wstring before(GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
      if (!before.empty()) {
        before.resize(GetEnvironmentVariableW(wide.c_str(), before.data(),
                                              static_cast<DWORD>(before.size())));
      }
      before_.emplace_back(wide, before);
      SetEnvironmentVariableW(wide.c_str(), value.empty() ? nullptr : ToWide(value).c_str());
    }
  }
  ~Lent() {
    for (const auto& [name, value] : before_) {
      SetEnvironmentVariableW(name.c_str(), value.empty() ? nullptr : value.c_str());
    }
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

 private:
  std::vector<std::pair<std::wstring, std::wstring>> before_;
};

}  // namespace

ToolRun RunTool(const std::string& program, const std::vector<std::string>& arguments,
                const std::map<std::string, std::string>& environment,
                const std::function<bool()>& go_on) {
  ToolRun run;
  std::wstring line = CommandLine(program, arguments);
  SECURITY_ATTRIBUTES handed_on{sizeof handed_on, nullptr, TRUE};
  HANDLE mouth = nullptr, ear = nullptr;
  if (!CreatePipe(&ear, &mouth, &handed_on, 0)) return run;
  SetHandleInformation(ear, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = start.hStdError = mouth;
  PROCESS_INFORMATION begun{};
  bool started = false;
  {
    const Lent lent(environment);
    started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                             nullptr, nullptr, &start, &begun) != 0;
  }
  CloseHandle(mouth);
  const auto hear = [&] {
    std::array<char, 4096> portion{};
    DWORD there = 0, got = 0;
    while (PeekNamedPipe(ear, nullptr, 0, nullptr, &there, nullptr) && there > 0 &&
           ReadFile(ear, portion.data(), static_cast<DWORD>(portion.size()), &got, nullptr)) {
      run.said.append(portion.data(), got);
    }
  };
  if (started) {
    while (WaitForSingleObject(begun.hProcess, kAskEvery) == WAIT_TIMEOUT) {
      hear();
      if (!run.stopped && !go_on()) {
        run.stopped = true;
        TerminateProcess(begun.hProcess, 1);
      }
    }
    hear();
    DWORD end = 0;
    if (GetExitCodeProcess(begun.hProcess, &end)) run.status = static_cast<int>(end);
    CloseHandle(begun.hThread);
    CloseHandle(begun.hProcess);
  }
  CloseHandle(ear);
  return run;
}

}  // namespace kaunter
