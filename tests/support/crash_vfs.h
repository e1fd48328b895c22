// A file layer for SQLite that plays a pulled plug. A process that merely dies loses nothing, since
// the operating system still holds its writes; here everything written since a file's last sync is
// taken back at death, and only a part of it, drawn by a seed sector by sector, comes through.
#pragma once

namespace kaunter::test {

struct CrashPlan {
  long die_at = 0;  // the write, truncation, sync or deletion that no longer happens, from 1
  unsigned seed = 0;
};

inline constexpr int kCrashStatus = 77;  // exit status of the process that "lost power"

// Makes the layer the default of this process; files opened from now on go through it. For a forked
// child only: it ends the process.
void InstallCrashVfs(const CrashPlan& plan);
// Loses power here and now.
[[noreturn]] void PullThePlug();

}  // namespace kaunter::test
