// The slow statements of the day, for support: a line each in logs/slow<dd-MM-yyyy>.log of this PC,
// without a literal in it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace kaunter {

class Session;

struct SlowStatement {
  std::string statement;  // literals stand as ?
  int times = 0;
  long longest = 0;  // milliseconds, and
  long total = 0;
};

inline constexpr std::chrono::milliseconds kSlow{500};

// From now on, of all connections of this process: those that take `from` or longer.
void NoteSlowStatements(const Session& session, std::chrono::milliseconds from = kSlow);

// Those of all programs that work in this folder, alike ones in one; the costliest first.
std::vector<SlowStatement> SlowStatementsOf(const Session& session, const DateTime& day);

}  // namespace kaunter
