// The filter lists of ReportFrm: their values, and moving them between Available and Selected.
#include <fmt/format.h>

#include <algorithm>

#include "core/company_access.h"
#include "core/values.h"
#include "reporting/report_frm.h"

namespace kaunter {
namespace {

std::vector<std::vector<std::string>> AsRows(const std::vector<std::string>& values) {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(values.size());
  for (const std::string& value : values) rows.push_back({value});
  return rows;
}

// What stands at the foot of the screen: of a long list its first values and how many there are.
std::string Shown(StagedFilter filter) {
  constexpr std::size_t kShown = 8;
  const std::size_t count = filter.values.size();
  if (count > kShown) {
    filter.values.resize(kShown);
    filter.values.back() += fmt::format(" ... {}", count);
  }
  return Trim(FilterTitle({filter}));
}

}  // namespace

void ReportFrm::LoadLists() {
  std::vector<std::string> items;
  for (const ReportFilter& filter : criteria_->filters) {
    lists_.push_back({{filter.label.english, filter.field, {}}, ValuesOf(filter.source)});
    // A list may stand twice: each must be chosen by its own name.
    std::string item = session().In(filter.label);
    if (std::find(items.begin(), items.end(), item) != items.end()) item += " (2)";
    items.push_back(std::move(item));
  }
  ListCombo.SetItems(std::move(items));
  if (!lists_.empty()) ListCombo.SetIndex(0);
  const std::initializer_list<Control*> of_lists = {&ListCombo, &List1,     &List2,  &InSingle,
                                                    &InAll,     &OutSingle, &OutAll, &SelectedLbl};
  for (Control* control : of_lists) control->SetVisible(!lists_.empty());
  ShowList();
}

std::vector<std::string> ReportFrm::ValuesOf(const FilterSource& source) {
  if (source.companies) return Companies();
  if (source.table.empty()) return source.words;
  std::vector<std::string> values;
  for (Recordset rows = main().Query(
           fmt::format("SELECT {0} FROM {1} ORDER BY {0}", source.column, source.table));
       !rows.Eof(); rows.MoveNext()) {
    const std::string value = NullToEmpty(rows.Field(0));
    if (!value.empty()) values.push_back(value);
  }
  return values;
}

std::vector<std::string> ReportFrm::Companies() {
  const bool sees_all = session().CurrentLevel >= 4;
  if (session().AllowedCompanies.empty() && !sees_all) return {session().CurrentCompCode};
  std::vector<std::string> codes;
  for (Recordset rows = main().Query("SELECT CompCode FROM CompMast ORDER BY CompCode");
       !rows.Eof(); rows.MoveNext()) {
    const std::string code = NullToEmpty(rows.Field(0));
    if (!code.empty() && (sees_all || CompanyAllowed(session(), code))) codes.push_back(code);
  }
  return codes;
}

void ReportFrm::Move(bool in, bool all) {
  if (lists_.empty()) return;
  ValueList& list = lists_[static_cast<std::size_t>(ListCombo.index())];
  std::vector<std::string>& from = in ? list.available : list.chosen.values;
  std::vector<std::string>& to = in ? list.chosen.values : list.available;
  const int row = (in ? List1 : List2).current_row();
  if (all) {
    to.insert(to.end(), from.begin(), from.end());
    from.clear();
  } else if (row >= 0) {
    to.push_back(from[static_cast<std::size_t>(row)]);
    from.erase(from.begin() + row);
  }
  ShowList();
}

void ReportFrm::ShowList() {
  if (lists_.empty()) return;
  const ValueList& list = lists_[static_cast<std::size_t>(std::max(ListCombo.index(), 0))];
  List1.SetRows(AsRows(list.available));
  List2.SetRows(AsRows(list.chosen.values));
  List1.SetCurrentRow(-1);
  List2.SetCurrentRow(-1);
  InSingle.SetEnabled(false);
  OutSingle.SetEnabled(false);
  InAll.SetEnabled(!list.available.empty());
  OutAll.SetEnabled(!list.chosen.values.empty());
  std::string filter;
  for (const ValueList& each : lists_) {
    if (each.chosen.values.empty()) continue;
    filter += (filter.empty() ? "" : ", ") + Shown(each.chosen);
  }
  SelectedLbl.SetText(filter.empty() ? session().In({"No filter", "没有筛选"}) : filter);
}

}  // namespace kaunter
