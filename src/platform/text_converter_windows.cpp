#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "platform/text_converter.h"
#include "platform/windows_text.h"

namespace kaunter {
namespace {

constexpr UINT kWestern = 1252;

UINT PageOf(Encoding encoding) {
  constexpr UINT kNone = 0;         // UTF-16
  constexpr UINT kChinese = 54936;  // GB18030
  constexpr UINT kPages[] = {kNone, CP_UTF8, kNone, kNone, kWestern, kChinese};
  return kPages[static_cast<std::size_t>(encoding)];
}

// How many bytes the letter that begins with these takes; more than there are when it is cut.
std::size_t LengthOf(UINT page, std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (page == kWestern || lead < 0x80) return 1;
  if (page == CP_UTF8) return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
  if (bytes.size() < 2) return 2;
  return bytes[1] >= '0' && bytes[1] <= '9' ? 4 : 2;
}

bool IsHigh(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(wchar_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

struct TextConverter::State {
  UINT page = 0;
  bool big_end_first = false;

  // Nothing for bytes of which one is no letter.
  std::wstring Wide(std::string_view bytes) const {
    std::wstring wide(bytes.size(), L'\0');
    const int length = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(),
                                           static_cast<int>(bytes.size()), wide.data(),
                                           static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    // Bytes of the Western page that stand for nothing come as controls.
    const bool for_nothing =
        page == kWestern &&
        std::any_of(wide.begin(), wide.end(), [](wchar_t c) { return c >= 0x80 && c < 0xA0; });
    return for_nothing ? std::wstring() : wide;
  }

  Piece TakePaged(std::string& bytes) const {
    std::size_t whole = 0;
    while (whole < bytes.size()) {
      const std::size_t length = LengthOf(page, std::string_view(bytes).substr(whole));
      if (whole + length > bytes.size()) break;
      whole += length;
    }
    Piece piece;
    if (whole == 0) return piece;
    std::wstring wide = Wide(std::string_view(bytes).substr(0, whole));
    if (wide.empty()) {  // up to the one that is broken
      piece.broken = true;
      for (whole = 0;;) {
        const std::string_view rest = std::string_view(bytes).substr(whole);
        const std::wstring letter = Wide(rest.substr(0, LengthOf(page, rest)));
        if (letter.empty()) break;
        wide += letter;
        whole += LengthOf(page, rest);
      }
    }
    piece.text = FromWide(wide);
    bytes.erase(0, whole);
    return piece;
  }

  Piece TakeWide(std::string& bytes) const {
    Piece piece;
    std::wstring wide;
    std::size_t at = 0;
    const auto unit = [&](std::size_t i) {
      const auto first = static_cast<unsigned char>(bytes[i]);
      const auto second = static_cast<unsigned char>(bytes[i + 1]);
      return static_cast<wchar_t>(big_end_first ? first << 8 | second : second << 8 | first);
    };
    while (at + 1 < bytes.size()) {
      const wchar_t c = unit(at);
      if (IsHigh(c) && at + 3 >= bytes.size()) break;
      piece.broken = IsLow(c) || (IsHigh(c) && !IsLow(unit(at + 2)));
      if (piece.broken) break;
      wide += c;
      at += 2;
      if (!IsHigh(c)) continue;
      wide += unit(at);
      at += 2;
    }
    piece.text = FromWide(wide);
    bytes.erase(0, at);
    return piece;
  }
};

TextConverter::TextConverter(Encoding encoding) : state_(std::make_unique<State>()) {
  state_->page = PageOf(encoding);
  state_->big_end_first = encoding == Encoding::utf16be;
  if (state_->page != 0 && !IsValidCodePage(state_->page)) {
    throw std::runtime_error("This machine does not know the code page " +
                             std::to_string(state_->page));
  }
}

TextConverter::~TextConverter() = default;

TextConverter::Piece TextConverter::Take(std::string& bytes) {
  return state_->page == 0 ? state_->TakeWide(bytes) : state_->TakePaged(bytes);
}

}  // namespace kaunter
