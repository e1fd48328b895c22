// What is said of an input that does not fit.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "screen/caption.h"

namespace kaunter {

// Told as a value: the control it is about and what to say.
struct Refusal {
  std::string field;  // name of the control ("LoanTerm")
  Caption text;
};

Caption LoanNotFound(std::string_view loan_id);

}  // namespace kaunter
