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
#include "core/audit.h"
#include "screen/report_job.h"
#include "tests/core/office.h"
#include "tests/screen/stopped_bar.h"

namespace kaunter {
namespace {

class CashDesk : public SilentDesk {
 public:
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    if (stops) return std::make_unique<StoppedBar>();
    return std::make_unique<SilentBar>();
  }
  void Print(const ReportJob& job) override { printed = job; }
  bool stops = false;
  ReportJob printed;
  bool Ask(std::string_view, std::string_view text) override {
    questions.emplace_back(text);
    if (while_asked) while_asked();
    return yes;
  }
  bool yes = true;
  std::function<void()> while_asked;
  std::vector<std::string> questions;
};

class CashBook : public ::testing::Test {
 protected:
  CashBook() {
    office.session.CurrentLevel = 4;
    office.session.AllowEdit = office.session.AllowDelete = true;
    office.session.MsgTitle = "Cash Book";
    office.session.settings.TransLogs = true;
    office.session.LogsConn =
        OpenSqlite("LogsConn", office.folder.File("logs.db"), true, office.session.clock);
    CreateMissingAuditTables(*office.session.LogsConn);
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
  std::string Acts() {
    std::string acts;
    for (Recordset row = office.session.LogsConn->Query("SELECT Type,TrxID FROM TransLogs");
         !row.Eof(); row.MoveNext()) {
      acts += row.Field(0).ToText() + row.Field(1).ToText() + " ";
    }
    office.session.LogsConn->Execute("DELETE FROM TransLogs");
    return acts;
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
  numbered.CollectInfoID = "Bank";
  PaymentMovement owing = was;
  owing.DiscAmt = Money::FromInteger(20);
  PaymentMovement nowhere = was;
  nowhere.CompCode = "ZZ";
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
      {"Delete Payment", 0, &owing, &was,
       "Cash Out|Delete Payment in P1|Delete Tan's payment amount in -5.00|5|-55|81|A|PAYMENT|",
       "-55 81 \n"},
      {"New Payment", 0, &nowhere, &was,
       "Cash In|New Payment in P1|Payment receive from Tan by SM1|11|11|0|A|PAYMENT|", "-55 81 \n"},
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
  EXPECT_EQ(office.Lines("SELECT DISTINCT CatCode,TranDate FROM CashBook ORDER BY CatCode"),
            "LOAN 2024-01-05 \nPAYMENT 2024-01-06 \n");
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
      {"AB", "", "Cash In", "-100000000000.01", "", "", "Amount cannot be -100000000000.01|"},
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
  // Typed and not stored is not left without a word.
  desk.yes = false;
  EXPECT_FALSE(screen.RequestClose());
  desk.yes = true;
  // What another desktop has changed meanwhile, or what the person may not change.
  screen.CashBookNo.Clear();
  EXPECT_EQ(Press(screen, screen.SaveCmd), "Cash Book Transaction saved|");
  const std::string own = office.Scalar("SELECT MAX(DocID) FROM CashBook");
  Put(screen.CashBookNo, own);
  Put(screen.TranAmt, "2");
  office.Run("UPDATE CashBook SET TranMemo='other' WHERE DocID=" + own);
  for (Button* button : {&screen.SaveCmd, &screen.Command1}) {
    EXPECT_THAT(Press(screen, *button), ::testing::HasSubstr("changed on another desktop"));
  }
  office.Run("UPDATE CashBook SET TranMemo='' WHERE DocID=" + own);
  // The same while the question stands: nothing has moved, the row is there.
  desk.while_asked = [&] { office.Run("UPDATE CashBook SET TranMemo='other'"); };
  for (Button* button : {&screen.SaveCmd, &screen.Command1}) {
    EXPECT_THAT(Press(screen, *button), ::testing::HasSubstr("nothing was written"));
    office.Run("UPDATE CashBook SET TranMemo='' WHERE DocID=" + own);
  }
  desk.while_asked = nullptr;
  office.session.AllowEdit = office.session.AllowDelete = false;
  for (Button* button : {&screen.SaveCmd, &screen.Command1}) {
    EXPECT_EQ(Press(screen, *button), "User AMY Level not allow to edit or delete record|");
  }
  EXPECT_EQ(Pair("AB"), "1 0 \n");
}

// The opening is a manager's word; what is told is what was done, and what is printed is what was
// looked at.
TEST_F(CashBook, TheScreenOfTheRecalculationTellsWhatItDid) {
  std::string rows =
      "INSERT INTO CashBook (CompCode,TranDate,TranType,TranAmt,CashBal,BankBal) VALUES "
      "('CD','2024-01-11','Cash In',5,9,9),('AB',null,'cash IN',1,0,0)";
  for (int i = 0; i < 400; ++i) rows += ",('AB','2024-01-10','Bank In',1,0,0)";
  office.Run(rows + ",('AB','2024-01-11','Gift',7,0,0)");
  RecalcCashBookFrm screen(office.session, desk);
  screen.Load();
  screen.CompCode.Pick("AB");
  const std::string odd = ". 1 rows of an unknown type move nothing";
  const std::string before = odd + ". 1 rows before the opening date are left as they are|";
  const struct {
    int level;
    const char *date, *bank;
    bool stops;
    Button& button;
    std::string said;
  } cases[] = {
      {1, "", "0", false, screen.CheckCmd,
       "402 of 402 rows differ; cash / bank of the company 0.00 / 0.00 should be 1.00 / 400.00" +
           odd + ". 1 rows without a date come first|"},
      {2, "10-01-2024", "6", false, screen.RecalcCmd,
       "User AMY Level not allow to change the opening|"},
      {3, "10-01-2024", "6", true, screen.RecalcCmd, "Stopped: nothing was changed|"},
      {3, "10-01-2024", "6", false, screen.RecalcCmd,
       "401 of 401 rows changed; cash / bank of the company 0.00 / 0.00 became 5.00 / 406.00" +
           before},
      {1, "10-01-2024", "6", false, screen.CheckCmd, "401 rows hold, nothing differs" + before},
      {1, "10-01-2024", "6", false, screen.RecalcCmd, "401 rows hold, nothing changed" + before},
      {1, "10-01-2024", "7", false, screen.CheckCmd,
       "401 of 401 rows differ; cash / bank of the company 5.00 / 406.00 should be 5.00 / 407.00" +
           before},
  };
  for (const auto& one : cases) {
    office.session.CurrentLevel = one.level;
    desk.stops = one.stops;
    Put(screen.CBOpenDate, one.date);
    Put(screen.CBOpenCash, *one.date == '\0' ? "0" : "5");
    Put(screen.CBOpenBank, one.bank);
    desk.messages.clear();
    screen.Guard([&] { one.button.Click(); });
    std::string said;
    for (const std::string& text : desk.messages) said += text.substr(text.find(": ") + 2) + "|";
    EXPECT_EQ(said, one.said);
    EXPECT_EQ(screen.CmdPrint.enabled(), said.find("differ;") != said.npos);
  }
  screen.CmdPrint.Click();
  EXPECT_EQ(desk.printed.ParameterFields[0] + desk.printed.ParameterFields[1] +
                desk.printed.ParameterFields[2],
            "OpenDate;2024-01-10;TrueOpenCash;5;TrueOpenBank;7;True");
  desk.yes = false;
  EXPECT_FALSE(screen.RequestClose());
  EXPECT_EQ(office.Lines("SELECT CashBal,BankBal FROM CashBook WHERE CompCode='CD'"), "9 9 \n");
  EXPECT_EQ(Acts(), "ModifyAB ModifyAB ");
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
    std::string acts;
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
        acts += fmt::format("Delete{} ", chosen->first);
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
        acts += fmt::format("{}{} ", edit ? "Modify" : "Create", id);
        ASSERT_EQ(
            office.Lines(fmt::format("SELECT CashBal,BankBal FROM CashBook WHERE DocID={}", id)),
            row.balances);
      }
      ASSERT_EQ(Pair("AB"), sen(cash) + " " + sen(bank) + " \n");
    }
    EXPECT_EQ(Acts(), acts);
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
