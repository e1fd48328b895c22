// A measure is a ratio: our side and a plain program's do the same work in turn in the same run, so
// that a busy machine is busy for both.
#pragma once

#include <functional>
#include <string>

namespace kaunter {

struct Times {
  double wall = 0;  // milliseconds
  double cpu = 0;
};

// How long the work takes, once.
Times Time(const std::function<void()>& work);

struct Measure {
  std::string what;
  double limit = 0;  // ratio of the wall times; 0: none, the figure only is of interest
  int runs = 15;
  std::function<void()> prepare = {};  // before each side's turn, outside the clock
};

// Prints a line with the ratio of the fastest turns (what others do on the machine only makes a
// turn slower), after one turn each that does not count. False when the limit is passed.
bool Compare(const Measure& measure, const std::function<void()>& ours,
             const std::function<void()>& theirs);

// Prints the fastest of some turns in milliseconds, for what has no plain counterpart. False when
// it takes longer than the limit; 0 is none.
bool Report(const std::string& what, double limit_ms, int runs, const std::function<void()>& work);

// Runs the benchmark: 0 for a good one, 1 when a limit was passed, 2 for a failure, which is told.
int RunBench(const std::function<bool()>& bench);

}  // namespace kaunter
