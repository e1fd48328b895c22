// Where a test finds the files of the checkout that it was built from, and the programs of its
// build.
#pragma once

#include <string>

namespace kaunter::test {

std::string SourceDir();
std::string BinaryDir();  // the programs lie in bin/ below it

}  // namespace kaunter::test
