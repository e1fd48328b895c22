#include "compliance/npl_loans.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

// What a year's figure and its list of loans are both asked by.
std::string FromWhere(std::string_view company) {
  return fmt::format(
      "WHERE CompCode={} AND TrxDate >= '2015-01-01' and TrxDate <= '2020-12-31' AND LoanGroupID "
      "in ('DALAM PROSES DAPAT BALIK','DALAM TINDAKAN MAHKAMAH')",
      QuoteStr(company));
}

}  // namespace

std::array<NplYear, kNplYears> CountNpl(Connection& main, std::string_view company) {
  std::array<NplYear, kNplYears> years{};
  Recordset rows =
      main.Query(fmt::format("SELECT year(TrxDate),Count(*),sum(LoanBal) FROM LoanMast {} Group by "
                             "year(TrxDate)",
                             FromWhere(company)));
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto at = static_cast<std::size_t>(CLng(rows.Field(0).ToText()) - kFirstNplYear);
    years.at(at) = {CLng(rows.Field(1).ToText()), Sen(rows.Field(2))};
  }
  return years;
}

std::string NplLoansStatement(std::string_view company, std::string_view and_also) {
  return fmt::format(
      "SELECT n.LoanID,n.TrxDate,n.CompCode,cm.CustName,n.LoanGroupID,n.LoanBal FROM (SELECT "
      "LoanID,TrxDate,CompCode,CustID,LoanGroupID,LoanBal FROM LoanMast {}{}) as n left join "
      "CustMast as cm on n.CustID=cm.CustID ORDER BY n.TrxDate,n.LoanID",
      FromWhere(company), and_also);
}

std::vector<ReturnLine> NplLines(Connection& main, const std::string& company) {
  const auto years = CountNpl(main, company);
  std::vector<ReturnLine> lines;
  for (std::size_t i = 0; i < kNplYears; ++i) {
    const int year = kFirstNplYear + static_cast<int>(i);
    const auto loans = [company, year](Connection& connection) {
      return LoansOf(
          connection.Query(NplLoansStatement(company, fmt::format(" and year(TrxDate)={}", year))));
    };
    lines.push_back({fmt::format("{}1", year),
                     {fmt::format("Loans of {}", year), fmt::format("{} 年贷款笔数", year)},
                     true,
                     std::to_string(years[i].loans),
                     loans});
    lines.push_back(
        {fmt::format("{}2", year),
         {fmt::format("Balance of the loans of {}", year), fmt::format("{} 年贷款结余", year)},
         false,
         ShowMoney(years[i].balance),
         loans});
  }
  return lines;
}

std::int64_t MoveOverdue(Connection& main, std::string_view company, const DateTime& cut,
                         std::string_view group) {
  const std::string day = SqlDate(cut);
  const std::string update = fmt::format(
      "UPDATE LoanMast SET LoanGroupID={} WHERE LoanBal>0 AND LoanGroupID ={} and CompCode={} "
      "and NextDueDate <={}",
      QuoteStr(group), QuoteStr(kCurrentGroup), QuoteStr(company), day);
  const std::int64_t unpaid = main.Execute(update + " AND LastPaymentDate is null");
  return unpaid + main.Execute(fmt::format(
                      "{} and LastPaymentDate <={} AND not LastPaymentDate is null", update, day));
}

}  // namespace kaunter
