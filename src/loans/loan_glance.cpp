#include "loans/loan_glance.h"

#include <algorithm>

namespace kaunter {

LoanGlance GlanceAt(const std::vector<GlanceRow>& instalments, const DateTime& today) {
  LoanGlance glance;
  for (const GlanceRow& one : instalments) {
    if (one.Payment >= one.PayableAmt) {
      ++glance.paid;
      continue;
    }
    if (!glance.next_due) glance.next_due = one.DueDate;
    const int days = today.DayNumber() - one.DueDate.DayNumber();
    if (days > 0) {
      ++glance.due;
      glance.arrears += one.PayableAmt - one.Payment;
      glance.days_in_arrears = std::max(glance.days_in_arrears, days);
    } else {
      ++glance.open;
    }
  }
  return glance;
}

}  // namespace kaunter
