#include "qtservices/headless.h"

#include <QGuiApplication>
#include <QProcess>
#include <QStringList>
#include <clocale>
#include <iostream>

#include "qtservices/shipped_fonts.h"

namespace kaunter {

void FindPluginsIn(const std::string& folder) {
  QCoreApplication::addLibraryPath(QString::fromStdString(folder));
}

void EnsureHeadlessGui() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Standard error belongs to the script's troubles; hints about desktop folders are none.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << '\n';
  });
  static int count = 1;
  static char name[] = "kaunter-play";
  static char* arguments[] = {name, nullptr};
  static QGuiApplication application(count, arguments);
  // Qt takes the user's locale for the whole process.
  std::setlocale(LC_NUMERIC, "C");
  LoadShippedFonts();
}

bool StartProgram(const std::string& program, const std::vector<std::string>& arguments) {
  QStringList list;
  for (const std::string& argument : arguments) list << QString::fromStdString(argument);
  return QProcess::startDetached(QString::fromStdString(program), list);
}

}  // namespace kaunter
