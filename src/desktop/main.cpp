// kaunter: the desktop.
#include <QApplication>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <exception>

#include "app/application.h"
#include "core/data_access.h"
#include "core/session.h"
#include "desktop/alt_keys.h"
#include "desktop/desktop_desk.h"
#include "desktop/long_wait.h"
#include "desktop/main_window.h"
#include "desktop/options.h"
#include "desktop/qt_language.h"
#include "desktop/screenshots.h"
#include "desktop/single_instance.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/today.h"
#include "desktop/window_memory.h"
#include "platform/installation.h"
#include "platform/process.h"
#include "qtservices/shipped_fonts.h"

namespace kaunter {
namespace {

// While the server does not answer, the PC's clock is the next best: a save will meet the failure.
DateTime NowForBoxes(const Session& session) {
  try {
    if (session.MainConn) return ServerTime(*session.MainConn);
  } catch (const std::exception&) {
  }
  return session.clock.Now();
}

int RunDesktop(QApplication& qt, DesktopOptions options) {
  LoadShippedFonts();
  ApplyTheme(qt, options.theme);
  LetAltTypeNothing(qt);
  // Closing the main window ends the program, nothing else does: dialogs open before it, too.
  QApplication::setQuitOnLastWindowClosed(false);
  const bool pictures = !options.picture_folder.empty();
  if (pictures) SetWindowMemory(false);
  PaintDuringStatements();
  std::unique_ptr<SingleInstance> instance;
  if (!pictures) {
    instance = std::make_unique<SingleInstance>(options.application.app_path.empty()
                                                    ? ThisInstallation().programs
                                                    : options.application.app_path);
    if (instance->other_runs()) return 0;
  }
  options.application.now_needs_right = true;
  DesktopDesk desk;
  Application application(options.application, desk);
  desk.make = [&](std::string_view name) { return application.Make(name); };
  desk.chinese = [&] { return application.session().ChineseFlag; };
  TakeTodayFrom([&application] { return NowForBoxes(application.session()); });
  application.session().ChineseFlag = options.chinese;
  SpeakQtIn(options.chinese);
  std::unique_ptr<Photographer> photographer;
  if (pictures) {
    photographer = std::make_unique<Photographer>(options);
    photographer->Start();
  }
  if (!application.FirstStart()) return 0;
  SpeakQtIn(application.session().ChineseFlag);
  if (const int status = application.Start()) return status;
  {
    MainWindow window(application.main());
    desk.SetMainWindow(&window);
    window.OpenWindow();
    if (options.width > 0) window.resize(options.width, options.height);
    QTimer::singleShot(0, &window, [&] {
      if (photographer) {
        photographer->Walk(window, application, desk);
        application.main().TryClose();
        return;
      }
      application.SignInFirst();
    });
    if (!application.main().closed()) QApplication::exec();
    desk.SetMainWindow(nullptr);
  }
  application.Exit();
  return 0;
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  using namespace kaunter;
  SettleProcess();
  const DesktopOptions options = ParseOptions({argv + 1, argv + argc});
  if (options.help) {
    std::fputs(OptionsHelp().c_str(), stdout);
    return 0;
  }
  if (!options.error.empty()) {
    std::fprintf(stderr, "kaunter: %s\n", options.error.c_str());
    return 2;
  }
  SetInstallation(InstallationAt(ProgramFolder(argv[0])));
  QApplication qt(argc, argv);
  QApplication::setApplicationName("kaunter");
  // Figures are written with a point whatever the machine's language.
  std::setlocale(LC_NUMERIC, "C");
  try {
    return RunDesktop(qt, options);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "kaunter: %s\n", failure.what());
    return 2;
  }
}
