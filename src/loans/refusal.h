// Refusal: an input that does not fit, told as a value: the control it is about and what to say.
#pragma once

#include <string>
#include <utility>

#include "screen/caption.h"

namespace kaunter {

struct Refusal {
  std::string field;  // name of the control ("LoanTerm")
  Caption text;
};

}  // namespace kaunter
