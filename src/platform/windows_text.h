// Texts on their way to and from Windows: UTF-8 here, UTF-16 there.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

std::wstring ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view utf16);

// What Windows says about its error `code` (GetLastError), in one line.
std::string WindowsError(unsigned long code);

}  // namespace kaunter
