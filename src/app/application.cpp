#include "app/application.h"

#include <fmt/format.h>

#include <fstream>
#include <memory>

#include "app/catalogue.h"
#include "app/menu_table.h"
#include "compliance/aml.h"
#include "core/companion.h"
#include "core/file_store.h"
#include "core/first_start.h"
#include "core/first_start_frm.h"
#include "core/log.h"
#include "core/menu_list.h"
#include "core/places.h"
#include "core/slow_statements.h"
#include "core/startup.h"
#include "core/trace.h"
#include "core/values.h"
#include "platform/regional.h"
#include "platform/sql/waiting.h"
#include "screen/wait_bar.h"

namespace kaunter {
namespace {

constexpr int kFailed = 2;

DateTime ParseNow(const std::string& text) {
  const auto now = DateTime::FromCanonical(text);
  if (!now) {
    throw StartRefused("Kaunter",
                       fmt::format("\"{}\" is no time: write it as yyyy-mm-dd hh:mm:ss", text));
  }
  return *now;
}

EndOfWait ServerAwayBar(const Session& session, Desk& desk) {
  const auto bar = std::make_shared<WaitBar>(
      desk, session.In({"The server does not answer", "服务器没有回应"}),
      session.In({"Looking for it, or for the one that stands in for it. What was saved is safe, "
                  "and what is being saved goes on by itself.",
                  "正在寻找服务器或其备用服务器。已储存的内容是安全的，正在储存的会自动继续。"}),
      session.In(kStop));
  return [bar](std::chrono::milliseconds since, std::chrono::milliseconds longest) {
    return bar->StopAsked(static_cast<int>(since.count()), static_cast<int>(longest.count()));
  };
}

}  // namespace

Application::Application(ApplicationOptions options, Desk& desk)
    : options_(std::move(options)), desk_(desk), session_(std::make_unique<Session>()) {}

Application::~Application() { SetWhileServerIsAway({}); }

bool Application::FirstStart() {
  if (!options_.database.empty() || !options_.settings.empty() || !IsFirstStart()) return true;
  FirstStartFrm assistant(*session_, desk_);
  desk_.ShowModal(assistant);
  options_.settings = assistant.settings();
  return assistant.done();
}

int Application::Start() {
  Session& session = *session_;
  try {
    LocalSettings local = LocalSettings::Read(options_.settings, options_.database);
    session.AppPath = AppFolder(options_.app_path, local);
    const std::string& now = options_.now.empty() ? local.Now : options_.now;
    if (!now.empty()) session.clock.Set(ParseNow(now));
    HandOn({session.AppPath, options_.database, options_.settings, now});
    if (!options_.database.empty()) {
      local.creatable.insert("kaunter");
      local.creatable.insert(Lower(local.ConnDataSource));
    }
    ApplyLocalSettings(session, local);
    const std::string trace = options_.trace.empty() ? local.Trace : options_.trace;
    if (!trace.empty()) session.trace = OpenTrace(trace);
    CheckDateFormat(local.ShortDate.empty() ? MachineShortDate() : local.ShortDate);
    MakeLogFolder(session);
    if (!now.empty()) {
      LogSetClock(session);
      session.SetClockNeedsRight = options_.now_needs_right;
    }
    NoteSlowStatements(session);
    OpenMainConnection(session, local);
    session.MainConn->SetStaleHandler([this](std::string_view connection) {
      WriteLog(*session_,
               LogLine(*session_, fmt::format(" - a transaction left open on {} was rolled back",
                                              connection)));
    });
    Connect(session, desk_);
    SetWhileServerIsAway([this] { return ServerAwayBar(*session_, desk_); });
    try {
      EnsureMenuList(session.AppPath, MenuTable());
    } catch (const std::exception& failure) {  // the list of the program's own entries serves too
      WriteLog(session, LogLine(session, failure.what()));
    }
    ReadMenuList(session.AppPath);  // a file that cannot be read ends the start here, with its line
    main_ = std::make_unique<MainFrm>(session, desk_, MenuTable(),
                                      [](std::string_view name) { return ScreenExists(name); });
    main_->onSignedIn = [&session] { LoadAMLSettings(session, session.CurrentCompCode); };
    session.status = [this](std::string_view text) { main_->SetPanel(1, std::string(text)); };
    main_->FillAtStart();
    return 0;
  } catch (const StartRefused& refused) {
    if (*refused.what() != '\0')
      desk_.Message(MessageKind::critical, refused.title(), refused.what());
  } catch (const std::exception& failure) {
    desk_.Message(MessageKind::critical, session.ProgramTitle, failure.what());
  }
  return kFailed;
}

void Application::SignInFirst() {
  main_->Guard([this] { main_->SignIn(); });
}

void Application::Exit() {
  CloseStore();
  if (exited_ || !main_) return;
  exited_ = true;
  main_->Close();  // writes the exit line and the record, unless the window was closed already
}

std::unique_ptr<Screen> Application::Make(std::string_view screen_name) {
  return MakeScreen(screen_name, *session_, desk_);
}

std::vector<std::string> Application::ScreenNames() const { return kaunter::ScreenNames(); }

}  // namespace kaunter
