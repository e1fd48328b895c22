// What a payment does to its loan, told before it is stored: the rebuild that its save ends with,
// in memory, and the same in words.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "collections/ledger_loan.h"
#include "collections/payment_store.h"
#include "screen/caption.h"

namespace kaunter {

// A row that the payment pays.
struct PreviewedRow {
  std::int64_t SchID = 0;
  Money interest;
  Money capital;
  Money open;  // what is left of it
};

struct PaymentPreview {
  std::vector<PreviewedRow> rows;  // by due date
  Money unplaced;                  // of InstalAmt; no row is left for it
  Money NewLoanBal;                // behind the payment
  Money last_balance;              // behind all payments
};

// The payment takes the place of the stored one of its PayID; without a PayID it comes last. Throws
// what the replay throws.
PaymentPreview PreviewPayment(const LedgerLoan& loan, const Payment& payment);

// "112.00: 42.00 late interest, 12.00 interest, 58.00 of instalment 1; 42.00 of it stays open".
// Nothing for a payment of nothing. Without a preview the instalments are one amount.
Caption InWords(const Payment& payment, const std::optional<PaymentPreview>& preview);
// The same without the amount before it.
Caption PartsInWords(const Payment& payment, const std::optional<PaymentPreview>& preview);

}  // namespace kaunter
