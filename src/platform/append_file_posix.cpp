#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "platform/append_file.h"

namespace kaunter {
namespace {

int Descriptor(std::intptr_t file) { return static_cast<int>(file); }

struct stat StatusOf(std::intptr_t file) {
  struct stat status {};
  fstat(Descriptor(file), &status);
  return status;
}

}  // namespace

AppendFile::AppendFile(const std::filesystem::path& path)
    : file_(open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)) {
  if (file_ < 0) {
    throw std::runtime_error(fmt::format("cannot open {}: {}", path.string(), strerror(errno)));
  }
}

AppendFile::~AppendFile() { close(Descriptor(file_)); }

void AppendFile::Lock() {
  while (flock(Descriptor(file_), LOCK_EX) != 0 && errno == EINTR) continue;
}

void AppendFile::Unlock() { flock(Descriptor(file_), LOCK_UN); }

bool AppendFile::IsAt(const std::filesystem::path& path) const {
  const struct stat here = StatusOf(file_);
  struct stat there {};
  return stat(path.c_str(), &there) == 0 && here.st_ino == there.st_ino &&
         here.st_dev == there.st_dev;
}

bool AppendFile::IsRegular() const { return S_ISREG(StatusOf(file_).st_mode); }

std::uintmax_t AppendFile::Size() const {
  return static_cast<std::uintmax_t>(StatusOf(file_).st_size);
}

std::string AppendFile::Append(std::string_view text) {
  const off_t before = StatusOf(file_).st_size;
  while (!text.empty()) {
    const ssize_t written = write(Descriptor(file_), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    const std::string why = strerror(errno);
    if (IsRegular()) static_cast<void>(ftruncate(Descriptor(file_), before));
    return why;
  }
  return {};
}

}  // namespace kaunter
