#include "desktop/file_drop.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <utility>

#include "desktop/text.h"

namespace kaunter {
namespace {

using Take = std::function<void(const std::vector<std::string>& files)>;

std::vector<std::string> FilesOf(const QMimeData* data) {
  std::vector<std::string> files;
  if (!data) return files;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) files.push_back(S(url.toLocalFile()));
  }
  return files;
}

class Catcher : public QObject {
 public:
  Catcher(QTableView& table, Take take) : QObject(&table), take_(std::move(take)) {
    table.setAcceptDrops(true);
    table.viewport()->setAcceptDrops(true);
    table.viewport()->installEventFilter(this);
    table.installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::DragEnter:
      case QEvent::DragMove: {
        auto* drag = static_cast<QDropEvent*>(event);
        if (FilesOf(drag->mimeData()).empty()) return false;
        drag->setDropAction(Qt::CopyAction);  // never moved: the file stays where it was
        drag->accept();
        return true;
      }
      case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        const std::vector<std::string> files = FilesOf(drop->mimeData());
        if (files.empty()) return false;
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        // The program that was dragged from waits for the end of the drop.
        QTimer::singleShot(0, this, [this, files] { take_(files); });
        return true;
      }
      case QEvent::KeyPress:
        return static_cast<QKeyEvent*>(event)->matches(QKeySequence::Paste) && Paste();
      default:
        return false;
    }
  }

 private:
  bool Paste() {
    const QMimeData* data = QApplication::clipboard()->mimeData();
    const std::vector<std::string> files = FilesOf(data);
    if (!files.empty()) {
      take_(files);
      return true;
    }
    if (!data || !data->hasImage()) return false;
    const QTemporaryDir folder;
    const QString path = folder.filePath("pasted.png");
    if (!qvariant_cast<QImage>(data->imageData()).save(path, "png")) return false;
    take_({S(path)});
    return true;
  }

  Take take_;
};

}  // namespace

void CatchFiles(QTableView& table, Take take) { new Catcher(table, std::move(take)); }

}  // namespace kaunter
