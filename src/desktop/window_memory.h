// Where the person left each window and how large; one small file in the user's settings folder.
#pragma once

#include <QSize>
#include <QString>

class QHeaderView;
class QWidget;

namespace kaunter {

// Switched off for tests and pictures, which must not depend on yesterday.
void SetWindowMemory(bool on);

// False when nothing is known of this window.
bool RestoreWindow(QWidget& window, const QString& name);
void KeepWindow(const QWidget& window, const QString& name);

// The widths that the person gave the columns of a table.
bool RestoreColumns(QHeaderView& header, const QString& name);
void KeepColumns(const QHeaderView& header, const QString& name);

// A choice of the person about a window, such as a part of it that is hidden.
bool RestoredChoice(const QString& name, bool usual);
void KeepChoice(const QString& name, bool on);

// A size that fits the screen the window opens on.
void FitToScreen(QWidget& window, QSize wanted);

}  // namespace kaunter
