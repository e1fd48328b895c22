// The set-up of the accounting link against a bridge that has a chart of accounts.
#include "links/link_acc_setup_frm.h"

#include <gtest/gtest.h>

#include "core/schema_text.h"
#include "links/accounting_link.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

struct AgreeingDesk : SilentDesk {
  bool Ask(std::string_view, std::string_view) override { return true; }
};

class LinkSetup : public ::testing::Test {
 protected:
  LinkSetup() : office(Office::State::patched) {
    office.session.AED =
        OpenSqlite("AED", office.folder.File("aed.db"), true, office.session.clock);
    RunScript(*office.session.AED, SchemaText("accounting"));
    office.session.AED->Execute("INSERT INTO GLMast VALUES ('300-0001','Debtors ~ Ah Beng''s')");
    office.session.AED->Execute("INSERT INTO GLMast VALUES ('500-0000','Interest')");
    office.session.MsgTitle.clear();
  }

  Office office;
  AgreeingDesk desk;
};

TEST_F(LinkSetup, AnEntryOfTheChartIsSplitAtItsFirstMarkAndCompletesTheMapping) {
  LinkAccSetupfrm screen(office.session, desk);
  screen.Load();
  ASSERT_EQ(screen.DG.RowCount(), 21);
  EXPECT_FALSE(LinkAccSetupDone(office.session.Main(), {"HP", "PD"}));
  EXPECT_FALSE(screen.DG.Edit(0, 3, "300-0001")) << "only entries of the chart";
  for (int row = 0; row < screen.DG.RowCount(); ++row) {
    ASSERT_TRUE(screen.DG.Edit(row, 3, "300-0001~Debtors ~ Ah Beng's"));
  }
  EXPECT_EQ(screen.DG.Cell(0, 3), "300-0001");
  screen.SaveCmd.Click();
  EXPECT_EQ(LinkAccount(office.session.Main(), "HP"), "300-0001");
  EXPECT_EQ(office.Scalar("SELECT LinkAccDesc FROM LinkAccMast WHERE LinkID='HP'"),
            "Debtors ~ Ah Beng's");
  EXPECT_TRUE(LinkAccSetupDone(office.session.Main(), {"HP", "PD"}));
}

TEST_F(LinkSetup, AFailingStatementKeepsTheOldMappingAndWhatWasChosen) {
  LinkAccSetupfrm screen(office.session, desk);
  screen.Load();
  ASSERT_TRUE(screen.DG.Edit(4, 3, "500-0000~Interest"));
  int seen = 0;
  office.session.Main().SetFaultHook([&](std::string_view sql) {
    if (sql.find("INSERT INTO LinkAccMast") != std::string_view::npos && ++seen > 0) {
      throw SqlError(1105, "the disk is full");
    }
  });
  screen.SaveCmd.Click();
  office.session.Main().SetFaultHook({});
  EXPECT_GT(seen, 0);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LinkAccMast"), "21");
  EXPECT_EQ(office.Scalar("SELECT LinkAccCode FROM LinkAccMast WHERE SeqNo=5"), "");
  EXPECT_EQ(screen.DG.Cell(4, 3), "500-0000");
  EXPECT_FALSE(office.session.Main().InTransaction());
}

}  // namespace
}  // namespace kaunter
