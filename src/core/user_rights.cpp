#include "core/user_rights.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

#include "core/session.h"
#include "core/sign_in.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr const char* kFlags[] = {"AccessLoan", "AccessPayment",    "AllowEdit",    "AllowDelete",
                                  "AllowDisc",  "AllowCreditLimit", "FollowUpFlag", "Special"};

using Names = std::set<std::string>;

const std::string* FirstMissing(const Names& giver, const Names& from, const Names& to) {
  const auto missing = std::ranges::find_if(
      to, [&](const std::string& name) { return !from.contains(name) && !giver.contains(name); });
  return missing == to.end() ? nullptr : &*missing;
}

void TellNames(std::string& told, const Names& from, const Names& to) {
  for (const std::string& name : to) {
    if (!from.contains(name)) told += ", +" + name;
  }
  for (const std::string& name : from) {
    if (!to.contains(name)) told += ", -" + name;
  }
}

}  // namespace

std::set<std::string> CompaniesOf(std::string_view home, std::string_view list) {
  Names companies;
  std::istringstream lines{std::string(list)};
  for (std::string line; std::getline(lines, line);) {
    std::erase(line, '\r');
    if (!Trim(line).empty()) companies.insert(Upper(Trim(line)));
  }
  if (!home.empty()) companies.insert(Upper(home));
  return companies;
}

UserRights StoredRights(Connection& main, std::string_view user_id) {
  UserRights rights;
  const std::string id = QuoteStr(user_id);
  const Recordset row = main.Query("SELECT * FROM UserMast WHERE UserID=" + id);
  if (row.Eof()) return rights;
  const auto text = [&](const char* column) { return NullToEmpty(row.Field(column)); };
  rights.level = text("UserLevel");
  rights.companies = CompaniesOf(text("CompCode"), text("gcc2"));
  for (const char* flag : kFlags) {
    if (CountsAsTrue(text(flag))) rights.flags.insert(flag);
  }
  rights.hash = text("UserDept");
  rights.hours = text("TimeStart") + "-" + text("TimeEnd");
  for (Recordset menu = main.Query("SELECT MenuList FROM UserAccess WHERE UserID=" + id);
       !menu.Eof(); menu.MoveNext()) {
    rights.menu.insert(Upper(NullToEmpty(menu.Field(0))));
  }
  return rights;
}

int ActingLevel(const Session& session, const UserRights& own) {
  if (session.CurrentLevel == kBuiltInLevel) return kBuiltInLevel;
  return std::min(session.CurrentLevel, LevelNumber(own.level));
}

std::optional<RightBeyond> FirstBeyond(const UserRights& giver, const UserRights& from,
                                       const UserRights& to) {
  using Kind = RightBeyond::Kind;
  if (const auto* name = FirstMissing(giver.companies, from.companies, to.companies)) {
    return RightBeyond{Kind::company, *name};
  }
  if (const auto* name = FirstMissing(giver.flags, from.flags, to.flags)) {
    return RightBeyond{Kind::flag, *name};
  }
  if (const auto* name = FirstMissing(giver.menu, from.menu, to.menu)) {
    return RightBeyond{Kind::menu, *name};
  }
  return std::nullopt;
}

std::string TellChange(const UserRights& from, const UserRights& to) {
  std::string told;
  if (!SameText(from.level, to.level))
    told += fmt::format(", level {} -> {}", from.level, to.level);
  TellNames(told, from.companies, to.companies);
  TellNames(told, from.flags, to.flags);
  TellNames(told, from.menu, to.menu);
  if (from.hours != to.hours) told += fmt::format(", hours {} -> {}", from.hours, to.hours);
  if (from.hash != to.hash) told += ", password";
  return told.empty() ? told : told.substr(2);
}

}  // namespace kaunter
