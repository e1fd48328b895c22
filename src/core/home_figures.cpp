#include "core/home_figures.h"

#include <fmt/format.h>

#include <chrono>
#include <span>

#include "core/values.h"

namespace kaunter {
namespace {

// What stands behind a table, the nearest first.
constexpr const char* kDueRoads[] = {"DueDateInq", "DueDateListMnu", "DueDateRpt"};
constexpr const char* kAgeRoads[] = {"AgingRptMnu", "OutBalMnu", "FolloUpMnu", "DueDateInq"};
constexpr const char* kCollectRoads[] = {"TrxRptMnu", "PayRptMnu", "DailyCollRptMnu",
                                         "EditPaymentMnu"};
constexpr const char* kDisburseRoads[] = {"LoanRptMnu", "LoanRptCreatedDateMnu", "EditLoanMnu"};
constexpr const char* kOverdueRoads[] = {"EditLoanMnu", "FolloUpMnu", "ReminderMnu"};

const Caption kAges[] = {{"Not due", "未到期"},
                         {"1-30 days", "1-30天"},
                         {"31-60 days", "31-60天"},
                         {"61-90 days", "61-90天"},
                         {"Over 90 days", "超过90天"}};
const Caption kAllOverdue{"Overdue loans", "拖欠贷款"};
const Caption kDueToday{"Due today", "今日到期"};
const Caption kDueWeek{"Due within 7 days", "7天内到期"};

std::vector<GridColumn> Columns(Caption what, Caption count) {
  return {{std::move(what), Kind::text, 14},
          {std::move(count), Kind::integer, 8},
          {{"Amount", "金额"}, Kind::money, 12}};
}

std::vector<std::string> Row(std::string what, const Tally& tally) {
  return {std::move(what), std::to_string(tally.count), ShowMoney(tally.amount)};
}

double Milliseconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since)
      .count();
}

}  // namespace

HomeFigures::HomeFigures(SessionScreen& screen, Session& session, MainMenu& menu)
    : DueDG(screen, "DueDG", {"Due", "到期"}, Columns({"Due", "到期"}, {"Instalments", "期数"})),
      AgeDG(screen, "AgeDG", {"Arrears by age", "欠款账龄"},
            Columns({"Age", "账龄"}, {"Instalments", "期数"})),
      CollectDG(screen, "CollectDG", {"Collections", "收款"},
                Columns({"Month", "月份"}, {"Payments", "笔数"})),
      DisburseDG(screen, "DisburseDG", {"Disbursements", "放款"},
                 Columns({"Month", "月份"}, {"Releases", "笔数"})),
      OverdueDG(screen, "OverdueDG", {"Most overdue loans", "拖欠最多的贷款"},
                {{{"Loan ID", "贷款编号"}, Kind::text, 14},
                 {{"Customer", "顾客"}, Kind::text, 22},
                 {{"Days", "天数"}, Kind::integer, 7},
                 {{"Overdue", "拖欠额"}, Kind::money, 12}}),
      FiguresTime(screen, "FiguresTime"),
      RefreshCmd(screen, "RefreshCmd", {"Refresh", "刷新"}),
      screen_(screen),
      session_(session),
      menu_(menu),
      parts_{{{&DueDG, &AgeDG}, ReadComingDue},
             {{&AgeDG, &OverdueDG}, ReadArrears},
             {{&CollectDG}, ReadCollections},
             {{&DisburseDG}, ReadDisbursements}},
      next_part_(parts_.size()) {
  for (Grid* grid : {&DueDG, &AgeDG, &CollectDG, &DisburseDG}) {
    grid->onOpen = [this, grid](int, int) {
      const MenuEntry* entry = Road(*grid);
      if (entry != nullptr) choose(std::string(entry->name));
    };
  }
  OverdueDG.onOpen = [this](int row, int) { open_loan(OverdueDG.Cell(row, 0)); };
  RefreshCmd.onClick = [this] { Refresh(); };
  RefreshCmd.shortcut = "F5";
  SignedOut();
}

const MenuEntry* HomeFigures::Road(const Grid& grid) const {
  std::span<const char* const> roads = kDueRoads;
  if (&grid == &AgeDG) roads = kAgeRoads;
  if (&grid == &CollectDG) roads = kCollectRoads;
  if (&grid == &DisburseDG) roads = kDisburseRoads;
  if (&grid == &OverdueDG) roads = kOverdueRoads;
  const MenuEntry* closed = nullptr;  // within the person's rights, but not to be opened
  for (const char* name : roads) {
    const MenuEntry* entry = menu_.Find(name);
    if (entry == nullptr || !menu_.Reachable(*entry)) continue;
    if (entry->enabled) return entry;
    if (closed == nullptr) closed = entry;
  }
  return closed;
}

void HomeFigures::SignedIn() {
  SignedOut();
  for (Grid* grid : {&DueDG, &AgeDG, &CollectDG, &DisburseDG, &OverdueDG}) {
    grid->SetVisible(Road(*grid) != nullptr);
  }
  for (Control* control : std::initializer_list<Control*>{&FiguresTime, &RefreshCmd}) {
    control->SetVisible(true);
  }
  Refresh();
}

void HomeFigures::SignedOut() {
  ++run_;
  next_part_ = parts_.size();
  figures_ = {};
  read_at_.clear();
  FiguresTime.SetText({});
  for (Grid* grid : {&DueDG, &AgeDG, &CollectDG, &DisburseDG, &OverdueDG}) grid->Clear();
  for (Control* control : std::initializer_list<Control*>{&DueDG, &AgeDG, &CollectDG, &DisburseDG,
                                                          &OverdueDG, &FiguresTime, &RefreshCmd}) {
    control->SetVisible(false);
  }
}

// What is shown stays until its part has been read anew: a page that empties itself at each return
// would flicker.
void HomeFigures::Refresh() {
  const DateTime now = ServerTime(session_.Main());
  OfficeFigures fresh = EmptyFigures(now);
  if (figures_.today == fresh.today) fresh = figures_;
  figures_ = std::move(fresh);
  read_at_ = Format(now, "dd-mm-yyyy hh:nn");
  next_part_ = 0;
  spent_ = 0;
  const unsigned run = ++run_;
  if (later) {
    later([this, run] { ReadNext(run); });
    return;
  }
  while (!ready()) ReadNext(run);
}

bool HomeFigures::Wanted(const Part& part) const {
  for (const Grid* grid : part.grids) {
    if (grid->visible()) return true;
  }
  return false;
}

void HomeFigures::ReadNext(unsigned run) {
  if (run != run_ || ready()) return;
  const Part& part = parts_[next_part_];
  // Counted first: a statement that fails is not sent again and again.
  ++next_part_;
  if (Wanted(part)) {
    const auto start = std::chrono::steady_clock::now();
    part.read(session_, figures_);
    // The window may have been painted meanwhile, but nobody has signed out: no key was heard.
    spent_ += Milliseconds(start);
  }
  if (ready()) {
    ShowAll();
  } else if (later) {
    later([this, run] { ReadNext(run); });
  }
}

void HomeFigures::Returned() {
  if (!RefreshCmd.visible() || !ready() || spent_ > patience) return;
  Refresh();
}

void HomeFigures::ShowAll() {
  if (!RefreshCmd.visible() || !ready()) return;
  FiguresTime.SetText(
      fmt::format("{} {}", Caption{"Figures as of", "数据截至"}.In(screen_.chinese()), read_at_));
  ShowDue();
  ShowAges();
  ShowMonths(CollectDG, figures_.collected);
  ShowMonths(DisburseDG, figures_.disbursed);
  ShowOverdue();
}

void HomeFigures::ShowDue() {
  if (!DueDG.visible()) return;
  const bool chinese = screen_.chinese();
  DueDG.SetRows({Row(kDueToday.In(chinese), figures_.due_today),
                 Row(kDueWeek.In(chinese), figures_.due_week)});
}

void HomeFigures::ShowAges() {
  if (!AgeDG.visible()) return;
  std::vector<std::vector<std::string>> rows;
  for (std::size_t band = 0; band < kAgeBands; ++band) {
    rows.push_back(Row(kAges[band].In(screen_.chinese()), figures_.by_age[band]));
  }
  rows.push_back(Row(kAllOverdue.In(screen_.chinese()), figures_.overdue));
  AgeDG.SetRows(std::move(rows), {RowTone::plain, RowTone::plain, RowTone::plain, RowTone::plain,
                                  RowTone::plain, RowTone::total});
}

void HomeFigures::ShowMonths(Grid& grid, const Year& year) {
  if (!grid.visible()) return;
  std::vector<std::vector<std::string>> rows;
  for (const MonthTally& month : year) {
    const std::string name = screen_.chinese()
                                 ? fmt::format("{}年{}月", month.year, month.month)
                                 : Format(DateTime{month.year, month.month, 1}, "mmm yyyy");
    rows.push_back(Row(name, month.sum));
  }
  grid.SetRows(std::move(rows));
}

void HomeFigures::ShowOverdue() {
  if (!OverdueDG.visible()) return;
  std::vector<std::vector<std::string>> rows;
  for (const OverdueLoan& loan : figures_.top) {
    rows.push_back(
        {loan.loan_id, loan.customer, std::to_string(loan.days), ShowMoney(loan.amount)});
  }
  OverdueDG.SetRows(std::move(rows));
}

bool HomeFigures::Empty() const {
  Tally all = figures_.overdue;
  for (const Tally& band : figures_.by_age) all.count += band.count;
  for (std::size_t i = 0; i < kMonthsShown; ++i) {
    all.count += figures_.collected[i].sum.count + figures_.disbursed[i].sum.count;
  }
  return all.count == 0;
}

}  // namespace kaunter
