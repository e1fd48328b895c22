// Texts of other encodings as UTF-8, piece by piece.
#pragma once

#include <memory>
#include <string>

#include "platform/text_encoding.h"

namespace kaunter {

class TextConverter {
 public:
  // Not `automatic`. Throws std::runtime_error where the machine does not know the encoding.
  explicit TextConverter(Encoding encoding);
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
