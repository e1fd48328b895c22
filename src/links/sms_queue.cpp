#include "links/sms_queue.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr std::string_view kLastNumber = "SELECT MAX(SMSID) FROM SMSList";

std::int64_t LastNumber(Connection& queue) {
  const std::string last = ScalarQuery(queue, kLastNumber);
  return last.empty() ? 0 : std::stoll(last);
}

// Changes nothing: the second of two desktops waits here until the first is done.
void Hold(Connection& queue, std::string_view number) {
  queue.Execute(fmt::format("UPDATE SMSList SET CompCode=CompCode WHERE SMSID={}", number));
}

// The same before something is added. An SQL Server locks the place before the first message, which
// an empty queue has too; on the other engines one transaction writes at a time.
void HoldQueue(Connection& queue) {
  queue.Query("SELECT MIN(SMSID) FROM SMSList WITH (UPDLOCK, HOLDLOCK)");
}

int CountIn(const std::map<std::pair<std::string, std::string>, int>& counts,
            const std::pair<std::string, std::string>& key) {
  const auto found = counts.find(key);
  return found == counts.end() ? 0 : found->second;
}

}  // namespace

SmsQueue::SmsQueue(Connection& queue, const std::string& day) : queue_(queue) {
  longest_ = queue.Query("SELECT SMSMsg FROM SMSList WHERE 1=0").columns()[0].width;
  const std::int64_t last = LastNumber(queue);
  ReadBehind(
      fmt::format("SMSID <= {} AND DateCreated >= {} AND SMSStatus <> 'FAIL'", last, SqlDate(day)));
  last_ = last;
}

void SmsQueue::ReadBehind(const std::string& condition) {
  for (Recordset rows = queue_.Query("SELECT SMSID,HP,SMSMsg FROM SMSList WHERE " + condition);
       !rows.Eof(); rows.MoveNext()) {
    ++others_[{NullToEmpty(rows.Field("HP")), NullToEmpty(rows.Field("SMSMsg"))}];
    last_ = std::max<std::int64_t>(last_, CLng(rows.Field("SMSID").ToText()));
  }
}

bool SmsQueue::Holds(const std::string& number, const std::string& text) const {
  const Key key{number, text};
  return CountIn(others_, key) > CountIn(allowed_, key);
}

bool SmsQueue::Add(const QueuedSms& sms) {
  Transaction transaction(queue_);
  HoldQueue(queue_);
  ReadBehind(fmt::format("SMSID > {}", last_));
  if (Holds(sms.HP, sms.SMSMsg)) return false;
  queue_.Execute(fmt::format(
      "INSERT INTO SMSList (CustID,CustName,LoanID,CompCode,HP,SMSMsg,SMSStatus,SMSLog,UserID,"
      "DateCreated) VALUES ({},{},{},{},{},{},'READY','',{},{})",
      QuoteStr(sms.CustID), QuoteStr(sms.CustName), QuoteStr(sms.LoanID), QuoteStr(sms.CompCode),
      QuoteStr(sms.HP), QuoteStr(sms.SMSMsg), QuoteStr(sms.UserID), SqlDateTime(sms.DateCreated)));
  const std::int64_t last = LastNumber(queue_);
  transaction.Commit();
  last_ = last;  // what this run has queued is none of the others'
  return true;
}

bool ResendSms(Connection& queue, const std::string& id) {
  Transaction transaction(queue);
  const std::string number = StripCommaOrZero(id);
  Hold(queue, number);
  if (ScalarQuery(queue, "SELECT SMSStatus FROM SMSList WHERE SMSID=" + number) != "FAIL") {
    return false;
  }
  queue.Execute("UPDATE SMSList SET SMSStatus='READY' WHERE SMSID=" + number);
  transaction.Commit();
  return true;
}

}  // namespace kaunter
