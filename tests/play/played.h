// Runs a script on the sample program and keeps what came of it.
#pragma once

#include <sstream>
#include <string>

#include "play/runner.h"
#include "tests/play/sample_program.h"

namespace kaunter {

struct Played {
  int status = -1;
  std::string out;
  std::string err;
};

class Stage {
 public:
  explicit Stage(const std::string& script) : input(script) {}
  Played Run() {
    Runner runner(program, desk, reader, out, err);
    Played played;
    played.status = runner.Run();
    played.out = out.str();
    played.err = err.str();
    return played;
  }

  std::ostringstream out;
  std::ostringstream err;
  std::istringstream input;
  PlayDesk desk{out};
  SampleProgram program{desk};
  ScriptReader reader{input};
};

inline Played Play(const std::string& script) { return Stage(script).Run(); }

// On the open sample screen: `script` stands on lines 2 and following.
inline Played PlayOnSample(const std::string& script) { return Play("menu SampleMnu\n" + script); }

}  // namespace kaunter
