// The exporter: who may run what, what is put into a statement, and files that another reader takes
// as they were meant.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "compliance/export_csv.h"
#include "compliance/npl_exportfrm.h"
#include "core/schema_text.h"
#include "platform/sql/waiting.h"
#include "screen/cancel_offer.h"
#include "tests/core/office.h"
#include "tests/screen/stopped_bar.h"

namespace kaunter {
namespace {

class Supervisor : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    messages.push_back("?: " + std::string(text));
    return true;
  }
  std::string PickFolder(std::string_view, std::string_view) override { return folder; }
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<StoppedBar>();
  }
  std::string Said() {
    return messages.empty() ? "" : messages.back().substr(messages.back().find(": ") + 2);
  }
  std::string folder;
};

class Exporter : public ::testing::Test {
 protected:
  Exporter() : office(Office::State::patched) {
    office.session.CurrentCompCode = "HQ";
    office.Run(
        "INSERT INTO CompMast (CompCode) VALUES ('AB');"
        "INSERT INTO LoanMast (LoanID,CompCode,TrxDate,LoanAmt) VALUES ('L1','HQ','2024-01-03',"
        "1234.5),('L2','AB','2024-01-04',2);"
        "INSERT INTO DataExport VALUES ('Loans','1','1','SELECT l.LoanID,l.LoanAmt FROM LoanMast "
        "as l WHERE l.TrxDate >= @FromDate AND l.TrxDate <= @todate @gcc','1')");
  }
  std::unique_ptr<NPLExportfrm> Open(int level) {
    office.session.CurrentLevel = level;
    auto screen = std::make_unique<NPLExportfrm>(office.session, desk);
    screen->Load();
    return screen;
  }
  // Runs the statement and gives the last message.
  std::string Run(NPLExportfrm& screen, const std::string& statement) {
    screen.SQLStatement.SetText(statement);
    desk.messages.clear();
    EXPECT_TRUE(screen.Guard([&] { screen.SaveCmd.Click(); }));
    return desk.Said();
  }

  Office office;
  Supervisor desk;
};

TEST_F(Exporter, WhoMayRunWhat) {
  const std::string reads = "Below an administrator a statement only reads";
  const std::string kept = "Please choose a statement that is kept";
  const std::string update = "UPDATE LoanMast SET LoanAmt=9 WHERE LoanID='L2'";
  const struct {
    int level;
    std::string statement;
    std::string said;
    const char* amount;  // of L2 afterwards
  } cases[] = {{1, "SELECT 1", kept, "2"},
               {2, "SELECT LoanID FROM LoanMast", "Process completed", "2"},
               {3, "WITH x AS (SELECT 1 AS a) SELECT a FROM x", "Process completed", "2"},
               {3, update, reads, "2"},
               {3, "SELECT 1; " + update, reads, "2"},
               {3, "SELECT 1 ROLLBACK " + update, reads, "2"},
               {3, "SELECT LoanID INTO x FROM LoanMast", reads, "2"},
               {3, "EXEC sp_who", reads, "2"},
               {3, "SELECT * FROM LoanMast, [usermast]", "Below an administrator the users", "2"},
               {3, "SELECT c.* FROM CompMast AS c", "Below an administrator the users", "2"},
               {3, "SELECT [clientsecret] AS a FROM CompMast", "Below an administrator", "2"},
               {2, "WITH x (a) AS (SELECT * FROM CustMast) SELECT a FROM x", "Below an", "2"},
               {2, "SELECT c.ATMPinNo FROM CustMast AS c", "Below an administrator", "2"},
               {3, "SELECT Value FROM SysteMast", "Below an administrator the users", "2"},
               {3, "SELECT CompDesc, COUNT(*), SUM(2 * 3) FROM CompMast GROUP BY CompDesc",
                "Process completed", "2"},
               {2, "SELECT nothing FROM nowhere", "SQL Statement error", "2"},
               {4, update + "; SELECT nothing FROM nowhere", "SQL Statement error", "2"},
               {4, " ", "SQL Statement required", "2"},
               {4, update, "Process completed", "9"}};
  for (const auto& one : cases) {
    const std::string said = Run(*Open(one.level), one.statement);
    EXPECT_TRUE(said.starts_with(one.said)) << one.level << one.statement << ": " << said;
    EXPECT_EQ(office.Scalar("SELECT LoanAmt FROM LoanMast WHERE LoanID='L2'"), one.amount);
    EXPECT_FALSE(office.session.Main().InTransaction());
  }
  auto clerk = Open(1);
  EXPECT_TRUE(clerk->SQLStatement.locked());
  EXPECT_FALSE(clerk->Command1.enabled() || clerk->Command2.enabled());
  clerk->SQLID.Pick("Loans");
  clerk->DateFrom.SetText("01-01-2024");
  EXPECT_EQ(Run(*clerk, clerk->SQLStatement.text()), "Date is required");
  clerk->DateTo.SetText("31-01-2024");
  EXPECT_EQ(Run(*clerk, clerk->SQLStatement.text()), "Process completed");
  ASSERT_EQ(clerk->DG.RowCount(), 1);  // of the own company
  EXPECT_EQ(clerk->DG.Cell(0, 1), "1,234.50");
  // A supervisor keeps nothing that an administrator would run for him.
  auto screen = Open(2);
  screen->SQLID.SetText("Trap");
  screen->SQLStatement.SetText(update);
  screen->Command1.Click();
  EXPECT_TRUE(desk.Said().starts_with(reads));
}

TEST_F(Exporter, WhatIsPutIntoAStatement) {
  office.Run(
      "INSERT INTO CompMast (CompCode) VALUES ('@ToDate');"
      "INSERT INTO LoanMast (LoanID,CompCode) VALUES ('L3','@ToDate')");
  const struct {
    int level;
    const char* allowed;
    const char* chosen;
    const char* loans;
  } cases[] = {{4, "", "", "L1L2L3"},
               {4, "", "AB", "L2"},
               {4, "", "@ToDate", "L3"},  // a value that looks like a place
               {2, "", "", "L1"},
               {2, "\"HQ\",\"AB\"", "", "L1L2"}};
  for (const auto& one : cases) {
    office.session.AllowedCompanies = one.allowed;
    auto screen = Open(one.level);
    screen->DateFrom.SetText("29-02-2024");
    screen->DateTo.SetText("01-03-2024");
    screen->CompCode.SetText(one.chosen);
    EXPECT_EQ(Run(*screen,
                  "SELECT l.LoanID,@FromDate,@todate FROM LoanMast as l WHERE 1=1@gcc "
                  "ORDER BY l.LoanID"),
              "Process completed");
    std::string loans;
    for (int row = 0; row < screen->DG.RowCount(); ++row) {
      loans += screen->DG.Cell(row, 0);
      EXPECT_EQ(screen->DG.Cell(row, 1) + screen->DG.Cell(row, 2), "2024-02-292024-03-01");
    }
    EXPECT_EQ(loans, one.loans) << one.level << one.chosen;
  }
}

TEST_F(Exporter, AFailureAtAnyStatementOfASaveOrDeleteLeavesWhatWasKept) {
  const std::string before = office.Lines("SELECT * FROM DataExport");
  for (Button NPLExportfrm::*button : {&NPLExportfrm::Command1, &NPLExportfrm::Command2}) {
    bool reached = true;
    for (int at = 1; reached; ++at) {
      auto screen = Open(2);
      screen->SQLID.Pick("Loans");
      screen->FromDate.SetChecked(false);
      reached = office.FailAt(at, Office::Failure::passes,
                              [&] { screen->Guard([&] { ((*screen).*button).Click(); }); });
      if (office.committed) break;  // the names are read anew
      EXPECT_EQ(office.Lines("SELECT * FROM DataExport"), before) << at;
    }
    EXPECT_NE(office.Lines("SELECT * FROM DataExport"), before);
    if (button == &NPLExportfrm::Command1) office.Run("UPDATE DataExport SET FromDate='1'");
  }
}

TEST_F(Exporter, TheTemplateOfTheRegulatorComesFromTheCentralDatabase) {
  auto screen = Open(1);
  const auto get = [&] {
    desk.messages.clear();
    screen->Guard([&] { screen->Command4.Click(); });
    return desk.Said();
  };
  const std::string failed = "an error occur during retrieve IDEAL Upload detail";
  EXPECT_EQ(get(), failed);  // no such server
  const std::string file = office.folder.File("central.db");
  auto central = OpenSqlite("AMLA", file, true, office.session.clock);
  RunScript(*central, SchemaText("central"));
  office.session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, file});
  central->Execute(
      "INSERT INTO DataExport (SID,SQLStatement,Quote) VALUES ('K1','SELECT LoanID FROM LoanMast "
      "WHERE CompCode=@CompCode','1')");
  EXPECT_EQ(get(), failed);  // no key
  office.Run("UPDATE Systemast SET Value='K1' WHERE Param='IDEAL'");
  EXPECT_TRUE(get().starts_with("Confirm to get Ideal KPKT"));
  EXPECT_TRUE(screen->Quote.checked());
  EXPECT_EQ(Run(*screen, screen->SQLStatement.text()), "Company Code is required");
  screen->CompCode.SetText("HQ");
  EXPECT_EQ(Run(*screen, screen->SQLStatement.text()), "Process completed");
  desk.folder = office.folder.path();
  screen->SSCommand1.Click();
  std::ifstream out(office.folder.File("IDEAL UPLOAD-140509.csv"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(out), {}), "\"L1\"\r\n");
  EXPECT_EQ(desk.Said(),
            "Agent activities csv file generated, Open folder on " + desk.folder + " ?");
  desk.folder = office.folder.File("nowhere");
  screen->SSCommand1.Click();
  EXPECT_NE(desk.Said().find("nowhere/IDEAL UPLOAD-140509.csv cannot be written"),
            std::string::npos);
}

TEST_F(Exporter, ALongStatementIsStoppedAndHasChangedNothing) {
  const std::string columns = "INFORMATION_SCHEMA.COLUMNS";
  const std::string longer = "SELECT COUNT(*) FROM " + columns + " AS a, " + columns + " AS b, " +
                             columns + " AS c, " + columns + " AS d";
  for (const std::string begin : {"", "UPDATE LoanMast SET LoanAmt=7;"}) {
    auto screen = Open(4);
    Run(*screen, begin + longer);
    EXPECT_EQ(screen->ResultLBL.Text(), "Stopped, nothing was changed");
    EXPECT_EQ(office.Scalar("SELECT SUM(LoanAmt) FROM LoanMast"), "1236.5");
  }
}

// The statement had ended by the time it was told to.
TEST_F(Exporter, AStopThatComesTooLateIsNotToldAsOne) {
  auto screen = Open(4);
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (!sql.starts_with("UPDATE")) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(450));
    EXPECT_TRUE(StopAsked());
  });
  EXPECT_EQ(Run(*screen, "UPDATE LoanMast SET LoanAmt=7"), "Process completed");
  office.session.Main().SetFaultHook({});
  EXPECT_EQ(office.Scalar("SELECT SUM(LoanAmt) FROM LoanMast"), "14");
}

// One row a line; quotes as spreadsheets take them.
std::vector<std::string> ReadLine(const std::string& line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"' && quoted && line.substr(i + 1, 1) == "\"") {
      fields.back() += line[i++];
    } else if (line[i] == '"' && (quoted || fields.back().empty())) {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  return fields;
}

TEST(ExportFile, AnotherReaderFindsEachFieldWhatSignsSoeverItHolds) {
  std::mt19937 dice(7);
  const std::vector<std::string> signs = {"a", ",", "\"", "\n", "\r\n", "陈", " ", "'", ";"};
  for (int turn = 0; turn < 4000; ++turn) {
    const bool quote = turn % 2 == 0;
    std::vector<std::string> fields(1 + dice() % 4);
    std::vector<std::string> expected(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
      for (auto count = dice() % 6; count > 0; --count) {
        const std::string& sign = signs[dice() % signs.size()];
        fields[i] += sign;
        expected[i] += sign.ends_with('\n') ? " " : sign == "," && !quote ? "" : sign;
      }
    }
    EXPECT_EQ(ReadLine(ExportLine(fields, quote)), expected) << ExportLine(fields, quote);
  }
}

}  // namespace
}  // namespace kaunter
