#include "loans/calculator.h"

#include <cstdint>
#include <utility>

#include "core/formats.h"
#include "core/numbers.h"
#include "loans/calc_payment.h"

namespace kaunter {

CalculatorFigures CalcFigures(const LoanTerms& terms) {
  CalculatorFigures figures;
  if (terms.DragLoan == LoanScheme::kFlexi) {
    figures.InstallmentAmt = NumberText(FlexiInstalment(terms));
    figures.LastPayment = "0";
    figures.LoanBal = terms.LoanAmt;
  } else {
    const int T = TermOf(terms);
    const Money amount = Money::FromText(terms.LoanAmt);
    const Money A =
        Money::FromDouble((CDbl(amount) / 100) * (CDbl(Money::FromText(terms.InsRate)) / 12) * T);
    figures.LoanBal = Format(amount + A, "#,##0.00");
    figures.InstallmentAmt = Format(CDbl(amount + A) / T, "#,##0.00");
    const Money instalment = Money::FromText(figures.InstallmentAmt);
    const Money last =
        Money::FromText(figures.LoanBal) - instalment - std::int64_t{T - 2} * instalment;
    figures.LastPayment = last.ToText();
  }
  figures.InstallmentAmt2 = figures.InstallmentAmt;
  return figures;
}

Schedule CalculatorSchedule(LoanTerms terms, const CalculatorFigures& figures) {
  terms.LoanPurpose = InterestMethod::kReducing;
  terms.PayOutAmt2.clear();
  terms.InstallmentAmt = figures.InstallmentAmt;
  terms.InstallmentAmt2 = figures.InstallmentAmt2;
  terms.LastPayment = figures.LastPayment;
  terms.LoanBal = figures.LoanBal;
  return ComputeSchedule(terms, GraceDivision::kPlainDouble);
}

}  // namespace kaunter
