// The windows stay painted while a long statement runs.
#pragma once

namespace kaunter {

// From here on, for the life of the program. Keys and clicks wait until the statement is done.
void PaintDuringStatements();

}  // namespace kaunter
