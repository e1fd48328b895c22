// A lock that lies beside what it guards and goes with the process that holds it, however it ends.
#pragma once

#include <cstdint>
#include <filesystem>

namespace kaunter {

class FileLock {
 public:
  // Takes the lock when nobody has it, and makes its file. Throws std::runtime_error that names a
  // file that cannot be made.
  explicit FileLock(const std::filesystem::path& file);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  bool held() const { return held_; }

 private:
  std::intptr_t file_ = -1;
  bool held_ = false;
};

}  // namespace kaunter
