#include "core/popup_frm.h"

#include <fmt/format.h>

#include <utility>

#include "core/boxes.h"
#include "core/picker_columns.h"
#include "core/values.h"
#include "platform/sql/data_source.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kSearchLength = 300;  // as the longest column that is searched

Caption TitleOf(const Picker& picker, const std::string& caller) {
  const std::string behind = caller.empty() ? "" : " - " + caller;
  if (picker.title_word.english.empty()) return {"Popup" + behind, "搜索" + behind};
  return {picker.title_word.english + " Popup" + behind,
          picker.title_word.chinese + "搜索" + behind};
}

}  // namespace

PopupFrm::PopupFrm(Session& session, Desk& desk)
    : SessionScreen("PopupFrm", {"Popup", "搜索"}, session, desk) {
  SearchString.max_length = kSearchLength;
  SearchString.onKey = [this](std::string_view key) { OnSearchKey(key); };
  SearchCmd.onClick = [this] { Search(); };
  for (ComboBox* box :
       {&SortOrder, &CompCode, &AreaCode, &LoanGroupID, &LoanTypeID, &CollectInfoID}) {
    box->onPick = [this] { pages_.First(); };
  }
  HideLoanChk.onClick = [this] { pages_.First(); };
  DG.onOpen = [this](int, int) { Choose(); };
  DG.onKey = [this](std::string_view key) { OnGridKey(key); };
  Command2.onClick = [this] { pages_.Next(); };
  Command3.onClick = [this] { pages_.Previous(); };
  SaveCmd.onClick = [this] { Choose(); };
  Command1.onClick = [this] { Close(); };
}

void PopupFrm::Load() {
  try {
    TakeHandOver();
    OfferFilters();
    OfferSorts();
    pages_.Start();
    // What was typed before has been looked for already: Enter chooses.
    if (!SearchString.empty() && DG.RowCount() > 0) FocusOn(DG);
  } catch (const std::exception&) {
    Close();
    throw;
  }
}

// CallerTag is empty from here on, so that every way out but a choice means "nothing chosen".
void PopupFrm::TakeHandOver() {
  const std::string name = std::exchange(session().PickerName, {});
  extra_ = std::exchange(session().PickerExtra, {});
  SearchString.SetText(std::exchange(session().CallerTag, {}));
  picker_ = &FindPicker(name);
  SetTitle(TitleOf(*picker_, session().MsgTitle));
}

void PopupFrm::OfferFilters() {
  const auto offer = [this](ComboBox& box, const std::string& column, std::string_view table) {
    box.SetVisible(!column.empty());
    if (column.empty()) return;
    if (table.empty()) {
      FillCompanies(box, session());
    } else {
      FillItems(box, main(), fmt::format("SELECT {0} FROM {1} ORDER BY {0}", box.name(), table));
    }
    OfferNothing(box);  // the way back to all
  };
  offer(CompCode, picker_->company, "");
  offer(AreaCode, picker_->area, "AreaMast");
  offer(LoanGroupID, picker_->loan_group, "LoanGroupMast");
  offer(LoanTypeID, picker_->loan_type, "LoanTypeMast");
  offer(CollectInfoID, picker_->collect_info, "CollectInfoMast");
  HideLoanChk.SetVisible(!picker_->loan_balance.empty());
  for (Control* control :
       {static_cast<Control*>(&SearchString), static_cast<Control*>(&SearchCmd)}) {
    control->SetVisible(!picker_->searched.empty());
  }
  for (Control* control : {static_cast<Control*>(&iLimit), static_cast<Control*>(&Command2),
                           static_cast<Control*>(&Command3), static_cast<Control*>(&Label8)}) {
    control->SetVisible(picker_->paged);
  }
}

void PopupFrm::OfferSorts() {
  std::vector<std::string> items;
  for (const std::string& column : picker_->sorts) {
    items.push_back(session().In(ColumnHeading(column.substr(column.find('.') + 1))));
  }
  SortOrder.SetVisible(!items.empty());
  SortOrder.SetItems(std::move(items));
  SortOrder.SetIndex(SortOrder.items().empty() ? -1 : 0);
}

PickerFilter PopupFrm::Filter() const {
  PickerFilter filter;
  filter.search = SearchString.text();
  filter.extra = extra_;
  filter.comp_code = CompCode.text();
  filter.area_code = AreaCode.text();
  filter.loan_group_id = LoanGroupID.text();
  filter.loan_type_id = LoanTypeID.text();
  filter.collect_info_id = CollectInfoID.text();
  filter.hide_settled = HideLoanChk.checked();
  filter.sort = static_cast<std::size_t>(std::max(SortOrder.index(), 0));
  filter.texts_indexed = AreTextsIndexed(session().Main());
  return filter;
}

Connection& PopupFrm::Source() {
  if (!picker_->linked) return main();
  if (linked_ == nullptr) {
    if (session().LinkDBString.empty()) {
      throw SqlError(4060, "Cannot open LinkDB: the setting LinkDB is empty");
    }
    linked_ =
        OpenConnection("LinkDB", session().LinkDBString, session().data_sources, session().clock);
    linked_->SetTrace(session().trace);
  }
  return *linked_;
}

Recordset PopupFrm::ReadPage(int limit_from) {
  if (picker_->columns.empty()) return {{{.name = picker_->key}}, {}};
  const Hourglass hourglass(desk());
  return Source().Query(PickerStatement(session(), *picker_, Filter(), pages_.size(), limit_from));
}

void PopupFrm::ShowPage(int limit_from) {
  const Recordset rows = ReadPage(limit_from);
  pages_.Shown(limit_from);
  if (DG.columns().empty()) DG.SetColumns(PickerColumns(rows.columns()));
  DG.SetRows(PickerRows(rows));
  DG.SetCurrentRow(0);
  const bool found = DG.RowCount() > 0;
  SaveCmd.SetEnabled(found);
  if (!found) Tell(MessageKind::information, {"No record(s) found", "资料找不到"});
}

void PopupFrm::Search() {
  pages_.First();
  // So that Enter, pressed once more, chooses.
  if (DG.RowCount() > 0) FocusOn(DG);
}

void PopupFrm::Choose() {
  const int row = DG.current_row();
  if (row < 0 || closed()) return;
  session().CallerTag = DG.Cell(row, 0);
  Close();
}

void PopupFrm::OnGridKey(std::string_view key) {
  if (key == "Enter") {
    Choose();
  } else if (key == "PgDn") {
    if (picker_->paged) pages_.Next();
  } else if (key == "PgUp") {
    if (picker_->paged) pages_.Previous();
  } else if (key == "Type" && SearchString.Reachable()) {
    FocusOn(SearchString);
  }
}

void PopupFrm::OnSearchKey(std::string_view key) {
  if (key == "Enter") {
    Search();
  } else if (key == "Down" && DG.RowCount() > 0) {
    FocusOn(DG);
  } else if (key == "PgDn" || key == "PgUp") {
    OnGridKey(key);
  }
}

}  // namespace kaunter
