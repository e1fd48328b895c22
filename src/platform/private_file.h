// Files that hold personal data. They are made for their owner alone, or, where their folder lets a
// group write (several users share an office), for the folder's group too; never for everybody.
#pragma once

#include <filesystem>
#include <fstream>

namespace kaunter {

// Makes an empty file; false when there is one already or it cannot be made.
bool MakePrivateFile(const std::filesystem::path& path);

// Makes a folder that its owner alone may look into: `beginning` and some signs that no other has.
// Throws std::runtime_error that names it.
std::filesystem::path MakePrivateFolder(const std::string& beginning);

// Takes a file away from everybody else.
void MakePrivate(const std::filesystem::path& path);

// The same for a file of this user's that everybody can reach; else its rights stay as they are.
void KeepPrivate(const std::filesystem::path& path);

// A folder of this user's and the files in it that are his: taken away from everybody else, as
// above. Where others have files in it, it stays open to them.
void KeepFolderPrivate(const std::filesystem::path& path);

// Opens a file for writing, made private when it is new. The stream tells whether it is open.
std::ofstream OpenPrivate(const std::filesystem::path& path, std::ios::openmode mode);

// What is written is on the disk when this returns; throws std::runtime_error that names the file.
void SyncFile(const std::filesystem::path& path);
// The same for the names that stand in a folder, as far as the system lets a folder be synced.
void SyncFolder(const std::filesystem::path& folder);

}  // namespace kaunter
