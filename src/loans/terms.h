// The terms of a loan as the screen holds them, and the checks they pass before any arithmetic.
//
// Figures stay the texts of their boxes: each step of the arithmetic turns them into money, a
// double or a whole number for itself, and the difference is part of the result.
#pragma once

#include <optional>
#include <string>

#include "loans/refusal.h"
#include "platform/date_time.h"

namespace kaunter {

// Values are the list indexes, stored as text in LoanMast.DragLoan and so on.
enum class LoanScheme { kPersonal = 0, kFlexi = 1 };
enum class InterestMethod { kFlat = 0, kReducing = 1 };

struct LoanTerms {
  LoanScheme DragLoan = LoanScheme::kPersonal;
  // Of a personal loan only. The field keeps the name LoanPurpose although it holds the interest
  // method.
  InterestMethod LoanPurpose = InterestMethod::kFlat;
  bool secured = false;    // LoanType "Secured"
  std::string LoanTypeID;  // repayment code: MONTH, WEEK, DAILY, <n>DAYS
  DateTime NextDueDate;    // due date of row 1

  std::string LoanAmt;
  std::string InsRate;    // percent a year
  std::string LoanTerm;   // T: repaying instalments
  std::string LoanTerm2;  // G: interest-only instalments before them
  std::string LoanTerm3;  // bullet term; takes no part in the arithmetic

  std::string FirstPayment;  // shown and stored; the schedule does not use it
  std::string InstallmentAmt;
  std::string InstallmentAmt2;  // the copy that the flexi loan reads
  std::string LastPayment;
  std::string PayOutAmt2;  // when not zero: replaces the interest of the grace rows
  std::string LoanBal;     // personal: capital and all interest; flexi: capital
};

// By the columns of LoanMast as texts. The scheme and the first due date are left to the caller: a
// row does not keep them as a box shows them.
LoanTerms TermsByColumn(const RecordTexts& text);

// T and G as numbers; they must have passed CheckTerm and CheckGrace (else std::invalid_argument).
int TermOf(const LoanTerms& terms);
int GraceOf(const LoanTerms& terms);

// One box each; a blank one is no business of theirs except where told. Nothing when it fits.
// An amount above 0 that whole ringgit in 32 bits can hold.
std::optional<Refusal> CheckLoanAmt(const std::string& text);
// A number from 0, without thousands commas: "1,8" would be eighteen.
std::optional<Refusal> CheckInsRate(const std::string& text);
// A whole number from 1. Beyond 9999 rows nobody lends.
std::optional<Refusal> CheckLoanTerm(const std::string& text);
// A whole number from 0; blank is 0.
std::optional<Refusal> CheckLoanTerm2(const std::string& text);
std::optional<Refusal> CheckLoanTypeID(const std::string& code);
// All of them in the order of the screen.
std::optional<Refusal> CheckTerms(const LoanTerms& terms);

}  // namespace kaunter
