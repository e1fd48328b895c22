// A program that runs beside this one, is looked after now and then, and can be ended.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kaunter {

// What a program has ended with that could not be started, or was ended by force.
inline constexpr int kNoProgram = -1;

struct ChildSetting {
  std::string folder = {};  // where it runs; "" for where this program does
  // On top of this program's own, an empty value for none. What is secret goes here, since
  // everybody on the machine may read the words of a command line.
  std::map<std::string, std::string> environment = {};
  bool heard = false;  // what it prints comes by Hear; else it goes nowhere
  // The programs that it starts are ended with it. Ctrl-C on a terminal does not reach them then.
  bool whole_family = false;
};

class ChildProgram {
 public:
  // Starts it, without a window. One that is named without a folder is looked for where the system
  // does.
  ChildProgram(const std::string& program, const std::vector<std::string>& arguments,
               const ChildSetting& setting);
  // Ends it while it still runs; what it has started and left behind stays.
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  bool started() const;
  // What it ended with; nothing while it runs.
  std::optional<int> Ended();
  // What it has printed since the last call, or a part of it. Waits for some, `longest` at most;
  // "" of one that has ended: there is no more.
  std::string Hear(std::chrono::milliseconds longest);
  // Ends it, politely at first; it is gone when this returns. One that does not listen takes half
  // a second: `meanwhile` is called again and again until then.
  void End(const std::function<void()>& meanwhile = {});

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace kaunter
