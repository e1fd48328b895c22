// A loan in memory, as its payments change it one after the other: what the next one is measured
// by.
#pragma once

#include <memory>
#include <optional>

#include "collections/ledger_loan.h"
#include "collections/ledger_rows.h"
#include "collections/payment_store.h"
#include "loans/schedule.h"

namespace kaunter {

class LoanBook {
 public:
  // A loan that is not stored yet. Throws what ComputeSchedule throws.
  explicit LoanBook(const LoanTerms& terms);
  // A stored one, with its payments. Throws what the replay throws.
  explicit LoanBook(const LedgerLoan& loan);

  bool flexi() const { return !loan_.terms.personal; }
  Money balance() const { return replay_->new_balance(); }
  Money open() const;  // on the schedule
  std::optional<ReplayLine> FirstOpenLine() { return rows_->FirstOpenLine(); }
  // The due date of the row behind.
  std::optional<DateTime> DueBehind(const ReplayLine& line) const;
  void Pay(const Payment& payment);

 private:
  void Begin(bool derive);

  LedgerLoan loan_;
  std::unique_ptr<RowsInMemory> rows_;
  std::unique_ptr<LoanReplay> replay_;
};

}  // namespace kaunter
