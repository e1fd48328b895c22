// Thousands of random loans against the second model of schedule_model.h. The seed is printed;
// KAUNTER_SEED sets it.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/calculator.h"
#include "loans/schedule.h"
#include "tests/loans/schedule_model.h"
#include "tests/loans/with_figures.h"

namespace kaunter {
namespace {

using model::Day;
using model::Fraction;
using model::Int128;

std::uint64_t Seed() {
  if (const char* given = std::getenv("KAUNTER_SEED")) return std::strtoull(given, nullptr, 10);
  return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

// A loan drawn at random, as whole numbers beside the texts that the boxes hold.
struct RandomLoan {
  LoanTerms terms;
  std::int64_t sen = 0;    // LoanAmt
  std::int64_t rate4 = 0;  // InsRate in ten-thousandths of a percent
  int T = 0;
  int G = 0;
  Day first{};
  int step_days = 0;  // 0 for MONTH
  int decimals = 2;   // RoundedInstallment
};

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  int Between(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(engine_);
  }

 private:
  std::mt19937_64 engine_;
};

RandomLoan Draw(Random& random) {
  RandomLoan loan;
  LoanTerms& terms = loan.terms;
  terms.DragLoan = random.Between(0, 2) == 0 ? LoanScheme::kFlexi : LoanScheme::kPersonal;
  terms.LoanPurpose = random.Between(0, 1) == 0 ? InterestMethod::kFlat : InterestMethod::kReducing;
  terms.secured = random.Between(0, 1) == 0;
  loan.sen =
      random.Between(0, 3) == 0 ? random.Between(1, 200000000) : 1000 * random.Between(10, 100000);
  const int kinds = random.Between(0, 3);
  loan.rate4 = kinds == 0   ? random.Between(0, 480000)
               : kinds == 1 ? 10000 * random.Between(0, 30)
                            : 5000 * random.Between(1, 48);
  loan.T = random.Between(0, 4) == 0 ? random.Between(1, 360) : random.Between(1, 36);
  loan.G = random.Between(0, 2) == 0 ? random.Between(1, 12) : 0;
  loan.first = {random.Between(2000, 2099), random.Between(1, 12), 1};
  const int most = model::TrueMonthLength(loan.first.month, loan.first.year);
  loan.first.day = random.Between(0, 1) == 0 ? random.Between(28, most) : random.Between(1, most);
  const int code = random.Between(0, 5);
  const int days = random.Between(1, 45);
  loan.step_days = code < 3 ? 0 : code == 3 ? 7 : code == 4 ? 1 : days;
  loan.decimals = random.Between(0, 4);

  terms.LoanTypeID = code < 3    ? "MONTH"
                     : code == 3 ? "WEEK"
                     : code == 4 ? "DAILY"
                                 : std::to_string(days) + "DAYS";
  terms.NextDueDate = {loan.first.year, loan.first.month, loan.first.day};
  terms.LoanAmt = Format(Money::FromTenThousandths(loan.sen * 100), "#,##0.00");
  terms.InsRate = Money::FromTenThousandths(loan.rate4).ToText();
  terms.LoanTerm = terms.LoanTerm3 = std::to_string(loan.T);
  terms.LoanTerm2 = std::to_string(loan.G);
  return loan;
}

std::int64_t Units(const std::string& text) { return Money::FromText(text).ten_thousandths(); }
std::int64_t UnitsOf(double x) { return std::llround(x * 10000); }

// Interest of `rows` rows of a personal loan, in ten-thousandths of a ringgit:
// sen/100 x 10000, a hundredth, times rate4/10000 a year, a twelfth, times rows.
Fraction PersonalInterest(const RandomLoan& loan, std::int64_t rate4, int rows) {
  return {Int128{loan.sen} * rate4 * rows, Int128{1200} * 100};
}

void CheckDates(const RandomLoan& loan, const Schedule& schedule) {
  Day walked = loan.first;
  for (std::size_t i = 0; i < schedule.rows.size(); ++i) {
    const DateTime& due = schedule.rows[i].DueDate;
    const Day told =
        loan.step_days == 0 ? model::MonthlyDue(loan.first, static_cast<int>(i)) : walked;
    ASSERT_EQ((Day{due.year, due.month, due.day}), told) << "row " << i + 1;
    walked = model::PlusDays(walked, loan.step_days);
  }
}

// The figures of a personal loan; `B` takes the interest of the grace rows as it was rounded.
void CheckPersonalFigures(const RandomLoan& loan, const LoanTerms& terms, std::int64_t* B) {
  const std::int64_t balance = Units(terms.LoanBal);
  ASSERT_EQ(balance % 100, 0);
  // B is nowhere shown, but the figures tell it: what the instalments leave of the balance.
  const std::int64_t instalment = Units(terms.InstallmentAmt);
  *B = balance - Units(terms.LastPayment) - (loan.T - 1) * instalment;
  ASSERT_TRUE(model::IsRounded(PersonalInterest(loan, loan.rate4, loan.G), *B));
  ASSERT_EQ(terms.FirstPayment, terms.InstallmentAmt);
  // The interest of the whole is a double rounded into money: where its fraction lies on a tie, the
  // figures must fit one of the two neighbours.
  const Fraction A = PersonalInterest(loan, loan.rate4, loan.T + loan.G);
  bool met = false;
  for (int side = -1; side <= 1; ++side) {
    const std::int64_t interest = model::HalfEven(A) + side;
    if (!model::IsRounded(A, interest)) continue;
    const std::int64_t whole = loan.sen * 100 + interest;
    const std::int64_t sen = model::HalfAway({whole - *B, Int128{100} * loan.T});
    std::int64_t scale = 1;  // sen in a unit of the last decimal kept
    for (int i = loan.decimals; i < 2; ++i) scale *= 10;
    met = met || (model::HalfAway({whole, 100}) * 100 == balance &&
                  model::HalfEven({sen, scale}) * scale * 100 == instalment);
  }
  ASSERT_TRUE(met) << terms.LoanBal << " " << terms.InstallmentAmt;
}

// The interest of one grace row, in sen: the bullet's share, taken through money before the
// division or not.
bool IsGraceInterest(const RandomLoan& loan, GraceDivision division, std::int64_t sen) {
  const Fraction B = PersonalInterest(loan, loan.rate4, loan.G);
  if (division == GraceDivision::kPlainDouble) {
    return model::IsRounded({B.numerator, B.denominator * 100 * loan.G}, sen);
  }
  for (int side = -1; side <= 1; ++side) {
    const std::int64_t bullet = model::HalfEven(B) + side;
    if (model::IsRounded(B, bullet) && model::IsRounded({bullet, Int128{100} * loan.G}, sen)) {
      return true;
    }
  }
  return false;
}

// Rows of a personal loan whose figures stand in `terms`.
void CheckPersonalRows(const RandomLoan& loan, const LoanTerms& terms, const Schedule& schedule,
                       GraceDivision division) {
  const std::int64_t ringgit = model::HalfEven({loan.sen, 100});
  const std::int64_t total =
      Units(terms.LastPayment) + (loan.T - 1) * Units(terms.InstallmentAmt) - ringgit * 10000;
  const std::int64_t S = std::int64_t{loan.T} * (loan.T + 1) / 2;
  std::int64_t left = loan.sen * 100;
  std::int64_t kept = 0;  // the interest of the row before
  const int rows = loan.T + loan.G;
  for (int i = 1; i <= rows; ++i) {
    const ScheduleRow& row = schedule.rows[static_cast<std::size_t>(i - 1)];
    SCOPED_TRACE("row " + std::to_string(i));
    const std::int64_t capital = row.CapitalAmt.ten_thousandths();
    const std::int64_t interest = Units(row.InterestAmt);
    ASSERT_EQ(row.PayableAmt.ten_thousandths(), capital + interest);
    if (i <= loan.G) {
      ASSERT_EQ(capital, 0);
      ASSERT_EQ(interest % 100, 0);
      ASSERT_TRUE(IsGraceInterest(loan, division, interest / 100)) << interest;
    } else if (i == rows) {
      ASSERT_EQ(capital, left);
      ASSERT_EQ(interest, Units(terms.LastPayment) - capital);
    } else {
      ASSERT_EQ(capital, Units(terms.InstallmentAmt) - interest);
      const int W = rows - i + 1;
      if (terms.LoanPurpose == InterestMethod::kReducing) {
        ASSERT_TRUE(model::IsRounded({Int128{total} * W, Int128{100} * S}, interest / 100));
      } else if (i == 1) {
        ASSERT_TRUE(model::IsRounded({total, Int128{100} * loan.T}, interest / 100));
      } else {
        ASSERT_EQ(interest, kept);
      }
    }
    left -= capital;
    kept = interest;
  }
  ASSERT_EQ(left, 0);
}

void CheckFlexiRows(const RandomLoan& loan, const LoanTerms& terms, const Schedule& schedule) {
  std::int64_t balance = loan.sen * 100;
  const int rows = loan.T + loan.G;
  for (int i = 1; i <= rows; ++i) {
    const ScheduleRow& row = schedule.rows[static_cast<std::size_t>(i - 1)];
    SCOPED_TRACE("row " + std::to_string(i));
    const int days = model::TrueMonthLength(row.DueDate.month, row.DueDate.year);
    // Of the century years only 2100 can come up, and it is no leap year by the true calendar; the
    // house counts 29 days there.
    const int house = row.DueDate.month == 2 && row.DueDate.year % 4 == 0 ? 29 : days;
    const std::int64_t interest = Units(row.InterestAmt);
    ASSERT_TRUE(model::IsRounded(
        {Int128{balance} * loan.rate4 * house, Int128{100} * 10000 * 365 * 100}, interest / 100))
        << interest;
    const std::int64_t payable = row.PayableAmt.ten_thousandths();
    const std::int64_t capital = row.CapitalAmt.ten_thousandths();
    if (i <= loan.G) {
      ASSERT_EQ(capital, 0);
      ASSERT_EQ(payable, interest);
    } else {
      ASSERT_EQ(payable, i == rows ? balance + interest : Units(terms.InstallmentAmt2));
      ASSERT_EQ(capital, payable - interest);
    }
    balance -= capital;
  }
  ASSERT_EQ(balance, 0);
  ASSERT_EQ(Units(*schedule.LastPayment), schedule.rows.back().PayableAmt.ten_thousandths());
}

// The annuity by paying it off: after T payments nothing is left.
void CheckAnnuity(const RandomLoan& loan, const LoanTerms& terms) {
  const long double rate = static_cast<long double>(loan.rate4) / 10000 / 1200;
  long double owed = static_cast<long double>(loan.sen) / 100;
  long double worth_of_one = 0;  // what a payment of one a period comes to at the end
  for (int i = 0; i < loan.T; ++i) {
    owed *= 1 + rate;
    worth_of_one = worth_of_one * (1 + rate) + 1;
  }
  const auto instalment = static_cast<long double>(Units(terms.InstallmentAmt)) / 10000;
  ASSERT_LE(std::fabs(owed / worth_of_one - instalment), 0.005L + 1e-6L);
}

void CheckCapped(const RandomLoan& loan, const Schedule& schedule) {
  std::int64_t C = loan.terms.secured ? 12 : 18;
  if (loan.rate4 < C * 10000) C = model::HalfEven({loan.rate4, 10000});
  const std::int64_t S = std::int64_t{loan.T} * (loan.T + 1) / 2;
  const int rows = loan.T + loan.G;
  for (int i = 1; i <= rows; ++i) {
    const std::int64_t fint = UnitsOf(schedule.rows[static_cast<std::size_t>(i - 1)].FIntAmt);
    const bool grace = i <= loan.G;
    const int weight = grace ? 1 : rows - i + 1;
    // In sen. LowInt is rounded to ten-thousandths first: a miss of half of one before the
    // division.
    const Fraction low = PersonalInterest(loan, C * 10000, grace ? loan.G : loan.T);
    const long double exact = static_cast<long double>(low.numerator) /
                              static_cast<long double>(low.denominator) / 100 * weight /
                              static_cast<long double>(grace ? loan.G : S);
    ASSERT_LE(std::fabs(exact - static_cast<long double>(fint) / 100), 0.5L + 0.006L)
        << "row " << i;
  }
}

void CheckIdentities(const RandomLoan& loan, const LoanTerms& terms, const Schedule& schedule) {
  ASSERT_EQ(schedule.rows.size(), static_cast<std::size_t>(loan.T + loan.G));
  Money capital;
  Money interest;
  Money repaying;
  for (std::size_t i = 0; i < schedule.rows.size(); ++i) {
    const ScheduleRow& row = schedule.rows[i];
    ASSERT_EQ(row.SchID, static_cast<int>(i) + 1);
    capital += row.CapitalAmt;
    interest += Money::FromText(row.InterestAmt);
    if (row.SchID > loan.G) repaying += row.PayableAmt;
  }
  ASSERT_EQ(capital, Money::FromText(terms.LoanAmt));
  ASSERT_EQ(interest, schedule.TotLoanInt);
  if (terms.DragLoan == LoanScheme::kPersonal) {
    // B as the house takes it: the double into money.
    const double L = CDbl(Money::FromText(terms.LoanAmt)) / 100;
    const double R = CDbl(Money::FromText(terms.InsRate)) / 12;
    const Money B = Money::FromDouble((L * R) * loan.G);
    ASSERT_EQ(repaying, Money::FromText(terms.LoanBal) - B);
  }
}

class SchedulePropertyTest : public ::testing::Test {
 protected:
  // Runs `check` on `count` loans and stops at the first that fails, with its terms.
  template <typename Check>
  void ForLoans(int count, const Check& check) {
    const std::uint64_t seed = Seed();
    std::cout << "KAUNTER_SEED=" << seed << "\n";
    Random random(seed);
    for (int i = 0; i < count && !HasFatalFailure(); ++i) {
      const RandomLoan loan = Draw(random);
      SCOPED_TRACE("KAUNTER_SEED=" + std::to_string(seed) + " loan " + std::to_string(i) + ": " +
                   loan.terms.LoanAmt + " at " + loan.terms.InsRate + ", " + loan.terms.LoanTerm +
                   "+" + loan.terms.LoanTerm2 + " " + loan.terms.LoanTypeID + " from " +
                   loan.terms.NextDueDate.ToCanonical());
      check(loan);
    }
  }
};

TEST_F(SchedulePropertyTest, StoredSchedulesAgreeWithTheSecondModel) {
  ForLoans(5000, [](const RandomLoan& loan) {
    LoanTerms terms = loan.terms;
    ASSERT_FALSE(CheckTerms(terms));
    terms = WithFigures(terms, loan.decimals);
    const Schedule schedule = ComputeSchedule(terms);
    ASSERT_NO_FATAL_FAILURE(CheckIdentities(loan, terms, schedule));
    ASSERT_NO_FATAL_FAILURE(CheckDates(loan, schedule));
    ASSERT_NO_FATAL_FAILURE(CheckCapped(loan, schedule));
    if (terms.DragLoan == LoanScheme::kPersonal) {
      std::int64_t B = 0;
      ASSERT_NO_FATAL_FAILURE(CheckPersonalFigures(loan, terms, &B));
      ASSERT_NO_FATAL_FAILURE(
          CheckPersonalRows(loan, terms, schedule, GraceDivision::kThroughMoney));
    } else {
      ASSERT_NO_FATAL_FAILURE(CheckAnnuity(loan, terms));
      ASSERT_NO_FATAL_FAILURE(CheckFlexiRows(loan, terms, schedule));
    }
  });
}

// The calculator's figures have no grace interest in the balance and no RoundedInstallment; its
// rows are reducing ones.
TEST_F(SchedulePropertyTest, CalculatorTablesAgreeWithTheSecondModel) {
  ForLoans(2000, [](RandomLoan loan) {
    LoanTerms terms = loan.terms;
    const CalculatorFigures figures = CalcFigures(terms);
    const Schedule schedule = CalculatorSchedule(terms, figures);
    terms.LoanPurpose = InterestMethod::kReducing;
    terms.InstallmentAmt = figures.InstallmentAmt;
    terms.InstallmentAmt2 = figures.InstallmentAmt2;
    terms.LastPayment = figures.LastPayment;
    terms.LoanBal = figures.LoanBal;
    ASSERT_EQ(schedule.rows.size(), static_cast<std::size_t>(loan.T + loan.G));
    ASSERT_NO_FATAL_FAILURE(CheckDates(loan, schedule));
    if (terms.DragLoan == LoanScheme::kFlexi) {
      ASSERT_NO_FATAL_FAILURE(CheckAnnuity(loan, terms));
      ASSERT_NO_FATAL_FAILURE(CheckFlexiRows(loan, terms, schedule));
      return;
    }
    ASSERT_NO_FATAL_FAILURE(CheckPersonalRows(loan, terms, schedule, GraceDivision::kPlainDouble));
    terms.FirstPayment = terms.InstallmentAmt;
    loan.G = 0;
    loan.decimals = 2;
    std::int64_t B = 0;
    ASSERT_NO_FATAL_FAILURE(CheckPersonalFigures(loan, terms, &B));
    ASSERT_EQ(B, 0);
  });
}

}  // namespace
}  // namespace kaunter
