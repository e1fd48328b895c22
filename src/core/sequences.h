// The numbers of the business: text numbers made from the counters in NumberMast. Every number
// shows its parent: a payment holds its loan, a loan its customer, a customer its company.
//
// A caller runs them inside the transaction of its save, so that a rollback gives the number back.
// Nothing guards the counters between desktops beyond that: the primary key of the target table has
// the last word. A counter that would pass 2147483647 is an error (std::overflow_error), and so is
// one that holds letters (std::invalid_argument).
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

// Says that a number is used already; the series then draws the next one.
using NumberTaken = std::function<bool(const std::string& number)>;

// The next number of a letter series: "<owner>#<letters>0007", or "<letters>0007" when not
// `long_form`. Four digits at least; longer numbers stand as they are. Give `taken` where a short
// form is a primary key: each owner counts for itself, so two companies would otherwise make the
// same key.
std::string NextSeries(Connection& main, std::string_view letters, std::string_view owner,
                       bool long_form, const NumberTaken& taken = nullptr);

// "<prefix>0001" and on: the next customer of a company; makes the customer's own counter of loans.
// Drawn again while a customer or a counter of that key exists ("A" with 10,001 customers meets
// "A1").
std::string NextCustomerNumber(Connection& main, std::string_view prefix);

// "<customer>-001" and on; makes the loan's own counter of payments. A customer without a counter
// is an error (SqlError 3021). The counter holds the next number to use, where a customer's company
// holds the last one used: both are so in existing databases.
std::string NextLoanNumber(Connection& main, std::string_view cust_id);

// "<loan>-001" and on; a missing counter is made. Drawn again while that payment exists: a deleted
// settlement lowers the counter.
std::string NextPaymentNumber(Connection& main, std::string_view loan_id);

}  // namespace kaunter
