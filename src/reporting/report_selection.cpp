#include "reporting/report_selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "core/values.h"
#include "reporting/report_criteria.h"

namespace kaunter {
namespace {

DateTime DateOf(std::string_view display_date) {
  const auto date = DateTime::FromDisplay(display_date);
  if (!date) throw std::invalid_argument(fmt::format("{} is no date", display_date));
  return *date;
}

// What was found so far goes behind the new piece.
void PutInFront(Selection& selection, const Selection& piece) {
  selection.formula =
      selection.formula.empty() ? piece.formula : piece.formula + " and " + selection.formula;
  selection.title = selection.title.empty() ? piece.title : piece.title + ", " + selection.title;
}

// Reports of due dates take each bound by itself.
bool TakesOpenDates(std::string_view file) {
  return IsOneOf(file, {"DueDate.rpt", "DueDateC.rpt", "DueDate3.rpt", "DueDate3C.rpt"});
}

Selection DateClause(const SelectionRequest& request) {
  const auto from = [&] {
    return request.DateField + " >= " + FormulaDate(request.DateFrom, false);
  };
  const auto to = [&] { return request.DateField + " <= " + FormulaDate(request.DateTo, true); };
  if (request.DateFrom.empty()) return {to(), "As at " + request.DateTo};
  if (request.DateTo.empty()) return {from(), "From " + request.DateFrom};
  return {from() + " AND " + to(), "From " + request.DateFrom + " to " + request.DateTo};
}

// The audit spells its column otherwise, the daily collection keeps the company in a staged column.
bool ChoosesCompany(const StagedFilter& filter) {
  if (filter.values.empty()) return false;
  for (std::string_view field : {".CompCode}", "{MasterReport.s10}", ".ConmpCode}"}) {
    if (filter.field.ends_with(field)) return true;
  }
  return false;
}

// " ({LoanMast.CompCode} = 'A'  or {LoanMast.CompCode} = 'B' ) " for each list with a value.
std::string FilterFormula(const std::vector<StagedFilter>& filters) {
  std::string formula;
  for (const StagedFilter& filter : filters) {
    if (filter.values.empty()) continue;
    if (!formula.empty()) formula += " and ";
    formula += " (";
    for (std::size_t i = 0; i < filter.values.size(); ++i) {
      // An apostrophe goes in unchanged; the engine tells a formula that it cannot read.
      formula += (i == 0 ? "" : " or ") + filter.field + " = '" + filter.values[i] + "' ";
    }
    formula += ") ";
  }
  return formula;
}

}  // namespace

std::optional<Selection> BuildSelectionFormula(SelectionRequest& request) {
  Selection selection{FilterFormula(request.filters), FilterTitle(request.filters)};
  if (request.IDTo.empty()) request.IDTo = request.IDFrom;
  if (!request.IDFrom.empty() && !request.IDField.empty()) {
    PutInFront(selection, {fmt::format("{0} >= '{1}' and {0} <= '{2}' ", request.IDField,
                                       request.IDFrom, request.IDTo),
                           "From " + request.IDFrom + " - " + request.IDTo});
  }
  const bool open = TakesOpenDates(request.file);
  if (!open && request.DateTo.empty()) request.DateTo = request.DateFrom;
  if (!request.DateFrom.empty() || (open && !request.DateTo.empty())) {
    PutInFront(selection, DateClause(request));
  }
  // Asked of what is chosen, and not of the text: any box could hold the words.
  if (request.level < 4 && request.CompanyRequired &&
      std::none_of(request.filters.begin(), request.filters.end(), ChoosesCompany)) {
    return std::nullopt;
  }
  return selection;
}

void AndAlso(std::string& formula, std::string_view condition) {
  if (!formula.empty()) formula += " and";
  formula += " " + std::string(condition);
}

std::string DateParameter(std::string_view display_date) {
  return "date(" + Format(DateOf(display_date), "yyyy,mm,dd") + ")";
}

std::string FormulaDate(std::string_view display_date, bool end_of_day) {
  const DateTime date = DateOf(display_date);
  return fmt::format("DateTime ({}, {}, {}, {})", date.year, date.month, date.day,
                     end_of_day ? "23, 59, 59" : "00, 00, 00");
}

}  // namespace kaunter
