#include "reports/selection_formula.h"

#include <fmt/format.h>

#include <cctype>
#include <stdexcept>
#include <vector>

#include "core/values.h"

namespace kaunter {
namespace {

// Deeper brackets than any screen writes; a broken formula must not exhaust the stack.
constexpr int kDeepest = 100;

class FormulaParser {
 public:
  FormulaParser(std::string_view text, const std::map<std::string, std::string>& aliases)
      : text_(text), aliases_(aliases) {}

  std::string Run() {
    const std::string condition = Either();
    SkipBlanks();
    if (at_ != text_.size()) Refuse("the end of the formula");
    return condition;
  }

 private:
  [[noreturn]] void Refuse(const std::string& expected) const {
    throw std::runtime_error(
        fmt::format("The selection formula of the report cannot be read at position {}: {} is "
                    "expected there.{}\n{}",
                    at_ + 1, expected, Hint(), text_));
  }

  // A value that was closed by its own apostrophe is the usual reason.
  std::string_view Hint() const {
    return after_text_ ? " An apostrophe (') within a value ends the value: is there one?" : "";
  }

  void SkipBlanks() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
  }

  bool Take(char c) {
    SkipBlanks();
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  bool TakeWord(std::string_view word) {
    SkipBlanks();
    if (!SameText(text_.substr(at_, word.size()), word)) return false;
    const std::size_t end = at_ + word.size();
    if (end < text_.size() && std::isalnum(static_cast<unsigned char>(text_[end]))) return false;
    at_ = end;
    return true;
  }

  std::string Either() {
    if (++depth_ > kDeepest) Refuse("a formula with fewer brackets");
    bool ands = false;
    std::string condition = All(ands);
    bool ors = false;
    while (TakeWord("or")) {
      condition += " OR " + All(ands);
      ors = true;
    }
    if (ors && ands) Refuse("brackets around an \"or\" that stands beside an \"and\"");
    --depth_;
    return condition;
  }

  std::string All(bool& ands) {
    std::string condition = One();
    while (TakeWord("and")) {
      condition += " AND " + One();
      ands = true;
    }
    return condition;
  }

  std::string One() {
    if (TakeWord("not")) {
      if (++depth_ > kDeepest) Refuse("a formula with fewer \"not\"");
      const std::string condition = "NOT (" + One() + ")";
      --depth_;
      return condition;
    }
    if (Take('(')) {
      const std::string inner = Either();
      if (!Take(')')) Refuse("a closing bracket");
      return "(" + inner + ")";
    }
    fields_ = 0;
    const std::string left = Operand();
    const std::string comparison = Comparison();
    const std::string condition = left + comparison + Operand();
    if (fields_ == 0) Refuse("a comparison with a field");
    return condition;
  }

  std::string Comparison() {
    SkipBlanks();
    for (std::string_view sign : {"<>", "<=", ">=", "=", "<", ">"}) {
      if (text_.substr(at_, sign.size()) == sign) {
        at_ += sign.size();
        return std::string(sign);
      }
    }
    Refuse("a comparison");
  }

  std::string Operand() {
    SkipBlanks();
    if (at_ >= text_.size()) Refuse("a field or a value");
    const char c = text_[at_];
    if (c == '{') return Field();
    if (c == '\'' || c == '"') return Text(c);
    if (c == '-' || std::isdigit(static_cast<unsigned char>(c))) return Number();
    if (TakeWord("DateTime")) return Date(true);
    if (TakeWord("Date")) return Date(false);
    Refuse("a field or a value");
  }

  // {Table.Column}: both are names, so nothing but letters, digits and underscores may stand there.
  std::string Field() {
    const std::size_t end = text_.find('}', at_);
    if (end == std::string_view::npos) Refuse("a closing brace");
    const std::string name = Trim(text_.substr(at_ + 1, end - at_ - 1));
    const auto point = name.find('.');
    bool fits = point != std::string::npos && point > 0 && point + 1 < name.size();
    for (std::size_t i = 0; fits && i < name.size(); ++i) {
      const auto sign = static_cast<unsigned char>(name[i]);
      const bool first = i == 0 || i == point + 1;  // "1.5" would be a number
      fits = i == point || sign == '_' || (first ? std::isalpha(sign) : std::isalnum(sign));
    }
    if (!fits) Refuse("a field {Table.Column}");
    at_ = end + 1;
    ++fields_;
    return InQuery(name, point);
  }

  std::string InQuery(const std::string& name, std::size_t point) const {
    const auto column = aliases_.find(Lower(name));
    if (column != aliases_.end()) return column->second;
    const auto table = aliases_.find(Lower(name.substr(0, point)));
    return table == aliases_.end() ? name : table->second + name.substr(point);
  }

  std::string Text(char quote) {
    const std::size_t begin = at_;
    bool doubled = false;
    std::string value;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] != quote) {
        value += text_[at_];
      } else if (at_ + 1 < text_.size() && text_[at_ + 1] == quote) {
        value += text_[at_++];
        doubled = true;
      } else {
        ++at_;
        after_text_ = true;
        // Two values with an apostrophe at their edges swallow the comparison between them.
        if (doubled && value.find('{') != std::string::npos) {
          at_ = begin;
          Refuse("a text without a field in it");
        }
        return QuoteStr(value);
      }
    }
    after_text_ = true;
    Refuse("the end of a text");
  }

  std::string Number() {
    const std::size_t begin = at_;
    if (text_[at_] == '-') ++at_;
    while (at_ < text_.size() &&
           (std::isdigit(static_cast<unsigned char>(text_[at_])) || text_[at_] == '.')) {
      ++at_;
    }
    const std::string number(text_.substr(begin, at_ - begin));
    if (!IsNumeric(number)) Refuse("a number");
    return number;
  }

  std::string Date(bool with_time) {
    if (!Take('(')) Refuse("an opening bracket");
    std::vector<int> parts;
    do {
      SkipBlanks();
      const std::string number = Number();
      if (number.size() > 4 || number.find('.') != std::string::npos) Refuse("a whole number");
      parts.push_back(CLng(std::string_view(number)));
    } while (Take(','));
    if (!Take(')')) Refuse("a closing bracket");
    if (parts.size() != 3 && !(with_time && parts.size() == 6)) Refuse("a date");
    parts.resize(6);
    const DateTime date{parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]};
    if (!date.IsValid()) Refuse("a date of the calendar");
    return with_time ? SqlDateTime(date) : SqlDate(date);
  }

  std::string_view text_;
  const std::map<std::string, std::string>& aliases_;
  std::size_t at_ = 0;
  int fields_ = 0;           // of the comparison that is being read
  bool after_text_ = false;  // a text in quotes has been read
  int depth_ = 0;
};

}  // namespace

std::string FormulaToCondition(std::string_view formula,
                               const std::map<std::string, std::string>& aliases) {
  if (Trim(formula).empty()) return {};
  return FormulaParser(formula, aliases).Run();
}

}  // namespace kaunter
