// The companion programs that this one starts find the same office: what stood on its command line
// travels to them in the environment (KAUNTER_APP, KAUNTER_DATABASE, KAUNTER_SETTINGS,
// KAUNTER_NOW), for they take nothing but their own arguments.
#pragma once

#include <string>

namespace kaunter {

struct CompanionOptions {
  std::string app;       // folder of the program
  std::string database;  // embedded database file
  std::string settings;  // local settings file
  std::string now;       // "yyyy-mm-dd hh:mm:ss"
};

// An empty option is taken out of the environment; paths travel whole.
void HandOn(const CompanionOptions& options);
CompanionOptions HandedOn();

}  // namespace kaunter
