// The loan calculator's own figures: a table for a prospective customer, without a loan. Its rows
// are those of loans/schedule.h, always reducing.
#pragma once

#include <string>

#include "loans/schedule.h"
#include "loans/terms.h"

namespace kaunter {

struct CalculatorFigures {
  std::string InstallmentAmt;
  std::string InstallmentAmt2;  // the same figure
  std::string LastPayment;
  std::string LoanBal;
};

// `terms` must have passed CheckTerms. They differ from CalcPayment: no interest of grace rows in
// the balance, no RoundedInstallment. So it is meant.
CalculatorFigures CalcFigures(const LoanTerms& terms);

// The rows for `terms` with `figures` filled in.
Schedule CalculatorSchedule(LoanTerms terms, const CalculatorFigures& figures);

}  // namespace kaunter
