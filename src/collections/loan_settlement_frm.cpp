#include "collections/loan_settlement_frm.h"

#include <fmt/format.h>

#include "collections/plain_payment.h"
#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/screen_rights.h"
#include "core/telling.h"
#include "core/values.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

bool IsAmount(const TextBox& box) {
  return box.empty() || Money::TryText(box.text()).value_or(-Money::FromInteger(1)) >= Money();
}

}  // namespace

LoanSettlementfrm::LoanSettlementfrm(Session& session, Desk& desk)
    : SessionScreen("LoanSettlementfrm", {"Loan Settlement", "贷款结清"}, session, desk) {
  for (TextBox* box : {&CustName, &DiscAmt, &LoanBal, &TotPay, &LoanAmt, &TrxDate, &NextDueDate,
                       &LoanTerm, &LoanTypeID, &CompCode, &UserID, &PaymentStatus}) {
    box->SetLocked(true);
  }
  PayDate.max_length = kDateLength;
  Payment.max_length = IntAmt.max_length = kMoneyLength;
  OfferPicker(session, PayID, "SettlePop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadSettlement(id);
  });
  PayID.onLeave = [this] { LeaveKey(PayID, shown_.PayID, &LoanSettlementfrm::LoadSettlement); };
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadLoan(id);
  });
  LoanID.onLeave = [this] { LeaveKey(LoanID, shown_.LoanID, &LoanSettlementfrm::LoadLoan); };
  PayDate.onLeave = [this] { CheckDateBox(this->session(), PayDate); };
  Payment.onLeave = [this] { LeavePayment(); };
  IntAmt.onLeave = [this] { LeaveForfeit(); };
  CmdQuote.onClick = [this] {
    OpenFor(this->session(), this->desk(), "Settlementfrm", "", shown_.LoanID);
    // A payment may have been taken there.
    if (shown_.PayID.empty() && !shown_.LoanID.empty() && !Typed()) LoadLoan(shown_.LoanID);
  };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Typed())) ClearScreen();
  };
  Command1.shortcut = "Ctrl+S";
  Command1.onClick = [this] { Save(); };
  Command4.onClick = [this] { Delete(); };
}

void LoanSettlementfrm::Load() {
  OfferShortcut(session(), CmdQuote, "Settlementfrm", "");
  ClearScreen();
}

bool LoanSettlementfrm::RequestClose() { return MayDiscard(Typed()); }

// A settlement that is stored is shown as it is; what is typed beside it is never saved.
bool LoanSettlementfrm::Typed() const {
  return shown_.PayID.empty() && !(PayDate.empty() && Payment.empty() && IntAmt.empty());
}

void LoanSettlementfrm::ClearScreen() {
  shown_ = {};
  for (TextBox* box :
       {&PayID, &LoanID, &CustName, &PayDate, &Payment, &IntAmt, &DiscAmt, &LoanBal, &TotPay,
        &LoanAmt, &TrxDate, &NextDueDate, &LoanTerm, &LoanTypeID, &CompCode, &PaymentStatus}) {
    box->Clear();
    box->SetMark(false);
  }
  UserID.SetText(session().CurrentUserID);
  for (TextBox* box : {&PayDate, &Payment, &IntAmt}) box->SetLocked(false);
  DG.Clear();
  Command1.SetEnabled(true);
  Command4.SetEnabled(false);
}

// --- what is shown

void LoanSettlementfrm::LeaveKey(TextBox& box, const std::string& shown,
                                 void (LoanSettlementfrm::*load)(std::string)) {
  box.SetText(Trim(box.text()));
  if (SameText(box.text(), shown)) return;
  if (!MayLeaveRecord(Typed())) {
    box.SetText(shown);
  } else if (box.empty()) {
    ClearScreen();
  } else {
    (this->*load)(box.text());
  }
}

bool LoanSettlementfrm::Show(const std::function<bool()>& read) {
  bool shown = false;
  ReadOrTell(session(), *this, title().english,
             {"An error occur during reading the record", "读取资料时发生错误"},
             [&] { shown = read(); });
  return shown;
}

void LoanSettlementfrm::LoadLoan(std::string id) {
  ClearScreen();
  if (Show([&] { return ShowLoan(id); })) return;
  ClearScreen();
  LoanID.SetText(id);
}

bool LoanSettlementfrm::ShowLoan(const std::string& id) {
  const Recordset row = main().Query(
      "SELECT l.LoanID,l.CustID,l.CompCode,l.TrxDate,l.TotPay,l.LoanAmt,l.LoanTerm,l.LoanTypeID,"
      "l.LoanBal,l.NextDueDate,c.CustName FROM LoanMast as l INNER JOIN CustMast as c on "
      "l.CustID=c.CustID WHERE l.LoanID=" +
      QuoteStr(id));
  if (row.Eof()) {
    return Refuse(LoanID, LoanNotFound(id));
  }
  const std::string company = NullToEmpty(row.Field("CompCode"));
  if (!MayUseCompany(session(), company)) {
    return Refuse(LoanID, {fmt::format("Laon ID {} belong to company {}", id, company),
                           fmt::format("贷款编号 {} 属于公司 {}", id, company)});
  }
  shown_.LoanID = NullToEmpty(row.Field("LoanID"));
  shown_.CustID = NullToEmpty(row.Field("CustID"));
  shown_.CompCode = company;
  shown_.LoanBal = Sen(row.Field("LoanBal"));

  LoanID.SetText(shown_.LoanID);
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  LoanBal.SetText(ShowMoney(shown_.LoanBal));
  TotPay.SetText(ShowMoney(row.Field("TotPay")));
  LoanAmt.SetText(ShowMoney(row.Field("LoanAmt")));
  TrxDate.SetText(ShowDate(row.Field("TrxDate")));
  NextDueDate.SetText(ShowDate(row.Field("NextDueDate")));
  LoanTerm.SetText(NullToEmpty(row.Field("LoanTerm")));
  LoanTypeID.SetText(NullToEmpty(row.Field("LoanTypeID")));
  CompCode.SetText(company);
  PaymentStatus.SetText("ACTIVE");
  ShowPayments();
  return true;
}

void LoanSettlementfrm::LoadSettlement(std::string id) {
  ClearScreen();
  if (Show([&] { return ShowSettlement(id); })) return;
  ClearScreen();
  PayID.SetText(id);
}

bool LoanSettlementfrm::ShowSettlement(const std::string& id) {
  const Recordset row = main().Query(
      "SELECT "
      "a.PayID,a.PayDate,a.LoanID,a.CustID,a.PayAmt,a.DiscAmt,a.SchID,a.NextDueDate,b.TrxDate,"
      "b.TotPay,b.LoanAmt,b.LoanTerm,b.LoanTypeID,c.CustName,c.CustNIC,a.IntAmt,a.CompCode,"
      "a.UserID,a.PaymentStatus FROM (PaymentMast as a INNER JOIN LoanMast as b on "
      "a.LoanID=b.LoanID) INNER JOIN CustMast as c on a.CustID=c.CustID WHERE a.PayID=" +
      QuoteStr(id) + " and a.Settlement='1'");
  if (row.Eof()) {
    return Refuse(PayID, {fmt::format("Settlement ID {} not found", id),
                          fmt::format("找不到结清编号 {}", id)});
  }
  const std::string company = NullToEmpty(row.Field("CompCode"));
  if (!MayUseCompany(session(), company)) {
    return Refuse(PayID, {fmt::format("Settlement ID {} belong to company {}", id, company),
                          fmt::format("结清编号 {} 属于公司 {}", id, company)});
  }
  const auto money = [&row](const char* column) { return Sen(row.Field(column)); };
  shown_.PayID = NullToEmpty(row.Field("PayID"));
  shown_.LoanID = NullToEmpty(row.Field("LoanID"));
  shown_.CustID = NullToEmpty(row.Field("CustID"));
  shown_.CompCode = company;
  shown_.SchID = ShowInt(row.Field("SchID"));
  shown_.PayDate = ShowDate(row.Field("PayDate"));
  shown_.NextDueDate = ShowDate(row.Field("NextDueDate"));
  shown_.LoanBal = money("PayAmt");
  shown_.IntAmt = money("IntAmt");
  shown_.DiscAmt = money("DiscAmt");

  PayID.SetText(shown_.PayID);
  LoanID.SetText(shown_.LoanID);
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  PayDate.SetText(shown_.PayDate);
  Payment.SetText(ShowMoney(shown_.LoanBal - shown_.DiscAmt));
  IntAmt.SetText(ShowMoney(shown_.IntAmt));
  DiscAmt.SetText(ShowMoney(shown_.DiscAmt));
  LoanBal.SetText(ShowMoney(shown_.LoanBal));
  TotPay.SetText(ShowMoney(row.Field("TotPay")));
  LoanAmt.SetText(ShowMoney(row.Field("LoanAmt")));
  TrxDate.SetText(ShowDate(row.Field("TrxDate")));
  NextDueDate.SetText(shown_.NextDueDate);
  LoanTerm.SetText(NullToEmpty(row.Field("LoanTerm")));
  LoanTypeID.SetText(NullToEmpty(row.Field("LoanTypeID")));
  CompCode.SetText(company);
  UserID.SetText(NullToEmpty(row.Field("UserID")));
  PaymentStatus.SetText(NullToEmpty(row.Field("PaymentStatus")));
  ShowPayments();
  for (TextBox* box : {&PayDate, &Payment, &IntAmt}) box->SetLocked(true);
  Command1.SetEnabled(false);
  Command4.SetEnabled(true);
  return true;
}

void LoanSettlementfrm::ShowPayments() {
  FillGrid(DG, main().Query("SELECT PayID,PayDate,PayAmt,IntAmt,DiscAmt,NewLoanBal,Settlement FROM "
                            "PaymentMast WHERE LoanID=" +
                            QuoteStr(shown_.LoanID) + " ORDER BY PayID"));
  const int last = static_cast<int>(DG.columns().size()) - 1;
  for (int row = 0; row < DG.RowCount(); ++row) {
    const bool settles = DG.Cell(row, last) == "1";
    DG.SetCell(row, last, settles ? session().In({"Yes", "是"}) : "");
  }
}

// --- what is typed

void LoanSettlementfrm::LeavePayment() {
  Payment.SetText(Trim(Payment.text()));
  if (Payment.empty()) {
    DiscAmt.SetText("0.00");
    return;
  }
  DiscAmt.Clear();  // no rebate of another amount beside one that is refused
  if (!CheckPayment()) return;
  Payment.SetText(ShowMoney(Payment.text()));
  if (IsAmount(IntAmt)) IntAmt.SetText(ShowMoney(IntAmt.text()));
  DiscAmt.SetText(ShowMoney(shown_.LoanBal - Sen(Payment)));
}

void LoanSettlementfrm::LeaveForfeit() {
  IntAmt.SetText(Trim(IntAmt.text()));
  if (!IntAmt.empty() && CheckForfeit()) IntAmt.SetText(ShowMoney(IntAmt.text()));
}

bool LoanSettlementfrm::CheckPayment() {
  if (!IsAmount(Payment)) return Refuse(Payment, kInvalidAmount);
  if (Sen(Payment) > shown_.LoanBal) {
    return Refuse(Payment,
                  {"Payment Amount cannot more than Loan Balance", "付款额不可多过贷款结余"});
  }
  Payment.SetMark(false);
  return true;
}

bool LoanSettlementfrm::CheckForfeit() {
  if (!IsAmount(IntAmt)) return Refuse(IntAmt, kInvalidAmount);
  IntAmt.SetMark(false);
  return true;
}

// --- save and delete

bool LoanSettlementfrm::Check() {
  if (!RequireDate(session(), PayDate, {"Date is require", "请输入日期"})) return false;
  if (IsAmount(Payment) && Sen(Payment).IsZero()) {
    return Refuse(Payment, {"Payment is require", "请输入付款额"});
  }
  if (shown_.LoanID.empty()) return Refuse(LoanID, kLoanRequired);
  return CheckPayment() && CheckForfeit() && CheckLoan();
}

// What is refused at the counter is refused here too.
bool LoanSettlementfrm::CheckLoan() {
  const Recordset loan = main().Query(
      "SELECT LoanID,LoanStatus,PayOutAmt FROM LoanMast WHERE LoanID=" + QuoteStr(shown_.LoanID));
  if (loan.Eof()) return Refuse(LoanID, LoanNotFound(shown_.LoanID));
  const auto reason = WhyNoPayment(main(), loan, PayDate.text());
  return !reason || Refuse(LoanID, *reason);
}

void LoanSettlementfrm::Save() {
  if (!Check()) return;
  if (!Confirm({fmt::format("Confirm to Settle Loan Amount {} ?", shown_.LoanID),
                fmt::format("确定结清贷款 {} ？", shown_.LoanID)})) {
    return;
  }
  Settlement settlement = shown_;
  settlement.PayDate = PayDate.text();
  settlement.IntAmt = Sen(IntAmt);
  settlement.DiscAmt = settlement.LoanBal - Sen(Payment);
  if (!Write({"An error occur during saving record", "储存资料时发生错误"},
             [&] { CreateSettlement(session(), settlement); })) {
    return;
  }
  Finish({fmt::format("Loan {} settled", settlement.LoanID),
          fmt::format("贷款 {} 已结清", settlement.LoanID)},
         fmt::format("Loan ID {} Settled", settlement.LoanID));
}

void LoanSettlementfrm::Delete() {
  if (!ConfirmLoss({fmt::format("Confirm to delete Settlement {} ?", shown_.PayID),
                    fmt::format("确定删除结清 {} ？", shown_.PayID)})) {
    return;
  }
  if (!Write({"An error occur during deleting record", "删除资料时发生错误"},
             [this] { DeleteSettlement(session(), shown_); })) {
    return;
  }
  Finish({"Settlement payment deleted", "结清付款已删除"},
         fmt::format("Settlement ID {} deleted", shown_.PayID));
}

bool LoanSettlementfrm::Write(const Caption& failed, const std::function<void()>& write) {
  try {
    const Hourglass busy(desk());
    Transaction transaction(main());
    write();
    transaction.Commit();
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("Loan Settlement - Loan ID {}", shown_.LoanID), failure);
    Tell(MessageKind::critical, Failed({fmt::format("{} - {}", failed.english, failure.what()),
                                        fmt::format("{} - {}", failed.chinese, failure.what())},
                                       failure));
    return false;
  }
}

void LoanSettlementfrm::Finish(const Caption& told, const std::string& logged) {
  session().PaymentsChanged = true;
  RebuildAndTell(session(), desk(), shown_.LoanID, shown_.CustID);
  Tell(MessageKind::information, told);
  WriteLog(session(), LogLine(session(), fmt::format("Loan Settlement {}", logged)));
  ClearScreen();
}

}  // namespace kaunter
