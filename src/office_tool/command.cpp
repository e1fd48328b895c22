#include "office_tool/command.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "core/log.h"

namespace kaunter {
namespace {

template <typename List, typename T>
bool Holds(const List& list, const T& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

const OfficeCommand& Named(const std::string& name) {
  for (const OfficeCommand& command : OfficeCommands()) {
    if (command.name == name) return command;
  }
  throw CompanionRefused(fmt::format("\"{}\" is no command", name));
}

}  // namespace

std::string OfficeRun::Value(std::string_view option) const {
  const auto found = values.find(option);
  return found == values.end() ? std::string() : found->second;
}

void OfficeRun::Say(const std::string& line) {
  fmt::print("{}\n", line);
  std::fflush(stdout);
}

void OfficeRun::Report(const std::string& line) const {
  Say(line);
  WriteLog(session, LogLine(session, line));
}

OfficeCall ParseOfficeCall(const std::vector<std::string>& arguments,
                           const CompanionOptions& handed_on) {
  OfficeCall call;
  call.reach.office = handed_on;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      call.command = nullptr;
      return call;
    }
    if (TakeReachOption(arguments, &i, &call.reach)) continue;
    if (call.command == nullptr) {
      if (argument.starts_with("-")) throw CompanionRefused("unknown option " + argument);
      call.command = &Named(argument);
    } else if (Holds(call.command->switches, argument)) {
      call.switches.insert(argument);
    } else if (Holds(call.command->values, argument)) {
      if (i + 1 >= arguments.size()) throw CompanionRefused(argument + " needs a value");
      call.values[argument] = arguments[++i];
    } else if (argument.starts_with("-")) {
      throw CompanionRefused(fmt::format("{} knows no option {}", call.command->name, argument));
    } else if (call.words.size() == call.command->most_words) {
      throw CompanionRefused(fmt::format("{} takes no \"{}\"", call.command->name, argument));
    } else {
      call.words.push_back(argument);
    }
  }
  if (call.command == nullptr) throw CompanionRefused("no command is given");
  return call;
}

std::string OfficeUsage() {
  std::string usage =
      "kaunter-office [--app DIR] [--database FILE] [--settings FILE]\n"
      "               [--now \"yyyy-mm-dd hh:mm:ss\"] [--trace FILE] COMMAND ...\n";
  for (const OfficeCommand& command : OfficeCommands()) {
    usage += fmt::format("\n  {}{}{}\n      {}\n", command.name,
                         command.arguments.empty() ? "" : " ", command.arguments, command.what);
  }
  return usage;
}

}  // namespace kaunter
