// The list of what the accounts lack, on paper.
#include <gtest/gtest.h>

#include "core/amounts.h"
#include "core/schema_text.h"
#include "links/link_resend_frm.h"
#include "reports/run_report.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

struct PaperDesk : SilentDesk {
  void Print(const ReportJob& job) override {
    file = std::filesystem::path(job.ReportFileName).filename().string();
    paper = RunWholeReport(job).rows;
  }
  std::string file;
  Recordset paper;
};

TEST(LinkPaper, HoldsEachRowOfTheListForTheOwnCompanies) {
  Office office(Office::State::patched);
  Session& session = office.session;
  session.CurrentLevel = 2;
  session.CurrentCompCode = "HQ";
  session.settings.LinkAcc = "1";
  session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
  RunScript(*session.AED, SchemaText("accounting"));
  office.Run("INSERT INTO CustMast (CustID,CustName,CompCode) VALUES ('C1','O''Neil','HQ')");
  for (const auto& [id, amount, company] :
       TextRows<3>{{"P1", "100.10", "HQ"}, {"P2", "0.20", "HQ"}, {"P3", "50", "KL"}}) {
    office.Run(std::string("INSERT INTO PaymentMast (PayID,PayAmt,DiscAmt,CompCode,CustID,PayDate,"
                           "PaymentStatus) VALUES ('") +
               id + "'," + amount + ",0,'" + company + "','C1','2024-01-12','ACTIVE')");
  }
  PaperDesk desk;
  LinkResendfrm screen(session, desk);
  screen.Load();
  screen.ListCmd.Click();
  std::filesystem::create_symlink(test::SourceDir() + "/reports/LinkResend.rpt",
                                  office.folder.File("LinkResend.rpt"));
  screen.PrintCmd.Click();
  EXPECT_EQ(desk.file, "LinkResend.rpt");
  std::string numbers;
  Money sum;
  for (; !desk.paper.Eof(); desk.paper.MoveNext()) {
    numbers += NullToEmpty(desk.paper.Field("DocNo")) + " ";
    sum += Sen(desk.paper, "Ledger");
  }
  EXPECT_EQ(numbers, "C1 P1 P2 ");  // the customer before his payments
  EXPECT_EQ(sum.ToText(), "100.3");
}

}  // namespace
}  // namespace kaunter
