#include "core/sms_database.h"

#include <fmt/format.h>

#include <utility>

#include "core/session.h"
#include "core/settings.h"

namespace kaunter {
namespace {

constexpr int kCannotOpen = 4060;

}  // namespace

Connection& SmsDatabase(Session& session) {
  if (session.smsconn) return *session.smsconn;
  const std::string& server = session.settings.SMSServer;
  if (server.empty()) {
    throw SqlError(kCannotOpen,
                   session.In({"This office has no SMS database. It is named in the setting "
                               "SMSServer.",
                               "本公司没有短讯资料库。资料库在设定 SMSServer 中指定。"}));
  }
  const std::string password = ReadSetting(session.Main(), "SMSPassword");
  const std::string user = ReadSetting(session.Main(), "SMSID");
  const std::string text = fmt::format(
      "Provider=SQLOLEDB.1;Password={};Persist Security Info=True;User ID={};Initial "
      "Catalog=SMS;Data Source={}",
      password, user, server);
  try {
    auto opened = OpenConnection("smsconn", text, session.data_sources, session.clock);
    if (session.trace) opened->SetTrace(session.trace);
    session.smsconn = std::move(opened);
  } catch (const SqlError& error) {
    throw SqlError(error.number(),
                   fmt::format("{} (connection smsconn, see the setting SMSServer)", error.what()));
  }
  return *session.smsconn;
}

}  // namespace kaunter
