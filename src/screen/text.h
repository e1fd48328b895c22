// The few text rules that controls need and that know nothing of databases.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kaunter {

// Characters (not bytes) of a UTF-8 text; a stray byte counts as one.
std::size_t CharacterCount(std::string_view utf8);
// No more than the first `count` characters; never a part of one.
std::string_view FirstCharacters(std::string_view utf8, std::size_t count);

// Equal without regard to ASCII case: names of controls and screens, entries of a list.
bool SameName(std::string_view a, std::string_view b);

// A caption without its keyboard mark: "&Save" gives "Save", "P && L" gives "P & L".
std::string WithoutMnemonic(std::string_view caption);

// Digits without signs that fill `mask` ("######-##-####") exactly get its signs; any other text
// comes back as it is.
std::string ApplyMask(std::string_view mask, std::string text);

}  // namespace kaunter
