// A desk for measuring: nothing is expected to be told, so a message ends the program.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/screen/silent_desk.h"

namespace kaunter {

class StrictDesk : public SilentDesk {
 public:
  void Message(MessageKind, std::string_view title, std::string_view text) override {
    std::fprintf(stderr, "%s: %s\n", std::string(title).c_str(), std::string(text).c_str());
    std::exit(2);
  }
};

}  // namespace kaunter
