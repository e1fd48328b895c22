// Text as the embedded server sees it: case-blind for all scripts, trailing blanks without meaning.
// The mapping between upper and lower case is a table of our own (one character to one character,
// Unicode 14), so that the order of an index never depends on a library of the machine.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter::sql {

char32_t ToUpper(char32_t c);
char32_t ToLower(char32_t c);
// Characters that differ only by case fold to the same one.
char32_t Fold(char32_t c);

// The character at *at, which moves behind it. A byte that is no UTF-8 counts as a character of its
// own (U+FFFD), so that damaged text still has an order.
char32_t NextChar(std::string_view text, std::size_t* at);
std::u32string Decode(std::string_view text);
void AppendUtf8(std::string* to, char32_t c);
std::string Encode(std::u32string_view text);
std::size_t CountChars(std::string_view text);
// For names: A to Z in lower case, all else as it is.
constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
std::string LowerAscii(std::string_view text);
// True for two names that differ in the case of A to Z only.
bool SameName(std::string_view a, std::string_view b);

// Below 0, 0 or above 0: the order of the collation.
int CompareText(std::string_view a, std::string_view b);
// Position (in characters) of `needle` at or behind `from`, case-blind; npos when absent.
std::size_t FindText(std::u32string_view hay, std::u32string_view needle, std::size_t from);

// A LIKE pattern, made ready once and matched often.
class LikePattern {
 public:
  // `escape` 0 for none.
  explicit LikePattern(std::string_view pattern, char32_t escape = 0);
  // Trailing blanks of the text are ignored.
  bool Matches(std::string_view text) const;

 private:
  enum class Kind : unsigned char { kChar, kAny, kRun, kSet };
  struct Set {
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;  // folded
    bool Has(char32_t folded) const;
  };
  struct Token {
    Kind kind;
    char32_t value;  // the folded character, or the index of the set
  };
  void ReadSet(const std::u32string& pattern, std::size_t* at, char32_t escape);

  std::vector<Token> tokens_;
  std::vector<Set> sets_;
};

}  // namespace kaunter::sql
