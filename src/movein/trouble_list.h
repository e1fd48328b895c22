// The list of what did not come, as a file for the person who mends it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/session_screen.h"

namespace kaunter {

// Asks for a folder and writes "<name>-<time>.csv" into it, the heading first; tells where it is,
// or why there is none. No cell of it is a formula to a spreadsheet.
void ExportTroubles(Session& session, const Screen& screen, std::string_view name,
                    const std::vector<std::vector<std::string>>& rows);

}  // namespace kaunter
