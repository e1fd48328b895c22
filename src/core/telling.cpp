#include "core/telling.h"

#include "core/session.h"
#include "screen/screen.h"

namespace kaunter {

const std::string& Heading(const Session& session, const Screen& screen) {
  return session.MsgTitle.empty() ? screen.title().In(screen.chinese()) : session.MsgTitle;
}

void Tell(Session& session, const Screen& screen, MessageKind kind, const Caption& text) {
  session.MsgText = session.In(text);
  screen.desk().Message(kind, Heading(session, screen), session.MsgText);
}

bool Refuse(Session& session, Control& control, const Caption& text) {
  Tell(session, control.screen(), MessageKind::critical, text);
  control.SetMark(true);
  control.screen().FocusOn(control);
  return false;
}

}  // namespace kaunter
