// Whose rows a report may print. Below level 4 the engine narrows each condition of a query to the
// companies that the person may see, whatever the formula of the print says.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// The column that tells the company of the rows at a place of a statement: that of the first table
// of records in whose reach the place stands, a loan, a payment or a charge before the customer
// that it belongs to; "" when there is none. `before` is the statement up to the place.
std::string CompanyColumn(std::string_view before);
// The statement reads a table whose rows belong to companies.
bool ReadsCompanies(std::string_view statement);

}  // namespace kaunter
