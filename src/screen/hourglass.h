// Hourglass: the busy pointer for the time of a work; it goes whatever ends the work.
#pragma once

#include "screen/desk.h"

namespace kaunter {

class Hourglass {
 public:
  explicit Hourglass(Desk& desk) : desk_(desk) { desk_.Hourglass(true); }
  ~Hourglass() { desk_.Hourglass(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  Desk& desk_;
};

}  // namespace kaunter
