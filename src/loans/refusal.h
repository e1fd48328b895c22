// What is said of a loan that does not fit.
#pragma once

#include <string_view>

#include "core/refusal.h"

namespace kaunter {

Caption LoanNotFound(std::string_view loan_id);

}  // namespace kaunter
