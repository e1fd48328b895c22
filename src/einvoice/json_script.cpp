#include "einvoice/json_script.h"

#include <algorithm>

#include "core/texts.h"
#include "einvoice/string_builder.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

constexpr int kDeepest = 40;
constexpr std::string_view kOpen = "<%";
constexpr std::string_view kClose = ")%>";

using Kind = JsonValue::Kind;

}  // namespace

std::string cJSONScript::Eval(std::string_view text) {
  const JsonValue script = Parse(text);
  if (!ParserErrors().empty() || script.kind() != Kind::list) {
    desk_.Message(MessageKind::information, "Parser Error",
                  ParserErrors().empty() ? "Invalid JSON" : ParserErrors());
    return {};
  }
  ended_ = false;
  depth_ = 0;
  cStringBuilder result;
  for (const auto& [key, element] : script.Members()) {
    if (ended_) break;
    // A text of the script itself is no command, whatever it looks like.
    result.Append(element.kind() == Kind::text ? element.ToText() : ExecCommand(element));
  }
  return result.toString();
}

std::string cJSONScript::ExecCommand(const JsonValue& value) {
  if (depth_ >= kDeepest) return "ERROR: Nesting level exceeded.";
  ++depth_;
  cStringBuilder result;
  switch (value.kind()) {
    case Kind::null:
      result.Append("null");
      break;
    case Kind::text:
      result.Append(Text(value.ToText()));
      break;
    case Kind::list:
    case Kind::object:
      for (const auto& [key, member] : value.Members()) {
        if (ended_) break;
        result.Append(value.kind() == Kind::list ? ExecCommand(member) : Run(Lower(key), member));
      }
      break;
    default: {
      std::string plain = value.ToText();
      std::ranges::replace(plain, ',', '.');
      result.Append(plain);
    }
  }
  --depth_;
  return result.toString();
}

std::string cJSONScript::Text(const std::string& text) {
  const std::size_t open = text.find('(');
  if (!text.starts_with(kOpen) || !text.ends_with(kClose) || open == std::string::npos) return text;
  if (!onCustomCommand) return {};
  const std::string name = Upper(Trim(text.substr(kOpen.size(), open - kOpen.size())));
  return onCustomCommand(
      name, std::string_view(text).substr(open + 1, text.size() - kClose.size() - open - 1));
}

std::string cJSONScript::Field(const JsonValue& fields, std::string_view name) {
  const JsonValue field = fields.Item(name);
  return field.IsNothing() ? std::string() : ExecCommand(field);
}

// A key that is no command does nothing.
std::string cJSONScript::Run(const std::string& command, const JsonValue& fields) {
  if (command == "alert") {
    const std::string message = Field(fields, "message");
    desk_.Message(MessageKind::information, Field(fields, "title"), message);
  } else if (command == "input") {
    const std::string prompt = Field(fields, "prompt");
    const std::string title = Field(fields, "title");
    return desk_.Input(title, prompt, Field(fields, "default"));
  } else if (command == "switch") {
    return RunSwitch(fields);
  } else if (command == "set") {
    const std::string name = Field(fields, "name");
    variables_[name] = Field(fields, "value");
  } else if (command == "get") {
    const auto variable = variables_.find(Field(fields, "name"));
    return variable == variables_.end() ? std::string() : variable->second;
  } else if (command == "if") {
    return RunIf(fields);
  } else if (command == "return") {
    return RunReturn(fields);
  }
  return {};
}

std::string cJSONScript::RunSwitch(const JsonValue& fields) {
  const JsonValue item = fields.Item("items").Item(Field(fields, "case"));
  return item.IsNothing() ? Field(fields, "default") : ExecCommand(item);
}

std::string cJSONScript::RunIf(const JsonValue& fields) {
  const std::string a = Lower(Field(fields, "value1"));
  const std::string b = Lower(Field(fields, "value2"));
  const std::string type = Lower(Field(fields, "type"));
  const bool holds = (type == "eq" && a == b) || (type == "gt" && a > b) ||
                     (type == "lt" && a < b) || (type == "gte" && a >= b) ||
                     (type == "lte" && a <= b);
  return Field(fields, holds ? "true" : "false");
}

std::string cJSONScript::RunReturn(const JsonValue& fields) {
  std::string result;
  if (fields.kind() == Kind::object) {
    for (const auto& [key, member] : fields.Members()) {
      if (!result.empty()) result += ',';
      result += ExecCommand(member);
    }
  } else {
    result = ExecCommand(fields);
  }
  ended_ = true;
  return result;
}

}  // namespace kaunter
