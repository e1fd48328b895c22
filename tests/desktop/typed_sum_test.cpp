#include "desktop/typed_sum.h"

#include <gtest/gtest.h>

namespace kaunter {
namespace {

TEST(TypedSumTest, ReckonsWhatIsASumAndLeavesTheRest) {
  struct Case {
    const char* typed;
    const char* value;  // null: stays as typed
  };
  const Case cases[] = {{"100+20.50", "120.5"},  {"1,200 - 3*55.50", "1033.5"},
                        {"-5+10", "5"},          {"2*-3", nullptr},
                        {"0.1+0.2", "0.3"},      {"10-20", "-10"},
                        {"100", nullptr},        {"-100", nullptr},
                        {"", nullptr},           {"100+", nullptr},
                        {"+", nullptr},          {"100++1", nullptr},
                        {"12x+1", nullptr},      {"RM 5+1", nullptr},
                        {"01-02-2026", "-2027"}, {"3*2*2+1", "13"}};
  for (const Case& c : cases) {
    const auto sum = TypedSum(c.typed);
    EXPECT_EQ(sum.has_value(), c.value != nullptr) << c.typed;
    if (sum && c.value) {
      EXPECT_EQ(sum->ToText(), c.value) << c.typed;
    }
  }
}

}  // namespace
}  // namespace kaunter
