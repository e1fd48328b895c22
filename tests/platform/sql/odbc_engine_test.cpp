// The ODBC engine through two real drivers: SQLite's (ANSI, one statement a call, loosely typed)
// and PostgreSQL's (Unicode, batches, true types) with a server of the tests' own.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/waiting.h"
#include "tests/platform/support/error_number.h"
#include "tests/platform/support/test_engine.h"
#include "tests/support/odbc_driver.h"
#include "tests/support/silent_server.h"

namespace kaunter {
namespace {

using sql::OdbcConnection;
using sql::OdbcOutcome;
using sql::OdbcSession;
using testing::PostgresServer;
using testing::TempFolder;

PostgresServer& Server() { return testing::SharedPostgres(); }

// Without a dialect between: what is sent is PostgreSQL's own.
OdbcOutcome RunRaw(const std::string& text) {
  OdbcSession session("Raw", Server().OdbcText());
  return session.Run(text, true);
}

enum class Driver { kSqlite, kPostgres };

void PrintTo(Driver driver, std::ostream* out) {
  *out << (driver == Driver::kSqlite ? "SQLite" : "PostgreSQL");
}

class OdbcEngine : public ::testing::TestWithParam<Driver> {
 protected:
  void SetUp() override {
    if (GetParam() == Driver::kPostgres) {
      RunRaw("DROP SCHEMA public CASCADE; CREATE SCHEMA public");
    }
    main_ = Open("MainConn");
    main_->Execute(
        "CREATE TABLE T (K varchar(20) NOT NULL PRIMARY KEY, Note varchar(200), "
        "Amt decimal(18,2) NOT NULL, Rate decimal(9,4), Term int, Due datetime, "
        "Memo nvarchar(max))");
  }

  std::string Text() {
    if (GetParam() == Driver::kPostgres) return Server().OdbcText();
    return testing::SqliteOdbcText(folder_.File("office 陈.db"));
  }
  std::unique_ptr<Connection> Open(const std::string& name) {
    return OpenOdbc(name, Text(), clock_);
  }
  std::int64_t Count(Connection& connection) {
    return *connection.Query("SELECT COUNT(*) AS N FROM T").Field("n").AsInteger();
  }
  void Insert(const std::string& key, const std::string& amount = "1") {
    main_->Execute("INSERT INTO T (K, Amt) VALUES ('" + key + "', " + amount + ")");
  }

  TempFolder folder_;
  Clock clock_;
  std::unique_ptr<Connection> main_;
};

INSTANTIATE_TEST_SUITE_P(Drivers, OdbcEngine, ::testing::Values(Driver::kSqlite, Driver::kPostgres),
                         [](const auto& driver) {
                           return driver.param == Driver::kSqlite ? "SQLite" : "PostgreSQL";
                         });

TEST_P(OdbcEngine, FetchesEachTypeAsItIsDeclared) {
  const std::string tricky = "陈大文 O'Brien \"x\" [y] ?1 -- z; /* {ts} \r\n\t\\ 😀";
  std::string quoted = tricky;
  quoted.insert(quoted.find('\''), "'");
  struct Row {
    std::string literals;
    std::vector<Value> values;
  };
  const auto money = [](std::int64_t units) { return Value(Money::FromTenThousandths(units)); };
  const Row kRows[] = {
      {"'A', 'plain', 983.33, 0.0150, 12, '2024-01-31'",
       {"A", "plain", money(9833300), money(150), 12, DateTime{2024, 1, 31, 0, 0, 0}}},
      {"'B', '" + quoted + "', -0.05, 12.3456, -7, '2024-02-29 23:59:58'",
       {"B", Value(tricky), money(-500), money(123456), -7, DateTime{2024, 2, 29, 23, 59, 58}}},
      {"'C', NULL, 150.00, NULL, NULL, NULL",
       {"C", Value(), money(1500000), Value(), Value(), Value()}},
      {"'D', '', 9999999999999.99, -1, 2147483647, '1999-12-31'",
       {"D", "", money(99999999999999900), money(-10000), 2147483647,
        DateTime{1999, 12, 31, 0, 0, 0}}},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(main_->Execute("INSERT INTO T (K, Note, Amt, Rate, Term, Due) VALUES (" +
                             row.literals + ")"),
              1);
  }
  const Recordset rows = main_->Query("SELECT K, Note, Amt, Rate, Term, Due FROM T ORDER BY K");
  const FieldType kTypes[] = {FieldType::kText,  FieldType::kText,    FieldType::kMoney,
                              FieldType::kMoney, FieldType::kInteger, FieldType::kDate};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(rows.columns()[i].type, kTypes[i]) << i;
  EXPECT_EQ(rows.columns()[1].width, 200);
  EXPECT_EQ(rows.columns()[2].scale, 2);
  EXPECT_EQ(rows.columns()[3].scale, 4);
  ASSERT_EQ(rows.RowCount(), std::size(kRows));
  for (std::size_t i = 0; i < std::size(kRows); ++i) EXPECT_EQ(rows.rows()[i], kRows[i].values);
}

TEST_P(OdbcEngine, ChineseIsAFieldNameToo) {
  const Recordset rows = main_->Query("SELECT 1 AS \"贷款编号\"");
  EXPECT_EQ(rows.Field("贷款编号"), Value(1));
}

// Texts travel in pieces; a character of two units may lie across their seam.
TEST_P(OdbcEngine, LongTextsComeWhole) {
  for (const std::size_t length : {4093u, 4094u, 4095u, 4096u, 8190u, 100000u}) {
    std::string memo(length, 'x');
    memo += "😀陈''";
    main_->Execute("DELETE FROM T");
    main_->Execute("INSERT INTO T (K, Amt, Memo) VALUES ('A', 1, '" + memo + "')");
    memo.pop_back();
    EXPECT_EQ(main_->Query("SELECT Memo, K FROM T").Field("Memo"), Value(memo)) << length;
  }
}

TEST_P(OdbcEngine, SumsOfMoneyAreExact) {
  for (int i = 0; i < 10; ++i) Insert("K" + std::to_string(i), "0.10");
  EXPECT_EQ(main_->Query("SELECT SUM(Amt) AS S FROM T").Field("S"), Value(Money::FromInteger(1)));
  EXPECT_EQ(main_->Execute("UPDATE T SET Amt = Amt + 983.33 WHERE K < 'K4'"), 4);
  EXPECT_EQ(main_->Execute("UPDATE T SET Amt = 0 WHERE K = 'nobody'"), 0);
  EXPECT_TRUE(main_->Query("SELECT K FROM T WHERE Amt <> 0.10 AND Amt <> 983.43").Eof());
}

TEST_P(OdbcEngine, ABatchStopsAtItsFailure) {
  Insert("A");
  EXPECT_EQ(NumberOf(*main_, "UPDATE T SET Amt = 2; INSERT INTO T (K, Amt) VALUES ('A', 1)"), 2627);
  EXPECT_EQ(NumberOf(*main_, "SELECT K FROM T; SELECT Nosuch FROM T"), 207);
  EXPECT_EQ(Count(*main_), 1);
  // The last statement that gives rows, the last that tells how many it touched.
  const std::string batch =
      "SELECT K FROM T; INSERT INTO T (K, Amt) VALUES ('B', 1); SELECT K, Amt FROM T ORDER BY K; "
      "UPDATE T SET Amt = 3";
  EXPECT_EQ(main_->Query(batch).RowCount(), 2u);
  EXPECT_EQ(main_->Execute("DELETE FROM T WHERE K = 'A'; UPDATE T SET Amt = 4; "
                           "INSERT INTO T (K, Amt) VALUES ('C', 1), ('D', 1)"),
            2);
}

// A failure in the third row is a failure of the statement, asked with or without rows.
TEST_P(OdbcEngine, AFailureInALaterRowSurfaces) {
  for (const char* key : {"1", "2", "3"}) Insert(key, key);
  const std::string divided = "SELECT 10 / (3 - Amt) AS Q FROM T ORDER BY K";
  EXPECT_EQ(NumberOf(*main_, divided), 8134);
  EXPECT_THROW(main_->Query(divided), SqlError);
  EXPECT_EQ(Count(*main_), 3);
}

TEST_P(OdbcEngine, TransactionsHoldTogetherAndComeBack) {
  const auto other = Open("Other");
  main_->BeginTrans();
  Insert("A");
  Insert("B");
  EXPECT_TRUE(main_->InTransaction());
  main_->RollbackTrans();
  EXPECT_FALSE(main_->InTransaction());
  main_->RollbackTrans();  // finds none
  EXPECT_EQ(Count(*other), 0);

  main_->BeginTrans();
  Insert("A");
  EXPECT_EQ(Count(*other), 0);
  main_->CommitTrans();
  EXPECT_EQ(Count(*other), 1);
  EXPECT_THROW(main_->CommitTrans(), SqlError);
  Insert("B");  // outside again: stored at once
  EXPECT_EQ(Count(*other), 2);

  // A transaction with a failed statement can only go back.
  main_->BeginTrans();
  Insert("C");
  EXPECT_EQ(NumberOf(*main_, "INSERT INTO T (K, Amt) VALUES ('A', 1)"), 2627);
  main_->RollbackTrans();
  EXPECT_EQ(Count(*other), 2);

  // Tables go back as well.
  main_->BeginTrans();
  main_->Execute("CREATE TABLE U (K varchar(5))");
  EXPECT_TRUE(main_->Query("SELECT K FROM U").Eof());
  main_->RollbackTrans();
  EXPECT_EQ(NumberOf(*main_, "SELECT K FROM U"), 208);
}

TEST_P(OdbcEngine, ATransactionLeftOpenGoesBackBeforeTheNext) {
  std::string told;
  main_->SetStaleHandler([&](std::string_view name) { told = name; });
  main_->BeginTrans();
  Insert("A");
  main_->BeginTrans();
  Insert("B");
  main_->CommitTrans();
  EXPECT_EQ(told, "MainConn");
  EXPECT_EQ(main_->Query("SELECT K FROM T").Field("K"), Value("B"));

  main_->BeginTrans();
  Insert("C");
  main_ = Open("Again");  // closing rolls back and leaves no lock behind
  Insert("D");
  EXPECT_EQ(Count(*main_), 2);
}

TEST_P(OdbcEngine, FailuresCarryTheServersNumber) {
  main_->Execute("CREATE UNIQUE INDEX OneNote ON T (Note)");
  main_->Execute("INSERT INTO T (K, Note, Amt) VALUES ('陈', 'once', 1)");
  struct Failure {
    const char* statement;
    int number;
    const char* words;
  };
  const Failure kTable[] = {
      {"INSERT INTO T (K, Amt) VALUES ('陈', 1)", 2627, "T"},
      {"INSERT INTO T (K, Note, Amt) VALUES ('B', 'once', 1)", 2601, "Note"},
      {"INSERT INTO T (K, Amt) VALUES ('C', NULL)", 515, "Amt"},
      {"SELECT K FROM Nosuch", 208, "Nosuch"},
      {"SELECT Nosuch FROM T", 207, "Nosuch"},
      {"UPDATE T SET Due = '2024-02-30'", 242, ""},
      {"UPDATE T SET Due = 'soon'", 241, ""},
      {"UPDATE T SET K = '123456789012345678901'", 2628, ""},
      {"SELECT K FROM WHERE", 102, ""},
      {"CREATE TABLE T (K varchar(5))", 2714, ""},
  };
  for (const Failure& row : kTable) {
    std::string words;
    EXPECT_EQ(NumberOf(*main_, row.statement, &words), row.number) << row.statement << words;
    EXPECT_NE(words.find(row.words), std::string::npos) << words;
    EXPECT_EQ(words.find('\n'), std::string::npos) << words;
  }
  EXPECT_EQ(Count(*main_), 1);  // and the connection is as good as before
}

TEST_P(OdbcEngine, TracesStatementsAsTheyStand) {
  std::vector<std::string> traced;
  main_->SetTrace(
      [&](std::string_view, std::string_view statement) { traced.emplace_back(statement); });
  main_->Query("SELECT K FROM T WHERE K = '陈'");
  EXPECT_EQ(traced, std::vector<std::string>{"SELECT K FROM T WHERE K = '陈'"});
}

TEST_P(OdbcEngine, AStatementWithAZeroByteIsNotCutShort) {
  Insert("A");
  const std::string cut("DELETE FROM T\0 WHERE K = 'B'", 28);
  EXPECT_NE(NumberOf(*main_, cut), 0);
  EXPECT_EQ(Count(*main_), 1);
}

// Types that only a server with types of its own tells.
TEST(OdbcPostgres, FetchesByWhatTheDriverTells) {
  OdbcSession session("T", Server().OdbcText() + ";BoolsAsChar=0");
  const OdbcOutcome outcome = session.Run(
      "SELECT true AS b, 7::smallint AS s, 9007199254740993 AS big, 0.1::float8 AS f, "
      "0.123456::numeric(18,6) AS fine, date '2024-02-29' AS d, "
      "timestamp '2024-02-29 10:20:30.987' AS ts, time '10:20:30' AS t, NULL::timestamp AS n",
      true);
  EXPECT_EQ(outcome.rows->rows().at(0),
            (std::vector<Value>{1, 7, std::int64_t{9007199254740993}, 0.1, 0.123456,
                                DateTime{2024, 2, 29, 0, 0, 0}, DateTime{2024, 2, 29, 10, 20, 30},
                                "10:20:30", Value()}));
  try {
    session.Run("SELECT 12345678901234567890.12::numeric(24,2) AS much", true);
    ADD_FAILURE() << "an amount beyond what money holds went through";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 8115);
    EXPECT_NE(std::string(error.what()).find("much"), std::string::npos);
  }
}

// After a failed conversion SQL Server has given the transaction up: what follows would be stored
// by itself. No later statement may pass until the rollback.
TEST(OdbcPostgres, NothingFollowsAFailureThatEndsATransaction) {
  const Clock clock;
  const auto connection = OpenOdbc("T", Server().OdbcText(), clock);
  connection->BeginTrans();
  connection->Execute("CREATE TABLE Words (K nvarchar(5)); INSERT INTO Words VALUES ('x')");
  EXPECT_EQ(NumberOf(*connection, "SELECT K+1 FROM Words"), 245);
  EXPECT_EQ(NumberOf(*connection, "SELECT 1"), 3930);
  EXPECT_THROW(connection->CommitTrans(), SqlError);
  connection->RollbackTrans();
  EXPECT_EQ(NumberOf(*connection, "SELECT 1"), 0);
}

// While the server thinks: no row has come yet.
TEST(OdbcPostgres, AStopReachesAServerThatThinks) {
  const Clock clock;
  const auto connection = OpenOdbc("MainConn", Server().OdbcText(), clock);
  RunRaw("DROP TABLE IF EXISTS \"Many\"");
  connection->Execute("CREATE TABLE Many (K int)");
  RunRaw("INSERT INTO \"Many\" SELECT generate_series(1, 20000)");
  const std::string endless =
      "SELECT COUNT(*) FROM Many AS a, Many AS b, Many AS c WHERE a.K+b.K<>c.K";
  using Time = std::chrono::steady_clock;
  // The second time the shape is prepared, the third time it is known.
  for (int run = 1; run <= 3; ++run) {
    const auto start = Time::now();
    Time::time_point asked;
    {
      const MayStop stop([&] {
        if (Time::now() - start < std::chrono::milliseconds(200)) return false;
        if (asked == Time::time_point()) asked = Time::now();
        return true;
      });
      EXPECT_THROW(connection->Query(endless), SqlError) << run;
    }
    ASSERT_NE(asked, Time::time_point()) << run;
    EXPECT_LT(Time::now() - asked, std::chrono::seconds(3)) << run;
    EXPECT_EQ(connection->Query("SELECT COUNT(*) FROM Many").Field(0), Value(20000)) << run;
  }
  // Within a transaction the statement alone is lost.
  connection->BeginTrans();
  connection->Execute("INSERT INTO Many VALUES (0)");
  {
    const MayStop stop([] { return true; });
    EXPECT_THROW(connection->Query(endless), SqlError);
  }
  EXPECT_EQ(connection->Query("SELECT COUNT(*) FROM Many").Field(0), Value(20001));
  connection->RollbackTrans();
  EXPECT_EQ(connection->Query("SELECT COUNT(*) FROM Many").Field(0), Value(20000));
  // Whoever does not stop gets all.
  const MayStop stop([] { return false; });
  EXPECT_EQ(connection->Query("SELECT COUNT(*) FROM Many WHERE K<=100").Field(0), Value(100));
}

// The road of the connect step: the office's string, a source known to the machine by name.
TEST(OdbcSources, AMachinesSourceIsFoundByName) {
  const TempFolder folder;
  std::ofstream(folder.File("odbc.ini"))
      << "[kaunter_test_office]\nDriver=" << testing::PostgresDriver()
      << "\nServername=127.0.0.1\nPort=" << Server().port() << "\nUsername=nobody\n";
  std::ofstream(folder.File("odbcinst.ini")) << "[ODBC]\nTrace=No\n";
  setenv("ODBCSYSINI", folder.path().c_str(), 1);
  setenv("ODBCINI", folder.File("odbc.ini").c_str(), 1);
  const std::string office =
      "Provider=MSDASQL.1;Password=x;Persist Security Info=True;User ID=kaunter;Data Source=";
  const Clock clock;
  const auto connection = OpenConnection(
      "MainConn", office + "kaunter_test_office;Initial Catalog=postgres", {}, clock);
  EXPECT_EQ(connection->EngineName(), "PostgreSQL");
  // The account is the office's, not that of the machine's source ("nobody", whom the server does
  // not know).
  EXPECT_EQ(connection->Query("SELECT 1").Field(0), Value(1));
  try {
    OpenConnection("MainConn", office + "kaunter_test_nosuch", {}, clock);
    ADD_FAILURE() << "a source that nobody knows was opened";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 4060);
    EXPECT_NE(std::string(error.what()).find("kaunter_test_nosuch"), std::string::npos);
  }
  unsetenv("ODBCSYSINI");
  unsetenv("ODBCINI");
}

TEST(OdbcSources, ConnectionsOfSeveralEnginesStandSideBySide) {
  const TempFolder folder;
  Clock clock;
  OpenSqlite("new", folder.File("own.db"), /*create=*/true, clock);
  DataSources sources;
  sources.Add("office", {DataSource::Kind::kOdbc, Server().OdbcText()});
  sources.Add("sms", {DataSource::Kind::kOdbc, testing::SqliteOdbcText(folder.File("sms.db"))});
  sources.Add("own", {DataSource::Kind::kEmbedded, folder.File("own.db")});
  std::vector<std::unique_ptr<Connection>> open;
  for (const char* source : {"OFFICE", "sms", "own"}) {
    open.push_back(OpenConnection(source,
                                  std::string("Provider=MSDASQL.1;Password=x;User ID=y;Initial "
                                              "Catalog=postgres;Data Source=") +
                                      source,
                                  sources, clock));
  }
  EXPECT_EQ(open[0]->EngineName(), "PostgreSQL");
  RunRaw("DROP TABLE IF EXISTS \"Side\"");
  for (const auto& connection : open) {
    connection->Execute("CREATE TABLE Side (Amt decimal(18,2))");
    connection->BeginTrans();
  }
  for (const auto& connection : open) connection->Execute("INSERT INTO Side VALUES (0.5)");
  open[0]->CommitTrans();
  open[1]->RollbackTrans();
  open[2]->CommitTrans();
  const int kRows[] = {1, 0, 1};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(open[i]->Query("SELECT COUNT(*) FROM Side").Field(0), Value(kRows[i])) << i;
  }
}

// FreeTDS with nobody behind the port: told within a bounded time, with the server's name and
// without the password.
TEST(OdbcSources, AnSqlServerThatIsNotThereIsTold) {
  const auto begin = std::chrono::steady_clock::now();
  try {
    OpenOdbc("smsconn",
             "Driver=" + testing::FreeTdsDriver() +
                 ";TDS_Version=7.4;Server=127.0.0.1;Port=1;UID=sms;PWD=hush;Database=SMS",
             Clock());
    ADD_FAILURE() << "connected to nothing";
  } catch (const SqlError& error) {
    const std::string words = error.what();
    EXPECT_EQ(error.number(), 4060);
    for (const char* part : {"smsconn", "127.0.0.1", "SMS"}) {
      EXPECT_NE(words.find(part), std::string::npos) << words;
    }
    EXPECT_EQ(words.find("hush"), std::string::npos) << words;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

// A server that takes the call and never speaks: the connection text says how long a counter waits.
TEST(OdbcSources, AServerThatNeverAnswersIsGivenUpAfterTheTimeThatTheTextNames) {
  const test::SilentServer server(test::SilentServer::Manner::takes_the_call);
  DataSources sources;
  sources.Add("AMLA", {DataSource::Kind::kOdbc,
                       "Driver=" + testing::FreeTdsDriver() +
                           ";TDS_Version=7.4;Server=127.0.0.1;Port=" + server.port()});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(OpenConnection("AMLA", "Data Source=AMLA;Initial Catalog=AMLA;Connect Timeout=2",
                              sources, Clock()),
               SqlError);
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::seconds(1)) << "it was given no time at all";
  EXPECT_LT(waited, std::chrono::seconds(8));
}

}  // namespace
}  // namespace kaunter
