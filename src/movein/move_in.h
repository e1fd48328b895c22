// Old data moves in: the files are read into a staging database of this PC, and from there one
// customer after the other comes with all that belongs to it, in a transaction each. A run that is
// stopped or killed leaves whole customers behind it, and the next run knows what has come: each
// record is noted in MoveInMast under the code that it had.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "movein/mapping.h"
#include "movein/move_in_plan.h"

namespace kaunter {

struct MoveInSource {
  std::string path;
  Mapping mapping;
};

struct MoveInJob {
  std::string company;
  std::array<std::optional<MoveInSource>, 3> sources;  // by MoveKind
};

// What a file looks like, for the mapping.
struct FileLook {
  Encoding encoding = Encoding::automatic;
  char separator = 0;
  std::vector<std::string> headings;
  std::vector<CsvRecord> samples;
};
// Throws FileTrouble.
FileLook LookAt(const std::string& path, Encoding encoding, char separator, std::size_t samples);

struct MoveProgress {
  Caption what;
  int done = 0;
  int total = 0;  // 0: not known
};
using MayGoOn = std::function<bool(const MoveProgress&)>;

// With `write` off nothing is stored, and the report tells what would be. A run that `go_on` ends
// is not complete. Throws FileTrouble, SqlError, std::runtime_error.
MoveReport MoveIn(Session& session, const MoveInJob& job, bool write, const MayGoOn& go_on);

}  // namespace kaunter
