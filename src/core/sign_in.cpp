#include "core/sign_in.h"

#include <fmt/format.h>

#include "core/password.h"
#include "core/password_tries.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

// Opens a new office until its KEY is emptied.
constexpr std::string_view kBuiltInUser = "ADMIN";
constexpr std::string_view kBuiltInPassword = "zebrawindmill";

const Caption kInvalidUser{"Invalid User ID, Please check", "用户不正确，请检查"};
const Caption kInvalidPassword{"Invalid Password, Please check", "密码不正确，请检查"};

bool IsTrue(const Value& value) { return CountsAsTrue(NullToEmpty(value)); }

bool IsOne(const Value& value) { return NullToEmpty(value) == "1"; }

std::string CompanyList(std::string text) {
  if (text.empty()) return {};
  std::string list = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.compare(i, 2, "\r\n") == 0) {
      list += "\",\"";
      ++i;
    } else {
      list += text[i];
    }
  }
  return list + "\"";
}

std::optional<Caption> SignInBuiltIn(Session& session, std::string_view password) {
  const std::string key =
      ScalarQuery(session.Main(), "SELECT [Value] FROM Systemast WHERE Param='KEY'");
  if (key != session.ConnAccount || password != kBuiltInPassword) return kInvalidUser;
  session.CurrentUserID = kBuiltInUser;
  session.CurrentLevel = 5;
  session.AllowEdit = session.AllowDelete = session.AllowDisc = session.AllowCreditLimit = true;
  const Recordset users =
      session.Main().Query("SELECT TOP 1 FollowUpFlag FROM UserMast ORDER BY UserID");
  session.FollowUpFlag = !users.Eof() && IsTrue(users.Field("FollowUpFlag"));
  return std::nullopt;
}

// "hh:mm" without its colon; a text that holds no number opens the window.
std::optional<int> ClockNumber(const std::string& hh_mm) {
  std::string digits;
  for (char c : hh_mm) {
    if (c != ':') digits += c;
  }
  if (!IsNumeric(digits)) return std::nullopt;
  return CLng(std::string_view(digits));
}

std::string ShowHour(int hhmm) {
  return Format(DateTime{2000, 1, 1, hhmm / 100 % 24, hhmm % 100 % 60, 0}, "h:mm ampm");
}

std::optional<Caption> OutsideWindow(Session& session, const Recordset& user) {
  const auto start = ClockNumber(NullToEmpty(user.Field("TimeStart")));
  const auto end = ClockNumber(NullToEmpty(user.Field("TimeEnd")));
  if (!start && !end) return std::nullopt;
  const DateTime now = ServerTime(session.Main());
  const int clock = now.hour * 100 + now.minute;
  if (start && clock < *start) {
    return Caption(fmt::format("Sign in deny, please sign in after {}", ShowHour(*start)),
                   fmt::format("不可进入，请在 {} 之后进入", ShowHour(*start)));
  }
  if (end && clock > *end) {
    return Caption(fmt::format("Sign in deny, please sign in before {}", ShowHour(*end)),
                   fmt::format("不可进入，请在 {} 之前进入", ShowHour(*end)));
  }
  return std::nullopt;
}

// An office for training or for a demonstration is marked so by the one who made it.
bool IsPractice(const Session& session) {
  const std::string kind = ReadSetting(session.Main(), "OfficeKind");
  return SameText(kind, "demo") || SameText(kind, "training");
}

std::optional<Caption> ClockRefused(const Session& session) {
  if (!session.SetClockNeedsRight || session.CurrentLevel >= 4 || IsPractice(session)) {
    return std::nullopt;
  }
  return Caption(
      "The clock of this program is set: only an administrator may sign in. Start it "
      "without --now",
      "本程序的时钟已被设定：只有管理员可登入。请不用 --now 启动");
}

void FillSession(Session& session, const Recordset& user) {
  session.CurrentUserID = NullToEmpty(user.Field("UserID"));
  session.FollowUpFlag = IsTrue(user.Field("FollowUpFlag"));
  session.CurrentLevel = LevelNumber(NullToEmpty(user.Field("UserLevel")));
  session.CurrentCompCode = NullToEmpty(user.Field("CompCode"));
  session.AllowedCompanies = CompanyList(NullToEmpty(user.Field("gcc2")));
  session.AllowEdit = IsTrue(user.Field("AllowEdit"));
  session.AllowDelete = IsTrue(user.Field("AllowDelete"));
  session.AllowDisc = IsTrue(user.Field("AllowDisc"));
  session.AllowCreditLimit = IsOne(user.Field("AllowCreditLimit"));
  session.Special = IsOne(user.Field("Special"));
}

// `outside`: the password is right, the hour is not.
std::optional<Caption> SignInUser(Session& session, std::string_view user_id,
                                  std::string_view password, std::optional<Caption>& outside) {
  const Recordset user = session.Main().Query(
      fmt::format("SELECT * FROM UserMast WHERE UserID={}", QuoteStr(user_id)));
  if (user.Eof()) return kInvalidUser;
  if (PasswordHash(password) != NullToEmpty(user.Field("UserDept"))) return kInvalidPassword;
  FillSession(session, user);
  outside = ClockRefused(session);
  if (!outside) outside = OutsideWindow(session, user);
  return std::nullopt;
}

}  // namespace

int LevelNumber(std::string_view level_text) {
  static constexpr std::string_view kLevels[] = {"Clerk", "Supervisor", "Manager", "Admin"};
  for (int i = 0; i < 4; ++i) {
    if (SameText(Trim(level_text), kLevels[i])) return i + 1;
  }
  return 0;
}

void ClearSignIn(Session& session) {
  session.CurrentUserID.clear();
  session.CurrentLevel = 0;
  session.CurrentCompCode.clear();
  session.AllowedCompanies.clear();
  session.FollowUpFlag = false;
  session.AllowEdit = session.AllowDelete = session.AllowDisc = session.AllowCreditLimit = false;
  session.Special = false;
}

std::optional<Caption> TrySignIn(Session& session, std::string_view user_id,
                                 std::string_view password) {
  // The rights of whoever sat here before never reach the next person.
  ClearSignIn(session);
  std::optional<Caption> refusal;
  std::optional<Caption> outside;
  const bool right = TryPassword(session, user_id, "User Login", [&] {
    refusal = user_id == kBuiltInUser ? SignInBuiltIn(session, password)
                                      : SignInUser(session, user_id, password, outside);
    return !refusal;
  });
  if (right) refusal = outside;
  if (refusal) ClearSignIn(session);
  return refusal;
}

}  // namespace kaunter
