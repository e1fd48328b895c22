// What the returns to the authorities have in common: figures, and behind each figure the loans
// that it was counted from.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

class Connection;
class Recordset;
class Session;

// The loans of one return. The first day counts from its midnight on, the last one up to its
// midnight: a loan made later on the last day is not of the period.
struct ReturnPeriod {
  std::vector<std::string> companies;
  DateTime from;
  DateTime to;
};

// A loan behind a figure: what put it there, and what it brings to the figure's amount.
struct ReturnLoan {
  std::string LoanID;
  std::optional<DateTime> TrxDate;
  std::string CompCode;
  std::string CustName;
  std::string because;
  Money amount;
};

struct ReturnLine {
  std::string place;  // in the return; "" for loans that no figure of a group takes
  Caption name;
  bool is_count = false;
  std::string figure;  // as the return shows it
  std::function<std::vector<ReturnLoan>(Connection& main)> loans;
};

// What the bar says while a return is counted.
inline const Caption kCountingReturn{"The loans are counted ...", "正在计算贷款..."};
inline const Caption kReturnStopped{"Stopped: nothing was changed", "已停止：没有更改"};

// " (lm.CompCode in ('A','B') ) "
std::string CompaniesText(const std::vector<std::string>& companies);
// " and pm.PayDate >= { ts '2024-01-01 00:00:00' } and pm.PayDate <= { ts ... } "
std::string WithinText(std::string_view column, const ReturnPeriod& period);
std::string TimeText(const DateTime& day);  // "{ ts '2024-01-01 00:00:00' }"

// Rows of loan, date, company, customer, reason and amount, in this order of the columns.
std::vector<ReturnLoan> LoansOf(Recordset rows);

// The paper of a figure's loans.
inline constexpr const char* kReturnLoansFile = "ReturnLoans.rpt";
// Puts the loans where that paper reads them, in place of an earlier list of this PC. Throws
// SqlError.
void StageReturnLoans(Connection& main, std::string_view pcname,
                      const std::vector<ReturnLoan>& loans);

}  // namespace kaunter
