#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "platform/file_lock.h"

namespace kaunter {

FileLock::FileLock(const std::filesystem::path& file)
    : file_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)) {
  if (file_ < 0) {
    throw std::runtime_error(
        fmt::format("{} cannot be written: {}", file.string(), strerror(errno)));
  }
  held_ = flock(static_cast<int>(file_), LOCK_EX | LOCK_NB) == 0;
}

FileLock::~FileLock() { close(static_cast<int>(file_)); }

}  // namespace kaunter
