#include "qtservices/picture_file.h"

#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <utility>

namespace kaunter {
namespace {

constexpr int kMegabytes = 160;  // for one picture: a page scanned with 600 dots an inch fits
constexpr int kBestQuality = 100;
constexpr int kBytesOfDot = 4;

// The names that people give to files tell nothing.
void Look(QImageReader& reader) {
  static const bool bounded = (QImageReader::setAllocationLimit(kMegabytes), true);
  static_cast<void>(bounded);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
}

bool IsTooLarge(QSize size) {
  return size.isValid() &&
         qint64(size.width()) * size.height() * kBytesOfDot > qint64(kMegabytes) * 1024 * 1024;
}

// A JPEG file knows no glass: what shines through is white.
QImage OnWhite(QImage image) {
  if (!image.hasAlphaChannel()) return image;
  QImage paper(image.size(), QImage::Format_RGB32);
  if (paper.isNull()) return paper;
  paper.fill(Qt::white);
  QPainter(&paper).drawImage(0, 0, image);
  return paper;
}

}  // namespace

QImage ReadSmall(const std::string& path, QSize room) {
  QImageReader reader(QString::fromStdString(path));
  Look(reader);
  const QSize size = reader.size();
  const bool jpeg = reader.format() == "jpeg";
  if (IsTooLarge(size) && !jpeg) return {};
  const bool lies = reader.transformation() & QImageIOHandler::TransformationRotate90;
  const QSize shown = lies ? room.transposed() : room;
  if (!size.isValid() || (size.width() <= shown.width() && size.height() <= shown.height())) {
    return reader.read();
  }
  if (reader.supportsOption(QImageIOHandler::ScaledSize)) {
    reader.setScaledSize(size.scaled(shown, Qt::KeepAspectRatio));
    return reader.read();
  }
  // In the few colours of its own a smaller picture would be grained.
  const QImage image = reader.read();
  if (image.isNull()) return image;
  return image
      .convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                               : QImage::Format_RGB32)
      .scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

PictureDesk::Made WriteAsJpeg(const std::string& source, const std::string& target) {
  using Made = PictureDesk::Made;
  QImageReader reader(QString::fromStdString(source));
  Look(reader);
  if (!reader.canRead() || reader.imageCount() > 1) return Made::no_picture;
  if (IsTooLarge(reader.size())) return Made::too_large;
  QImage image = OnWhite(reader.read());
  if (image.isNull()) return Made::no_picture;
  QImageWriter writer(QString::fromStdString(target), "jpeg");
  writer.setQuality(kBestQuality);
  return writer.write(image) ? Made::done : Made::not_written;
}

}  // namespace kaunter
