// Batches cut into statements, and statements into shapes and literals.
#include "platform/sql/translator/lexer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {
namespace {

using ::testing::ElementsAre;
using Texts = std::vector<std::string>;

Texts Split(std::string_view batch) {
  Texts statements;
  SplitBatch(batch, &statements);
  return statements;
}

TEST(SplitBatch, CutsWhereTheNextStatementBegins) {
  struct Case {
    const char* batch;
    Texts statements;
  };
  const Case cases[] = {
      {"", {}},
      {" ; ;-- nothing\n", {}},
      {"DELETE FROM t; DELETE FROM u;", {"DELETE FROM t", "DELETE FROM u"}},
      {"DELETE t DELETE u", {"DELETE t", "DELETE u"}},
      // What looks like an end inside a text, a name or a comment
      {"UPDATE t SET a='x;\nDELETE u' -- ; DELETE\nWHERE [b;c]=\"d;e\" /* ; /* nested */ SELECT */",
       {"UPDATE t SET a='x;\nDELETE u' -- ; DELETE\nWHERE [b;c]=\"d;e\""}},
      {"SELECT 'it''s; fine' SELECT 2", {"SELECT 'it''s; fine'", "SELECT 2"}},
      // The second word of a statement that could begin one
      {"INSERT INTO t SELECT 1 SELECT 2", {"INSERT INTO t SELECT 1", "SELECT 2"}},
      {"INSERT t VALUES (1) SELECT 2", {"INSERT t VALUES (1)", "SELECT 2"}},
      {"INSERT t (a) VALUES ((SELECT 1)) UPDATE t SET a=1 SET NOCOUNT ON",
       {"INSERT t (a) VALUES ((SELECT 1))", "UPDATE t SET a=1", "SET NOCOUNT ON"}},
      {"SELECT 1 UNION ALL SELECT 2 UNION SELECT 3",
       {"SELECT 1 UNION ALL SELECT 2 UNION SELECT 3"}},
      {"ALTER TABLE t ALTER COLUMN a int ALTER TABLE t DROP COLUMN b DROP TABLE u",
       {"ALTER TABLE t ALTER COLUMN a int", "ALTER TABLE t DROP COLUMN b", "DROP TABLE u"}},
      {"BEGIN TRAN UPDATE t SET a=1 COMMIT", {"BEGIN TRAN", "UPDATE t SET a=1", "COMMIT"}},
      {"WITH a AS (SELECT 1 AS x) SELECT x FROM a SELECT 2",
       {"WITH a AS (SELECT 1 AS x) SELECT x FROM a", "SELECT 2"}},
      {"SELECT (SELECT 1; SELECT 2", {"SELECT (SELECT 1; SELECT 2"}},
  };
  for (const Case& c : cases) EXPECT_EQ(Split(c.batch), c.statements) << c.batch;
}

TEST(SplitBatch, TakesTheLiteralsOut) {
  const std::vector<Shape> shapes = SplitBatch(
      "SELECT 'a''b', N'陈', 12, 1.50, .5, 1e3 FROM t WHERE d={ts '2024-01-31'}", nullptr);
  ASSERT_EQ(shapes.size(), 1u);
  EXPECT_THAT(shapes[0].literals,
              ElementsAre("a'b", "陈", "12", "1.50", ".5", "1e3", "2024-01-31"));
}

TEST(SplitBatch, KeepsWhatIsNoParameterInTheShape) {
  const std::vector<Shape> shapes = SplitBatch(
      "SELECT a AS 'NextCall', b 'B''s', convert(varchar(10), c, 103) FROM t WHERE x=5 "
      "ORDER BY 2, 1 DESC",
      nullptr);
  ASSERT_EQ(shapes.size(), 1u);
  EXPECT_THAT(shapes[0].literals, ElementsAre("103", "5"));
}

TEST(SplitBatch, ShapesDifferInMoreThanLiterals) {
  struct Case {
    const char* a;
    const char* b;
    bool same;
  };
  const Case cases[] = {
      {"SELECT 'a'", "SELECT 'b;--'", true},
      {"SELECT  1 -- x\n", "SELECT 25", true},
      {"SELECT 1", "SELECT 1.5", false},  // an integer and a decimal divide differently
      {"SELECT 1.5", "SELECT 1.55", false},
      {"SELECT 1.5", "SELECT 200.7", true},
      {"SELECT 1.5", "SELECT 1.5e0", false},
      {"SELECT 1", "SELECT '1'", false},
      {"SELECT a FROM t ORDER BY 1", "SELECT a FROM t ORDER BY 2", false},
      {"SELECT a AS 'x'", "SELECT a AS 'y'", false},
      {"SELECT a 'x'", "SELECT a 'y'", false},
      {"SELECT convert(varchar(5), a)", "SELECT convert(varchar(6), a)", false},
      {"SELECT a b", "SELECT ab", false},
      {"SELECT -1", "SELECT - 1", false},
  };
  for (const Case& c : cases) {
    const bool same = SplitBatch(c.a, nullptr)[0].key == SplitBatch(c.b, nullptr)[0].key;
    EXPECT_EQ(same, c.same) << c.a << " | " << c.b;
  }
}

TEST(SplitBatch, RefusesWhatHasNoEnd) {
  struct Case {
    const char* batch;
    int number;
    const char* place;
  };
  const Case cases[] = {
      {"SELECT 'abc", 105, "at 8"},       {"SELECT 'abc''", 105, "at 8"},
      {"SELECT [abc", 105, "at 8"},       {"SELECT \"abc", 105, "at 8"},
      {"SELECT 1 /* x", 113, "at 10"},    {"SELECT 1 ? 2", 102, "at 10"},
      {"SELECT [] FROM t", 1038, "at 8"},
  };
  for (const Case& c : cases) {
    try {
      SplitBatch(c.batch, nullptr);
      ADD_FAILURE() << c.batch;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), c.number) << c.batch;
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.place));
    }
  }
}

}  // namespace
}  // namespace kaunter::sql
