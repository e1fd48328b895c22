// Identity numbers against the watch list of the central database. Every look-up goes this road: it
// takes kScreeningTime at most, opening included, however many numbers are asked, and a list that
// cannot be had never stops the counter.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class Session;
class Desk;

inline constexpr std::chrono::milliseconds kScreeningTime(5000);

enum class Screening {
  clear,  // no entry, or nothing to look up
  hit,    // an entry
  away,   // the list could not be had: noted in the log and on the status line
};

// Of these one number is looked up, the first that is not empty. A passport number is looked up in
// another column of the list than a new IC.
struct IdentityNumbers {
  std::string ic;
  std::string passport1 = {};
  std::string passport2 = {};
};

struct ScreeningResult {
  Screening found = Screening::clear;
  std::string text;        // of a hit
  bool line_down = false;  // the central database did not answer; the office's copy may have
};

// Whether the line is tried. Where it did not answer a moment ago, a look-up that another one
// follows in any case need not wait for it once more.
enum class Line { try_it, is_down };

// A result for each, and no message. Only while the company in work takes part and checks
// identities. Never throws.
std::vector<ScreeningResult> LookUpIdentities(Session& session,
                                              const std::vector<IdentityNumbers>& asked,
                                              Line line = Line::try_it);
// Shows a hit under "AML/CFT Screening".
void TellHit(Desk& desk, const ScreeningResult& hit);

// One look-up, its hit told.
ScreeningResult ScreenIdentity(Session& session, Desk& desk, const IdentityNumbers& asked,
                               Line line = Line::try_it);

}  // namespace kaunter
