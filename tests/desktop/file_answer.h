// Somebody at a file dialog.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

namespace kaunter {

// Answers the next file dialog: a name typed into it, or Cancel for an empty one.
inline void AnswerFileDialog(const QString& name) {
  QTimer::singleShot(150, qApp, [name] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    if (name.isEmpty()) return dialog->reject();
    auto* box = dialog->findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(box, nullptr);
    box->setText(name);
    QMetaObject::invokeMethod(dialog, "accept");
  });
}

}  // namespace kaunter
