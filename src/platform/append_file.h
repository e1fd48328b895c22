// A file that several processes add to, a lock and a piece at a time. What is the system's own of
// RollingFile.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace kaunter {

class AppendFile {
 public:
  // The file is there. Throws std::runtime_error that names it.
  explicit AppendFile(const std::filesystem::path& path);
  ~AppendFile();
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;

  // Other processes wait meanwhile. A disk that knows no locks lets all pass.
  void Lock();
  void Unlock();
  // Nobody has put another file in the place of this one.
  bool IsAt(const std::filesystem::path& path) const;
  bool IsRegular() const;
  std::uintmax_t Size() const;
  // Whole or not at all, as far as the disk lets it; why not, empty when it is written.
  std::string Append(std::string_view text);

 private:
  std::intptr_t file_;
};

}  // namespace kaunter
