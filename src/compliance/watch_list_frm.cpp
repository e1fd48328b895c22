#include "compliance/watch_list_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "core/central_database.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/session_report.h"
#include "core/staged_rows.h"
#include "core/stoppable.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/host.h"
#include "screen/hourglass.h"
#include "screen/report_job.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

constexpr int kRemarkLength = 500;
// Nobody decides more of them in one sitting; the paper has them all.
constexpr std::size_t kListed = 2000;
constexpr int kOldDays = 30;

enum Shows { kUndecided, kDecided, kAll };

const Caption kCopyFailed{"an error occur during copying the watch list", "备存名单时出现错误"};
const Caption kCopyBefore{
    "The copy before, where there is one, stays in use. Mend the cause and do it again.",
    "之前的副本（如有）继续使用。请排除原因后再做一次。"};

}  // namespace

WatchListFrm::WatchListFrm(Session& session, Desk& desk)
    : SessionScreen("WatchListFrm", {"Watch List Screening", "名单核对"}, session, desk) {
  Show.SetItems({session.In({"Not decided", "未决定"}), session.In({"Decided", "已决定"}),
                 session.In({"All", "全部"})});
  Show.SetIndex(kUndecided);
  Show.onPick = [this] { FillHits(); };
  Remark.max_length = kRemarkLength;
  HitDG.SetHasChecks(true);
  HitDG.onRow = [this](int row) { ShowHit(row); };
  HitDG.onOpen = [this](int, int) { CustCmd.Click(); };
  Customer.SetLocked(true);
  Entry.SetLocked(true);
  UseCopy.onClick = [this] { SwitchUse(); };
  CopyCmd.onClick = [this] { TakeCopy(); };
  ScreenCmd.onClick = [this] { ScreenAll(); };
  HitCmd.onClick = [this] { DecideOn(true); };
  NoHitCmd.onClick = [this] { DecideOn(false); };
  CustCmd.onClick = [this] {
    if (HitDG.current_row() >= 0) {
      OpenCustomer(this->session(), this->desk(), HitOf(HitDG.current_row()).customer.CustID);
    }
  };
  PrintCmd.onClick = [this] { Print(); };
}

void WatchListFrm::Load() {
  ShowCopy();
  UseCopy.SetChecked(UsesCopy(main()));
  Forget();
  ShowLastRun();
}

bool WatchListFrm::RequestClose() { return MayDiscard(!Remark.empty()); }

void WatchListFrm::Unload() { DropStagedRows(main(), ThisHostName(), kHitsFile); }

// --- the copy

void WatchListFrm::ShowCopy() {
  copy_ = CopyInUse(main());
  if (!copy_) {
    CopyLBL.SetText(session().In({"There is no copy of the watch list yet", "尚未备存名单"}));
    return;
  }
  const std::string date = ShowDateTime(copy_->CopyDate);
  Caption text{fmt::format("Copy of {} by {}: {} entries", date, copy_->UserID, copy_->entries),
               fmt::format("{} 由 {} 备存：{} 项", date, copy_->UserID, copy_->entries)};
  if (copy_->CopyDate.AddDays(kOldDays) < ServerTime(main())) {
    text.english += fmt::format(". It is more than {} days old", kOldDays);
    text.chinese += fmt::format("。已超过 {} 天", kOldDays);
  }
  CopyLBL.SetText(session().In(text));
}

void WatchListFrm::SwitchUse() {
  const bool on = UseCopy.checked();
  if (on && !copy_) {
    UseCopy.SetChecked(false);
    Refuse(CopyCmd, {"There is no copy yet: take one first", "尚无副本：请先取得副本"});
    return;
  }
  try {
    SetUsesCopy(main(), on);
  } catch (...) {
    UseCopy.SetChecked(!on);
    throw;
  }
  WriteLog(session(), LogLine(session(), fmt::format("Watch list copy at the counter: {}",
                                                     on ? "on" : "off")));
}

void WatchListFrm::TakeCopy() {
  if (!HasCentralDatabase(session())) {
    Refuse(CopyCmd, {"This PC names no central data source; its name in the local settings is "
                     "[AMLA]",
                     "此电脑未设中央数据源。它在本机设定中的名称是 [AMLA]"});
    return;
  }
  if (!Confirm({"Take a copy of the central watch list ?", "确定备存中央名单？"})) return;
  bool whole = false;
  try {
    whole = Copy();
  } catch (const std::exception& failure) {
    LogRollback(session(), "Watch list copy", failure);
    const bool refused = dynamic_cast<const SqlError*>(&failure) == nullptr;
    Tell(MessageKind::critical, refused ? FailedOrRefused(kCopyFailed, failure)
                                        : Failed(kCopyFailed, failure, kCopyBefore));
    return;
  }
  if (!whole) {
    Tell(MessageKind::information, {"Stopped. The copy stays as it was", "已停止。副本保持不变"});
    return;
  }
  ShowCopy();
  Forget();
  ShowLastRun();
  WriteLog(session(), LogLine(session(), "Watch list: " + CopyLBL.Text()));
  Tell(MessageKind::information,
       {fmt::format("The watch list is copied: {} entries", copy_->entries),
        fmt::format("名单已备存：{} 项", copy_->entries)});
}

// A list that is just being filled anew looks like a short one: whoever is not in it is not found.
bool WatchListFrm::MayReplace(std::size_t entries) {
  const auto before = copy_ ? static_cast<std::size_t>(copy_->entries) : 0;
  if (entries * 10 >= before * 9) return true;
  return ConfirmLoss(
      {fmt::format("The central list has {} entries, the copy in use {}. Put the shorter one in "
                   "its place ?",
                   entries, before),
       fmt::format("中央名单有 {} 项，使用中的副本有 {} 项。确定以较短的取代？", entries, before)});
}

bool WatchListFrm::Copy() {
  const Hourglass busy(desk());
  std::vector<WatchEntry> entries;
  const bool read = RunStoppable(session(), desk(), session().In(title()),
                                 {"Reading the central watch list", "正在读取中央名单"},
                                 [&](const GoOn&) { entries = FetchWatchList(session()); });
  if (!read || !MayReplace(entries.size())) return false;
  StopBar bar(*this);
  return StoreCopy(session(), entries, [&](int done) {
    return bar.GoOn(done, entries.size(), session().In({"Keeping the copy", "正在备存"}));
  });
}

// --- the customers

void WatchListFrm::Forget() {
  hits_.clear();
  screened_ = false;
  FillHits();
}

void WatchListFrm::ShowLastRun() {
  const Recordset run = main().Query(
      "SELECT RunDate,CopyDate,Customers,Hits,Undecided,UserID FROM AMLARun WHERE RunID=(SELECT "
      "MAX(RunID) FROM AMLARun)");
  if (run.Eof()) {
    RunLBL.SetText(session().In({"The customers were never screened", "从未核对顾客"}));
    return;
  }
  const auto text = [&run](std::string_view column) { return NullToEmpty(run.Field(column)); };
  const std::string date = ShowDateTime(run.Field("RunDate"));
  const std::string copy = ShowDate(run.Field("CopyDate"));
  RunLBL.SetText(session().In(
      {fmt::format("Last screened {} by {} against the copy of {}: {} customers, {} hits, {} not "
                   "decided then",
                   date, text("UserID"), copy, text("Customers"), text("Hits"), text("Undecided")),
       fmt::format("上次核对 {}，{}，以 {} 的副本：{} 位顾客，{} 项相似，当时 {} 项未决定", date,
                   text("UserID"), copy, text("Customers"), text("Hits"), text("Undecided"))}));
}

void WatchListFrm::ScreenAll() {
  ShowCopy();  // another desktop may have taken one
  if (!copy_) {
    Refuse(CopyCmd, {"There is no copy yet: take one first", "尚无副本：请先取得副本"});
    return;
  }
  if (!MayDiscard(!Remark.empty())) return;
  Remark.Clear();
  Forget();
  std::optional<Rescreening> run;
  {
    const Hourglass busy(desk());
    StopBar bar(*this);
    run = ScreenAllCustomers(session(), *copy_,
                             [&](int done, int total) { return bar.GoOn(done, total); });
  }
  if (!run) {
    Tell(MessageKind::information, {"Stopped. Not all customers are screened, and none is listed",
                                    "已停止。尚未核对全部顾客，因此没有列出"});
    return;
  }
  hits_ = std::move(run->hits);
  customers_ = run->customers;
  screened_ = true;
  Show.SetIndex(kUndecided);
  FillHits();
  WriteLog(session(), LogLine(session(), "Watch list: " + RunLBL.Text()));
}

WatchHit& WatchListFrm::HitOf(int row) { return hits_[shown_[static_cast<std::size_t>(row)]]; }

std::vector<std::string> WatchListFrm::RowOf(const WatchHit& hit) const {
  const auto& decision = hit.decision ? hit.decision : hit.before_change;
  return {session().In(ShownKind(hit)),
          hit.customer.CompCode,
          hit.customer.CustID,
          hit.customer.CustName,
          hit.entry.RefNo,
          hit.entry.Name,
          session().In(hit.reason),
          session().In(ShownDecision(hit)),
          decision ? decision->UserID : std::string(),
          decision ? ShowDateTime(decision->DateCreated) : std::string()};
}

void WatchListFrm::FillHits() {
  shown_.clear();
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones;
  for (std::size_t i = 0; i < hits_.size(); ++i) {
    const WatchHit& hit = hits_[i];
    if (Show.index() != kAll && hit.decision.has_value() != (Show.index() == kDecided)) continue;
    shown_.push_back(i);
    if (rows.size() == kListed) continue;
    rows.push_back(RowOf(hit));
    tones.push_back(hit.decision    ? (hit.decision->hit ? RowTone::bad : RowTone::quiet)
                    : hit.by_number ? RowTone::warn
                                    : RowTone::plain);
  }
  const bool any = !rows.empty();
  HitDG.SetRows(std::move(rows), tones);
  if (any) HitDG.SetCurrentRow(0);
  ShowCounts();
  ShowHit(HitDG.current_row());
}

void WatchListFrm::ShowCounts() {
  PrintCmd.SetEnabled(screened_);
  if (!screened_) return;
  Caption text{fmt::format("{} customers screened: {} hits, {} not decided", customers_,
                           hits_.size(), CountUndecided(hits_)),
               fmt::format("已核对 {} 位顾客：{} 项相似，{} 项未决定", customers_, hits_.size(),
                           CountUndecided(hits_))};
  if (shown_.size() > kListed) {
    text.english += fmt::format(". The first {} are listed, the print has all", kListed);
    text.chinese += fmt::format("。此处列出前 {} 项，打印则有全部", kListed);
  }
  RunLBL.SetText(session().In(text));
}

void WatchListFrm::ShowHit(int row) {
  const bool chosen = row >= 0;
  for (Button* button : {&HitCmd, &NoHitCmd, &CustCmd}) button->SetEnabled(chosen);
  if (!chosen) {
    Customer.Clear();
    Entry.Clear();
    return;
  }
  const WatchHit& hit = HitOf(row);
  const ScreenedCustomer& customer = hit.customer;
  const WatchEntry& entry = hit.entry;
  Customer.SetText(session().In({fmt::format("{}\n{} of {}\n", customer.CustName, customer.CustID,
                                             customer.CompCode),
                                 fmt::format("{}\n{}，公司 {}\n", customer.CustName,
                                             customer.CustID, customer.CompCode)}) +
                   Numbers({{{"New IC", "新身份证"}, customer.CustNIC},
                            {{"Old IC", "旧身份证"}, customer.CustOIC},
                            {{"Other IC", "其他证件"}, customer.CustOthIC}}));
  std::string text = fmt::format(
      "{}  {}\n{}", entry.Name, entry.RefNo,
      Numbers({{{"IC", "身份证"}, entry.NRIC}, {{"Passport", "护照"}, entry.PassportNo}}));
  if (const auto& decision = hit.decision ? hit.decision : hit.before_change) {
    text += fmt::format("\n{}, {} {}: {}", session().In(ShownDecision(hit)), decision->UserID,
                        ShowDateTime(decision->DateCreated), decision->Remark);
  }
  Entry.SetText(text + "\n" + entry.OtherInformation);
}

// "New IC: 700101-10-1111  Old IC: A123"; a blank one is left out.
std::string WatchListFrm::Numbers(
    const std::vector<std::pair<Caption, std::string>>& numbers) const {
  std::string line;
  for (const auto& [name, number] : numbers) {
    if (number.empty()) continue;
    line += fmt::format("{}{}: {}", line.empty() ? "" : "   ", session().In(name), number);
  }
  return line;
}

// --- the decision

bool WatchListFrm::ConfirmDecision(bool is_hit, const std::vector<int>& rows) {
  const WatchHit& first = HitOf(rows.front());
  if (rows.size() > 1) {
    return is_hit ? Confirm(
                        {fmt::format("Are these {} customers the persons listed ? Their status "
                                     "becomes AMLA",
                                     rows.size()),
                         fmt::format("这 {} 位顾客确是名单上的人？其状态将改为 AMLA", rows.size())})
                  : Confirm({fmt::format("Are these {} customers other persons ?", rows.size()),
                             fmt::format("这 {} 位顾客确不是名单上的人？", rows.size())});
  }
  const std::string& name = first.customer.CustName;
  return is_hit ? Confirm({fmt::format("Is {} the person listed as {} ? The customer's status "
                                       "becomes AMLA",
                                       name, first.entry.Name),
                           fmt::format("{} 确是名单上的 {}？顾客状态将改为 AMLA", name,
                                       first.entry.Name)})
                : Confirm({fmt::format("Is {} another person than {} ?", name, first.entry.Name),
                           fmt::format("{} 确不是名单上的 {}？", name, first.entry.Name)});
}

void WatchListFrm::DecideOn(bool is_hit) {
  std::vector<int> rows;
  for (int row = 0; row < HitDG.RowCount(); ++row) {
    if (HitDG.Ticked(row)) rows.push_back(row);
  }
  if (rows.empty() && HitDG.current_row() >= 0) rows.push_back(HitDG.current_row());
  if (rows.empty()) {
    Refuse(HitDG, {"Choose a customer of the list", "请从表中选择顾客"});
    return;
  }
  Remark.SetText(Trim(Remark.text()));
  if (!is_hit && Remark.empty()) {
    Refuse(Remark, {"Remark is required: why it is another person", "请在备注说明为何不是此人"});
    return;
  }
  if (!ConfirmDecision(is_hit, rows)) return;
  std::vector<WatchDecision> made;
  const bool done =
      AttemptOnRecord("Watch list decision on " + HitOf(rows.front()).customer.CustID,
                      {"an error occur during saving the decision", "储存决定时出现错误"}, [&] {
                        made.clear();
                        for (const int row : rows) {
                          made.push_back(Decide(session(), HitOf(row), is_hit, Remark.text()));
                        }
                      });
  if (!done) return;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    WatchHit& hit = HitOf(rows[i]);
    hit.decision = made[i];
    hit.before_change.reset();
    for (WatchHit& other : hits_) {
      if (other.customer.CustID == hit.customer.CustID) other.seen = made[i].SeqNo;
    }
    AuditDecision(session(), hit, is_hit);
    WriteLog(session(), LogLine(session(), fmt::format("Watch list: {} and {} {}: {}",
                                                       hit.customer.CustID, hit.entry.RefNo,
                                                       hit.entry.Name, is_hit ? "hit" : "no hit")));
  }
  Remark.Clear();
  const int next = rows.front();
  FillHits();
  if (HitDG.RowCount() > 0) {
    HitDG.SetCurrentRow(std::min(next, HitDG.RowCount() - 1));
    ShowHit(HitDG.current_row());
  }
}

void WatchListFrm::Print() {
  std::vector<WatchHit> listed;
  listed.reserve(shown_.size());
  for (const std::size_t at : shown_) listed.push_back(hits_[at]);
  StageHits(session(), ThisHostName(), listed);
  ReportJob job = SessionReport(session(), std::string(kHitsFile));
  job.SelectionFormula = StagedFormula(ThisHostName(), kHitsFile);
  job.ParameterFields[0] = fmt::format("Copy;{};True", ShowDateTime(copy_->CopyDate));
  job.ParameterFields[1] = fmt::format("Customers;{};True", customers_);
  job.ParameterFields[2] = fmt::format("Shown;{};True", Show.text());
  WriteLog(session(), LogLine(session(), "Watch list hits - Report Printed"));
  desk().Print(job);
}

}  // namespace kaunter
