#include "customers/credit_limit.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

constexpr std::string_view kFullSettled = "Full Settled";

// The bar's control held its maximum in 32 bits.
double ThroughSingle(double x) {
  return static_cast<float>(x);  // a float on purpose
}

Money ToMoney(const std::string& text) { return text.empty() ? Money() : Money::FromText(text); }

}  // namespace

Money CreditUsed(Connection& main, std::string_view cust_id, std::string_view type,
                 std::string_view except_loan) {
  const bool whole = type == kFullSettled;
  std::string sql = fmt::format(
      "SELECT SUM({}) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE "
      "l.CustID={}{}",
      whole ? "s.CapitalAmt" : "s.CapitalAmt-s.CapitalPayment", QuoteStr(cust_id),
      whole ? " AND l.LoanBal > 0" : "");
  if (!except_loan.empty()) {
    sql += fmt::format("{} l.LoanID <> {}", whole ? " and" : " AND", QuoteStr(except_loan));
  }
  return ToMoney(ScalarQuery(main, sql));
}

CreditBar MeasureCredit(Connection& main, std::string_view cust_id, Money limit,
                        std::string_view type) {
  CreditBar bar;
  bar.limit = limit;
  if (limit.IsZero() || type.empty()) {
    bar.share_used = 1;
    bar.label = "0.00";
    return bar;
  }
  bar.used = CreditUsed(main, cust_id, type);
  const double maximum = ThroughSingle(limit.ToDouble());
  bar.share_used = std::clamp(bar.used.ToDouble() / maximum, 0.0, 1.0);
  bar.label = ShowMoney(Value(Money::FromDouble(maximum) - bar.used));
  bar.tip = "Available Limit " + bar.label;
  return bar;
}

bool CheckCreditLimit(Session& session, Desk& desk, std::string_view cust_id,
                      std::string_view loan_id, Money amount, Money* available) {
  try {
    const Recordset row = session.Main().Query(fmt::format(
        "SELECT CreditLimit,CreditLimitType FROM CustMast WHERE CustID={}", QuoteStr(cust_id)));
    if (row.Eof() || NullToEmpty(row.Field("CreditLimitType")).empty()) return true;
    const Money limit = ToMoney(NullToEmpty(row.Field("CreditLimit")));
    const Money used =
        CreditUsed(session.Main(), cust_id, NullToEmpty(row.Field("CreditLimitType")), loan_id);
    if (used + amount <= limit) return true;
    *available = limit - used;
  } catch (const std::exception& failure) {
    desk.Message(
        MessageKind::critical, "Check Credit Limit",
        session.In(Failed("an error occur during checking credit limit", failure, kNotRead)));
  }
  return false;
}

}  // namespace kaunter
