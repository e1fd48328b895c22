// StopBar: the bar of long work that goes in steps and that a person may end between two of them.
// Where the face has no button, a script, nobody does. WaitBar is the one that comes late.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "screen/caption.h"
#include "screen/desk.h"

namespace kaunter {

class CancelOffer;
class Screen;

// Of the button.
inline const Caption kStop{"Stop", "停止"};

class StopBar {
 public:
  StopBar(Desk& desk, std::string_view title, std::string_view stop);
  // Under the screen's title, or one of its own, in its language.
  explicit StopBar(const Screen& screen);
  StopBar(const Screen& screen, const Caption& title);

  // Where the work stands; a total of 0 when nobody knows how much there is. An empty text leaves
  // the one that stands. False from the moment on in which a person wants the end.
  bool GoOn(std::int64_t done, std::int64_t total, std::string_view text = {});
  bool Stopped() const;

 private:
  std::unique_ptr<ProgressBar> bar_;
  CancelOffer* offer_;
  std::int64_t total_ = -1;
};

}  // namespace kaunter
