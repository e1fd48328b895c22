// The command line of kaunter-play.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace kaunter {

struct PlayOptions {
  std::string app;            // folder of the program; "" for where the program lies
  std::string database;       // embedded database file, made when missing
  std::string settings;       // local settings file
  std::string now;            // "yyyy-mm-dd hh:mm:ss"
  std::string trace;          // file that takes every statement
  std::string out;            // folder that takes the reports
  std::string computer;       // what this PC is called; "" for its own name
  std::string check_reports;  // folder whose report files are read, instead of a script
  std::string script;         // "-" or "": standard input
  bool help = false;
};

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// `arguments` without the program's name. Throws UsageError for an unknown option, an option
// without its value, a second script, or a --now that is no time.
PlayOptions ParsePlayOptions(const std::vector<std::string>& arguments);

const char* PlayUsage();

}  // namespace kaunter
