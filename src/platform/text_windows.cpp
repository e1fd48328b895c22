#include <windows.h>

#include "platform/windows_text.h"

namespace kaunter {

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
