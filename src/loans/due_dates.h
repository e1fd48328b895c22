// The due dates of a schedule: row after row from the first.
#pragma once

#include <string>

#include "platform/date_time.h"

namespace kaunter {

class DueDates {
 public:
  // `code` as StepDate takes it.
  DueDates(std::string code, const DateTime& first);
  // The date of the next row; the first call gives the first date itself. Throws what StepDate
  // throws.
  DateTime Next();

 private:
  // Back toward the first date's day where the month has room for it.
  DateTime TowardOriginalDay(const DateTime& stepped) const;

  std::string code_;
  DateTime first_;
  DateTime running_;
  bool started_ = false;
};

}  // namespace kaunter
