// The releases of a loan's money, and what follows them on the loan. Inside the caller's
// transaction.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// Short numbers are a key, and each company counts for itself.
std::string NextReleaseNumber(Connection& main, std::string_view company);

// PayOutAmt of the loan becomes the sum of its releases and LastDownDate the date of the latest.
// Throws RowNotFound.
void FollowReleases(Connection& main, std::string_view loan_id);

// What was paid out of a loan elsewhere, before it came here.
struct OldRelease {
  std::string LoanID;
  std::string CustID;
  std::string CompCode;
  std::string TrxDate;  // as a literal
  Money DrawDownAmt;
  std::string Payee;
  std::string Bank;
};
// One release of it all, which the loan follows; `now` is a literal. Throws SqlError, RowNotFound.
void AddOldRelease(Connection& main, const OldRelease& release, std::string_view user,
                   std::string_view now);

}  // namespace kaunter
