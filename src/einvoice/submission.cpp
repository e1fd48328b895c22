#include "einvoice/submission.h"

#include <fmt/format.h>

#include <exception>
#include <optional>
#include <utility>

#include "core/audit.h"
#include "core/log.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {

using namespace einvoice_column;
using Answer = SendingMark::Answer;

void SaveEInvResult(Session& session, const InvoiceRow& row, std::string_view uuid, SendMode mode,
                    bool ticked) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(row[kID]);
  std::string statement;
  if (mode == SendMode::cancel) {
    statement =
        fmt::format("Update EInvMast set Canceluuid={} WHERE EInvID={}", QuoteStr(uuid), id);
  } else if (!main.Query("SELECT eInvID FROM EInvMast WHERE eInvID=" + id).Eof()) {
    statement = fmt::format("Update EInvMast set uuid={} WHERE EInvID={}", QuoteStr(uuid), id);
  } else {
    statement = fmt::format(
        "INSERT INTO EInvMast (eInvID,SeqNo,TrxDate,CustID,CompCode,LoanID,SchID,InvType,"
        "InvTaxCode,InvDesc,InvAmt,InvQty,InvStatus,tin,uuid) values ({},{},{},{},{},{},{},{},{},"
        "{},{},{},{},{},{})",
        id, StripCommaOrZero(row[kSeqNo]), SqlDate(row[kDate]), QuoteStr(row[kCustID]),
        QuoteStr(row[kCompCode]), QuoteStr(row[kLoanID]), QuoteStr(row[kSchID]),
        QuoteStr(row[kInvType]), QuoteStr(row[kTaxCode]), QuoteStr(row[kDescription]),
        StripCommaOrZero(row[kAmount]), StripCommaOrZero(row[kQty]), QuoteStr(ticked ? "1" : "0"),
        QuoteStr(row[kTin]), QuoteStr(uuid));
  }
  main.Execute(statement);
  WriteLog(session, LogLine(session, statement));
}

Submission::Submission(Session& session, InvoiceService& service, SendMode mode,
                       std::string_view supplier)
    : session_(session),
      service_(service),
      mode_(mode),
      marks_(session, NameOf(mode)),
      supplier_(supplier) {}

Submission::Outcome Submission::Send(InvoiceLine& line) {
  const bool cancels = mode_ == SendMode::cancel;
  const std::string body = cancels ? std::string(kCancelBody) : SubmitBody(line.cells, supplier_);
  const std::string url = cancels ? ReadSetting(session_.Main(), "GetEInvAPICancel") + line.uuid()
                                  : ReadSetting(session_.Main(), SubmitAddressKey(line.cells));
  if (!cancels) service_.LogBody(body);
  const SendingMark before = line.mark;
  const auto claimed = marks_.Claim(line.key(), before);
  if (!claimed) {
    line.mark = marks_.ReadOne(line.key());
    const bool done = line.mark.state == SendingMark::State::recorded;
    if (done) line.cells[kUuid] = line.mark.uuid;
    if (done && cancels) line.cancel_uuid = line.mark.uuid;
    return Outcome::not_ours;
  }
  line.mark = *claimed;
  try {
    return TakeReply(line, before, service_.Send(cancels ? "PUT" : "POST", url, body));
  } catch (const HttpFailure& failure) {
    line.cells[kMsg] = service_.WithoutSecrets(failure.what());
    try {
      marks_.SettleWithout(line.key(), line.mark, before,
                           failure.maybe_taken() ? Answer::open : Answer::unsent, line.cells[kMsg]);
    } catch (const SqlError&) {
      // The mark stays as it was set: the document counts as unknown, which is the safe side.
    }
    throw;
  }
}

Submission::Outcome Submission::TakeReply(InvoiceLine& line, const SendingMark& before,
                                          const std::string& reply) {
  line.cells[kMsg] = service_.WithoutSecrets(reply);
  const auto settle = [&](Answer answer) {
    marks_.SettleWithout(
        line.key(), line.mark, before, answer,
        reply.empty() ? session_.In({"an empty reply", "空的回复"}) : line.cells[kMsg]);
  };
  const std::string uuid = UuidOf(reply);
  // A log that cannot be written must not cost the uuid.
  std::exception_ptr unlogged;
  try {
    service_.LogReply(reply);
  } catch (const std::exception&) {
    unlogged = std::current_exception();
  }
  Outcome outcome = Outcome::recorded;
  if (!uuid.empty()) {
    Record(line, uuid);
  } else if (service_.TokenRefused()) {
    outcome = Outcome::no_token;
    settle(Answer::unsent);
  } else if (IsRefusal(reply)) {
    outcome = Outcome::refused;
    settle(Answer::refused);
  } else {
    outcome = Outcome::open;
    settle(Answer::open);
  }
  if (unlogged) std::rethrow_exception(unlogged);
  return outcome;
}

// Status, address and cancellation are those of the document that had the old uuid: of the new one
// nothing is known yet, and it is to be asked for.
bool Submission::ForgetReplaced(const InvoiceLine& line, const std::string& uuid) {
  return session_.Main().Execute(
             fmt::format("UPDATE EInvMast SET LHDNStatus='',LHDNQR='',Canceluuid='' WHERE "
                         "eInvID={} AND uuid<>'' AND uuid<>{}",
                         QuoteStr(line.id()), QuoteStr(uuid))) > 0;
}

void Submission::Record(InvoiceLine& line, const std::string& uuid) {
  if (line.mark.stamp.empty()) {
    if (const auto claimed = marks_.Claim(line.key(), line.mark)) line.mark = *claimed;
  }
  bool replaces = false;
  try {
    SendingMark mark = line.mark;
    Transaction transaction(session_.Main());
    if (mode_ == SendMode::submit && !line.uuid().empty()) replaces = ForgetReplaced(line, uuid);
    SaveEInvResult(session_, line.cells, uuid, mode_, line.ticked);
    marks_.Settle(line.key(), mark, SendingMark::State::recorded, uuid, "");
    transaction.Commit();
    line.mark = mark;
  } catch (const std::exception&) {
    // The record waits; what the service gave is kept where one statement can keep it.
    const std::exception_ptr failure = std::current_exception();
    try {
      marks_.Settle(line.key(), line.mark, SendingMark::State::answered, uuid, "");
    } catch (const SqlError&) {
      line.mark.uuid = uuid;  // and the log has it
    }
    std::rethrow_exception(failure);
  }
  line.cells[kUuid] = uuid;
  if (replaces) {
    line.cells[kStatus].clear();
    line.cancel_uuid.clear();
  }
  if (mode_ != SendMode::cancel) return;
  line.cancel_uuid = uuid;
  WriteAudit(session_, "Cancel", "E-Invoice", line.cells[kCompCode], line.id(), {});
}

}  // namespace kaunter
