// Which companies a person may see and touch.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Session;
class Desk;
class ComboBox;

// The companies that a person may see as literals, "'A','B'"; "" for level 4 up, who sees all.
std::string CompanyLiterals(const Session& session);
// The company condition of a list without its leading word: "" for level 4 up (all companies), else
// "l.CompCode in ('A','B')" or "l.CompCode='A'". `column` is the column as the statement names it.
std::string CompanyCondition(const Session& session, std::string_view column);
// The same with "WHERE " before and a blank behind it; "" when there is no filter.
std::string CompanyFilter(const Session& session, std::string_view column);
// The same with " AND " before, to stand behind other conditions.
std::string AndCompany(const Session& session, std::string_view column);

// The code stands in AllowedCompanies (without regard to case); false when that list is empty.
bool CompanyAllowed(const Session& session, std::string_view code);
// Guards a company box on leaving it: false with "You Cannot Access Company <box>" for another
// company than the home one that is not allowed.
bool CheckCompanyAccess(Session& session, Desk& desk, const ComboBox& box);
// The person may work on a record of this company: level 4 up, the home company, or an allowed one.
bool MayUseCompany(const Session& session, std::string_view code);

// The home company in a box of companies; where it is none of them, the only one, or no choice.
void ChooseHome(const Session& session, ComboBox& box);

// A right read afresh from the user's row: true only when the row exists and the column equals 1.
bool UserFlag(Session& session, std::string_view column);
// The same for the signed-in person: the built-in logon has no row, and every right.
bool HasFlag(Session& session, std::string_view column);
// The stored hash of the signed-in user equals `hash`.
bool CheckUserPassword(Session& session, std::string_view hash);

}  // namespace kaunter
