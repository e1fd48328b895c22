// Holidays: days of a year alone, copied forward without a day twice.
#include "collections/holiday_frm.h"

#include "tests/collections/payment_office.h"

namespace kaunter {
namespace {

class Holidays : public PaymentTest {
 protected:
  Holidays() {
    office.Run("DELETE FROM HolidayMast");
    for (const char* day : {"2024-01-01','New Year", "2024-02-29','Leap day",
                            "2024-12-25','Krismas", "2025-12-25','Christmas", "2023-12-31','Eve"}) {
      office.Run(fmt::format(
          "INSERT INTO HolidayMast (HolidayDate,HolidayName,UserID) VALUES ('{}','BEN')", day));
    }
    list.Load();
  }
  std::string Listed() {
    std::string all = list.HolidayYear.text();
    for (int row = 0; row < list.DG.RowCount(); ++row) all += " " + list.DG.Cell(row, 0);
    return all;
  }
  // What the dialog says to a holiday typed in it.
  std::string Save(const std::string& of, const std::string& date, const std::string& name) {
    desk.messages.clear();
    HolidayModifyFrm dialog(office.session, desk, of);
    dialog.Load();
    dialog.HolidayDate.SetText(date);
    dialog.HolidayName.SetText(name);
    dialog.SaveCmd.Click();
    return desk.messages.empty() ? dialog.saved_year() : desk.messages.back();
  }
  std::string All() {
    return Lines("SELECT HolidayDate,HolidayName,UserID FROM HolidayMast ORDER BY HolidayDate");
  }

  HolidayFrm list{office.session, desk};
};

TEST_F(Holidays, AYearGoesForwardAndDaysThatExistStay) {
  EXPECT_EQ(Listed(), "2024 01-01-2024 29-02-2024 25-12-2024");
  const std::string kept =
      "2024-01-01 New Year BEN\n2024-02-29 Leap day BEN\n2024-12-25 Krismas BEN\n";
  list.CopyCmd.Click();
  EXPECT_EQ(Listed(), "2025 01-01-2025 25-12-2025");
  EXPECT_EQ(desk.messages.back().substr(desk.messages.back().find(": ")),
            ": 1 holiday(s) copied to 2025");
  EXPECT_EQ(All(),
            "2023-12-31 Eve BEN\n" + kept + "2025-01-01 New Year AMY\n2025-12-25 Christmas BEN\n");
  ASSERT_TRUE(list.HolidayYear.Pick("2023"));
  EXPECT_EQ(Listed(), "2023 31-12-2023");
  list.CopyCmd.Click();
  EXPECT_EQ(Listed(), "2024 01-01-2024 29-02-2024 25-12-2024 31-12-2024");
  desk.agrees = false;
  const std::string before = All();
  list.CopyCmd.Click();
  EXPECT_EQ(All(), before);
}

TEST_F(Holidays, ADayStandsOnce) {
  EXPECT_EQ(Save("", "", "x"), "Holiday: Date is required");
  EXPECT_EQ(Save("", "30-02-2024", "x"), "Holiday: Invalid Date, Please check");
  EXPECT_EQ(Save("", "01-01-1999", "x"), "Holiday: Invalid Date, Please check");
  EXPECT_EQ(Save("", "01-01-2024", "x"), "Holiday: 01-01-2024 existed");
  EXPECT_EQ(Save("", "10-04-2024", " "), "Holiday: Holiday is required");
  EXPECT_EQ(Save("", "10-04-2024", "Hari Raya '24"), "2024");
  // A holiday moves; it may keep its own day, not take another's.
  EXPECT_EQ(Save("10-04-2024", "10-04-2024", "Aidilfitri"), "2024");
  EXPECT_EQ(Save("10-04-2024", "25-12-2024", "x"), "Holiday: 25-12-2024 existed");
  EXPECT_EQ(Save("10-04-2024", "31-03-2025", "Aidilfitri"), "2025");
  EXPECT_EQ(Save("10-04-2024", "11-04-2024", "gone"),
            "Holiday: an error occur during saving holiday");
  EXPECT_EQ(Lines("SELECT HolidayDate FROM HolidayMast WHERE UserID='AMY'"), "2025-03-31\n");
}

TEST_F(Holidays, EachStatementThatFailsLeavesNoTrace) {
  EXPECT_GE(FailEverywhere([this] { list.Guard([this] { list.CopyCmd.Click(); }); }), 6);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM HolidayMast WHERE UserID='AMY'"), "1");
  HolidayModifyFrm dialog(office.session, desk, "25-12-2024");
  dialog.Load();
  EXPECT_GE(FailEverywhere([&] { dialog.Guard([&] { dialog.Command2.Click(); }); }), 2);
  EXPECT_TRUE(dialog.closed());
}

}  // namespace
}  // namespace kaunter
