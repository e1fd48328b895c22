#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/child_program.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

bool SameName(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

std::wstring WholeEnvironment(const std::map<std::string, std::string>& more) {
  std::vector<std::wstring> names;
  std::wstring whole;
  for (const auto& [name, value] : more) {
    names.push_back(ToWide(name));
    if (!value.empty()) whole += names.back() + L'=' + ToWide(value) + L'\0';
  }
  wchar_t* const own = GetEnvironmentStringsW();
  for (std::wstring_view entry = own; !entry.empty(); entry = entry.data() + entry.size() + 1) {
    // The folder of a drive has a name that begins with "=".
    const std::wstring_view name = entry.substr(0, entry.find(L'=', 1));
    if (std::none_of(names.begin(), names.end(),
                     [&](const std::wstring& other) { return SameName(name, other); })) {
      whole.append(entry) += L'\0';
    }
  }
  FreeEnvironmentStringsW(own);
  return whole += L'\0';
}

}  // namespace

struct ChildProgram::System {
  System() = default;
  ~System() {
    for (HANDLE handle : {process, job, ear}) {
      if (handle != nullptr) CloseHandle(handle);
    }
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  HANDLE process = nullptr;
  HANDLE job = nullptr;  // holds what it starts itself
  HANDLE ear = nullptr;
  std::optional<int> end;
};

ChildProgram::ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const ChildSetting& setting)
    : system_(std::make_unique<System>()) {
  std::wstring line = CommandLine(program, arguments);
  const std::wstring folder = ToWide(setting.folder);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  HANDLE mouth = nullptr;
  if (setting.heard) {
    SECURITY_ATTRIBUTES handed_on{sizeof handed_on, nullptr, TRUE};
    if (!CreatePipe(&system_->ear, &mouth, &handed_on, 0)) return;
    SetHandleInformation(system_->ear, HANDLE_FLAG_INHERIT, 0);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = mouth;
  }
  if (setting.whole_family) system_->job = CreateJobObjectW(nullptr, nullptr);
  PROCESS_INFORMATION made{};
  std::wstring environment = WholeEnvironment(setting.environment);
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, setting.heard,
                     CREATE_NO_WINDOW | CREATE_SUSPENDED | CREATE_UNICODE_ENVIRONMENT,
                     environment.data(), folder.empty() ? nullptr : folder.c_str(), &start,
                     &made)) {
    if (system_->job != nullptr) AssignProcessToJobObject(system_->job, made.hProcess);
    ResumeThread(made.hThread);
    CloseHandle(made.hThread);
    system_->process = made.hProcess;
  }
  if (mouth != nullptr) CloseHandle(mouth);
}

ChildProgram::~ChildProgram() {
  if (!Ended()) End();
}

bool ChildProgram::started() const { return system_->process != nullptr; }

std::optional<int> ChildProgram::Ended() {
  if (system_->end) return system_->end;
  if (!started()) return kNoProgram;
  if (WaitForSingleObject(system_->process, 0) == WAIT_OBJECT_0) {
    // One that broke down ends with the number of the exception.
    constexpr DWORD kLargest = 255;
    DWORD code = 0;
    GetExitCodeProcess(system_->process, &code);
    system_->end = code > kLargest ? kNoProgram : static_cast<int>(code);
  }
  return system_->end;
}

// A pipe cannot be waited for here, its program can.
std::string ChildProgram::Hear(std::chrono::milliseconds longest) {
  std::array<char, 4096> portion{};
  DWORD there = 0, got = 0;
  const auto words = [&] {
    return PeekNamedPipe(system_->ear, nullptr, 0, nullptr, &there, nullptr) && there > 0;
  };
  if (!words()) {
    if (started()) WaitForSingleObject(system_->process, static_cast<DWORD>(longest.count()));
    if (!words()) return {};
  }
  if (!ReadFile(system_->ear, portion.data(), static_cast<DWORD>(portion.size()), &got, nullptr)) {
    return {};
  }
  return {portion.data(), got};
}

void ChildProgram::End(const std::function<void()>& meanwhile) {
  constexpr DWORD kLook = 10;  // milliseconds
  constexpr int kLooks = 500;
  if (!started()) return;
  if (system_->job != nullptr) {
    TerminateJobObject(system_->job, 1);
  } else {
    TerminateProcess(system_->process, 1);
  }
  for (int looks = 0; !Ended() && looks < kLooks; ++looks) {
    if (meanwhile) meanwhile();
    WaitForSingleObject(system_->process, kLook);
  }
  CloseHandle(system_->process);
  system_->process = nullptr;
}

}  // namespace kaunter
