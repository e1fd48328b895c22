// The text log: a file a day on this PC, AppPath/logs/log<dd-MM-yyyy>.log by the PC's clock, one
// line a record. It is always on, and the failure paths write it too.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace kaunter {

class Session;

// Makes the folder of the log when it is missing. Where that cannot be, the first line tells.
void MakeLogFolder(const Session& session);

// "[dd-MM-yyyy hh:mm:ss AMPM] [user] text": the stamp that every line carries.
std::string LogLine(const Session& session, std::string_view text);

// Appends the line to the day's file, which is opened and closed each time. Line ends inside the
// line become blanks, so that a record stays one line. A file that cannot be written (its folder is
// gone, the disk is full) breaks no act off in the middle, where a save that is done would look as
// if it were not: the line is kept, and written with the next one that can be. The act fails when
// it has come to its end, by RaiseLogTrouble.
void WriteLog(const Session& session, std::string_view line);

// Throws std::runtime_error with what LogTrouble tells where a line could not be written since the
// last call.
void RaiseLogTrouble(const Session& session);

// Why the last line could not be written, with the name of the file; "" when all are.
std::string LogTrouble(const Session& session);

// Tells that the clock was set from outside, in the log of the set day and in that of the real one.
// From then on each line has the real time behind it. Throws std::runtime_error when it cannot be
// written: nobody works in another time without a trace.
void LogSetClock(Session& session);

// The line of a save that failed: "<stamp> <identifier> - error Rollback <number> - <description>".
// The number is 0 for an error that is not the database's. Whoever calls tells the failure itself,
// so that nothing is raised for this line.
void LogRollback(const Session& session, std::string_view identifier, const std::exception& error);

}  // namespace kaunter
