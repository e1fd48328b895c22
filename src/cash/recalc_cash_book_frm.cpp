#include "cash/recalc_cash_book_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "cash/largest_amount.h"
#include "core/amounts.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/password_screens.h"
#include "core/session_report.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/hourglass.h"
#include "screen/report_job.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

constexpr int kManager = 3;
// Nobody reads more of them on a screen; the paper has them all.
constexpr std::size_t kListed = 2000;

const Caption kFailed{"an error occur during recalculating the cash book", "重算现金簿时出现错误"};

std::string Shown(const CashPair& pair) {
  return fmt::format("{} / {}", ShowMoney(pair.cash), ShowMoney(pair.bank));
}

void Add(Caption& text, const std::string& english, const std::string& chinese) {
  text.english += english;
  text.chinese += chinese;
}

// What was found, or was changed.
Caption Told(const CashBookReport& report, bool done) {
  const auto rows = report.differences.size();
  Caption text;
  if (report.holds()) {
    text = {fmt::format("{} rows hold, nothing {}", report.walked, done ? "changed" : "differs"),
            fmt::format("{} 笔全部相符，{}", report.walked, done ? "没有更改" : "没有差异")};
  } else {
    text = {fmt::format("{} of {} rows {}; cash / bank of the company {} {} {}", rows,
                        report.walked, done ? "changed" : "differ", Shown(report.stored),
                        done ? "became" : "should be", Shown(report.should_be)),
            fmt::format("{} 笔中 {} 笔{}；公司现金 / 银行 {} {} {}", report.walked, rows,
                        done ? "已更改" : "不符", Shown(report.stored), done ? "已改为" : "应为",
                        Shown(report.should_be))};
  }
  if (report.without_row) {
    Add(text,
        ". The company's balances stand in no row of the book: a movement moved them and was not "
        "stored, or the row entered last was deleted",
        "。公司结余不见于任何一笔：有进出变动了结余而未储存，或最后输入的一笔已被删除");
  }
  if (report.unknown_type > 0) {
    Add(text, fmt::format(". {} rows of an unknown type move nothing", report.unknown_type),
        fmt::format("。{} 笔种类不明，不变动结余", report.unknown_type));
  }
  if (report.undated > 0) {
    Add(text, fmt::format(". {} rows without a date come first", report.undated),
        fmt::format("。{} 笔没有日期，排在最前", report.undated));
  }
  if (report.before > 0) {
    Add(text, fmt::format(". {} rows before the opening date are left as they are", report.before),
        fmt::format("。期初日期前的 {} 笔不变", report.before));
  }
  if (rows > kListed) {
    Add(text, fmt::format(". The first {} are listed, the print of a look has all", kListed),
        fmt::format("。此处列出前 {} 笔，打印则有全部", kListed));
  }
  return text;
}

}  // namespace

RecalcCashBookFrm::RecalcCashBookFrm(Session& session, Desk& desk)
    : SessionScreen("RecalcCashBookFrm", {"Recalculate Cash Book Balance", "重算现金簿结余"},
                    session, desk) {
  CompCode.onPick = [this] { ShowOpening(); };
  CBOpenDate.onLeave = [this] { CheckDateBox(this->session(), CBOpenDate); };
  for (TextBox* box : {&CBOpenCash, &CBOpenBank}) {
    box->max_length = kMoneyLength;
    box->onLeave = [this, box] { CheckAmount(*box); };
  }
  CBOpenDate.max_length = kDateLength;
  CheckCmd.onClick = [this] { Look(); };
  RecalcCmd.onClick = [this] { Recalculate(); };
  CmdPrint.onClick = [this] { Print(); };
}

void RecalcCashBookFrm::Load() {
  FillCompanies(CompCode, session());
  ChooseHome(session(), CompCode);
  ShowOpening();
}

bool RecalcCashBookFrm::RequestClose() { return MayDiscard(OpeningTyped()); }

// --- the opening

void RecalcCashBookFrm::ShowOpening() {
  Forget();
  stored_opening_ = CompCode.empty() ? CashOpening() : ReadOpening(main(), CompCode.text());
  CBOpenDate.SetText(stored_opening_.date ? ShowDate(*stored_opening_.date) : "");
  CBOpenCash.SetText(ShowMoney(stored_opening_.pair.cash));
  CBOpenBank.SetText(ShowMoney(stored_opening_.pair.bank));
}

bool RecalcCashBookFrm::OpeningTyped() const {
  return CBOpenDate.text() != (stored_opening_.date ? ShowDate(*stored_opening_.date) : "") ||
         CBOpenCash.text() != ShowMoney(stored_opening_.pair.cash) ||
         CBOpenBank.text() != ShowMoney(stored_opening_.pair.bank);
}

bool RecalcCashBookFrm::CheckAmount(TextBox& box) {
  FillBlank(box, "0");
  const auto amount = Money::TryText(box.text());
  if (!amount || IsTooLarge(*amount)) return Refuse(box, kInvalidAmount);
  box.SetText(ShowMoney(*amount));
  box.SetMark(false);
  return true;
}

std::optional<CashOpening> RecalcCashBookFrm::Opening() {
  if (!CheckDateBox(session(), CBOpenDate) || !CheckAmount(CBOpenCash) ||
      !CheckAmount(CBOpenBank)) {
    return std::nullopt;
  }
  return CashOpening{CBOpenDate.empty() ? std::nullopt : DateTime::FromDisplay(CBOpenDate.text()),
                     {Sen(CBOpenCash), Sen(CBOpenBank)}};
}

bool RecalcCashBookFrm::CheckCompany() {
  if (!CompCode.empty()) return true;
  return Refuse(CompCode, {"Company Code is required", "请选择公司"});
}

// Who may say what the drawer began with may hide what is missing from it.
bool RecalcCashBookFrm::MayOpenWith(const CashOpening& opening) {
  if (opening == stored_opening_ || session().CurrentLevel >= kManager ||
      ManagerOverride(
          session(), desk(),
          {fmt::format("open the cash book of {} with {}", CompCode.text(), Shown(opening.pair)),
           fmt::format("公司 {} 的现金簿期初改为 {}", CompCode.text(), Shown(opening.pair))},
          CompCode.text())) {
    return true;
  }
  const std::string& user = session().CurrentUserID;
  return Refuse(CBOpenCash, {fmt::format("User {} Level not allow to change the opening", user),
                             fmt::format("用户 {} 的级别不可更改期初", user)});
}

// --- the work

void RecalcCashBookFrm::Forget() {
  DG.Clear();
  ResultLBL.SetText({});
  CmdPrint.SetEnabled(false);
}

void RecalcCashBookFrm::Show(const CashBookReport& report, const Caption& told) {
  std::vector<std::vector<std::string>> rows;
  const std::size_t count = std::min(report.differences.size(), kListed);
  rows.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const CashDifference& row = report.differences[i];
    rows.push_back({std::to_string(row.DocID), row.TranDate ? ShowDate(*row.TranDate) : "",
                    row.TranType, row.TranDesc, ShowMoney(row.TranAmt), ShowMoney(row.stored.cash),
                    ShowMoney(row.should_be.cash), ShowMoney(row.stored.bank),
                    ShowMoney(row.should_be.bank)});
  }
  DG.SetRows(std::move(rows));
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

void RecalcCashBookFrm::Look() {
  Forget();
  if (!CheckCompany()) return;
  const auto opening = Opening();
  if (!opening) return;
  CashBookReport report;
  {
    const Hourglass busy(desk());
    report = CompareCashBook(main(), CompCode.text(), *opening);
  }
  looked_opening_ = *opening;
  CmdPrint.SetEnabled(!report.holds());
  Show(report, Told(report, false));
}

void RecalcCashBookFrm::Recalculate() {
  Forget();
  if (!CheckCompany()) return;
  const auto opening = Opening();
  if (!opening) return;
  if (ReadOpening(main(), CompCode.text()) != stored_opening_) {
    ShowOpening();
    Refuse(CBOpenCash, {"The opening was changed on another desktop: it is shown as it is now, "
                        "please look again",
                        "期初已被另一台电脑更改：现显示最新内容，请重新查看"});
    return;
  }
  if (!MayOpenWith(*opening)) return;
  const std::string from =
      opening->date ? fmt::format(" from {}", ShowDate(*opening->date)) : std::string();
  if (!Confirm({fmt::format("Confirm to recalculate the cash book of {}{}, opening with cash {} "
                            "and bank {} ?",
                            CompCode.text(), from, ShowMoney(opening->pair.cash),
                            ShowMoney(opening->pair.bank)),
                fmt::format("确定重算公司 {} 的现金簿{}，期初现金 {}、银行 {}？", CompCode.text(),
                            opening->date ? fmt::format("（自 {}）", ShowDate(*opening->date)) : "",
                            ShowMoney(opening->pair.cash), ShowMoney(opening->pair.bank))})) {
    return;
  }
  CashBookReport report;
  try {
    StopBar bar(*this);
    report = RecalculateCashBook(
        main(), CompCode.text(), *opening, [&](std::int64_t done, std::int64_t total) {
          return bar.GoOn(done, total,
                          session().In({fmt::format("{} of {} rows", done, total),
                                        fmt::format("{} / {} 笔", done, total)}));
        });
  } catch (const std::exception& failure) {
    LogRollback(session(), "Recalculate Cash Book - " + CompCode.text(), failure);
    Tell(MessageKind::critical, Failed({fmt::format("{}\n{}", kFailed.english, failure.what()),
                                        fmt::format("{}\n{}", kFailed.chinese, failure.what())},
                                       failure));
    return;
  }
  if (!report.complete) {
    const Caption stopped{"Stopped: nothing was changed", "已停止：没有更改"};
    ResultLBL.SetText(session().In(stopped));
    Tell(MessageKind::information, stopped);
    return;
  }
  const Caption told = Told(report, true);
  const std::string company = CompCode.text();
  WriteAudit(session(), "Modify", "Recalculate Cash Book", company, company, {});
  WriteLog(session(),
           LogLine(session(), fmt::format("Recalculate Cash Book {}{} opening {} - {}", company,
                                          from, Shown(opening->pair), told.english)));
  ShowOpening();
  Show(report, told);
}

void RecalcCashBookFrm::Print() {
  ReportJob job = SessionReport(session(), "CashBookRecalc.rpt");
  const std::string pair = Shown(looked_opening_.pair);
  const Caption when = looked_opening_.date ? Caption{"on " + ShowDate(*looked_opening_.date),
                                                      ShowDate(*looked_opening_.date)}
                                            : Caption{"before the first row", "首笔之前"};
  job.ReportTitle = session().In({fmt::format("Opening {}: cash / bank {}", when.english, pair),
                                  fmt::format("期初（{}）：现金 / 银行 {}", when.chinese, pair)});
  job.SelectionFormula = fmt::format("{{CompMast.CompCode}}={}", QuoteStr(CompCode.text()));
  job.ParameterFields[0] = fmt::format(
      "OpenDate;{};True",
      looked_opening_.date ? Format(*looked_opening_.date, "yyyy-mm-dd") : "1753-01-01");
  job.ParameterFields[1] = fmt::format("OpenCash;{};True", looked_opening_.pair.cash.ToText());
  job.ParameterFields[2] = fmt::format("OpenBank;{};True", looked_opening_.pair.bank.ToText());
  desk().Print(job);
}

}  // namespace kaunter
