#include "desktop/figures_panel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QTimer>
#include <QVBoxLayout>

#include "core/main_frm.h"
#include "core/shown.h"
#include "desktop/plain_views.h"
#include "desktop/screen_face.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

constexpr int kBusyMilliseconds = 100;
constexpr int kAWhileMilliseconds = 5000;
constexpr int kLastRow = -1;

QColor Between(const QColor& from, const QColor& to, int percent) {
  const auto mix = [percent](int a, int b) { return a + (b - a) * percent / 100; };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// From what is a little behind to what is long behind.
QColor AgeTone(int band) {
  switch (band) {
    case kTo30Days:
      return Look().warn;
    case kTo60Days:
      return Between(Look().warn, Look().bad, 40);
    case kTo90Days:
      return Between(Look().warn, Look().bad, 70);
    default:
      return Look().bad;
  }
}

}  // namespace

FiguresPanel::FiguresPanel(ScreenFace& face, HomeFigures& figures, QWidget* parent)
    : QWidget(parent), face_(face), figures_(figures) {
  cards_ = new QWidget(this);
  auto* cards = new QHBoxLayout(cards_);
  cards->setContentsMargins(0, 0, 0, 0);
  cards->setSpacing(kGap);
  constexpr int kRunningMonth = kMonthsShown - 1;
  today_ = MakeCard(figures.DueDG, 0);
  week_ = MakeCard(figures.DueDG, 1);
  overdue_ = MakeCard(figures.AgeDG, kAgeBands);
  collected_ = MakeCard(figures.CollectDG, kRunningMonth);
  disbursed_ = MakeCard(figures.DisburseDG, kRunningMonth);
  unsent_ = MakeCard(figures.EInvDG, kLastRow);

  charts_ = new QWidget(this);
  auto* charts = new QHBoxLayout(charts_);
  charts->setContentsMargins(0, 0, 0, 0);
  charts->setSpacing(kGap);
  ages_ = new BandChart(charts_);
  in_ = new MonthChart(charts_);
  out_ = new MonthChart(charts_);
  for (Chart* chart : std::initializer_list<Chart*>{ages_, in_, out_}) charts->addWidget(chart, 1);
  ages_->onOpen = [this](int bar) { Open(figures_.AgeDG, bar); };
  in_->onOpen = [this](int bar) { Open(figures_.CollectDG, bar); };
  out_->onOpen = [this](int bar) { Open(figures_.DisburseDG, bar); };

  first_steps_ = new QFrame(this);
  first_steps_->setProperty("card", true);
  auto* first = new QVBoxLayout(first_steps_);
  first->setContentsMargins(24, 20, 24, 20);
  first->setSpacing(6);
  first_title_ = CardTitle(first_steps_);
  first_text_ = new QLabel(first_steps_);
  first_text_->setProperty("muted", true);
  first_text_->setWordWrap(true);
  first->addWidget(first_title_);
  first->addWidget(first_text_);
  // A part that is shown before its time would make the window grow, and a window never shrinks.
  first_steps_->hide();

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGap);
  layout->addWidget(first_steps_);
  layout->addWidget(cards_);
  layout->addWidget(charts_, 1);
  figures_.later = [this](HomeFigures::When when, std::function<void()> part) {
    ReadWhenIdle(when == HomeFigures::When::soon ? 0 : kAWhileMilliseconds, std::move(part));
  };
}

FiguresPanel::~FiguresPanel() { figures_.later = {}; }

FiguresPanel::Card FiguresPanel::MakeCard(Grid& grid, int row) {
  const Card card{new FigureCard(cards_), &grid, row};
  cards_->layout()->addWidget(card.view);
  connect(card.view, &QAbstractButton::clicked, this, [this, card] { Open(*card.grid, card.row); });
  return card;
}

// The screen opens modally: the press is over before it does.
void FiguresPanel::Open(Grid& grid, int row) {
  QTimer::singleShot(0, this, [this, &grid, row] {
    const int at = row == kLastRow ? grid.RowCount() - 1 : row;
    if (face_.acting() || at < 0 || at >= grid.RowCount()) return;
    face_.Act([&] { grid.Open(at, 0); });
  });
}

// Between two parts clicks and keys are heard. While another screen is open, or its statement runs,
// the connection is not ours.
void FiguresPanel::ReadWhenIdle(int after, std::function<void()> part) {
  QTimer::singleShot(after, this, [this, part = std::move(part)]() mutable {
    if (face_.screen().closed()) return;
    const bool busy = face_.acting() || IsWaiting() ||
                      QApplication::activeModalWidget() != nullptr ||
                      QApplication::activePopupWidget() != nullptr || !figures_.MayRead();
    if (busy) return ReadWhenIdle(kBusyMilliseconds, std::move(part));
    face_.Act(part);
  });
}

bool FiguresPanel::Opens(const Grid& grid) const {
  const MenuEntry* entry = figures_.Road(grid);
  return entry != nullptr && entry->enabled;
}

QString FiguresPanel::Tip(const Grid& grid) const {
  const MenuEntry* entry = figures_.Road(grid);
  if (entry == nullptr) return {};
  if (!entry->enabled) return Q(MainFrm::NotBuiltText().In(face_.chinese()));
  return Plain(entry->caption.In(face_.chinese()));
}

// In the place of a figure that is being read, or could not be.
QString FiguresPanel::Unread() const { return figures_.failed() ? "-" : "..."; }

void FiguresPanel::RefreshCard(const Card& card, const Caption& title, const Tally& tally,
                               const Caption& counted, bool alarm) {
  const bool chinese = face_.chinese();
  card.view->setVisible(card.grid->visible());
  card.view->setEnabled(Opens(*card.grid));
  card.view->setToolTip(Tip(*card.grid));
  if (!figures_.Known(*card.grid)) {
    card.view->Set(Q(title.In(chinese)), Unread(), {}, false);
    return;
  }
  card.view->Set(Q(title.In(chinese)), Q(ShowMoney(tally.amount)),
                 QString("%1 %2%3")
                     .arg(tally.count)
                     .arg(Q(counted.In(chinese)))
                     .arg(chinese || tally.count == 1 ? "" : "s"),
                 alarm);
}

void FiguresPanel::RefreshAges() {
  const bool chinese = face_.chinese();
  const Grid& grid = figures_.AgeDG;
  const OfficeFigures& figures = figures_.figures();
  std::vector<FigureBar> bars;
  for (int band = 0; band < kAgeBands && band < grid.RowCount(); ++band) {
    const QString name = Q(grid.Cell(band, 0));
    bars.push_back({name, name, figures.by_age[static_cast<std::size_t>(band)], AgeTone(band)});
  }
  ages_->setVisible(grid.visible());
  const QString behind =
      QString("%1 %2").arg(chinese ? "拖欠" : "Overdue", Q(ShowMoney(figures.overdue.amount)));
  ages_->Set(Q(grid.caption().In(chinese)), std::move(bars), behind,
             !figures_.Known(grid) ? Unread()
             : chinese             ? "没有拖欠的分期。"
                                   : "No instalment is behind.");
  ages_->SetOpens(Opens(grid), Tip(grid));
}

void FiguresPanel::RefreshYear(MonthChart& chart, const Grid& grid, const Year& year,
                               const Caption& empty) {
  const bool chinese = face_.chinese();
  std::vector<FigureBar> bars;
  Money sum;
  for (std::size_t i = 0; i < kMonthsShown && static_cast<int>(i) < grid.RowCount(); ++i) {
    const QString name = Q(grid.Cell(static_cast<int>(i), 0));
    const QString label = chinese ? QString("%1月").arg(year[i].month) : name.left(3);
    bars.push_back({name, label, year[i].sum, Look().accent});
    sum += year[i].sum.amount;
  }
  chart.setVisible(grid.visible());
  chart.Set(Q(grid.caption().In(chinese)), std::move(bars),
            QString("%1 %2").arg(chinese ? "12个月" : "12 months", Q(ShowMoney(sum))),
            !figures_.Known(grid) ? Unread() : Q(empty.In(chinese)));
  chart.SetOpens(Opens(grid), Tip(grid));
}

void FiguresPanel::Refresh() {
  const bool chinese = face_.chinese();
  const bool empty = figures_.Empty();
  if (empty) {
    cards_->hide();
    charts_->hide();
  }
  first_steps_->setVisible(empty);
  setSizePolicy(QSizePolicy::Preferred, empty ? QSizePolicy::Maximum : QSizePolicy::Preferred);
  first_title_->setText(chinese ? "新的办公室" : "A new office");
  first_text_->setText(
      chinese ? "这里还没有贷款。先登记一位顾客，再开一笔贷款；到期、拖欠、收款与放款的数字"
                "会自动出现在这里。"
              : "There are no loans yet. Begin with a customer, then a loan: what falls "
                "due, what is behind, what comes in and what goes out will appear here by itself.");
  if (empty) return;
  const OfficeFigures& figures = figures_.figures();
  const Caption instalment{"instalment", "期"};
  RefreshCard(today_, {"Instalments of today", "今天的分期"}, figures.due_today, instalment, false);
  RefreshCard(week_, {"Due within 7 days", "7天内到期"}, figures.due_week, instalment, false);
  RefreshCard(overdue_, {"Overdue", "拖欠"}, figures.overdue, {"loan", "笔贷款"},
              figures.overdue.count > 0);
  RefreshCard(collected_, {"Collected this month", "本月收款"}, figures.collected.back().sum,
              {"payment", "笔付款"}, false);
  RefreshCard(disbursed_, {"Disbursed this month", "本月放款"}, figures.disbursed.back().sum,
              {"release", "笔放款"}, false);
  RefreshCard(unsent_, {"Not submitted this month", "本月未提交"}, figures_.AllUnsent().all(),
              {"document", "份单据"}, false);
  RefreshAges();
  RefreshYear(*in_, figures_.CollectDG, figures.collected,
              {"No payment in the last twelve months.", "过去十二个月没有收款。"});
  RefreshYear(*out_, figures_.DisburseDG, figures.disbursed,
              {"No money went out in the last twelve months.", "过去十二个月没有放款。"});
  const bool any_chart =
      figures_.AgeDG.visible() || figures_.CollectDG.visible() || figures_.DisburseDG.visible();
  charts_->setVisible(any_chart);
  cards_->setVisible(any_chart || figures_.DueDG.visible());
}

}  // namespace kaunter
