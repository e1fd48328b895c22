#include "loans/refusal.h"

#include <fmt/format.h>

namespace kaunter {

Caption LoanNotFound(std::string_view loan_id) {
  return {fmt::format("Loan ID {} not found", loan_id), fmt::format("找不到贷款编号 {}", loan_id)};
}

}  // namespace kaunter
