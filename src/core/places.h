// Where this PC's side of an office lies: settings, and the folder of logs, pictures and the
// office's own files (AppPath).
#pragma once

#include <string>

#include "core/local_settings.h"

namespace kaunter {

class Session;

// The settings file that counts when none is named: that of the installation where there is one,
// else the person's own, which need not be there.
std::string SettingsFile();

// The folder named on the command line, else that of the setting DataFolder. Without either a copy
// that may be written to keeps all beside its programs, and everything else lies in the person's
// own folder, which is made. Throws std::runtime_error that says what is to be done.
std::string AppFolder(const std::string& named, const LocalSettings& local);

// Where a file dialog begins: AppPath, but for a person's own one, which is hidden, his home.
std::string PickStart(const Session& session);

}  // namespace kaunter
