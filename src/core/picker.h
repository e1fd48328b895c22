// Asking the person for a record: the one call that opens a search picker and gives the answer.
// pickers.h tells which pickers there are.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kaunter {

class Session;
class Desk;
class TextBox;

// Opens PopupFrm with this picker, modally, and gives the chosen key; "" when nothing was chosen.
// `search` is the text typed before, `extra` a filter that a few pickers use. The hand-over fields
// of the session are empty afterwards, CallerTag among them: a screen that was itself called with a
// CallerTag has taken it over by then.
std::string Pick(Session& session, Desk& desk, std::string_view picker,
                 std::string_view search = {}, std::string_view extra = {});
// F2 and the search button of the box open this picker; what is chosen goes to `take`.
void OfferPicker(Session& session, TextBox& box, std::string picker,
                 std::function<void(const std::string& id)> take);

}  // namespace kaunter
