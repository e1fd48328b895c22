// Speaking to the person on behalf of a screen, under the title of the menu entry in use, or that
// of the screen where no entry is.
#pragma once

#include <exception>
#include <string>

#include "screen/caption.h"
#include "screen/desk.h"

namespace kaunter {

class Control;
class Screen;
class Session;

const std::string& Heading(const Session& session, const Screen& screen);
// MsgText takes the text of the language in force.
void Tell(Session& session, const Screen& screen, MessageKind kind, const Caption& text);
// Critical, the control marked and given the focus. Always false.
bool Refuse(Session& session, Control& control, const Caption& text);

// What is kept when an act fails, and what to do.
extern const Caption kNothingKept;  // rolled back whole
extern const Caption kEarlierKept;  // something of it was committed before
extern const Caption kNotStored;    // one change among others
extern const Caption kNotRead;      // it only reads

// The words of an act that failed. Where the disk, the file or the line did, the cause stands
// behind them, unless they name it, and what is kept; behind a cut line, which tells that itself,
// to look. That something was committed before is told whatever failed.
Caption Failed(const Caption& words, const std::exception& failure,
               const Caption& kept = kNothingKept);
// The same, and behind it what a rule of our own that stopped the act says (a std::runtime_error):
// it tells the person what to do; the database's words do not.
Caption FailedOrRefused(const Caption& words, const std::exception& failure);

}  // namespace kaunter
