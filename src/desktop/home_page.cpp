#include "desktop/home_page.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>

#include "core/shown.h"
#include "desktop/control_view.h"
#include "desktop/figure_views.h"
#include "desktop/figures_panel.h"
#include "desktop/grid_view.h"
#include "desktop/plain_views.h"
#include "desktop/text.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

// The roads of a counter's day, the most trodden first.
struct Road {
  const char* entry;
  Glyph glyph;
};
constexpr Road kRoads[] = {
    {"NewPaymentMnu", Glyph::coins}, {"NewLoanMnu", Glyph::paper},
    {"NewCustMnu", Glyph::person},   {"LoanCalcMnu", Glyph::calculator},
    {"LoanSettleMnu", Glyph::seal},  {"DueDateInq", Glyph::clock},
    {"CheckICMnu", Glyph::card},     {"CashBookMnu", Glyph::book},
};
constexpr std::size_t kMostTiles = 6;

// A quiet row is listed, and owes nothing.
bool Counts(const Grid& grid, int row) {
  return grid.Tone(row) != RowTone::quiet && grid.Tone(row) != RowTone::total;
}

}  // namespace

Tile::Tile(Glyph glyph, QWidget* parent) : QAbstractButton(parent), icon_(MakeIcon(glyph, true)) {
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setCursor(Qt::PointingHandCursor);
}

void Tile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  DrawCard(painter, *this, isEnabled() && (underMouse() || isDown()));
  const QRect place(16, (height() - 26) / 2, 26, 26);
  icon_.paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  QColor ink = isEnabled() ? Look().text : Look().muted;
  if (!isEnabled()) ink.setAlphaF(0.6F);
  painter.setPen(ink);
  painter.drawText(QRect(54, 4, width() - 62, height() - 8),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, text());
}

ListCard::ListCard(ScreenFace& face, std::vector<Listed> lists, QWidget* parent)
    : QWidget(parent), face_(face), lists_(std::move(lists)) {
  auto* card = new QFrame(this);
  card->setProperty("card", true);
  auto* around = new QVBoxLayout(this);
  around->setContentsMargins(0, 0, 0, 0);
  around->addWidget(card);
  auto* layout = new QVBoxLayout(card);
  layout->setContentsMargins(1, 0, 1, 6);
  layout->setSpacing(0);
  pages_ = new QStackedWidget(card);
  auto* head = new QHBoxLayout;
  head->setSpacing(8);
  if (lists_.size() == 1) {
    head->setContentsMargins(14, 8, kGap, 2);
    title_ = CardTitle(card);
    head->addWidget(title_);
  } else {
    head->setContentsMargins(4, 0, kGap, 0);
    names_ = new QTabBar(card);
    names_->setDrawBase(false);
    names_->setExpanding(false);
    for (std::size_t i = 0; i < lists_.size(); ++i) names_->addTab({});
    connect(names_, &QTabBar::currentChanged, this, [this](int page) {
      pages_->setCurrentIndex(page);
      Refresh();
    });
    head->addWidget(names_);
  }
  head->addStretch(1);
  if (names_) {
    sum_ = new QLabel(card);
    sum_->setFont(ScaledFont(1.05, true));
    head->addWidget(sum_);
  }
  layout->addLayout(head);
  for (const Listed& list : lists_) {
    auto& view = static_cast<GridView&>(face.View(*list.grid));
    view.SetBare();
    pages_->addWidget(view.widget());
  }
  layout->addWidget(pages_, 1);
}

QString ListCard::Title(const Listed& list) const {
  const QString name = Q(list.title->caption().In(face_.chinese()));
  int rows = 0;
  for (int row = 0; row < list.grid->RowCount(); ++row) rows += Counts(*list.grid, row) ? 1 : 0;
  return rows == 0 ? name : QString("%1  %2").arg(name).arg(rows);
}

void ListCard::Refresh() {
  if (title_) title_->setText(Title(lists_[0]));
  for (std::size_t i = 0; i < lists_.size(); ++i) {
    if (names_) {
      names_->setTabText(static_cast<int>(i), Title(lists_[i]));
      names_->setTabVisible(static_cast<int>(i), lists_[i].grid->visible());
      names_->setTabToolTip(static_cast<int>(i), Q(lists_[i].tip.In(face_.chinese())));
    }
    auto& view = static_cast<GridView&>(face_.View(*lists_[i].grid));
    view.SetEmptyText(lists_[i].empty());
    view.Refresh();
  }
  // The largest arrears alone would be taken for all of them.
  if (sum_) sum_->setText(Sum(*lists_[static_cast<std::size_t>(pages_->currentIndex())].grid));
}

// A list without a column of amounts has no sum.
QString ListCard::Sum(const Grid& grid) const {
  const auto& columns = grid.columns();
  const auto amounts = std::find_if(columns.begin(), columns.end(), [](const GridColumn& column) {
    return column.kind == Kind::money;
  });
  if (amounts == columns.end() || grid.RowCount() == 0) return {};
  Money sum;
  for (int row = 0; row < grid.RowCount(); ++row) {
    if (!Counts(grid, row)) continue;
    const std::string& cell = grid.Cell(row, static_cast<int>(amounts - columns.begin()));
    sum += Money::TryText(cell).value_or(Money());
  }
  return QString("%1 %2").arg(Q(amounts->header.In(face_.chinese())), Q(ShowMoney(sum)));
}

HomePage::HomePage(ScreenFace& face, MainFrm& main, std::function<void(const std::string&)> choose,
                   QWidget* parent)
    : QWidget(parent),
      face_(face),
      main_(main),
      choose_(std::move(choose)),
      notices_{Notice{main.KeyNotice, main.EmptyKeyCmd},
               Notice{main.UnsentLBL, main.SendFilesCmd}} {
  slogan_ = new QLabel(this);
  slogan_->setFont(ScaledFont(1.6, true));
  slogan_->setTextFormat(Qt::PlainText);
  slogan_->setWordWrap(true);
  slogan_->installEventFilter(this);
  company_ = new QLabel(this);
  company_->setProperty("muted", true);
  company_->setTextFormat(Qt::PlainText);
  company_->setWordWrap(true);  // what must be known of a day may be more than a screen is wide

  desk_ = new QWidget(this);
  auto* desk = new QVBoxLayout(desk_);
  desk->setContentsMargins(0, 0, 0, 0);
  desk->setSpacing(kGap);
  for (Notice& notice : notices_) {
    MakeNotice(notice);
    desk->addWidget(notice.card);
  }
  tiles_ = new QHBoxLayout;
  tiles_->setSpacing(kGap);
  desk->addLayout(tiles_);
  figures_ = new FiguresPanel(face, main.home(), desk_);
  desk->addWidget(figures_, 4);
  auto* lists = new QHBoxLayout;
  lists->setSpacing(kGap);
  HomeFigures& home = main.home();
  const auto nobody = [&home]() -> Caption {
    if (home.Known(home.OverdueDG)) return {"No loan is behind.", "没有拖欠的贷款。"};
    return home.failed() ? Caption{"-", "-"} : Caption{"...", "..."};
  };
  const auto no_cash = [&home]() -> Caption {
    if (home.Known(home.CashDG)) return {"No company has cash yet.", "还没有公司有现金。"};
    return home.failed() ? Caption{"-", "-"} : Caption{"...", "..."};
  };
  const auto none = [](Caption text) { return [text] { return text; }; };
  overdue_ = new ListCard(face, {{&home.OverdueDG, &home.OverdueDG, nobody}}, desk_);
  lists_ = new ListCard(
      face,
      {{&main.Label4,
        &main.LS1,
        none({"Nothing is due today.", "今天没有到期的贷款。"}),
        {"Loans with something due today or before. One in grey has no balance and owes nothing.",
         "今天或之前有到期款项的贷款。灰色的已无结欠。"}},
       {&main.Label5,
        &main.LS2,
        none({"Every loan has its stamp number.", "所有贷款都有印花证书号码。"}),
        {}},
       {&home.CashDG, &home.CashDG, no_cash, {}},
       {&home.EInvDG,
        &home.EInvDG,
        none({"Nothing waits to be submitted.", "没有待提交的收入。"}),
        {"Interest and charges of this month for which no e-invoice has gone out.",
         "本月未提交电子发票的利息与费用。"}}},
      desk_);
  lists->addWidget(overdue_, 2);
  lists->addWidget(lists_, 3);
  desk->addLayout(lists, 5);
  welcome_ = MakeWelcome();

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 14, 24, 16);
  layout->setSpacing(0);
  layout->addLayout(MakeHead());
  layout->addWidget(company_);
  layout->addSpacing(10);
  layout->addWidget(desk_, 1);
  layout->addWidget(welcome_, 1);
  Refresh();
}

// The slogan, and at its end when the figures were read.
QHBoxLayout* HomePage::MakeHead() {
  as_of_ = new QLabel(this);
  as_of_->setProperty("muted", true);
  refresh_ = new QPushButton(this);
  connect(refresh_, &QPushButton::clicked, this,
          [this] { face_.Act([this] { main_.home().RefreshCmd.Click(); }); });
  auto* head = new QHBoxLayout;
  head->setSpacing(kGap);
  head->addWidget(slogan_, 1);
  head->addWidget(as_of_);
  head->addWidget(refresh_);
  return head;
}

void HomePage::MakeNotice(Notice& notice) {
  notice.card = new QFrame(desk_);
  notice.card->setProperty("card", true);
  auto* inside = new QHBoxLayout(notice.card);
  inside->setContentsMargins(16, 10, 12, 10);
  notice.text = new QLabel(notice.card);
  notice.text->setWordWrap(true);
  notice.button = new QPushButton(notice.card);
  connect(notice.button, &QPushButton::clicked, this, [this, &notice] {
    face_.Act([&] { notice.act.Click(); });
    Refresh();
  });
  inside->addWidget(notice.text, 1);
  inside->addWidget(notice.button);
}

QWidget* HomePage::MakeWelcome() {
  auto* page = new QWidget(this);
  auto* card = new QFrame(page);
  card->setProperty("card", true);
  card->setFixedWidth(420);
  auto* inside = new QVBoxLayout(card);
  inside->setContentsMargins(28, 26, 28, 28);
  inside->setSpacing(18);
  welcome_text_ = new QLabel(card);
  welcome_text_->setAlignment(Qt::AlignCenter);
  welcome_text_->setWordWrap(true);
  sign_in_ = new QPushButton(card);
  sign_in_->setProperty("role", "primary");
  connect(sign_in_, &QPushButton::clicked, this, [this] { choose_("UserLoginMnu"); });
  inside->addWidget(welcome_text_);
  inside->addWidget(sign_in_, 0, Qt::AlignHCenter);
  auto* layout = new QVBoxLayout(page);
  layout->addStretch(2);
  layout->addWidget(card, 0, Qt::AlignHCenter);
  layout->addStretch(3);
  return page;
}

// The platform's own buttons hear the space bar alone.
void HomePage::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = enter ? qobject_cast<QAbstractButton*>(focusWidget()) : nullptr;
  if (button == nullptr) return QWidget::keyPressEvent(event);
  // A key that is still held down pressed something else.
  if (!event->isAutoRepeat()) button->click();
}

bool HomePage::eventFilter(QObject* watched, QEvent* event) {
  if (watched == slogan_ && event->type() == QEvent::MouseButtonDblClick && main_.Label1.onClick) {
    face_.Act([this] { main_.Label1.onClick(); });
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

// The company in work, and what must be known of the day.
QString HomePage::CompanyLine() const {
  QStringList parts = {Q(main_.Panel(4)), Q(main_.home().PostedLBL.Text()),
                       Q(main_.home().BackupLBL.Text()),
                       Q(main_.ClockLBL.caption().In(main_.chinese())),
                       Q(main_.StandbyLBL.caption().In(main_.chinese()))};
  parts.removeAll(QString());
  return parts.join(QString::fromUtf8("   ·   "));
}

void HomePage::Refresh() {
  const bool chinese = main_.chinese();
  const QString slogan = Q(main_.Label1.Text());
  slogan_->setText(slogan.isEmpty() ? Plain(main_.title().In(chinese)) : slogan);
  company_->setText(CompanyLine());
  company_->setVisible(!company_->text().isEmpty());
  const bool signed_in = main_.Label4.visible();
  // What goes is hidden before what comes is shown: both at once would make the window grow.
  const bool arrives = signed_in && desk_->isHidden();
  if (signed_in) welcome_->hide();
  if (!signed_in) {
    desk_->hide();
    if (welcome_->isHidden()) {
      welcome_->show();
      sign_in_->setFocus();
    }
  }
  welcome_text_->setText(chinese ? "请先进入系统。" : "Nobody is signed in.");
  sign_in_->setText(chinese ? "进入(&I)" : "Sign &in");
  as_of_->setVisible(signed_in);
  as_of_->setText(Q(main_.home().FiguresTime.Text()));
  refresh_->setVisible(main_.home().RefreshCmd.visible());
  refresh_->setText(Q(main_.home().RefreshCmd.caption().In(chinese)));
  // A new text takes the key away.
  refresh_->setShortcut(QKeySequence(Q(main_.home().RefreshCmd.shortcut)));
  if (!signed_in) return;
  for (Notice& notice : notices_) {
    notice.card->setVisible(notice.told.visible());
    notice.text->setText(Q(notice.told.caption().In(chinese)));
    notice.button->setText(Q(notice.act.caption().In(chinese)));
  }
  RefreshTiles();
  figures_->Refresh();
  // While nothing can be behind, today's list has the whole width.
  overdue_->setVisible(main_.home().OverdueDG.visible() && !main_.home().Empty());
  overdue_->Refresh();
  lists_->Refresh();
  desk_->show();
  if (arrives && tiles_->count() > 0) tiles_->itemAt(0)->widget()->setFocus();
}

void HomePage::RefreshTiles() {
  std::vector<std::string> state;
  std::vector<std::pair<const MenuEntry*, Glyph>> shown;
  for (const Road& road : kRoads) {
    const MenuEntry* entry = main_.menu().Find(road.entry);
    if (!entry || !main_.menu().Reachable(*entry) || shown.size() == kMostTiles) continue;
    shown.emplace_back(entry, road.glyph);
    state.push_back(entry->name + (entry->enabled ? "+" : "-") +
                    entry->caption.In(main_.chinese()));
  }
  if (state == shown_tiles_) return;
  shown_tiles_ = state;
  while (QLayoutItem* item = tiles_->takeAt(0)) {
    if (item->widget()) item->widget()->deleteLater();
    delete item;
  }
  QWidget* last = nullptr;
  for (const auto& [entry, glyph] : shown) {
    auto* tile = new Tile(glyph, desk_);
    tile->setText(Plain(entry->caption.In(main_.chinese())));
    tile->setEnabled(entry->enabled);
    if (!entry->enabled) tile->setToolTip(Q(MainFrm::NotBuiltText().In(main_.chinese())));
    connect(tile, &QAbstractButton::clicked, this, [this, name = entry->name] { choose_(name); });
    tiles_->addWidget(tile, 1);
    last = tile;
  }
  // Whoever presses a key at once means a tile, never the button that shuts a door for good, nor
  // another one of the notices. As the first of the ring it counts as being behind the last tile
  // already, so it is moved away before.
  for (const Notice& notice : notices_) {
    if (!last) break;
    setTabOrder(refresh_, notice.button);
    setTabOrder(last, notice.button);
    last = notice.button;
  }
}

}  // namespace kaunter
