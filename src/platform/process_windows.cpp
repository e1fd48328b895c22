#include <cxxabi.h>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/process.h"

extern "C" void* __dso_handle;

namespace kaunter {
namespace {

// The compiler's libraries keep the values of a thread behind one key and what destroys them behind
// another; at the end of a thread Windows' POSIX threads serve the keys in the order in which they
// were made. Made first, before anything asks for a value, the destroyers find the values still
// there: else each thread that used one would end in freed memory.
struct DestroyersFirst {
  DestroyersFirst() {
    abi::__cxa_thread_atexit([](void*) {}, nullptr, &__dso_handle);
  }
};
[[gnu::init_priority(101)]] const DestroyersFirst destroyers_first;

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
  _fmode = _O_BINARY;
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

long ThisProcess() { return static_cast<long>(GetCurrentProcessId()); }

bool ProcessRuns(long process) {
  HANDLE other = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
  if (other == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool runs = WaitForSingleObject(other, 0) == WAIT_TIMEOUT;
  CloseHandle(other);
  return runs;
}

bool Survives(const std::function<void(const std::function<bool()>& alive)>&,
              std::chrono::milliseconds, const std::function<void()>&) {
  return true;
}

}  // namespace kaunter
