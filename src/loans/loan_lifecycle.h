// What ends a loan's life, or begins it again: close, open back, delete. No screen in it: the
// questions and messages are the caller's.
//
// Each runs in one transaction of its own and throws what failed after rolling it back whole: an
// SqlError, or a std::runtime_error in the language in force when another desktop has changed the
// loan, whose balance closing it twice would lose. `old` holds the figures of the loan as it was
// loaded: they are taken out of the totals of customer and salesman, so that closing and opening
// back leaves TotLoan, TotLoanBal, TotTopUpAmt and TotAccComm as they were, while TotLoanAmt2 falls
// each time (loan_totals.h).
#pragma once

#include <string_view>

#include "loans/loan_totals.h"
#include "loans/schedule_store.h"
#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// The loan becomes CLOSED: CloseBal keeps the balance, LoanBal is 0.
void CloseLoan(const Session& session, const LoanKey& key, const LoanFigures& old);

// The loan becomes ACTIVE with the balance that CloseBal kept; gives that balance.
Money OpenLoan(const Session& session, const LoanKey& key, const LoanFigures& old);

// How many payments a delete would take with it: a reason to ask once more.
int CountPayments(Connection& main, std::string_view loan_id);

// The loan goes with its payments, charges, drawdowns, cheques, follow-ups, schedule and receipt
// counter; an application that had become this loan is free again. `payments` is what CountPayments
// gave when the person agreed: a loan that has taken another payment since is refused. The audit is
// written behind the commit, so a failing one does not bring the loan back; `comp_code` and
// `trx_date` (as shown) are for it.
void DeleteLoan(const Session& session, const LoanKey& key, const LoanFigures& old, int payments,
                std::string_view comp_code, std::string_view trx_date);

}  // namespace kaunter
