// The statements that keep a loan's schedule in SchMast, its backup in SchMast2 and its reminder
// list in PaymentList, and those of the calculator's throw-away rows.
//
// No transaction is opened here and no failure is caught: a statement that fails throws SqlError to
// to the caller, and the rows already written stay. A caller that wants all or nothing brings its
// own transaction.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "loans/refusal.h"
#include "loans/schedule.h"
#include "loans/terms.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct LoanKey {
  std::string LoanID;
  std::string CustID;
};

void ClearSchedule(Connection& connection, std::string_view loan_id);

// Computes the schedule and stores it: rows, TotLoanInt and OrgDueDate of the loan (LastPayment of
// a flexi loan), the backup, the reminder list. The loan's row must be there and its old schedule
// cleared. With `special` it copies the backup into the schedule and does nothing else. Gives what
// was computed (no rows when `special`). Throws what ComputeSchedule throws, before anything is
// written.
Schedule GenerateSchedule(Connection& connection, const LoanKey& key, const LoanTerms& terms,
                          bool special);

// The list of planned payments, made anew from the schedule.
void RefillPaymentList(Connection& connection, std::string_view loan_id);

// Holds the loan and makes its schedule anew from the terms on its row, as the next save of its
// screen would. A loan that is gone or drawn by now keeps what it has.
void RegenerateSchedule(Connection& connection, std::string_view loan_id);

// `to_backup`: the backup is made anew from the schedule. Else `update_rows`: the figures of the
// schedule's rows are taken from the backup; else the backup's rows are inserted as a new schedule.
void CopySchedule(Connection& connection, std::string_view loan_id, bool update_rows,
                  bool to_backup);

// A special schedule lives from its backup: refuses a loan whose backup has no rows.
std::optional<Refusal> CheckBackup(Connection& connection, std::string_view loan_id);

// --- a schedule edited by hand
// A line of the schedule grid, texts as shown.
struct EditedLine {
  std::string SchID;
  std::string PayableAmt;
  std::string CapitalAmt;
  std::string InterestAmt;
};
// Takes `payable` into the line: both amounts shown anew, capital = payable - interest. Refuses a
// text that is no amount and leaves the line.
std::optional<Refusal> EditPayable(EditedLine* line, std::string_view payable);
// Refuses lines whose capital does not add up to the loan's amount.
std::optional<Refusal> CheckScheduleCapital(const std::vector<EditedLine>& lines,
                                            std::string_view loan_amt);
// Puts payable and capital of the lines over the generated rows; their interest stays as generated,
// on purpose. The backup is made anew afterwards: it keeps what was agreed, and the first rebuild
// of a special schedule would lose the edits.
void ApplyEditedSchedule(Connection& connection, std::string_view loan_id,
                         const std::vector<EditedLine>& lines);

// --- the calculator's rows, in SchMast2 under its own number
// Replaces the rows of `loan_id`. `loan_bal` as its box shows it.
void StoreCalculation(Connection& connection, std::string_view loan_id, const Schedule& schedule,
                      std::string_view loan_bal);
void DeleteCalculation(Connection& connection, std::string_view loan_id);

}  // namespace kaunter
