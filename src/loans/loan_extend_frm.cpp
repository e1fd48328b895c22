#include "loans/loan_extend_frm.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "core/company_access.h"
#include "core/picker.h"
#include "core/record.h"
#include "core/values.h"
#include "loans/refusal.h"
#include "loans/step_date.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

enum GridPlace { kSch, kDueDate, kPayable, kPayment, kBalance };

DateTime DateOf(const std::string& shown, const std::string& sch_id) {
  const std::optional<DateTime> date = DateTime::FromDisplay(shown);
  if (!date) throw std::runtime_error(fmt::format("Schedule {} has no due date", sch_id));
  return *date;
}

}  // namespace

LoanExtendfrm::LoanExtendfrm(Session& session, Desk& desk)
    : SessionScreen("LoanExtendfrm", {"Extend Schedule", "延长还款表"}, session, desk) {
  for (TextBox* box : {&CustName, &LoanTerm, &LoanTypeID}) box->SetLocked(true);
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) { LoadLoan(id); });
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (SameText(LoanID.text(), loaded_id_)) return;
    if (LoanID.empty()) {
      ClearScreen();
    } else {
      LoadLoan(LoanID.text());
    }
  };
  SaveCmd.onClick = [this] { Shift(false); };
  Command2.onClick = [this] { Shift(true); };
}

void LoanExtendfrm::LoadLoan(std::string id) {
  ClearScreen();
  const Recordset row = main().Query(
      "SELECT a.CompCode,b.CustName,a.LoanTerm,a.LoanTypeID FROM LoanMast as a inner join CustMast "
      "as b on a.CustID=b.CustID WHERE a.LoanID=" +
      QuoteStr(id));
  if (row.Eof()) {
    RefuseCode(LoanID, LoanNotFound(id));
    return;
  }
  const std::string company = NullToEmpty(row.Field("CompCode"));
  if (!MayUseCompany(session(), company)) {
    Refuse(LoanID, {fmt::format("Laon ID {} belong to company {}", id, company),
                    fmt::format("贷款 {} 属于公司 {}", id, company)});
    return;
  }
  loaded_id_ = id;
  LoanID.SetText(id);
  LoanID.SetMark(false);
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  LoanTerm.SetText(NullToEmpty(row.Field("LoanTerm")));
  LoanTypeID.SetText(NullToEmpty(row.Field("LoanTypeID")));
  List();
}

void LoanExtendfrm::List() {
  FillGrid(SchDG,
           main().Query("SELECT SchID,DueDate,PayableAmt,Payment,PayableAmt-Payment as 'Balance' "
                        "FROM SchMast WHERE LoanID=" +
                        QuoteStr(loaded_id_) + " ORDER BY SchID"));
}

void LoanExtendfrm::ClearScreen() {
  loaded_id_.clear();
  for (TextBox* box : {&LoanID, &CustName, &LoanTerm, &LoanTypeID}) box->Clear();
  SchDG.Clear();
}

void LoanExtendfrm::Shift(bool backwards) {
  if (loaded_id_.empty()) {
    Refuse(LoanID, {"Loan ID is required", "请输入贷款编号"});
    return;
  }
  if (!Confirm(backwards ? Caption{"Conform to Cut Short Schedule?", "确定缩短还款表？"}
                         : Caption{"Conform to Extend Schedule?", "确定延长还款表？"})) {
    return;
  }
  if (!Write(backwards)) return;
  List();
  Tell(MessageKind::information,
       backwards ? Caption{fmt::format("Laon ID {} schedule cut shorted", loaded_id_),
                           fmt::format("贷款 {} 的还款表已缩短", loaded_id_)}
                 : Caption{fmt::format("Laon ID {} schedule extended", loaded_id_),
                           fmt::format("贷款 {} 的还款表已延长", loaded_id_)});
}

// A row paid meanwhile keeps its date, and a step taken meanwhile counts.
bool LoanExtendfrm::StillAsShown() {
  const auto rows = [this] {
    std::vector<std::vector<std::string>> all;
    for (int row = 0; row < SchDG.RowCount(); ++row) all.push_back(SchDG.Row(row));
    return all;
  };
  const auto shown = rows();
  List();
  return rows() == shown;
}

bool LoanExtendfrm::Write(bool backwards) {
  bool changed = false;
  const auto write = [this, backwards, &changed] {
    const Hourglass busy(desk());
    changed = !StillAsShown();
    if (changed) return;
    const std::string id = QuoteStr(loaded_id_);
    bool first = true;
    for (int row = 0; row < SchDG.RowCount(); ++row) {
      if (Money::FromText(SchDG.Cell(row, kBalance)).IsZero()) continue;
      const std::string& sch_id = SchDG.Cell(row, kSch);
      const std::string date = SqlDate(
          StepDate(LoanTypeID.text(), DateOf(SchDG.Cell(row, kDueDate), sch_id), backwards));
      ExecuteOnRow(main(),
                   fmt::format("UPDATE SchMast SET DueDate={} WHERE LoanID={} AND SchID={}", date,
                               id, StripCommaOrZero(sch_id)),
                   fmt::format("{} - {}", loaded_id_, sch_id));
      if (!std::exchange(first, false)) continue;
      ExecuteOnRow(main(),
                   fmt::format("UPDATE LoanMast SET NextDueDate={0},NextCall={0} WHERE LoanID={1}",
                               date, id),
                   loaded_id_);
    }
  };
  if (!Attempt(fmt::format("Extend Schedule - Loan ID {}", loaded_id_),
               {"an error occur during updating record", "更新记录时发生错误"}, write))
    return false;
  return !changed ||
         Refuse(LoanID, {fmt::format("Loan {} was changed meanwhile and is shown anew, Please look "
                                     "at it before you move it",
                                     loaded_id_),
                         fmt::format("贷款 {} 已被更改，现重新显示，请先查看", loaded_id_)});
}

}  // namespace kaunter
