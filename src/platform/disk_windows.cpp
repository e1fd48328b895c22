#include <windows.h>

#include <array>
#include <system_error>

#include "platform/disk.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

constexpr int kDiskQuotaExceeded = 1295;  // mingw's header has no name for it
constexpr int kNameTries = 50;
constexpr DWORD kBetweenNameTries = 20;  // milliseconds

}  // namespace

bool IsOnNetwork(const std::filesystem::path& folder) {
  std::error_code error;
  const std::wstring whole = std::filesystem::absolute(folder, error).wstring();
  std::array<wchar_t, MAX_PATH + 1> volume{};
  if (GetVolumePathNameW(whole.c_str(), volume.data(), static_cast<DWORD>(volume.size()))) {
    return GetDriveTypeW(volume.data()) == DRIVE_REMOTE;
  }
  return whole.starts_with(L"\\\\") || whole.starts_with(L"//");
}

bool OnOneDisk(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::array<wchar_t, MAX_PATH + 1> first{}, second{};
  std::error_code error;
  const auto volume = [&](const std::filesystem::path& path, auto& name) {
    return GetVolumePathNameW(std::filesystem::absolute(path, error).c_str(), name.data(),
                              static_cast<DWORD>(name.size())) != 0;
  };
  return volume(a, first) && volume(b, second) && first == second;
}

bool TellsNoRoom(int system_error) {
  return system_error == ERROR_DISK_FULL || system_error == ERROR_HANDLE_DISK_FULL ||
         system_error == kDiskQuotaExceeded || system_error == ERROR_FILE_TOO_LARGE;
}

std::string ReserveRoom(const std::string& path, std::uint64_t bytes) {
  HANDLE file = CreateFileW(ToWide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return WindowsError(GetLastError());
  LARGE_INTEGER size{};
  size.QuadPart = static_cast<LONGLONG>(bytes);
  const bool taken = SetFilePointerEx(file, size, nullptr, FILE_BEGIN) && SetEndOfFile(file);
  const DWORD error = GetLastError();
  CloseHandle(file);
  return taken ? "" : WindowsError(error);
}

// An opened file keeps its name here: the empty one goes first, and who comes second finds the name
// taken.
void TakeEmptyPlace(const std::filesystem::path& whole, const std::filesystem::path& empty) {
  HANDLE file = CreateFileW(empty.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  LARGE_INTEGER size{};
  FILE_DISPOSITION_INFO gone{TRUE};
  const bool taken = GetFileSizeEx(file, &size) && size.QuadPart == 0 &&
                     SetFileInformationByHandle(file, FileDispositionInfo, &gone, sizeof gone);
  CloseHandle(file);
  if (taken) MoveFileExW(whole.c_str(), empty.c_str(), 0);
}

void TakeName(const std::filesystem::path& whole, const std::filesystem::path& name) {
  for (int tries = kNameTries; !MoveFileExW(whole.c_str(), name.c_str(), MOVEFILE_REPLACE_EXISTING);
       Sleep(kBetweenNameTries)) {
    const DWORD error = GetLastError();
    const bool held = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
    if (held && --tries > 0) continue;
    throw std::filesystem::filesystem_error("no name", whole, name,
                                            {static_cast<int>(error), std::system_category()});
  }
}

}  // namespace kaunter
