// Income of the running month for which no e-invoice has gone out yet.
//
// Income is the interest of the instalments that fall due in the month, of loans whose interest is
// worked out at the beginning (DragLoan 0); what payments bring in interest of other loans (IntAmt)
// and in late interest (CollectorAmt); and invoices and credit notes. Each is a document, and has
// gone out once EInvMast has a uuid for it. Which documents an office submits is told by the
// statements of its central database; those that come with the program list these very ones.
#pragma once

#include <string>
#include <vector>

#include "core/office_figures.h"

namespace kaunter {

// Of a company that submits e-invoices: one that has a tax identity.
struct UnsentIncome {
  std::string CompCode;
  Tally named;         // of customers with a tax number: each has an invoice of his own
  Tally consolidated;  // of all others
  Tally all() const {
    return {named.count + consolidated.count, named.amount + consolidated.amount};
  }
  bool operator==(const UnsentIncome&) const = default;
};

// The person's companies that submit e-invoices.
std::vector<std::string> SubmittingCompanies(Session& session);
// One a company, in that order; Tallies count documents.
std::vector<UnsentIncome> ReadUnsentIncome(Session& session,
                                           const std::vector<std::string>& companies,
                                           const DateTime& today);

}  // namespace kaunter
