// The settlement that the main menu writes: a payment row with Settlement "1", the schedule marked
// as paid, the balance gone. Both writes run inside the caller's transaction; he commits and then
// rebuilds the loan (loans/rebuild_and_tell.h).
//
// The row carries no InstalAmt, so the rebuild walks nothing for it: the schedule and the balance
// come back as the other payments give them, and only TotDiscAmt and TotInt keep its amounts. That
// is no mistake of either.
#pragma once

#include <string>

#include "core/session.h"
#include "platform/money.h"

namespace kaunter {

struct Settlement {
  std::string PayID;  // given by CreateSettlement
  std::string LoanID;
  std::string CustID;
  std::string CompCode;
  std::string SchID;        // the first row that was open; given by CreateSettlement
  std::string PayDate;      // dd-mm-yyyy
  std::string NextDueDate;  // of the loan before it was settled; given by CreateSettlement
  Money LoanBal;            // the balance that is settled
  Money IntAmt;             // forfeit deposit
  Money DiscAmt;            // rebate: what of the balance is not received
};

// Throws SqlError; std::runtime_error when the loan's balance is no longer LoanBal.
void CreateSettlement(const Session& session, Settlement& settlement);

// Throws SqlError ("<PayID> not found" when another desktop has deleted it).
void DeleteSettlement(const Session& session, const Settlement& settlement);

}  // namespace kaunter
