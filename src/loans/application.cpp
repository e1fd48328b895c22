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

std::string OtherApplicant(Connection& main, std::string_view app_id, std::string_view cust_id) {
  const std::string owner =
      ScalarQuery(main, "SELECT CustID FROM AppMast WHERE AppID=" + QuoteStr(app_id));
  if (owner.empty() || SameText(owner, cust_id) ||
      !main.Query(fmt::format("SELECT CustID FROM AppMastLink WHERE AppID={} AND CustID={}",
                              QuoteStr(app_id), QuoteStr(cust_id)))
           .Eof()) {
    return {};
  }
  const std::string name =
      ScalarQuery(main, "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(owner));
  return name.empty() ? owner : fmt::format("{} ({})", name, owner);
}

bool MarkTakenUp(Connection& main, std::string_view loan_id, std::string_view app_id) {
  return main.Execute(fmt::format("UPDATE AppMast SET LoanID={} WHERE AppID={} AND LoanID=''",
                                  QuoteStr(loan_id), QuoteStr(app_id))) > 0;
}

}  // namespace kaunter
