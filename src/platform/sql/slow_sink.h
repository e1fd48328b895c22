// Who hears of the statements that took long, of whatever connection of this process.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>

namespace kaunter {

// Called behind each statement that took `from` or longer, also where it failed, on the thread that
// sent it. An empty one for nobody. Not while a statement runs.
using SlowSink = std::function<void(std::string_view connection, std::string_view sql,
                                    std::chrono::milliseconds took)>;
void SetSlowSink(std::chrono::milliseconds from, SlowSink sink);

}  // namespace kaunter
