#include "movein/text_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "core/texts.h"
#include "movein/file_trouble.h"
#include "platform/text_converter.h"

namespace kaunter {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

struct Known {
  Encoding encoding;
  std::string_view name;
  Caption caption;
};

const std::array<Known, 6>& All() {
  static const std::array<Known, 6> all = {{
      {Encoding::automatic, "auto", {"Found by itself", "自动判断"}},
      {Encoding::utf8, "utf-8", {"UTF-8", "UTF-8"}},
      {Encoding::utf16le, "utf-16le", {"UTF-16", "UTF-16"}},
      {Encoding::utf16be, "utf-16be", {"UTF-16 (big end first)", "UTF-16（高位在前）"}},
      {Encoding::latin1, "latin-1", {"Latin-1 (Windows)", "Latin-1（西欧）"}},
      {Encoding::gbk, "gbk", {"GBK (Chinese)", "GBK（简体中文）"}},
  }};
  return all;
}

const Known& Entry(Encoding encoding) { return All()[static_cast<std::size_t>(encoding)]; }

}  // namespace

std::string_view EncodingName(Encoding encoding) { return Entry(encoding).name; }

std::optional<Encoding> EncodingNamed(std::string_view name) {
  for (const Known& known : All()) {
    if (SameText(known.name, name)) return known.encoding;
  }
  return std::nullopt;
}

Caption EncodingCaption(Encoding encoding) { return Entry(encoding).caption; }

TextSource::TextSource(const std::string& path, Encoding wanted) : encoding_(wanted) {
  Open(path);
  std::string first(kPiece, '\0');
  in_.read(first.data(), static_cast<std::streamsize>(first.size()));
  first.resize(static_cast<std::size_t>(in_.gcount()));
  if (encoding_ == Encoding::automatic) encoding_ = EncodingOf(first);
  in_.clear();
  in_.seekg(0);
  try {
    converter_ = std::make_unique<TextConverter>(encoding_);
  } catch (const std::runtime_error&) {
    throw FileTrouble({fmt::format("This PC cannot read texts in {}", EncodingName(encoding_)),
                       fmt::format("此电脑不能读取 {} 编码", EncodingName(encoding_))});
  }
}

TextSource::~TextSource() = default;

void TextSource::Open(const std::string& path) {
  std::error_code error;
  const bool regular = std::filesystem::is_regular_file(path, error);
  if (regular) in_.open(path, std::ios::binary);
  if (!regular || !in_) {
    throw FileTrouble(
        {fmt::format("The file {} cannot be read: is it there, and may you read it?", path),
         fmt::format("无法读取文件 {}：文件是否存在，您是否有权读取？", path)});
  }
  size_ = std::filesystem::file_size(path, error);
  if (size_ == 0) {
    throw FileTrouble(
        {fmt::format("The file {} is empty", path), fmt::format("文件 {} 是空的", path)});
  }
}

void TextSource::Refuse() const {
  const Caption name = EncodingCaption(encoding_);
  throw FileTrouble(
      {fmt::format("Line {}: what stands there is no text in {}. Choose another encoding", line_,
                   name.english),
       fmt::format("第 {} 行：内容不是 {} 文字。请选择别的编码", line_, name.chinese)});
}

std::string TextSource::Next() {
  std::string bytes(kPiece, '\0');
  in_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in_.gcount()));
  const bool first = done_ == 0;
  const bool end = bytes.empty();
  done_ += bytes.size();
  rest_ += bytes;
  if (rest_.empty()) return {};
  auto [text, broken] = converter_->Take(rest_);
  line_ += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
  if (broken || (end && !rest_.empty())) Refuse();
  if (first && text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  // A piece that was all of a cut letter is not the end.
  return text.empty() && !end ? Next() : text;
}

}  // namespace kaunter
