// What a person has picked in the filter lists of a report, as the statements and titles say it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

// One filter list with the values picked in it; without a value it does not filter.
struct StagedFilter {
  std::string label;
  std::string field;  // as the report knows it: "{LoanMast.CompCode}"
  std::vector<std::string> values;
};

// The last part of the field: "{LoanMast.CompCode}" is the column CompCode.
std::string ColumnOf(const StagedFilter& filter);
// The list of this column when it has a value; nullptr otherwise.
const StagedFilter* PickedList(const std::vector<StagedFilter>& filters, std::string_view column);

// "(l.CompCode = 'AB'  or l.CompCode = 'CD' ) ": the values of one list. The alias is "l." or the
// like; "" leaves the column bare.
std::string ListCondition(const StagedFilter& filter, std::string_view alias);
// The same for every list with a value, each with " AND " before it: it goes behind a condition.
std::string AndConditions(const std::vector<StagedFilter>& filters, std::string_view alias);

// The conditions on a statement that reads LoanMast alone, joined by " and ". What is asked of the
// customer's own columns becomes a condition on CustID.
std::string FilterAsSql(const std::vector<StagedFilter>& filters);

// " (Company Code - AB or CD) ,  (Loan Type - MONTH) ": what the report's title says of the filter.
std::string FilterTitle(const std::vector<StagedFilter>& filters);

}  // namespace kaunter
