// The search pickers on a large office: the first page and a search of CustPop and LoanPop, beside
// the same rows read by a plain program over SQLite that sends the statement as SQLite likes it
// best; and how the first page grows with the office.
#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "core/picker_statement.h"
#include "core/popup_frm.h"

namespace kaunter {
namespace {

std::string PlainPage(const std::string& rows, const std::string& key, int limit_from) {
  return fmt::format(
      "SELECT * FROM (SELECT * FROM ({0} ORDER BY 1 LIMIT {2}) ORDER BY {1} DESC LIMIT 100) "
      "ORDER BY {1}",
      rows, key, limit_from);
}

std::string PlainCustomers(const std::string& where, int limit_from = 100) {
  return PlainPage(
      fmt::format("SELECT a.CustID AS CustID, a.CustName, a.CustNIC, a.CustOIC, a.CustOthIC, "
                  "a.CompCode, a.TrxDate, a.CustStatus, CASE WHEN a.TotLoan <= 0 THEN 'NO LOAN' "
                  "WHEN a.TotLoanBal <= 0 THEN 'SETTLED' ELSE 'OWING' END, a.Remark FROM CustMast "
                  "a LEFT JOIN LoanMast l ON l.CustID = a.CustID {} GROUP BY a.CustID",
                  where),
      "CustID", limit_from);
}

std::string PlainLoans(const std::string& where, int limit_from = 100) {
  return PlainPage(
      fmt::format("SELECT l.LoanID AS LoanID, l.CompCode, c.CustName, c.CustNIC, l.TrxDate, "
                  "l.LoanAmt, printf('%.2f', l.InstallmentAmt) || ' X ' || l.LoanTerm, l.LoanBal, "
                  "CASE WHEN l.DragLoan = '0' THEN 'Personal Loan' ELSE '' END, CASE WHEN "
                  "l.LoanType = 'Unsecured' THEN 'J' ELSE 'K' END, l.PayOutAmt, l.LoanGroupID FROM "
                  "LoanMast l JOIN CustMast c ON l.CustID = c.CustID {}",
                  where),
      "LoanID", limit_from);
}

std::string LikeAny(const std::vector<const char*>& columns, const std::string& text) {
  std::string condition;
  for (const char* column : columns) {
    condition += fmt::format("{}{} LIKE '%{}%'", condition.empty() ? "" : " OR ", column, text);
  }
  return "WHERE (" + condition + ")";
}

struct Case {
  const char* what;
  const char* picker;
  PickerFilter filter;
  int limit_from;
  int level;
  std::string plain;
};

std::vector<Case> Cases() {
  const std::vector<const char*> customer = {"a.CustID",  "a.CustName",  "a.CustNIC",
                                             "a.CustOIC", "a.CustOthIC", "l.OldLoanCode"};
  const std::vector<const char*> loan = {"l.LoanID", "l.OldLoanCode", "c.CustName", "c.CustNIC",
                                         "c.CustOIC"};
  return {
      {"CustPop, first page", "CustPop", {}, 100, 4, PlainCustomers("")},
      {"CustPop, first page of a clerk",
       "CustPop",
       {},
       100,
       1,
       PlainCustomers("WHERE (l.CompCode = 'HQ' OR a.CompCode = 'HQ')")},
      {"CustPop, page 50", "CustPop", {}, 5000, 4, PlainCustomers("", 5000)},
      {"CustPop, a name that many have",
       "CustPop",
       {.search = "siew"},
       100,
       4,
       PlainCustomers(LikeAny(customer, "siew"))},
      {"CustPop, a name that nobody has",
       "CustPop",
       {.search = "zebra"},
       100,
       4,
       PlainCustomers(LikeAny(customer, "zebra"))},
      {"LoanPop, first page", "LoanPop", {}, 100, 4, PlainLoans("")},
      {"LoanPop, first page of a clerk",
       "LoanPop",
       {},
       100,
       1,
       PlainLoans("WHERE l.CompCode = 'HQ'")},
      {"LoanPop, a name that many have",
       "LoanPop",
       {.search = "siew"},
       100,
       4,
       PlainLoans(LikeAny(loan, "siew"))},
      {"LoanPop, a name that nobody has",
       "LoanPop",
       {.search = "zebra"},
       100,
       4,
       PlainLoans(LikeAny(loan, "zebra"))},
  };
}

// The page itself, then the same through the screen: its boxes filled, its cells as texts.
bool Measure(LargeOffice& office, const Case& c) {
  Plain plain(office.file());
  Session& session = office.session;
  session.CurrentLevel = c.level;
  const std::string sql =
      PickerStatement(session, FindPicker(c.picker), c.filter, 100, c.limit_from);
  const auto rows = session.Main().Query(sql).rows();
  const auto plain_rows = plain.Query(c.plain);
  if (rows.size() != plain_rows.size() ||
      (!rows.empty() && (rows.front()[0].ToText() != plain_rows.front()[0] ||
                         rows.back()[0].ToText() != plain_rows.back()[0]))) {
    throw std::runtime_error(fmt::format("{}: the plain statement reads another page", c.what));
  }
  const auto read_plain = [&] { plain.Query(c.plain); };
  bool good = Compare(
      {c.what, 1.5}, [&] { session.Main().Query(sql); }, read_plain);
  if (c.limit_from == 100 && !rows.empty()) {
    const auto open = [&] {
      session.PickerName = c.picker;
      session.CallerTag = c.filter.search;
      PopupFrm popup(session, office.desk);
      popup.Load();
    };
    good &= Compare({"  opened as a screen", 2.0}, open, read_plain);
  }
  session.CurrentLevel = 4;
  return good;
}

bool Bench() {
  LargeOffice small(1'000, 2'000);
  LargeOffice large(100'000, 200'000);
  fmt::print("100,000 customers and 200,000 loans; ratio to a plain program\n");
  bool good = true;
  for (const Case& c : Cases()) good &= Measure(large, c);
  fmt::print("growth of the first page from 1,000 customers to 100,000\n");
  for (const char* picker : {"CustPop", "LoanPop"}) {
    const std::string sql = PickerStatement(large.session, FindPicker(picker), {}, 100, 100);
    good &= Compare(
        {picker, 2.0}, [&] { large.session.Main().Query(sql); },
        [&] { small.session.Main().Query(sql); });
  }
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
