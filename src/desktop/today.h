// Today, as the program's clock has it: a run whose clock is set has calendars of its own time.
#pragma once

#include <QDate>

namespace kaunter {

class Clock;

// `clock` outlives every date box; without one it is the machine's date.
void TakeTodayFrom(const Clock* clock);
QDate Today();

}  // namespace kaunter
