// The copy of an office that an engine makes, into a folder that is not a backup yet.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/session.h"
#include "platform/sql/embedded_copy.h"
#include "upkeep/backup.h"
#include "upkeep/backup_record.h"
#include "upkeep/office_check.h"

namespace kaunter {

// Copies, opens and checks; the record then tells the files and what they hold. False when it was
// stopped. Throws SqlError, std::runtime_error: what lies in the folder is then no backup.
bool CopyEmbeddedOffice(Session& session, const std::filesystem::path& folder, BackupRecord* record,
                        const UpkeepGoOn& go_on);

// The same of an office on PostgreSQL, by its own programs. Where the account may make a database,
// the dump is restored into one and checked there; else a warning tells what was not.
bool DumpPostgresqlOffice(Session& session, const std::filesystem::path& folder,
                          BackupRecord* record, std::vector<Caption>* warnings,
                          const UpkeepGoOn& go_on);

// What a copy of the embedded engine asks, told with a step's words. `go_on` must live as long.
EmbeddedGoOn Told(const UpkeepGoOn& go_on, const Caption& what);

// The ledger of a copy that nobody else works on; `complete` tells whether it was stopped. Throws
// SqlError.
OfficeCheck CheckCopy(Connection& copy, const UpkeepGoOn& go_on);

// The moment of the last backup, into the office's setting LastBackup. Throws SqlError.
void KeepMoment(Connection& office, const BackupRecord& record);

// What the check of a copy has found, into the record. A payment is stored first and replayed then:
// a loan that does not hold in the copy and does in the office was caught between the two, and is
// one to be rebuilt. What holds in neither is waited for some seconds, for a desktop may be between
// the two; false when `go_on` has ended that. Throws SqlError.
bool NoteCheck(Connection& office, const OfficeCheck& check, BackupRecord* record,
               const UpkeepGoOn& go_on);

// Rebuilds the loans that a record names, and their customers. Throws what a rebuild failed with.
void Replay(Connection& copy, const std::vector<std::string>& loans);

}  // namespace kaunter
