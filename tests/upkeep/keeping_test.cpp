#include "upkeep/keeping.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace kaunter {
namespace {

using ::testing::ElementsAre;

// The backups of one office over time, each behind the rule.
struct Shelf {
  std::vector<DateTime> made;
  void Add(const DateTime& now) {
    made.push_back(now);
    const auto gone = Outlived(made, now, {});
    std::vector<DateTime> left;
    for (std::size_t i = 0; i < made.size(); ++i) {
      if (std::find(gone.begin(), gone.end(), i) == gone.end()) left.push_back(made[i]);
    }
    made = left;
  }
  std::vector<std::string> Days() const {
    std::vector<std::string> days;
    for (const DateTime& moment : made) days.push_back(moment.DateOnly().ToCanonical());
    return days;
  }
};

DateTime Night(int day) {
  DateTime moment = DateTime::FromDayNumber(day);
  moment.hour = 21;
  return moment;
}
const int kFirst = DateTime{2023, 1, 1}.DayNumber();

TEST(KeepingTest, AYearOfNights) {
  Shelf shelf;
  for (int day = kFirst; day < kFirst + 365; ++day) shelf.Add(Night(day));
  // Seven days, five weeks (each by its Sunday), twelve months (each by its last day).
  EXPECT_THAT(shelf.Days(),
              ElementsAre("2023-01-31", "2023-02-28", "2023-03-31", "2023-04-30", "2023-05-31",
                          "2023-06-30", "2023-07-31", "2023-08-31", "2023-09-30", "2023-10-31",
                          "2023-11-30", "2023-12-03", "2023-12-10", "2023-12-17", "2023-12-24",
                          "2023-12-25", "2023-12-26", "2023-12-27", "2023-12-28", "2023-12-29",
                          "2023-12-30", "2023-12-31"));
}

TEST(KeepingTest, AfterALongHolidayNothingIsLost) {
  Shelf shelf;
  for (int day = kFirst; day < kFirst + 90; ++day) shelf.Add(Night(day));
  const std::vector<std::string> before = shelf.Days();
  shelf.Add(Night(kFirst + 400));
  std::vector<std::string> after = shelf.Days();
  after.pop_back();
  // Each of the three gives up its oldest, as on any night.
  EXPECT_GE(after.size() + 3, before.size());
}

// A clock that stands ten years ahead for a week and is then set right: the backups from before it
// stay within reach, and those from "later" keep no newer one from being kept.
TEST(KeepingTest, AClockThatJumps) {
  Shelf shelf;
  int day = kFirst;
  for (; day < kFirst + 90; ++day) shelf.Add(Night(day));
  for (int wrong = 0; wrong < 7; ++wrong) shelf.Add(Night(day + 3650 + wrong));
  for (const char* kept : {"2023-01-31", "2023-02-28", "2023-03-31"}) {
    EXPECT_THAT(shelf.Days(), ::testing::Contains(kept));
  }
  for (int right = 0; right < 7; ++right) shelf.Add(Night(day + 7 + right));
  for (int right = 0; right < 7; ++right) {
    EXPECT_THAT(shelf.Days(), ::testing::Contains(Night(day + 7 + right).DateOnly().ToCanonical()));
  }
}

// By nights that are missed at random and backups in between: each of the last periods that ever
// had a backup still has its newest one.
TEST(KeepingTest, EachPeriodKeepsItsNewest) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Shelf shelf;
    std::map<int, DateTime> by_day, by_month;
    for (int day = kFirst; day < kFirst + 500; ++day) {
      const int times = static_cast<int>(random() % 4) - 1;
      for (int i = 0; i < times; ++i) {
        const DateTime now = Night(day).AddSeconds(600L * i);
        by_day[day] = by_month[now.year * 12 + now.month] = now;
        shelf.Add(now);
        const std::set<DateTime> there(shelf.made.begin(), shelf.made.end());
        const auto newest_of = [&](const std::map<int, DateTime>& periods, int most) {
          for (auto at = periods.rbegin(); at != periods.rend() && most-- > 0; ++at) {
            ASSERT_TRUE(there.contains(at->second)) << at->second.ToCanonical();
          }
        };
        newest_of(by_day, 7);
        newest_of(by_month, 12);
        ASSERT_LE(there.size(), 24u + 6u);
      }
    }
  }
}

}  // namespace
}  // namespace kaunter
