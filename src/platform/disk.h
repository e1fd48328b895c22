// What a disk tells and takes, beyond what std::filesystem knows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace kaunter {

// Whether the folder lies on another machine.
bool IsOnNetwork(const std::filesystem::path& folder);

// Both lie on one disk, as far as the system tells.
bool OnOneDisk(const std::filesystem::path& a, const std::filesystem::path& b);

// Whether an error of the system (errno; GetLastError on Windows) tells that a disk, a share of it
// or a file may not grow.
bool TellsNoRoom(int system_error);

// Gives an empty file that much room on its disk. Why there is none; empty when there is.
std::string ReserveRoom(const std::string& path, std::uint64_t bytes);

// Gives `whole` the name of an empty file, which is gone then. A file that is not empty, or that
// another process takes at the same moment, stays as it is.
void TakeEmptyPlace(const std::filesystem::path& whole, const std::filesystem::path& empty);

// Gives `whole` the name `name`, which it takes from the file that has it. Windows refuses that for
// as long as somebody has that file open: who only looks into it is waited for a moment. Throws
// std::filesystem::filesystem_error.
void TakeName(const std::filesystem::path& whole, const std::filesystem::path& name);

}  // namespace kaunter
