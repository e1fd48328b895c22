// Movements that a loan or a payment makes in the cash book, as rows of type "A". No screen posts
// them: offices that keep such rows have them from another program.
//
// Both run inside the caller's transaction and hold the company's balances until it ends. The
// amounts are ringgit, the dates texts as boxes show them (dd-mm-yyyy).
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct LoanMovement {
  std::string LoanID;
  std::string CompCode;
  std::string TrxDate;
  std::string CustName;
  std::string SalesmanID;
  Money PayOutAmt;
};

struct PaymentMovement {
  std::string PayID;
  std::string CompCode;
  std::string PayDate;
  std::string CustName;
  std::string SalesmanID;
  std::string CollectInfoID;  // "CHEQUE" and "BANK" go to the bank, all others to the cash
  std::string Bank;
  std::string ChqNo;
  Money PayAmt;
  Money CollectorAmt;
  Money IntAmt;
  Money ChargeAmt;
  Money DiscAmt;

  // What it brought: all amounts less the discount.
  Money Total() const;
};

// `mode` is "New Loan", "Edit Loan" or "Delete Loan"; `old_amount` what was paid out before an
// edit. An edit that changes nothing posts nothing. Any other mode throws std::invalid_argument.
void PostLoanMovement(Connection& main, std::string_view mode, const LoanMovement& loan,
                      Money old_amount);

// `mode` is "New Payment", "Edit Payment" or "Delete Payment"; `snapshot` the payment as it stood
// before an edit.
void PostPaymentMovement(Connection& main, std::string_view mode, const PaymentMovement& payment,
                         const PaymentMovement& snapshot);

}  // namespace kaunter
