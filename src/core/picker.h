// The search pickers: what each of them lists, and the statement of one page of it. PopupFrm shows
// them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

class Session;
class Desk;

// Opens PopupFrm with this picker, modally, and gives the chosen key; "" when nothing was chosen.
// `search` is the text typed before, `extra` a filter that a few pickers use.
std::string Pick(Session& session, Desk& desk, std::string_view picker,
                 std::string_view search = {}, std::string_view extra = {});

}  // namespace kaunter
