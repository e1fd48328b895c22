#include "platform/tool.h"

#include "platform/sql/waiting.h"

namespace kaunter {

ToolRun RunTool(const std::string& program, const std::vector<std::string>& arguments,
                const std::map<std::string, std::string>& environment,
                const std::function<bool()>& go_on) {
  constexpr std::chrono::milliseconds kBetweenLooks(20);
  ChildProgram child(program, arguments, {.environment = environment, .heard = true});
  ToolRun run;
  while (!child.Ended()) {
    run.said += child.Hear(kBetweenLooks);
    ActWhileWaiting();
    if (go_on()) continue;
    run.stopped = true;
    child.End(ActWhileWaiting);
  }
  for (std::string rest = child.Hear({}); !rest.empty(); rest = child.Hear({})) run.said += rest;
  run.status = *child.Ended();
  return run;
}

}  // namespace kaunter
