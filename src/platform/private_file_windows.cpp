#include <windows.h>
// The lists of who may do what.
#include <aclapi.h>
#include <fmt/format.h>

#include <array>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

#include "platform/private_file.h"
#include "platform/windows_text.h"

namespace kaunter {

namespace fs = std::filesystem;

namespace {

struct LocalMemory {
  void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using Local = std::unique_ptr<T, LocalMemory>;

// Groups that hold everybody: a folder that they may write to is nobody's in common.
constexpr WELL_KNOWN_SID_TYPE kEverybody[] = {
    WinWorldSid,         WinBuiltinUsersSid, WinAuthenticatedUserSid,
    WinBuiltinGuestsSid, WinInteractiveSid,  WinAnonymousSid};
// Those that have all rights anyway, and backups and virus scanners among them.
constexpr WELL_KNOWN_SID_TYPE kSystem[] = {WinLocalSystemSid, WinBuiltinAdministratorsSid};

bool IsEverybody(PSID sid) {
  for (const auto kind : kEverybody) {
    if (IsWellKnownSid(sid, kind)) return true;
  }
  return false;
}

const ACCESS_ALLOWED_ACE* AllowedAt(PACL list, DWORD at) {
  void* entry = nullptr;
  if (!GetAce(list, at, &entry)) return nullptr;
  const auto* allowed = static_cast<const ACCESS_ALLOWED_ACE*>(entry);
  return allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE ? allowed : nullptr;
}

PSID SidOf(const ACCESS_ALLOWED_ACE& entry) { return const_cast<DWORD*>(&entry.SidStart); }

struct Rights {
  PACL list = nullptr;
  PSID owner = nullptr;
  Local<void> memory;
};

Rights RightsOf(const fs::path& path) {
  Rights rights;
  PSECURITY_DESCRIPTOR memory = nullptr;
  if (GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT,
                            OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &rights.owner,
                            nullptr, &rights.list, nullptr, &memory) != ERROR_SUCCESS) {
    return {};
  }
  rights.memory.reset(memory);
  return rights;
}

bool EverybodyReads(const Rights& rights) {
  if (rights.list == nullptr) return rights.owner != nullptr;  // without a list all may do all
  for (DWORD i = 0; i < rights.list->AceCount; ++i) {
    const ACCESS_ALLOWED_ACE* entry = AllowedAt(rights.list, i);
    if (entry != nullptr && (entry->Mask & (FILE_READ_DATA | GENERIC_READ | GENERIC_ALL)) != 0 &&
        IsEverybody(SidOf(*entry))) {
      return true;
    }
  }
  return false;
}

EXPLICIT_ACCESSW Allow(PSID sid, DWORD mask) {
  EXPLICIT_ACCESSW access{};
  access.grfAccessPermissions = mask;
  access.grfAccessMode = GRANT_ACCESS;
  access.grfInheritance = SUB_CONTAINERS_AND_OBJECTS_INHERIT;
  access.Trustee.TrusteeForm = TRUSTEE_IS_SID;
  access.Trustee.ptstrName = static_cast<LPWSTR>(sid);
  return access;
}

// The owner, the system, and whoever else may write to the folder `shared_by`, unless that is
// everybody.
void SetRights(const fs::path& path, const Rights& shared_by) {
  const Rights own = RightsOf(path);
  if (own.owner == nullptr) return;  // a disk that knows no rights
  std::vector<EXPLICIT_ACCESSW> all = {Allow(own.owner, FILE_ALL_ACCESS)};
  std::array<std::array<BYTE, SECURITY_MAX_SID_SIZE>, std::size(kSystem)> sids{};
  for (std::size_t i = 0; i < sids.size(); ++i) {
    DWORD size = SECURITY_MAX_SID_SIZE;
    if (CreateWellKnownSid(kSystem[i], nullptr, sids[i].data(), &size)) {
      all.push_back(Allow(sids[i].data(), FILE_ALL_ACCESS));
    }
  }
  constexpr DWORD kChange = FILE_GENERIC_READ | FILE_GENERIC_WRITE | FILE_GENERIC_EXECUTE | DELETE;
  std::vector<EXPLICIT_ACCESSW> others;
  for (DWORD i = 0; shared_by.list != nullptr && i < shared_by.list->AceCount; ++i) {
    const ACCESS_ALLOWED_ACE* entry = AllowedAt(shared_by.list, i);
    if (entry == nullptr || (entry->Mask & FILE_WRITE_DATA) == 0 ||
        IsWellKnownSid(SidOf(*entry), WinCreatorOwnerSid)) {
      continue;
    }
    if (IsEverybody(SidOf(*entry))) {
      others.clear();
      break;
    }
    others.push_back(Allow(SidOf(*entry), kChange));
  }
  all.insert(all.end(), others.begin(), others.end());
  PACL list = nullptr;
  if (SetEntriesInAclW(static_cast<ULONG>(all.size()), all.data(), nullptr, &list) !=
      ERROR_SUCCESS) {
    return;
  }
  const Local<ACL> memory(list);
  std::wstring name = path.wstring();
  SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT,
                        DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                        nullptr, list, nullptr);
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

}  // namespace

void MakePrivate(const fs::path& path) { SetRights(path, RightsOf(FolderOf(path))); }

bool MakePrivateFile(const fs::path& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  MakePrivate(path);
  return true;
}

fs::path MakePrivateFolder(const std::string& beginning) {
  constexpr int kTries = 100;
  std::random_device random;
  for (int i = 0; i < kTries; ++i) {
    const fs::path folder = beginning + fmt::format("{:08x}", random());
    if (CreateDirectoryW(folder.c_str(), nullptr)) {
      SetRights(folder, {});
      return folder;
    }
    if (GetLastError() != ERROR_ALREADY_EXISTS) break;
  }
  throw std::runtime_error(
      fmt::format("The folder {}... cannot be made: {}", beginning, WindowsError(GetLastError())));
}

void KeepPrivate(const fs::path& path) {
  const Rights rights = RightsOf(path);
  if (EverybodyReads(rights)) MakePrivate(path);
}

// What lies in it takes its rights from it.
void KeepFolderPrivate(const fs::path& path) {
  std::error_code unreadable;
  if (!fs::is_directory(path, unreadable)) return;
  KeepPrivate(path);
  for (const auto& entry : fs::directory_iterator(path, unreadable)) KeepPrivate(entry);
}

void SyncFile(const fs::path& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  const bool written = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
  const DWORD error = GetLastError();
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  if (!written) {
    throw std::runtime_error(
        fmt::format("{} could not be written to the disk: {}", path.string(), WindowsError(error)));
  }
}

// A folder is written along with what lies in it.
void SyncFolder(const fs::path&) {}

}  // namespace kaunter
