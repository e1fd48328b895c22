// The short date of the machine, as its locale tells it.
#include "platform/regional.h"

#include <langinfo.h>
#include <locale.h>

namespace kaunter {

std::string MachineShortDate() {
  locale_t machine = newlocale(LC_TIME_MASK, "", nullptr);
  if (machine == nullptr) return {};
  // strftime's letters become the pattern's: %m and %d are the two that matter.
  const std::string format = nl_langinfo_l(D_FMT, machine);
  const std::string posix = [] {
    locale_t plain = newlocale(LC_TIME_MASK, "C", nullptr);
    const std::string text = nl_langinfo_l(D_FMT, plain);
    freelocale(plain);
    return text;
  }();
  freelocale(machine);
  if (format == posix) return {};
  std::string pattern;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%' || i + 1 == format.size()) {
      pattern += format[i];
      continue;
    }
    char letter = format[++i];
    if (letter == '-' && i + 1 < format.size()) letter = format[++i];
    switch (letter) {
      case 'd':
      case 'e':
        pattern += "dd";
        break;
      case 'm':
      case 'b':
        pattern += "MM";
        break;
      case 'y':
        pattern += "yy";
        break;
      case 'Y':
        pattern += "yyyy";
        break;
      case 'D':
        pattern += "MM/dd/yy";
        break;
      case 'F':
        pattern += "yyyy-MM-dd";
        break;
      default:
        break;
    }
  }
  return pattern;
}

}  // namespace kaunter
