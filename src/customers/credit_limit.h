// The credit limit of a customer: how much of it is used by the capital of the loans.
//
// With the type "Full Settled" a loan uses its whole capital until it is settled; with any other
// type it uses the capital not yet paid back. An empty type means no limit.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;
class Desk;

// Capital in use, leaving out one loan ("" for none). Throws SqlError.
Money CreditUsed(Connection& main, std::string_view cust_id, std::string_view type,
                 std::string_view except_loan = {});

struct CreditBar {
  Money limit;
  Money used;
  double share_used = 0;  // 0 to 1; 1 when there is no limit or more than all is used
  std::string label;      // "#,##0.00" of what is available
  std::string tip;
};
// The bar of the customer screen. Its label passes through a 32-bit number, so large limits lose
// sen on the way; that is how the label has always read.
CreditBar MeasureCredit(Connection& main, std::string_view cust_id, Money limit,
                        std::string_view type);

// True when the loan of this amount fits under the limit; else `available` is what is left. A
// failure is told and gives true's opposite.
bool CheckCreditLimit(Session& session, Desk& desk, std::string_view cust_id,
                      std::string_view loan_id, Money amount, Money* available);

}  // namespace kaunter
