// The list that the figure of the main window opens shows what the figure counts.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "core/income_figures.h"
#include "einvoice/einv_frm.h"
#include "tests/einvoice/invoice_office.h"

namespace kaunter {
namespace {

struct YesDesk : SilentDesk {
  bool Ask(std::string_view, std::string_view) override { return true; }
};

TEST(IncomeList, ShowsWhatTheFigureCounts) {
  InvoiceOffice office;
  std::ifstream file(test::SourceDir() + "/demo/central/einvoice.sql");
  office.Run(std::string(std::istreambuf_iterator<char>(file), {}));
  office.Run(
      "INSERT INTO CompMast (CompCode) VALUES ('AB');"
      "INSERT INTO ECustMast (CustID,TIN,CustName) VALUES ('AB','C9','AB'),('C1','IG1','Tan');"
      "INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('C1','AB','Tan'),('C2','AB','Lim');"
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan) VALUES ('L1','C1','AB','0'),"
      "('L2','C2','AB','1'),('L3','C1','HQ','0');"
      "INSERT INTO SchMast (SchID,LoanID,DueDate,InterestAmt) VALUES (1,'L1','2024-01-01',10),"
      "(2,'L1','2024-01-31',11),(3,'L1','2024-02-01',12),(1,'L3','2024-01-09',500);"
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,IntAmt,CollectorAmt) VALUES "
      "('L2-001','L2','C2','AB','2024-01-31 "
      "17:30',20,3),('L2-002','L2','C2','AB','2024-01-16',0,0);"
      "INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,PType,ChargeAmt) VALUES "
      "('CN1','L1','C1','AB','2024-01-20','Credit Note',-4);"
      "INSERT INTO EInvMast (eInvID,SeqNo,uuid) VALUES ('L1-I1',1,'U')");
  const UnsentIncome figure = ReadUnsentIncome(office.session, {"AB"}, {2024, 1, 31}).at(0);
  EXPECT_EQ(figure.named, (Tally{2, Money::FromText("7")}));
  EXPECT_EQ(figure.consolidated, (Tally{1, Money::FromText("23")}));
  for (const auto& [method, counted] :
       {std::pair{"Individual", figure.named}, std::pair{"Consolidated", figure.consolidated}}) {
    YesDesk desk;
    office.session.HandOverDays = {"01-01-2024", "31-01-2024"};
    office.session.HandOverSelection = std::string("AB\n") + method;
    EInvFrm screen(office.session, desk);
    screen.Load();
    EXPECT_EQ(screen.CompCode.text() + screen.DateFrom.text() + screen.DateTo.text(),
              "AB01-01-202431-01-2024");
    screen.Guard([&] { screen.SaveCmd.Click(); });
    Tally listed;
    for (int row = 0; row < screen.vsd.RowCount(); ++row) {
      if (!screen.vsd.Cell(row, einvoice_column::kUuid).empty()) continue;
      ++listed.count;
      listed.amount += Money::FromText(screen.vsd.Cell(row, einvoice_column::kAmount));
    }
    EXPECT_EQ(listed, counted) << method;
  }
  EXPECT_TRUE(office.session.HandOverSelection.empty() && office.session.HandOverDays.empty());
}

}  // namespace
}  // namespace kaunter
