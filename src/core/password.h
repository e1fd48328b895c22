// The password hash as UserMast keeps it: MD5 of the typed text, one byte a character, as 32
// upper-case hexadecimal digits. No salt and no stretching: stored hashes of older versions must go
// on matching.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// `typed` is UTF-8; each character contributes the low eight bits of its code in the Western ANSI
// page.
std::string PasswordHash(std::string_view typed);

}  // namespace kaunter
