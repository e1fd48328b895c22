#include "play/application_program.h"

#include <fmt/format.h>

#include "core/data_access.h"
#include "core/log.h"
#include "core/secrets.h"
#include "play/script.h"
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

void ApplicationProgram::SetNow(const DateTime& now) {
  application_.session().clock.Set(now);
  LogSetClock(application_.session());
}

// A script reaches behind every screen, so what it may write is an administrator's alone, once
// there are people whose rights it would get around.
void ApplicationProgram::RequireRightToWrite(std::string_view sql) {
  constexpr int kAdministrator = 4;
  const Session& session = application_.session();
  if (session.CurrentLevel < kAdministrator &&
      ScalarQuery(session.Main(), "SELECT COUNT(*) FROM UserMast") != "0") {
    throw ScriptError("sql that writes needs an administrator signed in: this office has users");
  }
  WriteLog(session, LogLine(session, fmt::format("sql - {}", WithoutSecrets(sql))));
  if (const std::string why = LogTrouble(session); !why.empty()) throw ScriptError(why);
}

void ApplicationProgram::ChooseMenu(std::string_view menu_name) {
  const MenuEntry* entry = application_.main().menu().Find(menu_name);
  if (entry != nullptr && entry->action == MenuAction::group) {
    throw ScriptError(entry->name + " is a group of the menu: choose an entry within it");
  }
  application_.main().ChooseMenu(menu_name);
}

MenuState ApplicationProgram::StateOf(const MenuEntry& entry) {
  if (!application_.main().menu().Reachable(entry)) return MenuState::hidden;
  return entry.enabled ? MenuState::shown : MenuState::greyed;
}

}  // namespace kaunter
