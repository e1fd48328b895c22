#include "links/link_acc_setup_frm.h"

#include <fmt/format.h>

#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/connection.h"

namespace kaunter {
namespace {

enum Column { kSeqNo, kLinkID, kLinkDesc, kLinkAccCode, kLinkAccDesc };

}  // namespace

LinkAccSetupfrm::LinkAccSetupfrm(Session& session, Desk& desk)
    : SessionScreen("LinkAccSetupfrm", {"Accounting Link Setup", "会计连接设定"}, session, desk) {
  DG.onCellLeave = [this](int row, int, const std::string& before) { ChooseAccount(row, before); };
  SaveCmd.onClick = [this] { Save(); };
}

void LinkAccSetupfrm::Load() {
  if (ReadChart()) {
    ReadMapping();
    return;
  }
  Tell(MessageKind::critical, {"GL Master Chart not fund at AutoCount database, setup aborted",
                               "会计系统里没有账户表，设定中止"});
  SaveCmd.SetEnabled(false);
  DG.SetEnabled(false);
}

bool LinkAccSetupfrm::RequestClose() { return MayDiscard(changed_); }

bool LinkAccSetupfrm::ReadChart() {
  if (session().AED == nullptr) return false;
  std::vector<std::string> accounts;
  try {
    for (Recordset rows =
             session().AED->Query("SELECT AccNo, Description FROM GLMast order by AccNo");
         !rows.Eof(); rows.MoveNext()) {
      accounts.push_back(NullToEmpty(rows.Field(0)) + "~" + NullToEmpty(rows.Field(1)));
    }
  } catch (const SqlError&) {
    return false;  // a bridge that went away is a chart that is not found
  }
  const bool found = !accounts.empty();
  DG.SetColumnItems(kLinkAccCode, std::move(accounts));
  return found;
}

void LinkAccSetupfrm::ReadMapping() {
  try {
    FillGrid(DG, main().Query("SELECT SeqNo,LinkID,LinkDesc,LinkAccCode,LinkAccDesc FROM "
                              "LinkAccMast ORDER BY SeqNo"));
  } catch (const SqlError& failure) {
    SaveCmd.SetEnabled(false);  // a save would take away what could not be read
    Tell(MessageKind::critical,
         Failed({"an error occur during reading Link Account table", "读取连接账户时发生错误"},
                failure, kNotRead));
  }
  changed_ = false;
}

// An entry is "<AccNo>~<Description>"; a blank takes the account away.
void LinkAccSetupfrm::ChooseAccount(int row, const std::string& before) {
  const std::string entry = DG.Cell(row, kLinkAccCode);
  if (entry == before) return;
  const std::size_t mark = entry.find('~');
  DG.SetCell(row, kLinkAccCode, entry.substr(0, mark));
  DG.SetCell(row, kLinkAccDesc, mark == std::string::npos ? "" : entry.substr(mark + 1));
  changed_ = true;
}

void LinkAccSetupfrm::Save() {
  if (!Confirm({"Confirm to save record ?", "确定储存？"})) return;
  std::string batch = "DELETE FROM LinkAccMast;";
  for (int row = 0; row < DG.RowCount(); ++row) {
    batch += fmt::format(
        "INSERT INTO LinkAccMast (SeqNo,LinkID,LinkDesc,LinkAccCode,LinkAccDesc) VALUES "
        "({},{},{},{},{});",
        StripCommaOrZero(DG.Cell(row, kSeqNo)), QuoteStr(DG.Cell(row, kLinkID)),
        QuoteStr(DG.Cell(row, kLinkDesc)), QuoteStr(DG.Cell(row, kLinkAccCode)),
        QuoteStr(DG.Cell(row, kLinkAccDesc)));
  }
  const bool saved = Attempt("Accounting Link Setup",
                             {"an error occur during saving record", "储存资料时发生错误"},
                             [&] { main().Execute(batch); });
  if (!saved) return;
  Tell(MessageKind::information, {"Record saved", "资料已储存"});
  changed_ = false;
}

}  // namespace kaunter
