// The terms as a save hands them to the schedule: with the figures worked out, and their copy.
#pragma once

#include <variant>

#include "loans/calc_payment.h"
#include "loans/terms.h"

namespace kaunter {

inline LoanTerms WithFigures(LoanTerms terms, int decimals = 2) {
  const auto result = CalcPayment(terms, decimals);
  const auto& figures = std::get<PaymentFigures>(result);
  terms.FirstPayment = figures.FirstPayment.value_or("");
  terms.InstallmentAmt = terms.InstallmentAmt2 = figures.InstallmentAmt;
  terms.LastPayment = figures.LastPayment;
  terms.LoanBal = figures.LoanBal;
  terms.PayOutAmt2 = figures.PayOutAmt2;
  return terms;
}

}  // namespace kaunter
