#include "reports/report_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "core/report_path.h"
#include "platform/installation.h"
#include "reports/report_encoding.h"
#include "reports/report_parser.h"

namespace kaunter {
namespace {

std::string TextOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::error_code error;
  if (!stream || std::filesystem::is_directory(path, error)) {
    throw std::runtime_error(
        fmt::format("The report file {} cannot be read. It belongs beside the program.", path));
  }
  std::ostringstream text;
  text << stream.rdbuf();
  return Utf8Text(text.str(), path);
}

constexpr int kMostLike = 8;

// A file of the office finds those of the program too, and under its own name the one whose place
// it takes.
std::string Beside(const std::string& name, const std::string& path) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(path).parent_path();
  const bool of_office = folder.filename() == kOwnReports;
  std::vector<fs::path> places{folder / name};
  if (of_office) places.push_back(folder.parent_path() / name);
  if (const std::string& shipped = ThisInstallation().files; !shipped.empty()) {
    places.push_back(fs::path(shipped) / name);
  }
  for (const fs::path& place : places) {
    std::error_code error;
    if (fs::exists(place, error) && !fs::equivalent(place, path, error)) return place.string();
  }
  return places.at(of_office ? 1 : 0).string();
}

// Reads the file that a line "like" names, and the one that this one is like.
class Library {
 public:
  explicit Library(const ReportReading& reading) : reading_(reading) {}

  ReportFile Parse(std::string_view text, const std::string& path) {
    return ParseReport(text, path, reading_,
                       [&](const std::string& name) { return Like(name, path); });
  }

 private:
  ReportFile Like(const std::string& name, const std::string& path) {
    // However the names are written: a chain this long goes round in a circle.
    if (++depth_ > kMostLike) {
      throw std::invalid_argument(fmt::format(
          "\"like\" goes round in a circle, or over more than {} files: {} is one too many",
          kMostLike, name));
    }
    const std::string beside = Beside(name, path);
    std::error_code error;
    if (!std::filesystem::is_regular_file(beside, error)) {
      throw std::invalid_argument(fmt::format("there is no file {} beside this one", name));
    }
    return Parse(TextOf(beside), beside);
  }

  const ReportReading& reading_;
  int depth_ = 0;
};

// A sign of Chinese writing, in a line that is no comment.
bool HoldsChinese(const std::string& line) {
  return !line.starts_with('#') && std::any_of(line.begin(), line.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0xE3 && byte <= 0xE9;
  });
}

// The file that the line names; "" when it is no "like" or there is no such file.
std::string LikeIn(const std::string& line, const std::string& path) {
  if (!line.starts_with("like ")) return {};
  const std::vector<ReportWord> words = ReportWords(line, false);
  const std::string beside = words.size() < 2 ? "" : Beside(words[1].text, path);
  std::error_code error;
  return std::filesystem::is_regular_file(beside, error) ? beside : "";
}

bool SpeaksChinese(const std::string& path, int depth) {
  std::istringstream text(TextOf(path));
  for (std::string line; std::getline(text, line);) {
    if (HoldsChinese(line)) return true;
    const std::string like = depth < kMostLike ? LikeIn(line, path) : "";
    if (!like.empty() && SpeaksChinese(like, depth + 1)) return true;
  }
  return false;
}

}  // namespace

bool ReportFile::SpeaksChinese(const std::string& path) { return kaunter::SpeaksChinese(path, 0); }

std::string ReportFile::LikeOf(const std::string& path) {
  std::istringstream text(TextOf(path));
  for (std::string line; std::getline(text, line);) {
    if (const std::string like = LikeIn(line, path); !like.empty()) return like;
  }
  return {};
}

ReportFile ReportFile::Parse(std::string_view text, const std::string& path,
                             const ReportReading& reading) {
  return Library(reading).Parse(text, path);
}

ReportFile ReportFile::Read(const std::string& path, const ReportReading& reading) {
  return Parse(TextOf(path), path, reading);
}

}  // namespace kaunter
