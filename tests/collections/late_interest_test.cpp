#include "collections/late_interest.h"

#include <gtest/gtest.h>

namespace kaunter {
namespace {

// Worked out by hand: balance x rate / 36,500.
TEST(LateInterest, OneDayOnOneRow) {
  const std::tuple<const char*, double, const char*> cases[] = {
      {"983.33", 18, "0.48"},  // 0.48493
      {"1825", 1, "0.05"},     // 0.05 exactly
      {"182.5", 1, "0"},       // 0.005: half to even
      {"547.5", 1, "0.02"},    // 0.015: half to even
      {"983.33", 0, "0"},      // no rate
      {"983.33", -18, "0"},    // nor one below 0
      {"0", 18, "0"},          // nothing open
      {"-10", 18, "0"},        // over-paid
  };
  for (const auto& [balance, rate, charge] : cases) {
    EXPECT_EQ(DayCharge(Money::FromText(balance), rate).ToText(), charge)
        << balance << " at " << rate;
  }
}

}  // namespace
}  // namespace kaunter
