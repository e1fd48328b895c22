#include "reporting/report_frm.h"

#include <fmt/format.h>

#include <utility>

#include "core/boxes.h"
#include "core/picker.h"
#include "core/report_path.h"
#include "core/screen_rights.h"
#include "core/values.h"
#include "platform/host.h"

namespace kaunter {
ReportFrm::ReportFrm(Session& session, Desk& desk)
    : SessionScreen("ReportFrm", {"Report", "报告"}, session, desk) {
  for (TextBox* date : {&DateFrom, &DateTo}) {
    date->max_length = kDateLength;
    date->onLeave = [this, date] { LeaveDate(*date); };
  }
  SearchCmd1.onClick = [this] { PickInto(IDFrom); };
  SearchCmd2.onClick = [this] { PickInto(IDTo); };
  IDFrom.onKey = [this](std::string_view key) {
    if (key == "F2") SearchCmd1.Click();
  };
  IDTo.onKey = [this](std::string_view key) {
    if (key == "F2") SearchCmd2.Click();
  };
  ListCombo.onPick = [this] { ShowList(); };
  // On to the values of the list, and not to the print.
  ListCombo.onKey = [this](std::string_view key) {
    if (key == "Enter") FocusOn(List1);
  };
  List1.onRow = [this](int) { InSingle.SetEnabled(true); };
  List2.onRow = [this](int) { OutSingle.SetEnabled(true); };
  List1.onOpen = [this](int, int) { Move(true, false); };
  List2.onOpen = [this](int, int) { Move(false, false); };
  InSingle.onClick = [this] { Move(true, false); };
  InAll.onClick = [this] { Move(true, true); };
  OutSingle.onClick = [this] { Move(false, false); };
  OutAll.onClick = [this] { Move(false, true); };
  FiguresCmd.onClick = [this] { ShowFigures(); };
  SaveCmd.onClick = [this] { Print(); };
}

void ReportFrm::Load() {
  file_ = session().ReportFile;
  const std::string own_folder = std::string(kOwnReports) + "/";
  if (session().CallerTag.starts_with(own_folder)) {
    own_file_ = session().CallerTag.substr(own_folder.size());
  }
  title_ = session().MsgTitle;
  pcname_ = ThisHostName();
  criteria_ = &CriteriaOf(file_);
  const std::string heading = session().CurrentCompDesc + " - " + title_;
  SetTitle({heading, heading});
  LoanLBL.SetCaption({title_, title_});
  OfferIds();
  OfferOptionBoxes();
  LoadLists();
  FiguresCmd.SetVisible(false);
  if (Is({"YearlyLoan.rpt", "NewLampiran.rpt"})) {
    OfferShortcut(this->session(), FiguresCmd, "ReturnFiguresFrm", "");
  }
  if (!session().HandOverLoanID.empty()) LockSelectedLoan(session().HandOverLoanID);
  FillDays(std::exchange(session().HandOverDays, {}));
}

// The staged rows go whether or not the report had any.
void ReportFrm::Unload() {
  session().CallerTag.clear();
  DropStagedRows(main(), pcname_, file_);
}

void ReportFrm::OfferIds() {
  const IdBoxes ids = criteria_->ids;
  for (TextBox* box : {&IDFrom, &IDTo}) {
    box->SetVisible(ids != IdBoxes::hidden);
    box->SetEnabled(ids != IdBoxes::unused);
  }
  for (Button* button : {&SearchCmd1, &SearchCmd2}) {
    button->SetVisible(ids == IdBoxes::range && !criteria_->picker.empty());
  }
  if (ids == IdBoxes::free_text) {
    IDFrom.SetCaption({"c) ii. Amt", "c) ii. Amt"});
    IDTo.SetCaption({"d) iii. Cagaran", "d) iii. Cagaran"});
  }
}

void ReportFrm::OfferOptionBoxes() {
  for (int number = 1; number <= 4; ++number) BoxOf(number).SetVisible(false);
  std::string note;
  const auto add = [&](const Caption& why) {
    note += (note.empty() ? "" : " ") + std::string(session().In(why));
  };
  if (criteria_->ids == IdBoxes::unused) {
    add({"This report takes no numbers.", "此报告不按编号筛选。"});
  }
  for (const OptionBox& option : OptionBoxesOf(file_)) {
    CheckBox& box = BoxOf(option.number);
    box.SetCaption(option.caption);
    box.SetChecked(option.initial);
    box.SetVisible(true);
    box.SetEnabled(option.effect == BoxEffect::works);
    const auto& [english, chinese] = option.caption;
    if (option.effect == BoxEffect::none) {
      add({fmt::format("\"{}\" does not change this report.", english),
           fmt::format("“{}”对此报告没有作用。", chinese)});
    } else if (option.effect == BoxEffect::fixed) {
      add({fmt::format("\"{}\" always holds for this report.", english),
           fmt::format("此报告固定“{}”。", chinese)});
    }
  }
  if (!own_file_.empty() && !OptionBoxesOf(file_).empty()) {
    add({"The office's own file is printed in its one form; the boxes still choose rows.",
         "打印的是公司自订的格式；选项只影响所选的资料。"});
  }
  NoteLBL.SetText(note);
  NoteLBL.SetVisible(!note.empty());
}

void ReportFrm::LockSelectedLoan(const std::string& loan_id) {
  for (TextBox* box : {&IDFrom, &IDTo}) {
    box->SetText(loan_id);
    box->SetEnabled(false);
  }
  for (Button* button : {&SearchCmd1, &SearchCmd2}) button->SetVisible(false);
  const Recordset loan =
      main().Query(fmt::format("SELECT TrxDate FROM LoanMast WHERE LoanID={}", QuoteStr(loan_id)));
  if (!loan.Eof()) DateFrom.SetText(ShowDate(loan.Field("TrxDate")));
  DateTo.SetText(ServerNow(main(), false));
}

// A figure counts all companies of the person: below an administrator they must be named.
void ReportFrm::FillDays(const DayRange& days) {
  if (days.empty()) return;
  DateFrom.SetText(days.from);
  DateTo.SetText(days.to);
  const DateTime today = ServerTime(main()).DateOnly();
  const auto last = DateTime::FromDisplay(days.to);
  if (!MayLieAhead() && last && *last > today) DateTo.SetText(Format(today, "dd-mm-yyyy"));
  if (session().CurrentLevel < 4) Move(true, true);
  // What moved before the days is none of theirs.
  if (Is({"AccountReport.rpt", "AccountReportC.rpt"})) Check1.SetChecked(true);
}

// What falls due.
bool ReportFrm::MayLieAhead() const { return Is({"DueDate3.rpt", "DueDate.rpt"}); }

void ReportFrm::LeaveDate(TextBox& box) {
  box.SetText(Trim(box.text()));
  if (box.empty()) return;
  const auto date = DateTime::FromDisplay(box.text());
  if (!date) {
    Refuse(box, kInvalidDate);
    return;
  }
  box.SetText(Format(*date, "dd-mm-yyyy"));
  box.SetMark(false);
  if (&box != &DateTo || MayLieAhead()) return;
  if (date->DateOnly() > ServerTime(main()).DateOnly()) {
    Refuse(box, {"Date To cannot greater than today", "日期至不可超过今天"});
    box.SetText(ServerNow(main(), false));
  }
}

void ReportFrm::PickInto(TextBox& box) {
  const std::string chosen = Pick(session(), desk(), criteria_->picker);
  if (!chosen.empty()) box.SetText(chosen);
}

CheckBox& ReportFrm::BoxOf(int number) {
  CheckBox* boxes[] = {&Check1, &Check2, &Check3, &Check4};
  return *boxes[number - 1];
}

}  // namespace kaunter
