// A home folder of a test's own, for what a program finds by the environment.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/installation.h"
#include "tests/core/office.h"

namespace kaunter {

class Home {
 public:
  Home() {
    setenv("HOME", folder_.path().c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_DATA_HOME");
  }
  ~Home() { SetInstallation({}); }

  std::string File(const std::string& name) const { return folder_.File(name); }
  std::string Folder(const std::string& name) const {
    std::filesystem::create_directories(File(name));
    return File(name);
  }
  void Write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(File(name)).parent_path());
    std::ofstream(File(name)) << text;
  }

 private:
  TempFolder folder_;
};

}  // namespace kaunter
