// The sending of SMSfrm: what is ticked enters the queue, a message at a time.
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "core/log.h"
#include "core/sms_database.h"
#include "core/values.h"
#include "links/sms_columns.h"
#include "links/smsfrm.h"
#include "screen/stop_bar.h"
#include "screen/text.h"

namespace kaunter {

using namespace sms;

QueuedSms SMSfrm::MessageOf(int row) const {
  return {.CustID = vsd.Cell(row, kCustID),
          .CustName = vsd.Cell(row, kCustName),
          .LoanID = vsd.Cell(row, kLoanID),
          .CompCode = vsd.Cell(row, kCompCode),
          .HP = vsd.Cell(row, kHP),
          .SMSMsg = vsd.Cell(row, kContent),
          .UserID = session().CurrentUserID,
          .DateCreated = ServerNow(main(), true)};
}

void SMSfrm::Send() {
  std::vector<int> rows = TickedRows();
  if (!MaySend(rows)) return;
  try {
    Connection& database = SmsDatabase(session());
    if (IsResend()) {
      TellOutcome(ForEach(rows, [&](int row) { return ResendSms(database, vsd.Cell(row, kID)); }),
                  rows.size());
      return;
    }
    SmsQueue queue(database, ServerNow(main(), false));
    if (!CheckLength(queue, rows) || !AskAboutQueued(queue, rows)) return;
    TellOutcome(ForEach(rows, [&](int row) { return queue.Add(MessageOf(row)); }), rows.size());
  } catch (const std::exception& failure) {
    TellSendFailed(failure, 0);
  }
}

bool SMSfrm::MaySend(std::vector<int>& rows) {
  if (vsd.RowCount() == 0) {
    return Refuse(SSCommand1, {"The list is empty: choose whom it is for, then press Process",
                               "列表是空的：请选择发送对象，再按处理"});
  }
  if (!IsResend() && SMSContent.text() != processed_text_) {
    return Refuse(SMSContent, {"The text was changed since the list was made: press Process again",
                               "列表产生后内容已更改，请再按处理"});
  }
  std::erase_if(rows, [this](int row) { return vsd.Cell(row, kHP).empty(); });
  if (rows.empty()) {
    return Refuse(vsd, {"No row with a mobile number is ticked", "没有勾选任何有手机号码的记录"});
  }
  return Confirm(IsResend() ? Caption{"Confirm to resend SMS ?", "确定重发短讯？"}
                            : Caption{"Confirm to send SMS ?", "确定发送短讯？"});
}

// Nothing is queued while one of them would be cut.
bool SMSfrm::CheckLength(const SmsQueue& queue, const std::vector<int>& rows) {
  for (const int row : rows) {
    const std::size_t length = CharacterCount(vsd.Cell(row, kContent));
    if (queue.Longest() == 0 || length <= static_cast<std::size_t>(queue.Longest())) continue;
    vsd.SetCurrentRow(row);
    return Refuse(SMSContent,
                  {fmt::format("The text for {} has {} characters, the queue takes {}. Shorten it "
                               "and press Process again.",
                               vsd.Cell(row, kCustName), length, queue.Longest()),
                   fmt::format("给 {} 的短讯有 {} 个字符，最多 {} 个。请缩短内容后再按处理。",
                               vsd.Cell(row, kCustName), length, queue.Longest())});
  }
  return true;
}

bool SMSfrm::AskAboutQueued(SmsQueue& queue, std::vector<int>& rows) {
  const auto queued = [&](int row) {
    return queue.Holds(vsd.Cell(row, kHP), vsd.Cell(row, kContent));
  };
  const auto count = std::count_if(rows.begin(), rows.end(), queued);
  if (count == 0) return true;
  // Each is paid for: Enter alone says no.
  if (ConfirmLoss(
          {fmt::format("{} of these {} messages were queued today already, the same text to the "
                       "same number. Send them once more ?",
                       count, rows.size()),
           fmt::format("这 {1} 则短讯中有 {0} 则今天已发送过（相同号码和内容）。再发送一次？",
                       count, rows.size())})) {
    queue.AllowAgain();
    return true;
  }
  for (const int row : rows) {
    if (queued(row)) MarkQueued(row, false);
  }
  std::erase_if(rows, queued);
  if (!rows.empty()) return true;
  ShowCount();
  return false;
}

// Ticked no more, so that a second press sends what is left.
void SMSfrm::MarkQueued(int row, bool now) {
  vsd.SetTicked(row, false);
  vsd.SetTone(row, RowTone::quiet);
  if (now) vsd.SetCell(row, kStatus, "READY");
  if (!IsResend() && !now) {
    vsd.SetCell(row, kRemark, session().In({"Queued today already", "今天已发送过"}));
  }
}

SMSfrm::Outcome SMSfrm::ForEach(const std::vector<int>& rows,
                                const std::function<bool(int row)>& one) {
  Outcome outcome;
  StopBar bar(*this);
  try {
    for (const int row : rows) {
      if (!bar.GoOn(outcome.taken + outcome.refused, rows.size(), vsd.Cell(row, kCustName))) {
        outcome.stopped = true;
        break;
      }
      const bool taken = one(row);
      ++(taken ? outcome.taken : outcome.refused);
      MarkQueued(row, taken);
    }
  } catch (const std::exception& failure) {
    outcome.failed = true;
    TellSendFailed(failure, outcome.taken);
  }
  return outcome;
}

void SMSfrm::TellOutcome(const Outcome& outcome, std::size_t asked) {
  WriteLog(session(), LogLine(session(), fmt::format("SMS {} - {} of {} queued, template {}",
                                                     IsResend() ? "Resend" : "Send", outcome.taken,
                                                     asked, chosen_template_)));
  ShowCount();
  if (outcome.failed) return;
  if (outcome.refused > 0) {
    Tell(MessageKind::warning,
         {fmt::format("{} of them were queued by another desktop meanwhile and are not sent again",
                      outcome.refused),
          fmt::format("其中 {} 则刚由另一台电脑发送，不再重复发送", outcome.refused)});
  }
  if (outcome.stopped) {
    Tell(
        MessageKind::information,
        {fmt::format("Stopped: {} of {} queued, the others are still ticked", outcome.taken, asked),
         fmt::format("已停止：已发送 {} / {}，其余仍保留勾选", outcome.taken, asked)});
    return;
  }
  Tell(MessageKind::information,
       IsResend() ? Caption{"SMS resent", "短讯已重发"} : Caption{"SMS sent", "短讯已发送"});
}

void SMSfrm::TellSendFailed(const std::exception& failure, int taken) {
  LogRollback(session(), "SMS", failure);
  Tell(MessageKind::critical,
       {fmt::format("an error occur during sending SMS\n{}\n{} queued before it stay queued. What "
                    "is still ticked was not sent.",
                    failure.what(), taken),
        fmt::format("发送短讯时发生错误\n{}\n在此之前已发送 {} 则。仍勾选的没有发送。",
                    failure.what(), taken)});
}

}  // namespace kaunter
