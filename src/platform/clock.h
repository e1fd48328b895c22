// Clock: where "now" comes from. The embedded server, the text log and the screens share one; a run
// may set it, so that tests and demos are reproducible.
#pragma once

#include <optional>

#include "platform/date_time.h"

namespace kaunter {

class Clock {
 public:
  // The set time, else the machine's local time.
  DateTime Now() const;
  void Set(DateTime now) { fixed_ = now; }
  void Reset() { fixed_.reset(); }
  // The set time; nothing when the clock runs.
  const std::optional<DateTime>& Fixed() const { return fixed_; }

 private:
  std::optional<DateTime> fixed_;
};

}  // namespace kaunter
