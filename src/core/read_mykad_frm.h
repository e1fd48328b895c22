// ReadMyKadfrm, the small window that stands there while the reader works: "Reading Mykad detail,
// please wait ....", and a button to give up.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "screen/stop_bar.h"

namespace kaunter {

class Screen;
class Session;

class ReadMyKadfrm {
 public:
  ReadMyKadfrm(const Session& session, const Screen& screen);

  // Runs the program in its folder until it ends. False when the person gave up: then it was ended,
  // with all that it had started. Throws CardTrouble where it cannot be started or does not end.
  bool Run(const std::string& program, const std::vector<std::string>& arguments);
  // Waits for something until it is there, or the time is up, or the person gives up.
  void WaitFor(const std::function<bool()>& there, std::chrono::milliseconds longest);
  bool given_up() const { return given_up_; }
  // The reader is done: "MyKad readed".
  void TellRead();

 private:
  bool GoOn();

  const Session& session_;
  const Screen& screen_;
  std::optional<StopBar> bar_;
  bool given_up_ = false;
};

}  // namespace kaunter
