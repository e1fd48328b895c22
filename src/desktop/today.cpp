#include "desktop/today.h"

#include <utility>

namespace kaunter {

namespace {

std::function<DateTime()> now_in_force;

}  // namespace

void TakeTodayFrom(std::function<DateTime()> now) { now_in_force = std::move(now); }

QDate Today() {
  if (!now_in_force) return QDate::currentDate();
  const DateTime now = now_in_force();
  return {now.year, now.month, now.day};
}

}  // namespace kaunter
