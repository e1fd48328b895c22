#include "play/application_program.h"

#include "screen/text.h"

namespace kaunter {

std::vector<MenuLine> ApplicationProgram::Menus() {
  std::vector<MenuLine> lines;
  for (const MenuEntry& entry : application_.main().menu().entries()) {
    lines.push_back({entry.name,
                     WithoutMnemonic(entry.caption.In(application_.session().ChineseFlag)),
                     StateOf(entry)});
  }
  return lines;
}

MenuState ApplicationProgram::StateOf(std::string_view menu_name) {
  const MenuEntry* entry = application_.main().menu().Find(menu_name);
  return entry == nullptr ? MenuState::unknown : StateOf(*entry);
}

MenuState ApplicationProgram::StateOf(const MenuEntry& entry) {
  if (!application_.main().menu().Reachable(entry)) return MenuState::hidden;
  return entry.enabled ? MenuState::shown : MenuState::greyed;
}

}  // namespace kaunter
