// What the programs beside the desktop have in common (DailyBatch, kaunter-office): the options
// that lead them to an office, how they open it, and how they end.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/companion.h"
#include "core/local_settings.h"

namespace kaunter {

class Session;

namespace exit_status {
inline constexpr int kDone = 0;
inline constexpr int kRefused = 1;  // what was asked for does not fit; nothing was done
inline constexpr int kFailed = 2;   // a database, a disk, a network
}  // namespace exit_status

// The command line, or what it asks for, does not fit.
class CompanionRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CompanionReach {
  CompanionOptions office;
  std::string trace;  // file that takes every statement
};

// --app, --database, --settings, --now and --trace. False when argument `i` is none of them; else
// it has been taken and `i` stands on its value. Throws CompanionRefused for one without a value,
// and a --now that is no time.
bool TakeReachOption(const std::vector<std::string>& arguments, std::size_t* i,
                     CompanionReach* reach);

// AppPath is the folder that was named, or what core/places.h says. The log gets its folder and a
// set clock is told there. The settings of the PC are in the session; nothing is opened.
LocalSettings ReachOffice(Session& session, const CompanionReach& reach);

// Opens MainConn of an office that is there; nothing is made or patched. Throws SqlError, and
// CompanionRefused for a database without an office and for one that a newer program has patched.
void OpenReachedOffice(Session& session, const CompanionReach& reach);

// The audit trail of that office, where it keeps one. Throws SqlError.
void OpenReachedTrail(Session& session);

}  // namespace kaunter
