#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "core/audit.h"
#include "core/log.h"
#include "core/telling.h"
#include "core/values.h"
#include "einvoice/einv_frm.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

constexpr std::size_t kNamedDocuments = 8;

const Caption kExportFailed{"an error occur during exporting eInvoicing", "发送电子发票时出现错误"};
const Caption kStatusFailed{"an error occur during Get Status", "查询状态时出现错误"};

std::string Named(const std::vector<std::string>& ids) {
  std::string text;
  for (std::size_t i = 0; i < std::min(ids.size(), kNamedDocuments); ++i) {
    text += (i == 0 ? "" : ", ") + ids[i];
  }
  return ids.size() > kNamedDocuments ? text + " ..." : text;
}

// A text of the service or of the document is longer than its column.
bool DoesNotFit(const SqlError& failure) {
  return failure.number() == 2628 || failure.number() == 8152;
}

}  // namespace

class EInvFrm::Run {
 public:
  Run(EInvFrm& screen, std::size_t steps)
      : service_(screen.service_),
        session_(screen.session()),
        busy_(screen.desk()),
        bar_(screen),
        steps_(steps),
        patience_(screen.patience) {
    service_.http().WaitWith([this] { return GiveUp(); });
  }
  ~Run() { service_.http().WaitWith({}); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  bool Stopped() {
    if (bar_.Stopped() && !stopped_) stopped_ = std::chrono::steady_clock::now();
    return stopped_.has_value();
  }
  // A token that was got anew and is refused at once will not serve.
  void TokenRenewed() { renewed_ = true; }
  void TokenServed() { renewed_ = false; }
  bool renewed() const { return renewed_; }
  void Show(std::size_t done, const std::string& id) {
    bar_.GoOn(done, steps_,
              session_.In({fmt::format("{} of {}: {}", done + 1, steps_, id),
                           fmt::format("{} / {}：{}", done + 1, steps_, id)}));
  }

 private:
  bool GiveUp() { return Stopped() && std::chrono::steady_clock::now() - *stopped_ > patience_; }

  InvoiceService& service_;
  Session& session_;
  Hourglass busy_;
  StopBar bar_;
  std::size_t steps_;
  std::chrono::milliseconds patience_;
  bool renewed_ = false;
  std::optional<std::chrono::steady_clock::time_point> stopped_;
};

// --- submit and cancel

std::vector<std::size_t> EInvFrm::TickedLines() {
  std::vector<std::size_t> ticked;
  std::vector<std::string> done, unknown, under_way, foreign;
  const SendingMarks marks(session(), NameOf(mode()));
  const DateTime now = ServerTime(main());
  for (const std::size_t at : shown_) {
    InvoiceLine& line = lines_[at];
    if (!line.ticked) continue;
    // It would go out in the name of the chosen company, or be cancelled in it.
    const std::string& company = line.cells[kCompCode];
    if (!company.empty() && !SameText(company, CompCode.text())) {
      foreign.push_back(line.id());
      continue;
    }
    // Of what was not known when it was listed more may be known now.
    if (line.mark.Unknown()) line.mark = marks.ReadOne(line.key());
    if (line.mark.UnderWay(now)) {
      under_way.push_back(line.id());
      continue;
    }
    ticked.push_back(at);
    if (line.mark.Unknown()) {
      unknown.push_back(line.id());
    } else if (WasDone(line, mode())) {
      done.push_back(line.id());
    }
  }
  if (!foreign.empty()) {
    Tell(MessageKind::warning,
         {fmt::format("Documents of another company and left out: {}. Choose their company to "
                      "send them.",
                      Named(foreign)),
          fmt::format("属于其他公司的单据，这次略过：{}。请选择该公司再发送。", Named(foreign))});
  }
  if (!under_way.empty()) {
    Tell(MessageKind::warning,
         {fmt::format("Being sent this moment and left out: {}. If nobody is at it, try again in "
                      "two minutes.",
                      Named(under_way)),
          fmt::format("正在发送中，这次略过：{}。如果没有人在发送，请两分钟后再试。",
                      Named(under_way))});
  }
  const bool again =
      done.empty() ||
      ConfirmLoss(
          {fmt::format(
               "{} ticked document(s) were sent before and have a uuid: {}\nSend them again? No "
               "sends the others alone.",
               done.size(), Named(done)),
           fmt::format("已勾选的单据中有 {} 份之前已发送并有 "
                       "uuid：{}\n要再次发送吗？选“否”只发送其他单据。",
                       done.size(), Named(done))});
  const bool risk =
      unknown.empty() ||
      ConfirmLoss(
          {fmt::format(
               "Of {} ticked document(s) it is not known whether the service took them: {}\nSend "
               "them again, though they may then be there twice? No sends the others alone.",
               unknown.size(), Named(unknown)),
           fmt::format(
               "已勾选的单据中有 {} "
               "份不知服务是否已收到：{}\n要再次发送吗（可能造成重复）？选“否”只发送其他单据。",
               unknown.size(), Named(unknown))});
  std::erase_if(ticked, [&](std::size_t at) {
    const InvoiceLine& line = lines_[at];
    return line.mark.Unknown() ? !risk : !again && WasDone(line, mode());
  });
  return ticked;
}

void EInvFrm::Export() {
  if (vsd.RowCount() == 0) return;
  if (!Confirm({"Confirm to Export E-Invoicing ?", "确定发送电子发票？"})) return;
  // What is cancelled is income that the tax authority no longer knows of.
  if (mode() == SendMode::cancel && !right_.MayDelete({"cancel e-invoices of " + CompCode.text(),
                                                       "作废 " + CompCode.text() + " 的电子发票"},
                                                      CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  const std::vector<std::size_t> ticked = TickedLines();
  bool whole = true;
  std::string id;  // of the document that is on its way
  try {
    Submission submission(session(), service_, mode(), supplier_);
    Run run(*this, ticked.size());
    for (std::size_t i = 0; i < ticked.size() && whole; ++i) {
      id = lines_[ticked[i]].id();
      run.Show(i, id);
      whole = SendOne(submission, ticked[i], run) && !(run.Stopped() && i + 1 < ticked.size());
    }
  } catch (const std::exception& failure) {
    ShowCounts();
    LogRollback(session(), "E-Invoicing " + id, failure);
    const auto* line = dynamic_cast<const HttpFailure*>(&failure);
    if (line != nullptr && line->given_up()) {
      Tell(MessageKind::warning, {failure.what(), failure.what()});
    } else {
      Tell(MessageKind::critical, FailedOrRefused(kExportFailed, failure));
    }
    return;
  }
  ShowCounts();
  if (!whole) {
    Tell(MessageKind::information,
         {"Stopped. What was sent is recorded, what was not sent is still ticked.",
          "已停止。已发送的已记录，未发送的仍保持勾选。"});
    return;
  }
  CmdPrint.SetEnabled(false);
  Tell(MessageKind::information, {"Submission completed", "提交完毕"});
}

bool EInvFrm::SendOne(Submission& submission, std::size_t at, Run& run) {
  InvoiceLine& line = lines_[at];
  for (;;) {
    Submission::Outcome outcome;
    try {
      outcome = submission.Send(line);
    } catch (const std::exception&) {
      // Sent or not: a document of which it is not known is not sent again by a mere second try.
      if (line.mark.Unknown()) {
        line.ticked = false;
        line.tone = RowTone::bad;
      }
      ShowLine(at);
      throw;
    }
    switch (outcome) {
      case Submission::Outcome::recorded:
        line.tone = RowTone::warn;
        line.ticked = false;
        break;
      case Submission::Outcome::not_ours:
        line.cells[kMsg] = session().In(
            {fmt::format("Not sent: {} ({}) has sent it at {}, since it was listed here",
                         line.mark.user, line.mark.computer, line.mark.sent_at),
             fmt::format("没有发送：列出之后 {}（{}）已于 {} 发送", line.mark.user,
                         line.mark.computer, line.mark.sent_at)});
        line.tone = line.mark.Unknown() ? RowTone::bad : RowTone::warn;
        line.ticked = false;
        break;
      case Submission::Outcome::open:
        line.ticked = false;
        [[fallthrough]];
      case Submission::Outcome::refused:
      case Submission::Outcome::no_token:
        line.tone = RowTone::info;
        break;
    }
    ShowLine(at);
    if (outcome != Submission::Outcome::no_token) {
      run.TokenServed();
      return true;
    }
    if (!AgreeToNewToken(run)) return false;
  }
}

bool EInvFrm::AgreeToNewToken(Run& run) {
  // Where a token that is fresh from the service does not serve, another one will not.
  if (run.renewed()) {
    Tell(MessageKind::critical,
         {"The service refuses the new token too.", "服务也拒绝了新的令牌。"});
    return false;
  }
  if (!Confirm({"The service does not take the token: it has expired, or there is none.\nGet a new "
                "one and go on?",
                "服务不接受令牌：可能已过期，或没有令牌。\n要取得新的令牌并继续吗？"})) {
    return false;
  }
  run.TokenRenewed();
  if (service_.GetToken()) {
    TokenLBL.SetText("");
    return true;
  }
  Tell(MessageKind::critical, {"No token: " + service_.token_trouble().english,
                               "没有令牌：" + service_.token_trouble().chinese});
  return false;
}

// --- the status

void EInvFrm::AskStatuses() {
  if (!Confirm({"Comfirn to get Status ?", "确定查询状态？"})) return;
  std::vector<std::size_t> asked;
  std::vector<std::string> unkept;
  for (const std::size_t at : shown_) {
    const InvoiceLine& line = lines_[at];
    const std::string& status = line.cells[kStatus];
    if (!line.uuid().empty() && status != "Invalid" && status != "Valid") asked.push_back(at);
  }
  try {
    Submission submission(session(), service_, SendMode::submit, supplier_);
    Run run(*this, asked.size());
    for (std::size_t i = 0; i < asked.size() && !run.Stopped(); ++i) {
      InvoiceLine& line = lines_[asked[i]];
      run.Show(i, line.id());
      while (!AskStatus(submission, line, unkept) && service_.TokenRefused()) {
        if (AgreeToNewToken(run)) continue;
        ShowCounts();
        return;
      }
      run.TokenServed();
      ShowLine(asked[i]);
    }
  } catch (const std::exception& failure) {
    ShowCounts();
    LogRollback(session(), "E-Invoicing Status", failure);
    Tell(MessageKind::critical, FailedOrRefused(kStatusFailed, failure));
    return;
  }
  ShowCounts();
  if (!unkept.empty()) {
    Tell(MessageKind::warning,
         {fmt::format("Not all that the service told could be recorded, of {} document(s): {}\n"
                      "Msg of each tells why.",
                      unkept.size(), Named(unkept)),
          fmt::format("{} 份单据的答复未能完整记录：{}\n原因见各单据的 Msg。", unkept.size(),
                      Named(unkept))});
  }
  Tell(MessageKind::information, {"Get Status Complated", "状态查询完毕"});
}

bool EInvFrm::AskStatus(Submission& submission, InvoiceLine& line,
                        std::vector<std::string>& unkept) {
  const StatusReply reply = service_.AskStatus(line.uuid());
  if (reply.error || reply.uuid.empty()) return false;
  // The service knows the document: what it gave when it was sent is recorded now.
  const bool answered =
      mode() == SendMode::submit && line.mark.state == SendingMark::State::answered;
  const bool kept =
      (!answered || KeepIfItFits(line, [&] { submission.Record(line, line.uuid()); })) &&
      TakeStatus(line, reply);
  if (!kept) unkept.push_back(line.id());
  return true;
}

// What does not fit now will not fit at the next asking either: the row says so, and the others get
// their turn.
bool EInvFrm::KeepIfItFits(InvoiceLine& line, const std::function<void()>& keep) {
  try {
    keep();
    return true;
  } catch (const SqlError& failure) {
    if (!DoesNotFit(failure)) throw;
    LogRollback(session(), "E-Invoicing " + line.id(), failure);
    line.cells[kMsg] = failure.what();
    return false;
  }
}

bool EInvFrm::TakeStatus(InvoiceLine& line, const StatusReply& reply) {
  line.cells[kStatus] = reply.status;
  const std::string id = QuoteStr(line.id());
  const bool address = KeepIfItFits(line, [&] {
    main().Execute(
        fmt::format("UPDATE EInvMast SET LHDNQR={} WHERE eInvID={}", QuoteStr(reply.url), id));
  });
  const bool status = KeepIfItFits(line, [&] {
    main().Execute(fmt::format("UPDATE EInvMast SET LHDNStatus={} WHERE eInvID={}",
                               QuoteStr(reply.status), id));
  });
  return address && status;
}

// --- a document of which it is not known whether the service has it

void EInvFrm::SettleUnknown() {
  if (vsd.current_row() < 0) return;
  const std::size_t at = shown_[static_cast<std::size_t>(vsd.current_row())];
  InvoiceLine& line = lines_[at];
  const SendingMarks marks(session(), NameOf(mode()));
  line.mark = marks.ReadOne(line.key());
  if (!line.mark.Unknown()) {
    ShowLine(at);
    Refuse(vsd, {"Another desktop has settled it; please process the list again",
                 "另一台电脑已处理，请重新处理列表"});
    return;
  }
  if (line.mark.UnderWay(ServerTime(main()))) {
    Refuse(vsd,
           {"It is being sent this moment; please wait two minutes", "正在发送中，请等待两分钟"});
    return;
  }
  const std::string uuid = Trim(desk().Input(
      session().In(title()),
      session().In(
          {fmt::format("uuid of {} as the service shows it; empty when it is not there", line.id()),
           fmt::format("服务上 {} 的 uuid；没有的话留空", line.id())}),
      line.mark.uuid));
  if (!uuid.empty()) {
    if (SettleWithUuid(line, uuid)) NoteSettled(line, "recorded as " + uuid);
  } else if (ConfirmLoss(
                 {fmt::format("Is {} certainly not with the service?\nIt then counts as not "
                              "sent, and the next sending takes it along.",
                              line.id()),
                  fmt::format("确定服务上没有 {}？\n它将视为未发送，下次发送时会一并发出。",
                              line.id())})) {
    const bool settled = Attempt("E-Invoicing " + line.id(), kExportFailed, [&] {
      marks.Settle(line.key(), line.mark, SendingMark::State::free, "", "");
    });
    if (settled) NoteSettled(line, "not with the service, counts as not sent");
    line.tone = line.uuid().empty() ? RowTone::plain : RowTone::warn;
  }
  ShowLine(at);
  ShowCounts();
}

// Who told what of a document that nobody knew of.
void EInvFrm::NoteSettled(const InvoiceLine& line, std::string_view as) {
  WriteLog(session(), LogLine(session(), fmt::format("E-Invoicing {} {} settled by hand: {}",
                                                     NameOf(mode()), line.id(), as)));
  WriteAudit(session(), "Modify", "E-Invoice", line.cells[kCompCode], line.id(), {});
}

bool EInvFrm::SettleWithUuid(InvoiceLine& line, const std::string& uuid) {
  try {
    const Hourglass busy(desk());
    const StatusReply reply = service_.AskStatus(uuid);
    if (const auto fault = FaultOfUuid(main(), uuid, reply, line.id())) return Refuse(*fault);
    // The service may give the document's own uuid for its cancellation: that it knows it says
    // nothing.
    if (mode() == SendMode::cancel && (reply.status == "Valid" || reply.status == "Submitted")) {
      return Refuse(
          {fmt::format("The service shows {} as {}: it is not cancelled", uuid, reply.status),
           fmt::format("服务显示 {} 为 {}：尚未取消", uuid, reply.status)});
    }
    Submission submission(session(), service_, mode(), supplier_);
    submission.Record(line, uuid);
    if (mode() == SendMode::submit) TakeStatus(line, reply);
    line.ticked = false;
    line.tone = RowTone::warn;
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), "E-Invoicing " + line.id(), failure);
    return Refuse(FailedOrRefused(kStatusFailed, failure));
  }
}

}  // namespace kaunter
