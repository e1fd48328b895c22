// What the loan screen takes from an application: its row, the second applicant, and the mark that
// it has become a loan.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

struct LoanApplication {
  Recordset row;                 // of AppMast, standing on it
  std::string second_applicant;  // CustID, the first of them by key; "" for none
};

// Nothing when there is no such application. `cust_id` is the customer of the loan: the second
// applicant is another one.
std::optional<LoanApplication> ReadApplication(Connection& main, std::string_view app_id,
                                               std::string_view cust_id);

// Whose application it is, name and number, when the customer has no part in it: a loan is made to
// the person that it was approved for, or to one of those linked to it. "" for one that may be
// taken.
std::string OtherApplicant(Connection& main, std::string_view app_id, std::string_view cust_id);

// Inside the transaction that makes the loan: the picker then leaves the application out and its
// screen is locked. An application that another loan has taken meanwhile stays with that loan;
// false then.
bool MarkTakenUp(Connection& main, std::string_view loan_id, std::string_view app_id);

}  // namespace kaunter
