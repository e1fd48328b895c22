// Today, as the program has it: the server's date, whatever the PC's own clock shows.
#pragma once

#include <QDate>
#include <functional>

#include "platform/date_time.h"

namespace kaunter {

// `now` works as long as there are date boxes; without one it is the machine's date.
void TakeTodayFrom(std::function<DateTime()> now);
QDate Today();

}  // namespace kaunter
