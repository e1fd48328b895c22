// A backup of the whole office while desks work: copied, opened and checked before it counts.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session.h"
#include "screen/caption.h"
#include "upkeep/backup_record.h"
#include "upkeep/keeping.h"

namespace kaunter {

struct UpkeepStep {
  Caption what;
  std::int64_t done = 0;
  std::int64_t total = 0;  // 0: nobody knows
};
// False ends the work.
using UpkeepGoOn = std::function<bool(const UpkeepStep&)>;

struct BackupResult {
  std::optional<BackupRecord> record;  // nothing: it was stopped, and no file is left
  std::vector<Caption> warnings;
  std::vector<std::string> removed;  // folders of backups that have had their time
};

// Into a folder of its own below `folder`, which is made when its parent is there. Earlier ones of
// the same office go by `keeping`; without one all stay. The moment is kept in the office's setting
// LastBackup, and stands in the audit trail where that is open. Throws CaptionError for what does
// not fit (no such folder, another backup under way, an engine that others back up), SqlError and
// std::runtime_error; nothing that looks like a backup is left then.
BackupResult TakeBackup(Session& session, const std::string& folder,
                        const std::optional<Keeping>& keeping, const UpkeepGoOn& go_on);

}  // namespace kaunter
