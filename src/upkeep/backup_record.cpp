#include "upkeep/backup_record.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "core/values.h"
#include "platform/file_digest.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRecord = "backup.txt";

// Line ends in a name would begin a line of their own.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return text;
}

std::int64_t NumberIn(const std::string& value) { return std::strtoll(value.c_str(), nullptr, 10); }

std::string FileLine(const BackupRecord::File& file) {
  return file.name.empty() ? "" : fmt::format("{} {}", file.digest, file.name);
}

BackupRecord::File FileOf(const std::string& line) {
  const std::size_t blank = line.find(' ');
  if (blank == std::string::npos) return {};
  return {line.substr(blank + 1), line.substr(0, blank)};
}

}  // namespace

void WriteBackupRecord(const BackupRecord& record, const fs::path& folder) {
  WriteWholeFile((folder / kRecord).string(), [&](std::ostream& file) {
    file << "# A backup of Kaunter: kaunter-office restore takes it back.\n";
    const auto line = [&](const char* key, const std::string& value) {
      file << key << " = " << OneLine(value) << '\n';
    };
    line("Made", record.made.ToCanonical());
    line("Program", record.program);
    line("Engine", record.engine);
    line("Source", record.source);
    line("Machine", record.machine);
    line("Office", record.office);
    line("Loans", std::to_string(record.loans));
    line("Receipts", std::to_string(record.receipts));
    line("Faults", std::to_string(record.faults));
    line("Ledger", record.ledger ? "checked" : "not checked");
    line("Replay", fmt::format("{}", fmt::join(record.replay, " ")));
    line("Main", FileLine(record.main));
    line("Logs", FileLine(record.logs));
  });
}

BackupRecord ReadBackupRecord(const std::string& folder) {
  std::ifstream stream(fs::path(folder) / kRecord, std::ios::binary);
  if (!stream) {
    throw std::runtime_error(fmt::format("{} is no backup: there is no {} in it", folder, kRecord));
  }
  std::map<std::string, std::string> values;
  for (std::string line; std::getline(stream, line);) {
    const std::size_t equals = line.find('=');
    if (line.starts_with("#") || equals == std::string::npos) continue;
    values[Trim(std::string_view(line).substr(0, equals))] =
        Trim(std::string_view(line).substr(equals + 1));
  }
  const auto made = DateTime::FromCanonical(values["Made"]);
  BackupRecord record;
  record.folder = folder;
  record.main = FileOf(values["Main"]);
  record.logs = FileOf(values["Logs"]);
  const auto beside = [](const BackupRecord::File& file) {
    return fs::path(file.name).filename() == file.name;
  };
  if (!made || record.main.name.empty() || !beside(record.main) || !beside(record.logs) ||
      values["Engine"].empty()) {
    throw std::runtime_error(fmt::format(
        "{} is no whole backup: its {} does not tell what lies there", folder, kRecord));
  }
  record.made = *made;
  record.program = values["Program"];
  record.engine = values["Engine"];
  record.source = values["Source"];
  record.machine = values["Machine"];
  record.office = values["Office"];
  record.loans = NumberIn(values["Loans"]);
  record.receipts = NumberIn(values["Receipts"]);
  record.faults = NumberIn(values["Faults"]);
  record.ledger = values["Ledger"] == "checked";
  std::istringstream loans(values["Replay"]);
  for (std::string loan; loans >> loan;) record.replay.push_back(loan);
  return record;
}

std::string BackupName(const std::string& office, const DateTime& made) {
  return FileNameOf(office) + "-" + Format(made, "yyyymmdd-hhnnss");
}

std::vector<BackupRecord> BackupsIn(const std::string& folder) {
  std::vector<BackupRecord> backups;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(folder, none)) {
    if (entry.path().filename().string().starts_with(".")) continue;
    if (!fs::exists(entry.path() / kRecord, none)) continue;
    try {
      backups.push_back(ReadBackupRecord(entry.path().string()));
    } catch (const std::runtime_error&) {
      continue;
    }
  }
  std::sort(backups.begin(), backups.end(), [](const BackupRecord& a, const BackupRecord& b) {
    return std::tie(a.made, a.folder) > std::tie(b.made, b.folder);
  });
  return backups;
}

void CheckBackupFiles(const BackupRecord& record) {
  for (const BackupRecord::File& file : {record.main, record.logs}) {
    if (file.name.empty()) continue;
    const std::string path = record.folder + "/" + file.name;
    if (DigestOfFile(path) != file.digest) {
      throw std::runtime_error(fmt::format(
          "{} is damaged: it is not what was written there. Take another backup", path));
    }
  }
}

}  // namespace kaunter
