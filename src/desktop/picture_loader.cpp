#include "desktop/picture_loader.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>
#include <utility>

#include "desktop/text.h"
#include "qtservices/picture_file.h"

namespace kaunter {
namespace {

// Ends with the application: a picture under way is waited for.
QThreadPool& Readers() {
  static auto* pool = [] {
    auto* made = new QThreadPool(QCoreApplication::instance());
    made->setMaxThreadCount(1);
    return made;
  }();
  return *pool;
}

}  // namespace

QString FileMark(const QString& path) {
  const QFileInfo file(path);
  if (!file.isFile()) return {};
  return QString("%1\n%2\n%3")
      .arg(path)
      .arg(file.size())
      .arg(file.lastModified().toMSecsSinceEpoch());
}

void LoadPicture(const QString& path, QSize room, QObject* receiver,
                 std::function<void(const QImage& picture)> done) {
  QPointer<QObject> guard(receiver);
  Readers().start([path, room, guard, done = std::move(done)] {
    const QImage picture = ReadSmall(S(path), room);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [guard, done, picture] {
          if (guard) done(picture);
        },
        Qt::QueuedConnection);
  });
}

}  // namespace kaunter
