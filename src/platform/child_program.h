// A program that runs beside this one, is looked after now and then, and can be ended.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kaunter {

class ChildProgram {
 public:
  // Starts it in `folder`, without a window; what it prints goes nowhere.
  ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& folder);
  // Ends it while it still runs; what it has started and left behind stays.
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  bool started() const;
  // What it ended with, kNoProgram (platform/process.h) where it was ended by force; nothing while
  // it runs.
  std::optional<int> Ended();
  // Ends it and what it has started, politely at first; both are gone when this returns.
  void End();

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace kaunter
