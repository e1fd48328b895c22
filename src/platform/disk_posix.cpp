#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#ifdef __linux__
#include <sys/vfs.h>
#endif
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "platform/disk.h"

namespace kaunter {

bool IsOnNetwork(const std::filesystem::path& folder) {
#ifdef __linux__
  struct statfs info {};
  if (statfs(folder.c_str(), &info) != 0) return false;
  switch (static_cast<unsigned long>(info.f_type) & 0xFFFFFFFFul) {
    case 0x6969:      // NFS
    case 0x517B:      // SMB
    case 0xFF534D42:  // CIFS
    case 0xFE534D42:  // SMB2
    case 0x5346414F:  // AFS
    case 0x564C:      // NCP
      return true;
    default:
      return false;
  }
#else
  static_cast<void>(folder);
  return false;
#endif
}

bool OnOneDisk(const std::filesystem::path& a, const std::filesystem::path& b) {
  struct stat first {
  }, second{};
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev;
}

bool TellsNoRoom(int system_error) {
  return system_error == ENOSPC || system_error == EDQUOT || system_error == EFBIG;
}

std::string ReserveRoom(const std::string& path, std::uint64_t bytes) {
  const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) return std::strerror(errno);
  const int failure = posix_fallocate(fd, 0, static_cast<off_t>(bytes));
  close(fd);
  return failure == 0 ? "" : std::strerror(failure);
}

void TakeEmptyPlace(const std::filesystem::path& whole, const std::filesystem::path& empty) {
  const int fd = open(empty.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return;
  struct stat held {
  }, named{};
  if (flock(fd, LOCK_EX) == 0 && fstat(fd, &held) == 0 && held.st_size == 0 &&
      stat(empty.c_str(), &named) == 0 && named.st_ino == held.st_ino &&
      named.st_dev == held.st_dev) {
    std::error_code stays;  // the empty file is told when it is opened
    std::filesystem::rename(whole, empty, stays);
  }
  close(fd);
}

void TakeName(const std::filesystem::path& whole, const std::filesystem::path& name) {
  std::filesystem::rename(whole, name);
}

}  // namespace kaunter
