// The quick look must never take two different shapes for one: checked against the true splitter on
// all statements of the business, with their literals drawn anew.
#include "platform/sql/sqlite/sqlite_statement_key.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/sql/translator/translate.h"
#include "tests/support/places.h"

namespace kaunter::sql {
namespace {

std::vector<std::string> BusinessStatements() {
  std::vector<std::string> statements;
  const std::filesystem::path folder =
      std::filesystem::path(test::SourceDir()) / "tests/platform/sql/statements";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".sql") continue;
    std::ifstream in(entry.path());
    std::string line, statement;
    while (std::getline(in, line)) {
      if (line.starts_with("--- ")) continue;
      if (line == ";;") {
        statements.push_back(std::move(statement));
        statement.clear();
      } else {
        statement += line + "\n";
      }
    }
  }
  return statements;
}

// The statement with other literals of the same kinds, in the places that the quick look found.
std::string WithOtherLiterals(const std::string& text, const StatementKey& look,
                              std::mt19937& random) {
  static const std::vector<std::string> kTexts = {
      "",  "a",          "O''Brien", "1",    "-- no", "/*",  "; select", "陈",
      "N", "2024-01-31", "x[1]",     "''''", " ",     "1.5", "e"};
  std::string result;
  std::size_t at = 0;
  for (const std::string_view literal : look.literals()) {
    std::string plain(literal);
    const bool is_text = literal.data() < text.data() ||
                         literal.data() > text.data() + text.size() ||
                         (literal.data() > text.data() && literal.data()[-1] == '\'');
    std::string written = plain;
    if (is_text) {
      written = "'";
      for (const char c : plain) written += c == '\'' ? std::string("''") : std::string(1, c);
      written += "'";
    }
    const std::size_t found = text.find(written, at);
    if (found == std::string::npos) return text;
    result += text.substr(at, found - at);
    if (is_text) {
      result += "'" + kTexts[random() % kTexts.size()] + "'";
    } else {
      for (const char c : plain) {
        result += c == '.' ? c : static_cast<char>('0' + static_cast<int>(random() % 10));
      }
    }
    at = found + written.size();
  }
  return result + text.substr(at);
}

TEST(StatementKey, StatementsOfOneLookAreOfOneShape) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const std::vector<std::string> statements = BusinessStatements();
  ASSERT_GT(statements.size(), 500u);
  std::size_t looked = 0, drawn = 0;
  for (const std::string& text : statements) {
    StatementKey look;
    if (!look.Read(text)) continue;
    const std::vector<Shape> shapes = SplitBatch(text, nullptr);
    if (shapes.size() != 1 || shapes[0].literals.size() != look.literals().size()) continue;
    ++looked;
    for (std::size_t i = 0; i < look.literals().size(); ++i) {
      ASSERT_EQ(look.literals()[i], shapes[0].literals[i]) << text;
    }
    for (int round = 0; round < 5; ++round) {
      const std::string other = WithOtherLiterals(text, look, random);
      StatementKey other_look;
      if (!other_look.Read(other) || other_look.key() != look.key()) continue;
      ++drawn;
      const std::vector<Shape> other_shapes = SplitBatch(other, nullptr);
      ASSERT_EQ(other_shapes.size(), 1u) << other;
      ASSERT_EQ(other_shapes[0].key, shapes[0].key) << other;
      ASSERT_EQ(other_shapes[0].literals.size(), other_look.literals().size()) << other;
      for (std::size_t i = 0; i < other_look.literals().size(); ++i) {
        ASSERT_EQ(other_look.literals()[i], other_shapes[0].literals[i]) << other;
      }
    }
  }
  // The quick look is worth having only where nearly all statements pass it.
  EXPECT_GT(looked, statements.size() / 2);
  EXPECT_GT(drawn, looked * 2);
}

TEST(StatementKey, WhatDiffersInShapeDiffersInKey) {
  const struct {
    const char* a;
    const char* b;
    bool same;
  } kCases[] = {
      {"select 1", "select 2", true},        {"select 1", "select '1'", false},
      {"select 1.5", "select 2.25", false},  {"select 1.5", "select 22.5", true},
      {"select '1'", "select 'a''b'", true}, {"select a1", "select a2", false},
      {"select [1]", "select [2]", false},   {"select N'a'", "select 'a'", false},
      {"select .5", "select 0.5", true},     {"select 5.", "select 5", false},
  };
  for (const auto& c : kCases) {
    StatementKey a, b;
    ASSERT_TRUE(a.Read(c.a) && b.Read(c.b)) << c.a;
    EXPECT_EQ(a.key() == b.key(), c.same) << c.a << " / " << c.b;
  }
  for (const char* text :
       {"select 1 -- note", "select /* x */ 1", "select 1e5", "select @x", "select 'a", "select [a",
        "select 0x1F", "select [a]]'b']", "select 12345678901234567890", "select '\x01'||\x01"}) {
    StatementKey look;
    EXPECT_FALSE(look.Read(text)) << text;
  }
}

}  // namespace
}  // namespace kaunter::sql
