// JSON as the e-invoicing service is spoken to: bodies are written by hand as text, replies are
// read by a lax parser. Both are a contract of the office and stay as they are: nothing is escaped
// in a body, and the parser takes comments, single quotes, keys without quotes, and a text that is
// cut.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/money.h"
#include "platform/sql/value.h"

namespace kaunter {

namespace json {
struct Node;
}

// A thing of a parsed text: an object, a list, a leaf, or nothing. It keeps the whole text's tree
// alive, and is copied for little.
class JsonValue {
 public:
  enum class Kind { nothing, object, list, text, boolean, null, number };

  JsonValue() = default;
  Kind kind() const;
  bool IsNothing() const { return node_ == nullptr; }

  // Nothing where there is no such key (its case counts), or no such place (counted from 1).
  JsonValue Item(std::string_view key) const;
  JsonValue Item(int position) const;
  int Count() const;  // of members or elements
  // In the order of the text; the keys of a list are empty.
  std::vector<std::pair<std::string, JsonValue>> Members() const;

  // Of a leaf: its text, "true" or "false", a number as plain decimal digits. "" for null, for
  // nothing and for what is no leaf: callers ask for the empty text.
  std::string ToText() const;

 private:
  friend JsonValue Parse(std::string_view text);
  JsonValue(std::shared_ptr<const void> tree, const json::Node* node)
      : tree_(std::move(tree)), node_(node) {}

  std::shared_ptr<const void> tree_;
  const json::Node* node_ = nullptr;
};

// An object, a list, or nothing. Never throws for what the text holds: after a bad one the tree has
// what came before the fault. What follows the end of the object or list is not looked at.
JsonValue Parse(std::string_view text);
// What was wrong with the text parsed last by this thread; "" after a clean one.
const std::string& ParserErrors();

// The value between double quotes. Quotes and backslashes inside stand as they are: that is wanted.
std::string JsonQuote(std::string_view value);
// 1000 gives 1000, 1000.50 gives 1000.5, 1000.55 gives 1000.55; rounded to the sen, half away from
// zero. Of a value: Null gives "0.00", a text is read as an amount and throws std::invalid_argument
// when it is none.
std::string JsonMoney(Money amount);
std::string JsonMoney(const Value& value);

}  // namespace kaunter
