// What a loan adds to the totals of its customer and of its salesman, and how that is taken back.
//
// Both run inside the caller's transaction. The totals are read and written back, and three things
// that look like mistakes are none: TotLoanAmt2 of the customer falls with each reversal and is
// never added to; a new loan counts with the sum of its instalments, an old one with its balance; a
// customer or salesman who is not there is passed over.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

class Session;

// The figures of a loan that its customer's and salesman's totals hold.
struct LoanFigures {
  Money LoanAmt;
  Money LoanBal;
  Money LoanAmt2;
  Money TopUpAmt;
  Money PayOutAmt;  // in no total; what the audit shows as the old value
  Money SalesmanComm;
  std::string SalesmanID;
  bool operator==(const LoanFigures&) const = default;
};

// From the current row of a query of LoanMast that holds these columns.
LoanFigures ReadLoanFigures(const Recordset& row);

// What a write is stopped with when another desktop has changed the loan.
Caption LoanChangedMeanwhile(std::string_view loan_id);

// Inside the transaction that reverses them. Throws std::runtime_error, in the language in force,
// when the stored figures are no longer those that were loaded: what another desktop changed would
// be taken out of the totals wrong. A loan that is gone passes; the write itself tells it.
void RequireUnchanged(const Session& session, std::string_view loan_id, const LoanFigures& loaded);

// What a new loan adds to TotLoanBal: FirstPayment + LastPayment + (T - 2) x InstallmentAmt, in
// double. `loan_term` is T; throws std::invalid_argument when it is no number.
Money NewLoanBalance(Money first_payment, Money instalment, Money last_payment,
                     std::string_view loan_term);

// Takes the figures that the loan had when it was loaded out of the totals.
void ReverseLoanTotals(Connection& main, std::string_view cust_id, const LoanFigures& old);
// Adds the loan's figures; `loan.LoanBal` is what goes to TotLoanBal.
void AddLoanTotals(Connection& main, std::string_view cust_id, const LoanFigures& loan);

}  // namespace kaunter
