#include "desktop/preview_dialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include "desktop/icons.h"
#include "desktop/message_box.h"
#include "desktop/page_list.h"
#include "desktop/pages_view.h"
#include "desktop/paper_output.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"

namespace kaunter {
namespace {

constexpr double kZoomStep = 1.2;
constexpr double kMostAtFirst = 1.25;
constexpr int kSearchSoon = 250;  // milliseconds
constexpr char kListShown[] = "Preview pages";

}  // namespace

PreviewDialog::PreviewDialog(ReportRun run, bool chinese, QWidget* parent)
    : QDialog(parent), run_(std::move(run)), chinese_(chinese), search_soon_(new QTimer(this)) {
  const QString title = Q(run_.document.title);
  setWindowTitle(title.isEmpty() ? In("Preview", "预览") : title);
  setWindowFlag(Qt::WindowMaximizeButtonHint, true);
  pages_ = new PagesView(run_.document, this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* middle = new QHBoxLayout;
  middle->setSpacing(0);
  if (pages_->pages() > 1) {
    list_ = new PageList(run_.document, chinese_, this);
    connect(list_, &PageList::Chosen, pages_, &PagesView::GoTo);
    middle->addWidget(list_);
  }
  middle->addWidget(pages_, 1);
  layout->addLayout(middle, 1);
  layout->insertWidget(0, TopBar());
  for (const Caption& left_out : run_.document.left_out) {
    auto* told = new QLabel(Q(left_out.In(chinese_)), this);
    told->setProperty("trouble", true);
    told->setWordWrap(true);
    layout->insertWidget(1, told);
  }
  layout->addWidget(Foot());
  search_soon_->setSingleShot(true);
  search_soon_->setInterval(kSearchSoon);
  connect(search_soon_, &QTimer::timeout, this, [this] { Search(); });
  connect(pages_, &PagesView::Moved, this, [this] { ShowPlace(); });
  Shortcuts();
  if (list_) ShowList(RestoredChoice(kListShown, true));
  if (!RestoreWindow(*this, "Preview")) FitToScreen(*this, {1000, 860});
  pages_->setFocus();
}

PreviewDialog::~PreviewDialog() { KeepWindow(*this, "Preview"); }

QString PreviewDialog::In(const char* english, const char* chinese) const {
  return QString::fromUtf8(chinese_ ? chinese : english);
}

QAbstractButton* PreviewDialog::Button(QHBoxLayout* row, const QString& text, const QString& hint,
                                       const std::function<void()>& act) {
  auto* button = new QPushButton(text, this);
  button->setAutoDefault(false);
  if (!hint.isEmpty()) {
    button->setToolTip(hint);
    button->setAccessibleName(hint);
  }
  if (text.size() == 1) button->setFixedWidth(40);
  connect(button, &QPushButton::clicked, this, act);
  row->addWidget(button);
  return button;
}

QFrame* PreviewDialog::TopBar() {
  auto* bar = new QFrame(this);
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(kMargin, 8, kMargin, 8);
  row->setSpacing(6);
  if (list_) {
    list_button_ = Button(row, {}, In("Page list (F9)", "页面列表 (F9)"), [this] {
      ShowList(list_button_->isChecked());
      KeepChoice(kListShown, list_button_->isChecked());
    });
    list_button_->setObjectName("pageList");
    list_button_->setIcon(MakeIcon(Glyph::sidebar));
    list_button_->setIconSize({20, 20});
    list_button_->setFixedWidth(40);
    list_button_->setCheckable(true);
    row->addSpacing(kGap);
  }
  Button(row, "‹", In("Page before (Page Up)", "上一页 (Page Up)"), [this] { pages_->Turn(-1); });
  page_box_ = new QLineEdit(bar);
  page_box_->setObjectName("page");
  page_box_->setFixedWidth(64);
  page_box_->setAlignment(Qt::AlignCenter);
  page_box_->setValidator(new QIntValidator(0, 9'999'999, page_box_));
  page_box_->setAccessibleName(In("Page", "页"));
  page_box_->setToolTip(In("Page (Ctrl+G)", "页 (Ctrl+G)"));
  connect(page_box_, &QLineEdit::editingFinished, this, [this] { GoToTyped(); });
  row->addWidget(page_box_);
  of_pages_ = new QLabel(bar);
  of_pages_->setProperty("muted", true);
  row->addWidget(of_pages_);
  Button(row, "›", In("Next page (Page Down)", "下一页 (Page Down)"), [this] { pages_->Turn(1); });
  row->addSpacing(kGap);
  Button(row, "−", In("Smaller (−)", "缩小 (−)"), [this] { ZoomBy(1 / kZoomStep); });
  zoom_ = new QLabel(bar);
  zoom_->setProperty("muted", true);
  zoom_->setAlignment(Qt::AlignCenter);
  zoom_->setFixedWidth(52);
  row->addWidget(zoom_);
  Button(row, "+", In("Larger (+)", "放大 (+)"), [this] { ZoomBy(kZoomStep); });
  Button(row, "100%", In("Size of the paper (Ctrl+0)", "纸张大小 (Ctrl+0)"),
         [this] { pages_->SetZoom(1); });
  Button(row, In("Fit &width", "适合宽度(&W)"), {}, [this] { pages_->FitWidth(); });
  row->addStretch(1);
  hits_ = new QLabel(bar);
  hits_->setProperty("muted", true);
  row->addWidget(hits_);
  search_box_ = new QLineEdit(bar);
  search_box_->setObjectName("search");
  search_box_->setPlaceholderText(In("Find (Ctrl+F)", "查找 (Ctrl+F)"));
  search_box_->setClearButtonEnabled(true);
  search_box_->setMinimumWidth(150);
  search_box_->installEventFilter(this);
  connect(search_box_, &QLineEdit::textChanged, this, [this] { search_soon_->start(); });
  row->addWidget(search_box_);
  Button(row, "↑", In("Found before (Shift+F3)", "上一个 (Shift+F3)"), [this] { NextHit(-1); });
  Button(row, "↓", In("Found next (F3)", "下一个 (F3)"), [this] { NextHit(1); });
  return bar;
}

QFrame* PreviewDialog::Foot() {
  auto* bar = new QFrame(this);
  bar->setProperty("foot", true);
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(kMargin, 10, kMargin, 10);
  row->setSpacing(8);
  row->addStretch(1);
  if (!run_.file.columns.empty()) {
    Button(row, In("Save &CSV...", "存CSV(&C)..."), {}, [this] { SaveCsv(); });
    Button(row, In("Save E&xcel...", "存Excel(&X)..."), {}, [this] { SaveExcel(); });
  }
  Button(row, In("&Save PDF...", "存PDF(&S)..."), {}, [this] { SavePdf(); });
  Button(row, In("&Print...", "打印(&P)..."), {}, [this] {
    Print();
  })->setProperty("role", "primary");
  Button(row, In("C&lose", "关闭(&L)"), {}, [this] { reject(); });
  return bar;
}

void PreviewDialog::Shortcuts() {
  const auto on = [this](const char* keys, const std::function<void()>& act) {
    connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this, act);
  };
  on("Ctrl+P", [this] { Print(); });
  on("Ctrl+S", [this] { SavePdf(); });
  on("Ctrl+F", [this] { AskSearch(); });
  if (list_) on("F9", [this] { list_button_->click(); });
  on("F3", [this] { NextHit(1); });
  on("Shift+F3", [this] { NextHit(-1); });
  on("Ctrl+0", [this] { pages_->SetZoom(1); });
  on("Ctrl++", [this] { ZoomBy(kZoomStep); });
  on("Ctrl+=", [this] { ZoomBy(kZoomStep); });
  on("Ctrl+-", [this] { ZoomBy(1 / kZoomStep); });
  on("Ctrl+Home", [this] { pages_->GoTo(0); });
  on("Ctrl+End", [this] { pages_->GoTo(pages_->pages() - 1); });
  on("Ctrl+G", [this] {
    page_box_->setFocus();
    page_box_->selectAll();
  });
}

void PreviewDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The width is known only once the window stands.
  QTimer::singleShot(0, this, [this] {
    pages_->FitWidth();
    if (pages_->zoom() > kMostAtFirst) pages_->SetZoom(kMostAtFirst);
    ShowPlace();
  });
}

void PreviewDialog::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_PageDown:
      return pages_->Turn(1);
    case Qt::Key_PageUp:
      return pages_->Turn(-1);
    case Qt::Key_Home:
      return pages_->GoTo(0);
    case Qt::Key_End:
      return pages_->GoTo(pages_->pages() - 1);
    case Qt::Key_Plus:
      return ZoomBy(kZoomStep);
    case Qt::Key_Minus:
      return ZoomBy(1 / kZoomStep);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return;  // a box takes it; no button is meant
    case Qt::Key_Escape:
      // Out of a box first, then out of the preview.
      if (!pages_->hasFocus()) return pages_->setFocus();
      break;
    default:
      break;
  }
  QDialog::keyPressEvent(event);
}

bool PreviewDialog::eventFilter(QObject* object, QEvent* event) {
  if (object == search_box_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (enter || key->key() == Qt::Key_Down || key->key() == Qt::Key_Up) {
      const bool back = key->key() == Qt::Key_Up || key->modifiers() & Qt::ShiftModifier;
      NextHit(back ? -1 : 1);
      return true;
    }
  }
  return QDialog::eventFilter(object, event);
}

void PreviewDialog::ShowList(bool on) {
  const bool fitted = pages_->fits_width();
  if (!on && list_->hasFocus()) pages_->setFocus();
  list_->setVisible(on);
  list_button_->setChecked(on);
  if (!isVisible()) return;
  layout()->activate();
  if (fitted) pages_->FitWidth();
}

void PreviewDialog::ZoomBy(double factor) { pages_->SetZoom(pages_->zoom() * factor); }

void PreviewDialog::GoToTyped() {
  const int page = page_box_->text().toInt() - 1;
  if (page != pages_->page()) pages_->GoTo(page);
  ShowPlace();
}

void PreviewDialog::AskSearch() {
  search_box_->setFocus();
  search_box_->selectAll();
}

void PreviewDialog::Search() {
  search_soon_->stop();
  pages_->Find(search_box_->text());
  ShowPlace();
}

void PreviewDialog::NextHit(int step) {
  // What has just been typed is searched first, and shows its first place.
  if (search_soon_->isActive()) return Search();
  pages_->NextHit(step);
}

void PreviewDialog::ShowPlace() {
  if (list_) list_->SetPage(pages_->page());
  page_box_->setText(QString::number(pages_->page() + 1));
  of_pages_->setText(In("of %1", "/ %1 页").arg(pages_->pages()));
  zoom_->setText(QString("%1%").arg(static_cast<int>(pages_->zoom() * 100 + 0.5)));
  ShowHits();
}

void PreviewDialog::ShowHits() {
  const bool asked = !search_box_->text().trimmed().isEmpty() && !search_soon_->isActive();
  const bool missed = asked && !pages_->searching() && pages_->hits() == 0;
  if (!asked) {
    hits_->clear();
  } else if (missed) {
    hits_->setText(In("not found", "找不到"));
  } else if (pages_->hit() < 0) {
    hits_->setText(In("searching ...", "查找中..."));
  } else {
    hits_->setText(QString("%1 / %2%3")
                       .arg(pages_->hit() + 1)
                       .arg(pages_->hits())
                       .arg(pages_->searching() ? " ..." : ""));
  }
  if (search_box_->property("marked").toBool() == missed) return;
  search_box_->setProperty("marked", missed);
  search_box_->update();
}

void PreviewDialog::Try(const std::function<void()>& act) {
  try {
    act();
  } catch (const std::exception& failure) {
    ShowMessage(this, MessageKind::critical, S(windowTitle()), failure.what(), chinese_);
  }
}

void PreviewDialog::Print() {
  Try([this] { PrintDocument(run_.document, this, chinese_); });
}

void PreviewDialog::SavePdf() {
  Try([this] { SaveDocumentAsPdf(run_.document, this, chinese_); });
}

void PreviewDialog::SaveCsv() {
  Try([this] { SaveRowsAsCsv(run_, this, chinese_); });
}

void PreviewDialog::SaveExcel() {
  Try([this] { SaveRowsAsExcel(run_, this, chinese_); });
}

}  // namespace kaunter
