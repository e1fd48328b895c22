// cJSONScript: a small script written as JSON, the parser's companion. Nothing in this program runs
// one. A script is a list; what its elements give is its text.
//
//   [{"set": {"name": "n", "value": 3}}, "n is ", {"get": {"name": "n"}}]
//
// A text stands for itself; inside an object or a list "<%NAME(args)%>" is a command of the host's.
// An object is commands:
//   alert   message, title            an information box
//   input   prompt, title, default    an input box; its text
//   switch  case, items, default      the item whose key is the value of case, else the default
//   set     name, value               keeps a variable
//   get     name                      reads it
//   if      value1, value2, type (eq, gt, lt, gte, lte: of texts, without regard to case), true,
//   false return  anything                  ends the script; of an object its values, with commas
//   between
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "einvoice/json.h"

namespace kaunter {

class Desk;

class cJSONScript {
 public:
  explicit cJSONScript(Desk& desk) : desk_(desk) {}

  // What the script gives; "" after a box "Parser Error" for a text that is none.
  std::string Eval(std::string_view text);
  std::string ExecCommand(const JsonValue& value);

  // The host's commands, by their names in capitals.
  std::function<std::string(std::string_view name, std::string_view args)> onCustomCommand;

 private:
  std::string Run(const std::string& command, const JsonValue& fields);
  std::string Field(const JsonValue& fields, std::string_view name);
  std::string Text(const std::string& text);
  std::string RunSwitch(const JsonValue& fields);
  std::string RunIf(const JsonValue& fields);
  std::string RunReturn(const JsonValue& fields);

  Desk& desk_;
  std::map<std::string, std::string> variables_;
  int depth_ = 0;
  bool ended_ = false;
};

}  // namespace kaunter
