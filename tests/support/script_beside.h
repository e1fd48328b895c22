// A Python script of the tests that runs beside one and stands in for a server: it tells its port,
// listens to lines, and ends with the test, however the test ends.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/places.h"

namespace kaunter::test {

class ScriptBeside {
 public:
  ScriptBeside(const std::string& script, const std::vector<std::string>& arguments) {
    int input[2], output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) Fail(script);
    const std::string program = SourceDir() + "/" + script;
    std::vector<char*> words = {const_cast<char*>("python3"), const_cast<char*>(program.c_str())};
    for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      execv("/usr/bin/python3", words.data());  // Debian's, which has the packages
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    FILE* said = fdopen(output[0], "r");
    if (process_ < 0 || std::fscanf(said, "port %d", &port_) != 1) Fail(script);
    std::fclose(said);
  }
  ~ScriptBeside() {
    close(input_);
    waitpid(process_, nullptr, 0);
  }
  ScriptBeside(const ScriptBeside&) = delete;
  ScriptBeside& operator=(const ScriptBeside&) = delete;

  int port() const { return port_; }
  void Tell(const std::string& line) {
    const std::string whole = line + "\n";
    if (write(input_, whole.data(), whole.size()) < 0) Fail("a script");
  }

 private:
  [[noreturn]] static void Fail(const std::string& script) {
    throw std::runtime_error(script + " does not run");
  }

  pid_t process_ = -1;
  int input_ = -1;
  int port_ = 0;
};

}  // namespace kaunter::test
