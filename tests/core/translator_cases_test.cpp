// Texts that once were, or well could be, a trap on the way from a statement to SQLite: refused
// with a number, or translated to what SQLite can prepare on the tables of an office.
#include <gtest/gtest.h>

#include <string>

#include "fuzz/translator_check.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using namespace std::string_literals;

TEST(TranslatorCases, AreRefusedOrCanBePrepared) {
  Office office(Office::State::patched);
  office.session.MainConn.reset();
  TranslatorCheck check(office.folder.File("office.db"));
  const struct {
    const char* what;
    std::string text;
    int prepared;  // statements that come through
  } cases[] = {
      {"a zero in the text of an alias", "SELECT LoanTerm '20\0 24' FROM LoanMast"s, 0},
      {"a zero in a quoted name", "SELECT LoanTerm AS [R\0tNo] FROM LoanMast"s, 0},
      {"a zero in a value", "SELECT LoanTerm FROM LoanMast WHERE LoanID='a\0b'"s, 0},
      {"nothing", "", 0},
      {"only signs", ";;((''", 0},
      {"a text with its quote doubled at the end", "SELECT 'a''' FROM LoanMast", 1},
      {"parentheses without end", "SELECT " + std::string(5000, '('), 0},
      {"a long sum",
       "SELECT 1" +
           [] {
             std::string sum;
             for (int i = 0; i < 3000; ++i) sum += "+1";
             return sum;
           }(),
       0},
      {"two statements, one of them wrong",
       "DELETE FROM RefererMast WHERE CustID='x' SELECT Nothing FROM LoanMast", 1},
      {"an empty name", "SELECT LoanTerm AS [] FROM LoanMast", 0},
  };
  for (const auto& c : cases) {
    const int before = check.prepared();
    const auto fault = check.FindFault(c.text);
    EXPECT_FALSE(fault) << c.what << ": " << *fault;
    EXPECT_EQ(check.prepared() - before, c.prepared) << c.what;
  }
}

}  // namespace
}  // namespace kaunter
