#include "qtservices/shipped_fonts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFontDatabase>

namespace kaunter {

void LoadShippedFonts() {
  const QDir folder(QCoreApplication::applicationDirPath() + "/fonts");
  for (const QString& file : folder.entryList(QDir::Files, QDir::Name)) {
    QFontDatabase::addApplicationFont(folder.filePath(file));
  }
}

}  // namespace kaunter
