// The save of a loan: the row, the totals and the schedule in one transaction, then what follows
// the commit. And the ends of a loan's life that the same button serves: close, open back, delete.
#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>

#include "core/amounts.h"
#include "core/audit.h"
#include "core/log.h"
#include "core/sequences.h"
#include "core/telling.h"
#include "core/values.h"
#include "customers/document_store.h"
#include "customers/photo_server.h"
#include "links/accounting_link.h"
#include "links/link_documents.h"
#include "loans/application.h"
#include "loans/loan_lifecycle.h"
#include "loans/new_loan_frm.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kNoCurrentRow = 3021;  // what NextLoanNumber says of a customer without a counter

void LogDone(const Session& session, const std::string& mode, const std::string& id,
             const char* what) {
  WriteLog(session, LogLine(session, fmt::format("{} - Loan ID {} {}", mode, id, what)));
}

// A customer without a counter of loans ends the save without a text of the database.
std::string DrawLoanNumber(Connection& main, const std::string& cust_id) {
  try {
    return NextLoanNumber(main, cust_id);
  } catch (const SqlError& error) {
    if (error.number() == kNoCurrentRow) throw std::runtime_error("");
    throw;
  }
}

}  // namespace

void NewLoanFrm::SaveLoan() {
  if (IsInquiry() || !CheckAll()) return;
  const bool is_new = LoanMode == "New Loan";
  if (!is_new && loaded_id_.empty()) {
    Refuse(LoanID, {"Loan Code is required", "请输入贷款编号"});
    return;
  }
  desk().Beep();
  if (LoanMode == "Delete Loan") {
    Delete();
    return;
  }
  if (LoanMode == "Close Loan" || LoanMode == "Open Loan") {
    CloseOrOpen(LoanMode == "Close Loan");
    return;
  }
  if (!Confirm({"Confirm to save ?", "确定储存？"})) return;
  const std::string mode = LoanMode;
  SaveOK = WriteLoanRecord();
  if (!SaveOK) return;
  ReplayPayments();
  if (LinkIsOn(session())) LinkLoanDocuments();
  LogDone(session(), mode, LoanID.text(), "saved");
  ReloadAfterSave(mode);
}

// --- the row, the totals and the schedule

bool NewLoanFrm::WriteLoanRecord() {
  const Hourglass busy(desk());
  const bool is_new = LoanMode == "New Loan";
  try {
    StoreLoan(is_new);
  } catch (const std::exception& failure) {
    // A new loan's number went back with the rollback: the box must not go on showing it.
    if (is_new) LoanID.Clear();
    LogRollback(session(), LoanMode, failure);
    Tell(MessageKind::critical,
         Failed({fmt::format("An error occurs during saving loan\n{}\n", failure.what()),
                 fmt::format("储存贷款时发生错误\n{}\n", failure.what())},
                failure));
    return false;
  }
  TakeSaved(is_new);
  KeepGuarantorPhotos();
  return true;
}

void NewLoanFrm::StoreLoan(bool is_new) {
  const std::vector<Value> screen_values = {Value(LoanAmt.text()), Value(PayOutAmt.text()),
                                            Value(TrxDate.text())};
  Transaction transaction(main());
  for (TextBox* figure : {&TotPay, &TotInt, &TotCharge, &TotCollectorAmt, &TotDiscAmt, &IntBal}) {
    if (figure->empty()) figure->SetText("0");
  }
  if (is_new) {
    LoanID.SetText(DrawLoanNumber(main(), CustID.text()));
  } else {
    RequireUnchanged(session(), loaded_id_, OldValues);
  }
  const std::string id = LoanID.text();
  const std::string statement = is_new ? record_.InsertStatement() : record_.UpdateStatement(id);
  // Before the row changes: the remark shows the screen's values against the stored ones.
  WriteAudit(session(), is_new ? "Create" : "Modify", "Loan", CompCode.text(), id, screen_values);
  ExecuteOnRow(main(), statement, id);
  if (!is_new) ReverseLoanTotals(main(), CustID.text(), OldValues);
  LoanFigures added = Figures();
  if (is_new) {
    added.LoanBal = NewLoanBalance(Amount(FirstPayment), Amount(InstallmentAmt),
                                   Amount(LastPayment), LoanTerm.text());
    if (!taken_application_.empty()) MarkTakenUp(main(), id, taken_application_);
  }
  AddLoanTotals(main(), CustID.text(), added);
  WriteSchedule(is_new);
  transaction.Commit();
}

// In the transaction of the row: a loan never stands without its rows, nor beside those of other
// terms. A new loan's are written twice; the second ones stand.
void NewLoanFrm::WriteSchedule(bool is_new) {
  const LoanKey key{LoanID.text(), CustID.text()};
  const bool special = SpecialSch.checked();
  if (is_new) GenerateSchedule(main(), key, Terms(), special);
  if (!TermsOpen) return;
  ClearSchedule(main(), key.LoanID);
  GenerateSchedule(main(), key, Terms(), special);
  if (SchChanged.checked()) ApplyEditedSchedule(main(), key.LoanID, EditedLines());
}

LoanFigures NewLoanFrm::Figures() const {
  return {.LoanAmt = Sen(LoanAmt),
          .LoanBal = Sen(LoanBal),
          .LoanAmt2 = Sen(LoanAmt2),
          .TopUpAmt = Sen(TopUpAmt),
          .PayOutAmt = Sen(PayOutAmt),
          .SalesmanComm = Sen(SalesmanComm),
          .SalesmanID = SalesmanID.text()};
}

void NewLoanFrm::TakeSaved(bool is_new) {
  OldValues = Figures();
  loaded_id_ = LoanID.text();
  taken_application_.clear();
  if (!is_new) return;
  LoanMode = "Edit Loan";
  ShowMode();
}

void NewLoanFrm::KeepGuarantorPhotos() {
  for (GuarantorBoxes& boxes : guarantors) {
    std::string& chosen = pending_photos_[boxes.index];
    if (chosen.empty()) continue;
    try {
      const std::string name = KeepFile(session(), loaded_id_, chosen,
                                        std::filesystem::path(boxes.Pic.text()).stem().string());
      SendPhoto(session(), *this, loaded_id_, name);
    } catch (const std::exception& failure) {
      Tell(MessageKind::critical,
           {fmt::format("{}\nThe loan is saved without the picture. Choose it again.",
                        failure.what()),
            fmt::format("{}\n贷款已储存，但没有照片。请重新选择。", failure.what())});
    }
    chosen.clear();
    boxes.card_photo.Drop();
  }
}

// --- what follows the commit

void NewLoanFrm::LinkLoanDocuments() {
  const std::string& id = LoanID.text();
  const auto [invoice, paid] =
      DocumentsOf(LoanToLink{id,
                             TrxDate.text(),
                             CustID.text(),
                             CustName.text(),
                             Bank.text(),
                             DragLoan.index() == 1,
                             {Amount(TermInt), Amount(DepositAmt), Amount(OathsAmt),
                              Amount(LegalFee), Amount(ProcessFee), Amount(MiscAmt)}},
                  [this](std::string_view link_id) { return LinkAccount(main(), link_id); });
  if (!LinkARInvoice(session(), desk(), InvoiceOf(invoice))) {
    Tell(MessageKind::plain,
         {fmt::format("Alert !!\nLoan ID {} from {} not linked", id, CustName.text()),
          fmt::format("注意！\n{1} 的贷款 {0} 没有传到会计系统", id, CustName.text())});
    return;
  }
  for (const LinkedInvoiceLine& line : invoice.lines) LinkARInvoiceLine(session(), desk(), line);
  LinkARPayment(session(), desk(), PaymentOf(paid));
}

// New rows have lost what was paid on the old ones.
void NewLoanFrm::ReplayPayments() {
  if (!TermsOpen || CountPayments(main(), LoanID.text()) == 0) return;
  RebuildAndTell(session(), desk(), LoanID.text(), CustID.text());
}

void NewLoanFrm::ReloadAfterSave(const std::string& mode) {
  const std::string id = LoanID.text();
  session().MsgText =
      session().In({fmt::format("Loan ID {} saved", id), fmt::format("贷款编号 {} 已储存", id)});
  desk().Message(MessageKind::information, mode, session().MsgText);
  LoadLoan(id);  // clears first
}

// --- close, open back, delete

void NewLoanFrm::CloseOrOpen(bool close) {
  const std::string id = loaded_id_;
  if (!Confirm(close ? Caption{fmt::format("Confirm to close Loan ID {} ?", id),
                               fmt::format("确定结束贷款 {} ？", id)}
                     : Caption{fmt::format("Confirm to open Loan ID {} ?", id),
                               fmt::format("确定重开贷款 {} ？", id)})) {
    return;
  }
  const LoanKey key{id, CustID.text()};
  try {
    const Hourglass busy(desk());
    if (close) {
      CloseLoan(session(), key, OldValues);
      LoanBal.SetText("0");
    } else {
      LoanBal.SetText(ShowMoney(OpenLoan(session(), key, OldValues)));
    }
  } catch (const std::exception& failure) {
    TellRolledBack(failure,
                   close ? Caption{"an error occur during closing loan", "结束贷款时发生错误"}
                         : Caption{"an error occur during opening loan", "重开贷款时发生错误"});
    return;
  }
  Tell(MessageKind::information,
       close ? Caption{fmt::format("Loan ID {} closed", id), fmt::format("贷款 {} 已结束", id)}
             : Caption{fmt::format("Loan ID {} opened", id), fmt::format("贷款 {} 已重开", id)});
  LogDone(session(), LoanMode, id, close ? "closed" : "opened");
  FillLists();
  StartAgain();
}

void NewLoanFrm::Delete() {
  const std::string id = loaded_id_;
  if (!ConfirmLoss({fmt::format("Confirm to delete Loan ID {} ?", id),
                    fmt::format("确定删除贷款 {} ？", id)})) {
    return;
  }
  const int payments = CountPayments(main(), id);
  if (payments > 0 &&
      !ConfirmLoss(
          {fmt::format("Warning! {} payment record(s)\nwill be deleted\n Proceed on ?", payments),
           fmt::format("警告！{} 笔付款\n将被删除\n 是否继续？", payments)})) {
    return;
  }
  try {
    const Hourglass busy(desk());
    DeleteLoan(session(), {id, CustID.text()}, OldValues, payments, CompCode.text(),
               TrxDate.text());
  } catch (const std::exception& failure) {
    TellRolledBack(failure, {"an error occur during deleting loan", "删除贷款时发生错误"});
    return;
  }
  Tell(MessageKind::information,
       {fmt::format("Loan ID {} deleted", id), fmt::format("贷款 {} 已删除", id)});
  LogDone(session(), LoanMode, id, "deleted");
  FillLists();
  StartAgain();
}

void NewLoanFrm::TellRolledBack(const std::exception& failure, const Caption& text) {
  LogRollback(session(), LoanMode, failure);
  Tell(MessageKind::critical, FailedOrRefused(text, failure));
}

}  // namespace kaunter
