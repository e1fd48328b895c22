// A backup on a disk: a folder of its own with the copied databases and a record of what they hold.
// The folder gets its name last, so that one that has it is whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace kaunter {

struct BackupRecord {
  struct File {
    std::string name;
    std::string digest;
  };

  std::string folder;   // where it lies; "" for one that is being made
  DateTime made;        // by the office's clock
  std::string program;  // version
  std::string engine;   // as the connection names it
  std::string source;   // the file, or server and database
  std::string machine;
  std::string office;  // its name
  std::int64_t loans = 0;
  std::int64_t receipts = 0;
  std::int64_t faults = 0;          // figures that did not hold when it was made
  bool ledger = false;              // the copy was opened and its ledger checked
  std::vector<std::string> replay;  // loans whose payment was being saved: to be rebuilt
  File main;
  File logs;  // no name: the office kept no audit trail then

  std::string MainPath() const { return folder + "/" + main.name; }
  std::string LogsPath() const { return folder + "/" + logs.name; }
};

// Writes the record into the folder, and onto the disk. Throws std::runtime_error.
void WriteBackupRecord(const BackupRecord& record, const std::filesystem::path& folder);

// Throws std::runtime_error that says why the folder is no backup.
BackupRecord ReadBackupRecord(const std::string& folder);

// The name that a backup takes. `office` is the stem of its file, or its database.
std::string BackupName(const std::string& office, const DateTime& made);

// The backups of a folder, the newest first; what is none is passed over.
std::vector<BackupRecord> BackupsIn(const std::string& folder);

// The files are those of the record. Throws std::runtime_error that names the one that is not.
void CheckBackupFiles(const BackupRecord& record);

}  // namespace kaunter
