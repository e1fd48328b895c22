// The selection formula of a report, "{LoanMast.CompCode} = 'A' and {LoanMast.TrxDate} >= DateTime
// (2024, 1, 31, 00, 00, 00)", parsed and turned into the condition of the report's query.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// The condition in T-SQL; "" for an empty formula. Throws std::runtime_error that shows the formula
// and the place for a text that does not parse: nothing is guessed, since a wrong condition prints
// a wrong paper.
std::string FormulaToCondition(std::string_view formula);

}  // namespace kaunter
