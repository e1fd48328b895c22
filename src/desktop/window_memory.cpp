#include "desktop/window_memory.h"

#include <QHeaderView>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QWidget>

namespace kaunter {
namespace {

bool g_memory = true;

QString FilePath() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         "/kaunter/windows.ini";
}

}  // namespace

void SetWindowMemory(bool on) { g_memory = on; }

bool RestoreWindow(QWidget& window, const QString& name) {
  if (!g_memory) return false;
  const QSettings file(FilePath(), QSettings::IniFormat);
  return window.restoreGeometry(file.value("geometry/" + name).toByteArray());
}

void KeepWindow(const QWidget& window, const QString& name) {
  if (!g_memory) return;
  QSettings file(FilePath(), QSettings::IniFormat);
  file.setValue("geometry/" + name, window.saveGeometry());
}

bool RestoreColumns(QHeaderView& header, const QString& name) {
  if (!g_memory) return false;
  const QSettings file(FilePath(), QSettings::IniFormat);
  return header.restoreState(file.value("columns/" + name).toByteArray());
}

void KeepColumns(const QHeaderView& header, const QString& name) {
  if (!g_memory) return;
  QSettings file(FilePath(), QSettings::IniFormat);
  file.setValue("columns/" + name, header.saveState());
}

bool RestoredChoice(const QString& name, bool usual) {
  if (!g_memory) return usual;
  const QSettings file(FilePath(), QSettings::IniFormat);
  return file.value("choices/" + name, usual).toBool();
}

void KeepChoice(const QString& name, bool on) {
  if (!g_memory) return;
  QSettings file(FilePath(), QSettings::IniFormat);
  file.setValue("choices/" + name, on);
}

void FitToScreen(QWidget& window, QSize wanted) {
  const QSize room = window.screen()->availableGeometry().size();
  // The frame of the window and a bar at the edge of the screen need some room themselves.
  window.resize(wanted.boundedTo(QSize(room.width() - 24, room.height() - 48)));
}

}  // namespace kaunter
