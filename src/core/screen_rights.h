// Who may open which screen. A screen of the menu needs the menu right of an entry that opens it,
// whatever road leads there; those that work on loans or payments need the user's flag for them
// besides, read afresh at each opening.
#pragma once

#include <optional>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Button;
class Session;

// Why the signed-in person may not open the screen under this command (as CallerTag takes it);
// nothing when nothing stands against it. Without a main window nothing does.
std::optional<Caption> WhyClosed(Session& session, std::string_view screen,
                                 std::string_view command);

// A button that opens another screen: hidden where that screen is not built, greyed with the reason
// as its tip where the person may not open it, or while `on` is false.
void OfferShortcut(Session& session, Button& button, std::string_view screen,
                   std::string_view command, bool on = true);

// The same for a button that opens the criteria of a report: its entry of the menu decides.
void OfferReport(Session& session, Button& button, std::string_view file);

}  // namespace kaunter
