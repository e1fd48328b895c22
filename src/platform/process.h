// What a program settles about its own process before anything else.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace kaunter {

// The first that a program does. A pipe whose reader is gone and a file that may not grow become
// failed writes, which are told as a full disk is, instead of the end of the process; and what it
// writes comes out as it is, UTF-8 with line ends of one sign, on Windows too.
void SettleProcess();

// The folder where the running program lies; where the system does not tell, that of `argv0`.
std::string ProgramFolder(const char* argv0);

// The number of the running process, and whether there is one of that number.
long ThisProcess();
bool ProcessRuns(long process);

// Makes `trial` in a copy of this process, so that what breaks it down, or lets it stand still for
// `silence`, does not take the program along. The trial calls `alive` now and then, and gives up
// when that tells false; `meanwhile` is called here. True when it came to its end. A system that
// copies no process (Windows) makes no trial and tells true.
bool Survives(const std::function<void(const std::function<bool()>& alive)>& trial,
              std::chrono::milliseconds silence, const std::function<void()>& meanwhile);

}  // namespace kaunter
