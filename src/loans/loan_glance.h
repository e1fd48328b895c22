// A loan at a glance: what is paid, what should have been, what comes next.
#pragma once

#include <optional>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"

namespace kaunter {

struct GlanceRow {
  DateTime DueDate;
  Money PayableAmt;
  Money Payment;
};

struct LoanGlance {
  // Instalments by their state: paid in full; due before today and not paid in full; all others.
  int paid = 0;
  int due = 0;
  int open = 0;
  std::optional<DateTime> next_due;  // of the first instalment not paid in full
  int days_in_arrears = 0;           // since the oldest instalment that is due
  Money arrears;                     // what is unpaid of those that are due
};

// `instalments` in the order of the schedule. An instalment that falls due today is not in arrears.
LoanGlance GlanceAt(const std::vector<GlanceRow>& instalments, const DateTime& today);

}  // namespace kaunter
