// A database file that comes whole or not at all: filled under another name beside its own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kaunter::sql {

// Behind the name of one that is being filled stands this, and the process that does it.
inline constexpr std::string_view kUnfinished = ".new-";

// A file with its log, the log's index and its journal.
inline constexpr const char* kFilesOfDatabase[] = {"", "-wal", "-shm", "-journal"};
void RemoveWithItsLogs(const std::filesystem::path& file);

// Gives a file its name; what has come meanwhile from another start stays. Throws SqlError.
void TakeItsName(const std::filesystem::path& whole, const std::filesystem::path& path);

}  // namespace kaunter::sql
