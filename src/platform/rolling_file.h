// A text file that several processes add lines to, and that never grows past a size: the one that
// is full becomes NAME.1, the one before it NAME.2, and so on; the oldest goes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace kaunter {

class AppendFile;

class RollingFile {
 public:
  // Beside the file `kept` full ones stay. `head` is what each file begins with.
  RollingFile(std::filesystem::path path, std::uintmax_t largest, int kept, std::string head = "");
  ~RollingFile();
  RollingFile(const RollingFile&) = delete;
  RollingFile& operator=(const RollingFile&) = delete;

  // Adds the text whole or not at all, behind what others have added; a file that is not there is
  // made, for its owner (private_file.h). Throws std::runtime_error that names the file.
  void Add(std::string_view text);

 private:
  // False when the file is no longer the one of the name.
  bool AddTo(AppendFile& file, std::string_view text) const;
  bool SetAside() const;

  std::filesystem::path path_;
  std::uintmax_t largest_;
  int kept_;
  std::string head_;
  std::unique_ptr<AppendFile> file_;
};

}  // namespace kaunter
