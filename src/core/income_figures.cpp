#include "core/income_figures.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/amounts.h"
#include "core/company_access.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

// The documents of a month and of these companies: company, number, customer and amount.
std::string Documents(const std::string& companies, const DateTime& first) {
  const auto within = [&](std::string_view column) {
    return fmt::format("{0}>={1} AND {0}<{2}", column, SqlDate(first), SqlDate(first.AddMonths(1)));
  };
  return fmt::format(
      "SELECT l.CompCode as CompCode,s.LoanID+'-I'+convert(varchar(10),s.SchID) as eInvID,"
      "l.CustID as CustID,s.InterestAmt as InvAmt FROM SchMast as s INNER JOIN LoanMast as l ON "
      "l.LoanID=s.LoanID WHERE {1} AND s.InterestAmt>0 AND l.DragLoan='0' AND l.CompCode IN ({0}) "
      "UNION ALL SELECT p.CompCode,p.PayID,p.CustID,p.IntAmt+p.CollectorAmt FROM PaymentMast as p "
      "WHERE p.CompCode IN ({0}) AND {2} AND p.IntAmt+p.CollectorAmt<>0 UNION ALL "
      "SELECT h.CompCode,h.ChargeID,h.CustID,h.ChargeAmt FROM ChargeMast as h WHERE h.CompCode IN "
      "({0}) AND {3} AND h.PType IN ('Invoice','Credit Note') AND h.ChargeAmt<>0",
      companies, within("s.DueDate"), within("p.PayDate"), within("h.TrxDate"));
}

void Add(Tally& tally, const Recordset& row, std::size_t first) {
  tally.count += CInt(row.Field(first).ToText());
  tally.amount += Sen(row.Field(first + 1));
}

}  // namespace

std::vector<std::string> SubmittingCompanies(Session& session) {
  std::vector<std::string> companies;
  for (Recordset rows =
           session.Main().Query("SELECT c.CompCode FROM CompMast as c INNER JOIN ECustMast as e ON "
                                "e.CustID=c.CompCode " +
                                CompanyFilter(session, "c.CompCode") + "ORDER BY c.CompCode");
       !rows.Eof(); rows.MoveNext()) {
    companies.push_back(NullToEmpty(rows.Field(0)));
  }
  return companies;
}

// One walk for all companies: a walk each would read the schedules of the month as often.
std::vector<UnsentIncome> ReadUnsentIncome(Session& session,
                                           const std::vector<std::string>& companies,
                                           const DateTime& today) {
  std::vector<UnsentIncome> all;
  std::string codes;
  for (const std::string& company : companies) {
    all.push_back({company, {}, {}});
    codes += (codes.empty() ? "" : ",") + QuoteStr(company);
  }
  if (all.empty()) return all;
  Recordset rows = session.Main().Query(fmt::format(
      "SELECT u.CompCode,sum(case when u.TIN<>'' then 1 else 0 end),sum(case when u.TIN<>'' then "
      "u.InvAmt else 0 end),sum(case when u.TIN='' then 1 else 0 end),sum(case when u.TIN='' then "
      "u.InvAmt else 0 end) FROM (SELECT d.CompCode as CompCode,isnull(e.TIN,'') as TIN,d.InvAmt "
      "as InvAmt FROM ({}) as d LEFT JOIN ECustMast as e ON e.CustID=d.CustID WHERE NOT EXISTS "
      "(SELECT i.eInvID FROM EInvMast as i WHERE i.eInvID=d.eInvID AND isnull(i.uuid,'')<>'')) as "
      "u GROUP BY u.CompCode",
      Documents(codes, DateTime{today.year, today.month, 1})));
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto one = std::ranges::find_if(all, [&](const UnsentIncome& each) {
      return SameText(each.CompCode, NullToEmpty(rows.Field(0)));
    });
    if (one == all.end()) continue;
    Add(one->named, rows, 1);
    Add(one->consolidated, rows, 3);
  }
  return all;
}

}  // namespace kaunter
