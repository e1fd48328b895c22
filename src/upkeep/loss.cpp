#include "upkeep/loss.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kTogether = 2000;  // rows

struct Source {
  const char* table;
  const char* key;
  const char* columns;  // what makes a row another one
};
constexpr Source kReceipts{"PaymentMast", "PayID",
                           "PayID,PayAmt,PayDate,LoanID,CompCode,DateCreated"};
constexpr Source kLoans{"LoanMast", "LoanID", "LoanID,LoanAmt,CustID"};
constexpr Source kCustomers{"CustMast", "CustID", "CustID"};

using Rows = std::map<std::string, std::vector<Value>>;

Rows RowsOf(Recordset read) {
  Rows rows;
  for (const auto& row : read.rows()) rows[Upper(row[0].ToText())] = row;
  return rows;
}

std::string TextOf(const std::vector<Value>& row) {
  std::string text;
  for (const Value& field : row) text += field.ToText() + '\n';
  return text;
}

// Tells each row of `office` that `earlier` has not, or has otherwise. False when it was ended.
bool Compare(const Source& source, Connection& office, Connection& earlier,
             const std::function<bool(std::int64_t)>& go_on,
             const std::function<void(const std::vector<Value>& row, bool has_other)>& found) {
  std::string behind;
  for (std::int64_t done = 0;;) {
    const Recordset page =
        office.Query(fmt::format("SELECT TOP {} {} FROM {}{} ORDER BY {}", kTogether,
                                 source.columns, source.table, behind, source.key));
    if (page.RowCount() == 0) return true;
    const std::string last = QuoteStr(page.rows().back()[0].ToText());
    const std::string first = QuoteStr(page.rows().front()[0].ToText());
    const Rows others =
        RowsOf(earlier.Query(fmt::format("SELECT {0} FROM {1} WHERE {2}>={3} AND {2}<={4}",
                                         source.columns, source.table, source.key, first, last)));
    for (const auto& row : page.rows()) {
      const auto other = others.find(Upper(row[0].ToText()));
      if (other == others.end()) {
        found(row, false);
      } else if (TextOf(other->second) != TextOf(row)) {
        found(row, true);
      }
    }
    done += static_cast<std::int64_t>(page.RowCount());
    if (!go_on(done)) return false;
    behind = fmt::format(" WHERE {}>{}", source.key, last);
  }
}

std::set<std::string> CompaniesOf(Connection& office) {
  std::set<std::string> companies;
  for (Recordset row = office.Query("SELECT CompCode FROM CompMast"); !row.Eof(); row.MoveNext()) {
    companies.insert(Upper(NullToEmpty(row.Field(0))));
  }
  return companies;
}

}  // namespace

std::int64_t Loss::Receipts() const {
  return std::accumulate(
      companies.begin(), companies.end(), std::int64_t{0},
      [](std::int64_t sum, const CompanyLoss& loss) { return sum + loss.receipts; });
}

std::optional<Loss> WhatIsLost(Connection& office, Connection& earlier,
                               const std::function<bool(std::int64_t done)>& go_on) {
  Loss loss;
  std::map<std::string, CompanyLoss> companies;
  const auto receipt = [&](const std::vector<Value>& row, bool) {
    CompanyLoss& of = companies[NullToEmpty(row[4])];
    ++of.receipts;
    if (const Money* amount = row[1].AsMoney()) of.amount = of.amount + *amount;
    if (const DateTime* entered = row[5].AsDate()) {
      if (!of.first || *entered < *of.first) of.first = *entered;
      if (!of.last || *entered > *of.last) of.last = *entered;
    }
  };
  const auto count = [](std::int64_t* number) {
    return [number](const std::vector<Value>&, bool) { ++*number; };
  };
  const auto deleted = [&](const std::vector<Value>&, bool has_other) {
    if (!has_other) ++loss.deleted;
  };
  if (!Compare(kReceipts, office, earlier, go_on, receipt) ||
      !Compare(kLoans, office, earlier, go_on, count(&loss.loans)) ||
      !Compare(kCustomers, office, earlier, go_on, count(&loss.customers)) ||
      !Compare(kReceipts, earlier, office, go_on, deleted)) {
    return std::nullopt;
  }
  for (auto& [company, of] : companies) {
    of.company = company;
    loss.companies.push_back(std::move(of));
  }
  return loss;
}

bool AreOneOffice(Connection& office, Connection& earlier) {
  const std::set<std::string> here = CompaniesOf(office), there = CompaniesOf(earlier);
  return here.empty() || std::any_of(here.begin(), here.end(), [&](const std::string& company) {
           return there.contains(company);
         });
}

}  // namespace kaunter
