#include "upkeep/office_check.h"

#include <iterator>

#include "core/values.h"

namespace kaunter {

OfficeCheck CheckOffice(Connection& main, const OfficeCheckGoOn& go_on) {
  OfficeCheck check;
  check.receipts = CLng(ScalarQuery(main, "SELECT COUNT(*) FROM PaymentMast"));
  check.complete = true;
  for (Recordset row = main.Query("SELECT CompCode FROM LoanMast GROUP BY CompCode UNION "
                                  "SELECT CompCode FROM CustMast GROUP BY CompCode");
       check.complete && !row.Eof(); row.MoveNext()) {
    const std::string company = NullToEmpty(row.Field(0));
    LedgerReport report = CheckCompany(
        main, company, [&](const LedgerProgress& progress) { return go_on(company, progress); });
    check.loans += report.loans;
    check.complete = report.complete;
    check.faults.insert(check.faults.end(), std::make_move_iterator(report.faults.begin()),
                        std::make_move_iterator(report.faults.end()));
  }
  return check;
}

}  // namespace kaunter
