#include "platform/clock.h"

#include <ctime>

namespace kaunter {

DateTime Clock::Now() const {
  if (fixed_) return *fixed_;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  // A leap second has no place in the database: it counts as the one before it.
  const int second = local.tm_sec > 59 ? 59 : local.tm_sec;
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     second};
}

}  // namespace kaunter
