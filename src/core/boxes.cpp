#include "core/boxes.h"

#include "core/telling.h"
#include "core/values.h"

namespace kaunter {

bool CheckDateBox(Session& session, TextBox& box, const Caption& invalid) {
  box.SetText(Trim(box.text()));
  return box.empty() || IsDate(box.text()) || Refuse(session, box, invalid);
}

bool RequireDate(Session& session, TextBox& box, const Caption& required, const Caption& invalid) {
  if (!CheckDateBox(session, box, invalid)) return false;
  return !box.empty() || Refuse(session, box, required);
}

}  // namespace kaunter
