// From the terms of a loan to its instalment figures, and back from the figures to the rate or the
// amount. Pure: texts in, texts out; a refusal is a value.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "loans/refusal.h"
#include "loans/terms.h"

namespace kaunter {

// The boxes that change; nothing for a box that stays as it stands.
struct PaymentFigures {
  std::optional<std::string> FirstPayment;
  std::string InstallmentAmt;
  std::string LastPayment;
  std::string LoanBal;
  std::string PayOutAmt2 = "0";
};

// `rounded_installment`: decimals of the instalment of a personal loan (setting
// RoundedInstallment). Refuses the first blank or wrong box in the order LoanAmt, InsRate,
// LoanTerm, LoanTerm3, LoanTerm2. A caller without prompts simply drops the refusal.
std::variant<PaymentFigures, Refusal> CalcPayment(const LoanTerms& terms, int rounded_installment);

// The rate per instalment, in percent, that the figures mean. Nothing when one of them is blank or
// the instalment is no positive whole number once rounded.
std::variant<std::monostate, std::string, Refusal> CalcInt(const LoanTerms& terms);

// The amount, a multiple of 10, that the figures repay at the rate.
struct LoanAmtFigures {
  std::string LoanAmt;
};
// Nothing when a figure is blank. The caller sets an empty LoanType to "Unsecured".
std::variant<std::monostate, LoanAmtFigures, Refusal> CalcLoanAmt(const LoanTerms& terms);

// The annuity payment for `present` over `periods` at `rate` a period, paid at the end of each; the
// plain share of each period when the rate is 0.
double Pmt(double rate, int periods, double present);
// The instalment of a flexi loan: the annuity at InsRate (through money) / 100 / 12, rounded with
// ties to even.
double FlexiInstalment(const LoanTerms& terms);

}  // namespace kaunter
