// Where the files of a customer lie: photos and scanned documents, in the Photo folder of this PC.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Session;

// Copies a chosen file into PhotoPath/<folder> under a new name and gives that name. Throws
// std::runtime_error for a name without an ending ("Invalid filename") and for a file that cannot
// be copied.
std::string KeepFile(const Session& session, std::string_view folder, const std::string& source,
                     std::string_view new_stem);
// Full path of a kept file.
std::string KeptPath(const Session& session, std::string_view folder, std::string_view file);
// Why a kept file cannot be handed to the program that shows it; nothing when it can.
std::optional<Caption> WhyNotOpened(const std::string& path);

}  // namespace kaunter
