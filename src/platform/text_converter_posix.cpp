#include <iconv.h>

#include <cerrno>
#include <stdexcept>

#include "platform/text_converter.h"

namespace kaunter {

struct TextConverter::State {
  explicit State(const std::string& encoding) : converter(iconv_open("UTF-8", encoding.c_str())) {
    if (converter == reinterpret_cast<iconv_t>(-1)) {
      throw std::runtime_error("This machine does not know the encoding " + encoding);
    }
  }
  ~State() { iconv_close(converter); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  iconv_t converter;
};

TextConverter::TextConverter(const std::string& encoding)
    : state_(std::make_unique<State>(encoding)) {}

TextConverter::~TextConverter() = default;

TextConverter::Piece TextConverter::Take(std::string& bytes) {
  Piece piece;
  piece.text.resize(4 * bytes.size() + 16);
  char* from = bytes.data();
  std::size_t from_left = bytes.size();
  char* to = piece.text.data();
  std::size_t to_left = piece.text.size();
  const std::size_t result = iconv(state_->converter, &from, &from_left, &to, &to_left);
  piece.broken = result == static_cast<std::size_t>(-1) && errno == EILSEQ;
  piece.text.resize(piece.text.size() - to_left);
  bytes.erase(0, bytes.size() - from_left);
  return piece;
}

}  // namespace kaunter
