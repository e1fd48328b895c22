// The selection formula of a report, "{LoanMast.CompCode} = 'A' and {LoanMast.TrxDate} >= DateTime
// (2024, 1, 31, 00, 00, 00)", parsed and turned into the condition of the report's query.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kaunter {

// The condition in T-SQL; "" for an empty formula. `aliases` give, by a table or a table.column in
// lower case, how the query names it. Throws std::runtime_error that shows the formula and the
// place for a text that does not parse: nothing is guessed, since a wrong condition prints a wrong
// paper.
//
// An apostrophe in a value goes into a formula unchanged and may end its text too early. What then
// still reads like a formula is refused as well: a comparison without a field, and an "or" beside
// an "and" without brackets, which no screen writes.
std::string FormulaToCondition(std::string_view formula,
                               const std::map<std::string, std::string>& aliases = {});

}  // namespace kaunter
