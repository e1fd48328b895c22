// Start-up: what happens from the moment the program is started until the main window is usable, in
// the order in which it happens. A step that ends the program throws StartRefused.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "core/local_settings.h"
#include "core/session.h"

namespace kaunter {

class Desk;

// Ends the program with one message. An empty text says nothing (it has been told already).
class StartRefused : public std::runtime_error {
 public:
  StartRefused(std::string title, const std::string& text)
      : std::runtime_error(text), title_(std::move(title)) {}
  const std::string& title() const { return title_; }

 private:
  std::string title_;
};

// Takes the local settings into the session; an empty ConnDatabase takes ConnDataSource.
void ApplyLocalSettings(Session& session, const LocalSettings& local);

// Refuses a PC whose short date is month first.
void CheckDateFormat(const std::string& short_date);

// Opens MainConn; a new embedded office gets its tables, the company HQ and the KEY that opens the
// built-in logon. Embedded stand-ins of the accounting bridge (AEDMTS) and of the central database
// (AMLA) are made too where the settings of the PC let them be. Throws SqlError.
void OpenMainConnection(Session& session, const LocalSettings& local);

// The connect step behind an open MainConn: version check, table recordsets, settings and patches,
// with a bar. Throws SqlError; StartRefused when a newer version is out.
void Connect(Session& session, Desk& desk);

// The database password of an account kind.
std::string DatabasePassword(std::string_view account);

// The connection string of the office's data source with this catalog: MainConn and LogsConn.
std::string OfficeConnectionString(const Session& session, std::string_view catalog);
// The same for a data source that the session does not work on.
std::string OfficeConnectionString(std::string_view account, std::string_view user,
                                   std::string_view source, std::string_view catalog);

std::string RunningVersion();  // "1.10.2"
// The version as one number: the fields put together as digits, so 1.10.2 is 1102 and 2.1.3 is 213.
int VersionNumber(std::string_view dotted);
// Compares the stored version with the running one: raises it from an installed copy, refuses when
// the stored one is newer (message, download address opened).
void CheckVersion(Session& session, Desk& desk, std::string_view running);
// An installed copy counts as drive C; a build folder does not.
bool IsInstalledCopy(const std::string& app_path);

}  // namespace kaunter
