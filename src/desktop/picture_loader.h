// Pictures for widgets, read behind the window.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <functional>

namespace kaunter {

// Another text once another file is there, empty where none is.
QString FileMark(const QString& path);

// Calls `done` later, on the thread of the windows, with the picture at most as large as the room;
// a null one when it cannot be shown. Nothing is called once the receiver is gone. One picture is
// read at a time: a large one takes the memory of one.
void LoadPicture(const QString& path, QSize room, QObject* receiver,
                 std::function<void(const QImage& picture)> done);

}  // namespace kaunter
