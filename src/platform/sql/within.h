// A work that is waited for no longer than a limit, whatever a driver does: one may hang in a call
// that nothing ends, behind a cable that was pulled.
#pragma once

#include <chrono>
#include <functional>

namespace kaunter {

// The number of the SqlError that tells that the limit has passed.
inline constexpr int kTimedOutNumber = -2;

// Runs `work` on a thread of its own and waits for its end, acting meanwhile as behind any long
// statement (waiting.h). Throws what the work throws, or SqlError when the limit has passed or a
// stop was asked for: a statement of the work that is running is then asked to give up, and the
// thread is left to itself. So the work must own all that it touches. While several are left behind
// and have not ended, no other begins: that is the same SqlError, at once.
void Within(std::chrono::milliseconds limit, std::function<void()> work);

}  // namespace kaunter
