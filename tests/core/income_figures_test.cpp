// The income that waits for its e-invoice, against the statements that choose the documents and a
// plain count. Today is 31-01-2024.
#include "core/income_figures.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <random>

#include "core/main_frm.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

// The documents that the demo's statement lists for January, without those that have gone out.
Tally Listed(Office& office, const std::string& sid, const std::string& company) {
  std::string sql = office.Scalar("SELECT SQLStatement FROM DataExport WHERE SID=" + QuoteStr(sid));
  for (const auto& [place, value] :
       {std::pair<std::string, std::string>{"@CompCode", QuoteStr(company)},
        {"@FromDate", "'2024-01-01'"},
        {"@ToDate", "'2024-01-31'"}}) {
    for (std::size_t at = sql.find(place); at != sql.npos; at = sql.find(place)) {
      sql.replace(at, place.size(), value);
    }
  }
  Tally tally;
  for (Recordset rows = office.session.Main().Query(sql); !rows.Eof(); rows.MoveNext()) {
    if (!office
             .Scalar("SELECT uuid FROM EInvMast WHERE eInvID=" +
                     QuoteStr(rows.Field("eInvID").ToText()))
             .empty()) {
      continue;
    }
    ++tally.count;
    tally.amount += Money::FromText(rows.Field("InvAmt").ToText());
  }
  return tally;
}

TEST(IncomeFigures, CountWhatTheStatementsListAndHasNotGoneOut) {
  Office office(Office::State::patched);
  std::ifstream file(test::SourceDir() + "/demo/central/einvoice.sql");
  std::string all{std::istreambuf_iterator<char>(file), {}};
  office.Run(all);
  office.session.CurrentLevel = 4;
  EXPECT_TRUE(SubmittingCompanies(office.session).empty());
  office.Run(
      "INSERT INTO CompMast (CompCode) VALUES ('AB'),('NO');"
      "INSERT INTO ECustMast (CustID,TIN) VALUES ('AB','C1'),('HQ','C2'),('C1','IG1'),('C2',''),"
      "('C3',NULL)");
  const auto companies = SubmittingCompanies(office.session);
  EXPECT_EQ(companies, (std::vector<std::string>{"AB", "HQ"}));

  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto one_of = [&random](std::initializer_list<const char*> texts) {
    return std::string(*(texts.begin() + random() % texts.size()));
  };
  std::map<std::string, UnsentIncome> model{{"AB", {"AB", {}, {}}}, {"HQ", {"HQ", {}, {}}}};
  for (int i = 0; i < 600; ++i) {
    const std::string id = fmt::format("D{}", i);
    const std::string company = one_of({"AB", "HQ", "NO"});
    const std::string customer = one_of({"C1", "C2", "C3", "C4"});
    const std::string day = one_of({"2023-12-31", "2024-01-01", "2024-01-31", "2024-02-01"});
    const std::string amount = one_of({"0", "12.34", "5", "0.01", "NULL"});
    const std::string kind = one_of({"'0'", "'1'"});
    std::string number = id;
    bool income = amount != "0" && amount != "NULL";
    office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan) VALUES "
                    "({},{},{},{})",
                    QuoteStr(id), QuoteStr(customer), QuoteStr(company), kind));
    std::string sign;
    Money extra;
    switch (random() % 3) {
      case 0:  // an instalment
        office.Run(
            fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,InterestAmt) VALUES "
                        "(3,{},{},{})",
                        QuoteStr(id), QuoteStr(day), amount));
        income = income && kind == "'0'";
        number += "-I3";
        break;
      case 1:  // a payment, or one that was reversed
        sign = one_of({"", "-"});
        if (amount == "NULL") sign.clear();
        office.Run(fmt::format(
            "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,"
            "PayAmt,IntPay,ChargeAmt,IntAmt,CollectorAmt) VALUES "
            "({0},{0},{1},{2},{3},100,30,9,{4}{5},1)",
            QuoteStr(id), QuoteStr(customer), QuoteStr(company), QuoteStr(day), sign, amount));
        income = amount != "NULL";
        extra = Money::FromText("1");
        break;
      default: {  // a charge, or late interest that is owed
        const std::string type = one_of({"Batch", "Invoice", "Credit Note"});
        if (type == "Credit Note" && amount != "NULL") sign = "-";
        office.Run(
            fmt::format("INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,"
                        "PType,ChargeAmt) VALUES ({0},{0},{1},{2},{3},{4},{5}{6})",
                        QuoteStr(id), QuoteStr(customer), QuoteStr(company), QuoteStr(day),
                        QuoteStr(type), sign, amount));
        income = income && type != "Batch";
      }
    }
    const std::string sent = one_of({"", "", "'U'", "''", "NULL"});
    if (!sent.empty()) {
      office.Run(
          fmt::format("INSERT INTO EInvMast (eInvID,SeqNo,uuid) VALUES ('{0}',1,{1}),"
                      "('{0}',2,{1})",
                      number, sent));
    }
    if (company == "NO" || !day.starts_with("2024-01") || sent == "'U'" || !income) continue;
    Tally& tally = customer == "C1" ? model[company].named : model[company].consolidated;
    ++tally.count;
    tally.amount += Money::FromText(sign + amount) + extra;
  }
  // The statements join the customer.
  office.Run("INSERT INTO CustMast (CustID) VALUES ('C1'),('C2'),('C3'),('C4')");
  for (const UnsentIncome& read : ReadUnsentIncome(office.session, companies, {2024, 1, 31})) {
    EXPECT_EQ(read, model[read.CompCode]) << read.CompCode;
    EXPECT_EQ(read.named, Listed(office, "VKT-Individual", read.CompCode));
    EXPECT_EQ(read.consolidated, Listed(office, "VKT-Consolidated", read.CompCode));
  }
  office.session.CurrentLevel = 1;
  office.session.CurrentCompCode = "AB";
  EXPECT_EQ(SubmittingCompanies(office.session), std::vector<std::string>{"AB"});
}

TEST(IncomeFigures, AreThereWhereACompanySubmitsAndOpenItsMonth) {
  Office office(Office::State::patched);
  office.session.CurrentLevel = 4;
  office.session.settings.EInv = true;
  MenuEntry entry;
  entry.name = "EInvMenu";
  entry.action = MenuAction::screen;
  entry.target = "EInvFrm";
  MainFrm main(office.session, office.desk, {entry}, [](std::string_view) { return true; });
  main.menu().Find("EInvMenu")->visible = true;
  HomeFigures& home = main.home();
  std::string opened;
  home.choose = [&](std::string_view name) {
    const Session& s = office.session;
    opened = fmt::format("{} {}..{} {}", name, s.HandOverDays.from, s.HandOverDays.to,
                         s.HandOverSelection);
  };
  home.SignedIn();
  EXPECT_FALSE(home.EInvDG.visible());
  office.Run(
      "INSERT INTO CompMast (CompCode) VALUES ('AB');"
      "INSERT INTO ECustMast (CustID) VALUES ('AB'),('HQ');"
      "INSERT INTO ChargeMast (ChargeID,CompCode,TrxDate,PType,ChargeAmt) VALUES "
      "('LC-1','AB','2024-01-05','Invoice',7)");
  // It comes with the next reading.
  home.RefreshCmd.Click();
  ASSERT_TRUE(home.EInvDG.visible());
  const std::vector<std::vector<std::string>> rows = {{"AB", "1", "7.00", "0.00", "7.00"},
                                                      {"HQ", "0", "0.00", "0.00", "0.00"},
                                                      {"All", "1", "7.00", "0.00", "7.00"}};
  ASSERT_EQ(home.EInvDG.RowCount(), 3);
  for (int row = 0; row < 3; ++row) EXPECT_EQ(home.EInvDG.Row(row), rows[row]) << row;
  home.EInvDG.Open(0, 3);
  EXPECT_EQ(opened, "EInvMenu 01-01-2024..31-01-2024 AB\nIndividual");
  home.EInvDG.Open(0, 4);
  EXPECT_EQ(opened, "EInvMenu 01-01-2024..31-01-2024 AB\nConsolidated");
  home.EInvDG.Open(2, 0);
  EXPECT_EQ(opened, "EInvMenu 01-01-2024..31-01-2024 \nIndividual");
  EXPECT_TRUE(office.session.HandOverSelection.empty());
}

}  // namespace
}  // namespace kaunter
