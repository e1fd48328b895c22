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

// Behind the failure of a save that was rolled back whole: where the disk failed, that nothing of
// it was kept; else nothing.
Caption NothingKept(const std::exception& failure);

}  // namespace kaunter
