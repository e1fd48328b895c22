// What a failure leaves, and what two computers do to each other.
#include <gmock/gmock.h>

#include "core/values.h"
#include "tests/reporting/staged_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

struct Report {
  const char* file;
  std::function<bool(Session&, Desk&, const StagedRun&)> stage;
  const char* failure;
  const char* log;  // between the title and the server's words
};

const Report kReports[] = {
    {"DailyCollection.rpt", StageDailyCollection, "an error occur during process",
     " - error Rollback 1105 - "},
    {"RekodTrans.rpt", StageRekodTrans, "an error occur during process",
     " - error Rollback 1105 - "},
    {"StatementList.rpt", StageStatement, "an error occur during process statement of account",
     " - error Rollback 1105 - "},
    {"SummaryBS.rpt",
     [](Session& session, Desk& desk, const StagedRun& run) {
       SummaryHead head;
       return StageSummary(session, desk, run, head);
     },
     "an error occur during process Summary P&L", " - error Rollback 1105 - "},
    {"AccountReport.rpt", StageAccountReport, "an error occur during saving expenses",
     " - error Rollback - "},
};

StagedRun JanuaryOf(const Report& report) {
  StagedRun run = RunOf(report.file, "01-01-2024", "31-01-2024");
  run.filters = {Companies({"HQ"})};
  return run;
}

struct BusyDesk : SilentDesk {
  void Hourglass(bool on) override { busy += on ? 1 : -1; }
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    EXPECT_EQ(busy, 0) << "a message under the wait cursor";
    SilentDesk::Message(kind, title, text);
  }
  int busy = 0;
};

// Movements before the period and in it, of every kind.
struct MovingOffice : StagedOffice {
  MovingOffice() {
    AddLoan("L0", "2023-11-01", "1000", "60");
    AddLoan("L1", "2024-01-02", "500", "30");
    for (const char* loan : {"L0", "L1"}) {
      const std::string id = loan;
      AddDrawdown("D" + id, id, id == "L0" ? "2023-11-01" : "2024-01-02", "500");
      AddScheduleRow(id, 1, "2024-01-20", "500", "30");
    }
    for (const char* date : {"2023-12-05", "2024-01-05"}) {
      const std::string day = date;
      AddPayment("P" + day, "L0", day, "PayAmt=50,CapPay=40,DiscAmt=1");
      AddCharge("V" + day, "L0", day, "Invoice", "5", "stamp");
      AddCharge("B" + day, "L0", day, "Batch", "2");
      AddExpense(day, "0", "9", "Rental");
    }
  }
};

bool FailAt(StagedOffice& o, int at, const std::function<void()>& act) {
  return o.office.FailAt(at, Office::Failure::passes, act);
}

// Whatever statement fails, the rows of the last good run stand as they were, no transaction is
// open, and it is told and logged; a run afterwards is whole.
TEST(StagedFaultsTest, AFailureAtAnyStatementLeavesNoHalfReport) {
  for (const Report& report : kReports) {
    SCOPED_TRACE(report.file);
    MovingOffice o;
    BusyDesk desk;
    const StagedRun run = JanuaryOf(report);
    ASSERT_TRUE(report.stage(o.session(), desk, run));
    const std::string good = o.Scratch();
    o.AddLoan("L2", "2024-01-07", "70", "7");  // a further run would write other rows
    o.AddDrawdown("D2", "L2", "2024-01-07", "70");
    desk.messages.clear();
    int at = 1;
    for (bool stored = true; at < 100; ++at) {
      if (!FailAt(o, at, [&] { stored = report.stage(o.session(), desk, run); })) break;
      EXPECT_FALSE(stored) << at;
      EXPECT_EQ(o.Scratch(), good) << at;
      EXPECT_FALSE(o.main().InTransaction()) << at;
      EXPECT_EQ(desk.busy, 0);
      ASSERT_THAT(desk.messages, ElementsAre(std::string("Cash Book Report: ") + report.failure +
                                             "\nthe disk is full\nNothing of it was kept. Mend "
                                             "the cause and do it again."));
      desk.messages.clear();
      ASSERT_THAT(o.office.Log(), SizeIs(at));
      EXPECT_EQ(o.office.Log().back(),
                std::string("[31-01-2024 02:05:09 PM] [AMY] Cash Book Report") + report.log +
                    "the disk is full");
    }
    EXPECT_GE(at, 5) << "statements, the transaction's own among them";
    const std::string again = o.Scratch();
    EXPECT_NE(again, good);
    ASSERT_TRUE(report.stage(o.session(), desk, run));
    EXPECT_EQ(o.Scratch(), again);
  }
}

TEST(StagedFaultsTest, ADateThatIsNoneIsAFailureAndNoStatement) {
  for (const Report& report : kReports) {
    for (const char* date : {"31-02-2024", "2024-01-31", "1' OR 1=1 --"}) {
      MovingOffice o;
      StagedRun run = JanuaryOf(report);
      run.date_to = date;
      EXPECT_FALSE(report.stage(o.session(), o.desk, run)) << report.file << " " << date;
      EXPECT_THAT(o.desk.messages, ElementsAre(std::string("Cash Book Report: ") + report.failure));
      EXPECT_THAT(o.Rows(run, "recordid"), IsEmpty());
    }
  }
}

// A log that cannot be written hides neither the failure nor its message.
TEST(StagedFaultsTest, WithoutALog) {
  MovingOffice o;
  std::filesystem::remove_all(o.office.folder.File("logs"));
  for (const Report& report : kReports) {
    bool stored = true;
    FailAt(o, 3, [&] { stored = report.stage(o.session(), o.desk, JanuaryOf(report)); });
    EXPECT_FALSE(stored);
  }
  EXPECT_THAT(o.desk.messages, SizeIs(std::size(kReports)));
}

// Two computers and a name with a quote: each run replaces its own rows only, dropping drops them.
TEST(StagedFaultsTest, ComputersAndReportsKeepApart) {
  for (const Report& report : kReports) {
    SCOPED_TRACE(report.file);
    MovingOffice o;
    const StagedRun first = JanuaryOf(report);
    StagedRun second = JanuaryOf(report);
    second.pcname = "Ali's 电脑";
    ASSERT_TRUE(report.stage(o.session(), o.desk, first));
    const auto rows = o.Rows(first, "recordid,s1,s4,s20,c1,c2,c3,c4,c5,d1");
    ASSERT_FALSE(rows.empty());
    o.AddLoan("L2", "2024-01-07", "70", "7");
    o.AddDrawdown("D2", "L2", "2024-01-07", "70");
    ASSERT_TRUE(report.stage(o.session(), o.desk, second));
    EXPECT_EQ(o.Rows(first, "recordid,s1,s4,s20,c1,c2,c3,c4,c5,d1"), rows);
    EXPECT_GT(o.Rows(second, "recordid").size(), rows.size());

    // The same computer may hold the rows of another report at the same time.
    StagedRun other = second;
    other.report_name = "Another's.rpt";
    ASSERT_TRUE(report.stage(o.session(), o.desk, other));
    DropStagedRows(o.main(), second.pcname, second.report_name);
    EXPECT_THAT(o.Rows(second, "recordid"), IsEmpty());
    EXPECT_FALSE(o.Rows(other, "recordid").empty());
    EXPECT_EQ(o.Rows(first, "recordid,s1,s4,s20,c1,c2,c3,c4,c5,d1"), rows);
  }
}

// Rekod's sums go over the whole table, on purpose: on another computer its own report takes the
// later cut-off, and a report of another kind, whose rows name no loan in S20, loses its C1.
TEST(StagedFaultsTest, RekodCrossesComputers) {
  MovingOffice o;
  o.AddPayment("P9", "L1", "2024-01-30", "PayAmt=8");
  StagedRun early = RunOf("RekodTrans.rpt", "01-01-2024", "10-01-2024");
  early.filters = {Companies({"HQ"})};
  ASSERT_TRUE(StageRekodTrans(o.session(), o.desk, early));
  StagedRun statement = RunOf("StatementList.rpt", "01-01-2024", "31-01-2024");
  ASSERT_TRUE(StageStatement(o.session(), o.desk, statement));
  EXPECT_THAT(o.Rows(early, "recordid,c1"), ElementsAre("L1 | 0"));
  StagedRun late = early;
  late.pcname = "PC-02";
  late.date_to = "31-01-2024";
  ASSERT_TRUE(StageRekodTrans(o.session(), o.desk, late));
  EXPECT_THAT(o.Rows(early, "recordid,c1"), ElementsAre("L1 | 8"));
  for (const std::string& row : o.Rows(statement, "c1,recordid")) {
    EXPECT_THAT(row, ::testing::StartsWith("0 | "));
  }
}

TEST(StagedFaultsTest, TheFormulaGivesAReportItsOwnRows) {
  EXPECT_EQ(StagedFormula("PC-01", "StatementList.rpt"),
            "{MasterReport.pcname}='PC-01' And {MasterReport.ReportName} = 'StatementList.rpt'");
  EXPECT_EQ(StagedFormula("Ali's", "a.rpt"),
            "{MasterReport.pcname}='Ali''s' And {MasterReport.ReportName} = 'a.rpt'");
}

}  // namespace
}  // namespace kaunter
