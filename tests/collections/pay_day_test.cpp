// Which days a payment may take. 04-02-2024 was a Sunday, 12-02-2024 a Monday and a holiday.
#include "collections/pay_day.h"

#include "tests/collections/payment_office.h"

namespace kaunter {
namespace {

class PayDay : public PaymentTest {
 protected:
  PayDay() {
    office.Run(
        "INSERT INTO HolidayMast (HolidayDate,HolidayName) VALUES ('2024-02-12','Tahun Baru''s'),"
        "('2024-02-11','A Sunday too')");
    office.session.settings.CheckHoliday = true;
    desk.agrees = false;
  }
  // Blocked or not, then what was asked and told.
  std::string Try(const std::string& date, bool ask, bool warn) {
    desk.messages.clear();
    desk.questions.clear();
    std::string answer = IsHolidayBlocked(office.session, desk, date, ask, warn) ? "no" : "yes";
    for (const std::string& text : desk.questions) answer += "|?" + text;
    for (const std::string& text : desk.messages) answer += "|" + text;
    return answer;
  }
  std::string Warned(const std::string& pay_id, const std::string& loan, const std::string& date) {
    desk.messages.clear();
    const bool warned = WarnPaidThisMonth(office.session, desk, pay_id, loan, date);
    EXPECT_EQ(warned, !desk.messages.empty());
    return warned ? desk.messages.back() : "";
  }
};

TEST_F(PayDay, SundaysAndHolidays) {
  const std::array<const char*, 4> cases[] = {
      {"04-02-2024", "no|?04-02-2024 is Sunday\nContinue make payment ?",
       "no|Holiday Checking: No payment allow on Sunday", "no"},
      {"11-02-2024", "no|?11-02-2024 is Sunday\nContinue make payment ?",
       "no|Holiday Checking: No payment allow on Sunday", "no"},
      {"12-02-2024", "no|?12-02-2024 is Tahun Baru's\nContinue make payment ?",
       "no|Holiday Checking: No payment allow on Tahun Baru's", "no"},
      {"12-02-2025", "yes", "yes", "yes"},  // the same day of another year
      {"05-02-2024", "yes", "yes", "yes"},
      {"31-02-2024", "yes", "yes", "yes"},  // no date
      {"", "yes", "yes", "yes"}};
  for (const auto& [date, asked, warned, silent] : cases) {
    EXPECT_EQ(Try(date, true, true), asked) << date;
    EXPECT_EQ(Try(date, false, true), warned) << date;
    EXPECT_EQ(Try(date, false, false), silent) << date;
  }
  desk.agrees = true;  // the person goes on
  EXPECT_EQ(Try("12-02-2024", true, true).substr(0, 3), "yes");
  office.session.settings.CheckHoliday = false;
  EXPECT_EQ(Try("04-02-2024", true, true), "yes");
}

TEST_F(PayDay, PaidAlreadyInTheMonthOrLater) {
  MakeLoan(kLoan, LoanScheme::kPersonal, "1200", "12");
  Pay("P1", kLoan, "2024-03-20", "1");
  Pay("P2", kLoan, "2024-03-01", "1");
  Pay("P3", "HQ0001-002", "2024-04-02", "1");
  const std::string march =
      "Alert !!: Payment already made on the month at 01-03-2024 please take note";
  EXPECT_EQ(Warned("", kLoan, "31-03-2024"), march);
  EXPECT_EQ(Warned("", kLoan, "01-02-2024"), march);  // looks ahead without end
  EXPECT_EQ(Warned("", kLoan, "01-04-2024"), "");
  EXPECT_EQ(Warned("P1", kLoan, "31-03-2024"), "");  // not in a change
  EXPECT_EQ(Warned("", "", "31-03-2024"), "");
  EXPECT_EQ(Warned("", kLoan, "x"), "");
}

}  // namespace
}  // namespace kaunter
