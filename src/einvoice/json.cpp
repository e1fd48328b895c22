#include "einvoice/json.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <optional>
#include <unordered_set>

#include "core/formats.h"
#include "einvoice/json_decimal.h"
#include "einvoice/string_builder.h"
#include "platform/sql/text.h"

namespace kaunter {
namespace json {

struct Member {
  std::string key;
  const Node* node;
};

struct Node {
  JsonValue::Kind kind = JsonValue::Kind::nothing;
  std::string text;
  std::vector<Member> members;
};

}  // namespace json

namespace {

using json::Node;
using Kind = JsonValue::Kind;

thread_local std::string parser_errors;

constexpr std::size_t kShownBehind = 20;
// A text of nothing but faults would be told longer than it is.
constexpr std::size_t kLongestErrors = 65536;

// What ends the object or list in whose midst it happens.
struct ParseError {
  int number;
  std::string text;
};

ParseError NoNumber(const std::string& text) {
  return {13, fmt::format("\"{}\" is no number", text)};
}

bool IsBlank(char32_t c) { return c == '\r' || c == '\n' || c == '\t' || c == ' '; }

std::optional<char32_t> HexDigit(char32_t c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c < 0xE000; }

// Objects and lists that are open lie on a stack of its own: a reply may nest as deep as it likes.
class Parser {
 public:
  explicit Parser(std::string_view text) : text_(sql::Decode(text)) {}

  std::shared_ptr<std::deque<Node>> Run() {
    SkipFiller();
    const char32_t first = At();
    if (first != '{' && first != '[') {
      parser_errors = "Invalid JSON";
      return nullptr;
    }
    Open({});
    while (!open_.empty()) Step();
    return tree_;
  }

 private:
  struct OpenContainer {
    Node* node;
    std::string key;                       // in the object around it
    std::unordered_set<std::string> keys;  // of this object
  };

  bool Ended() const { return pos_ >= text_.size(); }
  char32_t At() const { return Ended() ? 0 : text_[pos_]; }
  bool Is(char32_t c) const { return !Ended() && text_[pos_] == c; }
  std::string Behind(std::size_t at) const {
    return sql::Encode(std::u32string_view(text_).substr(at, kShownBehind));
  }
  // As a person counts.
  std::size_t Position() const { return pos_ + 1; }

  static void Tell(const std::string& error) {
    if (parser_errors.size() < kLongestErrors) parser_errors += error;
  }

  void SkipFiller() {
    enum { kNone, kLine, kLong } comment = kNone;
    for (; !Ended(); ++pos_) {
      const char32_t c = text_[pos_];
      const char32_t next = pos_ + 1 < text_.size() ? text_[pos_ + 1] : 0;
      if (comment == kLine) {
        if (c == '\r' || c == '\n') comment = kNone;
      } else if (comment == kLong) {
        if (c != '*' || next != '/') continue;
        comment = kNone;
        ++pos_;
      } else if (c == '/' && (next == '/' || next == '*')) {
        comment = next == '/' ? kLine : kLong;
        ++pos_;
      } else if (!IsBlank(c) && c != '(' && c != ')') {
        return;
      }
    }
  }

  // Steps past the bracket at the position.
  void Open(std::string key) {
    tree_->push_back({At() == '{' ? Kind::object : Kind::list, {}, {}});
    ++pos_;
    open_.push_back({&tree_->back(), std::move(key), {}});
  }

  void Close() {
    OpenContainer done = std::move(open_.back());
    open_.pop_back();
    if (!open_.empty()) Add(std::move(done.key), done.node);
  }

  void CloseAtFault(const ParseError& error) {
    Tell(fmt::format("{}: {}: {}", error.number, error.text, Behind(pos_)));
    Close();
  }

  void Add(std::string key, const Node* node) {
    OpenContainer& parent = open_.back();
    if (parent.node->kind == Kind::object && !parent.keys.insert(key).second) {
      CloseAtFault({457, fmt::format("the key \"{}\" is there twice", key)});
      return;
    }
    parent.node->members.push_back({std::move(key), node});
  }

  // One member or element of the container that was opened last, or its end.
  void Step() {
    const bool object = open_.back().node->kind == Kind::object;
    SkipFiller();
    if (Is(object ? '}' : ']')) {
      ++pos_;
      Close();
      return;
    }
    if (Is(',')) {
      ++pos_;
      SkipFiller();
    } else if (Ended()) {
      const std::size_t last = text_.size() - std::min(text_.size(), kShownBehind);
      Tell(fmt::format("Missing '{}': {}", object ? '}' : ']', Behind(last)));
      Close();
      return;
    }
    std::string key = object ? ParseKey() : std::string();
    const std::size_t before = pos_;
    try {
      ParseValue(std::move(key));
    } catch (const ParseError& error) {
      CloseAtFault(error);
      return;
    }
    // A word that is none in a list would be read for ever.
    if (!object && pos_ == before && !Ended()) Close();
  }

  std::string ParseKey() {
    SkipFiller();
    std::u32string key;
    bool in_double = false;
    bool in_single = false;
    while (!Ended()) {
      const char32_t c = text_[pos_++];
      if (c == '"' || c == '\'') {
        bool& open = c == '"' ? in_double : in_single;
        open = !open;
        if (open) continue;
        SkipFiller();
        if (Is(':')) continue;
        Tell(fmt::format("Invalid Key at position {} : {}", Position(), sql::Encode(key)));
        break;
      }
      if (c == ':' && !in_double && !in_single) break;
      if (!IsBlank(c)) key += c;
    }
    return sql::Encode(key);
  }

  void AddLeaf(std::string key, Kind kind, std::string text) {
    tree_->push_back({kind, std::move(text), {}});
    Add(std::move(key), &tree_->back());
  }

  void ParseValue(std::string key) {
    SkipFiller();
    switch (At()) {
      case '{':
      case '[':
        return Open(std::move(key));
      case '"':
      case '\'':
        return AddLeaf(std::move(key), Kind::text, ParseString());
      case 't':
      case 'f':
        return ParseBoolean(std::move(key));
      case 'n':
        if (TakeWord(U"null")) return AddLeaf(std::move(key), Kind::null, {});
        return Tell(
            fmt::format("Invalid null value at position {} : {}\r\n", Position(), Behind(pos_)));
      default:
        return ParseNumber(std::move(key));
    }
  }

  bool TakeWord(std::u32string_view word) {
    if (std::u32string_view(text_).substr(pos_, word.size()) != word) return false;
    pos_ += word.size();
    return true;
  }

  void ParseBoolean(std::string key) {
    if (TakeWord(U"true")) return AddLeaf(std::move(key), Kind::boolean, "true");
    if (TakeWord(U"false")) return AddLeaf(std::move(key), Kind::boolean, "false");
    Tell(fmt::format("Invalid Boolean at position {} : {}\r\n", Position(), Behind(pos_)));
  }

  // A number that the end of the text cuts off is none.
  void ParseNumber(std::string key) {
    std::string number;
    while (!Ended() &&
           std::u32string_view(U"+-0123456789.eE").find(text_[pos_]) != std::u32string_view::npos) {
      number += static_cast<char>(text_[pos_++]);
    }
    if (Ended()) return;
    DecimalFault fault = DecimalFault::none;
    std::string decimal = JsonDecimal(number, fault);
    if (fault == DecimalFault::no_number) throw NoNumber(number);
    if (fault == DecimalFault::overflow) {
      throw ParseError{6, fmt::format("{} is too large", number)};
    }
    AddLeaf(std::move(key), Kind::number, std::move(decimal));
  }

  std::string ParseString() {
    const char32_t quote = text_[pos_++];
    collected_.Clear();
    high_ = 0;
    while (!Ended()) {
      char32_t c = text_[pos_++];
      if (c == quote) break;
      if (c != '\\') {
        Collect(c);
      } else if (!Ended()) {
        Escape();
      }
    }
    Collect(0);
    return collected_.toString();
  }

  // Behind a backslash. One that stands before any other character is dropped, and the character is
  // read again as an ordinary one.
  void Escape() {
    const char32_t c = text_[pos_];
    switch (c) {
      case '"':
      case '\\':
      case '/':
      case '\'':
        Collect(c);
        break;
      case 'b':
        Collect('\b');
        break;
      case 'f':
        Collect('\f');
        break;
      case 'n':
        Collect('\n');
        break;
      case 'r':
        Collect('\r');
        break;
      case 't':
        Collect('\t');
        break;
      case 'u':
        ++pos_;
        return CollectHex();
      default:
        return;
    }
    ++pos_;
  }

  void CollectHex() {
    const std::u32string_view digits = std::u32string_view(text_).substr(pos_, 4);
    char32_t code = 0;
    for (const char32_t c : digits) {
      const std::optional<char32_t> digit = HexDigit(c);
      if (!digit) throw NoNumber(sql::Encode(digits));
      code = code * 16 + *digit;
    }
    if (digits.empty()) throw NoNumber({});
    pos_ += digits.size();
    CollectCode(code);
  }

  // Two halves of a character that stand side by side are that character.
  void CollectCode(char32_t code) {
    if (IsLowSurrogate(code) && high_ != 0) {
      const char32_t whole = 0x10000 + ((high_ - 0xD800) << 10U) + (code - 0xDC00);
      high_ = 0;
      Collect(whole);
    } else if (IsHighSurrogate(code)) {
      Collect(0);
      high_ = code;
    } else {
      Collect(IsLowSurrogate(code) ? 0xFFFD : code, true);
    }
  }

  // 0 only ends a half that has no other.
  void Collect(char32_t c, bool zero_counts = false) {
    std::string bytes;
    if (high_ != 0) sql::AppendUtf8(&bytes, 0xFFFD);
    high_ = 0;
    if (c != 0 || zero_counts) sql::AppendUtf8(&bytes, c);
    collected_.Append(bytes);
  }

  std::u32string text_;
  std::size_t pos_ = 0;
  std::shared_ptr<std::deque<Node>> tree_ = std::make_shared<std::deque<Node>>();
  std::vector<OpenContainer> open_;
  cStringBuilder collected_;
  char32_t high_ = 0;  // the first half of a character, behind "\u"
};

}  // namespace

JsonValue Parse(std::string_view text) {
  parser_errors.clear();
  const auto tree = Parser(text).Run();
  return tree ? JsonValue(tree, &tree->front()) : JsonValue();
}

const std::string& ParserErrors() { return parser_errors; }

JsonValue::Kind JsonValue::kind() const { return node_ == nullptr ? Kind::nothing : node_->kind; }

JsonValue JsonValue::Item(std::string_view key) const {
  if (kind() != Kind::object) return {};
  for (const json::Member& member : node_->members) {
    if (member.key == key) return {tree_, member.node};
  }
  return {};
}

JsonValue JsonValue::Item(int position) const {
  if (kind() != Kind::list || position < 1 || position > Count()) return {};
  return {tree_, node_->members[static_cast<std::size_t>(position) - 1].node};
}

int JsonValue::Count() const {
  return node_ == nullptr ? 0 : static_cast<int>(node_->members.size());
}

std::vector<std::pair<std::string, JsonValue>> JsonValue::Members() const {
  std::vector<std::pair<std::string, JsonValue>> members;
  if (node_ == nullptr) return members;
  for (const json::Member& member : node_->members) {
    members.emplace_back(member.key, JsonValue(tree_, member.node));
  }
  return members;
}

std::string JsonValue::ToText() const { return node_ == nullptr ? std::string() : node_->text; }

std::string JsonQuote(std::string_view value) { return fmt::format("\"{}\"", value); }

std::string JsonMoney(Money amount) {
  std::string shown = Format(amount, "0.00");
  for (std::size_t at = shown.find(".00"); at != std::string::npos; at = shown.find(".00")) {
    shown.erase(at, 3);
  }
  std::erase(shown, ',');
  return Money::FromText(shown).ToText();
}

std::string JsonMoney(const Value& value) {
  if (value.IsNull()) return "0.00";
  const Money* money = value.AsMoney();
  return JsonMoney(money != nullptr ? *money : Money::FromText(value.ToText()));
}

}  // namespace kaunter
