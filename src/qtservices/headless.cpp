#include "qtservices/headless.h"

#include <QGuiApplication>
#include <QProcess>
#include <QStringList>
#include <clocale>

namespace kaunter {

void EnsureHeadlessGui() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static int count = 1;
  static char name[] = "kaunter-play";
  static char* arguments[] = {name, nullptr};
  static QGuiApplication application(count, arguments);
  // Qt takes the user's locale for the whole process.
  std::setlocale(LC_NUMERIC, "C");
}

bool StartProgram(const std::string& program, const std::vector<std::string>& arguments) {
  QStringList list;
  for (const std::string& argument : arguments) list << QString::fromStdString(argument);
  return QProcess::startDetached(QString::fromStdString(program), list);
}

}  // namespace kaunter
