// What a program settles about its own process before anything else.
#pragma once

#include <string>
#include <vector>

namespace kaunter {

// A pipe whose reader is gone and a file that may not grow become failed writes, which are told as
// a full disk is, instead of the end of the process.
void OutliveFailedWrites();

// The folder where the running program lies; where the system does not tell, that of `argv0`.
std::string ProgramFolder(const char* argv0);

// Runs a program without a window and waits for its end; what it prints goes nowhere. False when it
// could not be started or ended with an error.
bool RunProgram(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace kaunter
