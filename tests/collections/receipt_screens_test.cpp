// Receipts numbered anew, and the last number of the running series. The usual day stands in
// tests/play/receipt-numbers.play.
#include "collections/receipt_screens.h"

#include "tests/collections/payment_office.h"

namespace kaunter {
namespace {

class ReceiptScreens : public PaymentTest {
 protected:
  ReceiptScreens() {
    MakeLoan(kLoan, LoanScheme::kPersonal, "1200", "12");
    Add("P1", "2024-01-05", "10:00:00", "202401-0001");
    Add("P2", "2024-01-20", "12:00:00", "202401-0007");
    Add("P3", "2024-01-20", "11:00:00", "BOOK 7");  // entered before P2
    Add("P4", "2024-02-01", "09:00:00", "");
    Add("P5", "2024-02-01", "09:00:00", "202402-0001");
    Add("P6", "2024-02-01", "09:00:00", "202402-0001");
    office.Run("UPDATE PaymentMast SET CompCode='AB' WHERE PayID='P6'");
    for (const char* key : {"HQ", "HQ0001", "HQ#D", "HQ#DL", "HQ#INV", "HQ#RX", "HQ#R",
                            "HQ#202401-", "HQ#202402-", "HQ#2024011-", "ORHQ#240120-", "ORHQ#R",
                            "AB#202402-", "AB#R", "HQ2#202401-", "HQ#AP", "hq#202312-"}) {
      office.Run(
          fmt::format("DELETE FROM NumberMast WHERE CustID={0};INSERT INTO NumberMast "
                      "(CustID,LoanNo,PaymentNo) VALUES ({0},'50','0')",
                      QuoteStr(key)));
    }
  }
  void Add(const std::string& pay_id, const std::string& date, const std::string& time,
           const std::string& receipt) {
    Pay(pay_id, kLoan, date, "1");
    office.Run(fmt::format(
        "UPDATE PaymentMast SET ReceiptNo='{}',DateCreated='2024-02-01 {}' WHERE PayID='{}'",
        receipt, time, pay_id));
  }
  void Serial() { office.Run("UPDATE CompMast SET SerialReceiptNo='1' WHERE CompCode='HQ'"); }
  std::string Receipts() { return Lines("SELECT PayID,ReceiptNo FROM PaymentMast ORDER BY PayID"); }
  // The message last shown, without its title.
  std::string Told() {
    if (desk.messages.empty()) return "";
    const std::string& last = desk.messages.back();
    return last.substr(last.find(": ") + 2);
  }
  // What the screen says to these boxes.
  std::string Restructure(const std::string& date, const std::string& start = "") {
    desk.messages.clear();
    desk.questions.clear();
    RecalcReceiptNo screen(office.session, desk);
    screen.Guard([&] {
      screen.Load();
      screen.TrxDate.SetText(date);
      screen.StartFrom.SetText(start);
      screen.SaveCmd.Click();
    });
    return Told();
  }
};

TEST_F(ReceiptScreens, EachMonthBeginsAtOneByDateAndTimeOfEntry) {
  EXPECT_EQ(Restructure("01-01-2024"), "Process completed");
  EXPECT_EQ(
      desk.questions.back(),
      "Confirm to restructuring payment receipt no from 01-01-2024 and number start from  ? ");
  EXPECT_EQ(Receipts(),
            "P1 202401-0001\nP2 202401-0003\nP3 202401-0002\nP4 202402-0001\nP5 202402-0002\n"
            "P6 202402-0001\n");
  // Receipt counters of the company alone are gone or begun again.
  EXPECT_EQ(Lines("SELECT CustID,LoanNo FROM NumberMast WHERE CustID LIKE '%#%' ORDER BY CustID"),
            "AB#202402- 50\nAB#R 50\nHQ#202401- 3\nHQ#2024011- 50\nHQ#202402- 2\nHQ#AP 50\nHQ#D "
            "50\nHQ#DL 50\nHQ#INV 50\nHQ#RX 50\nHQ2#202401- 50\nORHQ#R 50\n");
}

TEST_F(ReceiptScreens, TheRunningSeriesGoesOnBehindTheLastNumberInUse) {
  Serial();
  EXPECT_EQ(Restructure("20-01-2024", "9998"), "Process completed");
  EXPECT_EQ(Receipts(),
            "P1 202401-0001\nP2 R10000\nP3 R9999\nP4 R10001\nP5 R10002\nP6 202402-0001\n");
  EXPECT_EQ(Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='HQ#R'"), "10002");
  office.session.settings.ORYYMMDD = true;  // the dated style goes before it, without a number
  EXPECT_EQ(Restructure("20-01-2024"), "Process completed");
  EXPECT_EQ(Receipts(),
            "P1 202401-0001\nP2 240120-0002\nP3 240120-0001\nP4 240201-0001\nP5 240201-0002\n"
            "P6 202402-0001\n");
}

TEST_F(ReceiptScreens, ANumberFromBeforeTheDateIsNotGivenTwice) {
  const std::string before = Stored();
  EXPECT_EQ(Restructure("20-01-2024"),
            "Receipt No 202401-0001 is used before 20-01-2024, nothing was changed. Start from the "
            "first day of the series, or behind the last number in use");
  EXPECT_EQ(Stored(), before);
  EXPECT_FALSE(main().InTransaction());
}

TEST_F(ReceiptScreens, WhoBelongsToNoCompanyChoosesOne) {
  office.session.CurrentCompCode.clear();
  EXPECT_EQ(Restructure("01-01-2024"), "Company Code is required");
  ReceiptNoFrm screen(office.session, desk);
  screen.Load();
  screen.LoanNo.SetText("7");
  screen.SaveCmd.Click();
  EXPECT_EQ(Told(), "Company Code is required");
  ASSERT_TRUE(screen.CompCode.enabled() && screen.CompCode.Pick("HQ"));
  EXPECT_EQ(screen.LoanNo.text(), "50");
}

TEST_F(ReceiptScreens, WhatIsTypedIsChecked) {
  EXPECT_EQ(Restructure("", "x"), "Date are required");
  EXPECT_EQ(Restructure("31-02-2024"), "Invaid Date, please check");
  Serial();
  EXPECT_EQ(Restructure("", ""), "Date are required");
  EXPECT_EQ(Restructure("31-02-2024", ""), "Number are required");
  for (const char* number : {"x", "-1", "1.5", "2147483648", "1'"}) {
    EXPECT_EQ(Restructure("01-01-2024", number), "Invalid Number, please check") << number;
  }
  desk.agrees = false;
  EXPECT_EQ(Restructure("01-01-2024", "1"), "");
  EXPECT_EQ(Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='HQ#R'"), "50");
}

TEST_F(ReceiptScreens, EachStatementThatFailsLeavesNoTrace) {
  EXPECT_GT(FailEverywhere([this] { Restructure("01-01-2024"); }), 25);
  office.Run("DELETE FROM NumberMast WHERE CustID='HQ#R'");
  ReceiptNoFrm screen(office.session, desk);
  screen.Load();
  screen.LoanNo.SetText("12");
  EXPECT_GE(FailEverywhere([&] { screen.SaveCmd.Click(); }), 4);
  EXPECT_EQ(screen.LoanNo.text(), "12");
}

TEST_F(ReceiptScreens, TheLastNumberIsMadeOrSet) {
  const auto save = [this](const std::string& number) {
    desk.messages.clear();
    ReceiptNoFrm screen(office.session, desk);
    screen.Load();
    screen.LoanNo.SetText(number);
    screen.SaveCmd.Click();
    return Told();
  };
  for (const char* number : {"x", "-1", "1.5", "2147483648", "1,000"}) {
    EXPECT_EQ(save(number), "numberic is required") << number;
  }
  EXPECT_EQ(save(" "), "Last Receipt No is required");
  EXPECT_EQ(Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='HQ#R'"), "50");
  EXPECT_EQ(save("0099"), "Last Receipt No Saved");
  Serial();
  EXPECT_EQ(Store(Of("1")).ReceiptNo, "R0100");
  office.Run("DELETE FROM NumberMast WHERE CustID='HQ#R'");
  EXPECT_EQ(save("0"), "Last Receipt No Saved");
  EXPECT_EQ(Store(Of("1")).ReceiptNo, "R0001");
}

}  // namespace
}  // namespace kaunter
