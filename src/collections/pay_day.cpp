#include "collections/pay_day.h"

#include <fmt/format.h>

#include <optional>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kSunday = 0;

// Why nobody pays on the day: "Sunday", or the holiday's name; nothing for an ordinary day.
std::optional<Caption> DayOffOn(Connection& main, const DateTime& day) {
  if (day.Weekday() == kSunday) return Caption{"Sunday", "星期日"};
  const std::string on = " FROM HolidayMast WHERE HolidayDate=" + SqlDate(day);
  if (main.Query("SELECT HolidayDate" + on).Eof()) return std::nullopt;
  return Caption{ScalarQuery(main, "SELECT HolidayName" + on)};
}

}  // namespace

bool IsHolidayBlocked(Session& session, Desk& desk, std::string_view date, bool ask, bool warn) {
  if (!session.settings.CheckHoliday) return false;
  const std::optional<DateTime> day = DateTime::FromDisplay(date);
  if (!day) return false;
  const std::optional<Caption> day_off = DayOffOn(session.Main(), *day);
  if (!day_off) return false;
  const std::string title = session.In({"Holiday Checking", "假期检查"});
  const std::string& name = session.In(*day_off);
  if (ask) {
    const std::string shown = ShowDate(*day);
    return !desk.Ask(title,
                     session.In({fmt::format("{} is {}\nContinue make payment ?", shown, name),
                                 fmt::format("{} 是{}\n继续付款吗？", shown, name)}));
  }
  if (warn) {
    desk.Message(
        MessageKind::warning, title,
        session.In({fmt::format("No payment allow on {}", name), fmt::format("{}不可付款", name)}));
  }
  return true;
}

bool IsBeforeLoanDate(Connection& main, std::string_view date, std::string_view loan_id) {
  const std::optional<DateTime> day = DateTime::FromDisplay(date);
  if (!day) return false;
  const Recordset loan =
      main.Query("SELECT TrxDate FROM LoanMast WHERE LoanID=" + QuoteStr(loan_id));
  if (loan.Eof()) return false;
  const DateTime* lent = loan.Field(0).AsDate();
  return lent != nullptr && day->DateOnly() < lent->DateOnly();
}

bool WarnPaidThisMonth(Session& session, Desk& desk, std::string_view pay_id,
                       std::string_view loan_id, std::string_view date) {
  if (!pay_id.empty() || loan_id.empty()) return false;
  const std::optional<DateTime> day = DateTime::FromDisplay(date);
  if (!day) return false;
  // No upper bound, on purpose: a payment of a later month counts too.
  const Recordset paid = session.Main().Query(
      fmt::format("SELECT PayID,PayDate FROM PaymentMast WHERE LoanID={} AND PayDate >= {} ORDER "
                  "BY PayDate",
                  QuoteStr(loan_id), SqlDate(DateTime{day->year, day->month, 1})));
  if (paid.Eof()) return false;
  const std::string first = ShowDate(paid.Field("PayDate"));
  desk.Message(
      MessageKind::warning, session.In({"Alert !!", "注意 !!"}),
      session.In({fmt::format("Payment already made on the month at {} please take note", first),
                  fmt::format("请注意，{} 当月已经付款", first)}));
  return true;
}

}  // namespace kaunter
