// New Lampiran (NewLampiran.rpt): the loans of one company by month and by the customer's monthly
// income, in five bands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "compliance/returns.h"

namespace kaunter {

class Desk;

inline constexpr int kIncomeBands = 5;

// The band of an income, tested from below. A negative income has none and keeps the band of the
// loan before it, `before`, on purpose.
int IncomeBand(Money income, int before);

struct LampiranLoan {
  std::string LoanID;
  DateTime TrxDate;
  std::string CompCode;
  std::string CustName;
  Money income;
  Money LoanAmt;
  int band = 1;
  std::string month;  // "202401"
};

// The first company of the period alone. By date and number, so that a negative income gets the
// same band in every run; that of the first loan is 1. `more` is behind the columns of the
// statement: ",cm.CustName", which the loans then have. Throws SqlError.
std::vector<LampiranLoan> LampiranLoans(Connection& main, const ReturnPeriod& period,
                                        std::string_view more = {});

// Replaces the rows of the report: a row of nothing for each band of each month, and a row for each
// loan. Tells that it is done; false when it was stopped. The earlier rows then stand, as behind a
// failure, which is thrown on.
bool StageNewLampiran(Session& session, Desk& desk, const ReturnPeriod& period,
                      std::string_view pcname, std::string_view report_name);

// A line for each band of each month.
std::vector<ReturnLine> LampiranLines(Connection& main, const ReturnPeriod& period);

}  // namespace kaunter
