// How every print of a screen begins: which file, what it reads from, and who prints.
#pragma once

#include <string>

#include "screen/report_job.h"

namespace kaunter {

class Session;

// A print of a report file of the program's folder, from the main connection, by the person who is
// signed in and sees the rows of the own companies alone, under the name of the office as it stands
// now. The screen adds its condition, title and parameters, and another connection where the rows
// lie elsewhere.
ReportJob SessionReport(const Session& session, const std::string& file);

}  // namespace kaunter
