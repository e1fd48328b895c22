// The trace: a file with every statement as it stands in T-SQL, a line each: connection, tab,
// statement, with \t, \r, \n and \\ for tab, line ends and backslash. It is how support sees what a
// screen did. Secrets stand as *** (core/secrets.h).
#pragma once

#include <string>

#include "platform/sql/connection.h"

namespace kaunter {

// Writes behind what the file holds. Throws std::runtime_error when it cannot be written, or holds
// anything but a trace.
Connection::TraceSink OpenTrace(const std::string& path);

}  // namespace kaunter
