#include "screen/control.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "screen/camera.h"
#include "screen/screen.h"
#include "screen/text.h"

namespace kaunter {

Control::Control(Screen& screen, Control* parent, ControlType type, std::string name,
                 Caption caption)
    : screen_(screen),
      parent_(parent != nullptr ? parent : screen.open_page()),
      type_(type),
      name_(std::move(name)),
      caption_(std::move(caption)) {
  screen_.Register(this);
}

void Control::SetCaption(Caption caption) {
  caption_ = std::move(caption);
  Changed();
}

void Control::SetEnabled(bool on) {
  if (enabled_ == on) return;
  enabled_ = on;
  Changed();
}

void Control::SetVisible(bool on) {
  if (visible_ == on) return;
  visible_ = on;
  Changed();
}

void Control::SetLocked(bool on) {
  if (locked_ == on) return;
  locked_ = on;
  Changed();
}

bool Control::Reachable() const {
  for (const Control* control = this; control != nullptr; control = control->parent_) {
    if (!control->visible_) return false;
  }
  return true;
}

bool Control::Active() const {
  for (const Control* control = this; control != nullptr; control = control->parent_) {
    if (!control->enabled_) return false;
  }
  return true;
}

bool Control::Editable() const { return Reachable() && Active() && !locked_; }

void Control::SetMark(bool on) {
  mark_text_ = on ? Text() : std::string();
  if (marked_ == on) return;
  marked_ = on;
  Changed();
}

void Control::Enter() {
  screen_.NoteFocus(this);
  if (entered_) return;
  entered_ = true;
  if (onEnter) onEnter();
}

void Control::Leave() {
  if (!entered_) return;
  // Cleared first: a handler may send the focus back here, which is a new visit.
  entered_ = false;
  if (marked_ && Text() != mark_text_) SetMark(false);
  left_text_ = Text();
  if (onLeave) onLeave();
  left_text_.clear();
}

void Control::Key(std::string_view key) {
  if (onKey) onKey(key);
}

void Control::Changed() {
  if (screen_.observer != nullptr) screen_.observer->ControlChanged(*this);
}

// --- containers

Frame::Frame(Screen& screen, std::string name, Caption caption, Control* parent)
    : Control(screen, parent, ControlType::container, std::move(name), std::move(caption)) {}

bool Frame::is_page() const {
  const auto* frame = dynamic_cast<const Frame*>(parent());
  return frame != nullptr && frame->is_tab_set();
}

Tab::Tab(Screen& screen, std::string name, Caption caption, Control* parent)
    : Frame(screen, std::move(name), std::move(caption), parent) {
  tab_set_ = true;
}

void Tab::SetPage(int page) {
  const auto pages = static_cast<int>(screen().Children(this).size());
  if (page < 0 || page >= pages) {
    throw std::out_of_range(name() + " has no page " + std::to_string(page));
  }
  if (page_ == page) return;
  page_ = page;
  Changed();
  if (onPage) onPage();
}

// --- texts

TabPage::TabPage(Screen& screen, std::string name, Caption caption, Tab& tab)
    : Frame(screen, std::move(name), std::move(caption), &tab) {
  screen.OpenPage(this);
}

EndPages::EndPages(Screen& screen) { screen.OpenPage(nullptr); }

Label::Label(Screen& screen, std::string name, Caption caption, Control* parent)
    : Control(screen, parent, ControlType::label, std::move(name), std::move(caption)) {}

std::string Label::Text() const {
  return text_.empty() ? WithoutMnemonic(caption().In(screen().chinese())) : text_;
}

void Label::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Changed();
}

TextBox::TextBox(Screen& screen, std::string name, Caption caption, Kind kind, Control* parent)
    : Control(screen, parent, ControlType::text_box, std::move(name), std::move(caption)),
      kind_(kind) {}

void TextBox::SetText(std::string text) {
  cursor_ = std::string::npos;
  Put(std::move(text));
}

void TextBox::Put(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Changed();
}

bool TextBox::Type(std::string text) {
  text = ApplyMask(mask, std::move(text));
  if (max_length > 0 && CharacterCount(text) > static_cast<std::size_t>(max_length)) return false;
  if (text == text_) return true;
  Put(std::move(text));
  if (onChange) onChange();
  return true;
}

bool TextBox::Insert(std::string_view text) {
  const std::size_t at = cursor();
  const std::size_t before = std::exchange(cursor_, at + text.size());
  if (Type(std::string(text_).insert(at, text))) return true;
  cursor_ = before;
  return false;
}

// --- choices

ComboBox::ComboBox(Screen& screen, std::string name, Caption caption,
                   std::vector<std::string> items, Control* parent, bool editable)
    : Control(screen, parent, ControlType::combo_box, std::move(name), std::move(caption)),
      items_(std::move(items)),
      editable_(editable) {}

int ComboBox::index() const {
  const auto found = std::find_if(items_.begin(), items_.end(), [this](const std::string& item) {
    return SameName(item, text_);
  });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ComboBox::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  Changed();
}

void ComboBox::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Changed();
}

void ComboBox::SetIndex(int index) {
  SetText(index < 0 ? std::string() : items_.at(static_cast<std::size_t>(index)));
}

bool ComboBox::Pick(std::string_view text) {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [text](const std::string& item) { return SameName(item, text); });
  if (found == items_.end()) {
    if (!editable_) return false;
    if (max_length > 0 && CharacterCount(text) > static_cast<std::size_t>(max_length)) return false;
  }
  std::string picked = found == items_.end() ? std::string(text) : *found;
  if (picked == text_) return true;
  SetText(std::move(picked));
  if (onPick) onPick();
  return true;
}

bool ComboBox::PickIndex(int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= items_.size()) return false;
  const std::string& item = items_[static_cast<std::size_t>(index)];
  if (item == text_) return true;
  SetText(item);
  if (onPick) onPick();
  return true;
}

CheckBox::CheckBox(Screen& screen, std::string name, Caption caption, Control* parent)
    : Control(screen, parent, ControlType::check_box, std::move(name), std::move(caption)) {}

void CheckBox::SetChecked(bool on) {
  if (checked_ == on) return;
  checked_ = on;
  Changed();
}

void CheckBox::Tick(bool on) {
  if (checked_ == on) return;
  SetChecked(on);
  if (onClick) onClick();
}

Option::Option(Screen& screen, std::string name, Caption caption, Control* parent,
               std::string group)
    : Control(screen, parent, ControlType::option, std::move(name), std::move(caption)),
      group_(std::move(group)) {}

void Option::SetChosen(bool on) {
  if (on) {
    for (Control* control : screen().controls()) {
      auto* other = dynamic_cast<Option*>(control);
      if (other != nullptr && other != this && other->parent() == parent() &&
          other->group_ == group_) {
        other->SetChosen(false);
      }
    }
  }
  if (chosen_ == on) return;
  chosen_ = on;
  Changed();
}

void Option::Choose() {
  SetChosen(true);
  if (onClick) onClick();
}

// --- what is pressed or looked at

Button::Button(Screen& screen, std::string name, Caption caption, ButtonRole role, Control* parent)
    : Control(screen, parent, ControlType::button, std::move(name), std::move(caption)),
      role_(role) {
  if (this->name() == "SaveCmd") shortcut = "Ctrl+S";
}

void Button::Click() {
  if (!Reachable() || !Active()) return;
  if (onClick) {
    onClick();
  } else if (role_ == ButtonRole::cancel) {
    screen().TryClose();
  }
}

Picture::Picture(Screen& screen, std::string name, Caption caption, Control* parent)
    : Control(screen, parent, ControlType::picture, std::move(name), std::move(caption)) {}

void Picture::SetPath(std::string path) {
  // Drawn anew for the same path too: the file behind it may be another one.
  path_ = std::move(path);
  Changed();
}

void Picture::Watch(std::shared_ptr<Camera> camera) {
  camera_ = std::move(camera);
  SetPath(camera_ ? camera_->Still() : std::string());
  Changed();
}

Bar::Bar(Screen& screen, std::string name, Caption caption, Control* parent)
    : Control(screen, parent, ControlType::bar, std::move(name), std::move(caption)) {}

void Bar::Set(std::vector<Part> parts, std::string text) {
  parts_ = std::move(parts);
  text_ = std::move(text);
  Changed();
}

}  // namespace kaunter
