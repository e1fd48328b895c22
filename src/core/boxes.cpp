#include "core/boxes.h"

#include <fmt/format.h>

#include <utility>

#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/screen.h"

namespace kaunter {

bool CheckDateBox(Session& session, TextBox& box, const Caption& invalid) {
  box.SetText(Trim(box.text()));
  return box.empty() || IsDate(box.text()) || Refuse(session, box, invalid);
}

bool RequireDate(Session& session, TextBox& box, const Caption& required, const Caption& invalid) {
  if (!CheckDateBox(session, box, invalid)) return false;
  return !box.empty() || Refuse(session, box, required);
}

bool CheckDateOrder(Session& session, TextBox& from, const TextBox& to) {
  const auto first = DateTime::FromDisplay(from.text());
  const auto last = DateTime::FromDisplay(to.text());
  if (!first || !last || *first <= *last) return true;
  const Caption& a = from.caption();
  const Caption& b = to.caption();
  return Refuse(session, from,
                {fmt::format("{} {} is after {} {}: put the earlier day first", a.english,
                             from.text(), b.english, to.text()),
                 fmt::format("{} {} 晚于{} {}：请把较早的日期放在前面", a.In(true), from.text(),
                             b.In(true), to.text())});
}

void OfferNothing(ComboBox& box) {
  std::vector<std::string> items = box.items();
  items.insert(items.begin(), std::string());
  box.SetItems(std::move(items));
}

void CapTexts(const Session& session, const Screen& screen) {
  if (!session.settings.CapLock) return;
  for (Control* control : screen.controls()) {
    auto* box = dynamic_cast<TextBox*>(control);
    if (box == nullptr || box->kind() != Kind::text) continue;
    if (!box->picker.empty() || !box->mask.empty() || Lower(box->name()).ends_with("email"))
      continue;
    box->onLeave = [&session, box, then = std::move(box->onLeave)] {
      if (!box->locked()) box->SetText(ApplyCapLock(session, box->text()));
      if (then) then();
    };
  }
}

}  // namespace kaunter
