#include "upkeep/keeping.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <sstream>

#include "screen/caption_error.h"

namespace kaunter {
namespace {

constexpr int kHandMadeDays = 2;
constexpr int kDaysOfWeek = 7;
constexpr int kMonthsOfYear = 12;
// 1970-01-01 was a Thursday: weeks change three days before.
constexpr int kToMonday = 3;

int Week(const DateTime& day) {
  const int shifted = day.DayNumber() + kToMonday;
  return (shifted - ((shifted % kDaysOfWeek) + kDaysOfWeek) % kDaysOfWeek) / kDaysOfWeek;
}

}  // namespace

Keeping Keeping::Parse(const std::string& text) {
  Keeping keeping;
  char first = '\0', second = '\0';
  std::istringstream stream(text);
  stream >> keeping.days >> first >> keeping.weeks >> second >> keeping.months;
  const auto fits = [](int number) { return number >= 1 && number <= 999; };
  if (!stream || first != ',' || second != ',' || stream.peek() != EOF || !fits(keeping.days) ||
      !fits(keeping.weeks) || !fits(keeping.months)) {
    throw CaptionError(
        {fmt::format("\"{}\" does not tell how many days, weeks and months are kept: write it "
                     "like 7,5,12",
                     text),
         fmt::format("“{}” 不是保留的天数、周数和月数：请写成 7,5,12", text)});
  }
  return keeping;
}

std::vector<std::size_t> Outlived(const std::vector<DateTime>& made, const DateTime& now,
                                  const Keeping& keeping) {
  std::vector<std::size_t> order(made.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return made[a] > made[b]; });
  const struct {
    int most;
    std::function<int(const DateTime&)> period;
  } rules[] = {
      {keeping.days, [](const DateTime& day) { return day.DayNumber(); }},
      {keeping.weeks, Week},
      {keeping.months, [](const DateTime& day) { return day.year * kMonthsOfYear + day.month; }},
  };
  std::set<std::size_t> kept;
  for (const auto& rule : rules) {
    std::set<int> periods;
    for (const std::size_t i : order) {
      if (made[i] > now || static_cast<int>(periods.size()) == rule.most) continue;
      if (periods.insert(rule.period(made[i])).second) kept.insert(i);
    }
  }
  std::vector<std::size_t> gone;
  for (const std::size_t i : order) {
    if (!kept.contains(i) && made[i] <= now.AddDays(-kHandMadeDays)) gone.push_back(i);
  }
  return gone;
}

}  // namespace kaunter
