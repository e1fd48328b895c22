// The catalogue of screens: which class stands behind a screen's name. A screen opens another by
// its name alone, so that rooms never include each other in a circle.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class Screen;
class Session;
class Desk;

// Null for a name that is unknown or whose screen is not built yet. Letter case does not matter.
std::unique_ptr<Screen> MakeScreen(std::string_view name, Session& session, Desk& desk);
bool ScreenExists(std::string_view name);
std::vector<std::string> ScreenNames();

}  // namespace kaunter
