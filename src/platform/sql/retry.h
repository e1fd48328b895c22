// A write that another desktop stands in the way of, for a moment only.
#pragma once

#include <functional>

namespace kaunter {

// The number of the SqlError that tells that a primary key is there already.
inline constexpr int kDuplicateKeyNumber = 2627;

// Does `write`, a transaction of its own that reads all it needs anew, and does it again where
// another desktop took a key first, held a lock too long or won a deadlock: five times in all.
// Throws what the last one throws, and anything else at once.
void WriteAgainUntilDone(const std::function<void()>& write);

}  // namespace kaunter
