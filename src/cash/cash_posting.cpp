#include "cash/cash_posting.h"

#include <fmt/format.h>

#include <stdexcept>

#include "cash/cash_balance.h"
#include "core/values.h"

namespace kaunter {
namespace {

struct Posting {
  std::string TranType;
  std::string TranDesc;
  std::string TranMemo;
  Money TranAmt;
};

Money Absolute(Money amount) { return amount < Money() ? -amount : amount; }

[[noreturn]] void UnknownMode(std::string_view mode) {
  throw std::invalid_argument(fmt::format("\"{}\" posts nothing to the cash book", mode));
}

// The pair as it is after the posting; the company's row takes it behind the insert.
CashPair Moved(Connection& main, std::string_view comp_code, const Posting& posting) {
  LockBalances(main, comp_code);
  CashPair pair = ReadBalances(main, comp_code);
  pair += EffectOf(posting.TranType, posting.TranAmt).value();
  return pair;
}

std::string BankRemark(const PaymentMovement& payment) {
  if (!payment.ChqNo.empty()) return fmt::format(" ({} {})", payment.Bank, payment.ChqNo);
  return payment.Bank.empty() ? "" : fmt::format(" ({})", payment.Bank);
}

}  // namespace

Money PaymentMovement::Total() const {
  return PayAmt + CollectorAmt + IntAmt + ChargeAmt - DiscAmt;
}

void PostLoanMovement(Connection& main, std::string_view mode, const LoanMovement& loan,
                      Money old_amount) {
  Posting posting;
  if (mode == "New Loan") {
    posting = {"Cash Out", "New Loan in " + loan.LoanID,
               fmt::format("Loan out to {} by {}", loan.CustName, loan.SalesmanID), loan.PayOutAmt};
  } else if (mode == "Edit Loan") {
    const Money more = loan.PayOutAmt - old_amount;
    if (more.IsZero()) return;
    posting = {more > Money() ? "Cash Out" : "Cash In", "Edit Loan in " + loan.LoanID,
               fmt::format("Edit {}'s loan with capital amount from  {} adjusted to {}",
                           loan.CustName, ShowMoney(old_amount), ShowMoney(loan.PayOutAmt)),
               Absolute(more)};
  } else if (mode == "Delete Loan") {
    posting = {"Cash In", "Delete Loan in " + loan.LoanID,
               fmt::format("Delete {}'s loan with capital amount in {}", loan.CustName,
                           ShowMoney(loan.PayOutAmt)),
               loan.PayOutAmt};
  } else {
    UnknownMode(mode);
  }
  const CashPair pair = Moved(main, loan.CompCode, posting);
  main.Execute(fmt::format(
      "INSERT INTO CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,"
      "CatCode,CBType) values ({},{},{},{},{},{},{},'LOAN','A')",
      QuoteStr(loan.CompCode), SqlDate(loan.TrxDate), QuoteStr(posting.TranType),
      QuoteStr(posting.TranDesc), QuoteStr(posting.TranMemo), posting.TranAmt.ToText(),
      PairLiterals(pair)));
  StoreBalances(main, loan.CompCode, pair);
}

void PostPaymentMovement(Connection& main, std::string_view mode, const PaymentMovement& payment,
                         const PaymentMovement& snapshot) {
  const bool bank =
      SameText(payment.CollectInfoID, "CHEQUE") || SameText(payment.CollectInfoID, "BANK");
  const std::string in = bank ? "Bank In" : "Cash In";
  const std::string out = bank ? "Bank Out" : "Cash Out";
  const Money total = payment.Total();
  const std::string what = fmt::format("{} in {}{}", mode, payment.PayID, BankRemark(payment));
  Posting posting;
  if (mode == "New Payment") {
    posting = {in, what,
               fmt::format("Payment receive from {} by {}", payment.CustName, payment.SalesmanID),
               total};
  } else if (mode == "Edit Payment") {
    const Money more = total - snapshot.Total();
    if (more.IsZero()) return;
    posting = {more > Money() ? in : out, what,
               fmt::format("Edit {}'s payment amount from  {} adjusted to {}", payment.CustName,
                           ShowMoney(snapshot.Total()), ShowMoney(total)),
               Absolute(more)};
  } else if (mode == "Delete Payment") {
    posting = {out, what,
               fmt::format("Delete {}'s payment amount in {}", payment.CustName, ShowMoney(total)),
               Absolute(total)};
  } else {
    UnknownMode(mode);
  }
  const CashPair pair = Moved(main, payment.CompCode, posting);
  main.Execute(
      fmt::format("Insert CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,"
                  "BankBal,CBType,CatCode) Values ({},{},{},{},{},{},{},'A','PAYMENT')",
                  QuoteStr(payment.CompCode), SqlDate(payment.PayDate), QuoteStr(posting.TranType),
                  QuoteStr(posting.TranDesc), QuoteStr(posting.TranMemo), posting.TranAmt.ToText(),
                  PairLiterals(pair)));
  StoreBalances(main, payment.CompCode, pair);
}

}  // namespace kaunter
