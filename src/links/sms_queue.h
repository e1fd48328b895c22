// The queue of the gateway: what enters it, what failed and goes again. Each message is a
// transaction of its own, so that what was queued before a failure stays queued.
//
// Nobody gets the same text twice on a day unasked: what others have queued meanwhile is read
// before each message is written.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "platform/sql/connection.h"

namespace kaunter {

struct QueuedSms {
  std::string CustID;
  std::string CustName;
  std::string LoanID;
  std::string CompCode;
  std::string HP;
  std::string SMSMsg;
  std::string UserID;
  std::string DateCreated;  // dd-mm-yyyy hh:mm:ss
};

class SmsQueue {
 public:
  // Throws SqlError, as all that follows. Messages since `day` (dd-mm-yyyy) count as sent already,
  // unless the gateway gave them back as failed.
  SmsQueue(Connection& queue, const std::string& day);

  // The longest text that the queue takes; 0 for any.
  int Longest() const { return longest_; }
  // The text is on its way to this number already, apart from what this run has queued.
  bool Holds(const std::string& number, const std::string& text) const;
  // The person has agreed to send once more what the queue holds now.
  void AllowAgain() { allowed_ = others_; }
  // Queues it; false when the queue holds it and that was not agreed to.
  bool Add(const QueuedSms& sms);

 private:
  using Key = std::pair<std::string, std::string>;  // number and text
  void ReadBehind(const std::string& condition);

  Connection& queue_;
  int longest_ = 0;
  std::int64_t last_ = 0;  // the highest number that was read or written
  std::map<Key, int> others_;
  std::map<Key, int> allowed_;
};

// Gives a failed message back to the gateway; false when it is not failed any more.
bool ResendSms(Connection& queue, const std::string& id);

}  // namespace kaunter
