#include "core/stoppable.h"

#include "core/session.h"
#include "platform/sql/waiting.h"
#include "screen/hourglass.h"
#include "screen/wait_bar.h"

namespace kaunter {

bool RunStoppable(Session& session, Desk& desk, const std::string& title, const Caption& text,
                  const std::function<void(const GoOn&)>& work) {
  const Hourglass busy(desk);
  WaitBar bar(desk, title, session.In(text), session.In(kStop));
  const MayStop stop([&bar] { return bar.StopAsked(); });
  bool whole = true;
  try {
    work([&](int done, int total) { return whole = !bar.StopAsked(done, total); });
  } catch (const SqlError&) {
    if (!bar.stopped()) throw;
    whole = false;
  }
  return whole;
}

}  // namespace kaunter
