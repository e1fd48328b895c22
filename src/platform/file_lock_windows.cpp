#include <fmt/format.h>
#include <windows.h>

#include <stdexcept>

#include "platform/file_lock.h"
#include "platform/windows_text.h"

namespace kaunter {

// An opened file that is shared with nobody is the lock.
FileLock::FileLock(const std::filesystem::path& file) {
  HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  held_ = handle != INVALID_HANDLE_VALUE;
  if (held_) {
    file_ = reinterpret_cast<std::intptr_t>(handle);
  } else if (GetLastError() != ERROR_SHARING_VIOLATION) {
    throw std::runtime_error(
        fmt::format("{} cannot be written: {}", file.string(), WindowsError(GetLastError())));
  }
}

FileLock::~FileLock() {
  if (held_) CloseHandle(reinterpret_cast<HANDLE>(file_));
}

}  // namespace kaunter
