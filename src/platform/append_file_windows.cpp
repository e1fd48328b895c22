#include <windows.h>
// What it needs first.
#include <fmt/format.h>

#include <stdexcept>

#include "platform/append_file.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE Handle(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

// A byte far behind every end: the lock keeps nobody from reading.
OVERLAPPED LockedByte() {
  OVERLAPPED place{};
  place.OffsetHigh = 0x7FFFFFFF;
  return place;
}

BY_HANDLE_FILE_INFORMATION StatusOf(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION status{};
  GetFileInformationByHandle(file, &status);
  return status;
}

}  // namespace

AppendFile::AppendFile(const std::filesystem::path& path)
    : file_(reinterpret_cast<std::intptr_t>(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                                                        kShared, nullptr, OPEN_EXISTING,
                                                        FILE_ATTRIBUTE_NORMAL, nullptr))) {
  if (Handle(file_) == INVALID_HANDLE_VALUE) {
    throw std::runtime_error(
        fmt::format("cannot open {}: {}", path.string(), WindowsError(GetLastError())));
  }
}

AppendFile::~AppendFile() { CloseHandle(Handle(file_)); }

void AppendFile::Lock() {
  OVERLAPPED place = LockedByte();
  LockFileEx(Handle(file_), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place);
}

void AppendFile::Unlock() {
  OVERLAPPED place = LockedByte();
  UnlockFileEx(Handle(file_), 0, 1, 0, &place);
}

bool AppendFile::IsAt(const std::filesystem::path& path) const {
  HANDLE other = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
  if (other == INVALID_HANDLE_VALUE) return false;
  const auto here = StatusOf(Handle(file_));
  const auto there = StatusOf(other);
  CloseHandle(other);
  return here.dwVolumeSerialNumber == there.dwVolumeSerialNumber &&
         here.nFileIndexHigh == there.nFileIndexHigh && here.nFileIndexLow == there.nFileIndexLow;
}

bool AppendFile::IsRegular() const { return GetFileType(Handle(file_)) == FILE_TYPE_DISK; }

std::uintmax_t AppendFile::Size() const {
  const auto status = StatusOf(Handle(file_));
  return (static_cast<std::uintmax_t>(status.nFileSizeHigh) << 32U) | status.nFileSizeLow;
}

std::string AppendFile::Append(std::string_view text) {
  LARGE_INTEGER before{};
  SetFilePointerEx(Handle(file_), {}, &before, FILE_END);
  while (!text.empty()) {
    DWORD written = 0;
    if (WriteFile(Handle(file_), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
        written > 0) {
      text.remove_prefix(written);
      continue;
    }
    const std::string why = WindowsError(GetLastError());
    SetFilePointerEx(Handle(file_), before, nullptr, FILE_BEGIN);
    SetEndOfFile(Handle(file_));
    return why;
  }
  return {};
}

}  // namespace kaunter
