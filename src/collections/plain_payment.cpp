#include "collections/plain_payment.h"

#include <optional>

#include "collections/instalment.h"
#include "collections/pay_day.h"
#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

bool IsPersonal(const Recordset& loan) {
  const std::string scheme = NullToEmpty(loan.Field("DragLoan"));
  return scheme.empty() || scheme == "0";
}

std::optional<Caption> WhyNot(Connection& main, const Recordset& loan, std::string_view pay_date,
                              Money amount) {
  if (auto reason = WhyNoPayment(main, loan, pay_date)) return reason;
  if (amount <= Sen(loan, "LoanBal")) return std::nullopt;
  if (IsPersonal(loan)) return kAboveBalance;
  const Money limit = OpenOnSchedule(main, NullToEmpty(loan.Field("LoanID")));
  if (amount <= limit) return std::nullopt;
  return AboveOpen(limit);
}

// What the first open row asks for and what of it is open.
void TakeInstalment(Connection& main, const Recordset& loan, Payment& payment) {
  const auto row =
      ReadInstalment(main, payment.LoanID, payment.SchID,
                     IsPersonal(loan) ? std::string() : NullToEmpty(loan.Field("LoanTypeID")));
  if (!row) return;
  payment.LastDueDate = row->DueDate;
  payment.NextDueDate = row->NextDueDate;
  payment.PayableAmt = row->PayableAmt;
  payment.DragInt = row->capital_open;
  payment.IntChargeAmt = row->interest_open;
}

}  // namespace

std::optional<Caption> WhyNoPayment(Connection& main, const Recordset& loan,
                                    std::string_view pay_date) {
  const std::string status = NullToEmpty(loan.Field("LoanStatus"));
  if (!SameText(status, "ACTIVE")) return NoPaymentFor(status);
  if (Sen(loan, "PayOutAmt").IsZero()) return kNotDrawn;
  if (IsBeforeLoanDate(main, pay_date, NullToEmpty(loan.Field("LoanID")))) return kBeforeLoanDate;
  return std::nullopt;
}

std::variant<Payment, Caption> PlainPayment(Connection& main, std::string_view loan_id,
                                            std::string_view pay_date, Money amount) {
  const Recordset loan = main.Query(
      "SELECT LoanID,CustID,CompCode,LoanBal,LoanTypeID,LoanStatus,DragLoan,PayOutAmt FROM "
      "LoanMast WHERE LoanID=" +
      QuoteStr(loan_id));
  if (loan.Eof()) return LoanNotFound(loan_id);
  if (auto reason = WhyNot(main, loan, pay_date, amount)) return *std::move(reason);
  Payment payment;
  payment.LoanID = NullToEmpty(loan.Field("LoanID"));
  payment.CustID = NullToEmpty(loan.Field("CustID"));
  payment.CompCode = NullToEmpty(loan.Field("CompCode"));
  payment.SchID = FirstOpenRow(main, loan_id);
  payment.PayDate = pay_date;
  payment.PayAmt = payment.InstalAmt = amount;
  payment.RepaymentAmt = amount;
  payment.OldLoanBal = Sen(loan, "LoanBal");
  payment.NewLoanBal = payment.OldLoanBal - amount;
  payment.LampiranStatus = payment.NewLoanBal > Money() ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
  if (!payment.SchID.empty()) TakeInstalment(main, loan, payment);
  return payment;
}

}  // namespace kaunter
