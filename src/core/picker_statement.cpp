#include "core/picker_statement.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "core/company_access.h"
#include "core/paging.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr std::size_t kTellingFigures = 4;  // fewer are in every number
constexpr std::size_t kLongNumber = 9;      // of an identity card, of a telephone

std::string CompanyOf(const Session& session, const Picker& picker) {
  if (picker.company.empty()) return {};
  const std::string own = CompanyCondition(session, picker.company);
  if (own.empty() || picker.also_company.empty()) return own;
  return fmt::format("({} or ({}))", CompanyCondition(session, picker.also_company), own);
}

bool IsFigure(char c) { return c >= '0' && c <= '9'; }

// The figures of a text that has nothing else but dashes and blanks between them; else empty.
std::string FiguresOf(std::string_view text) {
  std::string figures;
  for (const char c : text) {
    if (IsFigure(c)) {
      figures += c;
    } else if (c != '-' && c != ' ') {
      return {};
    }
  }
  return figures;
}

// "l" of "l.LoanID".
std::string_view TableOf(std::string_view column) {
  const std::size_t point = column.find('.');
  return point == std::string_view::npos ? std::string_view() : column.substr(0, point);
}

std::vector<std::string_view> SearchedTables(const Picker& picker) {
  std::vector<std::string_view> tables;
  for (const std::string& column : picker.searched) {
    if (std::ranges::find(tables, TableOf(column)) == tables.end()) {
      tables.push_back(TableOf(column));
    }
  }
  return tables;
}

// Numbers are written with and without their dashes: both find the same. With `table`, its columns
// alone.
std::string LikeAny(const Picker& picker, const std::string& text,
                    std::optional<std::string_view> table = std::nullopt) {
  const auto passed_over = [&](std::string_view column) {
    return table && TableOf(column) != *table;
  };
  std::vector<std::string> likes;
  for (const std::string& column : picker.searched) {
    if (passed_over(column)) continue;
    likes.push_back(fmt::format("{} like '%{}%'", column, EscapeQuotes(text)));
  }
  const std::string figures = FiguresOf(text);
  for (const std::string& column : picker.numbers) {
    if (figures.size() < kTellingFigures) break;
    if (passed_over(column)) continue;
    likes.push_back(fmt::format("replace(replace({},'-',''),' ','') like '%{}%'", column, figures));
  }
  return fmt::format("({})", fmt::join(likes, " or "));
}

// The same rows, told by their keys: an index answers for one table at a time, never for a
// condition that several tables share.
std::string AmongKeys(const Picker& picker, const std::string& text) {
  std::vector<std::string> selects;
  for (const std::string_view table : SearchedTables(picker)) {
    selects.push_back(fmt::format("SELECT {} FROM {} WHERE {}", picker.key, picker.source,
                                  LikeAny(picker, text, table)));
  }
  return fmt::format("{} in ({})", picker.key, fmt::join(selects, " union "));
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
    add(LikeAny(picker, filter.search));
    if (picker.keys_first && filter.texts_indexed) add(AmongKeys(picker, filter.search));
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

bool IsNoCode(Session& session, std::string_view picker_name, std::string_view text) {
  const std::string sought = Trim(text);
  const Picker& picker = FindPicker(picker_name);
  const bool named = !sought.empty() && std::none_of(sought.begin(), sought.end(), IsFigure);
  if (picker.numbers.empty() || (!named && FiguresOf(sought).size() < kLongNumber)) return false;
  std::vector<std::string> selects;
  for (const std::string_view table : SearchedTables(picker)) {
    std::vector<std::string> exactly;
    for (const std::string& column : picker.searched) {
      if (TableOf(column) != table || column.ends_with("CustName")) continue;
      exactly.push_back(column + "=" + QuoteStr(sought));
    }
    if (exactly.empty()) continue;
    selects.push_back(fmt::format("SELECT TOP 1 {} FROM {} WHERE {}", picker.key, picker.source,
                                  fmt::join(exactly, " or ")));
  }
  return ScalarQuery(session.Main(), fmt::format("{}", fmt::join(selects, " union "))).empty();
}

}  // namespace kaunter
