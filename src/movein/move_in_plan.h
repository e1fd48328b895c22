// What becomes of the lines of one customer: the customer, the loans, their payments, each checked
// as its screen would. Nothing is written here.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "collections/payment_store.h"
#include "core/session.h"
#include "loans/terms.h"
#include "movein/loan_book.h"
#include "movein/staging.h"

namespace kaunter {

struct PaymentPlan {
  int line = 0;
  std::string key;
  Payment payment;
};

struct LoanPlan {
  int line = 0;
  std::string key;
  std::string loan_id;  // of a stored one; "" for a new one
  bool again = false;   // it came before, and was deleted since
  Texts texts;
  LoanTerms terms;
  std::vector<PaymentPlan> payments;
};

struct CustomerPlan {
  int line = 0;
  std::string key;
  std::string cust_id;  // of a stored one; "" for a new one
  bool again = false;   // it came before, and was deleted since
  Texts texts;          // of a new one; none where it is refused
  std::vector<LoanPlan> loans;

  bool Empty() const { return cust_id.empty() ? texts.empty() : loans.empty(); }
};

struct MoveCounts {
  int lines = 0;
  int known = 0;  // taken by an earlier run, or on an earlier line
  int refused = 0;
  int waiting = 0;  // stay behind with another line that is refused
  int good = 0;
  Money amount;  // of the good ones: loan amounts, money received
};

struct MoveReport {
  std::array<MoveCounts, 3> counts;  // by MoveKind
  LineTroubles troubles;
  std::size_t untold = 0;  // troubles beyond those that are kept
  bool complete = false;

  MoveCounts& Of(MoveKind kind) { return counts[static_cast<std::size_t>(kind)]; }
  const MoveCounts& Of(MoveKind kind) const { return counts[static_cast<std::size_t>(kind)]; }
  void Add(LineTrouble trouble);
};

class MovePlanner {
 public:
  // Throws SqlError.
  MovePlanner(Session& session, std::string company, Staging& staging, MoveReport& report);

  // The line with all that belongs to it. Throws SqlError.
  CustomerPlan OfLine(const StagedLine& line);
  // The loans of a customer, or the payments of a loan, whom no line of the files is.
  CustomerPlan OfStranger(MoveKind kind, const std::string& key);

 private:
  bool CheckCustomer(const StagedLine& line, CustomerPlan* plan);
  void NoteDuplicates(const StagedLine& line, const Texts& texts);
  void TakeLoans(const std::vector<StagedLine>& lines, bool customer_comes, CustomerPlan* plan);
  void TakeLoan(const StagedLine& line, bool customer_comes, CustomerPlan* plan);
  bool CheckLoan(const StagedLine& line, LoanPlan* plan);
  void FillLoan(Texts* texts) const;
  bool FillFigures(const StagedLine& line, LoanPlan* plan);
  bool JudgeThreshold(const StagedLine& line, Texts* texts);
  bool TakePayments(LoanPlan* plan, LoanBook* book, const std::string& loan_date, Money paid_out);
  bool CheckPayment(const StagedLine& line, const LoanPlan& loan, LoanBook& book,
                    const std::string& loan_date, Money paid_out, Payment* payment);
  std::string CustomerNamed(const std::string& key, std::string* status);
  void TakeStoredLoan(const std::string& loan_id, const std::string& key,
                      const std::vector<StagedLine>& lines, CustomerPlan* plan);
  // The lines stay behind with another one; those with faults of their own are told already.
  void Keep(const std::vector<StagedLine>& lines);
  void RefuseAll(const std::vector<StagedLine>& lines, const Caption& reason);

  // Our number of a record that an earlier run has taken; "" for one that has not come. One that
  // was deleted since comes `again`, but for a payment: whoever deleted that meant it.
  std::string TakenAs(MoveKind kind, std::string_view key, bool* again = nullptr) const;
  bool Refuse(const StagedLine& line, const Refusal& refusal);
  bool Refuse(const StagedLine& line, std::string field, Caption reason);
  void Note(const StagedLine& line, std::string field, Caption reason);
  void NoteIf(const StagedLine& line, const char* field, const std::optional<Caption>& odd);

  Session& session_;
  Connection& main_;
  std::string company_;
  Staging& staging_;
  MoveReport& report_;
  bool aml_ = false;
  std::string today_;
};

// Of a loan's payment: its receipt, else its day and amount.
std::string PaymentKey(const StagedLine& line, std::string_view loan_key, int occurrence);

}  // namespace kaunter
