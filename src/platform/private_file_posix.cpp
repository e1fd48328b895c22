#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/private_file.h"

namespace kaunter {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOwner = S_IRUSR | S_IWUSR;
constexpr mode_t kShared = kOwner | S_IRGRP | S_IWGRP;
constexpr mode_t kEverybody = S_IRWXO;

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

class Descriptor {
 public:
  Descriptor(const fs::path& path, int flags)
      : fd_(open(path.c_str(), flags | O_CLOEXEC, kOwner)) {}
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd() const { return fd_; }

 private:
  int fd_;
};

// Gives the path one of two modes. A folder that everybody may write to is nobody's in common.
void SetMode(const fs::path& path, mode_t owner, mode_t in_common) {
  struct stat folder {};
  const bool shared = stat(FolderOf(path).c_str(), &folder) == 0 &&
                      (folder.st_mode & S_IWGRP) != 0 && (folder.st_mode & S_IWOTH) == 0 &&
                      chown(path.c_str(), static_cast<uid_t>(-1), folder.st_gid) == 0;
  static_cast<void>(chmod(path.c_str(), shared ? in_common : owner));
}

bool IsOurs(const fs::path& path) {
  struct stat file {};
  return lstat(path.c_str(), &file) == 0 && file.st_uid == geteuid();
}

}  // namespace

void MakePrivate(const fs::path& path) { SetMode(path, kOwner, kShared); }

void KeepFolderPrivate(const fs::path& path) {
  std::error_code unreadable;
  if (!IsOurs(path) || !fs::is_directory(path, unreadable)) return;
  const auto entries = [&] { return fs::directory_iterator(path, unreadable); };
  for (const auto& entry : entries()) {
    if (!IsOurs(entry.path())) return;
  }
  SetMode(path, S_IRWXU, S_IRWXU | S_IRWXG);
  for (const auto& entry : entries()) {
    if (fs::is_regular_file(entry.symlink_status(unreadable))) MakePrivate(entry);
  }
}

bool MakePrivateFile(const fs::path& path) {
  {
    const Descriptor file(path, O_WRONLY | O_CREAT | O_EXCL);
    if (file.fd() < 0) return false;
  }
  MakePrivate(path);
  return true;
}

fs::path MakePrivateFolder(const std::string& beginning) {
  std::string name = beginning + "XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error(
        fmt::format("The folder {} cannot be made: {}", name, strerror(errno)));
  }
  return name;
}

void KeepPrivate(const fs::path& path) {
  struct stat file {};
  if (stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode) || file.st_uid != geteuid()) return;
  if ((file.st_mode & kEverybody) != 0) MakePrivate(path);
}

void SyncFile(const fs::path& path) {
  const Descriptor file(path, O_RDONLY);
  if (file.fd() < 0 || fsync(file.fd()) != 0) {
    throw std::runtime_error(
        fmt::format("{} could not be written to the disk: {}", path.string(), strerror(errno)));
  }
  SyncFolder(FolderOf(path));  // where its name stands
}

void SyncFolder(const fs::path& folder) {
  const Descriptor opened(folder, O_RDONLY | O_DIRECTORY);
  if (opened.fd() >= 0) static_cast<void>(fsync(opened.fd()));
}

}  // namespace kaunter
