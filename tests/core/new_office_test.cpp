#include "core/new_office.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "core/schema_text.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

TEST(NewOfficeTest, TablesHaveTheShapesThatStatementsWithoutAColumnListNeed) {
  Office office(Office::State::base);
  auto shape = office.Shape();
  EXPECT_EQ(shape.size(), 51u);
  EXPECT_EQ(shape["CustMast"].size(), 98u);
  EXPECT_EQ(shape["LoanMast"].size(), 165u);
  EXPECT_EQ(shape["PaymentMast"].size(), 49u);
  EXPECT_THAT(shape["SchMast"],
              ElementsAre("SchID", "LoanID", "CustID", "DueDate", "PayableAmt", "CapitalAmt",
                          "InterestAmt", "IntChargeAmt", "IntAmt", "Payment", "CapitalPayment",
                          "InterestPayment", "DragInt", "DragIntPaid", "LateInt", "LoanBal",
                          "PayExtra", "IntDate", "FIntAmt"));
  EXPECT_THAT(shape["SchMast2"], ElementsAre("SchID", "LoanID", "CustID", "DueDate", "PayableAmt",
                                             "CapitalAmt", "InterestAmt", "LoanBal", "FIntAmt"));
  EXPECT_THAT(shape["NumberMast"], ElementsAre("CustID", "LoanNo", "PaymentNo"));
  // Added by patches, which would fail on a column that is there.
  for (const char* column : {"AMLACode", "OrgDueDate", "LastDownDate"}) {
    EXPECT_THAT(shape["LoanMast"], Not(Contains(column)));
  }
  for (const char* column : {"AMLA", "DisableSTR", "SQLPath", "MyTaxClientID"}) {
    EXPECT_THAT(shape["CompMast"], Not(Contains(column)));
  }
}

TEST(NewOfficeTest, TheStatementsThatNeedASpecialShapeRun) {
  Office office(Office::State::base);
  office.Run("INSERT INTO  Systemast values ('IDEAL','IDEAL UPLOAD')");
  office.Run("UPDATE Systemast SET [Value]='2024-01-31' WHERE ID='LateIntDate'");
  EXPECT_EQ(office.Scalar("SELECT [Value] FROM Systemast WHERE ID='LateIntDate'"), "2024-01-31");
  office.Run("INSERT INTO SchMast2 VALUES (2,'L1','C1','2024-01-31',100,90,10,0,1)");
  office.Run("INSERT INTO SchMast2 VALUES (10,'L1','C1','2024-02-29',100,95,5,0,1)");
  office.Run(
      "INSERT INTO SchMast SELECT "
      "SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,0,0,"
      "0,0,0,0,0,0,LoanBal,0,DueDate,FIntAmt FROM Schmast2");
  EXPECT_EQ(office.Scalar("SELECT CapitalAmt FROM SchMast WHERE SchID > '5'"), "95");
  // Columns that an insert leaves out are '' and 0, never Null.
  office.Run("INSERT INTO LoanMast (LoanID,LoanTerm) VALUES ('L1','12')");
  EXPECT_EQ(office.Scalar("SELECT LoanAmt+LoanBal FROM LoanMast WHERE AgreementNo='' AND "
                          "LoanTerm-2=10"),
            "0");
  office.Run("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo) VALUES ('L1',1,'Q1')");
  EXPECT_EQ(office.Scalar("SELECT ChqStatus FROM ChqMast WHERE PayID=''"), "NEW");
  EXPECT_THROW(office.Run("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo) VALUES ('L1',2,'q1 ')"),
               SqlError);
  office.Run("INSERT INTO CashBook (CompCode) VALUES ('HQ')");
  EXPECT_EQ(office.Scalar("SELECT DocID FROM CashBook"), "1");
}

TEST(NewOfficeTest, FirstRowsAreThere) {
  Office office(Office::State::base);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LinkAccMast WHERE LinkAccCode=''"), "21");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SMSField"), "17");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CompanyProfile"), "1");
  EXPECT_EQ(office.Scalar("SELECT CompCode FROM CompMast"), "HQ");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CustRaceMast"), "6");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM Systemast"), "1");  // no key of a patch
}

TEST(NewOfficeTest, ADeathOnTheWayLeavesAnEmptyDatabase) {
  TempFolder folder;
  Clock clock;
  const std::string file = folder.File("new.db");
  for (int n : {1, 2, 40, 90, 140}) {
    auto main = OpenSqlite("MainConn", file, true, clock);
    int left = n;
    main->SetFaultHook([&](std::string_view sql) {
      if (sql != "ROLLBACK" && --left == 0) throw SqlError(1105, "disk full");
    });
    EXPECT_THROW(CreateEmptyOffice(*main, "MainUser"), SqlError) << n;
    main->SetFaultHook(nullptr);
    EXPECT_FALSE(main->InTransaction());
    EXPECT_TRUE(IsEmptyDatabase(*main)) << n;
  }
  auto main = OpenSqlite("MainConn", file, true, clock);
  CreateEmptyOffice(*main, "MainUser");
  EXPECT_FALSE(IsEmptyDatabase(*main));
  EXPECT_EQ(ReadSetting(*main, "KEY"), "MainUser");
}

TEST(SchemaTextTest, OtherConnectionsHaveTheirScripts) {
  TempFolder folder;
  Clock clock;
  const struct {
    const char* script;
    const char* query;
  } kCases[] = {
      {"logs", "SELECT TrxDate,UserID,UserName,ConmpCode,Type,Module,TrxID,Remarks FROM TransLogs"},
      {"sms", "SELECT SMSID,CustID,HP,SMSMsg,SMSStatus,DateSent FROM SMSList"},
      {"accounting", "SELECT DocNo,DocDate,CreditorCode,CreditAccNo,ProjNo,Amount FROM TM_APCN"},
      {"central", "SELECT SID,SQLStatement,Quote FROM DataExport"},
      {"mykad", "SELECT NewIC,NameGMPC,photo FROM JPNInfo"},
  };
  for (const auto& c : kCases) {
    auto connection = OpenSqlite("Other", folder.File(c.script), true, clock);
    RunScript(*connection, SchemaText(c.script));
    EXPECT_TRUE(connection->Query(c.query).Eof()) << c.script;
  }
}

// Rules of SQL Server that the embedded engine does not know.
TEST(SchemaTextTest, BaseScriptKeepsTheRulesOfSqlServer) {
  const std::string script(SchemaText("base"));
  EXPECT_TRUE(std::all_of(script.begin(), script.end(),
                          [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
  std::set<std::string> names;
  int defaults = 0;
  std::map<std::string, int> bytes;  // of a key column, "table.column"
  std::string table;
  const std::regex table_line("CREATE TABLE (\\w+) \\(");
  const std::regex column_line("  (\\w+) +(nvarchar|decimal|datetime|int)(\\((\\w+)[^)]*\\))?.*");
  const std::regex constraint("CONSTRAINT (\\w+)");
  const std::regex index_line("CREATE (UNIQUE )?INDEX (\\w+) ON (\\w+) \\(([^)]*)\\);");
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("--")) continue;
    std::smatch match;
    if (std::regex_search(line, match, table_line)) table = match[1];
    if (std::regex_search(line, match, constraint)) {
      EXPECT_TRUE(names.insert(match[1]).second) << line;
    }
    if (line.find(" DEFAULT ") != std::string::npos) {
      ++defaults;
      EXPECT_NE(line.find("CONSTRAINT DF_" + table + "_"), std::string::npos) << line;
    }
    if (std::regex_match(line, match, column_line)) {
      const bool text = match[2] == "nvarchar";
      bytes[table + "." + match[1].str()] = !text               ? 9
                                            : match[4] == "max" ? 100000
                                                                : 2 * std::stoi(match[4]);
    }
    if (std::regex_match(line, match, index_line)) {
      EXPECT_TRUE(names.insert(match[2]).second) << line;
      int width = 0;
      std::string expected = "IX_" + match[3].str();
      std::istringstream columns(match[4].str());
      for (std::string column; columns >> column;) {
        column.erase(std::remove(column.begin(), column.end(), ','), column.end());
        ASSERT_TRUE(bytes.contains(match[3].str() + "." + column)) << line;
        width += bytes[match[3].str() + "." + column];
        expected += "_" + column;
      }
      EXPECT_LE(width, 900) << line;
      EXPECT_EQ(match[2], expected);
    }
  }
  EXPECT_GT(defaults, 500);
}

}  // namespace
}  // namespace kaunter
