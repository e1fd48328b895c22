#include "collections/refusals.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {

Caption NoPaymentFor(std::string_view status) {
  return {fmt::format("No payment for {} loan", status),
          fmt::format("状态 {} 的贷款不可付款", status)};
}

Caption AboveOpen(Money limit) {
  return {fmt::format("Total payment cannot more than {}", ShowMoney(limit)),
          fmt::format("付款总额不可多过 {}", ShowMoney(limit))};
}

}  // namespace kaunter
