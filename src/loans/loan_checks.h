// What a loan must tell before it is stored, in the order in which a clerk meets it. Without a
// screen: a loan that comes out of a file passes the same checks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/refusal.h"
#include "loans/terms.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct Settings;

// A loan as the texts of its boxes, by column; choices as their lists show them ("Personal Loan").
class LoanTexts {
 public:
  virtual ~LoanTexts() = default;
  virtual std::string Get(std::string_view column) const = 0;
  virtual void Set(std::string_view column, std::string_view text) = 0;

 protected:
  LoanTexts() = default;
  LoanTexts(const LoanTexts&) = default;
  LoanTexts& operator=(const LoanTexts&) = default;
};

// What must be there; blanks that stand for something are filled on the way, up to the first
// refusal, and the copies of the figures are made.
std::optional<Refusal> CheckLoanBoxes(LoanTexts& loan);

// An alternate code collides with no loan code, no other alternate code and no customer code of the
// company. `loan_id` is the loan's own, "" for a new one. Throws SqlError.
std::optional<Refusal> CheckAlternateCode(Connection& main, std::string_view text,
                                          std::string_view loan_id, std::string_view company);

// Dates are dates, terms are terms, instalments are amounts.
std::optional<Refusal> CheckLoanFigures(const LoanTexts& loan, const LoanTerms& terms);
// The schedule that the terms give. Nothing of a special one, which lives from its backup.
std::optional<Refusal> CheckSchedule(const LoanTerms& terms);

// What is asked about figures that are possible and unusual; nothing for the usual ones.
std::optional<Caption> OddLowestRate(const Settings& settings, const LoanTexts& loan);
std::optional<Caption> OddInstalmentTotal(const LoanTexts& loan);
std::optional<Caption> OddTotalRate(const LoanTexts& loan);

}  // namespace kaunter
