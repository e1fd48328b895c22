// What SelfBillFrm says to the service, and what becomes of the answers.
#include <fmt/format.h>

#include "core/audit.h"
#include "core/log.h"
#include "core/settings.h"
#include "core/values.h"
#include "einvoice/einvoice_row.h"
#include "einvoice/self_bill_frm.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

using State = SendingMark::State;
using Answer = SendingMark::Answer;

const Caption kSendFailed{"an error occur during submission", "提交时发生错误"};
const Caption kStatusFailed{"an error occur during Get Status", "查询状态时发生错误"};
const Caption kCancelFailed{"an error occur during cancellation", "作废时发生错误"};

// A self-bill is one document of one line.
SendingMarks::Line LineOf(const std::string& id) { return {id, "1"}; }

}  // namespace

bool SelfBillFrm::LoadCompany() {
  const Hourglass busy(desk());
  company_ = CompCode.text();
  company_block_ = service_.LoadSupplier(company_);
  return !company_block_.empty() ||
         Refuse(CompCode, {"Company E-Invoicing not found, cannot process submition",
                           "找不到公司的电子发票资料，无法提交"});
}

bool SelfBillFrm::Ready() {
  if (company_block_.empty() || !SameText(company_, CompCode.text())) return LoadCompany();
  if (!service_.has_token()) {
    const Hourglass busy(desk());
    service_.GetToken();
  }
  return true;
}

void SelfBillFrm::TellFailed(const Caption& words, const std::exception& failure) {
  LogRollback(session(), "Self-bill " + loaded_id_, failure);
  ShowResult(failure.what());
  Tell(MessageKind::critical,
       {fmt::format("{}\n{}\n{} is saved.", words.english, failure.what(), loaded_id_),
        fmt::format("{}\n{}\n{} 已储存。", words.chinese, failure.what(), loaded_id_)});
}

// --- the submission

void SelfBillFrm::Submit() {
  ShowResult({});
  std::string sent_before;
  try {
    // The mark before the uuid: another desktop that gets ahead in between is seen in one of them.
    SendingMark seen = marks_.ReadOne(LineOf(loaded_id_));
    if (!ScalarQuery(main(), "SELECT uuid FROM SelfBillMast WHERE SID=" + QuoteStr(loaded_id_))
             .empty()) {
      LoadBill(loaded_id_);
      Tell(MessageKind::information,
           {fmt::format("{} was submitted from another desktop meanwhile. It is not sent again.",
                        loaded_id_),
            fmt::format("{} 已由另一台电脑提交，不会再次发送。", loaded_id_)});
      return;
    }
    std::string given = seen.state == State::answered ? seen.uuid : std::string();
    if (given.empty() && MaySend(seen, given)) {
      if (!Send(seen, given)) return;
    } else {
      sent_before = seen.sent_at;
    }
    if (given.empty()) return;
    if (!KeepUuid(seen, given)) return;
  } catch (const std::exception& failure) {
    TellFailed(kSendFailed, failure);
    return;
  }
  Caption told{"Record Saved and Submited Successfully", "记录已储存并成功提交"};
  if (!sent_before.empty()) {
    told.english += fmt::format(
        "\nThe tax authority has it as it was sent on {}. What was changed since then is not "
        "there.",
        sent_before);
    told.chinese += fmt::format("\n税局保留 {} 发送的内容，之后的更改不在其中。", sent_before);
  }
  Tell(MessageKind::information, told);
  LoadBill(loaded_id_);
}

// What was sent and not answered may lie with the service: then only a person sends it again.
bool SelfBillFrm::MaySend(const SendingMark& seen, std::string& given) {
  if (!seen.Unknown()) return true;
  if (seen.UnderWay(ServerTime(main()))) {
    Tell(MessageKind::warning,
         {fmt::format("{} is being sent this moment by {} from {}. It is saved. If nobody is at "
                      "it, save again in two minutes.",
                      loaded_id_, seen.user, seen.computer),
          fmt::format("{} 正由 {} 从 {} 发送。单据已储存。如果没有人在发送，请两分钟后再储存。",
                      loaded_id_, seen.user, seen.computer)});
    return false;
  }
  if (ConfirmLoss(
          {fmt::format("{} was sent on {} by {} from {}, and what became of it is not known: the "
                       "service may have it. Look there first: sent again, there may be two "
                       "invoices.\n\nSend it again ?",
                       loaded_id_, seen.sent_at, seen.user, seen.computer),
           fmt::format("{} 已于 {} 由 {} 从 {} 发送，但不知结果：服务可能已收到。请先到服务查看：再"
                       "次发送可能产生两张发票。\n\n再次发送？",
                       loaded_id_, seen.sent_at, seen.user, seen.computer)})) {
    return true;
  }
  given = AskForUuid(seen);
  if (!given.empty()) return false;
  Tell(MessageKind::information, {fmt::format("{} saved. It was not sent.", loaded_id_),
                                  fmt::format("{} 已储存，没有发送。", loaded_id_)});
  return false;
}

// Who has found it in the service's own pages tells its uuid there.
std::string SelfBillFrm::AskForUuid(const SendingMark& seen) {
  const std::string told = Trim(desk().Input(
      session().In(title()),
      session().In({fmt::format("uuid of {} as the service shows it; empty while it is not known",
                                loaded_id_),
                    fmt::format("服务上 {} 的 uuid；不知道则留空", loaded_id_)}),
      {}));
  if (told.empty()) return {};
  if (const auto fault = FaultOfUuid(main(), told, StatusOf(told), {})) {
    Refuse(*fault);
    return {};
  }
  if (marks_.ReadOne(LineOf(loaded_id_)).stamp != seen.stamp) {
    Refuse({"Another desktop has sent it meanwhile; please open it again",
            "另一台电脑已发送，请重新打开"});
    return {};
  }
  WriteLog(session(), LogLine(session(), fmt::format("Self-bill {} settled by hand: recorded as {}",
                                                     loaded_id_, told)));
  return told;
}

bool SelfBillFrm::Send(SendingMark& mark, std::string& given) {
  const Hourglass busy(desk());
  const SendingMarks::Line line = LineOf(loaded_id_);
  const std::string url = ReadSetting(main(), "GetEInvAPISelfBill");
  const std::string body = SelfBillBody(Bill(), company_block_);
  const SendingMark before = mark;
  const auto claimed = marks_.Claim(line, before);
  if (!claimed) {
    Tell(MessageKind::information,
         {fmt::format("{} is being sent from another desktop. It is saved, and not sent from here.",
                      loaded_id_),
          fmt::format("另一台电脑正在发送 {}。此单据已储存，不从这里发送。", loaded_id_)});
    return false;
  }
  mark = *claimed;
  const auto settle = [&](Answer answer, const std::string& why) {
    marks_.SettleWithout(line, mark, before, answer, why);
  };
  std::string reply;
  try {
    reply = Ask("POST", url, body);
  } catch (const HttpFailure& failure) {
    settle(failure.maybe_taken() ? Answer::open : Answer::unsent, failure.what());
    TellFailed(kSendFailed, failure);
    return false;
  }
  given = UuidOf(reply);
  if (!given.empty()) Remember(mark, given);
  service_.LogReply(reply);
  if (!given.empty()) return true;
  const std::string shown =
      reply.empty() ? session().In({"an empty reply", "空的答复"}) : service_.WithoutSecrets(reply);
  settle(IsRefusal(reply) ? Answer::refused : Answer::open, shown);
  const std::string trouble = service_.has_token() ? "" : session().In(service_.token_trouble());
  ShowResult(trouble.empty() ? shown : fmt::format("{}\r\n{}", trouble, shown));
  Tell(MessageKind::critical,
       {"Record Saved and Submited Failed, Please Save Again", "记录已储存但提交失败，请再次储存"});
  return false;
}

// A token lives for an hour or so; what came with an old one was not looked at.
std::string SelfBillFrm::Ask(std::string_view method, const std::string& url,
                             std::string_view body) {
  std::string reply = service_.Send(method, url, body);
  if (!service_.TokenRefused() || !UuidOf(reply).empty()) return reply;
  service_.LogReply(reply);
  return service_.GetToken() ? service_.Send(method, url, body) : reply;
}

// A program that ends before the record has the uuid finds it here. Without it the record takes it
// all the same.
void SelfBillFrm::Remember(SendingMark& mark, const std::string& given) {
  try {
    marks_.Settle(LineOf(loaded_id_), mark, State::answered, given, {});
  } catch (const std::exception& failure) {
    LogRollback(session(), "Self-bill " + loaded_id_ + " uuid " + given, failure);
  }
}

bool SelfBillFrm::KeepUuid(SendingMark& mark, const std::string& given) {
  const bool kept = AttemptOnRecord("Self-bill " + loaded_id_ + " uuid " + given, kSendFailed, [&] {
    ExecuteOnRow(main(),
                 fmt::format("UPDATE SelfBillMast set uuid={} WHERE SID={}", QuoteStr(given),
                             QuoteStr(loaded_id_)),
                 loaded_id_);
    marks_.Settle(LineOf(loaded_id_), mark, State::recorded, given, {});
  });
  // It is kept in the mark too, from where the next save takes it; and here it can be read.
  if (!kept) ShowResult("uuid " + given);
  return kept;
}

// --- what became of it

StatusReply SelfBillFrm::StatusOf(const std::string& of) {
  const Hourglass busy(desk());
  StatusReply reply = service_.AskStatus(of);
  if (service_.TokenRefused() && service_.GetToken()) reply = service_.AskStatus(of);
  return reply;
}

void SelfBillFrm::AskStatus() {
  if (uuid.empty() || !Ready()) return;
  ShowResult({});
  StatusReply reply;
  try {
    reply = StatusOf(uuid.text());
  } catch (const HttpFailure& failure) {
    TellFailed(kStatusFailed, failure);
    return;
  }
  if (reply.error || reply.status.empty()) {
    Tell(MessageKind::critical,
         {fmt::format("The service gives no status of {}. Its words stand in the log.", loaded_id_),
          fmt::format("服务没有给 {} 的状态。答复记在日志里。", loaded_id_)});
    return;
  }
  KeepStatus(reply.status);
}

void SelfBillFrm::KeepStatus(const std::string& status) {
  const bool kept = AttemptOnRecord("Self-bill " + loaded_id_ + " status", kStatusFailed, [&] {
    // What another desktop has changed is not taken for what is shown here.
    const bool as_shown = stored_.Is(ReadRow(loaded_id_));
    ExecuteOnRow(main(),
                 fmt::format("UPDATE SelfBillMast set SelfBillStatus={} WHERE SID={}",
                             QuoteStr(status), QuoteStr(loaded_id_)),
                 loaded_id_);
    written_ = stored_;
    if (as_shown) written_.Take(ReadRow(loaded_id_));
  });
  if (!kept) return;
  stored_ = written_;
  SelfBillStatus.SetText(status);
  Tell(MessageKind::information, {"Status " + status, "状态 " + status});
}

// The status is asked for afterwards: the service decides what has become of the document.
void SelfBillFrm::CancelBill() {
  if (uuid.empty()) return;
  if (!right_.MayDelete({"cancel self-bill " + loaded_id_, "作废自开发票 " + loaded_id_},
                        CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (!Ready() || !ConfirmLoss({fmt::format("Confirm to Cancel Selfbill {} ?", loaded_id_),
                                fmt::format("确定作废单据 {}？", loaded_id_)})) {
    return;
  }
  ShowResult({});
  const std::string url = ReadSetting(main(), "GetEInvAPICancel") + uuid.text();
  std::string reply;
  try {
    const Hourglass busy(desk());
    reply = Ask("PUT", url, kCancelBody);
    service_.LogReply(reply);
  } catch (const HttpFailure& failure) {
    TellFailed(kCancelFailed, failure);
    return;
  }
  if (IsRefusal(reply)) {
    ShowResult(service_.WithoutSecrets(reply));
    Tell(MessageKind::critical, {fmt::format("The service refuses to cancel {}", loaded_id_),
                                 fmt::format("服务拒绝作废 {}", loaded_id_)});
    return;
  }
  if (!IsWholeObject(reply)) {
    ShowResult(reply.empty() ? session().In({"an empty reply", "空的答复"})
                             : service_.WithoutSecrets(reply));
    Tell(MessageKind::critical,
         {fmt::format("No clear answer came: whether {} is cancelled is not known. Get its status.",
                      loaded_id_),
          fmt::format("没有明确的答复：不知 {} 是否已作废。请查询状态。", loaded_id_)});
    return;
  }
  WriteAudit(session(), "Cancel", "Self-Bill", CompCode.text(), loaded_id_, {});
  Tell(MessageKind::information, {"Selfbill Cancelled", "单据已作废"});
}

}  // namespace kaunter
