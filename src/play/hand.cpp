#include "play/hand.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "play/control_view.h"
#include "play/script.h"
#include "screen/text.h"

namespace kaunter {
namespace {

// "#2" gives 2; -1 for any other text.
int EntryNumber(const std::string& text) {
  if (text.size() < 2 || text.front() != '#') return -1;
  int number = -1;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data() + 1, end, number);
  return parsed.ec == std::errc() && parsed.ptr == end ? number : -1;
}

void PutIntoBox(TextBox& box, const std::string& text) {
  bool taken = true;
  box.screen().Guard([&] { taken = box.Type(text); });
  if (!taken) {
    throw ScriptError(fmt::format("{} takes {} characters, the text has {}", box.name(),
                                  box.max_length, CharacterCount(text)));
  }
}

void PutIntoList(ComboBox& list, const std::string& text) {
  bool taken = false;
  list.screen().Guard([&] {
    taken = true;  // a failing handler has taken the entry
    const bool entry =
        std::find(list.items().begin(), list.items().end(), text) != list.items().end();
    taken = (!entry && list.PickIndex(EntryNumber(text))) || list.Pick(text);
  });
  if (taken) return;
  std::string entries;
  for (const std::string& item : list.items()) entries += (entries.empty() ? "" : ", ") + item;
  if (list.editable()) {
    throw ScriptError(fmt::format("{} takes {} characters", list.name(), list.max_length));
  }
  throw ScriptError(fmt::format("{} has no entry \"{}\"; it has: {}", list.name(), OneLine(text),
                                OneLine(entries)));
}

void PutIntoOption(Option& option, const std::string& text) {
  if (text != "1") {
    throw ScriptError(option.name() + " is an option: it takes 1; choosing another one clears it");
  }
  option.screen().Guard([&] { option.Choose(); });
}

void TurnTo(Tab& tab, const std::string& text) {
  const std::vector<Control*> pages = tab.screen().Children(&tab);
  int page = EntryNumber(text);
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (SameName(pages[i]->name(), text) || SeenText(*pages[i]) == text) {
      page = static_cast<int>(i);
    }
  }
  if (page < 0 || static_cast<std::size_t>(page) >= pages.size()) {
    throw ScriptError(fmt::format("{} has no page \"{}\"", tab.name(), OneLine(text)));
  }
  tab.screen().Guard([&] { tab.SetPage(page); });
}

bool TickText(const Control& control, const std::string& text) {
  if (text != "1" && text != "0") {
    throw ScriptError(fmt::format("{} takes 1 or 0, not \"{}\"", control.name(), OneLine(text)));
  }
  return text == "1";
}

}  // namespace

void Hand::RequireActive(const Control& control) {
  if (!control.Reachable()) throw ScriptError(control.name() + " is hidden");
  if (control.Active()) return;
  const std::string& why = control.tip.In(control.screen().chinese());
  throw ScriptError(control.name() + " is disabled" + (why.empty() ? why : ": " + why));
}

void Hand::RequireEditable(const Control& control) {
  RequireActive(control);
  if (control.locked()) throw ScriptError(control.name() + " is locked");
}

Control*& Hand::TypedIn(const Screen& screen) {
  for (PlayDesk::OpenScreen& open : desk_.open_screens()) {
    if (open.screen == &screen) return open.typed;
  }
  return typed_on_main_;
}

void Hand::GoTo(Control& control) {
  Screen& screen = control.screen();
  if (Control* typed = TypedIn(screen); typed != nullptr && typed != &control) {
    LeaveControl(*typed);
    if (screen.closed()) return;
  }
  screen.Guard([&] { control.Enter(); });
}

void Hand::Put(Control& control, const std::string& text) {
  TypedIn(control.screen()) = &control;
  if (auto* box = dynamic_cast<TextBox*>(&control)) {
    PutIntoBox(*box, text);
  } else if (auto* list = dynamic_cast<ComboBox*>(&control)) {
    PutIntoList(*list, text);
  } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
    const bool on = TickText(control, text);
    control.screen().Guard([&] { check->Tick(on); });
  } else if (auto* option = dynamic_cast<Option*>(&control)) {
    PutIntoOption(*option, text);
  } else if (auto* tab = dynamic_cast<Tab*>(&control)) {
    TurnTo(*tab, text);
  } else {
    throw ScriptError(control.name() + " takes no text");
  }
}

void Hand::LeaveControl(Control& control) {
  Control*& typed = TypedIn(control.screen());
  if (typed == &control) typed = nullptr;
  control.screen().Guard([&] { control.Leave(); });
}

void Hand::Click(Control& control) {
  RequireActive(control);
  GoTo(control);
  Screen& screen = control.screen();
  if (screen.closed()) return;
  RequireActive(control);
  if (auto* button = dynamic_cast<Button*>(&control)) {
    screen.Guard([&] { button->Click(); });
  } else if (auto* option = dynamic_cast<Option*>(&control)) {
    RequireEditable(control);
    screen.Guard([&] { option->Choose(); });
  } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
    RequireEditable(control);
    screen.Guard([&] { check->Tick(!check->checked()); });
  } else if (const auto* page = dynamic_cast<Frame*>(&control);
             page != nullptr && page->is_page()) {
    TurnTo(static_cast<Tab&>(*control.parent()), control.name());
  } else if (control.onClick) {
    screen.Guard([&] { control.onClick(); });
  } else {
    throw ScriptError(control.name() + " cannot be clicked");
  }
  if (!screen.closed()) LeaveControl(control);
}

void Hand::Key(Control& control, std::string_view key) {
  RequireActive(control);
  GoTo(control);
  Screen& screen = control.screen();
  if (screen.closed()) return;
  screen.Guard([&] { control.Key(key); });
  if (screen.closed()) return;
  // What the keyboard does on every screen.
  if (auto* box = dynamic_cast<TextBox*>(&control);
      key == "F2" && box != nullptr && box->onSearch) {
    screen.Guard([&] { box->onSearch(); });
  } else if (auto* grid = dynamic_cast<Grid*>(&control);
             key == "Enter" && grid != nullptr && grid->current_row() >= 0) {
    screen.Guard([&] { grid->Open(grid->current_row(), 0); });
  } else if (key == "Esc") {
    screen.TryClose();
  } else {
    for (Control* other : screen.controls()) {
      auto* button = dynamic_cast<Button*>(other);
      if (button == nullptr || button->shortcut.empty() || !SameName(button->shortcut, key))
        continue;
      Click(*button);
      return;
    }
  }
}

}  // namespace kaunter
