#include "core/company_access.h"

#include <fmt/format.h>

#include "core/session.h"
#include "core/values.h"
#include "screen/control.h"
#include "screen/desk.h"

namespace kaunter {

std::string CompanyLiterals(const Session& session) {
  if (session.CurrentLevel >= 4) return {};
  if (session.AllowedCompanies.empty()) return QuoteStr(session.CurrentCompCode);
  // A single quote inside a code is doubled before the double quotes become the literal's own.
  std::string list = EscapeQuotes(session.AllowedCompanies);
  for (char& c : list) {
    if (c == '"') c = '\'';
  }
  return list;
}

std::string CompanyCondition(const Session& session, std::string_view column) {
  const std::string codes = CompanyLiterals(session);
  if (codes.empty()) return codes;
  return session.AllowedCompanies.empty() ? fmt::format("{}={}", column, codes)
                                          : fmt::format("{} in ({})", column, codes);
}

std::string CompanyFilter(const Session& session, std::string_view column) {
  const std::string condition = CompanyCondition(session, column);
  return condition.empty() ? condition : "WHERE " + condition + " ";
}

std::string AndCompany(const Session& session, std::string_view column) {
  const std::string condition = CompanyCondition(session, column);
  return condition.empty() ? condition : " AND " + condition;
}

bool CompanyAllowed(const Session& session, std::string_view code) {
  return !session.AllowedCompanies.empty() &&
         Upper(session.AllowedCompanies).find(fmt::format("\"{}\"", Upper(code))) !=
             std::string::npos;
}

bool MayUseCompany(const Session& session, std::string_view code) {
  return session.CurrentLevel >= 4 || code == session.CurrentCompCode ||
         CompanyAllowed(session, code);
}

bool CheckCompanyAccess(Session& session, Desk& desk, const ComboBox& box) {
  if (!box.enabled() || box.empty() || MayUseCompany(session, box.text())) return true;
  session.MsgText = session.In({fmt::format("You Cannot Access Company {}", box.text()),
                                fmt::format("您不能进入 {}", box.text())});
  desk.Message(MessageKind::critical, session.MsgTitle, session.MsgText);
  return false;
}

void ChooseHome(const Session& session, ComboBox& box) {
  box.SetText(session.CurrentCompCode);
  if (box.index() < 0) box.SetIndex(box.items().size() == 1 ? 0 : -1);
}

bool UserFlag(Session& session, std::string_view column) {
  const Recordset row = session.Main().Query(fmt::format(
      "SELECT {} as Rst FROM UserMast WHERE UserID={}", column, QuoteStr(session.CurrentUserID)));
  return !row.Eof() && NullToEmpty(row.Field("Rst")) == "1";
}

bool HasFlag(Session& session, std::string_view column) {
  return session.CurrentLevel == kBuiltInLevel || UserFlag(session, column);
}

bool CheckUserPassword(Session& session, std::string_view hash) {
  const Recordset row = session.Main().Query(fmt::format(
      "SELECT UserDept FROM UserMast WHERE UserID={}", QuoteStr(session.CurrentUserID)));
  return !row.Eof() && NullToEmpty(row.Field("UserDept")) == hash;
}

}  // namespace kaunter
