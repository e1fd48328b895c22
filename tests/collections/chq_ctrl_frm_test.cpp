// The cheques of a loan: kept by hand while they are new, and left alone once a payment has them.
#include "collections/chq_ctrl_frm.h"

#include "tests/collections/payment_counter.h"

namespace kaunter {
namespace {

class Cheques : public PaymentCounter {
 protected:
  Cheques() {
    office.session.MsgTitle = "Cheque Control";
    office.Run("INSERT INTO BankMast (BankCode,BankName) VALUES ('RHB','RHB Bank')");
    screen.Load();
    Put(screen.LoanID, "hq0001-001");
  }
  void Type(const std::string& number, const std::string& date, const std::string& amount,
            const std::string& bank = "RHB") {
    Put(screen.ChqDate, date);
    Put(screen.ChqAmt, amount);
    Put(screen.ChqBank, bank);
    Put(screen.ChqNo, number);
    Quiet();
  }
  void Quiet() {
    counter.messages.clear();
    counter.questions.clear();
  }
  // What a press of the button asks and tells.
  std::string Press(Button& button) {
    Quiet();
    screen.Guard([&] { button.Click(); });
    return Said();
  }
  std::string Kept() {
    return Lines(
        "SELECT LoanID,SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt,PayID,ChqStatus FROM ChqMast "
        "ORDER BY LoanID,SeqNo");
  }
  std::string Listed() {
    std::string all;
    for (int row = 0; row < screen.ChqDG.RowCount(); ++row) {
      for (const std::string& cell : screen.ChqDG.Row(row)) all += cell + "|";
      all += "\n";
    }
    return all;
  }

  ChqCtrlFrm screen{office.session, counter};
};

TEST_F(Cheques, ABookOfThemIsKept) {
  EXPECT_EQ(screen.LoanID.text() + screen.CustName.text() + screen.LoanDate.text(),
            "HQ0001-001Tan 'Ah' Kow05-01-2024");
  office.Run("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo) VALUES ('HQ0001-002',9,'100001')");
  Type("100001", "31-01-2024", "1,112");
  EXPECT_EQ(Press(screen.Cmd1), "?Add 100001 Cheque No ?|Cheque Control: Cheque No 100001 added|");
  // The next one of the book: number and date alone are new.
  EXPECT_EQ(
      screen.ChqNo.text() + screen.ChqDate.text() + screen.ChqAmt.text() + screen.ChqBank.text(),
      "1,112.00RHB");
  EXPECT_TRUE(screen.RequestClose());
  EXPECT_EQ(counter.questions.size(), 1u);
  Type("O'Hara 2", "29-02-2024", "112.5", "Bank of 'J'");
  Press(screen.Cmd1);
  EXPECT_EQ(Lines("SELECT SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt FROM ChqMast WHERE "
                  "LoanID='HQ0001-001' ORDER BY SeqNo"),
            "1 100001 2024-01-31 RHB 1112\n2 O'Hara 2 2024-02-29 Bank of 'J' 112.5\n");
  EXPECT_EQ(Listed(),
            "100001|31-01-2024|RHB|1,112.00|NEW|||\n"
            "O'Hara 2|29-02-2024|Bank of 'J'|112.50|NEW|||\n");
  // A row picked is a row to change; the number stays what it is.
  screen.ChqDG.Select(1);
  EXPECT_EQ(screen.ChqNo.text() + screen.ChqStatus.text(), "O'Hara 2NEW");
  Put(screen.ChqAmt, "120");
  EXPECT_EQ(Press(screen.Cmd3),
            "?Confirm to change cheque No O'Hara 2|Cheque Control: Cheque No O'Hara 2 amended|");
  EXPECT_EQ(Press(screen.Cmd4),
            "?Confirm to remove Cheque No O'Hara 2 ?|Cheque Control: Cheque No O'Hara 2 deleted|");
  // The highest number of the loan counts, whatever another loan or a gap says.
  office.Run("UPDATE ChqMast SET SeqNo=7 WHERE LoanID='HQ0001-001'");
  Type("100002", "31-03-2024", "112");
  Press(screen.Cmd1);
  EXPECT_EQ(Lines("SELECT SeqNo,ChqNo FROM ChqMast WHERE LoanID='HQ0001-001' ORDER BY SeqNo"),
            "7 100001\n8 100002\n");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM ChqMast WHERE LoanID='HQ0001-002'"), "1");
}

TEST_F(Cheques, WhatIsRefusedLeavesTheListAlone) {
  office.Run(
      "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt,PayID,ChqStatus) VALUES "
      "('HQ0001-001',1,'N1','2024-01-31','RHB',112,'','NEW'),"
      "('HQ0001-001',2,'T1','2024-01-31','RHB',112,'HQ0001-001-001','NEW'),"
      "('HQ0001-001',3,'B1','2024-01-31','RHB',112,'','BOUNCED')");
  const std::string kept = Kept();
  const std::string all_four = "Cheque No, Cheque Amount, Cheque Date and Bank is required|";
  const std::string remove_three = "Cheque No, Cheque Amount and Cheque Date is required|";
  struct Case {
    Button& button;
    const char* number;
    const char* date;
    const char* amount;
    const char* bank;
    std::string said;
  };
  const Case cases[] = {
      {screen.Cmd1, "", "31-01-2024", "1", "RHB", all_four},
      {screen.Cmd1, "X", "", "1", "RHB", all_four},
      {screen.Cmd1, "X", "31-01-2024", "", "RHB", all_four},
      {screen.Cmd1, "X", "31-01-2024", "1", " ", all_four},
      {screen.Cmd1, "X", "30-02-2024", "1", "RHB", "Invalid Date|"},
      {screen.Cmd1, "X", "31-01-2024", "ten", "RHB", "Invalid Amount|"},
      {screen.Cmd1, "X", "31-01-2024", "-1", "RHB", "Invalid Amount|"},
      {screen.Cmd1, "n1", "31-01-2024", "1", "RHB", "?Add n1 Cheque No ?|Cheque No n1 existed|"},
      {screen.Cmd3, "", "31-01-2024", "1", "RHB", all_four},
      {screen.Cmd3, "N1", "31-01-2024", "0", "RHB", "Invalid Amount|"},
      {screen.Cmd3, "X", "31-01-2024", "1", "RHB",
       "?Confirm to change cheque No X|Cheque No X not found|"},
      {screen.Cmd3, "T1", "31-01-2024", "1", "RHB", "Cannot amend or remove cheque status USED|"},
      {screen.Cmd3, "B1", "31-01-2024", "1", "RHB",
       "Cannot amend or remove cheque status BOUNCED|"},
      {screen.Cmd4, "", "31-01-2024", "1", "RHB",
       "?Confirm to remove Cheque No  ?|" + remove_three},
      {screen.Cmd4, "N1", "31-01-2024", "", "RHB",
       "?Confirm to remove Cheque No N1 ?|" + remove_three},
      {screen.Cmd4, "X", "31-01-2024", "1", "",
       "?Confirm to remove Cheque No X ?|Cheque No X not exist|"},
      {screen.Cmd4, "T1", "31-01-2024", "1", "RHB",
       "?Confirm to remove Cheque No T1 ?|Cannot remove USED Cheque status|"},
      {screen.Cmd4, "B1", "", "", "",
       "?Confirm to remove Cheque No B1 ?|Cannot remove BOUNCED Cheque status|"},
  };
  for (const Case& one : cases) {
    Type(one.number, one.date, one.amount, one.bank);
    std::string said = Press(one.button);
    for (std::size_t at; (at = said.find("Cheque Control: ")) != std::string::npos;) {
      said.erase(at, 16);
    }
    EXPECT_EQ(said, one.said) << one.button.name() << " " << one.number;
    EXPECT_EQ(screen.ChqNo.text(), one.number);
    EXPECT_EQ(Kept(), kept);
  }
  counter.agrees = false;
  for (Button* button : {&screen.Cmd1, &screen.Cmd3, &screen.Cmd4}) {
    Type("N1", "31-01-2024", "5");
    EXPECT_EQ(Press(*button).find("Cheque Control"), std::string::npos);
    EXPECT_EQ(Kept(), kept);
  }
}

TEST_F(Cheques, NoLoanIsNoPlaceForACheque) {
  for (const char* loan : {"", "NOLOAN", "HQ0001-002"}) {
    // Another company's loan is not there for this clerk.
    office.session.CurrentLevel = 1;
    office.Run("UPDATE LoanMast SET CompCode='ZZ' WHERE LoanID='HQ0001-002'");
    Put(screen.LoanID, loan);
    EXPECT_EQ(screen.CustName.text(), "");
    Type("X", "31-01-2024", "1");
    for (Button* button : {&screen.Cmd1, &screen.Cmd3, &screen.Cmd4}) {
      EXPECT_EQ(Press(*button), *loan == '\0'
                                    ? "Cheque Control: Loan ID is required|"
                                    : fmt::format("Cheque Control: Loan ID {} not found|", loan));
    }
  }
  EXPECT_EQ(Kept(), "");
}

// The day on which one is taken and given back: tests/play/cheques.play.
TEST_F(Cheques, OneThatAPaymentTakesMeanwhileIsLeftToIt) {
  Type("100001", "31-01-2024", "150.25");
  Press(screen.Cmd1);
  EXPECT_EQ(New()->ChqNo.items(), std::vector<std::string>{"100001"});
  office.session.MsgTitle = "Cheque Control";
  const std::string take = "UPDATE ChqMast SET PayID='HQ0001-001-002',PayDate='2024-02-01'";
  office.Run(take);
  // The screen that stood open meanwhile still shows it as new.
  screen.ChqDG.Select(0);
  EXPECT_EQ(screen.ChqStatus.text(), "NEW");
  EXPECT_EQ(Press(screen.Cmd3), "Cheque Control: Cannot amend or remove cheque status USED|");
  EXPECT_EQ(screen.ChqStatus.text(), "USED");
  office.Run("UPDATE ChqMast SET PayID=''");
  Put(screen.LoanID, "HQ0001-002");
  Put(screen.LoanID, "HQ0001-001");
  // Taken while the question stands: the payment keeps the cheque as it took it.
  screen.ChqDG.Select(0);
  Put(screen.ChqAmt, "200");
  counter.on_ask = [&] { office.Run(take); };
  EXPECT_EQ(Press(screen.Cmd3),
            "?Confirm to change cheque No 100001|"
            "Cheque Control: Cannot amend or remove cheque status USED|");
  EXPECT_EQ(Lines("SELECT ChqAmt,PayID FROM ChqMast"), "150.25 HQ0001-001-002\n");
}

TEST_F(Cheques, WhatIsTypedIsNotLostUnasked) {
  Type("1", "31-01-2024", "1");
  Press(screen.Cmd1);
  Type("2", "31-01-2024", "2");
  counter.agrees = false;
  EXPECT_FALSE(screen.RequestClose());
  screen.ChqDG.Select(0);
  screen.ChqDG.Open(0, 0);
  Put(screen.LoanID, "HQ0001-002");
  EXPECT_EQ(screen.LoanID.text() + screen.ChqNo.text() + screen.ChqAmt.text(), "HQ0001-00122.00");
  // A number of the list typed over another amount does not bring its own.
  Put(screen.ChqNo, "1");
  EXPECT_EQ(screen.ChqAmt.text() + screen.ChqStatus.text(), "2.00NEW");
  counter.agrees = true;
  screen.ChqDG.Open(0, 0);
  EXPECT_EQ(screen.ChqAmt.text(), "1.00");
}

TEST_F(Cheques, EachStatementThatFailsIsToldAndLeavesNoTrace) {
  const auto press = [this](Button& button) { return FailEverywhere([&] { Press(button); }); };
  // Cheque, loan, number, the row, and the commit; the cheque once more where it is looked at
  // before the question.
  Type("1", "31-01-2024", "1");
  EXPECT_GE(press(screen.Cmd1), 5);
  // The failure behind the commit was the list: it is read anew with the loan.
  EXPECT_EQ(LastMessage(),
            "Cheque Control: an error occur during reading cheque record" + kReadAgain);
  EXPECT_EQ(Listed(), "");
  Put(screen.LoanID, "HQ0001-002");
  Put(screen.LoanID, "HQ0001-001");
  screen.ChqDG.Select(0);
  Put(screen.ChqAmt, "2");
  EXPECT_GE(press(screen.Cmd3), 3);
  EXPECT_GE(press(screen.Cmd4), 3);
  EXPECT_EQ(Kept(), "");
  // A list that could not be read is no list of the other loan.
  Type("1", "31-01-2024", "1");
  Press(screen.Cmd1);
  Quiet();
  FailAt(2, [this] { Put(screen.LoanID, "HQ0001-002"); });
  EXPECT_EQ(LastMessage(),
            "Cheque Control: an error occur during reading cheque record" + kReadAgain);
  EXPECT_EQ(Listed() + screen.CustName.text() + screen.LoanID.text(), "HQ0001-002");
}

}  // namespace
}  // namespace kaunter
