// What a user may do, as one thing that can be compared: who gives rights gives none that the giver
// lacks, and the log tells what has changed.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace kaunter {

class Connection;
class Session;

struct UserRights {
  std::string level;                // "Clerk"; "" for a user that is not stored
  std::set<std::string> companies;  // the home company among them, in capitals
  std::set<std::string> flags;      // columns of UserMast: "AllowDelete"
  std::set<std::string> menu;       // names of menu entries, in capitals
  std::string hash;                 // of the password
  std::string hours;                // "08:01-18:59"
};

UserRights StoredRights(Connection& main, std::string_view user_id);
// The companies of the list in gcc2 together with the home company.
std::set<std::string> CompaniesOf(std::string_view home, std::string_view list);

// The level that the signed-in person acts with: never above the stored one, which may have been
// lowered since the sign-in.
int ActingLevel(const Session& session, const UserRights& own);

// A company, flag or menu entry that `to` has beyond `from` and that a giver below level 4 lacks.
struct RightBeyond {
  enum class Kind { company, flag, menu } kind;
  std::string name;
};
std::optional<RightBeyond> FirstBeyond(const UserRights& giver, const UserRights& from,
                                       const UserRights& to);

// "level Clerk -> Manager, +AllowDelete, -NEWCUSTMNU, password"; "" when nothing has changed.
std::string TellChange(const UserRights& from, const UserRights& to);

}  // namespace kaunter
