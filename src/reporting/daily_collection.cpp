// Daily collection: the loans made and the payments taken between two dates.
#include <fmt/format.h>

#include "core/session.h"
#include "core/values.h"
#include "reporting/staging.h"

namespace kaunter {
namespace {

// " WHERE <column> >= <from> AND <column> <= <to>", as far as the dates are given. The last day
// counts up to its first moment.
std::string Between(std::string_view column, const StagedRun& run) {
  std::string condition;
  if (!run.date_from.empty()) {
    condition = fmt::format(" WHERE {} >= {}", column, SqlDate(run.date_from));
  }
  if (!run.date_to.empty()) {
    condition += fmt::format("{}{} <= {}", condition.empty() ? " WHERE " : " AND ", column,
                             SqlDate(run.date_to));
  }
  return condition;
}

}  // namespace

bool StageDailyCollection(Session& session, Desk& desk, const StagedRun& run) {
  return Stage(session, desk, run, "an error occur during process", [&](Connection& main) {
    const std::string key = QuoteStr(run.pcname) + "," + QuoteStr(run.report_name);
    main.Execute(fmt::format(
        "INSERT INTO MasterReport (pcname,reportname,recordid,s1,c1,c2,d1,s10) "
        "SELECT {},LoanID,LoanID,{},TrxDate,CompCode FROM LoanMast {}",
        key, session.Special ? "LoanAmt2,LoanAmt2" : "LoanAmt,PayOutAmt", Between("TrxDate", run)));
    main.Execute(fmt::format(
        "INSERT INTO MasterReport (pcname,reportname,recordid,s1,c3,c4,c5,d1,s10) "
        "SELECT {},PayID,LoanID,(PayAmt+IntAmt+ChargeAmt+CollectorAmt-(TopUpAmt+DiscAmt)),"
        "NewLoanBal,PayAmt,PayDate,CompCode FROM PaymentMast {}",
        key, Between("PayDate", run)));
  });
}

}  // namespace kaunter
