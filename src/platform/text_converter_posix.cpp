#include <iconv.h>

#include <cerrno>
#include <stdexcept>

#include "platform/text_converter.h"

namespace kaunter {
namespace {

const char* NameOf(Encoding encoding) {
  constexpr const char* kNames[] = {"", "UTF-8", "UTF-16LE", "UTF-16BE", "WINDOWS-1252", "GB18030"};
  return kNames[static_cast<std::size_t>(encoding)];
}

}  // namespace

struct TextConverter::State {
  explicit State(const char* encoding) : converter(iconv_open("UTF-8", encoding)) {
    if (converter == reinterpret_cast<iconv_t>(-1)) {
      throw std::runtime_error(std::string("This machine does not know the encoding ") + encoding);
    }
  }
  ~State() { iconv_close(converter); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  iconv_t converter;
};

TextConverter::TextConverter(Encoding encoding)
    : state_(std::make_unique<State>(NameOf(encoding))) {}

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
