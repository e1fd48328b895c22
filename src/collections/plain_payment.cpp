#include "collections/plain_payment.h"

#include <fmt/format.h>

#include <optional>

#include "collections/pay_day.h"
#include "core/values.h"
#include "loans/step_date.h"

namespace kaunter {
namespace {

Money Amount(const Recordset& row, std::string_view column) {
  return Money::FromText(ShowMoney(row.Field(column)));
}

bool IsPersonal(const Recordset& loan) {
  const std::string scheme = NullToEmpty(loan.Field("DragLoan"));
  return scheme.empty() || scheme == "0";
}

// What is still open on the whole schedule.
Money OpenOnSchedule(Connection& main, const std::string& loan) {
  return Money::FromText(ShowMoney(ScalarQuery(
      main,
      "SELECT SUM(CapitalAmt+InterestAmt) - SUM(CapitalPayment+InterestPayment) FROM SchMast "
      "WHERE LoanID=" +
          loan)));
}

std::optional<Caption> WhyNot(Connection& main, const Recordset& loan, const std::string& key,
                              std::string_view pay_date, Money amount) {
  const std::string status = NullToEmpty(loan.Field("LoanStatus"));
  if (!SameText(status, "ACTIVE")) {
    return Caption{fmt::format("No payment for {} loan", status),
                   fmt::format("状态 {} 的贷款不可付款", status)};
  }
  if (Amount(loan, "PayOutAmt").IsZero()) {
    return Caption{"Loan not fully drawdown cannot make payment", "贷款尚未全部放款，不可付款"};
  }
  const std::string loan_id = NullToEmpty(loan.Field("LoanID"));
  if (IsBeforeLoanDate(main, pay_date, loan_id)) {
    return Caption{"Payment date cannot eariler than loan date", "付款日期不可早过贷款日期"};
  }
  if (amount <= Amount(loan, "LoanBal")) return std::nullopt;
  if (IsPersonal(loan)) {
    return Caption{"Payment amount cannot more than loan balance amount", "付款额不可多过贷款结余"};
  }
  const Money limit = OpenOnSchedule(main, key);
  if (amount <= limit) return std::nullopt;
  return Caption{fmt::format("Total payment cannot more than {}", ShowMoney(limit)),
                 fmt::format("付款总额不可多过 {}", ShowMoney(limit))};
}

// What the first open row asks for and what of it is open.
void TakeInstalment(Connection& main, const Recordset& loan, const std::string& key,
                    Payment& payment) {
  const Recordset row = main.Query(
      fmt::format("SELECT DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,"
                  "InterestPayment,IntDate FROM SchMast WHERE SchID={} AND LoanID={}",
                  StripCommaOrZero(payment.SchID), key));
  if (row.Eof()) return;
  payment.LastDueDate = ShowDate(row.Field("DueDate"));
  payment.PayableAmt = Amount(row, "PayableAmt");
  payment.DragInt = Amount(row, "CapitalAmt") - Amount(row, "CapitalPayment");
  payment.IntChargeAmt = Amount(row, "InterestAmt") - Amount(row, "InterestPayment");
  const std::string code = NullToEmpty(loan.Field("LoanTypeID"));
  const DateTime* due = row.Field("DueDate").AsDate();
  if (!IsPersonal(loan) && due != nullptr && IsRepaymentCode(code)) {
    payment.NextDueDate = ShowDate(StepDate(code, *due, false));
    return;
  }
  const Recordset next = main.Query(fmt::format(
      "SELECT DueDate FROM SchMast WHERE SchID={} AND LoanID={}", CLng(payment.SchID) + 1, key));
  payment.NextDueDate = next.Eof() ? payment.LastDueDate : ShowDate(next.Field("DueDate"));
}

}  // namespace

std::variant<Payment, Caption> PlainPayment(Connection& main, std::string_view loan_id,
                                            std::string_view pay_date, Money amount) {
  const std::string key = QuoteStr(loan_id);
  const Recordset loan = main.Query(
      "SELECT LoanID,CustID,CompCode,LoanBal,LoanTypeID,LoanStatus,DragLoan,PayOutAmt FROM "
      "LoanMast WHERE LoanID=" +
      key);
  if (loan.Eof()) {
    return Caption{fmt::format("Loan ID {} not found", loan_id),
                   fmt::format("找不到贷款 {}", loan_id)};
  }
  if (auto reason = WhyNot(main, loan, key, pay_date, amount)) return *std::move(reason);
  Payment payment;
  payment.LoanID = NullToEmpty(loan.Field("LoanID"));
  payment.CustID = NullToEmpty(loan.Field("CustID"));
  payment.CompCode = NullToEmpty(loan.Field("CompCode"));
  payment.SchID = FirstOpenRow(main, loan_id);
  payment.PayDate = pay_date;
  payment.PayAmt = payment.InstalAmt = amount;
  payment.RepaymentAmt = amount;
  payment.OldLoanBal = Amount(loan, "LoanBal");
  payment.NewLoanBal = payment.OldLoanBal - amount;
  payment.LampiranStatus = payment.NewLoanBal > Money() ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
  if (!payment.SchID.empty()) TakeInstalment(main, loan, key, payment);
  return payment;
}

}  // namespace kaunter
