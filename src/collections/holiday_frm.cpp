#include "collections/holiday_frm.h"

#include <fmt/format.h>

#include <set>

#include "core/boxes.h"
#include "core/record.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kFirstYear = 2000;  // dates of an earlier year show as none

const Caption kSaveFailed = {"an error occur during saving holiday", "储存假期时发生错误"};

// Of a date as it is shown.
std::string YearOf(std::string_view date) { return std::string(date.substr(date.size() - 4)); }

std::string InYear(const std::string& year) {
  return fmt::format("HolidayDate >= {} AND HolidayDate <= {}", SqlDate("01-01-" + year),
                     SqlDate("31-12-" + year));
}

bool IsHoliday(Connection& main, const std::string& date) {
  return !main.Query("SELECT HolidayDate FROM HolidayMast WHERE HolidayDate=" + SqlDate(date))
              .Eof();
}

void InsertHoliday(const Session& session, const std::string& date, const std::string& name) {
  session.Main().Execute(
      fmt::format("INSERT INTO HolidayMast (HolidayDate,HolidayName,UserID) VALUES ({},{},{})",
                  SqlDate(date), QuoteStr(name), QuoteStr(session.CurrentUserID)));
}

}  // namespace

// --- HolidayFrm

HolidayFrm::HolidayFrm(Session& session, Desk& desk)
    : SessionScreen("HolidayFrm", {"Holiday", "公共假期"}, session, desk) {
  HolidayYear.onPick = [this] { List(HolidayYear.text()); };
  DG.onOpen = [this](int row, int) { Edit(row); };
  SaveCmd.onClick = [this] { Modify({}); };
  Command1.onClick = [this] { Edit(DG.current_row()); };
  CopyCmd.onClick = [this] { CopyToNextYear(); };
}

void HolidayFrm::Load() { List(YearOf(ServerNow(main(), false))); }

void HolidayFrm::List(const std::string& year) {
  std::set<std::string> years = {year, YearOf(ServerNow(main(), false))};
  Recordset days = main().Query("SELECT HolidayDate FROM HolidayMast");
  for (; !days.Eof(); days.MoveNext()) {
    const std::string day = ShowDate(days.Field(0));
    if (!day.empty()) years.insert(YearOf(day));
  }
  HolidayYear.SetItems({years.begin(), years.end()});
  HolidayYear.SetText(year);
  FillGrid(DG, main().Query("SELECT HolidayDate,HolidayName,UserID FROM HolidayMast WHERE " +
                            InYear(year) + " ORDER BY HolidayDate"));
}

void HolidayFrm::Edit(int row) {
  if (row < 0 || row >= DG.RowCount()) {
    Tell(MessageKind::critical, {"No amendment empty data", "不可更改空的资料"});
    return;
  }
  Modify(DG.Cell(row, 0));
}

void HolidayFrm::Modify(const std::string& date) {
  HolidayModifyFrm dialog(session(), desk(), date);
  desk().ShowModal(dialog);
  List(dialog.saved_year().empty() ? HolidayYear.text() : dialog.saved_year());
}

void HolidayFrm::CopyToNextYear() {
  const std::string year = HolidayYear.text();
  const std::string next = std::to_string(CLng(year) + 1);
  if (DG.RowCount() == 0) {
    Refuse(HolidayYear, {fmt::format("{} has no holiday to copy", year),
                         fmt::format("{} 年没有可复制的假期", year)});
    return;
  }
  HolidayYear.SetMark(false);
  if (!Confirm({fmt::format("Copy {} holiday(s) of {} to {} ?\nDays that {} has already are kept",
                            DG.RowCount(), year, next, next),
                fmt::format("把 {} 年的 {} 个假期复制到 {} 年？\n{} 年已有的日子保留不变", year,
                            DG.RowCount(), next, next)})) {
    return;
  }
  int copied = 0;
  const bool done = Attempt(fmt::format("Holiday {}", next), kSaveFailed, [&] {
    Recordset days = main().Query("SELECT HolidayDate,HolidayName FROM HolidayMast WHERE " +
                                  InYear(year) + " ORDER BY HolidayDate");
    for (; !days.Eof(); days.MoveNext()) {
      // 29 February is no day of the next year.
      const std::string day = ShowDate(days.Field("HolidayDate")).substr(0, 6) + next;
      if (!IsDate(day) || IsHoliday(main(), day)) continue;
      InsertHoliday(session(), day, NullToEmpty(days.Field("HolidayName")));
      ++copied;
    }
  });
  if (!done) return;
  Tell(MessageKind::information, {fmt::format("{} holiday(s) copied to {}", copied, next),
                                  fmt::format("{} 个假期已复制到 {} 年", copied, next)});
  List(next);
}

// --- HolidayModifyFrm

HolidayModifyFrm::HolidayModifyFrm(Session& session, Desk& desk, std::string date)
    : SessionScreen("HolidayModifyFrm", {"Holiday", "公共假期"}, session, desk),
      date_(std::move(date)) {
  HolidayDate.max_length = kDateLength;
  HolidayDate.onLeave = [this] {
    HolidayDate.SetText(Trim(HolidayDate.text()));
    if (!HolidayDate.empty()) CheckDate();
  };
  SaveCmd.onClick = [this] { Save(); };
  Command2.onClick = [this] { Delete(); };
}

void HolidayModifyFrm::Load() {
  Command2.SetEnabled(!IsNew());
  const Recordset row =
      main().Query("SELECT HolidayName FROM HolidayMast WHERE HolidayDate=" + SqlDate(date_));
  HolidayName.max_length = row.columns()[0].width;
  HolidayDate.SetText(date_);
  if (!row.Eof()) HolidayName.SetText(NullToEmpty(row.Field(0)));
  loaded_ = HolidayDate.text() + HolidayName.text();
}

bool HolidayModifyFrm::RequestClose() {
  return MayDiscard(HolidayDate.text() + HolidayName.text() != loaded_);
}

bool HolidayModifyFrm::CheckDate() {
  const std::string& date = HolidayDate.text();
  if (!IsDate(date) || CLng(YearOf(date)) < kFirstYear) {
    return Refuse(HolidayDate, {"Invalid Date, Please check", "日期不正确，请检查"});
  }
  if (date != date_ && IsHoliday(main(), date)) {
    return Refuse(HolidayDate, {fmt::format("{} existed", date), fmt::format("{} 已存在", date)});
  }
  HolidayDate.SetMark(false);
  return true;
}

void HolidayModifyFrm::Save() {
  HolidayDate.SetText(Trim(HolidayDate.text()));
  HolidayName.SetText(Trim(HolidayName.text()));
  if (HolidayDate.empty()) {
    Refuse(HolidayDate, {"Date is required", "请输入日期"});
    return;
  }
  if (!CheckDate()) return;
  if (HolidayName.empty()) {
    Refuse(HolidayName, {"Holiday is required", "请输入假期"});
    return;
  }
  HolidayName.SetMark(false);
  const bool saved = Attempt("Holiday " + HolidayDate.text(), kSaveFailed, [&] {
    if (IsNew()) {
      InsertHoliday(session(), HolidayDate.text(), HolidayName.text());
      return;
    }
    ExecuteOnRow(main(),
                 fmt::format("UPDATE HolidayMast SET HolidayDate={},HolidayName={},UserID={} WHERE "
                             "HolidayDate={}",
                             SqlDate(HolidayDate.text()), QuoteStr(HolidayName.text()),
                             QuoteStr(session().CurrentUserID), SqlDate(date_)),
                 date_);
  });
  if (!saved) return;
  saved_year_ = YearOf(HolidayDate.text());
  loaded_ = HolidayDate.text() + HolidayName.text();
  if (!IsNew()) {
    Close();
    return;
  }
  // Ready for the next one.
  for (TextBox* box : {&HolidayDate, &HolidayName}) box->Clear();
  loaded_.clear();
  FocusOn(HolidayDate);
}

void HolidayModifyFrm::Delete() {
  if (!ConfirmLoss(
          {fmt::format("Confirm to delete {} ?", date_), fmt::format("确定刪除 {} ？", date_)})) {
    return;
  }
  const bool deleted = Attempt(
      "Holiday " + date_, {"an error occur during deleting holiday", "删除假期时发生错误"}, [this] {
        ExecuteOnRow(main(), "DELETE FROM HolidayMast WHERE HolidayDate=" + SqlDate(date_), date_);
      });
  if (deleted) {
    loaded_ = HolidayDate.text() + HolidayName.text();
    Close();
  }
}

}  // namespace kaunter
