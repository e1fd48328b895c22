#include "core/picker_statement.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "core/company_access.h"
#include "core/paging.h"
#include "core/values.h"

namespace kaunter {
namespace {

std::string CompanyOf(const Session& session, const Picker& picker) {
  if (picker.company.empty()) return {};
  const std::string own = CompanyCondition(session, picker.company);
  if (own.empty() || picker.also_company.empty()) return own;
  return fmt::format("({} or ({}))", CompanyCondition(session, picker.also_company), own);
}

std::string LikeAny(const std::vector<std::string>& columns, const std::string& text) {
  std::vector<std::string> likes;
  for (const std::string& column : columns) {
    likes.push_back(fmt::format("{} like '%{}%'", column, EscapeQuotes(text)));
  }
  return fmt::format("({})", fmt::join(likes, " or "));
}

std::vector<std::string> Conditions(const Session& session, const Picker& picker,
                                    const PickerFilter& filter) {
  std::vector<std::string> all;
  const auto add = [&all](std::string condition) {
    if (!condition.empty()) all.push_back(std::move(condition));
  };
  const auto equal = [&add](const std::string& column, const std::string& wanted) {
    if (!column.empty() && !wanted.empty()) add(column + "=" + QuoteStr(wanted));
  };
  add(CompanyOf(session, picker));
  add(picker.condition);
  if (picker.extra != nullptr) add(picker.extra(filter.extra));
  equal(picker.company, filter.comp_code);
  if (!picker.loan_balance.empty() && filter.hide_settled) add(picker.loan_balance + " > 0");
  equal(picker.area, filter.area_code);
  equal(picker.loan_group, filter.loan_group_id);
  equal(picker.loan_type, filter.loan_type_id);
  equal(picker.collect_info, filter.collect_info_id);
  if (!picker.searched.empty() && !filter.search.empty()) {
    add(LikeAny(picker.searched, filter.search));
  }
  return all;
}

std::string ExtraColumns(const Picker& picker, const PickerFilter& filter) {
  return picker.extra_columns == nullptr ? "" : picker.extra_columns(filter.extra);
}

std::vector<std::string> SortColumns(const Picker& picker, const PickerFilter& filter) {
  std::vector<std::string> columns;
  if (!ExtraColumns(picker, filter).empty()) columns.emplace_back(kOwnFirst);
  if (!picker.order.empty()) columns.push_back(picker.order);
  if (filter.sort < picker.sorts.size()) columns.push_back(picker.sorts[filter.sort]);
  if (std::find(columns.begin(), columns.end(), picker.key) == columns.end()) {
    columns.push_back(picker.key);
  }
  return columns;
}

}  // namespace

std::string PickerStatement(const Session& session, const Picker& picker,
                            const PickerFilter& filter, int page_size, int limit_from) {
  const std::string extra = ExtraColumns(picker, filter);
  std::string rows =
      fmt::format("{}{}{} FROM {}", picker.columns, extra.empty() ? "" : ",", extra, picker.source);
  const std::vector<std::string> conditions = Conditions(session, picker, filter);
  if (!conditions.empty()) rows += fmt::format("  WHERE {}", fmt::join(conditions, " AND "));
  if (!picker.group_by.empty()) rows += " GROUP BY " + picker.group_by;
  const std::vector<std::string> sort = SortColumns(picker, filter);
  if (!picker.paged) return fmt::format("SELECT {} {}", rows, OrderBy(sort, ""));
  return PageStatement(rows, sort, false, page_size, limit_from);
}

}  // namespace kaunter
