// The save of a payment and what follows its commit: obsolete late charges, the rebuild, the
// accounting link. And the delete, which the same button serves.
#include <fmt/format.h>

#include <optional>
#include <stdexcept>

#include "collections/hold_loan.h"
#include "collections/payment_frm.h"
#include "collections/receipt_number.h"
#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/log.h"
#include "core/telling.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "links/link_documents.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

std::optional<Money> OptionalAmount(const TextBox& box) {
  if (box.empty()) return std::nullopt;
  return AmountIn(box);
}

// "1105 - the disk is full"
std::string Numbered(const std::exception& failure) {
  const auto* error = dynamic_cast<const SqlError*>(&failure);
  return fmt::format("{} - {}", error ? error->number() : 0, failure.what());
}

}  // namespace

Payment PaymentFrm::Collected() const {
  Payment p;
  p.PayID = loaded_payment_;
  p.LoanID = LoanID.text();
  p.CustID = CustID.text();
  p.CompCode = CompCode.text();
  p.SchID = SchID.text();
  p.PayDate = PayDate.text();
  p.CollectInfoID = CollectInfoID.text();
  p.TopUpAmt = AmountIn(TopUpAmt);
  p.PayAmt = AmountIn(PayAmt);
  p.InstalAmt = AmountIn(InstalAmt);
  p.PayExtra = AmountIn(PayExtra);
  p.IntAmt = AmountIn(IntAmt);
  p.ChargeAmt = AmountIn(ChargeAmt);
  p.DiscAmt = AmountIn(DiscAmt);
  p.CollectorAmt = AmountIn(CollectorAmt);
  p.Bank = Bank.text();
  p.ChqNo = ChqNo.text();
  p.SalesmanID = SalesmanID.text();
  p.SalesmanComm = AmountIn(SalesmanComm);
  p.LastDueDate = LastDueDate.text();
  p.NextDueDate = NextDueDate.text();
  p.PaymentStatus = PaymentStatus.text();
  p.PayableAmt = AmountIn(PayableAmt);
  p.IntChargeAmt = AmountIn(IntChargeAmt);
  p.DragInt = AmountIn(DragInt);
  p.Memo1 = Memo1.text();
  p.Memo2 = Memo2.text();
  p.Memo3 = Memo3.text();
  p.Memo5 = AmountIn(Memo5);
  p.OldLoanBal = AmountIn(OldLoanBal);
  p.NewLoanBal = AmountIn(NewLoanBal);
  p.WithdrawDate = WithdrawDate.text();
  p.BankOpenBal = OptionalAmount(BankOpenBal);
  p.WithdrawAmt = OptionalAmount(WithdrawAmt);
  p.RepaymentAmt = OptionalAmount(RepaymentAmt);
  p.BankinReturn = OptionalAmount(BankinReturn);
  p.BankCloseBal = OptionalAmount(BankCloseBal);
  p.TopTerm = TopTerm.empty() ? 0 : CLng(TopTerm.text());
  p.TopAmt = AmountIn(TopAmt);
  p.ReceiptNo = Trim(ReceiptNo.text());
  p.LampiranStatus = LampiranStatus.text();
  p.AMLACode = AMLACode.text();
  p.AMLADesc = AMLADesc.text();
  p.AMLAID = AMLAID.text();
  return p;
}

void PaymentFrm::Save() {
  const bool has_group = !LampiranStatus.empty();
  if (CheckAll()) {
    desk().Beep();
    if (IsDelete()) {
      RemovePayment();
    } else {
      SavePayment();
    }
  }
  // Not stored: the amounts may still change, and the group that a blank one stands for with them.
  if (!has_group && SaveCmd.enabled()) LampiranStatus.Clear();
}

void PaymentFrm::SavePayment() {
  const bool is_new = IsNew();
  if (!Confirm(is_new ? Caption{"Confirm to save ?", "确定储存？"}
                      : Caption{fmt::format("confirm to Save Loan ID {} ?", loaded_payment_),
                                fmt::format("确定储存付款 {} ？", loaded_payment_)})) {
    return;
  }
  Payment payment = Collected();
  if (!WritePayment(payment)) return;
  // Whatever fails from here on, a second press must not store it again.
  SaveCmd.SetEnabled(false);
  session().PaymentsChanged = true;
  loaded_payment_ = payment.PayID;
  PayID.SetText(payment.PayID);
  ReceiptNo.SetText(payment.ReceiptNo);
  // A changed date waives nothing.
  if (is_new) WaiveLateCharges();
  RebuildAndTell(session(), desk(), payment.LoanID, payment.CustID);
  if (LinkIsOn(session())) TellLinkedAccounts(payment);
  const std::string& id = payment.PayID;
  Tell(MessageKind::information,
       is_new ? Caption{fmt::format("Payment ID {} Saved", id), fmt::format("付款 {} 已储存", id)}
              : Caption{fmt::format("Loan ID {} Saved", id), fmt::format("付款 {} 已储存", id)});
  LogDone(id, "Saved");
  LoadPayment(id);  // clears first
  SaveCmd.SetEnabled(false);
  SSTab1.SetPage(0);
  FocusOn(CmdPrint);  // the receipt is what comes next
}

void PaymentFrm::StorePayment(Payment& payment) {
  Transaction transaction(main());
  RefuseStaleLoan(payment);
  RefuseTakenCheque(payment);
  if (IsNew()) {
    CreatePayment(session(), payment);
  } else {
    RefuseStalePayment();
    UpdatePayment(session(), payment, AuditValues(snapshot_));
  }
  transaction.Commit();
}

bool PaymentFrm::WritePayment(Payment& payment) {
  const Payment typed = payment;
  try {
    const Hourglass busy(desk());
    try {
      StorePayment(payment);
    } catch (const ServerLost& lost) {
      // Others were first on the server that leads now. Nothing of it is stored: measured anew.
      if (lost.stored() != ServerLost::Stored::nothing) throw;
      payment = typed;
      StorePayment(payment);
    }
    return true;
  } catch (const ReceiptConflict& conflict) {
    const std::string number = conflict.what();
    WriteLog(session(), LogLine(session(), fmt::format("{} - error Rollback - Same Receipt No - {}",
                                                       PaymentMode, number)));
    return Refuse(ReceiptNo, {fmt::format("Same Receipt No detected - {}", number),
                              fmt::format("收据号码 {} 已用过", number)});
  } catch (const std::exception& failure) {
    LogRollback(session(), PaymentMode, failure);
    return Refuse(
        Failed({fmt::format("An error occurs during saving payment\n{}", Numbered(failure)),
                fmt::format("储存付款时发生错误\n{}", Numbered(failure))},
               failure));
  }
}

// Another desktop may have taken a payment of the same loan, closed it or deleted it while this one
// was typed.
void PaymentFrm::RefuseStaleLoan(const Payment& payment) {
  HoldLoan(main(), payment.LoanID);
  const Recordset loan = main().Query("SELECT LoanStatus,LoanBal FROM LoanMast WHERE LoanID=" +
                                      QuoteStr(payment.LoanID));
  if (loan.Eof()) throw std::runtime_error(session().In(LoanNotFound(payment.LoanID)));
  const std::string status = NullToEmpty(loan.Field("LoanStatus"));
  if (!SameText(status, "ACTIVE")) throw std::runtime_error(session().In(NoPaymentFor(status)));
  // A change is measured by the balance on its row.
  if (!IsNew() || payment.PayAmt <= Sen(loan, "LoanBal")) return;
  if (IsFlexi() && payment.PayAmt <= FlexiLimit()) return;
  throw std::runtime_error(session().In(kAboveBalance));
}

// A change made elsewhere since the payment was loaded would be undone, and a delete would free
// another cheque than the one that paid. The balances are the rebuild's: any payment of the loan
// moves them.
void PaymentFrm::RefuseStalePayment() {
  std::optional<Payment> stored = ReadPayment(main(), loaded_payment_);
  if (!stored) return;  // told by the write itself
  stored->OldLoanBal = snapshot_.OldLoanBal;
  stored->NewLoanBal = snapshot_.NewLoanBal;
  if (*stored == snapshot_) return;
  throw std::runtime_error(session().In(
      {fmt::format("Payment {} was changed meanwhile, Please load it again", loaded_payment_),
       fmt::format("付款 {} 已被更改，请重新载入", loaded_payment_)}));
}

// A cheque pays once, though two desktops typed it while it was free.
void PaymentFrm::RefuseTakenCheque(const Payment& payment) {
  if (payment.ChqNo.empty()) return;
  const std::string taken_by =
      ScalarQuery(main(), fmt::format("SELECT PayID FROM ChqMast WHERE LoanID={} AND ChqNo={}",
                                      QuoteStr(payment.LoanID), QuoteStr(payment.ChqNo)));
  if (taken_by.empty() || SameText(taken_by, payment.PayID)) return;
  throw std::runtime_error(session().In(kChequeTaken));
}

void PaymentFrm::WaiveLateCharges() {
  if (PendingChargeUpdate.empty()) return;
  try {
    Transaction transaction(main());
    main().Execute(PendingChargeUpdate);
    transaction.Commit();
  } catch (const std::exception& failure) {
    // The payment stands, and its loan must still be rebuilt.
    LogRollback(session(), PaymentMode, failure);
    Refuse(Failed({fmt::format("an error occur during waive late charges\n{}", Numbered(failure)),
                   fmt::format("豁免逾期收费时发生错误\n{}", Numbered(failure))},
                  failure,
                  {"The payment stays saved, only the late charges are not waived. Mend the cause. "
                   "Do not enter the payment again.",
                   "付款已储存，只是逾期收费没有豁免。请排除原因。请勿重复输入付款。"}));
  }
}

void PaymentFrm::TellLinkedAccounts(const Payment& payment) {
  const std::string& customer = CustName.text();
  const auto [paid, discount] = DocumentsOf(
      PaymentToLink{payment.PayID, payment.PayDate, payment.CustID, customer, payment.Bank,
                    payment.ChqNo,
                    payment.PayAmt + payment.IntAmt + payment.CollectorAmt + payment.ChargeAmt,
                    payment.DiscAmt},
      [this](std::string_view link_id) { return LinkAccount(main(), link_id); });
  if (!LinkARPayment(session(), desk(), PaymentOf(paid))) {
    desk().Message(
        MessageKind::warning, "Alert !!",
        session().In({fmt::format("Payment ID {} from {} not linked", payment.PayID, customer),
                      fmt::format("{1} 的付款 {0} 没有传到会计系统", payment.PayID, customer)}));
    return;
  }
  // A changed payment sends its discount whatever it is, so that one taken away is taken away
  // there.
  if (IsNew() && discount.optional) return;
  LinkARCN(session(), desk(), CreditNoteOf(discount));
}

// --- the delete

void PaymentFrm::RemovePayment() {
  const std::string id = loaded_payment_;
  if (!ConfirmLoss({fmt::format("Confirm to delete Loan ID {} ?", id),
                    fmt::format("确定删除付款 {} ？", id)})) {
    return;
  }
  const Payment stored = snapshot_;
  Caption failed;
  try {
    const Hourglass busy(desk());
    main().BeginTrans();
    RefuseStaleLoan(stored);
    RefuseStalePayment();
    DeletePayment(session(), stored);
    main().CommitTrans();
  } catch (const std::exception& failure) {
    // No rollback of its own: the rebuild's transaction ends what is still open. So it is told
    // behind that: nobody else could save while the message stands.
    LogRollback(session(), PaymentMode, failure);
    failed = Failed({fmt::format("an error occurs during deleting payment\n{}", failure.what()),
                     fmt::format("删除付款时发生错误\n{}", failure.what())},
                    failure);
  }
  const bool deleted = failed.english.empty();
  if (deleted) {
    SaveCmd.SetEnabled(false);
    session().PaymentsChanged = true;
  }
  RebuildAndTell(session(), desk(), stored.LoanID, stored.CustID, deleted);
  if (main().InTransaction()) main().RollbackTrans();
  if (!deleted) {
    Refuse(failed);
    return;
  }
  Tell(MessageKind::information,
       {fmt::format("Loan ID {} Deleted", id), fmt::format("付款 {} 已删除", id)});
  LogDone(id, "Deleted");
  StartAgain();
}

void PaymentFrm::LogDone(const std::string& id, const char* what) {
  WriteLog(session(),
           LogLine(session(), fmt::format("{} - Collection ID {} {}", PaymentMode, id, what)));
}

}  // namespace kaunter
