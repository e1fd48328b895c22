// A sub-command of kaunter-office: one row of the table in commands.cpp.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/companion_program.h"
#include "core/session.h"

namespace kaunter {

// What a command is given. The office is not opened: a restore has none, a move has two.
struct OfficeRun {
  Session& session;  // with the settings of the PC and the clock
  LocalSettings local;
  CompanionReach reach;
  std::map<std::string, std::string, std::less<>> values;  // of the options that take one
  std::set<std::string, std::less<>> switches;
  std::vector<std::string> words;  // what is no option

  std::string Value(std::string_view option) const;  // "" when it was not given
  bool Has(std::string_view option) const { return switches.contains(option); }

  // A line for the person at the terminal; one that the log takes too.
  static void Say(const std::string& line);
  void Report(const std::string& line) const;
};

struct OfficeCommand {
  std::string_view name;
  std::string_view arguments;  // as the usage shows them
  std::string_view what;       // a line
  std::vector<std::string_view> values;
  std::vector<std::string_view> switches;
  std::size_t most_words;
  // Gives an exit_status. Throws CompanionRefused for what does not fit; whatever else it throws
  // is a failure. Both are told and logged.
  int (*run)(OfficeRun& run);
};

// In the order of the usage.
const std::vector<OfficeCommand>& OfficeCommands();

struct OfficeCall {
  const OfficeCommand* command = nullptr;  // null: help
  CompanionReach reach;
  std::map<std::string, std::string, std::less<>> values;
  std::set<std::string, std::less<>> switches;
  std::vector<std::string> words;
};

// `arguments` without the program's name; what does not reach an office there is taken from
// `handed_on`. Throws CompanionRefused.
OfficeCall ParseOfficeCall(const std::vector<std::string>& arguments,
                           const CompanionOptions& handed_on);

// Of all commands.
std::string OfficeUsage();

}  // namespace kaunter
