// What hangs on an application: its persons, its history, its insurance lines; and its papers.
#include <fmt/format.h>

#include <algorithm>

#include "core/boxes.h"
#include "core/picker.h"
#include "core/session_report.h"
#include "core/values.h"
#include "loans/loan_app_frm.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kRelationLength = 300;
constexpr std::size_t kLineLength = 300;      // MRTAName
constexpr std::size_t kHistoryLength = 1000;  // AppDesc

std::size_t Characters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) >> 6) != 2; }));
}

bool IsBlank(const std::vector<std::string>& cells) {
  return std::all_of(cells.begin(), cells.end(), [](const auto& cell) { return cell.empty(); });
}

}  // namespace

void LoanAppFrm::BindListEvents() {
  LinkRelation.max_length = kRelationLength;
  LinkCust.onLeave = [this] {
    LinkCust.SetText(Upper(Trim(LinkCust.text())));
    LinkCust.SetMark(false);
    LinkName.Clear();
    if (!LinkCust.empty()) FindPerson(LinkCust, LinkName);
  };
  OfferPicker(session(), LinkCust, "CustPop", [this](const std::string& id) {
    LinkCust.SetText(id);
    FindPerson(LinkCust, LinkName);
  });
  Command1.onClick = [this] { LinkPerson(); };
  LinkDG.onRow = [this](int row) {
    LinkCust.SetText(LinkDG.Cell(row, 0));
    LinkName.SetText(LinkDG.Cell(row, 1));
    LinkType.SetText(LinkDG.Cell(row, 2));
    LinkRelation.SetText(LinkDG.Cell(row, 3));
  };
  LinkDG.onOpen = [this](int row, int) { UnlinkPerson(row); };
  vsd.onCellLeave = [this](int row, int column, const std::string& before) {
    EditHistory(row, column, before);
  };
  vsdd.onCellLeave = [this](int row, int column, const std::string& before) {
    EditMrta(row, column, before);
  };
  for (Grid* grid : {&vsd, &vsdd}) {
    grid->tip = {"Type in the last line to add one, Delete removes the line",
                 "在最后一行输入以加入，Delete 键移除"};
    grid->onKey = [grid](std::string_view key) {
      const int row = grid->current_row();
      const bool stored_line = row >= 0 && row < grid->RowCount() - 1;
      if (key == "Delete" && stored_line && grid->Editable()) grid->RemoveRow(row);
    };
  }
}

void LoanAppFrm::LoadLists() {
  const std::string id = QuoteStr(loaded_id_);
  vsd.Clear();
  vsdd.Clear();
  if (!loaded_id_.empty()) {
    std::vector<std::vector<std::string>> lines;
    for (Recordset rows = main().Query(
             "SELECT TrxDate,AppDesc,UserID,DateCreated FROM AppHist WHERE AppID=" + id +
             " ORDER BY AppSeq");
         !rows.Eof(); rows.MoveNext()) {
      lines.push_back({ShowDate(rows.Field(0)), NullToEmpty(rows.Field(1)),
                       NullToEmpty(rows.Field(2)), ShowDateTime(rows.Field(3))});
    }
    vsd.SetRows(std::move(lines));
    FillGrid(vsdd,
             main().Query("SELECT MRTAName,MRTASumInsured,MRTAPremium FROM MRTAMast WHERE AppID=" +
                          id + " ORDER BY AppSeq"));
  }
  KeepBlankLine(vsd);
  KeepBlankLine(vsdd);
  LoadPersons();
  remembered_lists_ = Lists();
}

std::string LoanAppFrm::Lists() const {
  std::string all;
  for (const Grid* grid : {&vsd, &vsdd}) {
    for (int row = 0; row < grid->RowCount(); ++row) {
      for (const std::string& cell : grid->Row(row)) all += cell + "\t";
      all += "\n";
    }
  }
  return all;
}

void LoanAppFrm::KeepBlankLine(Grid& grid) {
  if (grid.RowCount() > 0 && IsBlank(grid.Row(grid.RowCount() - 1))) return;
  grid.AddRow(std::vector<std::string>(grid.columns().size()));
}

void LoanAppFrm::EditHistory(int row, int column, const std::string& before) {
  const std::string text = Trim(vsd.Cell(row, column));
  vsd.SetCell(row, column, text);
  const bool wrong_date = column == 0 && !text.empty() && !IsDate(text);
  if (wrong_date || Characters(text) > kHistoryLength) {
    vsd.SetCell(row, column, before);
    Tell(MessageKind::critical,
         wrong_date ? kInvalidDate : Caption{"The text is too long", "文字过长"});
    return;
  }
  if (IsBlank(vsd.Row(row)) || row < vsd.RowCount() - 1) return;
  // A line is born: whose it is and when.
  if (vsd.Cell(row, 0).empty()) vsd.SetCell(row, 0, ServerNow(main(), false));
  vsd.SetCell(row, 2, session().CurrentUserID);
  vsd.SetCell(row, 3, ServerNow(main(), true));
  KeepBlankLine(vsd);
}

void LoanAppFrm::EditMrta(int row, int column, const std::string& before) {
  const std::string text = Trim(vsdd.Cell(row, column));
  const auto amount = Money::TryText(text);
  const bool wrong_amount = column > 0 && !text.empty() && (!amount || *amount < Money());
  if (wrong_amount || Characters(text) > kLineLength) {
    vsdd.SetCell(row, column, before);
    Tell(MessageKind::critical,
         wrong_amount ? kInvalidAmount : Caption{"The text is too long", "文字过长"});
    return;
  }
  vsdd.SetCell(row, column, column > 0 && amount ? ShowMoney(*amount) : text);
  KeepBlankLine(vsdd);
}

// --- persons

void LoanAppFrm::LoadPersons() {
  LinkDG.Clear();
  if (loaded_id_.empty()) return;
  FillGrid(LinkDG, main().Query(fmt::format(
                       "SELECT l.CustID,c.CustName,l.AppType,l.Relationship FROM AppMastLink as l "
                       "INNER JOIN CustMast as c on c.CustID=l.CustID WHERE l.AppID={}",
                       QuoteStr(loaded_id_))));
}

void LoanAppFrm::LinkPerson() {
  for (Control* control : std::initializer_list<Control*>{&LinkCust, &LinkRelation, &LinkType}) {
    if (control->Text().empty()) {
      Refuse(*control, {"Applicant / Guarantor is required", "请输入申请人／担保人"});
      return;
    }
  }
  if (loaded_id_.empty()) {
    Refuse({"Please save the application first", "请先储存申请"});
    return;
  }
  if (!FindPerson(LinkCust, LinkName)) return;
  const std::string app = QuoteStr(loaded_id_);
  const std::string person = QuoteStr(LinkCust.text());
  const bool done =
      Attempt("Link Person", {"An error occur during update person", "更新人物时发生错误"}, [&] {
        main().Execute(
            fmt::format("DELETE FROM AppMastLink WHERE AppID={} AND CustID={}", app, person));
        main().Execute(fmt::format(
            "Insert INTO AppMastLink (AppID,CustID,AppType,Relationship) VALUES ({},{},{},{})", app,
            person, QuoteStr(LinkType.text()), QuoteStr(LinkRelation.text())));
      });
  if (!done) return;
  LoadPersons();
  Tell(MessageKind::information, {"Update done", "已更新"});
}

void LoanAppFrm::UnlinkPerson(int row) {
  const std::string person = LinkDG.Cell(row, 0);
  const bool done =
      Attempt("Unlink Person", {"An error occur during update person", "更新人物时发生错误"}, [&] {
        main().Execute(fmt::format("DELETE AppMastLink WHERE AppID={} AND CustID={}",
                                   QuoteStr(loaded_id_), QuoteStr(person)));
      });
  if (done) LoadPersons();
}

// --- papers

void LoanAppFrm::PrintApplication() {
  if (!Confirm({"Confirm to print Application ?", "确定打印申请？"})) return;
  const std::string language = ScalarQuery(
      main(),
      fmt::format("SELECT PreLanguage FROM CustMast WHERE CustID={}", QuoteStr(CustID.text())));
  // The second form is the Malay one.
  ReportJob job = SessionReport(
      session(), SameText(language, "MALAY") ? "ApplicationForm2.rpt" : "ApplicationForm.rpt");
  job.SelectionFormula = "{AppMast.AppID} = " + QuoteStr(loaded_id_);
  desk().Print(job);
}

std::string LoanAppFrm::NamesOf(const std::string& role) const {
  std::string names;
  for (Recordset rows = main().Query(fmt::format(
           "SELECT CustID FROM AppMastLink WHERE AppID={} AND AppType={} ORDER BY CustID",
           QuoteStr(loaded_id_), QuoteStr(role)));
       !rows.Eof(); rows.MoveNext()) {
    const std::string name = ScalarQuery(main(), "SELECT CustName FROM CustMast WHERE CustID=" +
                                                     QuoteStr(NullToEmpty(rows.Field(0))));
    names += (names.empty() ? "" : ", ") + name;
  }
  return names.empty() ? "N/A" : names;
}

void LoanAppFrm::PrintLetterOffer() {
  if (!SameText(AppStatus2.text(), "Approved")) {
    Refuse(AppStatus2, {"Application is not approved", "申请尚未批准"});
    return;
  }
  // An offer binds the office: what is chosen on the screen alone has not passed the save's checks.
  if (!SameText(
          ScalarQuery(main(), "SELECT AppStatus2 FROM AppMast WHERE AppID=" + QuoteStr(loaded_id_)),
          "Approved")) {
    Refuse(AppStatus2, {"Please save the application first", "请先储存申请"});
    return;
  }
  if (!Confirm({"Confirm to print letter offer", "确定打印要约函"})) return;
  const std::string persons =
      ScalarQuery(main(), "SELECT COUNT(*) FROM AppMastLink WHERE AppID=" + QuoteStr(loaded_id_));
  ReportJob job = SessionReport(session(), "LetterOffer.rpt");
  job.SelectionFormula = fmt::format(
      "{{AppMastLink.AppID}} = {} AND {{AppMastLink.AppType}} <> 'Chargor'", QuoteStr(loaded_id_));
  job.ParameterFields[0] =
      fmt::format("Join;{};True", CInt(persons) > 1 ? "(AND OTHERS)" : std::string());
  job.ParameterFields[1] = fmt::format("Chargor;{};True", NamesOf("Chargor"));
  job.ParameterFields[2] = fmt::format("Guarantor;{};True", NamesOf("Guarantor"));
  desk().Print(job);
}

}  // namespace kaunter
