// Where the running program lies, what came with it, and which folders belong to the person.
//
// Installed: PREFIX/lib/kaunter holds the programs, PREFIX/share/kaunter the files that came with
// them. Else they lie together in one folder: of a copy that may be carried about, or, with an
// uninstaller beside them, of the whole machine.
#pragma once

#include <string>

namespace kaunter {

struct Installation {
  std::string programs;  // DailyBatch lies in a folder of its own in it
  std::string files;     // report files, lists and layouts
  bool portable = true;  // what is stored may lie beside them too
};

Installation InstallationAt(const std::string& program_folder);
// Of the running program, once at its start; without it no file counts as one that came with it.
void SetInstallation(const Installation& installation);
const Installation& ThisInstallation();

// `name` in `folder`; where that has no such file, the one that came with the program.
std::string FileOf(const std::string& folder, const std::string& name);

// The settings file of all who use this installation; it need not be there.
std::string InstallationSettings(const Installation& installation);

// This person's own folders; they need not be there.
std::string UserSettingsFolder();
std::string UserDataFolder();
std::string UserHomeFolder();
// Makes the second one, which nobody else can look into; one that is there stays as it is. Throws
// std::filesystem::filesystem_error.
void MakeUserDataFolder();

// Whether this person may make files in the folder; false for one that is not there.
bool MayWriteIn(const std::string& folder);

}  // namespace kaunter
