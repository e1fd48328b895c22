// What several screens of this room say of an input that cannot be, in one wording.
#pragma once

#include <string>
#include <string_view>

#include "core/boxes.h"     // kInvalidAmount
#include "loans/refusal.h"  // LoanNotFound
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

inline const Caption kLoanRequired{"Loan ID is required", "请输入贷款编号"};

Caption NoPaymentFor(std::string_view status);
inline const Caption kNotDrawn{"Loan not fully drawdown cannot make payment",
                               "贷款尚未全部放款，不可付款"};
inline const Caption kBeforeLoanDate{"Payment date cannot eariler than loan date",
                                     "付款日期不可早过贷款日期"};
inline const Caption kAboveBalance{"Payment amount cannot more than loan balance amount",
                                   "付款额不可多过贷款结余"};
inline const Caption kChequeTaken{"Cheque, Cannot be reuse", "支票不可重用"};
// More than is open on the schedule of a flexi loan.
Caption AboveOpen(Money limit);

}  // namespace kaunter
