// A save that loses power at each of its writes, over the file layer of crash_vfs.h.
#pragma once

#include <functional>
#include <string>

#include "tests/support/crash_vfs.h"

namespace kaunter::test {

struct CrashRun {
  bool died = false;
  bool told = false;  // the save had come to its end before the plug was pulled
};

// Runs `save` in a child process that loses power as planned. No database may be open in this
// process: the child would share its locks.
CrashRun RunAndCrash(const CrashPlan& plan, const std::function<void()>& save);

// SQLite's own check of a file: "ok".
std::string IntegrityOf(const std::string& file);

struct PulledPlug {
  std::string file;
  std::function<void()> fresh;         // puts the file as it was before the save
  std::function<void()> save;          // opens the file, saves; runs in the child
  std::function<std::string()> state;  // reopens the file and tells what it holds
  std::string before;
  std::string after;
  unsigned seeds = 4;               // drawn ways in which each write is lost
  std::function<void()> then = {};  // looks further, behind each death
};

// Dies at every write, sync, truncation and deletion of the save in turn: the file is sound and
// holds the state before or the state after, and the state after when the save had been told.
void DieEverywhere(const PulledPlug& plug);

}  // namespace kaunter::test
