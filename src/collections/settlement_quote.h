// What a customer must pay to close his loan early on a given day. No screen in it.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// What is owed on a loan before anything is forgiven.
struct OwedLoan {
  std::string LoanID;
  bool personal = true;  // false: flexi, whose balance is capital alone
  Money LoanBal;
  Money OthBal;  // late charges less late interest paid; below 0 when too much was paid

  Money TotalBal() const { return LoanBal + OthBal; }
};

// One redemption date.
struct QuoteColumn {
  Money NPayment;    // towards the schedule
  Money EPayment;    // personal: the discount; flexi: capital that is not due yet
  Money OPayment;    // other charges
  Money SettledAmt;  // what the customer pays
};

// A personal loan's balance holds capital and interest. Its rebate is the whole interest of the
// rows due after the date; no part is kept back by a rule of 78. The discount is the distance of
// balance and amount, the other charges within it: that is no mistake.
QuoteColumn QuotePersonal(const OwedLoan& loan, Money interest_not_due);

// A flexi loan's balance is capital: the interest due by the date comes on top, and the capital
// that is not due goes in as extra capital.
QuoteColumn QuoteFlexi(const OwedLoan& loan, Money interest_due, Money capital_due);

// The column of a date (dd-mm-yyyy) with the schedule as it is stored. Throws SqlError;
// std::invalid_argument for a text that is no date.
QuoteColumn QuoteOn(Connection& main, const OwedLoan& loan, std::string_view date);

}  // namespace kaunter
