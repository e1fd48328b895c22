#include "core/popup_frm.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "core/picker.h"
#include "core/picker_statement.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

// Shows PopupFrm to a person whose acts are given.
class PickingDesk : public SilentDesk {
 public:
  explicit PickingDesk(Session& session) : session_(session) {}
  void Show(std::string_view screen_name) override {
    if (screen_name != "PopupFrm" || broken) return;
    PopupFrm popup(session_, *this);
    if (popup.Guard([&] { popup.Load(); }) && !popup.closed()) act(popup);
    popup.Close();
  }
  std::function<void(PopupFrm&)> act = [](PopupFrm&) {};
  bool broken = false;

 private:
  Session& session_;
};

class PopupFrmTest : public ::testing::Test {
 protected:
  PopupFrmTest() {
    session.CurrentLevel = 4;
    session.MsgTitle = "Edit Customer";
  }

  PopupFrm& Open(std::string_view picker, std::string_view search = {},
                 std::string_view extra = {}) {
    session.PickerName = picker;
    session.CallerTag = search;
    session.PickerExtra = extra;
    popup_ = std::make_unique<PopupFrm>(session, office.desk);
    popup_->Guard([this] { popup_->Load(); });
    return *popup_;
  }

  void AddCustomer(std::string_view id, std::string_view name, std::string_view company = "HQ") {
    office.Run(
        fmt::format("INSERT INTO CustMast (CustID,CustName,CompCode,AreaCode,TotLoan) "
                    "VALUES ({},{},{},'PERSONAL',0)",
                    QuoteStr(id), QuoteStr(name), QuoteStr(company)));
  }
  void AddLoan(std::string_view id, std::string_view customer, std::string_view company,
               std::string_view balance = "100") {
    office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanAmt,LoanBal,LoanTerm,"
                    "InstallmentAmt,TrxDate) VALUES ({},{},{},1234.5,{},'12',983.3,"
                    "'1999-01-31')",
                    QuoteStr(id), QuoteStr(customer), QuoteStr(company), balance));
  }
  // C001 to C250; five customers share a name.
  void AddCustomers() {
    session.MainConn->BeginTrans();
    for (int i = 1; i <= 250; ++i) {
      AddCustomer(fmt::format("C{:03}", i), fmt::format("NAME {:02}", i % 50));
    }
    session.MainConn->CommitTrans();
  }
  // "first-last" key of the page.
  static std::string Span(const PopupFrm& popup) {
    if (popup.DG.RowCount() == 0) return "";
    return popup.DG.Cell(0, 0) + "-" + popup.DG.Cell(popup.DG.RowCount() - 1, 0);
  }
  static std::vector<std::string> Keys(const PopupFrm& popup) {
    std::vector<std::string> keys;
    for (int i = 0; i < popup.DG.RowCount(); ++i) keys.push_back(popup.DG.Cell(i, 0));
    return keys;
  }

  Office office{Office::State::patched};
  Session& session = office.session;

 private:
  std::unique_ptr<PopupFrm> popup_;
};

TEST_F(PopupFrmTest, PagesAreCutOnTheServerAndTheLastOneRepeatsRows) {
  AddCustomers();
  PopupFrm& popup = Open("CustPop");
  const struct {
    Button& press;
    const char* page;
    const char* label;
  } kSteps[] = {{popup.Command3, "C001-C100", "Limit From 100"},
                {popup.Command2, "C101-C200", "Limit From 200"},
                {popup.Command2, "C151-C250", "Limit From 300"},
                {popup.Command2, "C151-C250", "Limit From 400"},
                {popup.Command3, "C151-C250", "Limit From 300"},
                {popup.Command3, "C101-C200", "Limit From 200"},
                {popup.Command3, "C001-C100", "Limit From 100"},
                {popup.Command3, "C001-C100", "Limit From 100"}};
  for (const auto& step : kSteps) {
    step.press.Click();
    EXPECT_EQ(Span(popup), step.page) << step.label;
    EXPECT_EQ(popup.Label8.Text(), step.label);
    EXPECT_EQ(popup.DG.RowCount(), 100);
  }
  popup.DG.Key("PgDn");
  EXPECT_EQ(Span(popup), "C101-C200");
  EXPECT_TRUE(popup.iLimit.Pick("50"));  // begins anew
  EXPECT_EQ(Span(popup), "C001-C050");
  popup.Command2.Click();
  EXPECT_EQ(Span(popup), "C051-C100");
  for (const char* bad : {"many", "0", "-5", "10.5", "99999999999"}) {
    office.desk.messages.clear();
    popup.iLimit.Pick(bad);
    EXPECT_THAT(office.desk.messages, ElementsAre("Edit Customer: Invalid number")) << bad;
    EXPECT_EQ(popup.iLimit.text(), "50");
    EXPECT_EQ(Span(popup), "C051-C100");
  }
  // A new search begins at the first page.
  popup.SearchString.Type("name");
  popup.SearchString.Key("Enter");
  EXPECT_EQ(Span(popup), "C001-C050");
  // Nothing overflows.
  popup.iLimit.Pick("2000000000");
  popup.Command2.Click();
  EXPECT_EQ(popup.DG.RowCount(), 250);
}

TEST_F(PopupFrmTest, EqualSortValuesNeitherLoseNorRepeatARow) {
  AddCustomers();
  PopupFrm& popup = Open("CustPop");
  ASSERT_TRUE(popup.SortOrder.PickIndex(1));
  popup.iLimit.Pick("7");  // cuts through the five of a name
  std::set<std::string> seen;
  std::string last;
  for (int page = 0; page < 35; ++page) {
    for (int row = 0; row < popup.DG.RowCount(); ++row) {
      EXPECT_TRUE(seen.insert(popup.DG.Cell(row, 0)).second) << popup.DG.Cell(row, 0);
      const std::string place = popup.DG.Cell(row, 1) + popup.DG.Cell(row, 0);
      EXPECT_LT(last, place);
      last = place;
    }
    popup.Command2.Click();
  }
  EXPECT_EQ(seen.size(), 245u);
}

TEST_F(PopupFrmTest, PeopleAreFoundByTheirNumbersHoweverTheseAreWritten) {
  AddCustomer("C1", "ZALEHA");
  AddCustomer("C2", "ONG");
  AddLoan("C1-001", "C1", "HQ");
  office.Run(
      "UPDATE CustMast SET CustNIC='830218-10-1977',CustHP1='016-326 9182' WHERE CustID='C1'");
  for (const char* picker : {"CustPop", "ICPop", "LoanPop"}) {
    for (const char* typed : {"8302181019", "830218-10", "0163269182", "016 3269"}) {
      const PopupFrm& popup = Open(picker, typed);
      EXPECT_EQ(Span(popup).substr(0, 2), "C1") << picker << " " << typed;
      EXPECT_EQ(popup.focus(), &popup.DG);
    }
  }
  // What opens the picker instead of a refusal.
  const struct {
    const char* text;
    bool no_code;
  } kTexts[] = {{"zaleha", true}, {"830218101977", true}, {"0163269182", true},
                {"C1", false},    {"C9", false},          {"", false},
                {"1234", false}};
  for (const auto& c : kTexts) EXPECT_EQ(IsNoCode(session, "CustPop", c.text), c.no_code) << c.text;
  office.Run("UPDATE LoanMast SET OldLoanCode='KEDAI'");
  EXPECT_FALSE(IsNoCode(session, "LoanPop", "kedai"));
  EXPECT_FALSE(IsNoCode(session, "CompPop", "zaleha"));
}

TEST_F(PopupFrmTest, CompanyFilterFollowsTheUser) {
  office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('AB','Alpha')");
  office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('C''D','Gamma')");
  AddCustomer("C1", "of AB", "AB");
  AddCustomer("C2", "of C'D", "C'D");
  AddCustomer("C3", "of HQ, loan in AB", "HQ");
  AddCustomer("C4", "of HQ", "HQ");
  AddLoan("L1", "C3", "AB");
  AddLoan("L2", "C3", "AB");
  AddLoan("L3", "C4", "HQ", "0");
  const struct {
    int level;
    const char* home;
    const char* allowed;
    std::vector<std::string> customers;
    std::vector<std::string> loans;
    std::vector<std::string> offered;
  } kUsers[] = {
      {1, "AB", "", {"C1", "C3"}, {"L1", "L2"}, {"", "AB"}},
      {3, "AB", R"("AB","C'D")", {"C1", "C2", "C3"}, {"L1", "L2"}, {"", "AB", "C'D"}},
      {4, "AB", "", {"C1", "C2", "C3", "C4"}, {"L1", "L2", "L3"}, {"", "AB", "C'D", "HQ"}},
  };
  for (const auto& user : kUsers) {
    session.CurrentLevel = user.level;
    session.CurrentCompCode = user.home;
    session.AllowedCompanies = user.allowed;
    EXPECT_EQ(Keys(Open("LoanPop")), user.loans) << user.level;
    PopupFrm& popup = Open("CustPop");
    EXPECT_EQ(Keys(popup), user.customers) << user.level;
    EXPECT_EQ(popup.CompCode.items(), user.offered);
    EXPECT_TRUE(popup.CompCode.Pick("AB"));
    EXPECT_THAT(Keys(popup), ElementsAre("C1")) << user.level;
    EXPECT_TRUE(popup.CompCode.Pick(""));
    EXPECT_EQ(Keys(popup), user.customers);
  }
  PopupFrm& loans = Open("LoanPop");
  loans.HideLoanChk.Tick(true);
  EXPECT_THAT(Keys(loans), ElementsAre("L1", "L2"));
}

TEST_F(PopupFrmTest, TheChosenKeyComesBackAndACancelledPickerLeavesNothing) {
  AddCustomer("C1", "Tan");
  AddCustomer("C2", "Lim");
  PickingDesk desk(session);
  const struct {
    const char* how;
    std::function<void(PopupFrm&)> act;
    const char* chosen;
  } kWays[] = {
      {"double click", [](PopupFrm& p) { p.DG.Open(1, 2); }, "C2"},
      {"Enter", [](PopupFrm& p) { p.DG.Key("Enter"); }, "C1"},
      {"SaveCmd", [](PopupFrm& p) { p.DG.Select(1), p.SaveCmd.Click(); }, "C2"},
      {"search, then Enter",
       [](PopupFrm& p) {
         p.SearchString.Type("lim");
         p.SearchString.Key("Enter");
         p.focus()->Key("Enter");
       },
       "C2"},
      {"Command1", [](PopupFrm& p) { p.Command1.Click(); }, ""},
      {"the window's cross", [](PopupFrm& p) { p.TryClose(); }, ""},
      {"nothing found",
       [](PopupFrm& p) {
         p.SearchString.Type("x"), p.SearchCmd.Click(), p.SaveCmd.Click(), p.DG.Key("Enter");
       },
       ""},
  };
  for (const auto& way : kWays) {
    desk.act = way.act;
    EXPECT_EQ(Pick(session, desk, "CustPop", "C"), way.chosen) << way.how;
    EXPECT_EQ(session.CallerTag + session.PickerName + session.PickerExtra, "") << way.how;
  }
  EXPECT_THAT(desk.messages, ElementsAre("Edit Customer: No record(s) found"));
  desk.broken = true;
  EXPECT_EQ(Pick(session, desk, "CustPop", "typed before"), "");
}

TEST_F(PopupFrmTest, AFailureEndsThePickerWithItsError) {
  EXPECT_TRUE(Open("NoPop", "C1").closed());
  EXPECT_EQ(session.CallerTag, "");
  session.MainConn->SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("SELECT *")) throw SqlError(1222, "Lock request time out");
  });
  EXPECT_TRUE(Open("CustPop").closed());
  session.MainConn->SetFaultHook(nullptr);
  EXPECT_TRUE(Open("LinkDB").closed());
  EXPECT_THAT(office.desk.messages,
              ElementsAre("Edit Customer: There is no search picker named \"NoPop\"",
                          "Edit Customer: Lock request time out",
                          "Edit Customer: Cannot open LinkDB: the setting LinkDB is empty"));
  // A later page that fails leaves the one that is shown.
  AddCustomers();
  PopupFrm& popup = Open("CustPop");
  session.MainConn->SetFaultHook([](std::string_view) { throw SqlError(1222, "Lock"); });
  EXPECT_FALSE(popup.Guard([&] { popup.Command2.Click(); }));
  session.MainConn->SetFaultHook(nullptr);
  EXPECT_EQ(Span(popup) + popup.Label8.Text(), "C001-C100Limit From 100");
  popup.Command2.Click();
  EXPECT_EQ(Span(popup), "C101-C200");
}

TEST_F(PopupFrmTest, ShowsTitleMoneyAndDates) {
  AddCustomer("C1", "Tan");
  AddLoan("L1", "C1", "HQ");
  PopupFrm& popup = Open("LoanPop");
  EXPECT_EQ(popup.title().english, "Loan Popup - Edit Customer");
  const std::map<std::string, std::string> kCells = {{"TrxDate", "31-01-1999"},
                                                     {"LoanAmt", "1,234.50"},
                                                     {"LoanTerm", "983.30 X 12"},
                                                     {"LoanType", "K"},
                                                     {"Drawdown", "0.00"}};
  for (const auto& [column, text] : kCells) {
    EXPECT_EQ(popup.DG.Cell(0, popup.DG.ColumnIndex(column)), text) << column;
  }
  // Only what a picker offers is there to be seen.
  EXPECT_TRUE(popup.LoanTypeID.visible() && popup.HideLoanChk.visible());
  EXPECT_FALSE(popup.AreaCode.visible() || popup.CollectInfoID.visible());
  PopupFrm& kutu = Open("KutuPop");
  EXPECT_FALSE(kutu.Command2.visible() || kutu.SaveCmd.enabled());
  session.ChineseFlag = true;
  Open("KutuTransPop");
  EXPECT_THAT(office.desk.messages,
              ElementsAre("Edit Customer: No record(s) found", "Edit Customer: 资料找不到"));
}

TEST_F(PopupFrmTest, ExtraNarrowsInstalmentsAndApplications) {
  for (int i = 1; i <= 12; ++i) {
    office.Run(fmt::format("INSERT INTO SchMast (SchID,LoanID) VALUES ({},'L''1')", i));
  }
  office.Run("INSERT INTO SchMast (SchID,LoanID) VALUES (1,'L2')");
  const auto instalments = Keys(Open("SchPop", "", "L'1"));
  EXPECT_EQ(instalments.size(), 12u);
  EXPECT_EQ(instalments.back(), "12");  // by number
  const char* kApplications[] = {"'A1','Approved','Approved',''", "'A2','Approved','',''",
                                 "'A3','Approved','Approved','L1'",
                                 "'A4*','Approved','Approved',''"};
  for (const char* values : kApplications) {
    office.Run(
        fmt::format("INSERT INTO AppMast (AppID,AppStatus,AppStatus2,LoanID) VALUES ({})", values));
  }
  EXPECT_THAT(Keys(Open("AppPop")), ElementsAre("A1", "A2", "A3"));
  EXPECT_THAT(Keys(Open("AppPop", "", "LOAN")), ElementsAre("A1"));
  // The loan screen sees whose they are, its customer's first: the own ones and those with a part.
  for (const char* values : {"'A5','C''1'", "'A6','C2'", "'A7','C2'"}) {
    office.Run(
        fmt::format("INSERT INTO AppMast (AppID,CustID,AppStatus,AppStatus2,LoanID) VALUES "
                    "({},'Approved','Approved','')",
                    values));
  }
  office.Run(
      "INSERT INTO AppMastLink (AppID,CustID) VALUES ('A7','C''1'); "
      "INSERT INTO CustMast (CustID,CustName) VALUES ('C''1','Tan')");
  PopupFrm& own_first = Open("AppPop", "", "LOAN C'1");
  EXPECT_THAT(Keys(own_first), ElementsAre("A5", "A7", "A1", "A6"));
  EXPECT_EQ(own_first.DG.Cell(0, own_first.DG.ColumnIndex("CustName")), "Tan");
  EXPECT_EQ(own_first.DG.columns().back().weight, 0);
}

TEST_F(PopupFrmTest, LinkedCustomersComeFromTheOtherDatabase) {
  Office other(Office::State::base);
  for (const char* id : {"X1", "X2"}) {
    other.Run(
        fmt::format("INSERT INTO CustMast (CustID,CustName,TotLoanBal) VALUES ('{}','Lee',5)", id));
  }
  other.Run("INSERT INTO LoanMast (LoanID,CustID) VALUES ('L1','X2')");
  session.data_sources.Add("Branch", {DataSource::Kind::kEmbedded, other.folder.File("office.db")});
  session.LinkDBString = "Provider=SQLOLEDB.1;Data Source=Branch;Initial Catalog=Branch";
  PopupFrm& popup = Open("LinkDB");
  EXPECT_THAT(Keys(popup), ElementsAre("X1", "X2"));
  EXPECT_EQ(popup.DG.Cell(0, popup.DG.ColumnIndex("AA")), "NO LOAN");
  EXPECT_EQ(popup.DG.Cell(1, popup.DG.ColumnIndex("AA")), "OWING");
}

// Each picker with everything that it offers, for every kind of user, on a real database.
TEST_F(PopupFrmTest, EveryStatementRuns) {
  for (const Picker& picker : AllPickers()) {
    if (picker.columns.empty()) continue;
    for (int level : {1, 4}) {
      for (const char* allowed : {"", "\"AB\",\"CD\""}) {
        session.CurrentLevel = level;
        session.AllowedCompanies = allowed;
        PickerFilter filter;
        for (std::size_t sort = 0; sort < std::max<std::size_t>(picker.sorts.size(), 1); ++sort) {
          filter.sort = sort;
          EXPECT_NO_THROW(office.Run(PickerStatement(session, picker, filter, 100, 200)))
              << picker.name;
          filter = {"o'b%", "LOAN", "AB", "P", "G", "T", "C", true, sort};
          EXPECT_NO_THROW(office.Run(PickerStatement(session, picker, filter, 100, 200)))
              << picker.name;
        }
      }
    }
  }
}

// Where searched texts are indexed the keys are found first, table by table: the same rows.
TEST_F(PopupFrmTest, KeysFirstFindsTheSame) {
  AddCustomers();
  for (int i = 1; i <= 40; ++i) {
    AddLoan(fmt::format("L{:03}-{}", i, i % 7), fmt::format("C{:03}", i * 5), i % 2 ? "HQ" : "AB");
  }
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,ReceiptNo,Settlement) SELECT "
      "LoanID+'-001',LoanID,CustID,CompCode,'C01'+LoanID,right(LoanID,1) FROM LoanMast; UPDATE "
      "LoanMast SET OldLoanCode='NAME'+right(LoanID,1); UPDATE CustMast SET "
      "CustNIC='850101-10-0'+right(CustID,3),CustHP1='012 345 0'+right(CustID,3)");
  std::size_t found = 0;
  for (const char* picker : {"CustPop", "LoanPop", "ICPop", "PaymentPop", "SettlePop"}) {
    ASSERT_TRUE(FindPicker(picker).keys_first);
    for (const char* text : {"name 0", "NAME3", "C01", "l00", "0123450", "85010110001", "10-0", "_",
                             "[0-2]5", "o'b", "nobody"}) {
      for (const int level : {1, 4}) {
        session.CurrentLevel = level;
        std::vector<std::string> rows[2];
        for (const bool indexed : {false, true}) {
          const PickerFilter filter{.search = text, .texts_indexed = indexed};
          Recordset page =
              session.Main().Query(PickerStatement(session, FindPicker(picker), filter, 500, 500));
          for (; !page.Eof(); page.MoveNext()) rows[indexed].push_back(page.Field(0).ToText());
        }
        EXPECT_EQ(rows[0], rows[1]) << picker << " " << text;
        found += rows[0].size();
      }
    }
  }
  EXPECT_GT(found, 1200U);
}

// The statements of the business, by their headings.
std::map<std::string, std::string> KnownStatements() {
  std::ifstream file(test::SourceDir() + "/tests/platform/sql/statements/pickers.sql");
  std::map<std::string, std::string> statements;
  std::string title;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("--- ")) {
      title = line.substr(4, line.find(" @") - 4);
    } else if (line != ";;") {
      statements[title] += line;
    }
  }
  return statements;
}

TEST_F(PopupFrmTest, StatementsAreThoseOfTheBusiness) {
  const auto known = KnownStatements();
  const PickerFilter kAll;
  PickerFilter personal;
  personal.area_code = "PERSONAL";
  PickerFilter by_name;
  by_name.sort = 1;
  PickerFilter loans;
  loans.hide_settled = true;
  loans.loan_group_id = "PINJAMAN SEMASA";
  loans.loan_type_id = "MONTH";
  PickerFilter tan_by_customer{.search = "tan", .sort = 2};
  const struct {
    const char* title;
    const char* picker;
    char user;  // 'a'll companies, 'h'ome company, 'l'ist
    PickerFilter filter;
    int limit_from = 100;
  } kCases[] = {
      {"customers, first page", "CustPop", 'a', kAll},
      {"customers, third page of the whole list sorted by name", "CustPop", 'a', by_name, 300},
      {"customers of the home company or with a loan there, by search text",
       "CustPop",
       'h',
       {.search = "o'brien"}},
      {"customers of the allowed companies or with a loan there, one kind of customer", "CustPop",
       'l', personal},
      {"companies", "CompPop", 'h', kAll},
      {"loans of the allowed companies, settled ones left out, one status and repayment", "LoanPop",
       'l', loans},
      {"loans by search text sorted by customer, second page", "LoanPop", 'a', tan_by_customer,
       200},
      {"payments of the allowed companies, one collection type",
       "PaymentPop",
       'l',
       {.collect_info_id = "CASH"}},
      {"settlements of the home company, by search text", "SettlePop", 'h', {.search = "tan"}},
      {"cash book rows entered by hand of the home company, by search text",
       "CashBookPop",
       'h',
       {.search = "tan"}},
      {"approved applications that are no loan yet, by search text",
       "AppPop",
       'a',
       {.search = "AP", .extra = "LOAN"}},
      {"approved applications of the home company for the loan of a customer, the own ones first",
       "AppPop",
       'h',
       {.extra = "LOAN AB0001"}},
      {"customers of the linked database by search text", "LinkDB", 'h', {.search = "tan"}},
      {"e-invoices of the home company, by search text", "eInvPop", 'h', {.search = "tan"}},
      {"self-billed invoices of the allowed companies", "SelfBillPop", 'l', kAll},
  };
  for (const auto& c : kCases) {
    session.CurrentLevel = c.user == 'a' ? 4 : 1;
    session.CurrentCompCode = "AB";
    session.AllowedCompanies = c.user == 'l' ? R"("AB","CD")" : "";
    ASSERT_TRUE(known.contains(c.title)) << c.title;
    EXPECT_EQ(Lower(PickerStatement(session, FindPicker(c.picker), c.filter, 100, c.limit_from)),
              Lower(known.at(c.title)))
        << c.title;
  }
}

}  // namespace
}  // namespace kaunter
