#include "links/link_resend_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/session_report.h"
#include "core/staged_rows.h"
#include "core/telling.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "platform/host.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

enum Column { kRecord, kKind, kDocument, kDate, kName, kLedger, kAccounts, kDifference, kResult };

constexpr int kLevel = 2;
constexpr const char* kPaper = "LinkResend.rpt";
// So many failures behind one another: the bridge is away, and not a document at fault.
constexpr int kAway = 3;

Caption KindOf(const LinkedDocument& document) {
  const bool debtor = document.side == LinkSide::receivable;
  switch (document.kind) {
    case LinkKind::party:
      return debtor ? Caption{"Debtor", "客户"} : Caption{"Creditor", "供应商"};
    case LinkKind::invoice:
      return {"Invoice", "发票"};
    case LinkKind::payment:
      return {"Payment", "付款"};
    case LinkKind::credit_note:
      return {"Credit Note", "贷项通知"};
  }
  return {};
}

}  // namespace

LinkResendfrm::LinkResendfrm(Session& session, Desk& desk)
    : SessionScreen("LinkResendfrm", {"Accounting Re-send", "重传会计资料"}, session, desk) {
  DG.SetHasChecks(true);
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
    box->onChange = [this] { Forget(); };
  }
  CompCode.onPick = [this] { Forget(); };
  ListCmd.onClick = [this] { List(); };
  CmdCheckAll.onClick = [this] { TickAll(true); };
  CmdUncheckAll.onClick = [this] { TickAll(false); };
  PrintCmd.onClick = [this] { Print(); };
  SendCmd.onClick = [this] { Send(); };
}

void LinkResendfrm::Load() {
  Forget();
  const auto close = [this](const Caption& why) {
    for (Control* control : {static_cast<Control*>(&DateFrom), static_cast<Control*>(&DateTo),
                             static_cast<Control*>(&CompCode), static_cast<Control*>(&ListCmd)}) {
      control->SetEnabled(false);
    }
    Refuse(why);
  };
  if (session().CurrentLevel < kLevel) {
    return close(
        {fmt::format("User {} Level not allow to re-send to the accounts", session().CurrentUserID),
         fmt::format("用户 {} 的级别不可重传会计资料", session().CurrentUserID)});
  }
  if (!LinkIsOn(session()) || session().AED == nullptr) {
    return close({"The accounting link is off on this PC", "此电脑没有开启会计连接"});
  }
  FillCompanies(CompCode, session());
  OfferNothing(CompCode);
  const DateTime today = ServerTime(main());
  DateFrom.SetText(fmt::format("01-{:02}-{:04}", today.month, today.year));
  DateTo.SetText(ServerNow(main(), false));
}

void LinkResendfrm::Unload() { DropStagedRows(main(), ThisHost().name, kPaper); }

// --- the list: nothing is sent

bool LinkResendfrm::CheckDates() {
  for (TextBox* box : {&DateFrom, &DateTo}) {
    if (!RequireDate(session(), *box, {"Date is required", "请输入日期"})) return false;
  }
  return CheckDateOrder(session(), DateFrom, DateTo);
}

void LinkResendfrm::List() {
  if (!CheckDates()) return;
  Forget();
  LinkRecount recount;
  try {
    const Hourglass busy(desk());
    StopBar bar(*this);
    recount = Recount(session(), *session().AED, DateFrom.text(), DateTo.text(), CompCode.text(),
                      [&](std::size_t done, std::size_t all) {
                        return bar.GoOn(done, all, fmt::format("{} / {}", done, all));
                      });
  } catch (const std::exception& failure) {
    LogRollback(session(), "Accounting Re-send", failure);
    Tell(MessageKind::critical,
         {fmt::format("an error occur on linkage to accounting system\n{}\nNothing was sent.",
                      failure.what()),
          fmt::format("连接会计系统时发生错误\n{}\n没有传送任何资料。", failure.what())});
    return;
  }
  differences_ = std::move(recount.differences);
  ShowDifferences();
  const std::size_t count = differences_.size();
  Caption told{fmt::format("{} documents and persons of the ledger, {} to be sent",
                           recount.documents, count),
               fmt::format("账目共有 {} 份单据和资料，须传送 {} 份", recount.documents, count)};
  if (!recount.complete) {
    told = {"Stopped: " + told.english, "已停止：" + told.chinese};
  }
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

void LinkResendfrm::ShowDifferences() {
  std::vector<std::vector<std::string>> rows;
  for (const LinkDifference& one : differences_) {
    const LinkedDocument& document = one.document;
    const bool person = document.kind == LinkKind::party;
    rows.push_back({session().In(NameOf(document.source)), session().In(KindOf(document)),
                    document.DocNo, document.DocDate, document.Name,
                    person ? "" : Format(document.Amount, "#,##0.00"), one.held,
                    session().In(one.what), ""});
  }
  DG.SetRows(std::move(rows));
  PrintCmd.SetEnabled(!differences_.empty());
  SendCmd.SetEnabled(!differences_.empty());
  TickAll(true);
}

void LinkResendfrm::Forget() {
  differences_.clear();
  ResultLBL.SetText({});
  ShowDifferences();
}

void LinkResendfrm::TickAll(bool on) {
  for (int row = 0; row < DG.RowCount(); ++row)
    DG.SetTicked(row, on && DG.Cell(row, kResult).empty());
}

// --- the sending

void LinkResendfrm::Send() {
  std::vector<int> rows;
  for (int row = 0; row < DG.RowCount(); ++row) {
    if (DG.Ticked(row)) rows.push_back(row);
  }
  if (rows.empty()) {
    Refuse(DG, {"Tick the documents to be sent first", "请先勾选要传送的单据"});
    return;
  }
  if (!RequireLinkAccounts(session(), *this,
                           {"HP", "TL", "MRTA", "Stamp", "Fire", "Legal", "Process", "Misc",
                            "ARINV", "ARCN", "APINV", "APCN", "PD"})) {
    return;
  }
  // A bridge that has posted and taken its rows away posts them twice: Enter alone says no.
  if (!ConfirmLoss({fmt::format("Confirm to send {} documents to the accounts ?", rows.size()),
                    fmt::format("确定传送 {} 份单据到会计系统？", rows.size())})) {
    return;
  }
  int sent = 0;
  int failed = 0;
  int behind_one_another = 0;
  bool stopped = false;
  {
    StopBar bar(*this);
    for (const int row : rows) {
      if (!bar.GoOn(sent + failed, rows.size(), DG.Cell(row, kDocument)) ||
          behind_one_another == kAway) {
        stopped = true;
        break;
      }
      try {
        const Resent outcome =
            Resend(session(), *session().AED, differences_[static_cast<std::size_t>(row)].document);
        sent += outcome == Resent::sent ? 1 : 0;
        behind_one_another = 0;
        ShowSent(row, outcome);
      } catch (const std::exception& failure) {
        LogRollback(session(), "Accounting Re-send " + DG.Cell(row, kDocument), failure);
        ++failed;
        ++behind_one_another;
        DG.SetCell(row, kResult, failure.what());
        DG.SetTone(row, RowTone::bad);
      }
    }
  }
  WriteLog(
      session(),
      LogLine(session(), fmt::format("Accounting Re-send {} - {}: {} of {} sent, {} failed",
                                     DateFrom.text(), DateTo.text(), sent, rows.size(), failed)));
  const Caption told{fmt::format("{} of {} sent", sent, rows.size()),
                     fmt::format("已传送 {} / {}", sent, rows.size())};
  ResultLBL.SetText(session().In(told));
  if (failed > 0) {
    Tell(MessageKind::critical,
         {fmt::format("an error occur on linkage to accounting system\n{}. What failed is still "
                      "ticked, with its reason.",
                      told.english),
          fmt::format("连接会计系统时发生错误\n{}。失败的仍保留勾选，并注明原因。", told.chinese)});
  } else {
    Tell(MessageKind::information,
         stopped ? Caption{"Stopped: " + told.english, "已停止：" + told.chinese} : told);
  }
}

void LinkResendfrm::ShowSent(int row, Resent outcome) {
  const Caption results[] = {{"Sent", "已传送"},
                             {"In order meanwhile", "期间已传送"},
                             {"Gone from the ledger", "账目中已不存在"}};
  DG.SetCell(row, kResult, session().In(results[static_cast<int>(outcome)]));
  DG.SetTicked(row, false);
  DG.SetTone(row, RowTone::quiet);
}

// --- the paper

void LinkResendfrm::Print() {
  {
    Transaction transaction(main());
    DropStagedRows(main(), ThisHost().name, kPaper);
    Batch batch;
    for (int row = 0; row < DG.RowCount(); ++row) {
      const LinkedDocument& document = differences_[static_cast<std::size_t>(row)].document;
      const std::string& held = DG.Cell(row, kAccounts);
      batch.Add(fmt::format(
          "INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,s4,s5,s6,c1,c2,c3,d1) "
          "VALUES ({},{},{},{},{},{},{},{},{},{},{},{},{})",
          QuoteStr(ThisHost().name), QuoteStr(kPaper), QuoteStr(document.DocNo),
          QuoteStr(DG.Cell(row, kRecord)), QuoteStr(DG.Cell(row, kKind)),
          QuoteStr(document.CompCode), QuoteStr(document.Name), QuoteStr(DG.Cell(row, kDifference)),
          QuoteStr(DG.Cell(row, kResult)), document.Amount.ToText(), StripCommaOrZero(held), row,
          SqlDate(document.DocDate)));
      batch.SendWhenFull(main());
    }
    batch.Send(main());
    transaction.Commit();
  }
  ReportJob job = SessionReport(session(), kPaper);
  job.SelectionFormula = StagedFormula(ThisHost().name, kPaper);
  job.ReportTitle = fmt::format("{} - {}", DateFrom.text(), DateTo.text());
  WriteLog(session(), LogLine(session(), "Accounting Re-send - Report Printed"));
  desk().Print(job);
}

}  // namespace kaunter
