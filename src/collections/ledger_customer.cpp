#include "collections/ledger_customer.h"

#include <algorithm>
#include <map>

#include "core/values.h"
#include "loans/loan_totals.h"

namespace kaunter {
namespace {

constexpr std::size_t kMostSums = 256;

struct Sums {
  Money TotLoan;
  Money TotTopUpAmt;
  // What TotLoanBal may be. The first is what a rebuild of the customer writes.
  std::vector<Money> TotLoanBal{Money()};
};

Money Exact(const Value& value) { return Money::FromText(StripCommaOrZero(NullToEmpty(value))); }

// The first save of a loan adds its instalments to TotLoanBal, not its balance; the last one of a
// flexi loan may not be known by then. That stands until the customer is rebuilt.
std::vector<Money> AddedAtFirst(const Recordset& loan) {
  const std::string term = NullToEmpty(loan.Field("LoanTerm"));
  if (!NullToEmpty(loan.Field("LastPaymentNo")).empty() || !IsNumeric(term)) return {};
  std::vector<Money> added;
  for (const Money last : {Exact(loan.Field("LastPayment2")), Money()}) {
    added.push_back(NewLoanBalance(Exact(loan.Field("FirstPayment")),
                                   Exact(loan.Field("InstallmentAmt2")), last, term));
    if (NullToEmpty(loan.Field("DragLoan")) == "0") break;
  }
  return added;
}

void Add(Sums& sums, const Recordset& loan) {
  sums.TotLoan += Exact(loan.Field("LoanAmt"));
  sums.TotTopUpAmt += Exact(loan.Field("TopUpAmt"));
  const Money balance = Exact(loan.Field("LoanBal"));
  // Closing took the balance of the day off, whatever the first save had added.
  const Money taken = Exact(loan.Field("CloseBal"));
  std::vector<Money> all;
  for (const Money sum : sums.TotLoanBal) all.push_back(sum + balance);
  for (const Money added : AddedAtFirst(loan)) {
    for (const Money sum : sums.TotLoanBal) all.push_back(sum + added - taken);
  }
  if (all.size() > kMostSums) all.resize(kMostSums);
  sums.TotLoanBal = std::move(all);
}

}  // namespace

std::vector<LedgerFault> FaultsOfCustomers(Connection& main, const std::string& which) {
  std::map<std::string, Sums> by_customer;
  for (Recordset loan = main.Query(
           "SELECT CustID,LoanAmt,TopUpAmt,LoanBal,CloseBal,FirstPayment,InstallmentAmt2,"
           "LastPayment2,LoanTerm,DragLoan,LastPaymentNo FROM LoanMast WHERE CustID IN (SELECT "
           "CustID FROM CustMast WHERE " +
           which + ")");
       !loan.Eof(); loan.MoveNext()) {
    Add(by_customer[Lower(NullToEmpty(loan.Field("CustID")))], loan);
  }
  std::vector<LedgerFault> faults;
  for (Recordset row =
           main.Query("SELECT CustID,TotLoan,TotTopUpAmt,TotLoanBal FROM CustMast WHERE " + which +
                      " ORDER BY CustID");
       !row.Eof(); row.MoveNext()) {
    const std::string id = NullToEmpty(row.Field("CustID"));
    const Sums& sums = by_customer[Lower(id)];
    const auto expect = [&](const char* column, const std::vector<Money>& allowed) {
      const std::string stored = ShowMoney(Exact(row.Field(column)));
      const auto shown_so = [&stored](Money sum) { return ShowMoney(sum) == stored; };
      if (std::any_of(allowed.begin(), allowed.end(), shown_so)) return;
      faults.push_back({"", id, false, false, {column}, stored, ShowMoney(allowed.front()), {}});
    };
    expect("TotLoan", {sums.TotLoan});
    expect("TotTopUpAmt", {sums.TotTopUpAmt});
    expect("TotLoanBal", sums.TotLoanBal);
  }
  return faults;
}

}  // namespace kaunter
