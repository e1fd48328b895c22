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

void ServiceAddresses::Read(Session& session) {
  for (const char* key : {"GetEInvAPIInv", "GetEInvAPICN", "GetEInvAPIConsolidated",
                          "GetEInvAPICancel", "GetEInvAPIStatus"}) {
    all_[key] = ReadSetting(session.Main(), key);
  }
}

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

Submission::Submission(Session& session, InvoiceService& service, const ServiceAddresses& addresses,
                       SendMode mode, std::string_view supplier)
    : session_(session),
      service_(service),
      addresses_(addresses),
      mode_(mode),
      marks_(session, NameOf(mode)),
      supplier_(supplier) {}

std::string Submission::Ask(const InvoiceLine& line) {
  if (mode_ == SendMode::cancel) {
    return service_.Send("PUT", addresses_["GetEInvAPICancel"] + line.uuid(), kCancelBody);
  }
  const std::string body = SubmitBody(line.cells, supplier_);
  return service_.Send("POST", addresses_[SubmitAddressKey(line.cells)], body);
}

Submission::Outcome Submission::Send(InvoiceLine& line) {
  if (mode_ == SendMode::submit) service_.LogBody(SubmitBody(line.cells, supplier_));
  const SendingMark before = line.mark;
  const auto claimed = marks_.Claim(line.key(), before);
  if (!claimed) {
    line.mark = marks_.ReadOne(line.key());
    const bool done = line.mark.state == SendingMark::State::recorded;
    if (done) line.cells[kUuid] = line.mark.uuid;
    if (done && mode_ == SendMode::cancel) line.cancel_uuid = line.mark.uuid;
    return Outcome::not_ours;
  }
  line.mark = *claimed;
  try {
    return TakeReply(line, before, Ask(line));
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
