// What a program without a window needs of Qt.
#pragma once

#include <string>
#include <vector>

namespace kaunter {

// Where Qt's readers and writers of picture formats lie beside the programs, they are found there
// without an application object too: work on pictures may be another thread's.
void FindPluginsIn(const std::string& folder);

// Makes the off-screen application object that drawing needs, once, and keeps the numbers of the C
// library in plain form ("1.5", never "1,5").
void EnsureHeadlessGui();

// Starts a program and returns at once; false when it could not be started.
bool StartProgram(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace kaunter
