#include "collections/reading.h"

#include <exception>

#include "core/log.h"
#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

bool ReadOrTell(Session& session, Desk& desk, std::string_view what,
                const std::function<bool()>& read) {
  try {
    return read();
  } catch (const std::exception& failure) {
    LogRollback(session, what, failure);
    session.MsgText =
        session.In({"An error occur during reading the record", "读取资料时发生错误"});
    desk.Message(MessageKind::critical, session.MsgTitle.empty() ? what : session.MsgTitle,
                 session.MsgText);
    return false;
  }
}

}  // namespace kaunter
