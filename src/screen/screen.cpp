#include "screen/screen.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "screen/text.h"

namespace kaunter {
namespace {

struct Restore {
  ~Restore() { flag = before; }
  bool& flag;
  bool before;
};

}  // namespace

Screen::Screen(std::string name, Caption title, Desk& desk)
    : name_(std::move(name)), title_(std::move(title)), desk_(desk) {}

void Screen::SetTitle(Caption title) {
  title_ = std::move(title);
  if (observer != nullptr) observer->TitleChanged();
}

void Screen::SetChinese(bool on) {
  if (chinese_ == on) return;
  chinese_ = on;
  if (observer == nullptr) return;
  observer->TitleChanged();
  for (Control* control : controls_) observer->ControlChanged(*control);
}

void Screen::Close() {
  if (closed_) return;
  closed_ = true;
  Guard([this] { Unload(); });
  if (observer != nullptr) observer->Closed();
}

bool Screen::TryClose() {
  bool agreed = false;
  Guard([this, &agreed] { agreed = RequestClose(); });
  if (agreed) Close();
  return closed_;
}

void Screen::FocusOn(Control& control) {
  // A control on a page that does not show brings its page to the front.
  for (Control* part = &control; part->parent() != nullptr; part = part->parent()) {
    if (auto* tab = dynamic_cast<Tab*>(part->parent())) {
      const std::vector<Control*> pages = Children(tab);
      const auto page = std::find(pages.begin(), pages.end(), part);
      tab->SetPage(static_cast<int>(page - pages.begin()));
    }
  }
  focus_ = &control;
  if (observer != nullptr) observer->FocusMoved(control);
}

Control* Screen::Find(std::string_view name) const {
  const auto found =
      std::find_if(controls_.begin(), controls_.end(),
                   [name](const Control* control) { return SameName(control->name(), name); });
  return found == controls_.end() ? nullptr : *found;
}

std::vector<Control*> Screen::Children(const Control* parent) const {
  std::vector<Control*> children;
  std::copy_if(controls_.begin(), controls_.end(), std::back_inserter(children),
               [parent](const Control* control) { return control->parent() == parent; });
  return children;
}

bool Screen::Guard(const std::function<void()>& act) {
  const auto tell = [this](const std::exception& failure) {
    try {
      if (onFailure) {
        onFailure(failure);
        return;
      }
    } catch (const std::exception&) {
      // The log could not be written: the person must still hear of the failure itself.
    }
    desk_.Message(MessageKind::critical, title_.In(chinese_), failure.what());
  };
  const bool inner = std::exchange(acting_, true);
  const Restore restore{acting_, inner};
  try {
    if (!inner && onAct) onAct();
    act();
    if (!inner && onActed) onActed();
    return true;
  } catch (const std::exception& failure) {
    tell(failure);
  } catch (...) {
    tell(std::runtime_error("the action failed for an unknown reason"));
  }
  return false;
}

}  // namespace kaunter
