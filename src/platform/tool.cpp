#include "platform/tool.h"

namespace kaunter {

ToolRun RunTool(const std::string& program, const std::vector<std::string>& arguments,
                const std::map<std::string, std::string>& environment,
                const std::function<bool()>& go_on) {
  constexpr std::chrono::milliseconds kAskEvery(100);
  ChildProgram child(program, arguments, {.environment = environment, .heard = true});
  ToolRun run;
  while (!child.Ended()) {
    run.said += child.Hear(kAskEvery);
    if (go_on()) continue;
    run.stopped = true;
    child.End([&] { go_on(); });
  }
  for (std::string rest = child.Hear({}); !rest.empty(); rest = child.Hear({})) run.said += rest;
  run.status = *child.Ended();
  return run;
}

}  // namespace kaunter
