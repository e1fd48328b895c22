// Opening a screen for one loan: the hand-over of its command and keys.
#pragma once

#include <string_view>

namespace kaunter {

class Session;
class Desk;

// Shows the screen with `command` in CallerTag and the loan in HandOverLoanID, and returns when it
// has been closed; the caller's own command, loan and message title are back then.
void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             std::string_view loan_id);

}  // namespace kaunter
