#include "loans/drawdown.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "core/amounts.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "loans/drawdown_store.h"
#include "loans/loan_lifecycle.h"
#include "loans/money_gate.h"
#include "screen/hourglass.h"

namespace kaunter {
Drawdown::Drawdown(Session& session, Desk& desk)
    : SessionScreen("Drawdown", {"Loan Progressive Drawdown"}, session, desk),
      record_("DrawDownMast", "SID") {
  for (TextBox* box : {&SID, &LoanID, &CompCode, &CustID, &CustName, &LoanAmt, &LoanDate}) {
    box->SetLocked(true);
  }
  record_.Add(SID).InsertOnly().Add(LoanID).InsertOnly().Add(CustID).InsertOnly();
  record_.Add(TrxDate, As::date).Add(CompCode).InsertOnly().Add(DrawDownAmt, As::money);
  record_.Add(Payee).Add(Bank).Add(ChqNo).Add(Remarks);
  record_.AddValue("UserID", [this] { return QuoteStr(this->session().CurrentUserID); })
      .InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerTime(main())); }).InsertOnly();
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate, {"Invalid Date"}); };
  DrawDownAmt.onLeave = [this] { LeaveAmount(); };
  Payee.onLeave = [this] { Payee.SetText(ApplyCapLock(this->session(), Payee.text())); };
  SaveCmd.onClick = [this] { Save(); };
  CmdDelete.onClick = [this] { Delete(); };
}

void Drawdown::Load() {
  record_.TakeWidths(main());
  TrxDate.max_length = kDateLength;
  DrawDownAmt.max_length = kMoneyLength;
  FillItems(Bank, main(), "SELECT BankCode FROM BankMast ORDER BY BankCode");
  SaveCmd.SetEnabled(false);
  CmdDelete.SetEnabled(false);
  const std::string sid = std::exchange(session().CallerTag, {});
  LoanID.SetText(session().HandOverLoanID);
  if (!sid.empty()) {
    LoadRelease(sid);
  } else if (ShowLoan()) {
    ProposeRelease();
  }
}

void Drawdown::LoadRelease(const std::string& sid) {
  const Recordset row = main().Query(
      "SELECT LoanID,TrxDate,DrawDownAmt,Bank,ChqNo,Remarks,Payee FROM DrawDownMast WHERE SID=" +
      QuoteStr(sid));
  if (row.Eof()) {
    Refuse({fmt::format("Loan {} not found", sid)});
    return;
  }
  record_.Load(row);
  if (!ShowLoan()) return;
  SID.SetText(sid);
  CmdDelete.SetEnabled(true);
  loaded_values_ = {row.Field("TrxDate"), row.Field("DrawDownAmt"), row.Field("Payee")};
  record_.Remember();
}

bool Drawdown::ShowLoan() {
  const std::string id = LoanID.text();
  const Recordset row = main().Query(
      "SELECT "
      "l.CustID,l.LoanAmt,l.TrxDate,l.TotPay,l.CompCode,l.DragLoan,c.CustName,l.StampingDate FROM "
      "LoanMast as l inner join CustMast as c on l.CustID=c.CustID WHERE l.LoanID=" +
      QuoteStr(id));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    record_.Clear();
    return Refuse({fmt::format("Loan {} not found", id)});
  }
  CustID.SetText(NullToEmpty(row.Field("CustID")));
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  CompCode.SetText(NullToEmpty(row.Field("CompCode")));
  LoanAmt.SetText(ShowMoney(row.Field("LoanAmt")));
  LoanDate.SetText(ShowDate(row.Field("TrxDate")));
  DragLoan_ = NullToEmpty(row.Field("DragLoan"));
  if (IsNew() && TrxDate.empty()) {
    const std::string stamped = ShowDate(row.Field("StampingDate"));
    TrxDate.SetText(stamped.empty() ? LoanDate.text() : stamped);
  }
  SaveCmd.SetEnabled(true);
  return true;
}

void Drawdown::ProposeRelease() {
  DrawDownAmt.SetText(ShowMoney(Sen(LoanAmt) - SumOfOthers()));
  Payee.SetText(CustName.text());
  record_.Remember();
}

bool Drawdown::RequestClose() { return MayDiscard(SaveCmd.enabled() && record_.Changed()); }

void Drawdown::LeaveAmount() {
  DrawDownAmt.SetText(Trim(DrawDownAmt.text()));
  if (DrawDownAmt.empty()) return;
  if (!Money::TryText(DrawDownAmt.text())) {
    Refuse(DrawDownAmt, {"Invalid Amount"});
    return;
  }
  DrawDownAmt.SetText(ShowMoney(DrawDownAmt.text()));
  DrawDownAmt.SetMark(false);
}

// --- the save

Money Drawdown::SumOfOthers() {
  std::string sql =
      "SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID=" + QuoteStr(LoanID.text());
  if (!IsNew()) sql += " AND SID <> " + QuoteStr(SID.text());
  return Sen(main().Query(sql).Field(0));
}

bool Drawdown::ExceedsLoan() { return SumOfOthers() + Sen(DrawDownAmt) > Amount(LoanAmt); }

bool Drawdown::Check() {
  if (!RequireDate(session(), TrxDate, {"Date is required"}, {"Invalid Date"})) return false;
  if (DrawDownAmt.empty()) return Refuse(DrawDownAmt, {"Drawdown amount is requured"});
  if (!Money::TryText(DrawDownAmt.text())) return Refuse(DrawDownAmt, {"Invalid Amount"});
  // Nothing is taken back here either.
  if (Sen(DrawDownAmt) <= Money()) return Refuse(DrawDownAmt, {"Drawdown amount is requured"});
  if (ExceedsLoan()) {
    return Refuse(DrawDownAmt, {"Drawdown amount cannot more than loan amount"});
  }
  const auto refusal = CheckRows(main(), LoanID.text());
  return !refusal || Refuse(refusal->text);
}

void Drawdown::Save() {
  if (!Check() || !Confirm({"Confirm to save record ?"})) return;
  const bool is_new = IsNew();
  if (!Write([this] { Store(); })) {
    // A new release's number went back with the rollback: the box must not go on showing it.
    if (is_new) SID.Clear();
    return;
  }
  TellLinkedAccounts();
  record_.Remember();
  Tell(MessageKind::information, {"Record saved"});
  Close();
}

void Drawdown::Store() {
  const bool is_new = IsNew();
  // Another desktop may have released the rest while the question stood.
  LockLoan(main(), LoanID.text());
  if (ExceedsLoan()) throw std::runtime_error("Drawdown amount cannot more than loan amount");
  if (const auto refusal = CheckRows(main(), LoanID.text())) {
    throw std::runtime_error(session().In(refusal->text));
  }
  if (is_new) {
    SID.SetText(NextReleaseNumber(main(), CompCode.text()));
    main().Execute(record_.InsertStatement());
  } else {
    ExecuteOnRow(main(), record_.UpdateStatement(SID.text()), SID.text());
  }
  WriteAudit(session(), is_new ? "Create" : "Modify", "Drawdown", CompCode.text(), SID.text(),
             loaded_values_);
  FollowReleases(main(), LoanID.text());
}

bool Drawdown::Write(const std::function<void()>& write) {
  return Attempt(fmt::format("Drawdown - Loan ID {}", LoanID.text()),
                 {"an error occur during saving record"}, [this, &write] {
                   const Hourglass busy(desk());
                   write();
                 });
}

// The release stands whatever becomes of its invoice.
void Drawdown::TellLinkedAccounts() {
  if (!LinkIsOn(session())) return;
  const Money amount = Sen(DrawDownAmt);
  if (!LinkARInvoice(session(), desk(), {SID.text(), TrxDate.text(), CustID.text(), amount})) {
    Tell(MessageKind::plain,
         {fmt::format("Alert !!\nInvoice {} to {} not linked", SID.text(), CustName.text())});
    return;
  }
  const std::string account = LinkAccount(main(), DragLoan_ == "0" ? "HP" : "TL");
  LinkARInvoiceLine(session(), desk(), {SID.text(), account, "Invoice for loan drawdown", amount});
}

// --- the delete

void Drawdown::Delete() {
  const std::string shown_amount = ShowMoney(loaded_values_[1]);
  const std::string shown_date = ShowDate(loaded_values_[0]);
  if (!ConfirmLoss({fmt::format("Confirm to delete drawdown amount {} dated {} ?", shown_amount,
                                shown_date)})) {
    return;
  }
  const int payments = CountPayments(main(), LoanID.text());
  if (payments > 0 &&
      !ConfirmLoss(
          {fmt::format("Warning! The loan has {} payment record(s)\n Proceed on ?", payments)})) {
    return;
  }
  const bool deleted = Write([this] {
    ExecuteOnRow(main(), "DELETE FROM DrawDownMast WHERE SID=" + QuoteStr(SID.text()), SID.text());
    FollowReleases(main(), LoanID.text());
    // No release left: the sum of no rows is null, and 0 opens the loan's terms again.
    main().Execute("UPDATE LoanMast SET PayOutAmt=0 WHERE PayOutAmt is null and LoanID=" +
                   QuoteStr(LoanID.text()));
    WriteAudit(session(), "Delete", "Drawdown", CompCode.text(), SID.text(), loaded_values_);
  });
  if (!deleted) return;
  Tell(MessageKind::information, {"Record deleted "});
  ClearScreen();
}

void Drawdown::ClearScreen() {
  record_.Clear();
  for (TextBox* box : {&CustName, &LoanAmt, &LoanDate}) box->Clear();
  loaded_values_.clear();
  SaveCmd.SetEnabled(false);
  CmdDelete.SetEnabled(false);
}

}  // namespace kaunter
