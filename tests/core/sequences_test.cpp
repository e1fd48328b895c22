#include "core/sequences.h"

#include <stdexcept>

#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class SequencesTest : public ::testing::Test {
 protected:
  Connection& main() { return office.session.Main(); }
  void SetCounter(const std::string& key, const std::string& value) {
    office.Run("DELETE FROM NumberMast WHERE CustID=" + QuoteStr(key));
    office.Run("INSERT INTO NumberMast VALUES (" + QuoteStr(key) + "," + QuoteStr(value) + ",'0')");
  }
  std::string Counter(const std::string& key) {
    return office.Scalar("SELECT LoanNo FROM NumberMast WHERE CustID=" + QuoteStr(key));
  }

  Office office{Office::State::base};
};

TEST_F(SequencesTest, SeriesCountsForItsOwner) {
  EXPECT_EQ(NextSeries(main(), "R", "HQ", false), "R0001");
  EXPECT_EQ(Counter("HQ#R"), "1");
  EXPECT_EQ(NextSeries(main(), "R", "HQ", false), "R0002");
  EXPECT_EQ(NextSeries(main(), "R", "B'1", false), "R0001");
  EXPECT_EQ(NextSeries(main(), "D", "AB0012", true), "AB0012#D0001");
  const struct {
    const char* stored;
    const char* number;
  } kCases[] = {{"6", "R0007"},      {"998", "R0999"},  {"9999", "R10000"},
                {"12344", "R12345"}, {"0006", "R0007"}, {"", "R0001"}};
  for (const auto& c : kCases) {
    SetCounter("HQ#R", c.stored);
    EXPECT_EQ(NextSeries(main(), "R", "HQ", false), c.number) << c.stored;
  }
}

TEST_F(SequencesTest, SeriesRefusesToWrapOrToGuess) {
  SetCounter("HQ#R", "2147483646");
  EXPECT_EQ(NextSeries(main(), "R", "HQ", false), "R2147483647");
  EXPECT_THROW(NextSeries(main(), "R", "HQ", false), std::overflow_error);
  EXPECT_EQ(Counter("HQ#R"), "2147483647");
  SetCounter("HQ#R", "A12");
  EXPECT_THROW(NextSeries(main(), "R", "HQ", false), std::invalid_argument);
}

TEST_F(SequencesTest, SeriesDrawsAgainWhileTheNumberIsTaken) {
  const auto taken = [](const std::string& number) {
    return number == "INV0001" || number == "INV0002";
  };
  EXPECT_EQ(NextSeries(main(), "INV", "HQ", false, taken), "INV0003");
  EXPECT_EQ(Counter("HQ#INV"), "3");
}

TEST_F(SequencesTest, CustomerCounterHoldsTheLastNumberUsed) {
  EXPECT_EQ(NextCustomerNumber(main(), "AB"), "AB0001");
  EXPECT_EQ(Counter("AB"), "0001");
  EXPECT_EQ(Counter("AB0001"), "000");
  const struct {
    const char* stored;
    const char* cust_id;
    const char* counter;
  } kCases[] = {{"0001", "AB0002", "0002"},
                {"9", "AB0010", "0010"},
                {"0999", "AB1000", "1000"},
                {"9999", "AB10000", "10000"}};
  for (const auto& c : kCases) {
    SetCounter("AB", c.stored);
    EXPECT_EQ(NextCustomerNumber(main(), "AB"), c.cust_id);
    EXPECT_EQ(Counter("AB"), c.counter);
  }
  EXPECT_EQ(NextCustomerNumber(main(), "O'B"), "O'B0001");
}

TEST_F(SequencesTest, CustomerNumberOfALongCompanyMeetsAnotherCompany) {
  SetCounter("A1", "0000");
  EXPECT_EQ(NextCustomerNumber(main(), "A1"), "A10001");
  SetCounter("A", "10000");
  EXPECT_EQ(NextCustomerNumber(main(), "A"), "A10002");
  // A customer whose counter is gone still holds the number.
  office.Run("INSERT INTO CustMast (CustID) VALUES ('A10003')");
  EXPECT_EQ(NextCustomerNumber(main(), "A"), "A10004");
}

TEST_F(SequencesTest, LoanCounterHoldsTheNextNumberToUse) {
  const struct {
    const char* stored;
    const char* loan_id;
    const char* counter;
  } kCases[] = {{"000", "AB0001-001", "002"},  {"0", "AB0001-001", "002"},
                {"9", "AB0001-009", "010"},    {"099", "AB0001-099", "100"},
                {"999", "AB0001-999", "1000"}, {"1000", "AB0001-1000", "1001"}};
  for (const auto& c : kCases) {
    office.Run("DELETE FROM NumberMast");
    SetCounter("AB0001", c.stored);
    EXPECT_EQ(NextLoanNumber(main(), "AB0001"), c.loan_id);
    EXPECT_EQ(Counter("AB0001"), c.counter);
    EXPECT_EQ(Counter(c.loan_id), "001");
  }
  EXPECT_THROW(NextLoanNumber(main(), "NOBODY"), SqlError);
}

TEST_F(SequencesTest, PaymentCounterIsMadeWhenMissingAndSkipsPaymentsThatExist) {
  EXPECT_EQ(NextPaymentNumber(main(), "AB0001-001"), "AB0001-001-001");
  EXPECT_EQ(Counter("AB0001-001"), "002");
  EXPECT_EQ(NextPaymentNumber(main(), "AB0001-001"), "AB0001-001-002");
  EXPECT_EQ(Counter("AB0001-001"), "003");
  office.Run("INSERT INTO PaymentMast (PayID) VALUES ('AB0001-001-003')");
  office.Run("INSERT INTO PaymentMast (PayID) VALUES ('AB0001-001-004')");
  EXPECT_EQ(NextPaymentNumber(main(), "AB0001-001"), "AB0001-001-005");
  EXPECT_EQ(Counter("AB0001-001"), "006");
  SetCounter("AB0001-001", "0");
  EXPECT_EQ(NextPaymentNumber(main(), "AB0001-001"), "AB0001-001-001");
}

TEST_F(SequencesTest, ARollbackGivesTheNumbersBack) {
  main().BeginTrans();
  const std::string cust_id = NextCustomerNumber(main(), "AB");
  NextPaymentNumber(main(), NextLoanNumber(main(), cust_id));
  main().RollbackTrans();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM NumberMast"), "0");
}

}  // namespace
}  // namespace kaunter
