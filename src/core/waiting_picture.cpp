#include "core/waiting_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "core/session.h"
#include "platform/private_file.h"

namespace kaunter {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kJpeg = "\xFF\xD8\xFF";
constexpr std::string_view kJpegEnd = "\xFF\xD9";

int Digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// "FFD8...", "0xFFD8..." and "\xffd8..." give the bytes; anything else stays.
std::string FromDigits(std::string text) {
  const std::size_t begin = text.starts_with("0x") || text.starts_with("\\x") ? 2 : 0;
  if (text.size() - begin < 4 || (text.size() - begin) % 2 != 0) return text;
  if (!std::all_of(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(),
                   [](char c) { return Digit(c) >= 0; })) {
    return text;
  }
  std::string bytes;
  for (std::size_t i = begin; i < text.size(); i += 2) {
    bytes += static_cast<char>(Digit(text[i]) * 16 + Digit(text[i + 1]));
  }
  return bytes;
}

}  // namespace

WaitingPicture::WaitingPicture(std::string stem, std::string ending, bool numbered)
    : stem_(std::move(stem)), ending_(std::move(ending)), numbered_(numbered) {}

const std::string& WaitingPicture::Reserve(const Session& session) {
  constexpr int kMost = 9999;
  Drop();
  for (int number = 1; number <= kMost; ++number) {
    const std::string count = number == 1 && !numbered_ ? "" : std::to_string(number);
    const std::string path = fmt::format("{}/{}{}{}", session.PhotoPath, stem_, count, ending_);
    if (!MakePrivateFile(path)) continue;
    path_ = path;
    return path_;
  }
  throw std::runtime_error(
      session.In({fmt::format("No picture can be written into {}.", session.PhotoPath),
                  fmt::format("无法把照片写入 {}。", session.PhotoPath)}));
}

void WaitingPicture::Drop() {
  std::error_code error;
  if (!path_.empty()) std::filesystem::remove(path_, error);
  path_.clear();
}

void WaitingPicture::Take(WaitingPicture& other) {
  Drop();
  std::error_code error;
  if (std::filesystem::file_size(other.path_, error) == 0 || error) other.Drop();
  path_ = std::exchange(other.path_, {});
}

std::string PictureBytes(std::string bytes) {
  bytes = FromDigits(std::move(bytes));
  if (bytes.starts_with(kJpeg)) {
    // Some readers fill the room behind it.
    const std::size_t end = bytes.rfind(kJpegEnd);
    if (end == std::string::npos) return {};
    return bytes.substr(0, end + kJpegEnd.size());
  }
  for (const std::string_view begin : {"\x89PNG\r\n"sv, "GIF8"sv, "BM"sv}) {
    if (bytes.starts_with(begin)) return bytes;
  }
  return {};
}

}  // namespace kaunter
