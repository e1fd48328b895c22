// Texts on their way to and from Windows: UTF-8 here, UTF-16 there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

std::wstring ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view utf16);

// A command line that the C library of the program takes apart again into the same words.
std::wstring CommandLine(std::string_view program, const std::vector<std::string>& arguments);

// What Windows says about its error `code` (GetLastError), in one line.
std::string WindowsError(unsigned long code);

}  // namespace kaunter
