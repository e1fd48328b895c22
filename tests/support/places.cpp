#include "tests/support/places.h"

namespace kaunter::test {

std::string SourceDir() { return KAUNTER_SOURCE_DIR; }
std::string BinaryDir() { return KAUNTER_BINARY_DIR; }

}  // namespace kaunter::test
