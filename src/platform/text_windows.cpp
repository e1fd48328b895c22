#include <windows.h>

#include "platform/windows_text.h"

namespace kaunter {
namespace {

// A backslash counts only in front of a quotation mark.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  std::size_t slashes = 0;
  for (const wchar_t c : argument) {
    if (c == L'"') quoted.append(slashes + 1, L'\\');
    slashes = c == L'\\' ? slashes + 1 : 0;
    quoted += c;
  }
  quoted.append(slashes, L'\\');
  return quoted + L'"';
}

}  // namespace

std::wstring ToWide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide;
  if (size == 0) return wide;
  wide.resize(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)));
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string FromWide(std::wstring_view utf16) {
  const int size = static_cast<int>(utf16.size());
  std::string narrow;
  if (size == 0) return narrow;
  narrow.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, nullptr, 0, nullptr, nullptr)));
  WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, narrow.data(),
                      static_cast<int>(narrow.size()), nullptr, nullptr);
  return narrow;
}

std::wstring CommandLine(std::string_view program, const std::vector<std::string>& arguments) {
  std::wstring line = Quoted(ToWide(program));
  for (const std::string& argument : arguments) line += L' ' + Quoted(ToWide(argument));
  return line;
}

std::string WindowsError(unsigned long code) {
  wchar_t* words = nullptr;
  const unsigned long length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<wchar_t*>(&words), 0, nullptr);
  std::string text = length > 0 ? FromWide({words, length}) : "";
  LocalFree(words);
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
  return text.empty() ? "error " + std::to_string(code) : text;
}

}  // namespace kaunter
