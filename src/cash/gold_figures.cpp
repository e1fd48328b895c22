#include "cash/gold_figures.h"

#include <fmt/format.h>

#include <string_view>

#include "core/amounts.h"
#include "core/company_access.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr std::string_view kItems =
    "FROM GoldTransMast as g inner join LoanCollateral as l on g.LoanID=l.LoanID WHERE l.SoldDate ";

std::string OfCompany(const Session& session, const std::string& company) {
  return AndCompany(session, "g.CompCode") +
         (company.empty() ? std::string() : " AND g.CompCode=" + QuoteStr(company));
}

}  // namespace

std::vector<GoldInHand> ReadGoldInHand(Session& session, const std::string& company) {
  std::vector<GoldInHand> all;
  for (Recordset rows = session.Main().Query(fmt::format(
           "SELECT g.CompCode,COUNT(*),SUM(l.Weight),SUM(l.LoanAmt),MIN(g.TrxDate) {}IS NULL{} "
           "GROUP BY g.CompCode ORDER BY g.CompCode",
           kItems, OfCompany(session, company)));
       !rows.Eof(); rows.MoveNext()) {
    GoldInHand& hand = all.emplace_back();
    hand.company = NullToEmpty(rows.Field(0));
    hand.items = CLng(NullToEmpty(rows.Field(1)));
    hand.weight = Money::TryText(NullToEmpty(rows.Field(2))).value_or(Money());
    hand.cost = Sen(rows.Field(3));
    hand.since = ShowDate(rows.Field(4));
  }
  return all;
}

std::vector<GoldMonth> ReadGoldResult(Session& session, const std::string& company) {
  std::vector<GoldMonth> all;
  for (Recordset rows = session.Main().Query(fmt::format(
           "SELECT year(l.SoldDate),month(l.SoldDate),COUNT(*),SUM(l.SoldAmt),SUM(l.LoanAmt) "
           "{}IS NOT NULL{} GROUP BY year(l.SoldDate),month(l.SoldDate) "
           "ORDER BY year(l.SoldDate) DESC,month(l.SoldDate) DESC",
           kItems, OfCompany(session, company)));
       !rows.Eof(); rows.MoveNext()) {
    GoldMonth& month = all.emplace_back();
    month.year = CLng(NullToEmpty(rows.Field(0)));
    month.month = CLng(NullToEmpty(rows.Field(1)));
    month.items = CLng(NullToEmpty(rows.Field(2)));
    month.sold = Sen(rows.Field(3));
    month.cost = Sen(rows.Field(4));
  }
  return all;
}

}  // namespace kaunter
