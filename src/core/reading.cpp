#include "core/reading.h"

#include <exception>

#include "core/log.h"
#include "core/telling.h"
#include "screen/hourglass.h"
#include "screen/screen.h"

namespace kaunter {

bool ReadOrTell(Session& session, const Screen& screen, std::string_view what,
                const Caption& failed, const std::function<void()>& read) {
  try {
    const Hourglass busy(screen.desk());
    read();
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session, what, failure);
    Tell(session, screen, MessageKind::critical, Failed(failed, failure, kNotRead));
    return false;
  }
}

}  // namespace kaunter
