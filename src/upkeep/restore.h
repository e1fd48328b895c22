// An office as a backup holds it, in the place of the one that is there. What is replaced is kept.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/moved_office.h"
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
  bool related = true;  // a company of the office is in the backup
  // The office was moved away from here, or is a copy that a move has begun: the books are kept at
  // that place, and a restore here opens a second office beside it.
  std::optional<MoveMark> moved;
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
  OfficeRestore(Session& session, BackupRecord record) : session_(session) {
    view_.record = std::move(record);
  }
  // All but the exchange. False when it was stopped.
  virtual bool Prepare(const UpkeepGoOn& go_on) = 0;
  // What the view tells of an office that is there. False when it was stopped. Throws SqlError.
  bool Compare(Connection& office, Connection& earlier, const UpkeepGoOn& go_on);
  // A look behind the confirmation finds what was told.
  bool IsAsTold(Connection& office, Connection& earlier) const;
  [[noreturn]] static void RefuseChanged();
  [[noreturn]] static void RefuseOpenDesk();
  // The audit trail that is there stays, since it tells of what is lost too; one that was sealed
  // with its office takes lines again.
  static void KeepTrail(std::unique_ptr<Connection> trail);

  Session& session_;
  RestoreView view_;

  friend std::unique_ptr<OfficeRestore> PrepareRestore(Session& session, const std::string& folder,
                                                       const UpkeepGoOn& go_on);
};

// Null when it was stopped. Throws CaptionError for a backup that does not fit (damaged, of another
// engine, of a newer program), SqlError, std::runtime_error. The session has no connection open.
std::unique_ptr<OfficeRestore> PrepareRestore(Session& session, const std::string& folder,
                                              const UpkeepGoOn& go_on);

// Each engine's.
std::unique_ptr<OfficeRestore> EmbeddedRestoreOf(Session& session, BackupRecord record);
std::unique_ptr<OfficeRestore> PostgresqlRestoreOf(Session& session, BackupRecord record);

}  // namespace kaunter
