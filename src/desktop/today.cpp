#include "desktop/today.h"

#include "platform/clock.h"

namespace kaunter {

namespace {

const Clock* clock_in_force = nullptr;

}  // namespace

void TakeTodayFrom(const Clock* clock) { clock_in_force = clock; }

QDate Today() {
  if (!clock_in_force) return QDate::currentDate();
  const DateTime now = clock_in_force->Now();
  return {now.year, now.month, now.day};
}

}  // namespace kaunter
