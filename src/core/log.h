// The text log: a file a day on this PC, AppPath/logs/log<dd-MM-yyyy>.log by the PC's clock, one
// line a record. It is always on, and the failure paths write it too.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace kaunter {

class Session;

// Makes the folder of the log when it is missing. Throws std::filesystem::filesystem_error.
void MakeLogFolder(const Session& session);

// "[dd-MM-yyyy hh:mm:ss AMPM] [user] text": the stamp that every line carries.
std::string LogLine(const Session& session, std::string_view text);

// Appends the line to the day's file, which is opened and closed each time. Line ends inside the
// line become blanks, so that a record stays one line. Throws std::runtime_error that names the
// file when it cannot be written (no folder, full disk).
void WriteLog(const Session& session, std::string_view line);

// Tells that the clock was set from outside, in the log of the set day and in that of the real one.
// From then on each line has the real time behind it.
void LogSetClock(Session& session);

// The line of a save that failed: "<stamp> <identifier> - error Rollback <number> - <description>".
// The number is 0 for an error that is not the database's. Never throws: a full disk must not hide
// the failure itself.
void LogRollback(const Session& session, std::string_view identifier, const std::exception& error);

}  // namespace kaunter
