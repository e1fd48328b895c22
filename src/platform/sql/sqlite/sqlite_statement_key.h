// A quick look at a statement: its text with the literals taken out, without reading it as T-SQL.
// The engine knows again by it what it has run before; only a text that is new goes through the
// splitter.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter::sql {

class StatementKey {
 public:
  // False for a text that needs the true lexer: comments, exponents, variables, binary numbers,
  // very long numbers, open quotes. Two texts of one key differ only in the values of their
  // literals: all else, blanks and letter case included, is part of the key, and so are the kind of
  // a literal and its number of decimals.
  bool Read(std::string_view text);

  const std::string& key() const { return key_; }
  // In text order; text literals without quotes, '' undone. They view the text that was read, or
  // this object, and last until the next Read.
  const std::vector<std::string_view>& literals() const { return literals_; }

 private:
  bool ReadText(std::string_view text, std::size_t* at);
  bool ReadNumber(std::string_view text, std::size_t* at);

  std::string key_;
  std::vector<std::string_view> literals_;
  std::deque<std::string> undoubled_;
};

}  // namespace kaunter::sql
