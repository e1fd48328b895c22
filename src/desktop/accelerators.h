// Alt and a letter must mean one button: what several buttons of a window claim goes to one of them
// and the others get another letter of their caption.
#pragma once

#include <string>

namespace kaunter {

class Button;

// The caption of a button with a letter that no other reachable button has: the primary button and
// the way out keep theirs, then those at the foot, then those of each page. Without a letter when
// all of its own are taken.
std::string ButtonText(const Button& button, bool chinese);

}  // namespace kaunter
