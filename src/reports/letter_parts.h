// A block of a letter that is higher than its page, parted where no text is cut in two: one with a
// long address beside its figures goes on on the next page instead of stopping the print.
#pragma once

#include <utility>

#include "reports/letter_blocks.h"

namespace kaunter {

// What of the block finds place in `room` millimetres, and the rest. The first part has no height
// where the first line or picture alone is higher.
std::pair<LetterBlock, LetterBlock> PartBlock(const LetterBlock& block, double room);

}  // namespace kaunter
