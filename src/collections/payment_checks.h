// What a payment is refused for, whatever else stands on its screen. Without a screen: a payment
// that comes out of a file passes the same checks.
#pragma once

#include <initializer_list>
#include <optional>

#include "collections/refusals.h"
#include "core/refusal.h"
#include "platform/money.h"

namespace kaunter {

class Session;

// The money must have gone out before any of it comes back.
std::optional<Refusal> CheckDrawn(Money pay, Money paid_out);
std::optional<Refusal> CheckDiscountRight(const Session& session, Money discount);
// `open` is asked for a flexi loan alone: what is open on its schedule.
template <typename Open>
std::optional<Refusal> CheckBalance(Money pay, Money balance, bool flexi, const Open& open) {
  if (pay <= balance) return std::nullopt;
  if (!flexi) return Refusal{"PayAmt", kAboveBalance};
  const Money limit = open();
  if (pay <= limit) return std::nullopt;
  return Refusal{"PayAmt", AboveOpen(limit)};
}
// Less than the payment passes: the difference reaches no row of the schedule, and that is wanted.
std::optional<Refusal> CheckTally(Money pay, Money instalment, Money extra, bool flexi);
std::optional<Refusal> CheckSomethingPaid(std::initializer_list<Money> amounts);
// A refund out of the deposit of which `refunded` has gone back before.
std::optional<Refusal> CheckRefund(Money refund, Money refunded, Money deposit);

}  // namespace kaunter
