// The encodings in which other programs write their text files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

enum class Encoding { automatic, utf8, utf16le, utf16be, latin1, gbk };

// By the signs at the front of a text, else by its letters.
Encoding EncodingOf(std::string_view bytes);
// A whole file as UTF-8, without the sign at its front; nothing for bytes that are no text.
std::optional<std::string> TextOfBytes(std::string bytes);

}  // namespace kaunter
