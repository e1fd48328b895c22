// The edges of the arithmetic; the loans as such: schedule_property_test.cpp.
#include "loans/schedule.h"

#include <stdexcept>
#include <string>
#include <variant>

#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/calc_payment.h"
#include "tests/loans/with_figures.h"

namespace kaunter {
namespace {

LoanTerms PersonalLoan(const char* amount, const char* rate, const char* T, const char* G = "0") {
  LoanTerms terms;
  terms.LoanTypeID = "MONTH";
  terms.NextDueDate = {2024, 1, 31};
  terms.LoanAmt = amount;
  terms.InsRate = rate;
  terms.LoanTerm = terms.LoanTerm3 = T;
  terms.LoanTerm2 = G;
  return terms;
}

TEST(ScheduleEdgeTest, AnOverrideReplacesTheGraceInterestOnly) {
  LoanTerms terms = WithFigures(PersonalLoan("10000", "18", "6", "2"));
  terms.PayOutAmt2 = "1,000.50";
  const Schedule personal = ComputeSchedule(terms);
  EXPECT_EQ(personal.rows[1].PayableAmt.ToText(), "1000.5");
  EXPECT_EQ(personal.rows[2].InterestAmt, "1000.50");  // flat: the text as typed is carried on
  terms.DragLoan = LoanScheme::kFlexi;
  terms.LoanBal = "10000";
  const Schedule flexi = ComputeSchedule(terms);
  EXPECT_EQ(flexi.rows[1].InterestAmt, "1000.50");
  EXPECT_EQ(flexi.rows[2].InterestAmt, "152.88");  // 31 days of 10000 at 18
}

TEST(ScheduleEdgeTest, AWeakFlexiInstalmentMakesNegativeCapital) {
  LoanTerms terms = PersonalLoan("10000", "18", "3");
  terms.DragLoan = LoanScheme::kFlexi;
  terms = WithFigures(terms);
  terms.InstallmentAmt2 = "100";
  const Schedule schedule = ComputeSchedule(terms);
  EXPECT_EQ(schedule.rows[0].CapitalAmt.ToText(), "-52.88");
  Money capital;
  for (const ScheduleRow& row : schedule.rows) capital += row.CapitalAmt;
  EXPECT_EQ(capital, Money::FromInteger(10000));
}

TEST(ScheduleEdgeTest, TermsThatWereNotCheckedAreAFault) {
  for (const char* term : {"0", "-1", "1.5", "", "x", "10000"}) {
    LoanTerms terms = WithFigures(PersonalLoan("1000", "18", "12"));
    terms.LoanTerm = term;
    EXPECT_THROW(ComputeSchedule(terms), std::invalid_argument) << term;
  }
}

TEST(CalcPaymentTest, TheFirstBlankOrWrongBoxIsRefused) {
  struct Case {
    std::string LoanTerms::*box;
    const char* text;
    const char* field;
    const char* message;
  };
  // From the last check to the first: each row breaks one more box, and its message comes first.
  const Case kCases[] = {
      {&LoanTerms::LoanTerm2, "-1", "LoanTerm2", "Invalid Amount"},
      {&LoanTerms::LoanTerm, "12.5", "LoanTerm", "Invalid Loan Term Value"},
      {&LoanTerms::InsRate, "1,8", "InsRate", "Invalid Interest Amount"},
      {&LoanTerms::LoanAmt, "-5", "LoanAmt", "Invalid Loan Amt"},
      {&LoanTerms::LoanTerm2, "", "LoanTerm2", "Interest Term is required"},
      {&LoanTerms::LoanTerm3, "", "LoanTerm3", "Loan Term is required"},
      {&LoanTerms::LoanTerm, "", "LoanTerm", "Loan Term is required"},
      {&LoanTerms::InsRate, "", "InsRate", "Interest Rate is required"},
      {&LoanTerms::LoanAmt, "", "LoanAmt", "Loan Amount is required"},
  };
  LoanTerms terms = PersonalLoan("1000", "18", "12");
  for (const Case& c : kCases) {
    terms.*c.box = c.text;
    const auto result = CalcPayment(terms, 2);
    ASSERT_TRUE(std::holds_alternative<Refusal>(result)) << c.message;
    EXPECT_EQ(std::get<Refusal>(result).field, c.field);
    EXPECT_EQ(std::get<Refusal>(result).text.english, c.message);
  }
}

TEST(CalcPaymentTest, WrongNumbersAreRefusedWhateverTheirKind) {
  const auto first_refusal = [](const LoanTerms& terms) {
    const auto refusal = CheckTerms(terms);
    return refusal ? refusal->text.english : std::string();
  };
  for (const char* amount : {"0", "-1", "abc", "2147483648", "1e6", "0.00001"}) {
    EXPECT_EQ(first_refusal(PersonalLoan(amount, "18", "12")), "Invalid Loan Amt") << amount;
  }
  for (const char* rate : {"-0.5", "18%", "1,200", "."}) {
    EXPECT_EQ(first_refusal(PersonalLoan("1000", rate, "12")), "Invalid Interest Amount") << rate;
  }
  for (const char* term : {"0", "-3", "1.5", "twelve", "99999999999"}) {
    EXPECT_EQ(first_refusal(PersonalLoan("1000", "18", term)), "Invalid Loan Term Value") << term;
  }
  for (const char* code : {"", "DAYS", "XDAYS", "0DAYS", "-5DAYS", "month"}) {
    LoanTerms terms = PersonalLoan("1000", "18", "12");
    terms.LoanTypeID = code;
    EXPECT_NE(first_refusal(terms), "") << code;
  }
  EXPECT_EQ(first_refusal(PersonalLoan("1,000.50", "0", "12", "")), "");
}

TEST(CalcIntTest, GivesTheRatePerInstalmentWithTheMultiplierOnTheFirstPayment) {
  LoanTerms terms = WithFigures(PersonalLoan("10000", "18", "12"));
  EXPECT_EQ(std::get<std::string>(CalcInt(terms)), "1.5");
  // 10 x 900 + 983.33 + 983.37 - 10000 = 966.70, by 12, by 100, to four decimals.
  terms.FirstPayment = "900";
  EXPECT_EQ(std::get<std::string>(CalcInt(terms)), "0.8056");
  terms.InstallmentAmt = "0.5";  // to the even 0: no positive whole number
  EXPECT_TRUE(std::holds_alternative<std::monostate>(CalcInt(terms)));
  terms.InstallmentAmt = "";
  EXPECT_TRUE(std::holds_alternative<std::monostate>(CalcInt(terms)));
  terms.InstallmentAmt = "x";
  EXPECT_EQ(std::get<Refusal>(CalcInt(terms)).field, "InstallmentAmt");
}

TEST(CalcLoanAmtTest, CutsTheTextAndGoesUpToTens) {
  const auto amount = [](const char* instalment, const char* last, const char* T, const char* rate,
                         const char* code) {
    LoanTerms terms = PersonalLoan("", rate, T);
    terms.LoanTypeID = code;
    terms.FirstPayment = terms.InstallmentAmt = instalment;
    terms.LastPayment = last;
    return std::get<LoanAmtFigures>(CalcLoanAmt(terms)).LoanAmt;
  };
  // Rate 0: x is a tenth of the total.
  EXPECT_EQ(amount("1000", "1000", "12", "0", "MONTH"), "12000");     // 1200.00: as it is
  EXPECT_EQ(amount("1000", "1000.10", "12", "0", "MONTH"), "12010");  // 1200.01: up
  EXPECT_EQ(amount("1000", "1005", "12", "0", "MONTH"), "1210");      // 1200.5: a digit too many
  EXPECT_EQ(amount("1000", "1000.01", "12", "0", "MONTH"), "12000");  // 1200.001 shows no decimals
  // f = 12 x 18 / 12 = 18: 11800 / 118 x 100 / 10 = 1000.
  EXPECT_EQ(amount("983.33", "983.37", "12", "18", "MONTH"), "10000");
  // 14DAYS: 12 / 14 = 0.8571 months, f = 1.2856: x = 118.476...: up to 119.
  EXPECT_EQ(amount("100", "100", "12", "18", "14DAYS"), "1190");
  EXPECT_EQ(amount("100", "100", "12", "18", "WEEK"),
            "1150");  // 3 months, f = 4.5: x = 114.83...: up
}

}  // namespace
}  // namespace kaunter
