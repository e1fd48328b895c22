// Runs a script on the whole program, with a new office in a folder of its own.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "play/application_program.h"
#include "play/runner.h"
#include "tests/play/played.h"

namespace kaunter {

class Office {
 public:
  Office()
      : folder_(std::filesystem::temp_directory_path() /
                ("kaunter-play-" + std::to_string(::getpid()) + "-" + std::to_string(Next()))) {
    std::filesystem::create_directories(folder_);
  }
  ~Office() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::string Read(const std::string& name) const {
    std::ifstream file(folder_ / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name) << text;
  }

  Played Play(const std::string& script) const {
    std::ostringstream out;
    std::ostringstream err;
    std::istringstream input(script);
    PlayDesk desk(out);
    Application application({.app_path = folder_.string(),
                             .database = Path("office.db"),
                             .settings = settings,
                             .now = now,
                             .trace = trace},
                            desk);
    ApplicationProgram program(application);
    ScriptReader reader(input);
    Runner runner(program, desk, reader, out, err);
    Played played;
    played.status = runner.Run();
    played.out = out.str();
    played.err = err.str();
    return played;
  }

  std::string settings;
  std::string now = "2024-01-31 09:00:00";
  std::string trace;

 private:
  static int Next() {
    static int count = 0;
    return ++count;
  }
  std::filesystem::path folder_;
};

}  // namespace kaunter
