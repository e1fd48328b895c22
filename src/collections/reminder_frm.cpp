#include "collections/reminder_frm.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>

#include "collections/reminder_state.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/reading.h"
#include "core/record.h"
#include "core/session_report.h"
#include "core/values.h"
#include "screen/hourglass.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kLoan = 0;
// More loans in one condition than this are a burden to some servers.
constexpr std::size_t kLettersAPrint = 200;

const Caption kReadFailed{"an error occur during reading loan record"};

}  // namespace

Reminderfrm::Reminderfrm(Session& session, Desk& desk)
    : SessionScreen("Reminderfrm", {"Reminder Letter"}, session, desk) {
  CalSearchTo.max_length = kDateLength;
  CalSearchTo.onLeave = [this] { LeaveDate(); };
  vsd.SetHasChecks(true);
  vsd.onTick = [this](int) { ShowCount(); };
  SearchCmd.onClick = [this] {
    if (CheckDate()) List();
  };
  SelectAllCmd.onClick = [this] { TickAll(true); };
  SelectNoneCmd.onClick = [this] { TickAll(false); };
  SaveCmd.onClick = [this] { Process(); };
}

void Reminderfrm::Load() {
  CalSearchTo.SetText(ServerNow(main(), false));
  List();
}

// --- the list

bool Reminderfrm::CheckDate() {
  CalSearchTo.SetText(Trim(CalSearchTo.text()));
  if (!IsDate(CalSearchTo.text())) return Refuse(CalSearchTo, {"Invalid date, Please Check!"});
  CalSearchTo.SetMark(false);
  return true;
}

void Reminderfrm::LeaveDate() {
  if (Trim(CalSearchTo.text()) != listed_date_ && CheckDate()) List();
}

bool Reminderfrm::List() {
  const bool read = ReadOrTell(session(), *this, "Reminder Letter", kReadFailed, [this] {
    FillGrid(vsd,
             main().Query(fmt::format(
                 "SELECT l.LoanID,c.CustName,l.NextDueDate,l.ReminderDate FROM LoanMast as l INNER "
                 "JOIN CustMast as c on l.CustID=c.CustID WHERE LoanBal > 0 AND PayOutAmt=LoanAmt "
                 "AND l.NextDueDate < {}{} ORDER BY NextDueDate",
                 SqlDate(CalSearchTo.text()), AndCompany(session(), "l.CompCode"))));
  });
  if (!read) return false;
  listed_date_ = CalSearchTo.text();
  ShowCount();
  return true;
}

void Reminderfrm::TickAll(bool on) {
  for (int row = 0; row < vsd.RowCount(); ++row) vsd.SetTicked(row, on);
  ShowCount();
}

int Reminderfrm::Ticked() const {
  int count = 0;
  for (int row = 0; row < vsd.RowCount(); ++row) count += vsd.Ticked(row) ? 1 : 0;
  return count;
}

void Reminderfrm::ShowCount() {
  CountLBL.SetText(fmt::format("{} loan(s), {} selected", vsd.RowCount(), Ticked()));
  SaveCmd.SetEnabled(vsd.RowCount() > 0);
}

// --- the letters

void Reminderfrm::Process() {
  if (Ticked() == 0) {
    Refuse(vsd, {"No loan is selected, please tick the loans that get a letter"});
    return;
  }
  if (!Confirm({"Confirm to process"})) return;
  Letter first{"Reminder.rpt", "ReminderDate", {}};
  Letter second{"Reminder2.rpt", "ReminderDate2", {}};
  std::vector<std::string> skipped;
  std::vector<std::string> early;
  if (!ReadOrTell(session(), *this, "Reminder Letter", kReadFailed,
                  [&] { skipped = Sort(first, second, early); })) {
    return;
  }
  std::vector<Letter> printed;
  const bool sent = SendAll(first, printed) && SendAll(second, printed);
  const bool kept = printed.empty() || !ConfirmDates(printed) || KeepDates(printed);
  if (!skipped.empty()) {
    Tell(MessageKind::warning,
         {fmt::format("Not in arrears any more, no letter: {}", fmt::join(skipped, ", "))});
  }
  if (!early.empty()) {
    Tell(MessageKind::warning,
         {fmt::format("The {} days of the first reminder are not over, no letter: {}", kDaysToPay,
                      fmt::join(early, ", "))});
  }
  if (sent && kept) Tell(MessageKind::information, {"Process completed"});
  List();
}

std::vector<std::string> Reminderfrm::Sort(Letter& first, Letter& second,
                                           std::vector<std::string>& early) {
  const auto bar = desk().Progress(title().english);
  bar->SetRange(Ticked());
  std::vector<std::string> skipped;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    if (!vsd.Ticked(row)) continue;
    const std::string& id = vsd.Cell(row, kLoan);
    bar->SetText(id);
    // As it is now: a payment or another desktop's letter may have come in since the list was read.
    const ReminderState state = ReadReminderState(main(), id);
    const bool listed = !main()
                             .Query(fmt::format("SELECT LoanID FROM LoanMast WHERE LoanID={} AND "
                                                "PayOutAmt=LoanAmt AND NextDueDate < {}",
                                                QuoteStr(id), SqlDate(listed_date_)))
                             .Eof();
    if (!state.overdue || !listed) {
      skipped.push_back(id);
    } else if (state.first_letter.empty()) {
      first.loans.push_back(id);
    } else if (!state.given_until.empty()) {
      early.push_back(id);
    } else {
      second.loans.push_back(id);
    }
    bar->Step();
  }
  return skipped;
}

bool Reminderfrm::SendAll(const Letter& letter, std::vector<Letter>& printed) {
  for (std::size_t begin = 0; begin < letter.loans.size(); begin += kLettersAPrint) {
    const std::size_t end = std::min(begin + kLettersAPrint, letter.loans.size());
    Letter part = letter;
    part.loans.assign(letter.loans.begin() + static_cast<std::ptrdiff_t>(begin),
                      letter.loans.begin() + static_cast<std::ptrdiff_t>(end));
    if (!Print(part)) return false;
    printed.push_back(std::move(part));
  }
  return true;
}

// A preview may have been looked at only.
bool Reminderfrm::ConfirmDates(const std::vector<Letter>& printed) {
  std::size_t count = 0;
  for (const Letter& letter : printed) count += letter.loans.size();
  return Confirm({fmt::format("Confirm to update reminder date of {} loan(s) as today ?", count)});
}

bool Reminderfrm::Print(const Letter& letter) {
  ReportJob job = SessionReport(session(), std::string(letter.file));
  job.ReportTitle = title().english;
  for (const std::string& id : letter.loans) {
    if (!job.SelectionFormula.empty()) job.SelectionFormula += " or ";
    job.SelectionFormula += "{LoanMast.LoanID}=" + QuoteStr(id);
  }
  try {
    const Hourglass busy(desk());
    desk().Print(job);
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("Reminder Letter - {}", letter.file), failure);
    Tell(MessageKind::critical, {failure.what()});
    return false;
  }
}

bool Reminderfrm::KeepDates(const std::vector<Letter>& printed) {
  return Attempt(title().english, {"The letters are printed, but their dates are not on the loans"},
                 [&] {
                   const Hourglass busy(desk());
                   const std::string today = SqlDate(ServerNow(main(), false));
                   for (const Letter& letter : printed) {
                     const auto bar = desk().Progress(title().english);
                     bar->SetRange(static_cast<int>(letter.loans.size()));
                     for (const std::string& id : letter.loans) {
                       bar->SetText(id);
                       ExecuteOnRow(main(),
                                    fmt::format("UPDATE LoanMast SET {}={} WHERE LoanID={}",
                                                letter.column, today, QuoteStr(id)),
                                    id);
                       bar->Step();
                     }
                   }
                 });
}

}  // namespace kaunter
