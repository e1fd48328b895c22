// The cash book: what moves the balances, what its screen refuses, and that a recalculation makes
// them true again whatever has happened to them.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "cash/cash_book_frm.h"
#include "cash/cash_posting.h"
#include "cash/recalc_cash_book_frm.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class CashDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    questions.emplace_back(text);
    return yes;
  }
  bool yes = true;
  std::vector<std::string> questions;
};

class CashBook : public ::testing::Test {
 protected:
  CashBook() {
    office.session.CurrentLevel = 4;
    office.session.AllowEdit = office.session.AllowDelete = true;
    office.session.MsgTitle = "Cash Book";
    office.Run(
        "DELETE FROM CompMast;INSERT INTO CompMast (CompCode,CompDesc) VALUES ('AB','Abadi');"
        "INSERT INTO CompMast (CompCode,CashInHand,CashInBank) VALUES ('CD',null,null);"
        "INSERT INTO CashBookCat (CatCode,CatDesc) VALUES ('RENT','Rent')");
  }
  template <typename Box>
  static void Put(Box& box, const std::string& text) {
    box.Enter();
    box.SetText(text);
    box.Leave();
  }
  void Enter(CashBookFrm& screen, const std::string& company, const std::string& date,
             const std::string& type, const std::string& amount, const std::string& what = "x") {
    Put(screen.CompCode, company);
    Put(screen.TranDate, date);
    Put(screen.TranType, type);
    Put(screen.TranAmt, amount);
    Put(screen.TranDesc, what);
    Put(screen.CBCat, "RENT");
  }
  std::string Press(CashBookFrm& screen, Button& button) {
    desk.messages.clear();
    screen.Guard([&] { button.Click(); });
    std::string said;
    for (const std::string& message : desk.messages) said += message.substr(11) + "|";
    return said;
  }
  std::string Pair(const char* company) {
    return office.Lines(
        fmt::format("SELECT CashInHand,CashInBank FROM CompMast WHERE CompCode='{}'", company));
  }

  Office office{Office::State::patched};
  CashDesk desk;
};

TEST_F(CashBook, LoansAndPaymentsPostTheirRows) {
  LoanMovement loan{"AB1-001", "AB", "05-01-2024", "Tan 'Ah' Kow", "SM1", Money::FromInteger(500)};
  PaymentMovement was{"P1",
                      "AB",
                      "06-01-2024",
                      "Tan",
                      "SM1",
                      "CASH",
                      "",
                      "",
                      Money::FromInteger(9),
                      Money::FromInteger(1),
                      Money::FromInteger(2),
                      Money::FromInteger(3),
                      Money::FromInteger(4)};  // 11 in all
  PaymentMovement now = was;
  now.PayAmt = Money::FromInteger(90);
  now.CollectInfoID = "cheque";
  now.Bank = "RHB";
  struct Case {
    const char* mode;
    int before;
    const PaymentMovement* payment;
    const PaymentMovement* snapshot;
    const char* row;
    const char* pair;
  };
  PaymentMovement numbered = now;
  numbered.ChqNo = "77";
  const Case cases[] = {
      {"New Loan", 0, nullptr, nullptr,
       "Cash Out|New Loan in AB1-001|Loan out to Tan 'Ah' Kow by SM1|500|-500|0|A|LOAN|",
       "-500 0 \n"},
      {"Edit Loan", 420, nullptr, nullptr,
       "Cash Out|Edit Loan in AB1-001|Edit Tan 'Ah' Kow's loan with capital amount from  420.00 "
       "adjusted to 500.00|80|-580|0|A|LOAN|",
       "-580 0 \n"},
      {"Edit Loan", 600, nullptr, nullptr,
       "Cash In|Edit Loan in AB1-001|Edit Tan 'Ah' Kow's loan with capital amount from  600.00 "
       "adjusted to 500.00|100|-480|0|A|LOAN|",
       "-480 0 \n"},
      {"Edit Loan", 500, nullptr, nullptr, "", "-480 0 \n"},
      {"Delete Loan", 0, nullptr, nullptr,
       "Cash In|Delete Loan in AB1-001|Delete Tan 'Ah' Kow's loan with capital amount in "
       "500.00|500|20|0|A|LOAN|",
       "20 0 \n"},
      {"New Payment", 0, &was, &was,
       "Cash In|New Payment in P1|Payment receive from Tan by SM1|11|31|0|A|PAYMENT|", "31 0 \n"},
      {"New Payment", 0, &numbered, &was,
       "Bank In|New Payment in P1 (RHB 77)|Payment receive from Tan by SM1|92|31|92|A|PAYMENT|",
       "31 92 \n"},
      {"Edit Payment", 0, &now, &was,
       "Bank In|Edit Payment in P1 (RHB)|Edit Tan's payment amount from  11.00 adjusted to "
       "92.00|81|31|173|A|PAYMENT|",
       "31 173 \n"},
      {"Edit Payment", 0, &was, &now,
       "Cash Out|Edit Payment in P1|Edit Tan's payment amount from  92.00 adjusted to "
       "11.00|81|-50|173|A|PAYMENT|",
       "-50 173 \n"},
      {"Edit Payment", 0, &now, &now, "", "-50 173 \n"},
      {"Delete Payment", 0, &now, &was,
       "Bank Out|Delete Payment in P1 (RHB)|Delete Tan's payment amount in 92.00|92|-50|81|A|"
       "PAYMENT|",
       "-50 81 \n"},
  };
  for (const Case& one : cases) {
    const std::string last = office.Scalar("SELECT isnull(MAX(DocID),0) FROM CashBook");
    if (one.payment == nullptr) {
      PostLoanMovement(office.session.Main(), one.mode, loan, Money::FromInteger(one.before));
    } else {
      PostPaymentMovement(office.session.Main(), one.mode, *one.payment, *one.snapshot);
    }
    EXPECT_EQ(office.Lines("SELECT TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CBType,"
                           "CatCode FROM CashBook WHERE DocID>" +
                               last,
                           "|"),
              std::string(one.row) + (*one.row == '\0' ? "" : "\n"))
        << one.mode;
    EXPECT_EQ(Pair("AB"), one.pair) << one.mode;
  }
  EXPECT_THROW(PostLoanMovement(office.session.Main(), "Close Loan", loan, Money()),
               std::invalid_argument);
}

TEST_F(CashBook, WhatIsRefusedMovesNothing) {
  office.Run(
      "INSERT INTO CashBook (CompCode,TranType,TranAmt,TranDesc,CBType) VALUES "
      "('CD','Cash In',5,'theirs','M')");
  const std::string theirs = office.Scalar("SELECT MAX(DocID) FROM CashBook");
  office.session.CurrentLevel = 1;
  office.session.CurrentCompCode = "AB";
  CashBookFrm screen(office.session, desk);
  screen.Load();
  const struct {
    const char* company;
    const char* date;
    const char* type;
    const char* amount;
    const char* what;
    const char* category;
    const char* said;
  } cases[] = {
      {"", "", "", "0", "", "", "Company Code is require, Please check|"},
      {"AB", "", "", "0", "", "", "Transaction Type is require, Please check|"},
      {"AB", "", "Cash", "0", "", "",
       "\"Cash\" is no Transaction Type, please choose one from the list|"},
      {"AB", "", "Cash In", "", "", "", "Amount cannot be 0|"},
      {"AB", "", "Cash In", "ten", "", "", "Amount cannot be ten|"},
      {"AB", "", "Cash In", "0.004", "", "", "Amount cannot be 0.004|"},
      {"AB", "", "Cash In", "-1", " ", "", "Transaction Description is require, Please check|"},
      {"AB", "", "Bank to Cash", "1", "x", "", "Category is require, Please check|"},
      {"AB", "30-02-2024", "Cash In", "1", "x", "RENT", "Invalid Date|"},
      {"CD", "", "Cash In", "1", "x", "RENT", "You Cannot Access Company CD|"},
  };
  for (const auto& one : cases) {
    screen.CompCode.SetText(one.company);
    screen.TranDate.SetText(one.date);
    screen.TranType.SetText(one.type);
    screen.TranAmt.SetText(one.amount);
    screen.TranDesc.SetText(one.what);
    screen.CBCat.SetText(one.category);
    EXPECT_EQ(Press(screen, screen.SaveCmd), one.said);
  }
  // Another company's row is not found: neither loaded, nor written over, nor deleted.
  Enter(screen, "AB", "", "Cash In", "1");
  screen.CashBookNo.SetText(theirs);
  EXPECT_EQ(Press(screen, screen.SaveCmd), "Cash book transaction " + theirs + " not found|");
  desk.questions.clear();
  Put(screen.CashBookNo, "1e");
  EXPECT_EQ(desk.messages.back(), "Cash Book: numeric is require, Please check");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CashBook") + Pair("AB") + Pair("CD"),
            "10 0 \n  \n");
  // What another desktop has changed meanwhile, or what the person may not change.
  screen.CashBookNo.Clear();
  EXPECT_EQ(Press(screen, screen.SaveCmd), "Cash Book Transaction saved|");
  const std::string own = office.Scalar("SELECT MAX(DocID) FROM CashBook");
  Put(screen.CashBookNo, own);
  Put(screen.TranAmt, "2");
  office.Run("UPDATE CashBook SET TranMemo='other' WHERE DocID=" + own);
  EXPECT_THAT(Press(screen, screen.SaveCmd), ::testing::HasSubstr("changed on another desktop"));
  office.Run("UPDATE CashBook SET TranMemo='' WHERE DocID=" + own);
  office.session.AllowEdit = office.session.AllowDelete = false;
  for (Button* button : {&screen.SaveCmd, &screen.Command1}) {
    EXPECT_EQ(Press(screen, *button), "User AMY Level not allow to edit or delete record|");
  }
  EXPECT_EQ(Pair("AB"), "1 0 \n");
}

// A save that fails anywhere is stored whole at its next press, or has told that the balances moved
// without it; a delete that fails deletes nothing. What was typed stays.
TEST_F(CashBook, AFailureAtEachStatementIsTold) {
  CashBookFrm screen(office.session, desk);
  screen.Load();
  for (const bool deletes : {false, true}) {
    for (int at = 1;; ++at) {
      office.Run("DELETE FROM CashBook;UPDATE CompMast SET CashInHand=0");
      screen.CmdClear.Click();
      Enter(screen, "AB", "30-01-2024", "Cash In", "5", "Float");
      if (deletes) {
        Press(screen, screen.SaveCmd);
        Put(screen.CashBookNo, office.Scalar("SELECT MAX(DocID) FROM CashBook"));
      }
      std::string said;
      const bool hit = office.FailAt(at, Office::Failure::passes, [&] {
        said = Press(screen, deletes ? screen.Command1 : screen.SaveCmd);
      });
      const std::string rows = office.Scalar("SELECT COUNT(*) FROM CashBook");
      if (!hit) {
        EXPECT_EQ(rows, deletes ? "0" : "1");
        break;
      }
      SCOPED_TRACE(fmt::format("{} {}: {}", deletes, at, said));
      EXPECT_FALSE(said.empty());
      const bool moved = said.find("have moved by") != std::string::npos;
      if (deletes) {
        EXPECT_EQ(Pair("AB"), "5 0 \n");
      } else if (rows == "0") {
        EXPECT_EQ(Pair("AB"), moved ? "5 0 \n" : "0 0 \n");
        EXPECT_EQ(screen.TranDesc.text() + screen.TranAmt.text(), "Float5.00");
      } else {
        EXPECT_EQ(Pair("AB"), "5 0 \n");
      }
    }
  }
}

// Saves, edits, deletes, lost rows and posted ones in any order: each step as a second reckoning
// has it, and the recalculation equal to a sum that knows nothing of the stored balances.
TEST_F(CashBook, RandomHistoriesAreMadeTrueAgain) {
  struct Row {
    int date;
    std::size_t type;
    long amount;  // sen
    std::string balances;
  };
  const char* const types[] = {"Cash In",  "Cash Out",     "Bank In",
                               "Bank Out", "Cash to Bank", "Bank to Cash"};
  const long cash_sign[] = {1, -1, 0, 0, -1, 1};
  const long bank_sign[] = {0, 0, 1, -1, 1, -1};
  const auto sen = [](long amount) { return Money::FromTenThousandths(amount * 100).ToText(); };
  std::mt19937 random(20240131);
  const auto any = [&random](long below) {
    return static_cast<long>(random() % static_cast<unsigned long>(below));
  };
  int lost_seen = 0;
  for (int history = 0; history < 40; ++history) {
    office.Run(
        "DELETE FROM CashBook;UPDATE CompMast SET CashInHand=0,CashInBank=null,CBOpenDate="
        "null,CBOpenCash=0,CBOpenBank=0");
    std::map<long, Row> book;
    long cash = 0, bank = 0;
    CashBookFrm screen(office.session, desk);
    screen.Load();
    for (int step = 0; step < 14; ++step) {
      const long what = any(10);
      const bool edit = what < 3 && !book.empty();
      auto chosen = book.begin();
      if (!book.empty()) std::advance(chosen, any(static_cast<long>(book.size())));
      if (what == 3 && !book.empty()) {
        Put(screen.CashBookNo, std::to_string(chosen->first));
        Press(screen, screen.Command1);
        book.erase(chosen);
        continue;
      }
      Row row{static_cast<int>(any(28)) + 1, static_cast<std::size_t>(any(6)),
              any(2) == 0 ? any(100000) + 1 : -any(100) - 1, ""};
      cash += cash_sign[row.type] * row.amount;
      bank += bank_sign[row.type] * row.amount;
      row.balances = sen(cash) + " " + sen(bank) + " \n";
      if (edit) Put(screen.CashBookNo, std::to_string(chosen->first));
      Enter(screen, "AB", fmt::format("{:02}-01-2024", row.date), types[row.type], sen(row.amount));
      if (what == 4) {  // the second of the two writes fails
        office.session.Main().SetFaultHook([](std::string_view sql) {
          if (sql.starts_with("INSERT INTO CashBook")) throw SqlError(1105, "the disk is full");
        });
        EXPECT_THAT(Press(screen, screen.SaveCmd), ::testing::HasSubstr("have moved by"));
        office.session.Main().SetFaultHook({});
        desk.yes = true;
        screen.CmdClear.Click();
      } else {
        ASSERT_EQ(Press(screen, screen.SaveCmd), "Cash Book Transaction saved|");
        const long id =
            edit ? chosen->first : std::stol(office.Scalar("SELECT MAX(DocID) FROM CashBook"));
        book[id] = row;
        ASSERT_EQ(
            office.Lines(fmt::format("SELECT CashBal,BankBal FROM CashBook WHERE DocID={}", id)),
            row.balances);
      }
      ASSERT_EQ(Pair("AB"), sen(cash) + " " + sen(bank) + " \n");
    }
    // The second reckoning, from an opening in the middle of the month now and then.
    CashOpening opening;
    if (any(2) == 0) opening.date = DateTime{2024, 1, static_cast<int>(any(28)) + 1};
    opening.pair = {Money::FromInteger(any(100)), Money::FromInteger(any(100))};
    const int from = opening.date ? opening.date->day : 0;
    long c = opening.pair.cash.ten_thousandths() / 100,
         b = opening.pair.bank.ten_thousandths() / 100;
    std::vector<std::pair<int, long>> order;
    bool in_a_row = false;
    for (const auto& [id, row] : book) {
      order.emplace_back(row.date, id);
      in_a_row = in_a_row || row.balances == sen(cash) + " " + sen(bank) + " \n";
    }
    std::sort(order.begin(), order.end());
    std::string expected, differing;
    for (const auto& [date, id] : order) {
      const Row& row = book[id];
      if (date >= from) {
        c += cash_sign[row.type] * row.amount;
        b += bank_sign[row.type] * row.amount;
        if (row.balances != sen(c) + " " + sen(b) + " \n") differing += std::to_string(id) + " ";
        expected += fmt::format("{} {} {} \n", id, sen(c), sen(b));
      } else {
        expected += fmt::format("{} {}", id, row.balances);
      }
    }
    Connection& main = office.session.Main();
    const CashBookReport look = CompareCashBook(main, "AB", opening);
    std::string found;
    for (const CashDifference& one : look.differences) found += std::to_string(one.DocID) + " ";
    EXPECT_EQ(found, differing);
    EXPECT_EQ(look.without_row, !in_a_row && (c != cash || b != bank));
    lost_seen += look.without_row;
    const std::string before =
        office.Lines("SELECT DocID,CashBal,BankBal FROM CashBook ORDER BY DocID") + Pair("AB");
    const auto now = [&] {
      return office.Lines("SELECT DocID,CashBal,BankBal FROM CashBook ORDER BY DocID") + Pair("AB");
    };
    EXPECT_EQ(now(), before);
    if (!look.differences.empty()) {
      EXPECT_FALSE(
          RecalculateCashBook(main, "AB", opening, [](auto, auto) { return false; }).complete);
    }
    const auto on = [](std::int64_t, std::int64_t) { return true; };
    // Each statement fails in turn; the turn that none fails in is the recalculation itself.
    const auto recalculate = [&] {
      try {
        RecalculateCashBook(main, "AB", opening, on);
      } catch (const SqlError&) {
      }
    };
    for (int at = 1; office.FailAt(at, Office::Failure::line_cut, recalculate); ++at) {
      if (main.InTransaction()) main.RollbackTrans();
      ASSERT_EQ(now(), before) << at;
    }
    EXPECT_EQ(office.Lines("SELECT DocID,CashBal,BankBal FROM CashBook ORDER BY TranDate,DocID"),
              expected);
    EXPECT_EQ(Pair("AB"), sen(c) + " " + sen(b) + " \n");
    EXPECT_EQ(ReadOpening(main, "AB"), opening);
    EXPECT_TRUE(RecalculateCashBook(main, "AB", opening, on).holds());
  }
  EXPECT_GT(lost_seen, 5);
}

}  // namespace
}  // namespace kaunter
