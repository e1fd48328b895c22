// The releases of a loan's money, and what follows them on the loan. Inside the caller's
// transaction.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

// Short numbers are a key, and each company counts for itself.
std::string NextReleaseNumber(Connection& main, std::string_view company);

// PayOutAmt of the loan becomes the sum of its releases and LastDownDate the date of the latest.
// Throws RowNotFound.
void FollowReleases(Connection& main, std::string_view loan_id);

}  // namespace kaunter
