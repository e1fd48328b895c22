// The data file of the earlier desktop edition: a Jet database, read through Debian's MDB driver.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/odbc/odbc_source.h"

namespace kaunter {

// Opens the file. Throws FileTrouble for one that is not there, is no Jet file, or whose catalogue
// cannot be read, and where the driver is not installed. A password of the file does not hinder
// the driver.
std::unique_ptr<OdbcSource> OpenLegacyFile(const std::string& path);

enum class LegacyKeys {
  codes,  // of a code table: what exists is skipped
  keys,   // what exists stops the copy
  rows    // without a key of its own
};

struct LegacyTable {
  const char* name;
  LegacyKeys kind;
  std::vector<const char*> key;
  bool needed = false;  // a file without it is not the right one
};
// In the order in which they are copied.
const std::vector<LegacyTable>& LegacyTables();

// What ClearData empties, in this order.
const std::vector<const char*>& ClearedTables();

}  // namespace kaunter
