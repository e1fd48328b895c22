// The returns against a second model: a random office as plain lists, in which each loan says by
// itself where it is counted.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "compliance/new_lampiran.h"
#include "compliance/npl_loans.h"
#include "compliance/yearly_return.h"
#include "platform/sql/transaction.h"
#include "reports/run_report.h"
#include "tests/reporting/report_counter.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

constexpr int kLoans = 4'000;

struct PlainLoan {
  std::string id, company, area, race, employer, kind, type;
  std::optional<Money> income = {};
  bool customer = true;
  DateTime date;
  Money amount, interest;
  std::vector<std::pair<DateTime, Money>> paid = {};
};

Money RM(const std::string& text) { return Money::FromText(text); }

class ReturnOffice : public ReportCounter {
 public:
  explicit ReturnOffice(unsigned seed) : random_(seed) {
    Connection& main = office.session.Main();
    office.Run("DELETE FROM LoanMast");
    main.BeginTrans();
    for (int i = 0; i < kLoans; ++i) Add(fmt::format("R{:05}", i));
    main.CommitTrans();
  }

  std::vector<PlainLoan> loans;

 private:
  std::string OneOf(const std::vector<std::string>& texts) {
    return texts[random_() % texts.size()];
  }
  Money Near(const std::vector<std::string>& limits) {
    const auto sen = static_cast<std::int64_t>(random_() % 3) - 1;
    return RM(OneOf(limits)) + Money::FromTenThousandths(sen * 100);
  }

  void Add(const std::string& id) {
    const DateTime days[] = {{2023, 12, 31, 23, 59, 59},
                             {2024, 1, 1},
                             {2024, 2, 28, 12},
                             {2024, 2, 29},
                             {2024, 12, 31},
                             {2024, 12, 31, 0, 0, 1},
                             DateTime{2023, 6, 1}.AddDays(static_cast<int>(random_() % 700))};
    PlainLoan loan{.id = id,
                   .company = OneOf({"HQ", "KL", "JB"}),
                   .area = OneOf({"PERSONAL", "PERSONAL", "personal", "COMPANY", ""}),
                   .race = OneOf({"MELAYU", "MALAY", "CINA", "chinese", "INDIA", "INDIAN", "IBAN",
                                  "", "BUMIPUTERA (SABAH/SARAWAK)", "BUKAN WARGANEGARA"}),
                   .employer = OneOf({"Government", "Private", "Own Business", "Unemployment",
                                      "Student", "Retired", ""}),
                   .kind = OneOf({"Bumi", "Non Bumi", "Foreigner", "C-77"}),
                   .type = OneOf({"Secured", "Unsecured", ""}),
                   .customer = random_() % 20 != 0,
                   .date = days[random_() % std::size(days)],
                   .amount = Near({"1000", "5000", "10000", "50000", "100000", "1000000", "777"}),
                   .interest = Near({"0.01", "120", "0.02"})};
    if (random_() % 10 != 0) loan.income = Near({"0", "500", "1000", "5000", "10000", "-250"});
    const auto text = [](const DateTime& day) { return QuoteStr(day.ToCanonical()); };
    if (loan.customer) {
      office.Run(fmt::format(
          "INSERT INTO CustMast (CustID,CompCode,CustName,AreaCode,CustRace,Employer,OldCode,"
          "CustCompIncome) VALUES ('C{}','HQ','Name','{}','{}','{}','{}',{})",
          id, loan.area, loan.race, loan.employer, loan.kind,
          loan.income ? loan.income->ToText() : "null"));
    }
    office.Run(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanType,LoanAmt,TotLoanInt) VALUES "
        "('{0}','C{0}','{1}',{2},'{3}',{4},{5})",
        id, loan.company, text(loan.date), loan.type, loan.amount.ToText(),
        loan.interest.ToText()));
    for (int i = 0; i < static_cast<int>(random_() % 3); ++i) {
      const DateTime day = days[random_() % std::size(days)];
      loan.paid.emplace_back(day, RM("100.10") + RM("3") - RM("0.50"));
      office.Run(fmt::format(
          "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt,IntAmt,ChargeAmt,DiscAmt) "
          "VALUES ('{0}-{1}','{0}','HQ',{2},100.10,9,3,0.50)",
          id, i, text(day)));
    }
    loans.push_back(std::move(loan));
  }

  std::mt19937 random_;
};

// Made once: it takes a second.
ReturnOffice& LargeOffice() {
  static ReturnOffice office(1);
  return office;
}

// The first limit that the amount does not pass, from 0 on.
int Band(Money amount, const std::vector<std::string>& limits) {
  int band = 0;
  for (const std::string& limit : limits) band += amount > RM(limit) ? 1 : 0;
  return band;
}

struct Tally {
  std::set<std::string> loans;
  Money sum;
};

// Where a loan of the period is counted.
std::vector<std::string> PlacesOf(const PlainLoan& loan, Money size) {
  const auto field = [](int number) { return fmt::format("field{:02}", number); };
  const int by_size = 24 + Band(size, {"1000", "5000", "10000", "50000", "100000", "1000000"});
  if (!loan.customer) return by_size == 24 ? std::vector{field(24)} : std::vector<std::string>{};
  std::vector<std::string> places = {"field01", "IntAmt", "field04", field(by_size)};
  if (!loan.type.empty()) places.push_back(loan.type == "Secured" ? "field02" : "field03");
  if (loan.area == "COMPANY") {
    places.emplace_back("field06");
    const std::map<std::string, int> kinds = {{"Bumi", 31}, {"Non Bumi", 32}, {"Foreigner", 33}};
    if (const auto kind = kinds.find(loan.kind); kind != kinds.end()) {
      places.insert(places.end(), {field(kind->second), field(kind->second + 3)});
    }
  } else if (!loan.area.empty()) {
    places.emplace_back("field05");
    const std::map<std::string, int> employers = {{"Government", 7},
                                                  {"Private", 8},
                                                  {"Own Business", 9},
                                                  {"Unemployment", 10},
                                                  {"Student", 10}};
    if (const auto at = employers.find(loan.employer); at != employers.end()) {
      places.push_back(field(at->second));
    }
    const std::string race = Upper(loan.race);
    const int number = race.starts_with("M")    ? 11
                       : race.starts_with("C")  ? 12
                       : race.starts_with("IN") ? 13
                                                : 14;
    if (race.starts_with("BU")) {
      const std::string item = race.starts_with("BUM") ? "iv" : "vi";
      places.insert(places.end(), {"2B" + item, "2C" + item});
    } else {
      places.insert(places.end(), {field(number), field(number + 4)});
    }
    if (loan.income && *loan.income >= Money()) {
      places.push_back(field(19 + Band(*loan.income, {"500", "1000", "5000", "10000"})));
    }
  }
  return places;
}

std::map<std::string, Tally> Model(const std::vector<PlainLoan>& loans,
                                   const YearlyRequest& asked) {
  std::map<std::string, Tally> tallies;
  const auto within = [&](const DateTime& day) {
    return day >= asked.period.from && day <= asked.period.to;
  };
  for (const PlainLoan& loan : loans) {
    if (std::ranges::count(asked.period.companies, loan.company) == 0) continue;
    const auto add = [&](const std::string& place, Money amount) {
      tallies[place].loans.insert(loan.id);
      tallies[place].sum += amount;
    };
    const Money size = loan.amount + (asked.size_with_interest ? loan.interest : Money());
    const Money amount = loan.amount + (asked.with_interest ? loan.interest : Money());
    for (const auto& [day, paid] : loan.paid) {
      if (!within(day) || !loan.customer) continue;
      add("3A", paid);
      if (loan.date < asked.period.from) add("3B", paid);
    }
    if (!within(loan.date)) continue;
    for (const std::string& place : PlacesOf(loan, size)) {
      add(place, place == "IntAmt" ? loan.interest : amount);
    }
  }
  return tallies;
}

TEST(Returns, EveryYearlyFigureIsThatOfAPlainCountAndOfItsList) {
  ReturnOffice& o = LargeOffice();
  Connection& main = o.office.session.Main();
  const std::vector<YearlyRequest> requests = {
      {{{"HQ"}, {2024, 1, 1}, {2024, 12, 31}}, true, false},
      {{{"HQ", "KL"}, {2024, 1, 1}, {2024, 12, 31}}, false, true},
      {{{"KL", "JB"}, {2024, 2, 29}, {2024, 2, 29}}, true, true},  // the leap day alone
      {{{"HQ"}, {2024, 12, 31}, {2024, 1, 1}}, true, false},       // nothing
  };
  for (const YearlyRequest& asked : requests) {
    auto expected = Model(o.loans, asked);
    std::map<std::string, int> left;  // by name
    std::size_t places = 0;
    for (const ReturnLine& line : CountYearly(main, asked, true, {})) {
      std::set<std::string> listed;
      Money sum;
      for (const ReturnLoan& loan : line.loans(main)) {
        EXPECT_TRUE(listed.insert(loan.LoanID).second) << line.name.english << " " << loan.LoanID;
        sum += loan.amount;
      }
      const std::string of_list = line.is_count ? std::to_string(listed.size()) : ShowMoney(sum);
      EXPECT_EQ(line.figure, of_list) << line.name.english;
      if (line.place.empty()) left[line.name.english] = static_cast<int>(listed.size());
      if (line.place.empty()) continue;
      ++places;
      EXPECT_EQ(listed, expected[line.place].loans) << line.place;
      EXPECT_EQ(sum, expected[line.place].sum) << line.place;
    }
    EXPECT_EQ(places, 43u);
    // Each group with what it leaves over is the whole.
    const auto count = [&](std::initializer_list<const char*> of) {
      std::size_t all = 0;
      for (const char* place : of) all += expected[place].loans.size();
      return static_cast<int>(all);
    };
    const int persons = count({"field05"});
    EXPECT_EQ(count({"field02", "field03"}) + left["Neither secured nor unsecured"],
              count({"field04"}));
    EXPECT_EQ(persons + count({"field06"}) + left["Lent to neither person nor company"],
              count({"field04"}));
    EXPECT_EQ(
        count({"field07", "field08", "field09", "field10"}) + left["Persons: another employer"],
        persons);
    EXPECT_EQ(count({"field11", "field12", "field13", "field14", "2Biv", "2Bvi"}), persons);
    EXPECT_EQ(count({"field19", "field20", "field21", "field22", "field23"}) +
                  left["Monthly income negative or not known"],
              persons);
    EXPECT_EQ(count({"field34", "field35", "field36"}) + left["Companies of no known kind"],
              count({"field06"}));
  }
}

TEST(Returns, TheBookTellsOfEachPlace) {
  std::ifstream file(test::SourceDir() + "/docs/returns.md");
  std::multiset<std::string> told;
  std::multiset<std::string> counted;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("| `")) told.insert(line.substr(3, line.find('`', 3) - 3));
  }
  for (const YearlyFigure& figure : YearlyFigures()) {
    if (!figure.place.empty()) counted.emplace(figure.place);
  }
  EXPECT_EQ(told, counted);
}

// A negative income keeps the band of the loan before it; the first one is in band 1.
TEST(Returns, NewLampiranIsThatOfAPlainWalk) {
  ReturnOffice& o = LargeOffice();
  Connection& main = o.office.session.Main();
  std::vector<PlainLoan> loans = o.loans;
  std::ranges::sort(loans, [](const PlainLoan& a, const PlainLoan& b) {
    return std::tie(a.date, a.id) < std::tie(b.date, b.id);
  });
  for (const auto& [from, to] :
       std::vector<std::pair<DateTime, DateTime>>{{{2023, 11, 15}, {2024, 3, 1}},
                                                  {{2024, 2, 29}, {2024, 2, 29}},
                                                  {{2024, 2, 1}, {2024, 1, 1}}}) {
    std::map<std::string, Tally> expected;
    int band = 1;
    for (const PlainLoan& loan : loans) {
      if (loan.company != "KL" || !loan.customer || loan.date < from || loan.date > to) continue;
      const Money income = loan.income.value_or(Money());
      if (income >= Money()) band = 1 + Band(income, {"500", "1000", "5000", "10000"});
      Tally& tally = expected[fmt::format("{}{:02}-{}", loan.date.year, loan.date.month, band)];
      tally.loans.insert(loan.id);
      tally.sum += loan.amount;
    }
    const ReturnPeriod period{{"KL"}, from, to};
    StageNewLampiran(o.office.session, o.desk, period, "PC", "NewLampiran.rpt");
    std::size_t staged = 0;
    std::size_t lines = 0;
    for (const ReturnLine& line : LampiranLines(main, period)) {
      std::set<std::string> listed;
      Money sum;
      for (const ReturnLoan& loan : line.loans(main)) {
        listed.insert(loan.LoanID);
        sum += loan.amount;
      }
      EXPECT_EQ(listed, expected[line.place].loans) << line.place;
      EXPECT_EQ(sum, expected[line.place].sum) << line.place;
      EXPECT_EQ(line.figure, std::to_string(listed.size()));
      const Recordset rows =
          main.Query(fmt::format("SELECT COUNT(*),SUM(c2),SUM(c1) FROM MasterReport WHERE "
                                 "pcname='PC' AND s3='KL' AND s1 + "
                                 "'-' + s2='{}'",
                                 line.place));
      EXPECT_EQ(rows.Field(0).ToText(), std::to_string(listed.size() + 1)) << line.place;
      EXPECT_EQ(ShowMoney(rows.Field(2)), ShowMoney(sum)) << line.place;
      staged += listed.size() + 1;
      ++lines;
    }
    EXPECT_EQ(lines, from > to ? 0u : from == to ? 5u : 25u);
    EXPECT_EQ(o.office.Scalar("SELECT COUNT(*) FROM MasterReport"), std::to_string(staged));
  }
}

// --- the papers

std::vector<std::string> PaperOf(ReportJob job, const std::string& companies = {}) {
  job.Companies = companies;
  job.ReportFileName = test::SourceDir() + "/reports/" + ReportCounter::FileOf(&job);
  std::vector<std::string> fields;
  const ReportRun run = RunWholeReport(job);
  for (const auto& row : run.rows.rows()) {
    for (const Value& value : row) fields.push_back(value.ToText());
  }
  return fields;
}

TEST(Returns, TheYearlyPaperIsOfItsCompaniesAndOfItsOwnRow) {
  ReportCounter o;
  ReportFrm& frm = o.OpenJanuary("YearlyLoan.rpt");
  frm.IDTo.SetText("a; b");
  const ReportJob* job = o.Print();
  ASSERT_NE(job, nullptr);
  EXPECT_EQ(job->ParameterFields.at(2), "jenisCagaran;a; b;True");
  EXPECT_EQ(job->ParameterFields.at(9), "IntAmt;0.00;True");
  EXPECT_EQ(o.desk.messages.back(), "Paper: Process Complete");
  const std::string row = o.office.Lines("SELECT * FROM YearlyLoanMast", "|");
  EXPECT_TRUE(row.starts_with("HQ|2024|2024-01-01|2024-01-31|3,000.00|1|1|2|0.00|")) << row;
  EXPECT_FALSE(PaperOf(*job).empty());
  EXPECT_FALSE(PaperOf(*job, "'HQ','KL'").empty());
  EXPECT_TRUE(PaperOf(*job, "'KL'").empty());
  o.office.Run("UPDATE YearlyLoanMast SET ToDate='2024-01-30'");  // another PC's, meanwhile
  EXPECT_TRUE(PaperOf(*job).empty());
}

TEST(Returns, AFailureOrAStopLeavesWhatWasThere) {
  ReportCounter o;
  for (const auto& [file, table] : std::vector<std::pair<std::string, std::string>>{
           {"YearlyLoan.rpt", "YearlyLoanMast"}, {"NewLampiran.rpt", "MasterReport"}}) {
    o.OpenJanuary(file);
    ASSERT_NE(o.Print(), nullptr);
    const std::string rows = o.office.Lines("SELECT * FROM " + table, "|");
    o.office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt) VALUES "
                    "('{}','C1','HQ','2024-01-07',5)",
                    table));
    int at = 1;
    while (o.office.FailAt(at, Office::Failure::passes, [&] { o.Print(); })) {
      ++at;
      if (o.desk.printed.size() == 1) continue;  // behind the return itself
      EXPECT_EQ(o.office.Lines("SELECT * FROM " + table, "|"), rows) << at;
    }
    EXPECT_GT(at, 5);
    EXPECT_NE(o.office.Lines("SELECT * FROM " + table, "|"), rows);
  }
  const YearlyRequest asked{{{"HQ"}, {2024, 1, 1}, {2024, 1, 31}}};
  int steps = 0;
  const auto stop = [&](int done, int) { return ++steps, done < 2; };
  EXPECT_TRUE(CountYearly(o.office.session.Main(), asked, false, stop).empty());
  EXPECT_EQ(steps, 3);
  EXPECT_FALSE(o.office.session.Main().InTransaction());
}

TEST(Returns, AStopAmongTheRowsOfNewLampiranLeavesThoseThatWereThere) {
  ReportCounter o;
  o.OpenJanuary("NewLampiran.rpt");
  ASSERT_NE(o.Print(), nullptr);
  const std::string rows = o.office.Lines("SELECT * FROM MasterReport", "|");
  o.office.Run("UPDATE LoanMast SET LoanAmt=9");
  o.desk.stops = true;
  o.office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("DELETE")) std::this_thread::sleep_for(std::chrono::milliseconds(450));
  });
  EXPECT_EQ(o.Print(), nullptr);
  o.office.session.Main().SetFaultHook({});
  EXPECT_EQ(o.desk.messages.back(), "Paper: Stopped: nothing was changed");
  EXPECT_EQ(o.office.Lines("SELECT * FROM MasterReport", "|"), rows);
  EXPECT_FALSE(o.office.session.Main().InTransaction());
}

// A return of a large office takes seconds.
TEST(Returns, TheFiguresAreOfOneMomentAndTheCounterGoesOn) {
  ReportCounter o;
  const auto counter =
      OpenSqlite("Counter", o.office.folder.File("office.db"), false, o.office.session.clock);
  const YearlyRequest asked{{{"HQ"}, {2024, 1, 1}, {2024, 1, 31}}};
  int saved = 0;
  const auto save = [&](int, int) {
    Transaction transaction(*counter);
    counter->Execute(
        fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanType,TrxDate,LoanAmt) VALUES "
                    "('S{}','C1','HQ','Secured','2024-01-07',5)",
                    ++saved));
    transaction.Commit();
    return true;
  };
  const auto figures = [&](const GoOn& go_on) {
    std::map<std::string, std::string> by_place;
    for (const ReturnLine& line : CountYearly(o.office.session.Main(), asked, false, go_on)) {
      by_place[line.place] = line.figure;
    }
    return by_place;
  };
  auto found = figures(save);
  EXPECT_GT(saved, 2);
  // The first was saved before the first figure was read.
  EXPECT_EQ(found["field01"], "3,005.00");
  EXPECT_EQ(found["field02"], "2");
  EXPECT_EQ(found["field04"], "3");
  EXPECT_EQ(found["field24"], "2");
  EXPECT_EQ(figures({})["field04"], std::to_string(2 + saved));
}

TEST(Returns, TheOtherPapersAddUp) {
  ReportCounter o;
  for (const auto& [id, income] : {std::pair(2, 501), {3, 1001}, {4, 5001}, {5, 10001}}) {
    o.office.Run(fmt::format(
        "INSERT INTO CustMast (CustID,CustCompIncome) VALUES ('C{0}',{1});INSERT INTO LoanMast "
        "(LoanID,CustID,CompCode,TrxDate,LoanAmt) VALUES ('B{0}','C{0}','HQ','2024-01-31',{0}0)",
        id, income));
  }
  o.OpenJanuary("NewLampiran.rpt");
  const ReportJob* job = o.Print();
  ASSERT_NE(job, nullptr);
  std::string row;
  for (const std::string& field : PaperOf(*job)) row += field + "|";
  EXPECT_EQ(row, "HQ|Head Office|01-2024|2|3000|1|20|1|30|1|40|1|50|6|3140|");
  EXPECT_TRUE(PaperOf(*job, "'KL'").empty());

  StageReturnLoans(o.office.session.Main(), "PC",
                   {{"L1", DateTime{2024, 1, 5}, "HQ", "Tan's", "it is", RM("5.5")}});
  ReportJob paper;
  paper.ReportFileName = std::string("/") + "ReturnLoans.rpt";
  paper.SelectionFormula = StagedFormula("PC", "ReturnLoans.rpt");
  paper.Connect = &o.office.session.Main();
  EXPECT_EQ(PaperOf(paper),
            (std::vector<std::string>{"1", "HQ", "L1", "2024-01-05", "Tan's", "it is", "5.5"}));

  ReportJob npl;
  npl.ReportFileName = std::string("/") + "NPL Report.rpt";
  npl.Connect = &o.office.session.Main();
  npl.SelectionFormula = "{CompMast.CompCode}='HQ'";
  npl.ParameterFields = {{0, "RptID;;True"}, {1, "20151;7;True"}, {7, "20152;1,234.50;True"}};
  const auto years = PaperOf(npl);
  EXPECT_EQ(std::ranges::count(years, "7") + std::ranges::count(years, "1234.5"), 2);
}

// --- loans that no longer perform

TEST(Returns, OverdueLoansAreJudgedByTheirLastPaymentOrElseByTheirDueDate) {
  ReportCounter o;
  struct Case {
    const char* row;  // balance, group, company, due, last payment
    bool moved;
  };
  const Case cases[] = {{"1,'PINJAMAN SEMASA','HQ','2023-10-31',null", true},
                        {"1,'PINJAMAN SEMASA','HQ','2023-11-01',null", false},
                        {"1,'PINJAMAN SEMASA','HQ','2023-10-31','2023-10-31'", true},
                        {"1,'PINJAMAN SEMASA','HQ','2023-10-31','2023-11-01'", false},
                        {"0,'PINJAMAN SEMASA','HQ','2023-10-31',null", false},
                        {"1,'PINJAMAN SELESAI','HQ','2023-10-31',null", false},
                        {"1,'PINJAMAN SEMASA','KL','2023-10-31',null", false},
                        {"1,'PINJAMAN SEMASA','HQ',null,null", false}};
  std::string expected;
  for (const Case& c : cases) {
    const std::string id = fmt::format("N{}", &c - cases);
    o.office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,LoanBal,LoanGroupID,CompCode,NextDueDate,"
                    "LastPaymentDate) VALUES ('{}',{})",
                    id, c.row));
    if (c.moved) expected += id + " \n";
  }
  EXPECT_EQ(MoveOverdue(o.office.session.Main(), "HQ", {2023, 10, 31}, "X"), 2);
  EXPECT_EQ(o.office.Lines("SELECT LoanID FROM LoanMast WHERE LoanGroupID='X' ORDER BY LoanID"),
            expected);
  // By year, to midnight of the last day.
  o.office.Run(
      "UPDATE LoanMast SET LoanGroupID='DALAM TINDAKAN MAHKAMAH',LoanBal=7.25,TrxDate=CASE LoanID "
      "WHEN 'N0' THEN '2015-01-01' WHEN 'N1' THEN '2014-12-31 23:59:59' WHEN 'N2' THEN "
      "'2020-12-31' "
      "WHEN 'N3' THEN '2020-12-31 00:00:01' ELSE '2019-06-30' END WHERE LoanID LIKE 'N%'");
  const auto years = CountNpl(o.office.session.Main(), "HQ");
  EXPECT_EQ(years[0].loans, 1);
  EXPECT_EQ(years[4].loans, 3);
  EXPECT_EQ(years[4].balance, RM("21.75"));
  EXPECT_EQ(years[5].loans, 1);
  for (const ReturnLine& line : NplLines(o.office.session.Main(), "HQ")) {
    Money sum;
    const auto loans = line.loans(o.office.session.Main());
    for (const ReturnLoan& loan : loans) sum += loan.amount;
    EXPECT_EQ(line.figure, line.is_count ? std::to_string(loans.size()) : ShowMoney(sum));
  }
}

}  // namespace
}  // namespace kaunter
