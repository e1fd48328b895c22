// Where the office of a session lies, and where its backups go.
#pragma once

#include <optional>
#include <string>

#include "core/session.h"

namespace kaunter {

// The file of an embedded office, and that of its audit trail, which need not be there; nothing for
// an office on a server.
std::optional<std::string> EmbeddedOffice(const Session& session);
std::optional<std::string> EmbeddedTrail(const Session& session);

// The embedded file, or data source and database.
std::string OfficeSource(const Session& session);
// The same as the beginning of a file's name.
std::string OfficeShortName(const Session& session);

// Where the backups of this office go when nobody names a folder: that of the settings of the PC,
// else "Backup" beside the embedded file, or in the user's data folder.
std::string BackupFolderOf(const Session& session);

}  // namespace kaunter
