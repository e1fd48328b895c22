#include "core/home_figures.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <span>

#include "core/company_access.h"
#include "core/log.h"
#include "core/values.h"
#include "platform/sql/engine_version.h"

namespace kaunter {
namespace {

constexpr double kWorthSharing = 500;  // milliseconds

// What stands behind a table, the nearest first: what lists the very rows of a figure before what
// tells of its subject.
constexpr const char* kEditLoan = "EditLoanMnu";
constexpr const char* kDueRoads[] = {"DueDateInq", "DueDateListMnu", "DueDateRpt"};
constexpr const char* kAgeRoads[] = {"DueDateInq", "AgingRptMnu", "OutBalMnu", "FolloUpMnu"};
constexpr const char* kCollectRoads[] = {"TrxRptMnu", "PayRptMnu", "DailyCollRptMnu",
                                         "EditPaymentMnu"};
constexpr const char* kDisburseRoads[] = {"DailyReport", "LoanRptMnu", "LoanRptCreatedDateMnu",
                                          "EditLoanMnu"};
// The second amounts, by the day of the loan, stand in the reports of loans.
constexpr const char* kSpecialRoads[] = {"LoanRptMnu", "LoanRptCreatedDateMnu", "EditLoanMnu"};
constexpr const char* kOverdueRoads[] = {kEditLoan, "FolloUpMnu", "ReminderMnu"};
constexpr const char* kCashRoads[] = {"CashBookMnu", "CashBookRpt", "CBBalRpt"};
constexpr const char* kMovedRoads[] = {"CashBookRpt", "CashBookMnu", "CBBalRpt"};
constexpr const char* kChequeRoads[] = {"ChqMastMnu", "ChqRptMnu", "LoanChqRptMnu"};
constexpr const char* kIncomeRoads[] = {"EInvMenu"};
// Places in the income that waits.
constexpr int kIncomeConsolidated = 4;
// Places in the cash position.
constexpr int kCashToday = 3, kCashWeek = 4, kCashCheques = 5, kCashDue = 6;
// Whose dates are the days that the figures count; the others ask for those of loans, or for none.
constexpr std::string_view kDated[] = {
    "DueDateInq",      "DueDateListMnu", "DueDateRpt", "TrxRptMnu",   "PayRptMnu",
    "DailyCollRptMnu", "DailyReport",    "LoanRptMnu", "CashBookRpt", "EInvMenu"};

const Caption kAges[] = {{"1-30 days", "1-30天"},
                         {"31-60 days", "31-60天"},
                         {"61-90 days", "61-90天"},
                         {"Over 90 days", "超过90天"}};
const Caption kAllOverdue{"Overdue loans", "拖欠贷款"};
const Caption kDueToday{"Instalments of today", "今天的分期"};
const Caption kDueWeek{"Due within 7 days", "7天内到期"};

std::vector<GridColumn> Columns(Caption what, Caption count) {
  return {{std::move(what), Kind::text, 14},
          {std::move(count), Kind::integer, 8},
          {{"Amount", "金额"}, Kind::money, 12}};
}

std::vector<std::string> Row(std::string what, const Tally& tally) {
  return {std::move(what), std::to_string(tally.count), ShowMoney(tally.amount)};
}

DayRange Month(int year, int month) {
  const DateTime first{year, month, 1};
  return {Format(first, "dd-mm-yyyy"), Format(first.AddMonths(1).AddDays(-1), "dd-mm-yyyy")};
}

// Where the clock stands still what is shared would never grow old, and an office in a file is that
// of one PC.
bool HasWhomToShareWith(Session& session) {
  return !session.clock.Fixed() && session.Main().EngineName() != kEmbeddedEngine;
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
      CashDG(screen, "CashDG", {"Cash position", "现金状况"},
             {{{"Company", "公司"}, Kind::text, 9},
              {{"Cash", "现金"}, Kind::money, 11},
              {{"Bank", "银行"}, Kind::money, 11},
              {{"Today", "今日进出"}, Kind::money, 11},
              {{"7 Days Before", "前7天进出"}, Kind::money, 11},
              {{"Cheques 30 Days", "30天内支票"}, Kind::money, 12},
              {{"Due 30 Days", "30天内到期"}, Kind::money, 11}}),
      EInvDG(screen, "EInvDG", {"Income not submitted", "未提交的收入"},
             {{{"Company", "公司"}, Kind::text, 9},
              {{"Documents", "单据"}, Kind::integer, 8},
              {{"Amount", "金额"}, Kind::money, 11},
              {{"Named", "个别"}, Kind::money, 11},
              {{"Consolidated", "合并"}, Kind::money, 11}}),
      FiguresTime(screen, "FiguresTime"),
      PostedLBL(screen, "PostedLBL"),
      BackupLBL(screen, "BackupLBL"),
      RefreshCmd(screen, "RefreshCmd", {"Refresh", "刷新"}),
      screen_(screen),
      session_(session),
      menu_(menu),
      parts_{{{},
              [this](Session&, OfficeFigures&) {
                OfferIncome();
                if (lists_ == Lists::stale) read_lists();
              },
              nullptr},
             {{&DueDG}, ReadComingDue, &HomeFigures::ShowDue},
             {{&AgeDG, &OverdueDG}, ReadArrears, &HomeFigures::ShowAges},
             {{&DisburseDG}, ReadDisbursements, &HomeFigures::ShowDisbursed},
             {{&CashDG},
              [this](Session& of, OfficeFigures& into) {
                reading_.cash = ReadCashPositions(
                    of, into.today, {First(kChequeRoads) != nullptr, First(kDueRoads) != nullptr});
              },
              &HomeFigures::ShowCash},
             {{&EInvDG},
              [this](Session& of, OfficeFigures& into) {
                reading_.unsent = ReadUnsentIncome(of, submitting_, into.today);
              },
              &HomeFigures::ShowIncome}} {
  for (int i = 0; i < kYearParts; ++i) {
    parts_.push_back({{&CollectDG},
                      [i](Session& of, OfficeFigures& into) { ReadCollections(of, into, i); },
                      i + 1 < kYearParts ? nullptr : &HomeFigures::ShowCollected});
  }
  for (Grid* grid : Grids()) {
    grid->onOpen = [this, grid](int row, int column) {
      const MenuEntry* entry = grid == &CashDG ? CashRoad(column) : Road(*grid);
      if (entry == nullptr) return;
      // A loan of the list is opened by those who may choose Edit Loan, and by nobody else.
      if (grid == &OverdueDG && entry->name == kEditLoan && entry->enabled) {
        open_loan(OverdueDG.Cell(row, 0));
        return;
      }
      const bool dated =
          std::find(std::begin(kDated), std::end(kDated), entry->name) != std::end(kDated);
      if (dated) session_.HandOverDays = grid == &CashDG ? CashDays(column) : Days(*grid, row);
      if (grid == &EInvDG) {
        const std::size_t company = static_cast<std::size_t>(row);
        session_.HandOverSelection =
            (company < reading_.unsent.size() ? reading_.unsent[company].CompCode : std::string()) +
            "\n" + (column == kIncomeConsolidated ? "Consolidated" : "Individual");
      }
      choose(std::string(entry->name));
      session_.HandOverDays = {};
      session_.HandOverSelection.clear();
    };
  }
  RefreshCmd.onClick = [this] { Refresh(); };
  RefreshCmd.shortcut = "F5";
  SignedOut();
}

const MenuEntry* HomeFigures::Road(const Grid& grid) const {
  if (&grid == &AgeDG) return First(kAgeRoads);
  if (&grid == &CollectDG) return First(kCollectRoads);
  if (&grid == &DisburseDG) {
    return session_.Special ? First(kSpecialRoads) : First(kDisburseRoads);
  }
  if (&grid == &OverdueDG) return First(kOverdueRoads);
  if (&grid == &CashDG) return First(kCashRoads);
  if (&grid == &EInvDG) return First(kIncomeRoads);
  return First(kDueRoads);
}

const MenuEntry* HomeFigures::First(std::span<const char* const> roads) const {
  const MenuEntry* closed = nullptr;  // within the person's rights, but not to be opened
  for (const char* name : roads) {
    const MenuEntry* entry = menu_.Find(name);
    if (entry == nullptr || !menu_.Reachable(*entry)) continue;
    if (entry->enabled) return entry;
    if (closed == nullptr) closed = entry;
  }
  return closed;
}

const MenuEntry* HomeFigures::CashRoad(int column) const {
  if (column == kCashCheques) return First(kChequeRoads);
  if (column == kCashDue) return First(kDueRoads);
  return column == kCashToday || column == kCashWeek ? First(kMovedRoads) : First(kCashRoads);
}

void HomeFigures::SignedIn() {
  SignedOut();
  for (Grid* grid : Grids()) grid->SetVisible(Road(*grid) != nullptr);
  OfferIncome();
  FiguresTime.SetVisible(true);
  RefreshCmd.SetVisible(true);
  if (later) Begin(When::soon, Lists::fresh, Source::shared);
}

void HomeFigures::SignedOut() {
  ++run_;
  next_part_ = parts_.size();
  reading_ = {};
  submitting_.clear();
  shared_.reset();
  read_at_.clear();
  failed_ = false;
  spent_ = 0;
  FiguresTime.SetText({});
  PostedLBL.SetText({});
  BackupLBL.SetText({});
  FiguresTime.SetVisible(false);
  RefreshCmd.SetVisible(false);
  Forget();
  for (Grid* grid : Grids()) grid->SetVisible(false);
}

void HomeFigures::Forget() {
  for (Part& part : parts_) part.known = false;
  for (Grid* grid : Grids()) grid->Clear();
}

void HomeFigures::Refresh() { Begin(When::soon, Lists::stale, Source::own); }

void HomeFigures::Returned(Lists lists) {
  if (!RefreshCmd.visible() || !later) return;
  Begin(spent_ > patience ? When::in_a_while : When::soon, lists, Source::shared);
}

// What is shown stays until its part has been read anew: a page that empties itself at each return
// would flicker.
void HomeFigures::Begin(When when, Lists lists, Source source) {
  lists_ = lists;
  source_ = source;
  next_part_ = 0;
  const unsigned run = ++run_;
  if (later) {
    later(when, [this, run] { ReadNext(run); });
    return;
  }
  while (!ready()) ReadNext(run);
}

bool HomeFigures::Part::Holds(const Grid& grid) const {
  return std::find(grids.begin(), grids.end(), &grid) != grids.end();
}

bool HomeFigures::Known(const Grid& grid) const {
  return std::all_of(parts_.begin(), parts_.end(),
                     [&grid](const Part& part) { return part.known || !part.Holds(grid); });
}

bool HomeFigures::MayRead() const { return !session_.Main().InTransaction(); }

// A reading that another one has overtaken, or that outlived its person, ends here.
void HomeFigures::ReadNext(unsigned run) {
  if (run != run_ || ready()) return;
  // Counted first: a part that fails is not read again and again.
  Part& part = parts_[next_part_++];
  bool waits = false;
  try {
    Read(part);
    if (next_part_ == 1) waits = LookForShared();
  } catch (const std::exception& failure) {
    Fail(failure);
    return;
  }
  if (ready()) {
    if (own_) Share();
    read_at_ = Format(begun_at_, "dd-mm-yyyy hh:nn");
    failed_ = false;
    ShowTime();
  } else if (waits) {
    later(When::in_a_while, [this, run] {
      if (run == run_) Begin(When::soon, Lists::fresh, Source::shared);
    });
  } else if (later) {
    later(When::soon, [this, run] { ReadNext(run); });
  }
}

void HomeFigures::Read(Part& part) {
  const auto start = std::chrono::steady_clock::now();
  if (next_part_ == 1) {
    spent_ = 0;
    const DateTime now = ServerTime(session_.Main());
    begun_at_ = now;
    ReadSettings(now);
    ShowPosted();
    const OfficeFigures fresh = EmptyFigures(now);
    if (reading_.office.today != fresh.today) {
      reading_ = {fresh, {}, {}};
      Forget();
    }
  }
  const auto shown = [](const Grid* grid) { return grid->visible(); };
  if (part.grids.empty() || std::any_of(part.grids.begin(), part.grids.end(), shown)) {
    part.read(session_, reading_.office);
    part.known = true;
    if (part.show != nullptr) (this->*part.show)();
  }
  spent_ += Milliseconds(start);
}

// All on which the figures depend: rights and companies.
std::string HomeFigures::View() const {
  std::string view = fmt::format("{};{};{};{};", CompanyLiterals(session_), session_.Special,
                                 First(kChequeRoads) != nullptr, First(kDueRoads) != nullptr);
  for (const std::string& company : submitting_) view += QuoteStr(company) + ",";
  for (const Grid* grid : Grids()) view += grid->visible() ? ";1" : ";0";
  return view;
}

bool HomeFigures::LookForShared() {
  own_ = true;
  shared_.reset();
  if (!worth_sharing && !HasWhomToShareWith(session_)) return false;
  shared_.emplace(session_, View());
  SharedFigures::Found found = shared_->Look(begun_at_);
  // A script waits for nobody.
  if (source_ == Source::own || !later || !(found.fresh || found.being_read)) return false;
  if (found.reading) {
    own_ = false;
    begun_at_ = found.read_at;
    reading_ = std::move(*found.reading);
    read_at_ = Format(begun_at_, "dd-mm-yyyy hh:nn");
    for (Part& part : parts_) part.known = true;
    ShowAll();
  }
  if (found.fresh) next_part_ = parts_.size();
  return !found.fresh;
}

// What was read stands, whatever becomes of its sharing.
void HomeFigures::Share() {
  if (!shared_) return;
  try {
    if (spent_ < worth_sharing.value_or(kWorthSharing)) {
      shared_->TakeAway();
    } else {
      shared_->Keep(begun_at_, spent_, reading_);
    }
  } catch (const std::exception& failure) {
    LogRollback(session_, "Shared figures", failure);
  }
}

// The page says so, and that is all: the person asked for nothing. Old figures beside new ones
// would be taken for those of today.
void HomeFigures::Fail(const std::exception& failure) {
  next_part_ = parts_.size();
  failed_ = true;
  read_at_.clear();
  Forget();
  ShowTime();
  LogRollback(session_, "Home figures", failure);
}

void HomeFigures::ShowTime() {
  const bool chinese = screen_.chinese();
  RefreshCmd.SetCaption(failed_ ? Caption{"Try again", "重试"} : Caption{"Refresh", "刷新"});
  if (failed_) {
    FiguresTime.SetText(
        Caption{"The figures cannot be read now.", "现在无法读取数据。"}.In(chinese));
  } else if (!read_at_.empty()) {
    FiguresTime.SetText(
        fmt::format("{} {}", Caption{"Figures as of", "数据截至"}.In(chinese), read_at_));
  }
}

void HomeFigures::ReadSettings(const DateTime& now) {
  BackupWatch watch;
  posted_.clear();
  const std::pair<const char*, std::string*> settings[] = {
      {"DailyBatchDate", &posted_},
      {"LastBackup", &watch.LastBackup},
      {"BackupByOthers", &watch.BackupByOthers},
      {"OfficeKind", &watch.OfficeKind}};
  for (Recordset row =
           session_.Main().Query("SELECT Param,[Value] FROM Systemast WHERE Param IN "
                                 "('DailyBatchDate','LastBackup','BackupByOthers','OfficeKind')");
       !row.Eof(); row.MoveNext()) {
    for (const auto& [name, value] : settings) {
      if (SameText(NullToEmpty(row.Field(0)), name)) *value = NullToEmpty(row.Field(1));
    }
  }
  backup_ = BackupNotice(session_, watch, now);
  if (const std::string why = LogTrouble(session_); !why.empty()) {
    backup_ = {fmt::format("The log of this PC is not written: {}. {}", why, backup_.english),
               fmt::format("此电脑的日志无法写入：{}。{}", why, backup_.chinese)};
  }
}

void HomeFigures::ShowPosted() {
  const bool chinese = screen_.chinese();
  BackupLBL.SetText(backup_.In(chinese));
  const auto day = DateTime::FromCanonical(posted_);
  PostedLBL.SetText(
      day ? fmt::format("{} {}", Caption{"Late interest is posted up to", "罚息已计至"}.In(chinese),
                        Format(*day, "dd-mm-yyyy"))
          : Caption{"No late interest has been posted yet.", "尚未计算罚息。"}.In(chinese));
}

void HomeFigures::ShowAll() {
  ShowTime();
  if (FiguresTime.visible() && !PostedLBL.Text().empty()) ShowPosted();
  for (const Part& part : parts_) {
    if (part.known && part.show != nullptr) (this->*part.show)();
  }
}

void HomeFigures::ShowDue() {
  if (!DueDG.visible()) return;
  const bool chinese = screen_.chinese();
  DueDG.SetRows({Row(kDueToday.In(chinese), reading_.office.due_today),
                 Row(kDueWeek.In(chinese), reading_.office.due_week)});
}

void HomeFigures::ShowAges() {
  ShowOverdue();
  if (!AgeDG.visible()) return;
  std::vector<std::vector<std::string>> rows;
  for (std::size_t band = 0; band < kAgeBands; ++band) {
    rows.push_back(Row(kAges[band].In(screen_.chinese()), reading_.office.by_age[band]));
  }
  rows.push_back(Row(kAllOverdue.In(screen_.chinese()), reading_.office.overdue));
  AgeDG.SetRows(std::move(rows),
                {RowTone::plain, RowTone::plain, RowTone::plain, RowTone::plain, RowTone::total});
}

void HomeFigures::ShowCollected() { ShowMonths(CollectDG, reading_.office.collected); }

void HomeFigures::ShowDisbursed() { ShowMonths(DisburseDG, reading_.office.disbursed); }

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
  for (const OverdueLoan& loan : reading_.office.top) {
    rows.push_back(
        {loan.loan_id, loan.customer, std::to_string(loan.days), ShowMoney(loan.amount)});
  }
  OverdueDG.SetRows(std::move(rows));
}

void HomeFigures::ShowCash() {
  if (!CashDG.visible()) return;
  const bool cheques = First(kChequeRoads) != nullptr;
  const bool due = First(kDueRoads) != nullptr;
  const auto row = [&](const std::string& name, const CashPosition& one) {
    return std::vector<std::string>{name,
                                    ShowMoney(one.cash),
                                    ShowMoney(one.bank),
                                    ShowMoney(one.today),
                                    ShowMoney(one.week),
                                    cheques ? ShowMoney(one.cheques) : "",
                                    due ? ShowMoney(one.due) : ""};
  };
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones(reading_.cash.size(), RowTone::plain);
  CashPosition all;
  for (const CashPosition& one : reading_.cash) {
    rows.push_back(row(one.CompCode, one));
    for (const auto member : kCashAmounts) {
      all.*member += one.*member;
    }
  }
  if (reading_.cash.size() > 1) {
    rows.push_back(row(Caption{"All", "总计"}.In(screen_.chinese()), all));
    tones.push_back(RowTone::total);
  }
  CashDG.SetRows(std::move(rows), tones);
}

void HomeFigures::OfferIncome() {
  const bool may_see = session_.settings.EInv && Road(EInvDG) != nullptr;
  submitting_ = may_see ? SubmittingCompanies(session_) : std::vector<std::string>();
  EInvDG.SetVisible(!submitting_.empty());
}

void HomeFigures::ShowIncome() {
  if (!EInvDG.visible()) return;
  const auto row = [](const std::string& name, const UnsentIncome& one) {
    std::vector<std::string> cells = Row(name, one.all());
    cells.push_back(ShowMoney(one.named.amount));
    cells.push_back(ShowMoney(one.consolidated.amount));
    return cells;
  };
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones(reading_.unsent.size(), RowTone::plain);
  for (const UnsentIncome& one : reading_.unsent) rows.push_back(row(one.CompCode, one));
  if (reading_.unsent.size() > 1) {
    rows.push_back(row(Caption{"All", "总计"}.In(screen_.chinese()), AllUnsent()));
    tones.push_back(RowTone::total);
  }
  EInvDG.SetRows(std::move(rows), tones);
}

UnsentIncome HomeFigures::AllUnsent() const {
  UnsentIncome all;
  for (const UnsentIncome& one : reading_.unsent) {
    for (const auto member : {&UnsentIncome::named, &UnsentIncome::consolidated}) {
      (all.*member).count += (one.*member).count;
      (all.*member).amount += (one.*member).amount;
    }
  }
  return all;
}

// From so many days after today, or before, to so many.
DayRange HomeFigures::Around(int from, int to) const {
  return {Format(reading_.office.today.AddDays(from), "dd-mm-yyyy"),
          Format(reading_.office.today.AddDays(to), "dd-mm-yyyy")};
}

DayRange HomeFigures::CashDays(int column) const {
  if (column == kCashToday) return Around(0, 0);
  if (column == kCashWeek) return Around(-kDaysBehind, -1);
  return column == kCashDue ? Around(0, kOutlookDays - 1) : DayRange{};
}

DayRange HomeFigures::Days(const Grid& grid, int row) const {
  if (&grid == &DueDG) return Around(0, row == 0 ? 0 : kDaysOfWeek - 1);
  if (&grid == &AgeDG) {
    // The row behind the bands is all of them.
    const int newer = row == kTo30Days || row == kAgeBands ? 0 : kBandDays[row - 1];
    if (row < kOver90Days) return Around(-kBandDays[row], -newer - 1);
    return {"", Around(0, -newer - 1).to};
  }
  if (&grid == &EInvDG) return Month(reading_.office.today.year, reading_.office.today.month);
  if (&grid != &CollectDG && &grid != &DisburseDG) return {};
  const Year& year = &grid == &CollectDG ? reading_.office.collected : reading_.office.disbursed;
  const MonthTally& month = year.at(static_cast<std::size_t>(row));
  return Month(month.year, month.month);
}

bool HomeFigures::Empty() const { return !read_at_.empty() && !reading_.office.any_loan; }

}  // namespace kaunter
