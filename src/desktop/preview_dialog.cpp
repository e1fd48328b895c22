#include "desktop/preview_dialog.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>
#include <stdexcept>

#include "desktop/message_box.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"
#include "qtservices/report_output.h"
#include "qtservices/report_painter.h"

namespace kaunter {
namespace {

constexpr int kPageGap = 18;
constexpr double kLeastZoom = 0.25;
constexpr double kMostZoom = 4;

// A file name made of the report's title, in the user's documents.
QString Proposed(const ReportDocument& document, const char* ending) {
  QString name = Q(document.title).simplified();
  name.replace(QRegularExpression("[\\\\/:*?\"<>|]"), "-");
  if (name.isEmpty()) name = "Report";
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/" + name + ending;
}

// The name with its ending: it is added before the question whether a file may be replaced. Empty
// when the person thought better of it.
QString AskSaveName(QWidget* parent, const QString& title, const QString& proposed,
                    const QString& ending) {
  QFileDialog dialog(parent, title, proposed, ending.toUpper() + " (*." + ending + ")");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(ending);
  if (dialog.exec() != QDialog::Accepted) return {};
  return dialog.selectedFiles().value(0);
}

}  // namespace

PagesView::PagesView(const ReportDocument& document, QWidget* parent)
    : QWidget(parent), document_(document) {
  SetZoom(1);
}

double PagesView::PixelsPerMillimetre() const { return zoom_ * logicalDpiX() / 25.4; }

double PagesView::ZoomForWidth(int width) const {
  return (width - 2 * kPageGap) / (document_.width_mm * logicalDpiX() / 25.4);
}

void PagesView::SetZoom(double zoom) {
  zoom_ = std::clamp(zoom, kLeastZoom, kMostZoom);
  const double scale = PixelsPerMillimetre();
  const int page_height = static_cast<int>(document_.height_mm * scale);
  setMinimumSize(static_cast<int>(document_.width_mm * scale) + 2 * kPageGap,
                 pages() * (page_height + kPageGap) + kPageGap);
  updateGeometry();
  update();
}

QRect PagesView::PageRect(int page) const {
  const double scale = PixelsPerMillimetre();
  const QSize size(static_cast<int>(document_.width_mm * scale),
                   static_cast<int>(document_.height_mm * scale));
  return {QPoint((width() - size.width()) / 2, kPageGap + page * (size.height() + kPageGap)), size};
}

int PagesView::PageAt(int y) const {
  const int step = PageRect(0).height() + kPageGap;
  return std::clamp(y / std::max(step, 1), 0, std::max(pages() - 1, 0));
}

void PagesView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  update();
}

void PagesView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  for (int page = 0; page < pages(); ++page) {
    const QRect rect = PageRect(page);
    if (!rect.adjusted(0, 0, 4, 4).intersects(event->rect())) continue;
    painter.fillRect(rect.translated(2, 3), QColor(0, 0, 0, 40));
    // Paper is white under every theme.
    painter.fillRect(rect, Qt::white);
    painter.save();
    painter.setClipRect(rect);
    painter.translate(rect.topLeft());
    painter.scale(PixelsPerMillimetre(), PixelsPerMillimetre());
    PaintReportPage(painter, document_, static_cast<std::size_t>(page));
    painter.restore();
  }
}

PreviewDialog::PreviewDialog(ReportDocument document, std::function<std::string()> save_csv,
                             bool chinese, QWidget* parent)
    : QDialog(parent),
      document_(std::move(document)),
      save_csv_(std::move(save_csv)),
      chinese_(chinese) {
  setWindowTitle(document_.title.empty() ? In("Preview", "预览") : Q(document_.title));
  setWindowFlag(Qt::WindowMaximizeButtonHint, true);
  pages_ = new PagesView(document_, this);
  scroll_ = new QScrollArea(this);
  scroll_->setWidget(pages_);
  scroll_->setWidgetResizable(true);
  scroll_->setFrameShape(QFrame::NoFrame);
  auto* bar = new QFrame(this);
  bar->setProperty("foot", true);
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(kMargin, 10, kMargin, 10);
  row->setSpacing(8);
  const auto button = [&](const QString& text, const char* role, const std::function<void()>& act) {
    auto* push = new QPushButton(text, bar);
    push->setAutoDefault(false);
    if (role) push->setProperty("role", role);
    connect(push, &QPushButton::clicked, this, act);
    row->addWidget(push);
    return push;
  };
  const auto narrow = [](QPushButton* push) { push->setFixedWidth(40); };
  narrow(button("−", nullptr, [this] { ZoomBy(1 / 1.2); }));
  narrow(button("+", nullptr, [this] { ZoomBy(1.2); }));
  button(In("Fit &width", "适合宽度(&W)"), nullptr, [this] { FitWidth(); });
  place_ = new QLabel(bar);
  place_->setProperty("muted", true);
  place_->setContentsMargins(8, 0, 0, 0);
  row->addWidget(place_);
  row->addStretch(1);
  if (save_csv_) button(In("Save &CSV...", "存CSV(&C)..."), nullptr, [this] { SaveCsv(); });
  button(In("&Save PDF...", "存PDF(&S)..."), nullptr, [this] { SavePdf(); });
  button(In("&Print...", "打印(&P)..."), "primary", [this] { Print(); });
  button(In("C&lose", "关闭(&L)"), nullptr, [this] { reject(); });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(scroll_, 1);
  layout->addWidget(bar);
  connect(scroll_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { ShowPlace(); });
  connect(new QShortcut(QKeySequence("Ctrl+P"), this), &QShortcut::activated, this,
          [this] { Print(); });
  connect(new QShortcut(QKeySequence("Ctrl+S"), this), &QShortcut::activated, this,
          [this] { SavePdf(); });
  if (!RestoreWindow(*this, "Preview")) FitToScreen(*this, {1000, 860});
  scroll_->setFocus();
}

PreviewDialog::~PreviewDialog() { KeepWindow(*this, "Preview"); }

QString PreviewDialog::In(const char* english, const char* chinese) const {
  return QString::fromUtf8(chinese_ ? chinese : english);
}

void PreviewDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The width is known only once the window stands.
  QTimer::singleShot(0, this, [this] {
    pages_->SetZoom(std::min(1.25, pages_->ZoomForWidth(scroll_->viewport()->width())));
    ShowPlace();
  });
}

void PreviewDialog::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_PageDown:
      return Turn(1);
    case Qt::Key_PageUp:
      return Turn(-1);
    case Qt::Key_Plus:
      return ZoomBy(1.2);
    case Qt::Key_Minus:
      return ZoomBy(1 / 1.2);
    default:
      QDialog::keyPressEvent(event);
  }
}

void PreviewDialog::ZoomBy(double factor) {
  const int page = pages_->PageAt(scroll_->verticalScrollBar()->value());
  pages_->SetZoom(pages_->zoom() * factor);
  QTimer::singleShot(0, this, [this, page] {
    scroll_->verticalScrollBar()->setValue(pages_->PageRect(page).top() - kPageGap);
    ShowPlace();
  });
}

void PreviewDialog::FitWidth() {
  pages_->SetZoom(pages_->ZoomForWidth(scroll_->viewport()->width()));
  ShowPlace();
}

void PreviewDialog::Turn(int pages) {
  const int page = pages_->PageAt(scroll_->verticalScrollBar()->value() + kPageGap) + pages;
  if (page < 0 || page >= pages_->pages()) return;
  scroll_->verticalScrollBar()->setValue(pages_->PageRect(page).top() - kPageGap);
}

void PreviewDialog::ShowPlace() {
  const int middle = scroll_->verticalScrollBar()->value() + scroll_->viewport()->height() / 2;
  const int page = pages_->PageAt(middle) + 1;
  const int percent = static_cast<int>(pages_->zoom() * 100 + 0.5);
  place_->setText(In("Page %1 of %2    %3%", "第 %1 页，共 %2 页    %3%")
                      .arg(page)
                      .arg(pages_->pages())
                      .arg(percent));
}

bool PreviewDialog::Try(const std::function<void()>& act) {
  try {
    act();
    return true;
  } catch (const std::exception& failure) {
    ShowMessage(this, MessageKind::critical, S(windowTitle()), failure.what(), chinese_);
    return false;
  }
}

void PreviewDialog::Print() {
  Try([this] { PrintDocument(document_, this); });
}

void PreviewDialog::SavePdf() {
  Try([this] { SaveDocumentAsPdf(document_, this, chinese_); });
}

void PreviewDialog::SaveCsv() {
  Try([this] {
    const QString path =
        AskSaveName(this, In("Save CSV", "存CSV"), Proposed(document_, ".csv"), "csv");
    if (path.isEmpty()) return;
    const std::string text = save_csv_();
    QSaveFile file(path);
    const auto size = static_cast<qint64>(text.size());
    if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), size) != size ||
        !file.commit()) {
      throw std::runtime_error(S(path + ": " + file.errorString()));
    }
  });
}

QPageLayout SheetOf(const ReportDocument& document) {
  QSizeF size(document.width_mm, document.height_mm);
  const bool turned = size.width() > size.height();
  if (turned) size.transpose();
  const QPageSize sheet(size, QPageSize::Millimeter, QString(), QPageSize::FuzzyMatch);
  QPageLayout layout(sheet, turned ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
  layout.setMode(QPageLayout::FullPageMode);
  return layout;
}

bool PrintDocument(const ReportDocument& document, QWidget* parent) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(Q(document.title));
  printer.setPageLayout(SheetOf(document));
  printer.setFullPage(true);
  QPrintDialog dialog(&printer, parent);
  dialog.setMinMax(1, std::max(1, static_cast<int>(document.pages.size())));
  if (dialog.exec() != QDialog::Accepted) return false;
  QPainter painter;
  if (!painter.begin(&printer)) throw std::runtime_error("The printer does not answer");
  const int last = static_cast<int>(document.pages.size());
  const int from = printer.fromPage() > 0 ? printer.fromPage() : 1;
  const int to = printer.toPage() > 0 ? std::min(printer.toPage(), last) : last;
  const double scale = printer.resolution() / 25.4;
  for (int page = from; page <= to; ++page) {
    if (page > from) printer.newPage();
    painter.save();
    painter.scale(scale, scale);
    PaintReportPage(painter, document, static_cast<std::size_t>(page - 1));
    painter.restore();
  }
  return true;
}

bool SaveDocumentAsPdf(const ReportDocument& document, QWidget* parent, bool chinese) {
  const QString path =
      AskSaveName(parent, chinese ? "存PDF" : "Save PDF", Proposed(document, ".pdf"), "pdf");
  if (path.isEmpty()) return false;
  WritePdf(document, S(path));
  return true;
}

}  // namespace kaunter
