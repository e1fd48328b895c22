// A text file of any of the encodings that spreadsheets write, read a piece at a time as UTF-8.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text_encoding.h"
#include "screen/caption.h"

namespace kaunter {

class TextConverter;

// As a mapping file names it ("utf-8"), and as a person reads it.
std::string_view EncodingName(Encoding encoding);
std::optional<Encoding> EncodingNamed(std::string_view name);
Caption EncodingCaption(Encoding encoding);

class TextSource {
 public:
  // `automatic` is decided by the signs at the front of the file, else by its first 64 KB. Throws
  // FileTrouble for a file that cannot be read, or is empty.
  TextSource(const std::string& path, Encoding wanted);
  ~TextSource();
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;

  Encoding encoding() const { return encoding_; }
  std::uintmax_t size() const { return size_; }
  std::uintmax_t done() const { return done_; }  // bytes read

  // The next piece, "" at the end. Throws FileTrouble that names the line for bytes that are no
  // text of the encoding.
  std::string Next();

 private:
  void Open(const std::string& path);
  [[noreturn]] void Refuse() const;

  std::ifstream in_;
  Encoding encoding_;
  std::uintmax_t size_ = 0;
  std::uintmax_t done_ = 0;
  std::string rest_;  // bytes that wait for what follows them
  std::unique_ptr<TextConverter> converter_;
  int line_ = 1;
};

}  // namespace kaunter
