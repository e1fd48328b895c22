#include "core/telling.h"

#include "core/session.h"
#include "platform/sql/connection.h"
#include "screen/screen.h"

namespace kaunter {

const std::string& Heading(const Session& session, const Screen& screen) {
  return session.MsgTitle.empty() ? screen.title().In(screen.chinese()) : session.MsgTitle;
}

void Tell(Session& session, const Screen& screen, MessageKind kind, const Caption& text) {
  session.MsgText = session.In(text);
  screen.desk().Message(kind, Heading(session, screen), session.MsgText);
}

Caption NothingKept(const std::exception& failure) {
  constexpr int kNoRoom = 1105;
  constexpr int kDiskFailed = 823;
  const auto* error = dynamic_cast<const SqlError*>(&failure);
  if (error == nullptr || (error->number() != kNoRoom && error->number() != kDiskFailed)) return {};
  return {"\nNothing of it was kept. Mend the cause and do it again.",
          "\n此次的更改全未保留。请排除原因后再做一次。"};
}

bool Refuse(Session& session, Control& control, const Caption& text) {
  Tell(session, control.screen(), MessageKind::critical, text);
  control.SetMark(true);
  control.screen().FocusOn(control);
  return false;
}

}  // namespace kaunter
