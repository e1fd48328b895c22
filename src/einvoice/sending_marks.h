// What was sent and not yet recorded. Before a request for a document goes out, its row of
// EInvSending says so; a process that dies before the answer is recorded, or an answer that never
// came, leaves the row behind, and the document counts as "unknown" until a person settles it.
//
// A row is claimed in one statement, whose count tells which of two desktops may send: the table's
// key (document, line, submission or cancellation) or the stamp of the row that was seen decides,
// on every engine.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/date_time.h"
#include "screen/caption.h"

namespace kaunter {

class Connection;
class Session;
struct StatusReply;

struct SendingMark {
  enum class State {
    none,      // never sent by this program
    sending,   // a request went out, its answer is not known
    answered,  // the service gave a uuid, which is not recorded yet
    recorded,
    refused,  // the service said no
    free,     // nothing had gone out, or a person told that the service does not have it
  };
  State state = State::none;
  std::string stamp;  // of the last claim; "" without a row
  std::string user;
  std::string computer;
  std::string sent_at;  // dd-mm-yyyy hh:nn:ss
  std::string uuid;     // what the service gave
  std::string reply;    // why it refused, or what went wrong

  // What came instead of a uuid.
  enum class Answer {
    unsent,  // nothing has left, or it was not looked at
    refused,
    open,  // it may have been taken
  };

  bool Unknown() const { return state == State::sending || state == State::answered; }
  // Its sender may still be waiting for the answer: nothing was noted of it, and it is not older
  // than a request may take.
  bool UnderWay(const DateTime& now) const;
};

class SendingMarks {
 public:
  // `mode` is "Submit" or "Cancel".
  SendingMarks(Session& session, std::string_view mode) : session_(session), mode_(mode) {}

  using Line = std::pair<std::string, std::string>;  // eInvID, SeqNo
  std::map<Line, SendingMark> Read(const std::vector<Line>& lines) const;
  SendingMark ReadOne(const Line& line) const;

  // The document is this desktop's to send, if its mark is still the one that was seen. Gives the
  // new mark, or nothing when another desktop was first.
  std::optional<SendingMark> Claim(const Line& line, const SendingMark& seen) const;
  // Writes what became of a claim; nothing once somebody else has claimed the document since.
  // `mark` takes it over.
  void Settle(const Line& line, SendingMark& mark, SendingMark::State state, std::string_view uuid,
              std::string_view reply) const;
  // Writes what a claim without a uuid has come to, `why` in words, of a document whose mark was
  // `before`. What was not known before is no better known by a second try that comes to nothing.
  void SettleWithout(const Line& line, SendingMark& mark, const SendingMark& before,
                     SendingMark::Answer answer, std::string_view why) const;

 private:
  Session& session_;
  std::string mode_;
};

// What speaks against recording `uuid`, which a person found with the service, for a document:
// `reply` does not know it, or another document has it. `id` is the invoice's, "" of a self-bill.
std::optional<Caption> FaultOfUuid(Connection& main, std::string_view uuid,
                                   const StatusReply& reply, std::string_view id);

}  // namespace kaunter
