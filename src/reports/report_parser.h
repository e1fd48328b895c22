// The lines of a report file, read one by one.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "reports/report_file.h"

namespace kaunter {

// `like` reads the file that a line "like" names; what it refuses it throws as
// std::invalid_argument. Throws std::runtime_error naming file, line and what is wrong.
ReportFile ParseReport(std::string_view text, const std::string& path, const ReportReading& reading,
                       const std::function<ReportFile(const std::string&)>& like);

}  // namespace kaunter
