#include "collections/late_interest.h"

#include <gtest/gtest.h>

namespace kaunter {
namespace {

// Worked out by hand: balance x rate / 36,500.
TEST(LateInterest, OneDayOnOneRow) {
  struct Case {
    const char* balance;
    double rate;
    const char* charge;
  };
  const Case cases[] = {
      {"983.33", 18, "0.48"},  // 0.48493
      {"1825", 1, "0.05"},     // 0.05 exactly
      {"182.5", 1, "0"},       // 0.005: half to even
      {"547.5", 1, "0.02"},    // 0.015: half to even
      {"983.33", 0, "0"},      // no rate
      {"983.33", -18, "0"},    // nor one below 0
      {"0", 18, "0"},          // nothing open
      {"-10", 18, "0"},        // over-paid
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DayCharge(Money::FromText(c.balance), c.rate).ToText(), c.charge)
        << c.balance << " at " << c.rate;
  }
}

}  // namespace
}  // namespace kaunter
