// The short date of the user's regional settings, as Windows keeps it.
#include <windows.h>

#include <array>

#include "platform/regional.h"
#include "platform/windows_text.h"

namespace kaunter {

std::string MachineShortDate() {
  std::array<wchar_t, 80> pattern{};
  const int length = GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SSHORTDATE, pattern.data(),
                                     static_cast<int>(pattern.size()));
  return length > 1 ? FromWide({pattern.data(), static_cast<std::size_t>(length - 1)}) : "";
}

}  // namespace kaunter
