// Hand: what a person's hand does to a control: goes to it, types, picks, ticks, presses, leaves.
// Each act runs under the screen's guard. What a person could not do throws ScriptError.
#pragma once

#include <string>
#include <string_view>

#include "play/play_desk.h"
#include "screen/screen.h"

namespace kaunter {

class Hand {
 public:
  explicit Hand(PlayDesk& desk) : desk_(desk) {}

  // Goes to the control; a box that was typed into is left first.
  void GoTo(Control& control);
  // Types into a box, picks an entry ("#2" by its number from 0), ticks or unticks, chooses, turns
  // to a page.
  void Put(Control& control, const std::string& text);
  void LeaveControl(Control& control);
  void Click(Control& control);
  void Key(Control& control, std::string_view key);
  // Throws unless the control can be reached and is enabled (and, for an edit, is not locked).
  static void RequireActive(const Control& control);
  static void RequireEditable(const Control& control);

 private:
  Control*& TypedIn(const Screen& screen);

  PlayDesk& desk_;
  Control* typed_on_main_ = nullptr;  // the main window stands beneath all open screens
};

}  // namespace kaunter
