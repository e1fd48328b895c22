// LoanScreen: a screen of loan terms, which the arithmetic behind it may refuse.
#pragma once

#include "core/session_screen.h"
#include "loans/refusal.h"

namespace kaunter {

class LoanScreen : public SessionScreen {
 protected:
  using SessionScreen::SessionScreen;
  // Says it, marks the control and goes there. False.
  bool RefuseWith(const Refusal& refusal) {
    Control* control = Find(refusal.field);
    return control != nullptr ? Refuse(*control, refusal.text) : Refuse(refusal.text);
  }
};

}  // namespace kaunter
