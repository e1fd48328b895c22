#include "core/picker.h"

#include <utility>

#include "core/picker_statement.h"
#include "core/session.h"
#include "screen/screen.h"

namespace kaunter {

std::string Pick(Session& session, Desk& desk, std::string_view picker, std::string_view search,
                 std::string_view extra) {
  session.PickerName = picker;
  session.PickerExtra = extra;
  session.CallerTag = search;
  desk.Show("PopupFrm");
  // The picker empties its name when it opens. Where no picker came up, CallerTag still holds the
  // search text, and that is no answer.
  const bool opened = std::exchange(session.PickerName, {}).empty();
  session.PickerExtra.clear();
  std::string chosen = std::exchange(session.CallerTag, {});
  return opened ? chosen : std::string();
}

void OfferPicker(Session& session, TextBox& box, std::string picker,
                 std::function<void(const std::string& id)> take) {
  box.picker = std::move(picker);
  box.onAskNoCode = [&session, &box] { return IsNoCode(session, box.picker, box.text()); };
  box.onSearch = [&session, &box, take = std::move(take)] {
    // What is no code, or was refused as one, is looked for.
    const bool search = box.marked() || IsNoCode(session, box.picker, box.text());
    const std::string id =
        Pick(session, box.screen().desk(), box.picker, search ? box.text() : std::string());
    if (!id.empty()) take(id);
  };
}

}  // namespace kaunter
