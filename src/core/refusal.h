// What is said of an input that does not fit, told as a value: screens show it, and what takes
// records from a file lists it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

struct Refusal {
  std::string field;  // name of the control, and of its column ("LoanTerm")
  Caption text;
  bool in_place = false;  // the control is marked, and the focus stays where it is
};

// A record as the texts of its boxes, by the name of the column: what a check reads of a record,
// wherever it stands.
using RecordTexts = std::function<std::string(std::string_view column)>;

}  // namespace kaunter
