// Who may sign in: the built-in logon, the password, the time window, and what of the user's row
// goes into the session.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Session;
class Recordset;

// Level number of a stored level text: Clerk 1, Supervisor 2, Manager 3, Admin 4; 0 for any other.
int LevelNumber(std::string_view level_text);

// Tries a sign-in: fills the session and gives nothing, or leaves nobody signed in and gives the
// refusal.
std::optional<Caption> TrySignIn(Session& session, std::string_view user_id,
                                 std::string_view password);

// Nobody is signed in: user, level, companies, rights.
void ClearSignIn(Session& session);

}  // namespace kaunter
