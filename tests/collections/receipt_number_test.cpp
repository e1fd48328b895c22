// Receipt numbers: style, digits, numbers in use, and numbers that are given back.
#include "collections/receipt_number.h"

#include "collections/renumber_receipts.h"

#include "tests/collections/payment_office.h"

namespace kaunter {
namespace {

class ReceiptNumber : public PaymentTest {
 protected:
  std::string Next(const std::string& date = "31-01-2024", const std::string& company = "HQ") {
    return NextReceiptNo(office.session, company, date);
  }
  // The numbers of payments on these days, drawn one behind the other.
  std::string NumbersOn(std::initializer_list<const char*> dates) {
    std::string numbers;
    for (const char* date : dates) numbers += Next(date) + " ";
    return numbers;
  }
  void SetCounter(const std::string& key, const std::string& number) {
    office.Run(
        fmt::format("DELETE FROM NumberMast WHERE CustID={0};INSERT INTO NumberMast "
                    "(CustID,LoanNo,PaymentNo) VALUES ({0},{1},'0')",
                    QuoteStr(key), QuoteStr(number)));
  }
  std::string Counters() {
    return Lines("SELECT CustID,LoanNo FROM NumberMast WHERE CustID LIKE '%#%' ORDER BY CustID");
  }
  void Serial() { office.Run("UPDATE CompMast SET SerialReceiptNo='1' WHERE CompCode='HQ'"); }
};

TEST_F(ReceiptNumber, TheStyleInForceNamesItsSeries) {
  EXPECT_EQ(NumbersOn({"31-01-2024", "01-02-2024", "02-02-2024"}),
            "202401-0001 202402-0001 202402-0002 ");
  Serial();
  EXPECT_EQ(NumbersOn({"31-01-2024", "29-02-2024"}), "R0001 R0002 ");
  // Another company counts for itself and in its own style.
  EXPECT_EQ(Next("31-01-2024", "AB"), "202401-0001");
  office.session.settings.ORYYMMDD = true;  // before the company's own style
  EXPECT_EQ(NumbersOn({"31-01-2024", "31-01-2024", "01-12-2009"}),
            "240131-0001 240131-0002 091201-0001 ");
  EXPECT_EQ(Counters(),
            "AB#202401- 1\nHQ#202401- 1\nHQ#202402- 2\nHQ#R 2\nORHQ#091201- 1\nORHQ#240131- 2\n");
}

TEST_F(ReceiptNumber, FourDigitsAndThenFive) {
  Serial();
  for (const auto& [last, number] : std::vector<std::pair<std::string, std::string>>{
           {"998", "R0999"}, {"9998", "R9999"}, {"9999", "R10000"}, {"99999", "R100000"}}) {
    SetCounter("HQ#R", last);
    EXPECT_EQ(Next(), number);
  }
}

TEST_F(ReceiptNumber, NumbersInUseArePassedOverButNotInARenumbering) {
  MakeLoan(kLoan, LoanScheme::kPersonal, "1200", "12");
  Pay("P1", kLoan, "2024-01-31", "1");
  Pay("P2", kLoan, "2024-01-31", "1");
  Pay("P3", kLoan, "2024-01-31", "1");
  office.Run(
      "UPDATE PaymentMast SET ReceiptNo='202401-0001' WHERE PayID='P1';"
      "UPDATE PaymentMast SET ReceiptNo='202401-0002' WHERE PayID='P2';"
      "UPDATE PaymentMast SET ReceiptNo='202401-0003',CompCode='AB' WHERE PayID='P3'");
  EXPECT_EQ(Next(), "202401-0003");
  SetCounter("HQ#202401-", "0");
  RenumberReceipts(office.session, {"HQ", {2024, 1, 31}, ""}, [](int, int) {});
  EXPECT_EQ(Scalar("SELECT ReceiptNo FROM PaymentMast WHERE PayID='P1'"), "202401-0001");
}

TEST_F(ReceiptNumber, ATextThatIsNoDateDrawsNothing) {
  EXPECT_THROW(Next("31-02-2024"), std::invalid_argument);
  EXPECT_THROW(Next(""), std::invalid_argument);
  EXPECT_EQ(Counters(), "");
}

TEST_F(ReceiptNumber, ATypedNumberIsFreeForAnotherCompanyAndMovesNoCounter) {
  MakeLoan(kLoan, LoanScheme::kPersonal, "1200", "12");
  Payment typed = Of("20");
  typed.ReceiptNo = Store(Of("10")).ReceiptNo;
  typed.CompCode = "AB";
  EXPECT_EQ(Store(typed).ReceiptNo, "202401-0001");
  EXPECT_EQ(Counters(), "HQ#202401- 1\n");
}

}  // namespace
}  // namespace kaunter
