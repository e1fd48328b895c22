#include "reporting/report_filter.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {
namespace {

bool OfCustomer(const StagedFilter& filter) { return filter.field.starts_with("{CustMast."); }

}  // namespace

std::string ColumnOf(const StagedFilter& filter) {
  const std::size_t point = filter.field.rfind('.');
  std::string column = filter.field.substr(point == std::string::npos ? 0 : point + 1);
  if (column.ends_with('}')) column.pop_back();
  return column;
}

const StagedFilter* PickedList(const std::vector<StagedFilter>& filters, std::string_view column) {
  for (const StagedFilter& filter : filters) {
    if (!filter.values.empty() && SameText(ColumnOf(filter), column)) return &filter;
  }
  return nullptr;
}

std::string ListCondition(const StagedFilter& filter, std::string_view alias) {
  std::string condition;
  for (const std::string& value : filter.values) {
    condition += fmt::format("{}{}{} = {} ", condition.empty() ? "(" : " or ", alias,
                             ColumnOf(filter), QuoteStr(value));
  }
  return condition + ") ";
}

std::string AndConditions(const std::vector<StagedFilter>& filters, std::string_view alias) {
  std::string conditions;
  for (const StagedFilter& filter : filters) {
    if (!filter.values.empty()) conditions += " AND " + ListCondition(filter, alias);
  }
  return conditions;
}

std::string FilterAsSql(const std::vector<StagedFilter>& filters) {
  std::string conditions;
  for (const StagedFilter& filter : filters) {
    if (filter.values.empty()) continue;
    if (!conditions.empty()) conditions += " and ";
    const std::string condition = " " + ListCondition(filter, "");
    conditions += OfCustomer(filter)
                      ? fmt::format("CustID in (select CustID from CustMast where {})", condition)
                      : condition;
  }
  return conditions;
}

std::string FilterTitle(const std::vector<StagedFilter>& filters) {
  std::string title;
  for (const StagedFilter& filter : filters) {
    if (filter.values.empty()) continue;
    if (!title.empty()) title += ", ";
    title += " (" + filter.label + " - ";
    for (std::size_t i = 0; i < filter.values.size(); ++i) {
      title += (i == 0 ? "" : " or ") + filter.values[i];
    }
    title += ") ";
  }
  return title;
}

}  // namespace kaunter
