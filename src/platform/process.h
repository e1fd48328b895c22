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

// What RunProgram gives for one that could not be started, or was ended by force.
inline constexpr int kNoProgram = -1;

// Runs a program without a window and waits for its end; what it prints goes nowhere. Gives what it
// ended with, 0 when all is well.
int RunProgram(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace kaunter
