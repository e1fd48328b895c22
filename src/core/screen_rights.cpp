#include "core/screen_rights.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <vector>

#include "core/company_access.h"
#include "core/menu.h"
#include "core/session.h"
#include "screen/screen.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::string_view kLoanScreens[] = {"Drawdown", "LoanAppFrm", "LoanExtendfrm",
                                             "NewLoanFrm", "UpdateSch"};
constexpr std::string_view kPaymentScreens[] = {
    "BatchLinkfrm",     "Invoicefrm",      "LateIntfrm",   "LoanSettlementfrm", "PaymentFrm",
    "PaymentReaderfrm", "RecalcReceiptNo", "ReceiptNoFrm", "Settlementfrm",     "SpecialRpt"};
// A document of a supplier is opened from its supplier.
constexpr std::string_view kSupplier = "Supplierfrm";
constexpr std::string_view kOfASupplier = "SuppTransfrm";
// A save that finds an account missing opens it as its own step.
constexpr std::string_view kStepOfASave = "LinkAccSetupfrm";

bool IsAmong(std::string_view screen, std::span<const std::string_view> names) {
  return std::ranges::any_of(names, [&](std::string_view name) { return SameName(name, screen); });
}

// The entries that open the screen under the command; all that open it when none has this command.
std::vector<const MenuEntry*> EntriesFor(const MainMenu& menu, std::string_view screen,
                                         std::string_view command) {
  std::vector<const MenuEntry*> all;
  std::vector<const MenuEntry*> fitting;
  for (const MenuEntry& entry : menu.entries()) {
    if (entry.action != MenuAction::screen || !SameName(entry.target, screen)) continue;
    all.push_back(&entry);
    if (entry.command.empty() || entry.command == command) fitting.push_back(&entry);
  }
  return fitting.empty() ? all : fitting;
}

std::optional<Caption> WithoutFlag(Session& session, std::string_view column, const Caption& what) {
  if (HasFlag(session, column)) return std::nullopt;
  return Caption(
      fmt::format("\"{}\" is not among your rights, it is given in User Management", what.english),
      fmt::format("您没有“{}”的权限，可在用户管理中给予", what.chinese));
}

Caption WithoutEntry(const MenuEntry& entry) {
  return {
      fmt::format("\"{}\" is not among your menu rights, they are given in User Management",
                  PlainCaption(entry.caption, false)),
      fmt::format("您没有“{}”的功能权限，可在用户管理中给予", PlainCaption(entry.caption, true))};
}

void Offer(Button& button, const std::optional<Caption>& why, bool on) {
  button.tip = why.value_or(Caption());
  button.SetEnabled(on && !why);
}

}  // namespace

std::optional<Caption> WhyClosed(Session& session, std::string_view screen,
                                 std::string_view command) {
  if (session.menu == nullptr || session.CurrentLevel == kBuiltInLevel) return std::nullopt;
  const auto entries =
      EntriesFor(*session.menu, SameName(screen, kOfASupplier) ? kSupplier : screen, command);
  const bool reachable = entries.empty() || screen == kStepOfASave ||
                         std::ranges::any_of(entries, [&](const MenuEntry* entry) {
                           return session.menu->Reachable(*entry);
                         });
  if (!reachable) return WithoutEntry(*entries.front());
  if (IsAmong(screen, kLoanScreens)) {
    return WithoutFlag(session, "AccessLoan", {"Loan screens", "贷款画面"});
  }
  if (IsAmong(screen, kPaymentScreens)) {
    return WithoutFlag(session, "AccessPayment", {"Payment screens", "付款画面"});
  }
  return std::nullopt;
}

void OfferShortcut(Session& session, Button& button, std::string_view screen,
                   std::string_view command, bool on) {
  button.SetVisible(button.screen().desk().CanShow(screen));
  Offer(button, WhyClosed(session, screen, command), on);
}

void OfferReport(Session& session, Button& button, std::string_view file) {
  button.SetVisible(button.screen().desk().CanShow("ReportFrm"));
  std::optional<Caption> why;
  if (session.menu != nullptr) {
    for (const MenuEntry& entry : session.menu->entries()) {
      if (entry.action != MenuAction::report || entry.target != file) continue;
      if (!session.menu->Reachable(entry)) why = WithoutEntry(entry);
    }
  }
  Offer(button, why, true);
}

}  // namespace kaunter
