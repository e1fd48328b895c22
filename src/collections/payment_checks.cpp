#include "collections/payment_checks.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/session.h"
#include "core/values.h"

namespace kaunter {

std::optional<Refusal> CheckDrawn(Money pay, Money paid_out) {
  if (pay <= Money() || !paid_out.IsZero()) return std::nullopt;
  return Refusal{"", kNotDrawn};
}

std::optional<Refusal> CheckDiscountRight(const Session& session, Money discount) {
  if (discount <= Money() || session.AllowDisc) return std::nullopt;
  const std::string& user = session.CurrentUserID;
  return Refusal{"DiscAmt",
                 {fmt::format("User {} are not allow to save discount payment", user),
                  fmt::format("用户 {} 不可储存有折扣的付款", user)}};
}

std::optional<Refusal> CheckTally(Money pay, Money instalment, Money extra, bool flexi) {
  if (instalment + extra <= pay) return std::nullopt;
  return Refusal{
      flexi ? "InstalAmt" : "PayAmt",
      {"Instalment & Extra not tally with Payment Amount", "分期付款与额外本金不符付款额"}};
}

std::optional<Refusal> CheckSomethingPaid(std::initializer_list<Money> amounts) {
  if (std::any_of(amounts.begin(), amounts.end(), [](Money a) { return !a.IsZero(); })) {
    return std::nullopt;
  }
  return Refusal{"TotPay", {"No payment", "没有付款"}};
}

std::optional<Refusal> CheckRefund(Money refund, Money refunded, Money deposit) {
  if (refunded + refund <= deposit) return std::nullopt;
  const Money left = deposit - refunded;
  if (left <= Money()) {
    return Refusal{
        "ChargeAmt",
        {"This loan has no deposit or fully refunded", "此贷款没有押金或押金已全部退还"}};
  }
  return Refusal{"ChargeAmt",
                 {fmt::format("Refund Deposit cannot more than {} Deposit Amount, Please check",
                              ShowMoney(left)),
                  fmt::format("退还押金不可多过押金 {}，请检查", ShowMoney(left))}};
}

}  // namespace kaunter
