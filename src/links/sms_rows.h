// Whom a short message goes to: the rows that a choice on the screen leads to, and the interest of
// a flexi loan up to a day.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "links/sms_text.h"
#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// In the order of the list on the screen.
enum class SmsType { outstanding_due, full_settled, other, staff, text_file, resend };

// What the person has chosen, as the boxes show it; an empty one narrows nothing.
struct SmsChoice {
  SmsType type = SmsType::outstanding_due;
  std::string CompCode;
  std::string DateFrom;
  std::string DateTo;
  std::string LoanStatus;
  std::string LoanType2;  // "Secured" or "Unsecured"
  std::string CustStatus;
  std::string CustRace;
  std::string MMonth;  // "January"
  std::string UserLevel;
  std::string TextFileName;
  bool all_interest = false;  // of a flexi loan: its interest up to the date, else its balance
};

// As the grid shows it.
struct SmsRow {
  std::string CustID;
  std::string CompCode;
  std::string CustName;
  std::string HP;     // as it is sent; "" when `given` is no mobile number
  std::string given;  // as it is kept
  std::string LoanID;
  std::string Status;
  std::string DueDate;
  std::string DueAmt;
  std::string LoanAmt;
  std::string LoanDate;
  std::string InstallmentAmt;
  std::string LoanBal;
  std::string DOB;
  std::string Tel;     // the company's
  std::string CompHP;  // the company's
  std::string Area;
  std::string Staff;  // "" for the person who sends
};

// Of every type but `resend`. Throws SqlError, and std::runtime_error in the words of the person
// for a file that is no list of numbers.
std::vector<SmsRow> ReadSmsRows(Connection& main, const SmsChoice& choice);

// The texts behind the placeholders of a row. `now` is the server's time, `staff` the person.
SmsValues ValuesOf(const SmsRow& row, const std::string& company, const DateTime& now,
                   const std::string& staff);

// What a flexi loan has run up from its next due date to `to`: a period for each step begun.
struct RunningInterest {
  std::string LoanTypeID;  // "MONTH", "WEEK", "DAILY", "14DAYS"
  Money InsRate;
  Money LoanBal;
  Money DueInt;
  const DateTime* next_due = nullptr;  // null: one period
};
Money InterestUntil(const RunningInterest& loan, const DateTime& to);

}  // namespace kaunter
