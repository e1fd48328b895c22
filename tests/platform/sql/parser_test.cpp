// The grammar: what it takes, what it refuses and where, and that no text harms it.
#include "platform/sql/translator/parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "tests/platform/sql/test_catalogue.h"
#include "tests/support/places.h"

namespace kaunter::sql {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// The statements of statements/*.sql, labels and all: a label is a comment of T-SQL.
std::vector<std::string> BusinessStatements() {
  std::vector<std::string> statements;
  const fs::path folder = fs::path(test::SourceDir()) / "tests/platform/sql/statements";
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".sql" && entry.path().extension() != ".ddl") continue;
    std::istringstream text(ReadFile(entry.path()) + "\n;;\n");
    std::string statement;
    for (std::string line; std::getline(text, line);) {
      if (line != ";;") {
        statement += line + "\n";
      } else {
        SplitBatch(statement, &statements);
        statement.clear();
      }
    }
  }
  return statements;
}

const TestCatalogue& BusinessTables() {
  static const TestCatalogue catalogue = [] {
    TestCatalogue made;
    made.Apply(ReadFile(fs::path(test::SourceDir()) / "schema/base.sql"));
    for (const std::string& statement : BusinessStatements()) made.Apply(statement);
    return made;
  }();
  return catalogue;
}

TEST(Parser, RefusesWithThePlace) {
  struct Case {
    const char* statement;
    const char* words;
    const char* place;
  };
  const Case cases[] = {
      {"SELECT", "at the end of the statement", "at 7, at the end"},
      {"SELECT FROM t", "near the keyword 'FROM'", "at 8"},
      {"SELECT a FROM t WHERE", "at the end of the statement", "at 22, at the end"},
      {"SELECT a FROM t WHERE a IN ()", "near ')'", "at 29"},
      {"SELECT a FROM t GROUP a", "near 'a'", "at 23"},
      {"SELECT a b c FROM t", "near 'c'", "at 12"},
      {"SELECT (a FROM t", "near the keyword 'FROM'", "at 11"},
      {"SELECT a FROM (SELECT 1 AS x)", "at the end", "at 30"},
      {"SELECT a FROM t LEFT u", "near 'u'", "at 22"},
      {"SELECT CASE a END FROM t", "near the keyword 'END'", "at 15"},
      {"SELECT TOP 'x' a FROM t", "near 'TOP'", "at 12"},
      {"SELECT a FROM t CROSS APPLY f", "APPLY", "at 23"},
      {"INSERT INTO t (a, ) VALUES (1)", "near ')'", "at 19"},
      {"UPDATE t a = 1", "near 'a'", "at 10"},
      {"DELETE FROM", "at the end", "at 12"},
      {"CREATE VIEW v AS x", "CREATE of anything", "at 8"},
      {"EXEC something", "procedures", "at 1"},
      {"SET ROWCOUNT 5", "SET option", "at 5"},
      {"frobnicate", "near 'frobnicate'", "at 1"},
  };
  for (const Case& c : cases) {
    try {
      Parser(c.statement).Parse();
      ADD_FAILURE() << "not refused: " << c.statement;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 102) << error.what();
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.words));
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.place));
    }
  }
}

TEST(Parser, AVeryLongStatementIsShownAroundThePlace) {
  const std::string statement = "SELECT '" + std::string(100000, 'x') + "' FROM FROM t";
  try {
    Parser(statement).Parse();
    FAIL();
  } catch (const SqlError& error) {
    EXPECT_LT(std::string(error.what()).size(), 1000u);
    EXPECT_THAT(error.what(), ::testing::HasSubstr("FROM FROM t"));
  }
}

std::string Repeat(std::string_view text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(Parser, DepthIsLimited) {
  constexpr int kMany = 20000;
  const std::string statements[] = {
      "SELECT " + Repeat("(", kMany) + "1" + Repeat(")", kMany),
      "SELECT " + Repeat("-", 2 * kMany + 1).insert(1, " ") + "1",
      "SELECT " + Repeat("- ", kMany) + "1",
      "SELECT 1" + Repeat("+1", kMany),
      "SELECT " + Repeat("CASE WHEN 1=1 THEN ", kMany) + "1",
      "SELECT " + Repeat("abs(", kMany) + "1",
      "SELECT 1 WHERE " + Repeat("NOT ", kMany) + "1=1",
      "SELECT * FROM " + Repeat("(SELECT * FROM ", kMany) + "t",
      "SELECT * FROM " + Repeat("(", kMany) + "t",
      "SELECT * FROM t" + Repeat(" JOIN t ON 1=1", kMany),
      "SELECT 1 WHERE 1 IN " + Repeat("(SELECT 1 WHERE 1 IN ", kMany),
      "SELECT " + Repeat("{fn ", kMany),
      // Each level is short, and the levels add up.
      "SELECT " + Repeat("(SELECT 1" + Repeat("+1", 300) + "+", 90) + "1" + Repeat(")", 90),
  };
  for (const std::string& statement : statements) {
    try {
      Parser(statement).Parse();
      ADD_FAILURE() << statement.substr(0, 60);
    } catch (const SqlError& error) {
      EXPECT_THAT(error.number(), ::testing::AnyOf(191, 102)) << error.what();
    }
  }
  // What is long and not deep passes.
  EXPECT_NO_THROW(Parser("SELECT 1 WHERE 1=1" + Repeat(" OR 1=2", kMany)).Parse());
  EXPECT_NO_THROW(Parser("SELECT 1 WHERE 1 IN (1" + Repeat(",2", kMany) + ")").Parse());
}

// Other literals of the same kind: the same shape, and so the same translation. Otherwise the cache
// of shapes would run one statement for another.
TEST(Parser, ATranslationDependsOnTheShapeOnly) {
  int compared = 0;
  for (const std::string& statement : BusinessStatements()) {
    std::string changed;
    Lexer lexer(statement);
    std::size_t at = 0;
    for (Token token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
      if (!token.parameter) continue;
      const std::size_t begin = static_cast<std::size_t>(token.text.data() - statement.data());
      changed.append(statement, at, begin - at);
      for (const char c : token.text) {
        changed += c >= '0' && c <= '8' ? static_cast<char>(c + 1) : c >= 'a' && c < 'z' ? 'z' : c;
      }
      at = begin + token.text.size();
    }
    changed.append(statement, at);
    const Shape before = SplitBatch(statement, nullptr).at(0);
    const Shape after = SplitBatch(changed, nullptr).at(0);
    ASSERT_EQ(before.key, after.key) << statement;
    try {
      const auto first = Translate(statement, BusinessTables(), Dialect::kSqlite);
      if (!first.front().cacheable) continue;
      const auto second = Translate(changed, BusinessTables(), Dialect::kSqlite);
      EXPECT_EQ(first.front().text, second.front().text);
      ASSERT_EQ(first.front().parameters.size(), second.front().parameters.size());
      for (const Parameter& parameter : first.front().parameters) {
        ASSERT_LT(parameter.literal, before.literals.size());
      }
      ++compared;
    } catch (const SqlError& error) {
      if (error.number() != 2714 && error.number() != 2705) ADD_FAILURE() << error.what();
    }
  }
  EXPECT_GT(compared, 500);
}

// Statements of the business with pieces of each other, cut and repeated: an error is fine, a crash
// is not.
TEST(Parser, NoTextHarms) {
  const std::vector<std::string> statements = BusinessStatements();
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto pick = [&](std::size_t below) { return random() % std::max<std::size_t>(below, 1); };
  for (int i = 0; i < 5000; ++i) {
    std::string text = statements[pick(statements.size())];
    for (std::size_t changes = 1 + pick(4); changes > 0; --changes) {
      const std::string& other = statements[pick(statements.size())];
      const std::size_t from = pick(other.size());
      const std::string piece = other.substr(from, pick(30));
      const std::size_t where = pick(text.size());
      switch (pick(4)) {
        case 0:
          text.erase(where, pick(20));
          break;
        case 1:
          text.insert(where, piece);
          break;
        case 2:
          text.insert(where, 1, static_cast<char>(random()));
          break;
        default:
          text.replace(where, std::min(piece.size(), text.size() - where), piece);
          break;
      }
    }
    try {
      std::vector<std::string> cut;
      const std::vector<Shape> shapes = SplitBatch(text, &cut);
      ASSERT_EQ(shapes.size(), cut.size());
      for (std::size_t s = 0; s < cut.size(); ++s) {
        try {
          for (const Translated& translated :
               Translate(cut[s], BusinessTables(), Dialect::kSqlite)) {
            // The numbering of the literals is the same on both sides.
            for (const Parameter& parameter : translated.parameters) {
              ASSERT_LT(parameter.literal, shapes[s].literals.size()) << text;
            }
          }
        } catch (const SqlError& error) {
          ASSERT_GT(error.number(), 0);
        }
      }
    } catch (const SqlError& error) {
      ASSERT_GT(error.number(), 0);
    }
  }
}

}  // namespace
}  // namespace kaunter::sql
