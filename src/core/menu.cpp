#include "core/menu.h"

#include <fmt/format.h>

#include <filesystem>
#include <set>

#include "core/session.h"
#include "core/values.h"
#include "platform/installation.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::string_view kSignedOutMenu = "System2Mnu";
constexpr std::string_view kSignedInMenu = "SystemMnu";

bool HomeCompanyScreens(Session& session) {
  // The column is there only where the screening was ever switched on.
  if (!session.settings.AMLA) return false;
  return ScalarQuery(session.Main(), fmt::format("SELECT AMLA FROM CompMast WHERE CompCode={}",
                                                 QuoteStr(session.CurrentCompCode))) == "1";
}

std::set<std::string> RightsOf(Session& session) {
  std::set<std::string> names;
  Recordset rows = session.Main().Query(
      fmt::format("SELECT * FROM UserAccess WHERE UserID={}", QuoteStr(session.CurrentUserID)));
  for (; !rows.Eof(); rows.MoveNext()) names.insert(Upper(NullToEmpty(rows.Field("MenuList"))));
  return names;
}

bool IsAmlEntry(std::string_view name) {
  static constexpr std::string_view kNames[] = {"NewLampiranMnu", "CDDLoanMnu", "CDDPaymentMnu",
                                                "LoanThresholdMnu", "PaymentThresholdMnu"};
  for (std::string_view known : kNames) {
    if (name == known) return true;
  }
  return false;
}

}  // namespace

MenuEntry* MainMenu::Find(std::string_view name) {
  for (MenuEntry& entry : entries_) {
    if (SameText(entry.name, name)) return &entry;
  }
  return nullptr;
}

void MainMenu::HideAll() {
  for (MenuEntry& entry : entries_) {
    if (entry.parent.empty()) entry.visible = entry.name == kSignedOutMenu;
  }
}

void MainMenu::ApplyRights(Session& session) {
  const bool built_in = session.CurrentLevel == kBuiltInLevel;
  const std::set<std::string> rights = built_in ? std::set<std::string>{} : RightsOf(session);
  const bool aml = session.CurrentLevel >= 3 || (!built_in && HomeCompanyScreens(session));
  for (MenuEntry& entry : entries_) {
    if (entry.name == kSignedOutMenu) {
      entry.visible = false;
    } else if (built_in || !entry.needs_right) {
      entry.visible = true;
    } else if (entry.name == "SellGoldRptMnu") {
      // Both outcomes of its test hide it, on purpose.
      entry.visible = false;
    } else if (IsAmlEntry(entry.name)) {
      entry.visible = aml;
    } else if (entry.name == "AMLADescMnu") {
      entry.visible = session.CurrentLevel >= 3;
    } else if (entry.name == "WatchListMnu") {
      entry.visible = session.settings.AMLA && session.CurrentLevel >= 3;
    } else if (entry.name == "LinkDBMnu") {
      entry.visible = session.CurrentUserID == "OWL";
    } else if (entry.name == "PaymentReaderMnu") {
      entry.visible = session.settings.PaymentReader;
    } else if (entry.name == "DataExportMnu") {
      entry.visible = session.settings.DataExportFlag;
    } else if (entry.name == "DailyBatchMnu") {
      entry.visible = std::filesystem::exists(DailyBatchProgram(session));
    } else if (entry.name == "AccessDB" || entry.name == "MoveInMnu" || entry.name == "BackupMnu" ||
               entry.name == "MoveOfficeMnu") {
      entry.visible = session.CurrentLevel >= 4;
    } else {
      entry.visible = rights.contains(Upper(entry.name));
    }
  }
  if (!built_in && session.settings.LinkAcc != "1") HideLink();
}

// The entries of the link show only while it is on; switching it off hides them for the session.
void MainMenu::HideLink() {
  for (const char* name : {"AccLinkMnu", "AccResendMnu"}) {
    if (MenuEntry* entry = Find(name)) entry->visible = false;
  }
}

bool MainMenu::Reachable(const MenuEntry& entry) const {
  const MenuEntry* at = &entry;
  while (true) {
    if (!at->visible) return false;
    if (at->parent.empty()) return true;
    const MenuEntry* group = nullptr;
    for (const MenuEntry& other : entries_) {
      if (other.name == at->parent) group = &other;
    }
    if (group == nullptr) return false;
    at = group;
  }
}

std::string PlainCaption(const Caption& caption, bool chinese) {
  std::string text = caption.In(chinese);
  if (const auto letter = text.find("(&"); letter != std::string::npos) text.erase(letter, 4);
  return WithoutMnemonic(text);
}

std::string DailyBatchProgram(const Session& session) {
#ifdef _WIN32
  const std::string program = "DailyBatch/DailyBatch.exe";
#else
  const std::string program = "DailyBatch/DailyBatch";
#endif
  std::string beside = session.AppPath + "/" + program;
  const std::string& programs = ThisInstallation().programs;
  return programs.empty() || std::filesystem::exists(beside) ? beside : programs + "/" + program;
}

}  // namespace kaunter
