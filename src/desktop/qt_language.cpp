#include "desktop/qt_language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace kaunter {

void SpeakQtIn(bool chinese) {
  static QTranslator translator;
  static const bool found =
      translator.load("qtbase_zh_CN", QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  static bool installed = false;
  if (!found || chinese == installed) return;
  installed = chinese;
  if (chinese) {
    QCoreApplication::installTranslator(&translator);
  } else {
    QCoreApplication::removeTranslator(&translator);
  }
}

}  // namespace kaunter
