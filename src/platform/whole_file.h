// A file that is whole or not there.
#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace kaunter {

// Who may read it: whom the folder tells (platform/private_file.h), or its owner alone.
enum class FileReach { kFolder, kOwner };

// Writes beside the place, under a name that no other writer has, and takes it when all is on the
// disk; of several writers the last one's file stands. Throws std::runtime_error that
// names the file and says why; nothing is left then, and what was there before stays as it was.
void WriteWholeFile(const std::string& path, const std::function<void(std::ostream&)>& write,
                    FileReach reach = FileReach::kFolder);

// The same with the bytes of another file. Over one that is there std::filesystem::copy_file fails
// on Windows, whatever it is told.
void CopyWholeFile(const std::string& from, const std::string& to,
                   FileReach reach = FileReach::kFolder);

// `name` as a part of a file's name: signs that a folder does not take become "_".
std::string FileNameOf(const std::string& name);

// A name that no other file has: for one that is not whole yet.
std::string FreeFileName();

// Takes away files of such names on which nobody has worked for a day: their writers are dead.
void ClearForgottenParts(const std::string& folder);

}  // namespace kaunter
