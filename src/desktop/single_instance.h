// One desktop per user and program folder: a second one ends at once and says nothing.
#pragma once

#include <QLockFile>
#include <memory>
#include <string>

namespace kaunter {

class SingleInstance {
 public:
  explicit SingleInstance(const std::string& app_path);
  // Another desktop of this user runs from the same folder.
  bool other_runs() const { return other_runs_; }

 private:
  std::unique_ptr<QLockFile> lock_;
  bool other_runs_ = false;
};

}  // namespace kaunter
