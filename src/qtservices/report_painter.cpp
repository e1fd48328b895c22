#include "qtservices/report_painter.h"

#include <QCache>
#include <QDateTime>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <map>
#include <utility>

#include "qtservices/picture_file.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72.0;
// Fonts are laid out at this many units a millimetre, so that small sizes keep their widths.
constexpr double kTextScale = 20.0;
constexpr int kPicturesKept = 32 * 1024;  // kilobytes

QColor Colour(Tone tone) {
  switch (tone) {
    case Tone::ink:
      return QColor(0x1f, 0x24, 0x2b);
    case Tone::quiet:
      return QColor(0x66, 0x6f, 0x7a);
    case Tone::accent:
      return QColor(0x1f, 0x5f, 0x5b);
    case Tone::shade:
      return QColor(0xf3, 0xf6, 0xf6);
    case Tone::rule:
      return QColor(0xb9, 0xc2, 0xc6);
  }
  return Qt::black;
}

// A page has hundreds of texts in three or four fonts.
class TextPainter {
 public:
  explicit TextPainter(QPainter& painter) : painter_(painter) {
    painter_.save();
    painter_.scale(1 / kTextScale, 1 / kTextScale);
  }
  ~TextPainter() { painter_.restore(); }
  TextPainter(const TextPainter&) = delete;
  TextPainter& operator=(const TextPainter&) = delete;

  void Paint(const PageText& text) {
    if (text.text.empty()) return;
    const Face& face = FaceOf(text);
    const double room = text.width * kTextScale;
    QString shown = QString::fromStdString(text.text);
    for (QChar& sign : shown) {
      if (sign < u' ') sign = u' ';
    }
    // The table of widths is the font's own; only what comes near the edge is measured again.
    if (TextWidth(text.text, text.points, text.bold) > 0.95 * text.width) {
      shown = face.metrics.elidedText(shown, Qt::ElideRight, room);
    }
    double x = text.x * kTextScale;
    if (text.align != TextAlign::left) {
      const double free = room - face.metrics.horizontalAdvance(shown);
      x += text.align == TextAlign::right ? free : free / 2;
    }
    const double y = text.y * kTextScale + face.metrics.ascent() +
                     (text.height * kTextScale - face.metrics.height()) / 2;
    painter_.setPen(Colour(text.tone));
    painter_.drawText(QPointF(x, y), shown);
  }

 private:
  struct Face {
    explicit Face(const QFont& of) : font(of), metrics(of) {}
    QFont font;
    QFontMetricsF metrics;
  };

  const Face& FaceOf(const PageText& text) {
    const int size = static_cast<int>(text.points * kMillimetresPerPoint * kTextScale + 0.5);
    auto found = faces_.find({size, text.bold});
    if (found == faces_.end()) {
      QFont font("DejaVu Sans");
      font.setFamilies({"DejaVu Sans", "Noto Sans CJK SC", "Lohit Tamil"});
      font.setPixelSize(size);
      // The widths that the layout reckons with: a hinted letter is up to a dot wider.
      font.setHintingPreference(QFont::PreferNoHinting);
      // Letters that are not drawn together, as f and i are: a PDF is searched letter by letter.
      // The least room between them keeps them apart, and is less than a dot on a line of paper.
      font.setLetterSpacing(QFont::AbsoluteSpacing, 1.0 / 64);
      font.setBold(text.bold);
      found = faces_.emplace(std::pair(size, text.bold), Face(font)).first;
    }
    if (current_ != &found->second) painter_.setFont(found->second.font);
    current_ = &found->second;
    return found->second;
  }

  QPainter& painter_;
  std::map<std::pair<int, bool>, Face> faces_;
  const Face* current_ = nullptr;
};

constexpr QSize kSharpEnough(2400, 2400);  // for a whole page

// Kept while the file is the same: a page is drawn again and again while it is scrolled.
QImage PictureOf(const std::string& path) {
  static QCache<QString, QImage> kept(kPicturesKept);
  const QFileInfo file(QString::fromStdString(path));
  const QString key = QString("%1|%2|%3")
                          .arg(file.filePath())
                          .arg(file.size())
                          .arg(file.lastModified().toMSecsSinceEpoch());
  if (const QImage* known = kept.object(key)) return *known;
  const QImage picture = ReadSmall(path, kSharpEnough);
  kept.insert(key, new QImage(picture),
              std::max<int>(1, static_cast<int>(picture.sizeInBytes() / 1024)));
  return picture;
}

// One that cannot be read is left out like one that is not there.
void PaintPicture(QPainter& painter, const PagePicture& place) {
  const QImage picture = PictureOf(place.path);
  if (picture.isNull()) return;
  const QSizeF size =
      QSizeF(picture.size()).scaled(QSizeF(place.width, place.height), Qt::KeepAspectRatio);
  const double free = place.width - size.width();
  const double x = place.x + (place.align == TextAlign::right    ? free
                              : place.align == TextAlign::center ? free / 2
                                                                 : 0);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(QPointF(x, place.y), size), picture);
}

// In one piece: between modules that were drawn one by one a thin light line could be seen.
void PaintCode(QPainter& painter, const PageCode& place) {
  const double module = place.side / (place.code.side + 2 * QrCode::kQuietZone);
  const auto at = [module](int modules) { return (modules + QrCode::kQuietZone) * module; };
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  for (int row = 0; row < place.code.side; ++row) {
    for (int column = 0; column < place.code.side; ++column) {
      if (!place.code.Dark(row, column)) continue;
      const int first = column;
      while (column + 1 < place.code.side && place.code.Dark(row, column + 1)) ++column;
      path.addRect(place.x + at(first), place.y + at(row), (column + 1 - first) * module, module);
    }
  }
  painter.fillPath(path, Qt::black);
}

}  // namespace

std::optional<PictureSize> MeasurePicture(const std::string& path) {
  const QImage picture = PictureOf(path);
  if (picture.isNull()) return std::nullopt;
  return PictureSize{static_cast<double>(picture.width()), static_cast<double>(picture.height())};
}

void PaintReportPage(QPainter& painter, const ReportDocument& document, std::size_t page) {
  const ReportPage& content = document.pages.at(page);
  for (const PageArea& area : content.areas) {
    painter.fillRect(QRectF(area.x, area.y, area.width, area.height), Colour(area.tone));
  }
  for (const PagePicture& picture : content.pictures) PaintPicture(painter, picture);
  for (const PageCode& code : content.codes) PaintCode(painter, code);
  for (const PageLine& line : content.lines) {
    painter.setPen(QPen(Colour(line.tone), line.width));
    painter.drawLine(QPointF(line.x1, line.y1), QPointF(line.x2, line.y2));
  }
  TextPainter texts(painter);
  for (const PageText& text : content.texts) texts.Paint(text);
}

}  // namespace kaunter
