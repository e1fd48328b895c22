#include "bank/si_process_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/boxes.h"
#include "core/log.h"
#include "core/menu.h"
#include "core/places.h"
#include "core/reading.h"
#include "core/screen_rights.h"
#include "core/values.h"
#include "platform/whole_file.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

// Places in the grid.
constexpr int kLoan = 0, kName = 2, kAccount = 3, kTransferName = 4, kAmount = 7;

const Caption kExportFailed{"an error occur during process direc debit", "处理直接扣账时出现错误"};

}  // namespace

SIProcessfrm::SIProcessfrm(Session& session, Desk& desk)
    : SessionScreen("SIProcessfrm", {"Direct Debit Process", "直接扣账"}, session, desk) {
  vsd.SetHasChecks(true);
  vsd.onTick = [this](int) { ShowTotal(); };
  for (TextBox* box : {&ToDate, &PDate}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  SaveCmd.onClick = [this] { List(); };
  CmdCheckAll.onClick = [this] { TickAll(true); };
  CmdUncheckAll.onClick = [this] { TickAll(false); };
  SSCommand1.onClick = [this] { Export(); };
  SetupCmd.onClick = [this] { this->desk().Show("ISSetupfrm"); };
  CmdClear.onClick = [this] { Clear(); };
}

void SIProcessfrm::Load() {
  OfferShortcut(session(), SetupCmd, "ISSetupfrm", "");
  ShowTotal();
}

// --- the list

void SIProcessfrm::List() {
  if (!RequireDate(session(), ToDate, {"Process Date is require", "请输入处理日期"})) return;
  // One line a loan: the largest of its open instalments, never their sum, so that a debit does not
  // ask for the arrears at once.
  const std::string sql = fmt::format(
      "SELECT LoanID,MAX(DueDate) as [DueDate],CustName,BankAccNo,BankTransferName,OldLoanCode,"
      "Memo5,MAX(Amt) as [Amt],LoanStatus FROM (SELECT s.LoanID,s.DueDate,c.CustName,c.BankAccNo,"
      "c.BankTransferName,l.OldLoanCode,l.Memo5,s.PayableAmt-s.Payment as [Amt],l.LoanStatus FROM "
      "SchMast as s "
      "INNER JOIN LoanMast as l on s.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID "
      "WHERE s.PayableAmt-s.Payment > 0 and s.DueDate <= {}) as aa GROUP BY LoanID,CustName,"
      "OldLoanCode,Memo5,BankAccNo,BankTransferName,LoanStatus ORDER BY LoanID",
      SqlDate(ToDate.text()));
  vsd.Clear();
  const bool read = ReadOrTell(session(), *this, "Direct Debit", kExportFailed, [&] {
    Recordset loans = main().Query(sql);
    FillGrid(vsd, loans);
    for (int row = 0; row < vsd.RowCount(); ++row, loans.MoveNext()) {
      const std::string account = Trim(vsd.Cell(row, kAccount));
      vsd.SetCell(row, kAccount, account);
      // Without a number at its end the bank takes no account.
      if (!AccountTail(account)) vsd.SetTone(row, RowTone::warn);
      if (!SameText(NullToEmpty(loans.Field("LoanStatus")), "ACTIVE")) {
        vsd.SetTone(row, RowTone::quiet);
      }
    }
  });
  ShowTotal();
  if (read) Tell(MessageKind::information, {"Process completed", "处理完毕"});
}

void SIProcessfrm::Clear() {
  for (TextBox* box : {&ToDate, &PDate}) {
    box->Clear();
    box->SetMark(false);
  }
  vsd.Clear();
  ShowTotal();
  FocusOn(ToDate);
}

void SIProcessfrm::TickAll(bool on) {
  // What the bank cannot debit would stop the whole file, and a closed loan is asked for no money:
  // they are ticked by hand alone.
  for (int row = 0; row < vsd.RowCount(); ++row) {
    vsd.SetTicked(row, on && vsd.Tone(row) == RowTone::plain);
  }
  ShowTotal();
}

void SIProcessfrm::ShowTotal() {
  Money total;
  int ticked = 0;
  int without = 0;
  int closed = 0;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    if (vsd.Tone(row) == RowTone::warn) ++without;
    if (vsd.Tone(row) == RowTone::quiet) ++closed;
    if (!vsd.Ticked(row)) continue;
    ++ticked;
    total += Money::FromText(vsd.Cell(row, kAmount));
  }
  Caption text{
      fmt::format("{} loans, {} to debit, {}", vsd.RowCount(), ticked, ShowMoney(total)),
      fmt::format("共 {} 笔贷款，将扣账 {} 笔，{}", vsd.RowCount(), ticked, ShowMoney(total))};
  if (without > 0) {
    text.english += fmt::format("; {} without a bank account number", without);
    text.chinese += fmt::format("；{} 笔没有银行户口号码", without);
  }
  if (closed > 0) {
    text.english += fmt::format("; {} not active", closed);
    text.chinese += fmt::format("；{} 笔已结束", closed);
  }
  TotalLBL.SetText(session().In(text));
}

// --- the file

std::vector<Debit> SIProcessfrm::Ticked() const {
  std::vector<Debit> debits;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    if (!vsd.Ticked(row)) continue;
    debits.push_back({vsd.Cell(row, kLoan), vsd.Cell(row, kName), vsd.Cell(row, kAccount),
                      vsd.Cell(row, kTransferName), vsd.Cell(row, kAmount)});
  }
  return debits;
}

bool SIProcessfrm::ReadSetup(DebitSetup* setup) {
  std::optional<DebitSetup> stored;
  if (!ReadOrTell(
          session(), *this, "Direct Debit Setting",
          {"an error occur during getting Direct Debit Setting", "取得直接扣账设定时出现错误"},
          [&] { stored = ReadDebitSetup(main()); })) {
    return false;
  }
  if (!stored) {
    return Refuse({"Fail to get Direct Debit setting record", "没有直接扣账的设定，请先设定"});
  }
  *setup = *std::move(stored);
  return true;
}

void SIProcessfrm::Export() {
  if (vsd.RowCount() == 0) {
    Refuse(SaveCmd, {"No record to export, please list first", "没有可输出的资料，请先列出"});
    return;
  }
  const Caption& label = PDate.caption();
  if (!RequireDate(session(), PDate,
                   {fmt::format("{} is required", PlainCaption(label, false)),
                    fmt::format("请输入{}", PlainCaption(label, true))})) {
    return;
  }
  // Enter alone says no: the file goes to a bank.
  if (!ConfirmLoss({"Confirm to export the text file ?", "确定输出文本文件？"})) return;
  DebitSetup setup;
  if (!ReadSetup(&setup)) return;
  const std::string folder =
      desk().PickFolder(session().In({"Choose a Folder", "请选择文件夹"}), PickStart(session()));
  if (folder.empty()) return;
  const DateTime now = ServerTime(main());
  const std::string name = DebitFileName(setup, now);
  if (FileNameOf(name) != name) {
    TellFailure(
        {fmt::format("DD-04 and DD-05 make the file name \"{}\", which no folder takes", name),
         fmt::format("DD-04 和 DD-05 组成的文件名“{}”不可使用", name)});
    return;
  }
  const std::string path = (std::filesystem::path(folder) / name).string();
  if (!Write(path, setup, now)) return;
  Tell(MessageKind::information, {"Output file at " + path, "文件已输出到 " + path});
  if (Confirm({"Open the file folder ?", "打开文件夹？"})) desk().Open(folder);
}

bool SIProcessfrm::Write(const std::string& path, const DebitSetup& setup, const DateTime& now) {
  const std::vector<Debit> debits = Ticked();
  const auto file = DebitFile(setup, debits, now, *DateTime::FromDisplay(PDate.text()));
  if (const auto* why = std::get_if<Caption>(&file)) return TellFailure(*why);
  try {
    const Hourglass busy(desk());
    WriteWholeFile(path, [&](std::ostream& out) { out << std::get<std::string>(file); });
  } catch (const std::exception& failure) {
    LogRollback(session(), "Direct Debit", failure);
    return TellFailure({failure.what(), failure.what()});
  }
  WriteLog(session(), LogLine(session(), fmt::format("Direct Debit written to {}, {} debits, {}",
                                                     path, debits.size(), TotalLBL.Text())));
  return true;
}

bool SIProcessfrm::TellFailure(const Caption& why) {
  return Refuse({fmt::format("{}\n{}", kExportFailed.english, why.english),
                 fmt::format("{}\n{}", kExportFailed.chinese, why.chinese)});
}

}  // namespace kaunter
