// Long work that a person may stop, even while a single statement of it runs.
#pragma once

#include <functional>
#include <string>

#include "screen/caption.h"

namespace kaunter {

class Session;
class Desk;

// Asked between two steps of a known number: false ends the work.
using GoOn = std::function<bool(int done, int total)>;

// Does the work under the hourglass and, once it is long, a bar with `text` and a Stop. False when
// the person stopped it: the statement that ran then has failed, and what the work wrote is as its
// transactions leave it. A wish that came too late for both is none: the work is done. What it
// throws otherwise goes on.
bool RunStoppable(Session& session, Desk& desk, const std::string& title, const Caption& text,
                  const std::function<void(const GoOn&)>& work);

}  // namespace kaunter
