// Whole reports on a database: from the file and the formula to pages and CSV.
#include "reports/run_report.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/clock.h"
#include "reports/report_csv.h"
#include "tests/core/office.h"
#include "tests/reports/list_rows.h"

namespace kaunter {
namespace {

struct Books {
  Books() : main(OpenSqlite("MainConn", folder.File("books.db"), true, clock)) {
    main->Execute(
        "CREATE TABLE Loans (LoanID NVARCHAR(20), Name NVARCHAR(60), Day DATETIME, "
        "Amt DECIMAL(18,2), Code NVARCHAR(10))");
    for (const char* row :
         {"'L1',N'Tan, \"Ah\" Kow','2024-01-31 00:00:00',1234.5,'a'",
          "'L2',N'陈美玲','2024-01-31 16:30:00',-20.05,'A '", "'L3','O''Brien','2024-02-01',0,'B'",
          "'L4','+60123456789','2024-02-02',1,'O''B'"}) {
      main->Execute(std::string("INSERT INTO Loans VALUES (") + row + ")");
    }
    Write("list.rpt",
          "title \"Loans\"\nquery\nSELECT l.* FROM Loans AS l WHERE {selection}\nend\norder "
          "l.LoanID\nalias l = Loans\nalias l.Code = Other.Kind\ncolumn \"Loan\" LoanID text "
          "9\ncolumn \"Name\" Name text 20\ncolumn \"Day\" Day date 9\ncolumn \"Amount\" Amt money "
          "9 sum\ntotal \"All\"\n");
  }
  void Write(const std::string& name, const std::string& text) {
    std::ofstream(folder.File(name), std::ios::binary) << text;
  }
  ReportJob Job(const std::string& formula, const std::string& name = "list.rpt") {
    ReportJob job;
    job.ReportFileName = folder.File(name);
    job.SelectionFormula = formula;
    job.Connect = main.get();
    return job;
  }
  // The loans that the report prints, or what it refuses.
  std::string Loans(const std::string& formula) {
    std::string loans;
    const std::string fault = FaultOf([&] {
      const ReportRun run = RunWholeReport(Job(formula));
      for (const auto& row : run.rows.rows()) loans += row[0].ToText();
    });
    return loans + fault;
  }

  TempFolder folder;
  Clock clock;
  std::unique_ptr<Connection> main;
};

TEST(RunReport, TheFormulaPicksTheRows) {
  Books books;
  const std::pair<const char*, const char*> cases[] = {
      {"", "L1L2L3L4"},
      {"{Loans.Code} = 'A'", "L1L2"},  // case and blanks at the end are no difference
      {" ( {LOANS.code}='a'  or {Loans.Code} = 'B' ) ", "L1L2L3"},
      {"{Other.Kind} <> 'A' And not ({Loans.LoanID} = 'L3')", "L4"},
      {"{Loans.Day} = Date(2024,1,31)", "L1"},
      {"{Loans.Day} = DateTime (2024, 1, 31)", "L1"},
      {"{Loans.Day} >= DateTime (2024, 1, 31, 16, 30, 00) and {Loans.Day} <= DateTime (2024, 2, 1, "
       "23, 59, 59)",
       "L2L3"},
      {"{Loans.Amt} < 0", "L2"},
      {"{Loans.Amt} >= -20.05 and ({Loans.Amt} <= 0 or {Loans.Amt} = 1.00)", "L2L3L4"},
      {"{Loans.Name} = 'O''Brien'", "L3"},
      {"{Loans.Name} = '陈美玲'", "L2"},
      {"not not {Loans.Amt} = 1", "L4"},
      {"{Loans.Code} = '{selection}'", ""},
  };
  for (const auto& [formula, loans] : cases) EXPECT_EQ(books.Loans(formula), loans) << formula;
}

// Whatever a value holds, the report prints what was asked or says that it cannot.
TEST(RunReport, AValueIsNeverReadAsAStatement) {
  Books books;
  const std::string values[] = {"O'B",
                                "'",
                                "''",
                                "x' or '1'='1",
                                "x') or ('1'='1",
                                "x'--",
                                "x'; DROP TABLE Loans; --",
                                "x' union select 1 --",
                                "x'/*",
                                "x\"",
                                "\\'",
                                "x' or 1=1 or 'a'='a"};
  for (const std::string& value : values) {
    for (const std::string& before : {std::string(), std::string("{Loans.Amt} >= -1000 and ")}) {
      const std::string loans = books.Loans(before + "({Loans.Code} = '" + value + "')");
      EXPECT_TRUE(loans.empty() || loans.find("selection formula") != std::string::npos)
          << value << " printed " << loans;
    }
  }
  EXPECT_NE(books.Loans("{Loans.Code} = 'O'Brien'").find("An apostrophe (') within a value"),
            std::string::npos);
  // Two values with an apostrophe at their edges must not swallow what stands between them.
  EXPECT_NE(books.Loans("{Loans.Name} >= 'A'' and {Loans.Name} <= ''B'").find("position 17"),
            std::string::npos)
      << books.Loans("{Loans.Name} >= 'A'' and {Loans.Name} <= ''B'");
  EXPECT_EQ(books.Loans(""), "L1L2L3L4");
}

// Neither on the embedded engine nor on a server that runs whatever follows: so the words count.
TEST(RunReport, AFileOnlyReads) {
  Books books;
  const std::string select = "SELECT LoanID FROM Loans WHERE {selection}";
  const struct {
    std::string query, order;
    const char* told;  // of the line and what is wrong
  } cases[] = {
      {select, "LoanID", ""},
      {"-- DELETE, /* UPDATE\n" + select + ";\n/* DROP */ -- ; x", "", ""},
      {"SELECT LoanID, 'DROP; TABLE' AS [delete] FROM Loans WHERE {selection}\nUNION ALL\nSELECT "
       "'L9', 'x' FROM Loans WHERE LoanID IN (SELECT LoanID FROM Loans)",
       "", ""},
      {"WITH few AS (SELECT LoanID FROM Loans), more AS (SELECT LoanID FROM few)\nSELECT LoanID "
       "FROM more WHERE {selection}",
       "", ""},
      {"DELETE FROM Loans; " + select, "", "line 2: a report only reads: its query is one"},
      {"\nEXEC wipe " + select, "", "line 3: a report only reads: its query is one"},
      {"(" + select + ")", "", "line 2: a report only reads: its query is one"},
      {"SELECT 1;\n" + select, "", "line 3: a report only reads, by one"},
      {"SELECT 1\n\n" + select, "", "line 4: a report only reads, by one"},
      {"WITH a AS (SELECT 1 AS x) SELECT 1 FROM a\n" + select, "",
       "line 3: a report only reads, by"},
      {"WITH a AS (SELECT 1 AS x)\nDELETE FROM Loans WHERE {selection}", "",
       "line 3: a report only"},
      {select + "\nDELETE FROM Loans", "", "line 3: a report only reads, and DELETE is"},
      {select + "\ninsert INTO Loans (LoanID) VALUES ('x')", "", "reads, and insert is"},
      {"SELECT LoanID\nInto Copied FROM Loans WHERE {selection}", "",
       "line 3: a report only reads"},
      {select + " AND 1=1edelete FROM Loans", "", "line 2: a blank is missing behind a number"},
      {select + " AND 1=0xfupdate Loans", "", "line 2: a blank is missing behind a number"},
      {select + " AND Code=Code\u00a0TRUNCATE\u00a0TABLE Loans", "", "and TRUNCATE is"},
      {"SELECT * FROM OPENQUERY(s, 'DELETE') WHERE {selection}", "", "and OPENQUERY is"},
      {"SELECT 1 -- \rDELETE FROM Loans\n WHERE {selection}", "",
       "line 2: a line break of another"},
      {select + " /* never closed", "", "Missing end comment"},
      {select, "LoanID; DELETE FROM Loans", "line 6: a report only reads, by one"},
      {select, "LoanID DELETE FROM Loans", "line 6: a report only reads, and DELETE is"},
      {select + " AND Code<>'{?P}'", "", "line 1: a report only reads, by one"},
  };
  const std::string before = books.Loans("");
  for (const auto& c : cases) {
    books.Write("only.rpt", "query\n" + c.query + "\nend\ncolumn \"Loan\" LoanID text 9\nalias " +
                                "x = Loans\n" + (c.order.empty() ? "" : "order " + c.order + "\n"));
    ReportJob job = books.Job("", "only.rpt");
    job.ParameterFields[0] = "P;x; DELETE FROM Loans;True";
    const std::string told = FaultOf([&] { RunWholeReport(job); });
    const bool as_told = *c.told == '\0' ? told.empty() : told.find(c.told) != std::string::npos;
    EXPECT_TRUE(as_told) << c.query << "\n" << told;
    EXPECT_EQ(books.Loans(""), before) << c.query;
  }
}

TEST(RunReport, AnUnknownTableOrColumnNamesTheFileAndItsQuery) {
  Books books;
  for (const char* formula : {"{Customers.Name} = 'A'", "{Loans.Nmae} = 'A'"}) {
    const std::string told = books.Loans(formula);
    EXPECT_NE(told.find("list.rpt, line 2"), std::string::npos) << told;
    const std::string name(formula + 1, 4);
    EXPECT_TRUE(told.find("Customers") != std::string::npos ||
                told.find("Nmae") != std::string::npos)
        << told;
  }
}

TEST(RunReport, AFileThatIsNoReportSaysWhatItIs) {
  Books books;
  books.Write("empty.rpt", "");
  books.Write("blank.rpt", "\n# nothing\n\n");
  books.Write("binary.rpt", std::string("\x7f\x45LF\0\0\xff\xfe\x01", 9));
  books.Write("half.rpt", "title \"x\"\nquery\nSELECT 1 WHERE {selection}\n");
  std::filesystem::create_directory(books.folder.File("folder.rpt"));
  ExpectFaults({{"empty.rpt", "the file is empty"},
                {"blank.rpt", "blank.rpt, line 3: the report has no query"},
                {"binary.rpt", "binary.rpt, line 1"},
                {"half.rpt", "half.rpt, line 3: the query does not end"},
                {"folder.rpt", "cannot be read. It belongs beside the program"},
                {"gone.rpt", "gone.rpt cannot be read"}},
               [&](const std::string& name) { RunWholeReport(books.Job("", name)); });
}

TEST(RunReport, CsvOpensInASpreadsheetAsItWasTyped) {
  Books books;
  books.main->Execute(
      "INSERT INTO Loans VALUES ('L5','=HYPERLINK(\"x\")\r\nline two',NULL,NULL,'C')");
  books.main->Execute("INSERT INTO Loans VALUES ('-7','-',NULL,1000000,'C')");
  EXPECT_EQ(ReportToCsv(RunWholeReport(books.Job(""))),
            "\xEF\xBB\xBFLoan,Name,Day,Amount\r\n"
            "-7,-,,1000000.00\r\n"
            "L1,\"Tan, \"\"Ah\"\" Kow\",31-01-2024,1234.50\r\n"
            "L2,陈美玲,31-01-2024,-20.05\r\n"
            "L3,O'Brien,01-02-2024,0.00\r\n"
            "L4,'+60123456789,02-02-2024,1.00\r\n"
            "L5,\"'=HYPERLINK(\"\"x\"\")\r\nline two\",,\r\n");
  EXPECT_EQ(ReportToCsv(RunWholeReport(books.Job("{Loans.Code} = 'none'"))),
            "\xEF\xBB\xBFLoan,Name,Day,Amount\r\n");
}

// What stands above the rows on paper is in each row: a row that is filtered out of the others
// still tells whose it is.
TEST(RunReport, CsvRowsStandAlone) {
  Books books;
  const struct {
    std::string lines, rows;
  } cases[] = {
      {"group Code \"\" heading \"{Code}: {Name}\"\n",
       "Code,Name,Loan,Amount\r\n"
       "a,\"Tan, \"\"Ah\"\" Kow\",L1,1234.50\r\nA ,陈美玲,L2,-20.05\r\n"
       "B,O'Brien,L3,0.00\r\nO'B,'+60123456789,L4,1.00\r\n"},
      // A key that is a column too comes once, as its column is called.
      {"group Day by month \"{group}, {count}, {Amt:sum}\"\ngroup LoanID \"{?P} {today}\"\n",
       "Day (month),Loan,Amount\r\n01-2024,L1,1234.50\r\n01-2024,L2,-20.05\r\n"
       "02-2024,L3,0.00\r\n02-2024,L4,1.00\r\n"},
      // A row of a summary is a group: its sum, and the last of a running figure.
      {"group Day by year \"\"\ngroup Day by month \"{count}\"\nsummary\n"
       "column \"So far\" running(Amt) money 9 last\n",
       "Day (year),Day (month),Count,Amount,So far\r\n2024,01-2024,2,1214.45,1214.45\r\n"
       "2024,02-2024,2,1.00,1215.45\r\n"},
      {"group Code \"Total\"\nsummary\n", "Code,Amount\r\na,1214.45\r\nB,0.00\r\nO'B,1.00\r\n"},
      {"letter Name\nitems\n",
       "Name,Loan,Amount\r\n\"Tan, \"\"Ah\"\" Kow\",L1,1234.50\r\n陈美玲,L2,-20.05\r\n"
       "O'Brien,L3,0.00\r\n'+60123456789,L4,1.00\r\n"},
  };
  for (const auto& c : cases) {
    books.Write("alone.rpt",
                "query\nSELECT * FROM Loans WHERE {selection}\nend\norder LoanID\n"
                "column \"Loan\" LoanID text 9\ncolumn \"Amount\" Amt money 9 sum\n" +
                    c.lines);
    EXPECT_EQ(ReportToCsv(RunWholeReport(books.Job("", "alone.rpt"))), "\xEF\xBB\xBF" + c.rows);
  }
}

// A page without rows says so, and its foot tells who printed it and which page it is: in the
// language of the paper, which a statutory form chooses itself, whatever its reader speaks.
TEST(RunReport, ThePaperSpeaksOneLanguage) {
  Books books;
  books.clock.Set({2024, 1, 31, 9, 5, 0});
  books.Write("malay.rpt", "like \"list.rpt\"\nlanguage malay\n");
  books.Write("kept.rpt", "like \"malay.rpt\"\ntitle \"Pinjaman\"\n");
  const std::string malay = "Tiada rekod bagi pilihan ini.";
  const std::string malay_foot = "Dicetak 31-01-2024 09:05:00 oleh AMY|Muka surat 1 daripada 1";
  const struct {
    const char* file;
    std::string no_rows, foot;
  } cases[] = {
      {"list.rpt", "No rows for this selection.", "Printed 31-01-2024 09:05:00 by AMY|Page 1 of 1"},
      {"listC.rpt", "没有符合条件的记录。", "打印于 31-01-2024 09:05:00，AMY|第 1 页，共 1 页"},
      {"malay.rpt", malay, malay_foot},
      {"malayC.rpt", malay, malay_foot},
      {"kept.rpt", malay, malay_foot},
  };
  for (const auto& c : cases) {
    ReportJob job = books.Job("{Loans.Code} = 'none'", c.file);
    job.PrintedBy = "AMY";
    const std::vector<std::string> lines = LinesOf(RunWholeReport(job).document);
    ASSERT_EQ(lines.size(), 4u) << c.file;
    EXPECT_EQ(lines[2], c.no_rows) << c.file;
    EXPECT_EQ(lines[3], c.foot) << c.file;
  }
  // Nobody is signed in: the foot has no name, and no gap for one.
  EXPECT_EQ(LinesOf(RunWholeReport(books.Job("{Loans.Code} = 'none'")).document)[3],
            "Printed 31-01-2024 09:05:00|Page 1 of 1");
}

TEST(RunReport, StopsWhereItIsAsked) {
  Books books;
  books.main->BeginTrans();
  for (int i = 0; i < 2000; ++i) {
    books.main->Execute("INSERT INTO Loans VALUES ('N','many','2024-03-01',1,'N')");
  }
  books.main->CommitTrans();
  for (const ReportStage stage : {ReportStage::reading, ReportStage::laying_out}) {
    std::size_t told = 0;
    const auto stop = [&](ReportStage at, std::size_t, std::size_t) {
      if (at == stage) ++told;
      return at != stage;
    };
    EXPECT_THROW(RunWholeReport(books.Job("{Loans.Amt} > -5000"), stop), ReportStopped);
    EXPECT_EQ(told, 1u);
  }
  // The connection goes on as if nothing had been.
  EXPECT_EQ(books.Loans("{Loans.Code} = 'B'"), "L3");
}

TEST(RunReport, APictureStandsBesideTheTitleWhenItIsThere) {
  Books books;
  books.Write("logo.png", "x");
  for (const char* name : {"logo.png", "nowhere.png", "{?Logo}"}) {
    books.Write("p.rpt", std::string("like \"list.rpt\"\npicture \"") + name + "\" 30 16\n");
    ReportJob job = books.Job("", "p.rpt");
    job.ParameterFields[0] = "Logo;" + books.folder.File("logo.png") + ";True";
    const ReportDocument document = RunWholeReport(job).document;
    const auto& pictures = document.pages.at(0).pictures;
    ASSERT_EQ(pictures.size(), std::string(name) == "nowhere.png" ? 0u : 1u) << name;
    if (pictures.empty()) continue;
    EXPECT_EQ(pictures[0].path, books.folder.File("logo.png"));
    EXPECT_LE(pictures[0].x + pictures[0].width, document.width_mm - 14.9);
    for (const PageText& text : document.pages[0].texts) {
      const bool beside = text.y < pictures[0].y + pictures[0].height;
      EXPECT_TRUE(!beside || text.x + text.width <= pictures[0].x) << text.text;
    }
  }
}

}  // namespace
}  // namespace kaunter
