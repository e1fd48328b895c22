// Texts of other encodings as UTF-8, piece by piece.
#pragma once

#include <memory>
#include <string>

namespace kaunter {

class TextConverter {
 public:
  // "UTF-8", "UTF-16LE", "UTF-16BE", "WINDOWS-1252" or "GB18030". Throws std::runtime_error where
  // the machine does not know it.
  explicit TextConverter(const std::string& encoding);
  ~TextConverter();
  TextConverter(const TextConverter&) = delete;
  TextConverter& operator=(const TextConverter&) = delete;

  struct Piece {
    std::string text;     // UTF-8
    bool broken = false;  // what follows the text is no letter
  };
  // Takes the letters at the front of `bytes`; what is left there is the beginning of one, or what
  // is broken.
  Piece Take(std::string& bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kaunter
