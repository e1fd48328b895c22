// Another program that does a piece of the work: what it says is heard, and a person may end it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/child_program.h"

namespace kaunter {

struct ToolRun {
  int status = kNoProgram;  // what it ended with, 0 when all is well
  bool stopped = false;
  std::string said;
};

// Runs a program and waits for its end, acting meanwhile as behind a long statement
// (platform/sql/waiting.h); `environment` as in ChildSetting. `go_on` is asked again and again;
// false ends the program.
ToolRun RunTool(
    const std::string& program, const std::vector<std::string>& arguments,
    const std::map<std::string, std::string>& environment = {},
    const std::function<bool()>& go_on = [] { return true; });

}  // namespace kaunter
