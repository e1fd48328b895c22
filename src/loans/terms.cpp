#include "loans/terms.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "core/numbers.h"
#include "core/texts.h"
#include "loans/step_date.h"
#include "platform/money.h"

namespace kaunter {
namespace {

constexpr double kMostRows = 9999;

bool IsWholeFrom(double least, const std::string& text) {
  if (!IsNumeric(text)) return false;
  const double number = CDbl(text);
  return number >= least && number <= kMostRows && number == std::floor(number);
}

int WholeNumber(const char* field, double least, const std::string& text) {
  if (!IsWholeFrom(least, text)) {
    throw std::invalid_argument(fmt::format("{}: \"{}\" is no number of instalments", field, text));
  }
  return CLng(text);
}

}  // namespace

LoanTerms TermsByColumn(const RecordTexts& text) {
  LoanTerms terms;
  terms.LoanPurpose =
      SameText(text("LoanPurpose"), "FLAT") ? InterestMethod::kFlat : InterestMethod::kReducing;
  terms.secured = SameText(text("LoanType"), "Secured");
  terms.LoanTypeID = text("LoanTypeID");
  terms.LoanAmt = text("LoanAmt");
  terms.InsRate = text("InsRate");
  terms.LoanTerm = text("LoanTerm");
  terms.LoanTerm2 = text("LoanTerm2");
  terms.LoanTerm3 = text("LoanTerm3");
  terms.FirstPayment = text("FirstPayment");
  terms.InstallmentAmt = text("InstallmentAmt");
  terms.InstallmentAmt2 = text("InstallmentAmt2");
  terms.LastPayment = text("LastPayment");
  terms.PayOutAmt2 = text("PayOutAmt2");
  terms.LoanBal = text("LoanBal");
  return terms;
}

int TermOf(const LoanTerms& terms) { return WholeNumber("LoanTerm", 1, terms.LoanTerm); }

int GraceOf(const LoanTerms& terms) {
  return terms.LoanTerm2.empty() ? 0 : WholeNumber("LoanTerm2", 0, terms.LoanTerm2);
}

std::optional<Refusal> CheckLoanAmt(const std::string& text) {
  const std::optional<Money> amount = Money::TryText(text);
  if (amount && *amount > Money() && CDbl(text) <= std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return Refusal{"LoanAmt", {"Invalid Loan Amt", "贷款金额无效"}};
}

std::optional<Refusal> CheckInsRate(const std::string& text) {
  const std::optional<Money> rate = Money::TryText(text);
  if (rate && *rate >= Money() && text.find(',') == std::string::npos) return std::nullopt;
  return Refusal{"InsRate", {"Invalid Interest Amount", "利率无效"}};
}

std::optional<Refusal> CheckLoanTerm(const std::string& text) {
  if (IsWholeFrom(1, text)) return std::nullopt;
  return Refusal{"LoanTerm", {"Invalid Loan Term Value", "贷款期数无效"}};
}

std::optional<Refusal> CheckLoanTerm2(const std::string& text) {
  if (text.empty() || IsWholeFrom(0, text)) return std::nullopt;
  return Refusal{"LoanTerm2", {"Invalid Amount", "宽限期数无效"}};
}

std::optional<Refusal> CheckLoanTypeID(const std::string& code) {
  if (IsRepaymentCode(code)) return std::nullopt;
  return Refusal{
      "LoanTypeID",
      {fmt::format("Invalid Loan Type \"{}\": use MONTH, WEEK, DAILY or like 14DAYS", code),
       fmt::format("还款方式“{}”无效：请用 MONTH、WEEK、DAILY 或如 14DAYS", code)}};
}

std::optional<Refusal> CheckTerms(const LoanTerms& terms) {
  if (auto refusal = CheckLoanAmt(terms.LoanAmt)) return refusal;
  if (auto refusal = CheckInsRate(terms.InsRate)) return refusal;
  if (auto refusal = CheckLoanTerm(terms.LoanTerm)) return refusal;
  if (auto refusal = CheckLoanTerm2(terms.LoanTerm2)) return refusal;
  return CheckLoanTypeID(terms.LoanTypeID);
}

}  // namespace kaunter
