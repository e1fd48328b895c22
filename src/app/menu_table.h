// The menu table: every entry of the main menu, in the order in which it is shown.
#pragma once

#include <vector>

#include "core/menu.h"

namespace kaunter {

std::vector<MenuEntry> MenuTable();

}  // namespace kaunter
