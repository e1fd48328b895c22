// What the server refuses is refused with its number and the place; what it converts by itself gets
// the right converter.
#include "platform/sql/translator/binder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "tests/platform/sql/test_catalogue.h"

namespace kaunter::sql {
namespace {

constexpr char kTables[] =
    "CREATE TABLE Loan (LoanID nvarchar(10) NOT NULL PRIMARY KEY, Amt decimal(18, 2), "
    "Rate decimal(18, 4), Term nvarchar(50), Due datetime, Day date, Memo nvarchar(max), Cnt int)"
    "CREATE TABLE Sch (LoanID nvarchar(10) NOT NULL, SchID int NOT NULL, Due datetime, "
    "Amt decimal(18, 2), PRIMARY KEY (LoanID, SchID))"
    "CREATE TABLE Book (DocID int IDENTITY(1,1) PRIMARY KEY, Txt nvarchar(5), Same AS Txt)";

class BinderTest : public ::testing::Test {
 protected:
  void SetUp() override { catalogue_.Apply(kTables); }
  std::vector<Translated> Run(std::string_view statement) {
    return Translate(statement, catalogue_, Dialect::kSqlite);
  }
  TestCatalogue catalogue_;
};

TEST_F(BinderTest, RefusesAsTheServerDoes) {
  struct Case {
    const char* statement;
    int number;
    const char* near;
  };
  const Case cases[] = {
      {"SELECT * FROM Nowhere", 208, "Nowhere"},
      {"SELECT * FROM INFORMATION_SCHEMA.NOWHERE", 208, "INFORMATION_SCHEMA"},
      {"SELECT Nothing FROM Loan", 207, "Nothing"},
      {"SELECT l.Nothing FROM Loan AS l", 207, "l.Nothing"},
      {"SELECT x.Amt FROM Loan AS l", 4104, "x.Amt"},
      {"SELECT Loan.Amt FROM Loan AS l", 4104, "Loan.Amt"},
      {"SELECT x.* FROM Loan AS l", 107, "x.*"},
      {"SELECT Amt FROM Loan, Sch", 209, "Amt"},
      {"SELECT 1 FROM Loan, Loan", 1013, "Loan"},
      {"SELECT Amt FROM Loan WHERE SUM(Amt) > 1", 147, "SUM"},
      {"SELECT l.Amt FROM Loan l JOIN Sch s ON SUM(s.Amt) > 1", 1015, "SUM"},
      {"SELECT Amt FROM Loan l WHERE (SELECT MAX(l.Amt)) > 1", 147, "MAX"},
      {"DELETE FROM Loan WHERE Amt < (SELECT MAX(Amt))", 147, "MAX"},
      {"SELECT Amt FROM Loan l GROUP BY (SELECT MAX(l.Amt))", 144, "MAX"},
      {"SELECT l.LoanID, (SELECT MAX(l.Amt)) FROM Loan l", 8120, "l.LoanID"},
      {"SELECT l.LoanID FROM Loan l ORDER BY (SELECT MAX(l.Amt))", 8120, "l.LoanID"},
      {"SELECT (SELECT SUM(s.Amt * l.Rate) FROM Sch s) FROM Loan l", 8124, "SUM"},
      {"SELECT (SELECT SUM(l.Amt * l.Rate) FROM Sch s) FROM Loan l", 8124, "SUM"},
      {"SELECT SUM(SUM(Amt)) FROM Loan", 130, "SUM(Amt))"},
      {"SELECT SUM((SELECT 1)) FROM Loan", 130, "SUM"},
      {"SELECT SUM(Term) FROM Loan", 8117, "SUM"},
      {"SELECT Term - Memo FROM Loan", 8117, "- Memo"},
      {"SELECT Due - Day FROM Loan", 8117, "- Day"},
      {"SELECT Amt FROM Loan GROUP BY LoanID", 8120, "Amt"},
      {"SELECT * FROM Loan GROUP BY LoanID", 8120, "*"},
      {"SELECT LoanID, COUNT(*) FROM Loan", 8120, "LoanID"},
      {"SELECT LoanID FROM Loan GROUP BY LoanID HAVING Amt > 1", 8121, "Amt"},
      {"SELECT LoanID FROM Loan GROUP BY LoanID ORDER BY Amt", 8127, "Amt"},
      {"SELECT LoanID FROM Loan ORDER BY COUNT(*)", 8120, "LoanID"},
      {"SELECT (SELECT MAX(s.Amt) FROM Sch s WHERE s.Amt < l.Amt) FROM Loan l GROUP BY LoanID",
       8120, "l.Amt"},
      {"SELECT DISTINCT LoanID FROM Loan ORDER BY Amt", 145, "Amt"},
      {"SELECT LoanID FROM Loan ORDER BY 2", 108, "2"},
      {"SELECT LoanID FROM Loan ORDER BY 'x'", 408, "'x'"},
      {"SELECT l.LoanID, s.LoanID FROM Loan l, Sch s ORDER BY LoanID", 209, "LoanID"},
      {"SELECT LoanID FROM Loan UNION SELECT LoanID, Amt FROM Sch", 205, "SELECT LoanID, Amt"},
      {"SELECT LoanID FROM Loan UNION SELECT LoanID FROM Sch ORDER BY Amt", 104, "Amt"},
      {"SELECT * FROM (SELECT LoanID FROM Loan ORDER BY LoanID) AS a", 1033, "LoanID"},
      {"SELECT * FROM (SELECT COUNT(*) FROM Loan) AS a", 8155, "(SELECT"},
      {"SELECT * FROM (SELECT Amt, Amt FROM Loan) AS a", 8156, "(SELECT"},
      {"SELECT * FROM Loan WHERE Amt = (SELECT Amt, Due FROM Sch)", 116, "(SELECT"},
      {"SELECT * FROM Loan WHERE Amt", 4145, "Amt"},
      {"SELECT Amt FROM Loan WHERE Amt = 1 OR 2", 4145, "2"},
      {"SELECT (Amt > 1) FROM Loan", 102, "> 1"},
      {"SELECT nosuch(1)", 195, "nosuch"},
      {"SELECT len()", 174, "len"},
      {"SELECT datepart(moon, Due) FROM Loan", 155, "moon"},
      {"SELECT abs(Due) FROM Loan", 8116, "Due"},
      {"SELECT *", 263, "*"},
      {"INSERT INTO Loan (LoanID, Amt) VALUES ('a')", 109, "'a'"},
      {"INSERT INTO Loan (LoanID) VALUES ('a', 1)", 110, "'a'"},
      {"INSERT INTO Sch VALUES ('a', 1)", 213, "'a'"},
      {"INSERT INTO Sch SELECT LoanID FROM Loan", 213, "SELECT"},
      {"INSERT INTO Sch (LoanID, SchID) SELECT LoanID FROM Loan", 120, "SELECT"},
      {"INSERT INTO Sch (LoanID) SELECT LoanID, 1 FROM Loan", 121, "SELECT"},
      {"INSERT INTO Loan (LoanID, loanid) VALUES ('a', 'b')", 264, "loanid"},
      {"INSERT INTO Loan (LoanID) VALUES (Amt)", 128, "Amt"},
      {"INSERT INTO Book (DocID) VALUES (5)", 544, "DocID"},
      {"INSERT INTO Book (Same) VALUES ('x')", 271, "Same"},
      {"UPDATE Book SET DocID = 5", 8102, "DocID"},
      {"UPDATE Book SET Same = 'x'", 271, "Same"},
      {"UPDATE Loan SET Amt = 1, amt = 2", 264, "amt = 2"},
      {"UPDATE Loan SET Amt = SUM(Amt)", 157, "SUM"},
      // FROMSch is an alias: the subquery has no rows of its own.
      {"UPDATE Loan SET Due = (SELECT MAX(Due) FROMSch WHERE LoanID = 'L1')", 157, "MAX"},
      {"UPDATE Loan SET Sch.Amt = 1 FROM Loan, Sch", 4104, "Sch.Amt"},
      {"UPDATE Loan SET Day = 5", 206, "5"},
      {"UPDATE Loan SET Cnt = Due", 257, "Due"},
      {"CREATE TABLE Loan (a int)", 2714, "Loan"},
      {"CREATE TABLE New (a int, A int)", 2705, "A int"},
      {"CREATE TABLE New (a int, PRIMARY KEY (b))", 1911, "PRIMARY"},
      {"CREATE TABLE New (a mystery)", 2715, "mystery"},
      {"CREATE INDEX i ON Loan (Nothing)", 1911, "Nothing"},
      {"ALTER TABLE Loan ADD Amt int", 2705, "Amt"},
      {"ALTER TABLE Loan ALTER COLUMN Nothing int", 4924, "Nothing"},
      {"ALTER TABLE Nowhere ADD a int", 4902, "Nowhere"},
      {"DROP TABLE Nowhere", 3701, "Nowhere"},
  };
  for (const Case& c : cases) {
    try {
      Run(c.statement);
      ADD_FAILURE() << "not refused: " << c.statement;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), c.number) << error.what();
      EXPECT_THAT(error.what(), ::testing::HasSubstr(std::string("near '") + c.near));
    }
  }
}

TEST_F(BinderTest, LiteralsTakeTheTypeTheyMeet) {
  struct Case {
    const char* statement;
    Conversion conversion;
    int scale;
    int width;
  };
  const Case cases[] = {
      {"SELECT Due FROM Sch WHERE SchID > '5'", Conversion::kAsInteger, 0, 0},
      {"SELECT Amt FROM Loan WHERE Amt = '5.005'", Conversion::kAsDecimal, 2, 0},
      {"SELECT Amt FROM Loan WHERE '2024-01-31' <= Due", Conversion::kAsDateTime, 0, 0},
      {"SELECT Amt FROM Loan WHERE Day IN ('20240131')", Conversion::kAsDate, 0, 0},
      {"SELECT Amt FROM Loan WHERE Due BETWEEN '' AND getdate()", Conversion::kAsDateTime, 0, 0},
      {"SELECT Amt FROM Loan WHERE Term = '5'", Conversion::kAsText, 0, 0},
      {"SELECT Amt FROM Loan WHERE Term = 5", Conversion::kAsInteger, 0, 0},
      {"SELECT CASE WHEN Amt IS NULL THEN Due ELSE '' END FROM Loan", Conversion::kAsDateTime, 0,
       0},
      {"SELECT isnull(Amt, '0') FROM Loan", Conversion::kAsDecimal, 2, 0},
      {"SELECT Due FROM Loan UNION SELECT ''", Conversion::kAsDateTime, 0, 0},
      {"UPDATE Loan SET Amt = 1.005", Conversion::kAsDecimal, 2, 18},
      {"UPDATE Loan SET Amt = -1.005", Conversion::kAsDecimal, 2, 18},
      {"UPDATE Loan SET Rate = '1'", Conversion::kAsDecimal, 4, 18},
      {"UPDATE Loan SET LoanID = 'x'", Conversion::kAsText, 0, 10},
      {"UPDATE Loan SET Memo = 'x'", Conversion::kAsText, 0, 0},
      {"UPDATE Loan SET Day = '2024-01-31'", Conversion::kAsDate, 0, 0},
      {"UPDATE Loan SET Cnt = '12'", Conversion::kAsInteger, 0, 10},
      {"INSERT INTO Loan (LoanID) SELECT 'x'", Conversion::kAsText, 0, 10},
  };
  for (const Case& c : cases) {
    const std::vector<Translated> translated = Run(c.statement);
    ASSERT_EQ(translated.size(), 1u);
    ASSERT_EQ(translated[0].parameters.size(), 1u) << c.statement;
    const Parameter& parameter = translated[0].parameters[0];
    EXPECT_EQ(parameter.conversion, c.conversion) << c.statement;
    EXPECT_EQ(parameter.scale, c.scale) << c.statement;
    EXPECT_EQ(parameter.width, c.width) << c.statement;
  }
}

TEST_F(BinderTest, ResultColumnsHaveNamesAndTypes) {
  const auto columns =
      Run("SELECT l.*, l.Amt - Rate, Amt * Rate AS Product, Total = SUM(Amt), COUNT(*) [N], "
          "AVG(Cnt) AS Average, Term + 'x', dateadd(d, 1, Day) AS Next, Cnt / 2 AS Half, Amt / 2 "
          "FROM Loan l GROUP BY LoanID, Amt, Rate, Term, Due, Day, Memo, Cnt")[0]
          .columns;
  const std::vector<std::pair<std::string, std::pair<TypeKind, int>>> wanted = {
      {"LoanID", {TypeKind::kText, 0}},     {"Amt", {TypeKind::kDecimal, 2}},
      {"Rate", {TypeKind::kDecimal, 4}},    {"Term", {TypeKind::kText, 0}},
      {"Due", {TypeKind::kDateTime, 0}},    {"Day", {TypeKind::kDate, 0}},
      {"Memo", {TypeKind::kText, 0}},       {"Cnt", {TypeKind::kInteger, 0}},
      {"", {TypeKind::kDecimal, 4}},        {"Product", {TypeKind::kDecimal, 6}},
      {"Total", {TypeKind::kDecimal, 2}},   {"N", {TypeKind::kInteger, 0}},
      {"Average", {TypeKind::kInteger, 0}}, {"", {TypeKind::kText, 0}},
      {"Next", {TypeKind::kDate, 0}},       {"Half", {TypeKind::kInteger, 0}},
      {"", {TypeKind::kDecimal, 8}},
  };
  ASSERT_EQ(columns.size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_EQ(columns[i].name, wanted[i].first);
    EXPECT_EQ(columns[i].type.kind, wanted[i].second.first) << i;
    EXPECT_EQ(columns[i].type.scale, wanted[i].second.second) << i;
  }
}

}  // namespace
}  // namespace kaunter::sql
