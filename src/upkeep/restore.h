// An office as a backup holds it, in the place of the one that is there. What is replaced is kept.
#pragma once

#include <memory>
#include <string>

#include "core/session.h"
#include "upkeep/backup.h"
#include "upkeep/backup_record.h"
#include "upkeep/loss.h"

namespace kaunter {

struct RestoreView {
  BackupRecord record;
  std::string office;   // what is replaced: the file, or server and database
  bool there = false;   // an office is there
  std::string trouble;  // why it cannot be read: what is lost is not known then
  bool related = true;  // no company of the office is in the backup
  Loss loss;
};

// A restore that has been prepared beside the office: the backup is unpacked, sound, and compared.
// What is left of it goes with this object, or at the next preparation.
class OfficeRestore {
 public:
  virtual ~OfficeRestore() = default;
  OfficeRestore(const OfficeRestore&) = delete;
  OfficeRestore& operator=(const OfficeRestore&) = delete;

  const RestoreView& view() const { return view_; }

  // Puts the backup in force, in one step: whatever ends it on the way leaves the office as it was,
  // or as it is then. Gives the name under which the replaced one is kept, "" where there was none.
  // Throws CaptionError while a desk is open and when something was saved since the comparison;
  // SqlError, std::runtime_error.
  virtual std::string Run() = 0;

 protected:
  explicit OfficeRestore(Session& session) : session_(session) {}
  Session& session_;
  RestoreView view_;
};

// Null when it was stopped. Throws CaptionError for a backup that does not fit (damaged, of another
// engine, of a newer program), SqlError, std::runtime_error. The session has no connection open.
std::unique_ptr<OfficeRestore> PrepareRestore(Session& session, const std::string& folder,
                                              const UpkeepGoOn& go_on);

// Each engine's.
std::unique_ptr<OfficeRestore> PrepareEmbeddedRestore(Session& session, BackupRecord record,
                                                      const UpkeepGoOn& go_on);

std::unique_ptr<OfficeRestore> PreparePostgresqlRestore(Session& session, BackupRecord record,
                                                        const UpkeepGoOn& go_on);

extern const Caption kComparing;  // what a preparation tells while it compares
// Refuses what a look behind the confirmation does not find as it was told.
void CheckSameLoss(const Loss& told, const std::optional<Loss>& now);

}  // namespace kaunter
