#include "desktop/picture_loader.h"

#include <QCoreApplication>
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
