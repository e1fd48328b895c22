#include "bench/ratio.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>

namespace kaunter {
namespace {

void KeepBest(Times& best, const Times& times, bool first) {
  best.wall = first ? times.wall : std::min(best.wall, times.wall);
  best.cpu = first ? times.cpu : std::min(best.cpu, times.cpu);
}

const char* Verdict(bool good) { return good ? "" : "  TOO SLOW"; }

}  // namespace

Times Time(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  const std::clock_t cpu = std::clock();
  work();
  return {
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count(),
      static_cast<double>(std::clock() - cpu) * 1000 / CLOCKS_PER_SEC};
}

bool Compare(const Measure& measure, const std::function<void()>& ours,
             const std::function<void()>& theirs) {
  const auto turn = [&](const std::function<void()>& work) {
    if (measure.prepare) measure.prepare();
    return Time(work);
  };
  turn(ours);
  turn(theirs);
  Times our_best, their_best;
  for (int run = 0; run < measure.runs; ++run) {
    KeepBest(our_best, turn(ours), run == 0);
    KeepBest(their_best, turn(theirs), run == 0);
  }
  const double ratio = our_best.wall / their_best.wall;
  const bool good = measure.limit <= 0 || ratio <= measure.limit;
  fmt::print("{:<50} {:5.2f}  CPU {:5.2f}  ({}{:.2f} ms against {:.2f} ms){}\n", measure.what,
             ratio, our_best.cpu / their_best.cpu,
             measure.limit > 0 ? fmt::format("limit {:.1f}; ", measure.limit) : std::string(),
             our_best.wall, their_best.wall, Verdict(good));
  std::fflush(stdout);
  return good;
}

bool Report(const std::string& what, double limit_ms, int runs, const std::function<void()>& work) {
  Times best;
  for (int run = 0; run < runs; ++run) KeepBest(best, Time(work), run == 0);
  const bool good = limit_ms <= 0 || best.wall <= limit_ms;
  fmt::print("{:<50} {:.0f} ms{}{}\n", what, best.wall,
             limit_ms > 0 ? fmt::format("  (limit {:.0f})", limit_ms) : std::string(),
             Verdict(good));
  std::fflush(stdout);
  return good;
}

int RunBench(const std::function<bool()>& bench) {
  try {
    return bench() ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}

}  // namespace kaunter
