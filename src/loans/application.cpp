#include "loans/application.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {

std::optional<LoanApplication> ReadApplication(Connection& main, std::string_view app_id,
                                               std::string_view cust_id) {
  Recordset row = main.Query(fmt::format("SELECT * FROM AppMast WHERE AppID={}", QuoteStr(app_id)));
  if (row.Eof()) return std::nullopt;
  return LoanApplication{
      std::move(row),
      ScalarQuery(main, fmt::format("SELECT CustID FROM AppMastLink WHERE AppID={} AND CustID <> "
                                    "{} AND AppType='Applicant' ORDER BY CustID",
                                    QuoteStr(app_id), QuoteStr(cust_id)))};
}

bool MarkTakenUp(Connection& main, std::string_view loan_id, std::string_view app_id) {
  return main.Execute(fmt::format("UPDATE AppMast SET LoanID={} WHERE AppID={} AND LoanID=''",
                                  QuoteStr(loan_id), QuoteStr(app_id))) > 0;
}

}  // namespace kaunter
