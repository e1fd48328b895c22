#include "collections/settlement_quote.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

Money Abs(Money amount) { return amount < Money() ? -amount : amount; }

}  // namespace

QuoteColumn QuotePersonal(const OwedLoan& loan, Money interest_not_due) {
  QuoteColumn column;
  column.NPayment = loan.LoanBal;
  column.SettledAmt = loan.TotalBal() - interest_not_due;
  column.OPayment = loan.OthBal;
  column.EPayment = Abs(column.NPayment - column.SettledAmt);
  return column;
}

QuoteColumn QuoteFlexi(const OwedLoan& loan, Money interest_due, Money capital_due) {
  QuoteColumn column;
  column.NPayment = interest_due + capital_due;
  column.EPayment = loan.LoanBal - capital_due;
  column.OPayment = loan.OthBal;
  column.SettledAmt = loan.TotalBal() + interest_due;
  return column;
}

QuoteColumn QuoteOn(Connection& main, const OwedLoan& loan, std::string_view date) {
  const std::string id = QuoteStr(loan.LoanID);
  const std::string day = SqlDate(date);
  if (loan.personal) {
    return QuotePersonal(
        loan, Sen(main.Query(fmt::format("SELECT SUM(InterestAmt-InterestPayment) FROM SchMast "
                                         "WHERE LoanID={} And DueDate > {}",
                                         id, day))
                      .Field(0)));
  }
  const Recordset due = main.Query(
      fmt::format("SELECT SUM((InterestAmt)-(InterestPayment)),SUM((CapitalAmt)-(CapitalPayment)) "
                  "FROM SchMast WHERE LoanID={} And DueDate <= {}",
                  id, day));
  return QuoteFlexi(loan, Sen(due.Field(0)), Sen(due.Field(1)));
}

}  // namespace kaunter
