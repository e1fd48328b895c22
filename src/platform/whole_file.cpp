#include "platform/whole_file.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "platform/digest.h"
#include "platform/disk.h"
#include "platform/private_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPart = "kaunter-";
constexpr const char* kPartEnding = ".part";
constexpr auto kForgotten = std::chrono::hours(24);

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error(fmt::format(
      "{} cannot be written: {}. Is the folder there, and is there room on the disk?", path, why));
}

void Sync(const std::string& beside, const std::string& path) {
  try {
    SyncFile(beside);
  } catch (const std::runtime_error& failure) {
    Refuse(path, failure.what());
  }
}

}  // namespace

void WriteWholeFile(const std::string& path, const std::function<void(std::ostream&)>& write,
                    FileReach reach) {
  const fs::path place = path;
  const fs::path folder = place.has_parent_path() ? place.parent_path() : ".";
  const std::string beside = (folder / FreeFileName()).string();
  ClearForgottenParts(folder.string());
  try {
    errno = 0;
    std::ofstream file = OpenPrivate(beside, std::ios::binary | std::ios::trunc);
    if (file.is_open() && reach == FileReach::kOwner) {
      fs::permissions(beside, fs::perms::owner_read | fs::perms::owner_write);
    }
    if (file.is_open()) write(file);
    file.close();
    if (!file) Refuse(path, errno == 0 ? "not all of it was taken" : strerror(errno));
    Sync(beside, path);
    TakeName(beside, path);
    SyncFolder(folder);  // what is written next may count on it
  } catch (const fs::filesystem_error& failure) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    Refuse(path, failure.code().message());
  } catch (...) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    throw;
  }
}

void CopyWholeFile(const std::string& from, const std::string& to, FileReach reach) {
  std::ifstream source(from, std::ios::binary);
  WriteWholeFile(
      to,
      [&](std::ostream& file) {
        // A source of no bytes would count as a failure to write them.
        if (source.peek() != std::ifstream::traits_type::eof()) file << source.rdbuf();
        if (!source.is_open() || source.bad()) {
          throw std::runtime_error(fmt::format("{} cannot be read", from));
        }
      },
      reach);
}

std::string FileNameOf(const std::string& name) {
  std::string file = name;
  for (char& c : file) {
    const bool refused = static_cast<unsigned char>(c) < ' ' ||
                         std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    if (refused) c = '_';
  }
  return file;
}

std::string FreeFileName() {
  std::array<unsigned char, 8> chance{};
  FillWithRandom(chance);
  return fmt::format("{}{:02x}{}", kPart, fmt::join(chance, ""), kPartEnding);
}

void ClearForgottenParts(const std::string& folder) {
  std::error_code error;
  const auto old = fs::file_time_type::clock::now() - kForgotten;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kPart) || !name.ends_with(kPartEnding)) continue;
    if (entry.last_write_time(error) < old && !error) fs::remove(entry.path(), error);
  }
}

}  // namespace kaunter
