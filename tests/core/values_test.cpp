#include "core/values.h"

#include <limits>
#include <stdexcept>

#include "core/session.h"
#include "gtest/gtest.h"

namespace kaunter {
namespace {

TEST(NumbersTest, RoundTakesTiesToEvenOnTheScaledDouble) {
  const struct {
    double x;
    int decimals;
    double rounded;
  } kCases[] =
      {
          {2.5, 0, 2},       {3.5, 0, 4},      {-2.5, 0, -2},      {-0.5, 0, 0},
          {0.125, 2, 0.12},  {0.375, 2, 0.38}, {-0.125, 2, -0.12}, {1234.5, -2, 1200},
          {1.005, 2, 1.0},   // 100.49999999999999 once scaled
          {2.675, 2, 2.68},  // 267.5 once scaled, although the double lies below
          {10.00005, 4, 10},
      };
  for (const auto& c : kCases) EXPECT_EQ(Round(c.x, c.decimals), c.rounded) << c.x;
  EXPECT_EQ(Round2(0.125), 0.12);
  EXPECT_EQ(Round2(276.923076923), 276.92);
}

TEST(NumbersTest, Round2OfMoneyIsExact) {
  const struct {
    const char* x;
    const char* rounded;
  } kCases[] = {{"1.0050", "1"},      {"1.0150", "1.02"},   {"1.0051", "1.01"}, {"-1.0050", "-1"},
                {"-1.0150", "-1.02"}, {"-1.0151", "-1.02"}, {"0.0050", "0"}};
  for (const auto& c : kCases) EXPECT_EQ(Round2(Money::FromText(c.x)).ToText(), c.rounded) << c.x;
}

TEST(NumbersTest, WholeNumbersTakeTiesToEvenAndRefuseWhatDoesNotFit) {
  EXPECT_EQ(CLng("1,000.50"), 1000);
  EXPECT_EQ(CLng("1001.5"), 1002);
  EXPECT_EQ(CLng("-1000.5"), -1000);
  EXPECT_EQ(CInt("10.5"), 10);
  EXPECT_EQ(CInt("11.5"), 12);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_THROW(CInt(32767.5), std::overflow_error);
  EXPECT_THROW(CInt("-32769"), std::overflow_error);
  EXPECT_EQ(CLng(2147483647.4), 2147483647);
  EXPECT_THROW(CLng(2147483647.5), std::overflow_error);
  EXPECT_THROW(CLng(std::numeric_limits<double>::quiet_NaN()), std::overflow_error);
  EXPECT_EQ(Fix(-1.5), -1);
  EXPECT_EQ(Int(-1.5), -2);
}

TEST(NumbersTest, OnlyPlainNumbersAreNumbers) {
  EXPECT_EQ(CDbl(" 1,234.50 "), 1234.5);
  EXPECT_EQ(CDbl("-.5"), -0.5);
  EXPECT_EQ(CDbl("+7."), 7);
  for (const char* text : {"", " ", "-", ".", "1.2.3", "12a", "1e3", "1E+16", "inf", "nan", "0x1",
                           "--1", ",1", "1,", "1 2", "5;DROP", "5--"}) {
    EXPECT_THROW(CDbl(text), std::invalid_argument) << text;
    EXPECT_FALSE(IsNumeric(text)) << text;
    if (!Trim(text).empty()) {
      EXPECT_THROW(StripCommaOrZero(text), std::invalid_argument) << text;
      EXPECT_THROW(StripCommaOrNull(text), std::invalid_argument) << text;
    }
  }
}

TEST(NumbersTest, TextOfANumberHasFifteenDigits) {
  const struct {
    double x;
    const char* text;
  } kCases[] = {{150, "150"},
                {276.92, "276.92"},
                {-0.5, "-0.5"},
                {0.1 + 0.2, "0.3"},
                {1.0 / 3, "0.333333333333333"},
                {-0.0, "0"},
                {0.00001, "0.00001"},
                {1e15, "1000000000000000"},
                {1.5e16, "1.5E+16"},
                {999999999999999.9, "1000000000000000"}};
  for (const auto& c : kCases) EXPECT_EQ(NumberText(c.x), c.text);
}

TEST(FormatsTest, NumbersTakeTiesAwayFromZero) {
  const struct {
    double x;
    const char* pattern;
    const char* text;
  } kCases[] = {
      {0.125, "0.00", "0.13"},
      {1.005, "0.00", "1.01"},  // on 15 digits, not on the binary residue
      {-0.125, "0.00", "-0.13"},
      {2.5, "0", "3"},
      {-2.5, "0", "-3"},
      {-0.004, "0.00", "0.00"},
      {-0.005, "#,##0.00", "-0.01"},
      {999.995, "#,##0.00", "1,000.00"},
      {0.995, "#,##0.00", "1.00"},
      {1234567.891, "#,##0.00", "1,234,567.89"},
      {-1234567.5, "#,##0", "-1,234,568"},
      {100000, "#,##0.0000", "100,000.0000"},
      {7, "0000", "0007"},
      {12345, "0000", "12345"},
      {0, "#,###.00", ".00"},
      {1234.5, "0.##", "1234.5"},
      {1234, "0.##", "1234"},
      {2e17, "#,##0", "200,000,000,000,000,000"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Format(c.x, c.pattern), c.text) << c.x;
  EXPECT_EQ(Format(Money::FromText("0.0050"), "0.00"), "0.01");
  EXPECT_EQ(Format(Money::FromText("-0.0049"), "0.00"), "0.00");
  EXPECT_EQ(Format(Money::FromText("922337203685477.5807"), "#,##0.00"), "922,337,203,685,477.58");
  EXPECT_THROW(Format(1.0, "dd"), std::invalid_argument);
  EXPECT_THROW(Format(1.0, ""), std::invalid_argument);
}

TEST(FormatsTest, DatesByTheirPatterns) {
  const DateTime afternoon{2024, 1, 31, 14, 5, 9};
  const DateTime midnight{2024, 12, 1, 0, 0, 0};
  const struct {
    DateTime when;
    const char* pattern;
    const char* text;
  } kCases[] = {
      {afternoon, "dd-mm-yyyy", "31-01-2024"},
      {afternoon, "dd-MM-yyyy", "31-01-2024"},
      {afternoon, "yyyy-mm-dd hh:nn:ss", "2024-01-31 14:05:09"},
      {afternoon, "hh:mm:ss AMPM", "02:05:09 PM"},
      {afternoon, "hhmm", "1405"},
      {afternoon, "h:mm ampm", "2:05 pm"},
      {midnight, "h:mm am/pm", "12:00 am"},
      {midnight, "hh:mm:ss", "00:00:00"},
      {{2024, 1, 1, 12, 30, 0}, "h:mm AMPM", "12:30 PM"},
      {afternoon, "yyMMdd-", "240131-"},
      {afternoon, "yyyy,mm,dd", "2024,01,31"},
      {afternoon, "dddd, mmmm dd, yyyy h:mm am/pm", "Wednesday, January 31, 2024 2:05 pm"},
      {afternoon, "long date", "Wednesday, 31 January 2024"},
      {afternoon, "d mmm yy", "31 Jan 24"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Format(c.when, c.pattern), c.text) << c.pattern;
}

TEST(SqlLiteralsTest, TextsBecomeLiterals) {
  EXPECT_EQ(QuoteStr("O'Brien"), "'O''Brien'");
  EXPECT_EQ(QuoteStr("''"), "''''''");
  EXPECT_EQ(QuoteStr(""), "''");
  EXPECT_EQ(StripCommaOrZero(""), "0");
  EXPECT_EQ(StripCommaOrZero("1,234.50"), "1234.50");
  EXPECT_EQ(StripCommaOrNull(""), "null");
  EXPECT_EQ(StripCommaOrNull("-1,234.5000"), "-1234.5000");
  EXPECT_EQ(SqlDate("31-01-2024"), "'2024-01-31'");
  EXPECT_EQ(SqlDate("31-01-2024 23:59:59"), "'2024-01-31'");
  EXPECT_EQ(SqlDateTime("31-01-2024"), "'2024-01-31 00:00:00'");
  EXPECT_EQ(SqlDateTime("31-01-2024 23:59:59"), "'2024-01-31 23:59:59'");
  EXPECT_EQ(SqlDate(""), "null");
  EXPECT_EQ(SqlDateTime(""), "null");
  for (const char* text : {"31-02-2024", "2024-01-31", "01-31-2024", "31-01-24", "31/01/2024",
                           "1-1-2024", "31-01-2024'", "today"}) {
    EXPECT_THROW(SqlDate(text), std::invalid_argument) << text;
    EXPECT_FALSE(IsDate(text)) << text;
  }
  EXPECT_TRUE(IsDate("29-02-2024"));
  EXPECT_FALSE(IsDate("29-02-2023"));
  EXPECT_FALSE(IsDate("29-02-2024 10:00:00"));
}

TEST(ShownTest, ValuesBecomeTexts) {
  const Value null;
  const Value early(DateTime{1999, 12, 31});
  const Value turn(DateTime{2000, 1, 1});
  const Value unset(DateTime{1900, 1, 1});
  EXPECT_EQ(ShowDate(null), "");
  EXPECT_EQ(ShowDate(early), "");
  EXPECT_EQ(ShowDate(turn), "01-01-2000");
  EXPECT_EQ(ShowDate("2024-01-31"), "31-01-2024");
  EXPECT_EQ(ShowBirthDate(early), "31-12-1999");
  EXPECT_EQ(ShowBirthDate(unset), "");
  EXPECT_EQ(ShowDateTime(early), "31-12-1999 00:00:00");
  EXPECT_EQ(ShowDateTime(null), "");
  EXPECT_EQ(ShowMoney(null), "0.00");
  EXPECT_EQ(ShowMoney(1234.5), "1,234.50");
  EXPECT_EQ(ShowMoney(Money::FromText("-0.0001")), "0.00");
  EXPECT_EQ(ShowMoney(1234567), "1,234,567.00");
  EXPECT_EQ(ShowMoney("1234.565"), "1,234.57");
  EXPECT_EQ(Show2dp(null), "");
  EXPECT_EQ(Show2dp(1234.565), "1234.57");
  EXPECT_EQ(Show4dp(Money::FromInteger(1234)), "1,234.0000");
  EXPECT_EQ(ShowInt(null), "0");
  EXPECT_EQ(ShowInt(2.5), "3");
}

TEST(TextsTest, MonthLengthsHaveNoCenturyRule) {
  EXPECT_EQ(DaysInMonth(2, 1900), 29);
  EXPECT_EQ(DaysInMonth(2, 2023), 28);
  EXPECT_EQ(DaysInMonth(9, 2023), 30);
  EXPECT_EQ(DaysInMonth(12, 2023), 31);
}

TEST(TextsTest, CapLockRaisesLettersOnlyWhenOn) {
  Session session;
  EXPECT_EQ(ApplyCapLock(session, "Tan ah kow"), "Tan ah kow");
  session.settings.CapLock = true;
  EXPECT_EQ(ApplyCapLock(session, "Tan ah kow 陈"), "TAN AH KOW 陈");
}

}  // namespace
}  // namespace kaunter
