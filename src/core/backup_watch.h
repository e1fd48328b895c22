// What the main window says of the last good backup.
#pragma once

#include <string>

#include "platform/date_time.h"
#include "screen/caption.h"

namespace kaunter {

class Session;

// The settings that tell of it, as Systemast holds them.
struct BackupWatch {
  std::string LastBackup;      // its moment, canonical; set by each good backup
  std::string BackupByOthers;  // "1": the office is backed up by other means
  std::string OfficeKind;      // an office for practice needs none
};

// A line when the last one is older than a day (and an hour, in which the night's own is made), and
// when there is none; else empty. Silent on an engine that Kaunter backs up nothing of.
Caption BackupNotice(const Session& session, const BackupWatch& watch, const DateTime& now);

}  // namespace kaunter
