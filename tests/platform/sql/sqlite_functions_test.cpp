// The functions and the collation of the embedded engine on a bare handle. Expected values are the
// server's documented behaviour.
#include "platform/sql/sqlite/sqlite_functions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sql/text.h"
#include "platform/sql/translator/functions.h"

namespace kaunter::sql {
namespace {

class SqliteFunctions : public ::testing::Test {
 protected:
  SqliteFunctions() : statement_clock_(clock_) {
    clock_.Set({2024, 3, 15, 14, 5, 9});
    sqlite3_open(":memory:", &db_);
    RegisterSqliteFunctions(db_, &statement_clock_);
  }
  ~SqliteFunctions() override { sqlite3_close(db_); }

  // The first field as text, null for Null, or the error text.
  std::string Ask(const std::string& expression) {
    statement_clock_.NextStatement();
    sqlite3_stmt* statement = nullptr;
    std::string answer = "no row";
    if (sqlite3_prepare_v2(db_, ("SELECT " + expression).c_str(), -1, &statement, nullptr) !=
        SQLITE_OK) {
      answer = sqlite3_errmsg(db_);
    } else {
      const int code = sqlite3_step(statement);
      if (code == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        answer = text == nullptr ? "null" : text;
      } else if (code != SQLITE_DONE) {
        answer = sqlite3_errmsg(db_);
      }
    }
    sqlite3_finalize(statement);
    return answer;
  }

  struct Case {
    const char* expression;
    const char* answer;  // "[number]" for a refusal
  };
  void Check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      std::string answer = Ask(c.expression);
      if (c.answer[0] == '[' && answer.find(']') != std::string::npos) {
        answer = answer.substr(0, answer.find(']') + 1);
      }
      EXPECT_EQ(answer, c.answer) << c.expression;
    }
  }

  Clock clock_;
  StatementClock statement_clock_;
  sqlite3* db_ = nullptr;
};

TEST_F(SqliteFunctions, EveryPromisedFunctionIsThere) {
  // Registration itself fails on a missing one; here each is found by name with its arguments.
  for (const FunctionSignature& f : kFunctions) {
    sqlite3_stmt* statement = nullptr;
    for (int count = f.min_arguments; count <= f.max_arguments; ++count) {
      std::string sql = std::string("SELECT ") + f.name + "(";
      for (int i = 0; i < count; ++i) sql += i == 0 ? "NULL" : ",NULL";
      EXPECT_EQ(sqlite3_prepare_v2(db_, (sql + ")").c_str(), -1, &statement, nullptr), SQLITE_OK)
          << sql;
      sqlite3_finalize(statement);
    }
  }
}

TEST_F(SqliteFunctions, RoundingIsDecidedOnTheDecimal) {
  Check({
      {"k_round(983.33 - 983.13, 2)", "0.2"},
      {"k_round(0.285, 2)", "0.29"},
      {"k_round(1.005, 2)", "1.01"},
      {"k_round(2.675, 2)", "2.68"},
      {"k_round(-2.675, 2)", "-2.68"},
      {"k_round(-0.004, 2)", "0.0"},
      {"k_round(0.1 + 0.2, 2)", "0.3"},
      {"k_round(276.9149999, 2)", "276.91"},
      {"k_round(89999999999999.995, 2)", "90000000000000.0"},
      {"k_round(90000000000001.0, 2)", "[8115]"},
      {"k_round(150, 2)", "150"},
      {"k_round(2.5, 0)", "3.0"},
      {"k_round(-2.5, 0)", "-3.0"},
      {"k_round_tsql(1234.567, -2)", "1200.0"},
      {"k_round_tsql(1250, -2)", "1300"},
      {"k_round_tsql(-1250, -2)", "-1300"},
      {"k_round_tsql(1249, -2)", "1200"},
      {"k_round_tsql(2.37, 1, 1)", "2.3"},
      {"k_round_tsql(2.3, 1, 1)", "2.3"},
      {"k_round_tsql(7, 2)", "7"},
      {"k_mod(5.3, 0.1)", "0"},
      {"k_mod(-7, 3)", "-1"},
      {"k_mod(7, 0)", "[8134]"},
      {"k_divisor(0.0)", "[8134]"},
      {"k_power(2, 10)", "1024"},
      {"k_sqrt(-1)", "[3623]"},
      {"k_ceiling(2.1)", "3.0"},
      {"k_floor(-2.1)", "-3.0"},
  });
}

TEST_F(SqliteFunctions, Conversions) {
  Check({
      {"k_to_int('12')", "12"},
      {"k_to_int(12.9)", "12"},
      {"k_to_int(-12.9)", "-12"},
      {"k_to_int('')", "0"},
      {"k_to_int(' 7 ')", "7"},
      {"k_to_int('x')", "[245]"},
      {"k_to_int('12.9')", "[245]"},
      {"k_to_int('99999999999999999999')", "[248]"},
      {"k_to_int(NULL)", "null"},
      {"k_to_dec('1234.565', 2)", "1234.57"},
      {"k_to_dec('-0.005', 2)", "-0.01"},
      {"k_to_dec('.5', 2)", "0.5"},
      {"k_to_dec('5.', 2)", "5"},
      {"k_to_dec('', 2)", "[8114]"},
      {"k_to_dec('1,234.50', 2)", "[8114]"},
      {"k_to_dec('12a', 2)", "[8114]"},
      {"k_to_dec('.', 2)", "[8114]"},
      {"k_to_float('1.5e3')", "1500.0"},
      {"k_to_float('x')", "[8114]"},
      {"k_text(150, 'd2')", "150.00"},
      {"k_text(983.3, 'd2')", "983.30"},
      {"k_text(-0.5, 'd2')", "-0.50"},
      {"k_text(-0.001, 'd2')", "0.00"},
      {"k_text(1234567.0, 'f')", "1.23457e+006"},
      {"k_text(0.1, 'f')", "0.1"},
      {"k_text('2024-01-05', 'dt')", "Jan  5 2024 12:00AM"},
      {"k_text('2024-01-31 13:07:00', 'dt')", "Jan 31 2024  1:07PM"},
      {"k_text('2024-01-31 13:07:00', 'da')", "2024-01-31"},
      {"k_check_text('abc  ', 3, 'C')", "abc"},
      {"k_check_text('abcd', 3, 'C')", "[2628]"},
      {"k_check_text('陈陈陈', 3, 'C')", "陈陈陈"},
      {"k_isnumeric('1,234.50') || k_isnumeric('') || k_isnumeric(NULL) || k_isnumeric('1e3')",
       "1001"},
  });
}

TEST_F(SqliteFunctions, Text) {
  Check({
      {"k_len('abc  ')", "3"},
      {"k_len('陈 ')", "1"},
      {"k_upper('é陈ß')", "É陈ß"},
      {"k_lower('ÉΣЖ')", "éσж"},
      {"k_left('陈大文', 2)", "陈大"},
      {"k_left('ab', -1)", "[536]"},
      {"k_right('陈大文', 1)", "文"},
      {"k_right('ab', 5)", "ab"},
      {"k_substring('abcdef', 2, 3)", "bcd"},
      {"k_substring('abcdef', 0, 3)", "ab"},
      {"k_substring('abcdef', -2, 3)", ""},
      {"k_substring('abcdef', 5, 9)", "ef"},
      {"k_substring('abc', 1, -1)", "[537]"},
      {"k_charindex('B', 'abcb')", "2"},
      {"k_charindex('b', 'abcb', 3)", "4"},
      {"k_charindex('x', 'abc')", "0"},
      {"k_charindex('', 'abc')", "0"},
      {"k_patindex('%[0-9]%', 'ab12')", "3"},
      {"k_patindex('%x%', 'ab12')", "0"},
      {"k_replace('aXbx', 'x', '-')", "a-b-"},
      {"k_replace('abc', '', '-')", "abc"},
      {"k_stuff('abcdef', 2, 3, 'xy')", "axyef"},
      {"k_stuff('abc', 9, 1, 'x')", "null"},
      {"k_reverse('ab陈')", "陈ba"},
      {"k_replicate('ab', 3)", "ababab"},
      {"k_replicate('ab', 99999999)", "[8115]"},
      {"k_str(123.456, 6, 1)", " 123.5"},
      {"k_str(123.456, 5, 3)", "123.5"},
      {"k_str(123456, 3, 0)", "***"},
      {"k_ascii('A')", "65"},
  });
}

TEST_F(SqliteFunctions, LikeKnowsClassesAndIgnoresCaseAndTrailingBlanks) {
  Check({
      {"'Tan Ah Kow' LIKE '%AH%'", "1"},
      {"'ABC' LIKE 'a_c'", "1"},
      {"'ac' LIKE 'a_c'", "0"},
      {"'abc  ' LIKE 'abc'", "1"},
      {"'abc' LIKE 'abc '", "0"},
      {"'L5' LIKE 'L[0-9]'", "1"},
      {"'LX' LIKE 'L[^0-9]'", "1"},
      {"'L5' LIKE 'L[^0-9]'", "0"},
      {"'L-' LIKE 'L[a-c-]'", "1"},
      {"'50%' LIKE '50[%]'", "1"},
      {"'a[b' LIKE 'a[[]b'", "1"},
      {"'a' LIKE '[a'", "0"},
      {"'a' LIKE '[]'", "0"},
      {"'a*c' LIKE 'a*c'", "1"},
      {"'abc' LIKE 'a*c'", "0"},
      {"'ÉCOLE' LIKE 'é%'", "1"},
      {"'陈大文' LIKE '陈_文'", "1"},
      {"'aXbXc' LIKE '%x%x%'", "1"},
      {"'aab' LIKE '%ab'", "1"},
      {"'a%b' LIKE 'a!%b' ESCAPE '!'", "1"},
      {"'axb' LIKE 'a!%b' ESCAPE '!'", "0"},
      {"'' LIKE '%'", "1"},
      {"NULL LIKE 'a'", "null"},
  });
}

TEST_F(SqliteFunctions, Dates) {
  Check({
      {"k_now()", "2024-03-15 14:05:09"},
      {"k_to_datetime('')", "1900-01-01"},
      {"k_to_datetime('20240131')", "2024-01-31"},
      {"k_to_datetime('2024/1/5 9:05 PM')", "2024-01-05 21:05:00"},
      {"k_to_datetime('2024-01-31T10:20:30.997')", "2024-01-31 10:20:30"},
      {"k_to_datetime('2024-01-31 00:00:00')", "2024-01-31"},
      {"k_to_datetime('12:00 AM')", "1900-01-01"},
      {"k_to_datetime('Jan 31 2024  1:07PM')", "2024-01-31 13:07:00"},
      {"k_to_datetime(1.5)", "1900-01-02 12:00:00"},
      {"k_to_datetime('2024-02-30')", "[242]"},
      {"k_to_datetime('31-01-2024')", "[241]"},
      {"k_to_datetime('soon')", "[241]"},
      {"k_to_datetime('2024-01-31 25:00')", "[242]"},
      {"k_to_datetime('1752-12-31')", "[242]"},
      {"k_to_date('2024-01-31 10:00:00')", "2024-01-31"},
      {"k_isdate('2024-02-30') || k_isdate('') || k_isdate('2024-02-29')", "001"},
      {"k_parse_date('31/01/2024', 103)", "2024-01-31"},
      {"k_parse_date('31-01-2024', 105)", "2024-01-31"},
      {"k_parse_date('01/31/2024', 101)", "2024-01-31"},
      {"k_parse_date('13/13/2024', 103)", "[242]"},
      {"k_parse_date('31/01/2024', 99)", "[281]"},
      {"k_convert('2024-01-31 13:07:08', 103)", "31/01/2024"},
      {"k_convert('2024-01-31 13:07:08', 105)", "31-01-2024"},
      {"k_convert('2024-01-31 13:07:08', 112)", "20240131"},
      {"k_convert('2024-01-31', 120)", "2024-01-31 00:00:00"},
      {"k_convert('2024-01-31 13:07:08', 108)", "13:07:08"},
      {"k_convert('2024-01-31', 12)", "240131"},
      {"k_convert('2024-01-31', 106)", "31 Jan 2024"},
      {"k_dateadd('month', 1, '2024-01-31')", "2024-02-29"},
      {"k_dateadd('month', -1, '2024-03-31')", "2024-02-29"},
      {"k_dateadd('day', -1, '2024-03-01')", "2024-02-29"},
      {"k_dateadd('year', 1, '2024-02-29')", "2025-02-28"},
      {"k_dateadd('hour', 25, '2024-01-31')", "2024-02-01 01:00:00"},
      {"k_dateadd('year', 8000, '2024-01-31')", "[517]"},
      {"k_dateadd('year', -300, '2024-01-31')", "[517]"},
      {"k_datediff('month', '2024-01-31', '2024-02-01')", "1"},
      {"k_datediff('year', '2023-12-31', '2024-01-01')", "1"},
      {"k_datediff('day', '2024-02-28 23:59:59', '2024-03-01')", "2"},
      {"k_datediff('week', '2024-03-16', '2024-03-17')", "1"},
      {"k_datediff('hour', '2024-01-01 01:59:00', '2024-01-01 02:00:00')", "1"},
      {"k_datepart('weekday', '2024-03-17')", "1"},
      {"k_datepart('week', '2024-01-07')", "2"},
      {"k_datepart('iso_week', '2021-01-03')", "53"},
      {"k_datepart('dayofyear', '2024-12-31')", "366"},
      {"k_datepart('quarter', '2024-04-01')", "2"},
      {"k_datename('month', '2024-01-31')", "January"},
      {"k_datename('weekday', '2024-03-17')", "Sunday"},
      {"k_eomonth('2024-01-15', 1)", "2024-02-29"},
      {"k_date_plus('2024-01-31', 1)", "2024-02-01"},
      {"k_date_plus('2024-01-31', 0.5)", "2024-01-31 12:00:00"},
  });
}

TEST_F(SqliteFunctions, SumsAreExact) {
  const std::string ten_cents =
      "(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<1000) "
      "SELECT k_sum(0.1, 2) FROM n)";
  Check({
      {ten_cents.c_str(), "100"},
      {"k_sum(v, 2) FROM (SELECT 983.33 AS v UNION ALL SELECT -983.13)", "0.2"},
      {"k_sum(v, 2) FROM (SELECT 0.1 AS v UNION ALL SELECT -0.1)", "0"},
      {"k_sum(v, 2) FROM (SELECT 1 AS v WHERE 0)", "null"},
      {"k_sum(v, 2) FROM (SELECT NULL AS v UNION ALL SELECT 1.5)", "1.5"},
      {"k_avg(v, 6) FROM (SELECT 1.0 AS v UNION ALL SELECT 1.0 UNION ALL SELECT 2.0)", "1.333333"},
      {"k_avg_int(v) FROM (SELECT 1 AS v UNION ALL SELECT 2)", "1"},
      {"k_avg_int(v) FROM (SELECT -1 AS v UNION ALL SELECT -2)", "-1"},
      {"(SELECT k_one(v) FROM (SELECT 7 AS v))", "7"},
      {"(SELECT k_one(v) FROM (SELECT 7 AS v WHERE 0))", "null"},
      {"(SELECT k_one(v) FROM (SELECT 7 AS v UNION ALL SELECT 8))", "[512]"},
  });
}

TEST_F(SqliteFunctions, TheCollationOrdersTextAsOneWhole) {
  const struct {
    const char* a;
    const char* b;
    int order;
  } kCases[] = {
      {"AB0001 ", "ab0001", 0},
      {"  ", "", 0},
      {"É", "é", 0},
      {"Σ", "σ", 0},
      {"ς", "σ", 0},
      {"Ж", "ж", 0},
      {"K", "k", 0},
      {"ı", "i", -2},
      {"a", "b", -1},
      {"a", "ab", -1},
      {"陈", "陳", -1},
      {"z", "陈", -1},
      {"aé", "aF", 1},
      {"ab ", "ab c", -1},
      {"\xff", "a", 1},
      {"_", "A", -1},
  };
  for (const auto& c : kCases) {
    const int order = CompareText(c.a, c.b);
    EXPECT_EQ(order, -CompareText(c.b, c.a)) << c.a << "|" << c.b;
    if (c.order == -2) {
      EXPECT_NE(order, 0) << c.a << "|" << c.b;
    } else {
      EXPECT_EQ(order, c.order) << c.a << "|" << c.b;
    }
  }
  // A total order: whatever three are taken, a<=b and b<=c give a<=c.
  const std::vector<std::string> texts = {"",  " ", "a", "A ", "ab", "aé",   "aE",    "é", "\xc3",
                                          "K", "k", "ſ", "s",  "陈", "\xff", "a\x01", "S"};
  for (const auto& a : texts) {
    for (const auto& b : texts) {
      for (const auto& c : texts) {
        if (CompareText(a, b) <= 0 && CompareText(b, c) <= 0) {
          EXPECT_LE(CompareText(a, c), 0) << a << "|" << b << "|" << c;
        }
      }
    }
  }
}

}  // namespace
}  // namespace kaunter::sql
