// kaunter-office: what is done to an office as a whole, by its administrator or by the machine's
// scheduler. A command a row in commands.cpp; docs/ tells each.
#include <fmt/format.h>

#include <cstdio>
#include <string>

#include "core/log.h"
#include "office_tool/command.h"
#include "platform/installation.h"
#include "platform/process.h"
#include "screen/caption_error.h"

namespace kaunter {
namespace {

constexpr const char* kUser = "kaunter-office";

void Complain(const std::string& text) { fmt::print(stderr, "kaunter-office: {}\n", text); }

int Refused(const Session& session, const std::string& command, const std::exception& why) {
  Complain(why.what());
  WriteLog(session, LogLine(session, fmt::format("{} refused - {}", command, why.what())));
  return exit_status::kRefused;
}

int Run(const OfficeCall& call, Session& session) {
  const std::string name(call.command->name);
  try {
    OfficeRun run{session,       ReachOffice(session, call.reach),
                  call.reach,    call.values,
                  call.switches, call.words};
    return call.command->run(run);
  } catch (const CompanionRefused& why) {
    return Refused(session, name, why);
  } catch (const CaptionError& why) {
    return Refused(session, name, why);
  } catch (const std::exception& error) {
    Complain(error.what());
    LogRollback(session, "kaunter-office " + name, error);
    return exit_status::kFailed;
  }
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  using namespace kaunter;
  SettleProcess();  // the desktop that started this program may be closed before it
  SetInstallation(InstallationAt(ProgramFolder(argv[0])));
  try {
    const OfficeCall call = ParseOfficeCall({argv + 1, argv + argc}, HandedOn());
    if (call.command == nullptr) {
      fmt::print("{}", OfficeUsage());
      return exit_status::kDone;
    }
    Session session;
    session.CurrentUserID = kUser;
    const int status = Run(call, session);
    if (const std::string why = LogTrouble(session); !why.empty()) {
      Complain("The log is not written: " + why);
    }
    return status;
  } catch (const CompanionRefused& why) {
    Complain(why.what());
    fmt::print(stderr, "{}", OfficeUsage());
    return exit_status::kRefused;
  } catch (const std::exception& error) {
    Complain(error.what());
    return exit_status::kFailed;
  }
}
