// Where the files of the log folder lie.
#pragma once

#include <filesystem>
#include <string_view>

#include "platform/date_time.h"

namespace kaunter {

class Session;

std::filesystem::path LogFolder(const Session& session);
// One that is begun anew each day: "log26-11-2026.log" of the kind "log".
std::filesystem::path DayFilePath(const std::filesystem::path& folder, std::string_view kind,
                                  const DateTime& day);

}  // namespace kaunter
