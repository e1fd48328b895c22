// The figures of the home page on a small office, against statements written another way. Today is
// 31-01-2024 throughout.
#include "core/office_figures.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "core/main_frm.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Money M(const char* text) { return Money::FromText(text); }

class FiguresTest : public ::testing::Test {
 protected:
  FiguresTest() {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    office.Run("INSERT INTO CustMast (CustID,CustName,CompCode) VALUES ('C1','Ah Beng','HQ')");
  }
  void Loan(const char* id, const char* company, const char* balance, const char* date = "",
            const char* released = "0") {
    office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanBal,TrxDate,LoanAmt,"
                    "LoanAmt2,PayOutAmt) VALUES ('{}','C1','{}',{},{},5000,3000,{})",
                    id, company, balance, SqlDate(date), released));
  }
  // A row of 100.00 of which something is paid.
  void Row(const char* loan, const char* due, const char* paid = "0") {
    office.Run(
        fmt::format("INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,Payment) "
                    "VALUES ({},'{}','C1',{},100,{})",
                    ++rows, loan, SqlDate(due), paid));
  }
  OfficeFigures Read() {
    OfficeFigures figures = EmptyFigures(ServerTime(office.session.Main()));
    ReadComingDue(office.session, figures);
    ReadArrears(office.session, figures);
    for (int part = 0; part < kYearParts; ++part) ReadCollections(office.session, figures, part);
    ReadDisbursements(office.session, figures);
    return figures;
  }

  Office office{Office::State::patched};
  int rows = 0;
};

TEST_F(FiguresTest, TheLoansThatOweMostStandFirst) {
  for (int i = 1; i <= 9; ++i) Loan(fmt::format("L{}", i).c_str(), "HQ", "900");
  for (int i = 1; i <= 8; ++i) Row(fmt::format("L{}", i).c_str(), "30-01-2024", "50");
  Row("L9", "01-01-2024", "99.99");
  Row("L3", "02-12-2023", "99.99");
  Row("L5", "29-01-2024", "50");
  Row("L5", "01-02-2024");  // coming, not behind
  const OfficeFigures figures = Read();
  ASSERT_EQ(figures.top.size(), 8U);
  EXPECT_EQ(figures.top[0], (OverdueLoan{"L5", "Ah Beng", 2, M("100")}));
  EXPECT_EQ(figures.top[1], (OverdueLoan{"L3", "Ah Beng", 60, M("50.01")}));
  EXPECT_EQ(figures.top[2].loan_id, "L1");
  EXPECT_EQ(figures.top[7].loan_id, "L8");
  EXPECT_EQ(figures.overdue.count, 9);
}

// The same figures from statements of another build: each asked by itself, days counted by the
// server, loans and companies by subqueries. The rows lie around every border at once.
TEST_F(FiguresTest, AgreeWithStatementsWrittenAnotherWay) {
  EXPECT_EQ(Read().overdue, Tally{});  // nobody owes anything yet
  const char* companies[] = {"HQ", "AB", "CD", "HQ"};
  const char* balances[] = {"900", "0", "0.01"};
  const char* dates[] = {"31-01-2024", "30-01-2024", "01-01-2024", "31-12-2023", "02-12-2023",
                         "01-12-2023", "02-11-2023", "01-11-2023", "01-02-2024", "06-02-2024",
                         "07-02-2024", "29-02-2024", "01-02-2023", "31-01-2023", "28-02-2023"};
  const char* paid[] = {"0", "99.99", "100", "33.33", "120"};
  for (std::size_t i = 0; i < 60; ++i) {
    const std::string loan = fmt::format("L{:02}", i);
    Loan(loan.c_str(), companies[i % 4], balances[i % 3], dates[i % 15], i % 5 == 0 ? "0" : "50");
    for (std::size_t row = 0; row < 7; ++row) {
      Row(loan.c_str(), dates[(i + row * 4) % 15], paid[(i + row) % 5]);
    }
    office.Run(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt,IntAmt,ChargeAmt,"
        "CollectorAmt,DiscAmt) VALUES ('P{0}','{0}','{1}',{2},{3},1.11,null,2,0.5)",
        loan, companies[i % 4], SqlDate(dates[i % 15]), paid[i % 5]));
    office.Run(
        fmt::format("INSERT INTO DrawDownMast (SID,LoanID,CompCode,TrxDate,DrawDownAmt) "
                    "VALUES ('D{0}','{0}','{1}',{2},{3}.25)",
                    loan, companies[i % 4], SqlDate(dates[i % 15]), i));
  }
  const auto ask = [&](const std::string& sql) {
    Recordset row = office.session.Main().Query(sql);
    const Money amount = row.Field(1).IsNull() ? Money() : Money::FromText(row.Field(1).ToText());
    return Tally{std::stoi(row.Field(0).ToText()), amount};
  };
  struct Person {
    int level;
    const char* allowed;
    bool special;
    const char* companies;
  };
  for (const Person& person : {Person{5, "", false, "'HQ','AB','CD'"}, Person{2, "", true, "'HQ'"},
                               Person{2, R"("CD","AB")", false, "'CD','AB'"}}) {
    SCOPED_TRACE(person.companies);
    office.session.CurrentLevel = person.level;
    office.session.AllowedCompanies = person.allowed;
    office.session.Special = person.special;
    const OfficeFigures figures = Read();
    const auto open = [&](const char* what, int from, int to) {
      return fmt::format(
          "SELECT {}, sum(PayableAmt)-sum(Payment) FROM SchMast WHERE datediff(day,DueDate,"
          "'2024-01-31') between {} and {} AND Payment<PayableAmt AND LoanID in (SELECT LoanID "
          "FROM LoanMast WHERE LoanBal<>0 AND CompCode in ({}))",
          what, from, to, person.companies);
    };
    EXPECT_EQ(figures.due_today, ask(open("count(SchID)", 0, 0)));
    EXPECT_EQ(figures.due_week, ask(open("count(SchID)", -6, 0)));
    const int bands[][2] = {{1, 30}, {31, 60}, {61, 90}, {91, 99999}};
    for (std::size_t band = 0; band < kAgeBands; ++band) {
      EXPECT_EQ(figures.by_age[band], ask(open("count(SchID)", bands[band][0], bands[band][1])));
    }
    EXPECT_EQ(figures.overdue, ask(open("count(distinct LoanID)", 1, 99999)));
    EXPECT_GT(figures.overdue.count, 3);
    for (std::size_t i = 0; i < kMonthsShown; ++i) {
      const MonthTally& in = figures.collected[i];
      const auto of = [&](const char* date) {
        return fmt::format("year({0})={1} AND month({0})={2} AND CompCode in ({3})", date, in.year,
                           in.month, person.companies);
      };
      EXPECT_EQ(in.sum, ask("SELECT count(PayID),sum(PayAmt+IntAmt+isnull(ChargeAmt,0)+CollectorAmt"
                            "-DiscAmt) FROM PaymentMast WHERE " +
                            of("PayDate")));
      EXPECT_EQ(
          figures.disbursed[i].sum,
          person.special
              ? ask("SELECT count(LoanID),sum(LoanAmt2) FROM LoanMast WHERE PayOutAmt<>0 AND " +
                    of("TrxDate"))
              : ask("SELECT count(SID),sum(DrawDownAmt) FROM DrawDownMast WHERE " + of("TrxDate")));
    }
  }
}

// A main window with the few entries that stand behind figures.
class HomeFiguresTest : public FiguresTest {
 protected:
  static MenuEntry Entry(const char* name, const char* target) {
    MenuEntry entry;
    entry.name = name;
    entry.action = MenuAction::screen;
    entry.target = target;
    return entry;
  }
  HomeFiguresTest() {
    Loan("L1", "HQ", "900");
    Row("L1", "30-01-2024");
    home.later = [this](HomeFigures::When when, std::function<void()> part) {
      waits.push_back(when);
      parts.push_back(std::move(part));
    };
    for (MenuEntry& entry : main.menu().entries()) entry.visible = true;
    office.session.Main().SetTrace([this](std::string_view, std::string_view sql) {
      if (away) throw std::runtime_error("no connection");
      sent.emplace_back(sql);
    });
  }
  bool Sent(std::string_view table) const {
    return std::any_of(sent.begin(), sent.end(), [&](const std::string& sql) {
      return sql.find(table) != std::string::npos;
    });
  }

  // What a face does while it is idle; whoever waits for ever is seen not to have read.
  void ReadAll() {
    for (int i = 0; i < 100 && !parts.empty(); ++i) {
      const auto part = std::move(parts.front());
      parts.erase(parts.begin());
      part();
    }
  }

  bool away = false;  // the server
  std::vector<std::string> sent;
  std::vector<HomeFigures::When> waits;
  std::vector<std::function<void()>> parts;
  MainFrm main{office.session,
               office.desk,
               {Entry("DueDateInq", "DueDateFrm"), Entry("FolloUpMnu", "FollowupFrm"),
                Entry("EditLoanMnu", "NewLoanFrm"), Entry("EditPaymentMnu", "PaymentFrm")},
               [](std::string_view) { return true; }};
  HomeFigures& home = main.home();
};

// Each figure on its edges: a day too early and too late, used, another state, another company.
TEST_F(FiguresTest, TheCashOfEachCompanyIsCountedWithinItsDays) {
  office.Run(
      "INSERT INTO CompMast (CompCode,CashInHand,CashInBank) VALUES ('AB',1000.50,-20);"
      "INSERT INTO CompMast (CompCode) VALUES ('EMPTY')");
  Loan("L1", "AB", "100");
  Loan("L2", "HQ", "0");
  const char* const book[] = {
      "'AB','2024-01-31','Cash In',10",      "'AB','2024-01-31','Bank Out',4",
      "'AB','2024-01-31','Cash to Bank',99", "'AB','2024-01-30','Cash Out',7",
      "'AB','2024-01-24','Bank In',2.25",    "'AB','2024-01-23','Cash In',1000",
      "'AB','2024-02-01','Cash In',1000"};
  for (const char* row : book) {
    office.Run(
        fmt::format("INSERT INTO CashBook (CompCode,TranDate,TranType,TranAmt) VALUES ({})", row));
  }
  const char* const cheques[] = {
      "'L1','2024-01-31',5,'','NEW'",   "'L1','2024-02-29',6,null,'NEW'",
      "'L1','2024-03-01',50,'','NEW'",  "'L1','2024-01-30',50,'','NEW'",
      "'L1','2024-02-01',50,'P','NEW'", "'L1','2024-02-01',50,'','BACK'"};
  for (const char* row : cheques) {
    office.Run(
        fmt::format("INSERT INTO ChqMast (SeqNo,ChqNo,LoanID,ChqDate,ChqAmt,PayID,ChqStatus) "
                    "SELECT {0},{0},{1}",
                    ++rows, row));
  }
  for (const char* due : {"31-01-2024", "29-02-2024", "30-01-2024", "01-03-2024"})
    Row("L1", due, "40");
  Row("L2", "31-01-2024");
  const CashPosition all{"AB", M("1000.50"), M("-20"), M("6"), M("-4.75"), M("11"), M("120")};
  EXPECT_THAT(ReadCashPositions(office.session, {2024, 1, 31}), ElementsAre(all));
  EXPECT_THAT(ReadCashPositions(office.session, {2024, 1, 31}, {false, false}),
              ElementsAre(CashPosition{"AB", all.cash, all.bank, all.today, all.week, {}, {}}));
  office.session.CurrentLevel = 1;
  EXPECT_THAT(ReadCashPositions(office.session, {2024, 1, 31}), IsEmpty());
}

TEST_F(HomeFiguresTest, AFigureThatOpensNothingForThePersonIsNeitherShownNorRead) {
  main.menu().Find("EditPaymentMnu")->visible = false;
  home.SignedIn();
  ReadAll();
  EXPECT_TRUE(home.DueDG.visible());
  EXPECT_FALSE(home.CollectDG.visible());
  EXPECT_EQ(home.CollectDG.RowCount(), 0);
  EXPECT_FALSE(Sent("PaymentMast"));
  EXPECT_TRUE(Sent("DrawDownMast"));
  EXPECT_EQ(home.AgeDG.Cell(0, 2), "100.00");
}

TEST_F(HomeFiguresTest, ALoanIsOpenedByThoseWhoMayEditLoans) {
  std::string opened;
  home.open_loan = [&](const std::string& loan) { opened = "loan " + loan; };
  home.choose = [&](std::string_view entry) { opened = entry; };
  home.SignedIn();
  ReadAll();
  home.OverdueDG.Open(0, 0);
  EXPECT_EQ(opened, "loan L1");
  // Who may only follow up is led there.
  main.menu().Find("EditLoanMnu")->visible = false;
  home.OverdueDG.Open(0, 0);
  EXPECT_EQ(opened, "FolloUpMnu");
  opened.clear();
  main.menu().Find("FolloUpMnu")->visible = false;
  home.OverdueDG.Open(0, 0);
  EXPECT_EQ(opened, "");
}

TEST_F(HomeFiguresTest, AFigureOpensTheDaysThatItCounts) {
  for (const char* due : {"31-01-2024", "06-02-2024", "07-02-2024", "01-01-2024", "31-12-2023",
                          "02-12-2023", "01-12-2023", "02-11-2023", "01-11-2023"}) {
    Row("L1", due);
  }
  DayRange days;
  home.choose = [&](std::string_view) { days = office.session.HandOverDays; };
  home.SignedIn();
  ReadAll();
  for (Grid* grid : {&home.DueDG, &home.AgeDG}) {
    for (int row = 0; row < grid->RowCount(); ++row) {
      grid->Open(row, 0);
      const std::string from = days.from.empty() ? "" : " AND DueDate>=" + SqlDate(days.from);
      const std::string sum = ScalarQuery(
          office.session.Main(),
          "SELECT sum(PayableAmt) FROM SchMast WHERE DueDate<=" + SqlDate(days.to) + from);
      EXPECT_EQ(M(grid->Cell(row, 2).c_str()), M(sum.c_str())) << grid->Cell(row, 0);
    }
  }
  EXPECT_TRUE(office.session.HandOverDays.empty());
}

TEST_F(HomeFiguresTest, AReturnReadsAgainAndWaitsWhereThatTakesLong) {
  home.SignedIn();
  ReadAll();
  office.Run("UPDATE SchMast SET Payment=40");
  main.ChooseMenu("EditPaymentMnu");
  EXPECT_EQ(waits.back(), HomeFigures::When::soon);
  ReadAll();
  EXPECT_EQ(home.AgeDG.Cell(0, 2), "60.00");
  EXPECT_EQ(main.LS1.Cell(0, 4), "60.00");
  home.patience = 0;
  main.ChooseMenu("EditPaymentMnu");
  EXPECT_EQ(waits.back(), HomeFigures::When::in_a_while);
  // The second return takes the place of the first.
  main.ChooseMenu("EditPaymentMnu");
  sent.clear();
  parts[0]();
  EXPECT_THAT(sent, IsEmpty());
  home.RefreshCmd.Click();
  EXPECT_EQ(waits.back(), HomeFigures::When::soon);
}

TEST_F(HomeFiguresTest, APartThatComesLateDoesNotReachTheNextPerson) {
  home.SignedIn();
  ASSERT_EQ(parts.size(), 1U);
  parts[0]();
  ASSERT_EQ(parts.size(), 2U);
  home.SignedOut();
  sent.clear();
  parts[1]();
  EXPECT_EQ(parts.size(), 2U);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_EQ(home.AgeDG.RowCount(), 0);
  home.SignedIn();
  ReadAll();
  EXPECT_TRUE(home.ready());
  EXPECT_THAT(home.OverdueDG.Row(0), ElementsAre("L1", "Ah Beng", "1", "100.00"));
}

TEST_F(HomeFiguresTest, AReadingThatFailsIsSaidOnThePageAndNowhereElse) {
  home.SignedIn();
  ReadAll();
  EXPECT_EQ(home.FiguresTime.Text(), "Figures as of 31-01-2024 14:05");
  home.Returned();
  parts[0]();
  parts.erase(parts.begin());
  away = true;
  ReadAll();
  EXPECT_TRUE(home.failed());
  EXPECT_EQ(home.FiguresTime.Text(), "The figures cannot be read now.");
  EXPECT_EQ(home.RefreshCmd.caption().english, "Try again");
  EXPECT_EQ(home.DueDG.RowCount() + home.CollectDG.RowCount() + home.OverdueDG.RowCount(), 0);
  EXPECT_FALSE(home.Empty());
  EXPECT_THAT(office.desk.messages, IsEmpty());
  away = false;
  home.RefreshCmd.Click();
  ReadAll();
  EXPECT_EQ(home.FiguresTime.Text(), "Figures as of 31-01-2024 14:05");
  EXPECT_EQ(home.RefreshCmd.caption().english, "Refresh");
  EXPECT_EQ(home.AgeDG.Cell(0, 2), "100.00");
}

TEST_F(HomeFiguresTest, AnotherDayBeginsWithEmptyTables) {
  home.SignedIn();
  ReadAll();
  office.session.clock.Set({2024, 2, 1, 0, 1, 0});
  home.Returned();
  EXPECT_TRUE(home.Known(home.CollectDG));
  const auto first = std::move(parts.front());
  parts.erase(parts.begin());
  first();
  EXPECT_EQ(home.CollectDG.RowCount(), 0) << "yesterday's months stand under today's";
  EXPECT_FALSE(home.Known(home.OverdueDG));
  ReadAll();
  EXPECT_EQ(home.CollectDG.Cell(11, 0), "Feb 2024");
}

// What took 3.6 seconds to read is good for three minutes.
class SharedFiguresTest : public HomeFiguresTest {
 protected:
  SharedFiguresTest() {
    home.worth_sharing = 0;
    home.SignedIn();
    ReadAll();
    office.Run("UPDATE FiguresMast SET Cost=3600; UPDATE SchMast SET Payment=40");
  }
  // What the page shows of the arrears, and since when.
  std::string Shown() {
    return (home.AgeDG.RowCount() == 0 ? "" : home.AgeDG.Cell(0, 2)) + " " +
           home.FiguresTime.Text().substr(std::min(home.FiguresTime.Text().size(), 25UL));
  }
  void At(int hour, int minute, int second) {
    office.session.clock.Set({2024, 1, 31, hour, minute, second});
  }
};

TEST_F(SharedFiguresTest, AreThoseOfAnotherDesktopWhileTheyAreFresh) {
  struct Case {
    const char* what;
    std::function<void()> before;
    const char* shown;
  };
  const Case cases[] = {
      {"at once", [] {}, "100.00 14:05"},
      {"to the end", [&] { At(14, 8, 0); }, "100.00 14:05"},
      {"grown old", [&] { At(14, 8, 1); }, "60.00 14:08"},
      {"a clock set back", [&] { At(14, 4, 59); }, "60.00 14:04"},
      {"spoiled", [&] { office.Run("UPDATE FiguresMast SET Figures=Figures+'1'"); }, "60.00 14:05"},
      {"cut", [&] { office.Run("UPDATE FiguresMast SET Figures='1'"); }, "60.00 14:05"},
      {"asked for", [] {}, "60.00 14:05"},
      {"other rights", [&] { main.menu().Find("EditPaymentMnu")->visible = false; }, "60.00 14:05"},
      {"other companies", [&] { office.session.CurrentLevel = 2; }, "60.00 14:05"},
  };
  const std::string kept = ScalarQuery(office.session.Main(), "SELECT Figures FROM FiguresMast");
  const std::string key = ScalarQuery(office.session.Main(), "SELECT ViewKey FROM FiguresMast");
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    office.session.CurrentLevel = 4;
    main.menu().Find("EditPaymentMnu")->visible = true;
    At(14, 5, 0);
    office.Run(fmt::format(
        "DELETE FROM FiguresMast; INSERT INTO FiguresMast (ViewKey,ReadAt,Cost,Figures) "
        "VALUES ({},'2024-01-31 14:05:00',3600,{})",
        QuoteStr(key), QuoteStr(kept)));
    home.SignedOut();
    one.before();
    home.SignedIn();
    if (SameText(one.what, "asked for")) home.Refresh();
    ReadAll();
    EXPECT_EQ(Shown(), one.shown);
    EXPECT_EQ(home.OverdueDG.Cell(0, 1), "Ah Beng");
  }
}

TEST_F(SharedFiguresTest, AreWaitedForWhileAnotherDesktopReadsThem) {
  At(14, 10, 0);
  home.Returned();
  ASSERT_EQ(parts.size(), 1U);
  parts[0]();  // it has begun, and shall not come to its end
  parts.clear();
  home.SignedOut();
  At(14, 10, 30);
  home.SignedIn();
  parts[0]();
  EXPECT_EQ(waits.back(), HomeFigures::When::in_a_while);
  EXPECT_EQ(Shown(), "100.00 14:05") << "old ones stand until the new ones are there";
  At(14, 10, 31);
  parts.erase(parts.begin());
  ReadAll();
  EXPECT_EQ(Shown(), "60.00 14:10") << "the other desktop has died";
}

TEST_F(SharedFiguresTest, AreTakenAwayOnceTheyAreCheapAndNeverStandInTheWay) {
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("UPDATE FiguresMast SET ReadAt")) throw SqlError(1105, "full");
  });
  home.Refresh();
  ReadAll();
  EXPECT_EQ(Shown(), "60.00 14:05");
  home.worth_sharing = 1e9;
  home.Refresh();
  ReadAll();
  EXPECT_EQ(ScalarQuery(office.session.Main(), "SELECT count(*) FROM FiguresMast"), "0");
}

}  // namespace
}  // namespace kaunter
