// The functions and the collation as a SQLite extension: a driver of SQLite's (LoadExt=) loads them
// to read and write a database of the embedded engine. It shares the process's SQLite library.
#include <sqlite3.h>

#include <exception>

#include "platform/clock.h"
#include "platform/sql/sqlite/sqlite_functions.h"

#ifdef _WIN32
#define KAUNTER_EXPORT __declspec(dllexport)
#else
#define KAUNTER_EXPORT __attribute__((visibility("default")))
#endif

namespace {
const kaunter::Clock kClock;
}

// SQLite derives the entry point's name from the file's: kaunter_sqlite.so. The table of functions
// that it hands over stays unused, since the library itself is linked.
extern "C" KAUNTER_EXPORT int sqlite3_kauntersqlite_init(sqlite3* db, char** error,
                                                         const struct sqlite3_api_routines*) {
  try {
    kaunter::sql::RegisterSqliteFunctions(db, kClock);
  } catch (const std::exception& failure) {
    if (error != nullptr) *error = sqlite3_mprintf("%s", failure.what());
    return SQLITE_ERROR;
  }
  return SQLITE_OK;
}
