// Report files that say what another one says, lines that depend on a parameter, and what becomes
// of the parameters in the query.
#include <gtest/gtest.h>

#include <fstream>

#include "core/report_path.h"
#include "reports/report_check.h"
#include "reports/report_query.h"
#include "tests/core/office.h"
#include "tests/reports/list_rows.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

const std::string kQuery = "query\nSELECT * FROM t WHERE {selection}\nend\n";

struct ReportFolder : TempFolder {
  void Write(const std::string& name, const std::string& text) {
    std::ofstream(File(name), std::ios::binary) << text;
  }
  // "" for a good file.
  std::string Fault(const std::string& name) {
    return FaultOf([&] {
      LayOut(ReportFile::Read(File(name)), {}, RowsOf({{"A", "N", "L1", {2024, 1, 31}, "1"}}));
    });
  }
};

TEST(ReportLike, OwnLinesTakeThePlaceOfTheOthers) {
  ReportFolder folder;
  folder.Write("a.rpt", "title \"A\"\n" + kQuery +
                            "column \"Loan\" Loan text 9\ncolumn \"Paid\" Paid money 9 sum\n"
                            "group Company \"Sum {group}\" always\nnote \"Of A\"\n");
  folder.Write("b.rpt", "# short\nlike \"a.rpt\"\ntitle \"B\"\ncolumn \"Paid\" Paid money 9 sum\n");
  folder.Write("c.rpt", "like \"b.rpt\"\nsummary\n");
  const std::vector<ListRow> rows = {{"A", "N", "L1", {2024, 1, 31}, "1"}};
  EXPECT_EQ(LinesOf(LayOut(ReportFile::Read(folder.File("b.rpt")), {}, RowsOf(rows))),
            (std::vector<std::string>{"B", "Paid", "1.00", "Sum A|1.00", "Of A", "|Page 1 of 1"}));
  EXPECT_EQ(LinesOf(LayOut(ReportFile::Read(folder.File("c.rpt")), {}, RowsOf(rows))),
            (std::vector<std::string>{"B", "|Paid", "Sum A|1.00", "Of A", "|Page 1 of 1"}));
}

// One column more, one less: what the other file says is not written down again.
TEST(ReportLike, LinesAreAddedAndLeftOut) {
  ReportFolder folder;
  folder.Write("a.rpt",
               "query\nSELECT DISTINCT TOP 5 Loan FROM t WHERE {selection}\nend\ntitle \"A\"\n"
               "column \"Loan\" Loan text 9\ncolumn \"Paid\" Paid money 9 sum\n"
               "group Company \"Sum {group}\" always\nnote \"Of A\"\ntotal \"All\"\n");
  const std::vector<ListRow> rows = {{"A", "N", "L1", {2024, 1, 31}, "1", "5"}};
  const struct {
    const char* lines;
    std::vector<std::string> printed;  // or the fault alone
  } cases[] = {
      {"add column \"Lent\" Lent money 9 behind LOAN\nwithout note\n",
       {"A", "Loan|Lent|Paid", "L1|5.00|1.00", "Sum A|1.00", "All|1.00", "|Page 1 of 1"}},
      {"without column Loan\ncolumn \"Area\" Area text 9\nwithout total\n",
       {"A", "Paid|Area", "1.00|N", "Sum A|1.00", "Of A", "|Page 1 of 1"}},
      {"add group Area \"In {group}\" always\nwithout note\n",
       {"A", "Loan|Paid", "L1|1.00", "In N|1.00", "Sum A|1.00", "All|1.00", "|Page 1 of 1"}},
      {"without group Company\nwithout note\n",
       {"A", "Loan|Paid", "L1|1.00", "All|1.00", "|Page 1 of 1"}},
      {"without column Lent\n", {"own.rpt, line 2: there is no column Lent to leave out"}},
      {"add column \"Lent\" Lent money 9 behind Lent\n",
       {"own.rpt, line 2: there is no column Lent to"}},
      {"add note \"x\"\n", {"own.rpt, line 2: what is added"}},
      {"without paper A4\n", {"own.rpt, line 2: what may be left out"}},
  };
  for (const auto& c : cases) {
    folder.Write("own.rpt", std::string("like \"a.rpt\"\n") + c.lines);
    if (c.printed.size() == 1) {
      EXPECT_NE(folder.Fault("own.rpt").find(c.printed[0]), std::string::npos)
          << folder.Fault("own.rpt");
      continue;
    }
    EXPECT_EQ(LinesOf(LayOut(ReportFile::Read(folder.File("own.rpt")), {}, RowsOf(rows))),
              c.printed)
        << c.lines;
  }
  folder.Write("own.rpt", "like \"a.rpt\"\nadd read m.Phone\n");
  EXPECT_EQ(ReportFile::Read(folder.File("own.rpt")).query,
            "SELECT DISTINCT TOP 5 m.Phone, Loan FROM t WHERE {selection}\n");
  folder.Write("alone.rpt", "add column \"A\" a text 5\n");
  EXPECT_NE(folder.Fault("alone.rpt").find("line 1: \"add\" changes what another"),
            std::string::npos);
}

// A file of the office takes the place of the program's, and may be like it under its own name.
TEST(ReportLike, TheOfficesOwnFolderComesFirst) {
  ReportFolder folder;
  folder.Write("a.rpt", kQuery + "column \"A\" Loan text 9\n");
  folder.Write("b.rpt", kQuery + "column \"B\" \"乙\" Loan text 9\n");
  std::filesystem::create_directory(folder.File("OwnReports"));
  folder.Write("OwnReports/a.rpt", "like \"a.rpt\"\ntitle \"ours\"\n");
  folder.Write("OwnReports/new.rpt", "like \"b.rpt\"\n");
  folder.Write("OwnReports/circle.rpt", "like \"circle.rpt\"\n");
  const ReportPath found = FindReportFile(folder.File("aC.rpt"));
  EXPECT_TRUE(found.chinese);
  EXPECT_EQ(ReportFile::Read(found.path).title, "ours");
  EXPECT_EQ(FindReportFile(folder.File("b.rpt")).path, folder.File("b.rpt"));
  EXPECT_EQ(folder.Fault("OwnReports/new.rpt"), "");
  EXPECT_TRUE(ReportFile::SpeaksChinese(folder.File("OwnReports/new.rpt")));
  EXPECT_NE(folder.Fault("OwnReports/circle.rpt").find("there is no file circle.rpt"),
            std::string::npos);
}

TEST(ReportLike, OnlyUtf8IsRead) {
  ReportFolder folder;
  const std::string good = kQuery + "column \"A\" Loan text 9\n";
  const std::pair<std::string, const char*> cases[] = {
      {"\xEF\xBB\xBF" + good, ""},
      {good + "title \"陈 😀\"\n", ""},
      {std::string("\xFF\xFEq\0u\0", 6), "e.rpt: it is written in UTF-16"},
      {std::string("\xFE\xFF\0q\0u", 6), "UTF-16"},
      {std::string("q\0u\0e\0", 6), "UTF-16"},
      {std::string("\xFF\xFE\0\0q\0\0\0", 8), "UTF-32"},
      {good + "title \"\xB4\xFB\xBF\xEE\"\n", "e.rpt, line 5: it is written in GB18030"},
      {good + "title \"caf\xE9\"\n", "e.rpt, line 5: it is written in Windows-1252"},
  };
  for (const auto& [text, told] : cases) {
    folder.Write("e.rpt", text);
    const std::string fault = folder.Fault("e.rpt");
    EXPECT_TRUE(*told == '\0' ? fault.empty() : fault.find(told) != std::string::npos)
        << told << "\n"
        << fault;
  }
}

TEST(ReportLike, AFaultNamesTheFileInWhichItStands) {
  ReportFolder folder;
  const struct {
    std::string other;
    std::string own;
    std::string told;
  } cases[] = {
      {"column \"A\" Loan text 9\nkolumn\n", "title \"x\"\n", "base.rpt, line 5: \"kolumn\""},
      {"column \"A\" Missing text 9\n", "title \"x\"\n", "base.rpt, line 4: the query gives no"},
      {"column \"A\" Loan text 9\ntotal \"{Missing}\"\n", "", "base.rpt, line 5: the query gives"},
      {"column \"A\" Loan text 9\ngroup Missing \"x\"\n", "", "base.rpt, line 5: the query gives"},
      {"column \"A\" Loan text 9\ngroup Loan \"\" heading \"{Missing}\"\n", "",
       "base.rpt, line 5: the query gives"},
      {"letter Loan\ntext \"a\"\nfoot \"{Missing}\"\n", "", "base.rpt, line 6: the query gives no"},
      {"column \"A\" Loan text 9\n", "column \"A\" Missing text 9\n",
       "own.rpt, line 2: the query gives no"},
      {"column \"A\" Loan text 9\n", "group Company\n", "own.rpt, line 2: \"group\" needs"},
  };
  for (const auto& c : cases) {
    folder.Write("base.rpt", kQuery + c.other);
    folder.Write("own.rpt", "like \"base.rpt\"\n" + c.own);
    EXPECT_NE(folder.Fault("own.rpt").find(c.told), std::string::npos) << c.told << "\n"
                                                                       << folder.Fault("own.rpt");
  }
}

// Every fault of a folder, in branches that a print on a good day never reads, each one told once.
TEST(ReportLike, AFolderIsReadWithoutPrinting) {
  ReportFolder folder;
  folder.Write("a.rpt", kQuery +
                            "kolumn\ncolumn \"A\" Loan text 9\nif P is \"1\"\npaper A9\nelse\n"
                            "if Q not \"x\"\nif language is \"chinese\"\nnote\nendif\n"
                            "else\ntotal\nendif\nendif\n");
  folder.Write("b.rpt", "like \"a.rpt\"\nwithout column B\n");
  folder.Write("c.RPT", "like \"none.rpt\"\nwithout column B\n");
  folder.Write("d.rpt", "query\nDELETE FROM t WHERE {selection}\nend\nif P\ncolumn\nendif\n");
  // Blanks let a heading take two lines; a long word has no room.
  folder.Write("e.rpt", kQuery +
                            "column \"Late charges\" Loan text 1\ncolumn \"Identification\" "
                            "Loan text 1\ncolumn \"A\" Loan text 9\n" +
                            "field \"A label as long as none other is\" \"x\"\n");
  folder.Write("readme.txt", "\xFF");
  std::filesystem::create_directory(folder.File("OwnReports"));
  folder.Write("OwnReports/a.rpt", "like \"a.rpt\"\nadd\n");
  const ReportCheck check = CheckReports(folder.path());
  EXPECT_EQ(check.files, 6u);
  std::string places;
  for (const std::string& fault : check.faults) {
    const std::size_t name = folder.path().size() + std::string("Report file /").size();
    places += fault.substr(name, fault.find(':') - name) + "; ";
  }
  EXPECT_EQ(places,
            "a.rpt, line 4; a.rpt, line 7; a.rpt, line 14; a.rpt, line 11; b.rpt, line 2; "
            "c.RPT, line 1; d.rpt, line 4; d.rpt, line 2; e.rpt, line 5; e.rpt, line 7; "
            "OwnReports/a.rpt, line 2; ");
  EXPECT_THROW(CheckReports(folder.File("none")), std::runtime_error);
  const ReportCheck own = CheckReports(test::SourceDir() + "/reports");
  EXPECT_GT(own.files, 50u);
  for (const std::string& fault : own.faults) ADD_FAILURE() << fault;
}

TEST(ReportLike, ACircleAndAMissingFileEndWithAMessage) {
  ReportFolder folder;
  folder.Write("self.rpt", "like \"self.rpt\"\n");
  folder.Write("path.rpt", "like \"./path.rpt\"\n");
  folder.Write("x.rpt", "like \"y.rpt\"\n");
  folder.Write("y.rpt", "title \"y\"\nlike \"x.rpt\"\n");
  folder.Write("z.rpt", "like \"w.rpt\"\n");
  folder.Write("w.rpt", "like \"z.rpt\"\n");
  folder.Write("gone.rpt", "\nlike \"nowhere.rpt\"\n");
  for (const char* name : {"self.rpt", "path.rpt", "z.rpt"}) {
    EXPECT_NE(folder.Fault(name).find("goes round in a circle"), std::string::npos)
        << folder.Fault(name);
  }
  EXPECT_NE(folder.Fault("x.rpt").find("y.rpt, line 2: \"like\" stands before"), std::string::npos)
      << folder.Fault("x.rpt");
  EXPECT_NE(folder.Fault("gone.rpt").find("gone.rpt, line 2: there is no file nowhere.rpt"),
            std::string::npos)
      << folder.Fault("gone.rpt");
}

TEST(ReportIf, ReadsTheLinesOfOneBranchOnly) {
  const std::string lines = R"(parameter Kind "plain"
if Kind is "full" "Whole"
column "Full" Loan text 9
if language is "chinese"
note "no" / "全"
else
note "whole"
endif
else
if Other not ""
query
broken
end
endif
column "Plain" Loan text 9
endif
)";
  const struct {
    std::map<std::string, std::string> parameters;
    bool chinese;
    std::string column;
    std::string note;
  } cases[] = {{{}, false, "Plain", ""},
               {{{"kind", "WHOLE"}}, false, "Full", "whole"},
               {{{"kind", "full"}}, true, "Full", "全"},
               {{{"kind", ""}}, true, "Plain", ""}};
  for (const auto& c : cases) {
    const ReportFile file = ReportFile::Parse(kQuery + lines, "t.rpt", {c.chinese, c.parameters});
    ASSERT_EQ(file.columns.size(), 1u);
    EXPECT_EQ(file.columns[0].heading, c.column);
    EXPECT_EQ(file.note, c.note);
  }
  for (const char* broken : {"if Kind is\n", "if Kind like \"a\"\n", "else\n", "endif\n",
                             "if Kind is \"a\"\n", "if Kind is \"\"\nelse\nelse\nendif\n"}) {
    EXPECT_THROW(ReportFile::Parse(kQuery + "column \"A\" a text 9\n" + broken, "t.rpt"),
                 std::runtime_error)
        << broken;
  }
}

TEST(ReportQuery, AParameterIsALiteralWhateverItHolds) {
  const DateTime today{2024, 2, 29};
  const struct {
    std::string place;
    std::string value;
    std::string literal;
  } cases[] = {
      {"{?P}", "O'Brien", "'O''Brien'"},
      {"{?P}", "x' OR '1'='1", "'x'' OR ''1''=''1'"},
      {"{?P}", "{selection}", "'{selection}'"},
      {"{?P}", "{?Q}", "'{?Q}'"},
      {"{?P}", "", "''"},
      {"{?P}", "date(2024,1,31)", "'2024-01-31'"},
      {"{?P}", "Date ( 2024 , 12 , 1 )", "'2024-12-01'"},
      {"{?P}", "date(2024,2,30)", "'date(2024,2,30)'"},
      {"{?P:text}", "date(2024,1,31)", "'date(2024,1,31)'"},
      {"{? p :date}", "31-01-2024", "'2024-01-31'"},
      {"{?P:date}", " ", "NULL"},
      {"{?P:money}", "1,234.50", "1234.50"},
      {"{?P:money}", "-0.05", "-0.05"},
      {"{?P:money}", "", "0"},
      {"{?Today}", "", "'2024-02-29'"},
  };
  for (const auto& c : cases) {
    ReportFile file = ListFile("parameter Today \"today\"\ncolumn \"A\" a text 9\n");
    file.query = "SELECT " + c.place + " FROM t WHERE {selection}";
    EXPECT_EQ(ReportStatement(file, "{t.a} = 1", {{"p", c.value}}, today),
              "SELECT " + c.literal + " FROM t WHERE (t.a=1)");
  }
}

// Whatever the formula says: it stands in brackets of its own.
TEST(ReportQuery, TheCompaniesOfThePersonStandBesideEachCondition) {
  const struct {
    const char* query;
    const char* ending;  // of the statement behind its last WHERE; "" where it is refused
  } cases[] = {
      {"SELECT a FROM LoanMast WHERE {selection}", "((t.a=1) AND [LoanMast].CompCode IN ('A'))"},
      {"SELECT a FROM CustMast AS c JOIN dbo.[LoanMast] AS l ON 1=1 WHERE {selection}",
       "((t.a=1) AND [l].CompCode IN ('A'))"},
      {"SELECT a FROM SchMast s, custmast c WHERE {selection}",
       "((t.a=1) AND [c].CompCode IN ('A'))"},
      {"SELECT a FROM CashBook UNION SELECT b FROM PersonalExp WHERE {selection}",
       "((t.a=1) AND [PersonalExp].CompCode IN ('A'))"},
      {"SELECT (SELECT MAX(b) FROM PaymentMast) FROM TransLogs WHERE {selection}",
       "((t.a=1) AND [TransLogs].ConmpCode IN ('A'))"},
      {"SELECT a FROM LoanMast m WHERE EXISTS (SELECT 1 FROM BankMast WHERE {selection})",
       "((t.a=1) AND [m].CompCode IN ('A')))"},
      {"SELECT a /* FROM AppMast */ FROM BankMast WHERE {selection}", "(t.a=1)"},
      {"SELECT a FROM MasterReport WHERE {company s3} AND {selection}", "s3 IN ('A') AND (t.a=1)"},
      {"SELECT a FROM MasterReport WHERE {selection}", ""},
      {"SELECT (SELECT 1 FROM LoanMast) FROM BankMast WHERE {selection}", ""},
      {"SELECT a FROM BankMast WHERE {selection} AND EXISTS (SELECT 1 FROM AppMast)", ""},
  };
  for (const auto& c : cases) {
    ReportFile file = ListFile("column \"A\" a text 9\n");
    file.query = c.query;
    std::string statement;
    const std::string fault = FaultOf([&] {
      statement = ReportStatement(file, "{t.a} = 1", {}, {2024, 1, 31}, "'A'");
      statement.erase(0, statement.rfind("WHERE ") + 6);
    });
    EXPECT_EQ(statement, c.ending) << c.query;
    EXPECT_EQ(fault.find("{company Table.Column}") != std::string::npos, *c.ending == '\0');
    EXPECT_EQ(ReportStatement(file, "", {}, {2024, 1, 31}).find("'A'"), std::string::npos);
  }
}

TEST(ReportQuery, RefusesAPlaceThatItCannotFill) {
  const struct {
    std::string place;
    std::string value;
    std::string told;
  } cases[] = {
      {"{?Q}", "", "line 1: the query needs the parameter Q"},
      {"{?P:money}", "12 or 1=1", "the parameter P must be a number, and it is \"12 or 1=1\""},
      {"{?P:money}", "abc", "must be a number"},
      {"{?P:date}", "31-02-2024", "must be a date"},
      {"{?P:integer}", "1", "\"integer\" is no kind"},
      {"{P}", "1", "the query has a place {P}"},
      {"{?P", "1", "not closed"},
  };
  for (const auto& c : cases) {
    ReportFile file = ListFile("column \"A\" a text 9\n");
    file.query = "SELECT {selection} " + c.place;
    ExpectFaults({{c.value, c.told}}, [&](const std::string& value) {
      ReportStatement(file, "", {{"p", value}}, {2024, 1, 31});
    });
  }
}

}  // namespace
}  // namespace kaunter
