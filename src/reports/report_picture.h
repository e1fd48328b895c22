// Pictures of a report: a logo beside the program, a customer's photo.
#pragma once

#include <string>

#include "reports/report_file.h"

namespace kaunter {

// The full path of a picture that a report names; "" when there is no such file, so that the paper
// is printed without it. A path that is not a full one begins at the report file.
std::string PicturePath(const ReportFile& file, const std::string& named);

}  // namespace kaunter
