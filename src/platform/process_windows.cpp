#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/process.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (*this) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  explicit operator bool() const { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

// A program with windows has no console: what it says goes to that of the terminal from which it
// was started, if there is one and nothing else was named.
void HearTerminal() {
  const bool named = GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) != FILE_TYPE_UNKNOWN;
  if (named || !AttachConsole(ATTACH_PARENT_PROCESS)) return;
  for (std::FILE* stream : {stdout, stderr}) {
    static_cast<void>(std::freopen("CONOUT$", "w", stream));
  }
}

}  // namespace

// A failed write ends no process here. Texts are UTF-8 on a console too, a line ends as it is
// written, and no window of the system's stands in the way of a batch that runs at night.
void SettleProcess() {
  HearTerminal();
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(CP_UTF8);
  _set_fmode(_O_BINARY);
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

std::string ProgramFolder(const char* argv0) {
  std::wstring name(32768, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  const std::filesystem::path program =
      length > 0 ? std::filesystem::path(name.substr(0, length)) : std::filesystem::absolute(argv0);
  // Slashes, as Qt tells folders too: paths are put together with them.
  return program.parent_path().generic_string();
}

int RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
  std::wstring line = CommandLine(program, arguments);
  SECURITY_ATTRIBUTES handed_on{sizeof handed_on, nullptr, TRUE};
  const Handle nothing(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, &handed_on, OPEN_EXISTING, 0,
                                   nullptr));
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = start.hStdOutput = start.hStdError = nothing.get();
  PROCESS_INFORMATION begun{};
  if (!nothing || !CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                                  nullptr, nullptr, &start, &begun)) {
    return kNoProgram;
  }
  const Handle process(begun.hProcess);
  const Handle thread(begun.hThread);
  DWORD end = 0;
  if (WaitForSingleObject(process.get(), INFINITE) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(process.get(), &end)) {
    return kNoProgram;
  }
  // One that broke down ends with the number of the exception.
  constexpr DWORD kLargest = 255;
  return end > kLargest ? kNoProgram : static_cast<int>(end);
}

long ThisProcess() { return static_cast<long>(GetCurrentProcessId()); }

bool ProcessRuns(long process) {
  const Handle other(OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process)));
  if (!other) return GetLastError() == ERROR_ACCESS_DENIED;
  return WaitForSingleObject(other.get(), 0) == WAIT_TIMEOUT;
}

bool Survives(const std::function<void(const std::function<bool()>& alive)>&,
              std::chrono::milliseconds) {
  return true;
}

}  // namespace kaunter
