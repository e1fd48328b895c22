// What a program settles about its own process before anything else.
#pragma once

#include <string>

namespace kaunter {

// A pipe whose reader is gone and a file that may not grow become failed writes, which are told as
// a full disk is, instead of the end of the process.
void OutliveFailedWrites();

// The folder where the running program lies; where the system does not tell, that of `argv0`.
std::string ProgramFolder(const char* argv0);

}  // namespace kaunter
