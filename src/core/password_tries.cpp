#include "core/password_tries.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/log.h"
#include "core/session.h"
#include "core/values.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

constexpr std::size_t kFree = 5;
constexpr std::chrono::minutes kRemembered{1};
constexpr PasswordTries::Span kStep{1000};
constexpr PasswordTries::Span kLongest{5000};
constexpr PasswordTries::Span kPiece{20};  // the windows are painted between two of them

std::string Key(std::string_view user_id) { return Upper(Trim(user_id)); }

}  // namespace

void PasswordTries::Forget() {
  const Time from = now() - kRemembered;
  for (auto& [user, times] : failed_) {
    while (!times.empty() && times.front() <= from) times.pop_front();
  }
  std::erase_if(failed_, [](const auto& user) { return user.second.empty(); });
}

void PasswordTries::Wait(std::string_view user_id) {
  Forget();
  const auto user = failed_.find(Key(user_id));
  if (user == failed_.end() || user->second.size() < kFree) return;
  const auto beyond = static_cast<Span::rep>(user->second.size() - kFree + 1);
  for (Span left = std::min(kStep * beyond, kLongest); left > Span(); left -= kPiece) {
    sleep(kPiece);
    ActWhileWaiting();
  }
}

int PasswordTries::Failed(std::string_view user_id) {
  Forget();
  std::deque<Time>& times = failed_[Key(user_id)];
  times.push_back(now());
  return static_cast<int>(times.size());
}

void PasswordTries::Passed(std::string_view user_id) { failed_.erase(Key(user_id)); }

bool TryPassword(Session& session, std::string_view user_id, std::string_view prompt,
                 const std::function<bool()>& passes) {
  session.password_tries.Wait(user_id);
  if (passes()) {
    session.password_tries.Passed(user_id);
    return true;
  }
  const int count = session.password_tries.Failed(user_id);
  WriteLog(session, LogLine(session, fmt::format(" - {}: refused for user {}, {} within a minute",
                                                 prompt, Key(user_id), count)));
  return false;
}

}  // namespace kaunter
