#include "platform/money.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "gtest/gtest.h"

namespace kaunter {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(MoneyTest, TextIsAnExactDecimalWithTiesToEven) {
  const struct {
    const char* text;
    std::int64_t units;
  } kCases[] = {
      {"0", 0},
      {"-0", 0},
      {"983.33", 9833300},
      {" 1,234.50 ", 12345000},
      {"+7", 70000},
      {".5", 5000},
      {"5.", 50000},
      {"-.0001", -1},
      {"0.00005", 0},
      {"0.00015", 2},
      {"0.00025", 2},
      {"0.000250000000000000001", 3},
      {"-0.00015", -2},
      {"-0.00025", -2},
      {"1.00034999", 10003},
      {"922337203685477.5807", kMost},
      {"922337203685477.58074", kMost},
      {"-922337203685477.5808", kLeast},
      {"000000000000000000000000000000000000000000001.5", 15000},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Money::FromText(c.text).ten_thousandths(), c.units) << c.text;
    EXPECT_EQ(Money::TryText(c.text)->ten_thousandths(), c.units) << c.text;
  }
}

TEST(MoneyTest, TextThatIsNoNumberIsRefused) {
  for (const char* text : {"",   " ",   "-",  ".",  "-.",   "1.2.3", "1e5", "12a",  "RM5", "--1",
                           "1-", "- 1", ",5", "5,", "1,,5", "1.2,3", "1 2", "0x10", "NaN", "(5)"}) {
    EXPECT_THROW(Money::FromText(text), std::invalid_argument) << text;
    EXPECT_FALSE(Money::TryText(text)) << text;
  }
}

TEST(MoneyTest, NothingWraps) {
  const Money most = Money::FromTenThousandths(kMost);
  const Money least = Money::FromTenThousandths(kLeast);
  const Money bit = Money::FromTenThousandths(1);
  EXPECT_THROW(Money::FromText("922337203685477.58076"), std::overflow_error);
  EXPECT_THROW(Money::FromText("9999999999999999999999999999999999999999999999"),
               std::overflow_error);
  EXPECT_FALSE(Money::TryText("922337203685477.5808"));
  EXPECT_THROW(Money::FromInteger(kMost), std::overflow_error);
  EXPECT_THROW(Money::FromDouble(1e15), std::overflow_error);
  EXPECT_THROW(Money::FromDouble(std::nan("")), std::overflow_error);
  EXPECT_THROW(Money::FromDouble(-std::numeric_limits<double>::infinity()), std::overflow_error);
  EXPECT_THROW(most + bit, std::overflow_error);
  EXPECT_THROW(least - bit, std::overflow_error);
  EXPECT_THROW(-least, std::overflow_error);
  EXPECT_THROW(most * Money::FromInteger(2), std::overflow_error);
  EXPECT_THROW(std::int64_t{2} * most, std::overflow_error);
  EXPECT_EQ(most * Money::FromInteger(1), most);
  EXPECT_EQ(least.ToText(), "-922337203685477.5808");
}

TEST(MoneyTest, DoubleScalesInDoubleThenTiesToEven) {
  const struct {
    double value;
    std::int64_t units;
  } kCases[] = {
      {0.03125, 312},  // 312.5 exactly: to the even 312
      {0.09375, 938},  // 937.5 exactly: to the even 938
      {-0.03125, -312},
      {0.00015, 1},  // 1.4999999999999998 once scaled: a text of the same digits gives 2
      {983.3333333, 9833333},
      {1816.6666666667, 18166667},
      {0.1 + 0.2, 3000},
      {-0.0, 0},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Money::FromDouble(c.value).ten_thousandths(), c.units) << c.value;
  }
}

TEST(MoneyTest, ProductsAreExactWithTiesToEven) {
  const auto of = [](std::int64_t units) { return Money::FromTenThousandths(units); };
  EXPECT_EQ((of(5000) * of(1)).ten_thousandths(), 0);  // 0.5 -> 0
  EXPECT_EQ((of(5000) * of(3)).ten_thousandths(), 2);  // 1.5 -> 2
  EXPECT_EQ((of(5000) * of(5)).ten_thousandths(), 2);  // 2.5 -> 2
  EXPECT_EQ((of(-5000) * of(3)).ten_thousandths(), -2);
  EXPECT_EQ((of(-5000) * of(5)).ten_thousandths(), -2);
  EXPECT_EQ((of(5001) * of(5)).ten_thousandths(), 3);
  // Past 64 bits in between, inside them at the end.
  EXPECT_EQ(Money::FromInteger(30000000) * Money::FromInteger(30000000),
            Money::FromInteger(900000000000000));
}

TEST(MoneyTest, TextHasNoCommasAndNoTrailingZeros) {
  const struct {
    std::int64_t units;
    const char* text;
  } kCases[] = {{0, "0"},        {1500000, "150"}, {9833300, "983.33"},
                {-5000, "-0.5"}, {1, "0.0001"},    {12345678900, "1234567.89"},
                {-1, "-0.0001"}};
  for (const auto& c : kCases) EXPECT_EQ(Money::FromTenThousandths(c.units).ToText(), c.text);
}

}  // namespace
}  // namespace kaunter
