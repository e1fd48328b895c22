// Any bytes as MenuList.ini, and behind a line "----" as MenuList2.ini: read, or refused with the
// file's name.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/menu_list.h"

namespace {

class Folder {
 public:
  Folder() : path_("/dev/shm/kaunter-fuzz-" + std::to_string(getpid())) {
    std::filesystem::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  void Write(std::string_view name, std::string_view text) const {
    std::ofstream(path_ + "/" + std::string(name), std::ios::binary) << text;
  }
  void Remove(std::string_view name) const {
    std::filesystem::remove(path_ + "/" + std::string(name));
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t second = text.find("----\n");
  folder.Write("MenuList.ini", text.substr(0, second));
  if (second == std::string_view::npos) {
    folder.Remove("MenuList2.ini");
  } else {
    folder.Write("MenuList2.ini", text.substr(second + 5));
  }
  try {
    for (const auto& entry : kaunter::ReadMenuList(folder.path())) {
      if (entry.name.find(',') != std::string::npos) std::abort();
    }
  } catch (const std::runtime_error& error) {
    if (std::string_view(error.what()).find("MenuList") == std::string_view::npos) {
      std::fprintf(stderr, "%s\n", error.what());
      std::abort();
    }
  }
  return 0;
}
