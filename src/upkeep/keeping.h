// Which backups are kept: the newest of each of the last days, weeks and months.
//
// The last days are those that have a backup, however far apart they lie: an office that was shut
// for a month, or a clock that was wrong for a day, makes nobody lose the backups before that. One
// that is dated after today takes no day's place, and is left alone until its day has come.
#pragma once

#include <string>
#include <vector>

#include "platform/date_time.h"

namespace kaunter {

struct Keeping {
  int days = 7;
  int weeks = 5;  // from Monday on
  int months = 12;

  // "7,5,12". Throws CaptionError for what is none; each is 1 to 999.
  static Keeping Parse(const std::string& text);
};

// Which of the backups that were made at these moments go, as places in `made`. None of the last 48
// hours does: what somebody made by hand before a risky day stands beside the night's.
std::vector<std::size_t> Outlived(const std::vector<DateTime>& made, const DateTime& now,
                                  const Keeping& keeping);

}  // namespace kaunter
