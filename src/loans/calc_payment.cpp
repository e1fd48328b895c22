#include "loans/calc_payment.h"

#include <cmath>
#include <cstdint>

#include "core/formats.h"
#include "core/numbers.h"
#include "loans/step_date.h"
#include "platform/money.h"

namespace kaunter {
namespace {

Refusal LoanTermIsRequired(const char* field) {
  return {field, {"Loan Term is required", "请输入贷款期数"}};
}

std::optional<Refusal> FirstBlank(const LoanTerms& terms) {
  if (terms.LoanAmt.empty()) {
    return Refusal{"LoanAmt", {"Loan Amount is required", "请输入贷款金额"}};
  }
  if (terms.InsRate.empty()) {
    return Refusal{"InsRate", {"Interest Rate is required", "请输入利率"}};
  }
  if (terms.LoanTerm.empty()) return LoanTermIsRequired("LoanTerm");
  if (terms.LoanTerm3.empty()) return LoanTermIsRequired("LoanTerm3");
  if (terms.LoanTerm2.empty()) {
    return Refusal{"LoanTerm2", {"Interest Term is required", "请输入利息期数"}};
  }
  return std::nullopt;
}

std::optional<Refusal> FirstWrong(const LoanTerms& terms) {
  if (auto refusal = CheckLoanAmt(terms.LoanAmt)) return refusal;
  if (auto refusal = CheckInsRate(terms.InsRate)) return refusal;
  if (auto refusal = CheckLoanTerm(terms.LoanTerm)) return refusal;
  return CheckLoanTerm2(terms.LoanTerm2);
}

PaymentFigures FlexiFigures(const LoanTerms& terms) {
  PaymentFigures figures;
  figures.InstallmentAmt = NumberText(FlexiInstalment(terms));
  figures.LastPayment = "0";  // the schedule's last row will tell it
  figures.LoanBal = terms.LoanAmt;
  return figures;
}

PaymentFigures PersonalFigures(const LoanTerms& terms, int rounded_installment) {
  const int T = TermOf(terms);
  const int G = GraceOf(terms);
  const Money amount = Money::FromText(terms.LoanAmt);
  const double L = CDbl(amount) / 100;
  const double R = CDbl(Money::FromText(terms.InsRate)) / 12;
  const Money A = Money::FromDouble((L * R) * (T + G));  // interest of the whole term
  const Money B = Money::FromDouble((L * R) * G);        // interest of the grace rows

  PaymentFigures figures;
  figures.LoanBal = Format(amount + A, "#,##0.00");
  // Two roundings one behind the other, both wanted: the display format's (half away from zero),
  // then RoundedInstallment's (ties to even) on the shown text.
  const std::string shown = Format(CDbl(amount + (A - B)) / T, "#,##0.00");
  const std::string first = NumberText(Round(CDbl(shown), rounded_installment));
  figures.FirstPayment = first;
  figures.InstallmentAmt = first;
  // The last instalment takes all odd sen.
  const Money last =
      (Money::FromText(figures.LoanBal) - B) -
      (std::int64_t{T - 2} * Money::FromText(figures.InstallmentAmt) + Money::FromText(first));
  figures.LastPayment = last.ToText();
  return figures;
}

// Months of the whole term by the repayment code; a division, so through double into money.
Money MonthsOfTerm(const std::string& code, int T) {
  if (code == "MONTH") return Money::FromInteger(T);
  if (code == "WEEK") return Money::FromDouble(T / 4.0);
  if (code == "DAILY") return Money::FromDouble(T / 30.0);
  return Money::FromDouble(static_cast<double>(T) / DaysOfCode(code));
}

// x up to the next whole number by cutting its text, unless it shows no decimals. The cut counts
// the characters of the shown number without its trailing zeros, so 1234.5 loses a digit too many
// and gives 124. That is how the house's tables were made: do not mend it.
double RaisedByTextCut(double x) {
  const std::string shown = Format(x, "0.00");
  if (shown.substr(shown.size() - 2) == "00") return CDbl(shown);
  const std::string rounded = NumberText(CDbl(shown));
  const std::size_t kept = rounded.size() > 3 ? rounded.size() - 3 : 0;
  const std::string cut = NumberText(x).substr(0, kept);
  return (cut.empty() ? 0 : CDbl(cut)) + 1;
}

// The first of the figures that is no amount.
std::optional<Refusal> WrongFigure(const LoanTerms& terms) {
  if (!Money::TryText(terms.FirstPayment)) {
    return Refusal{"FirstPayment",
                   {"Invalid First Payment Amount, Please check", "首期金额无效，请检查"}};
  }
  if (!Money::TryText(terms.InstallmentAmt)) {
    return Refusal{"InstallmentAmt", {"Invalid Installment Amount", "分期金额无效"}};
  }
  if (!Money::TryText(terms.LastPayment)) {
    return Refusal{"LastPayment", {"Invalid Final Payment Amount", "末期金额无效"}};
  }
  return std::nullopt;
}

}  // namespace

double Pmt(double rate, int periods, double present) {
  if (rate == 0) return present / periods;
  return rate * present / (1 - std::pow(1 + rate, -periods));
}

double FlexiInstalment(const LoanTerms& terms) {
  // Through money, as the rate is stored: the same instalment comes out of the loan read again.
  const double rate = CDbl(Money::FromText(terms.InsRate)) / 100 / 12;
  return Round2(Pmt(rate, TermOf(terms), CDbl(terms.LoanAmt)));
}

std::variant<PaymentFigures, Refusal> CalcPayment(const LoanTerms& terms, int rounded_installment) {
  if (auto refusal = FirstBlank(terms)) return *refusal;
  if (auto refusal = FirstWrong(terms)) return *refusal;
  if (terms.DragLoan == LoanScheme::kFlexi) return FlexiFigures(terms);
  return PersonalFigures(terms, rounded_installment);
}

std::variant<std::monostate, std::string, Refusal> CalcInt(const LoanTerms& terms) {
  if (terms.LoanTerm.empty() || terms.LoanAmt.empty() || terms.FirstPayment.empty() ||
      terms.InstallmentAmt.empty() || terms.LastPayment.empty()) {
    return std::monostate();
  }
  if (auto refusal = CheckLoanTerm(terms.LoanTerm)) return *refusal;
  if (auto refusal = CheckLoanAmt(terms.LoanAmt)) return *refusal;
  if (auto refusal = WrongFigure(terms)) return *refusal;
  const Money instalment = Money::FromText(terms.InstallmentAmt);
  if (Round(CDbl(instalment), 0) <= 0) return std::monostate();
  const int T = TermOf(terms);
  const Money amount = Money::FromText(terms.LoanAmt);
  // (T - 2) stands on FirstPayment here, where all other sums have it on InstallmentAmt. So it was
  // drawn up, and the result is a rate per instalment, not per year.
  const Money interest = (std::int64_t{T - 2} * Money::FromText(terms.FirstPayment) + instalment +
                          Money::FromText(terms.LastPayment)) -
                         amount;
  return NumberText(Round((CDbl(interest) / T) * 100 / CDbl(amount), 4));
}

std::variant<std::monostate, LoanAmtFigures, Refusal> CalcLoanAmt(const LoanTerms& terms) {
  if (terms.LastPayment.empty() || terms.InstallmentAmt.empty() || terms.FirstPayment.empty() ||
      terms.LoanTypeID.empty()) {
    return std::monostate();
  }
  if (auto refusal = CheckLoanTerm(terms.LoanTerm)) return *refusal;
  if (auto refusal = CheckInsRate(terms.InsRate)) return *refusal;
  if (auto refusal = CheckLoanTypeID(terms.LoanTypeID)) return *refusal;
  if (auto refusal = WrongFigure(terms)) return *refusal;
  const int T = TermOf(terms);
  const Money months = MonthsOfTerm(terms.LoanTypeID, T);
  const Money total = std::int64_t{T - 2} * Money::FromText(terms.InstallmentAmt) +
                      Money::FromText(terms.LastPayment) + Money::FromText(terms.FirstPayment);
  if (total <= Money()) {
    return Refusal{"InstallmentAmt", {"Invalid Installment Amount", "分期金额无效"}};
  }
  const Money f = Money::FromDouble(CDbl(months) * (CDbl(terms.InsRate) / 12));
  const double P = CDbl(total);
  const double x = (P - (P / CDbl(Money::FromInteger(100) + f)) * CDbl(f)) / 10;
  return LoanAmtFigures{NumberText(RaisedByTextCut(x) * 10)};
}

}  // namespace kaunter
