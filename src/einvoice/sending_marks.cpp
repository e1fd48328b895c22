#include "einvoice/sending_marks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <random>

#include "core/session.h"
#include "core/values.h"
#include "einvoice/service_reply.h"
#include "platform/host.h"
#include "platform/sql/retry.h"
#include "platform/sql/text.h"

namespace kaunter {
namespace {

using State = SendingMark::State;

constexpr std::size_t kLinesAQuery = 200;
constexpr std::size_t kKeptReply = 500;  // characters

constexpr std::array<std::pair<State, std::string_view>, 5> kStates = {
    {{State::sending, "sending"},
     {State::answered, "answered"},
     {State::recorded, "recorded"},
     {State::refused, "refused"},
     {State::free, "free"}}};

std::string_view NameOf(State state) {
  const auto* found = std::ranges::find(kStates, state, &std::pair<State, std::string_view>::first);
  return found == kStates.end() ? std::string_view() : found->second;
}

// A word that another version wrote is not known to mean that the document was not sent.
State StateOf(std::string_view name) {
  const auto* found = std::ranges::find(kStates, name, &std::pair<State, std::string_view>::second);
  return found == kStates.end() ? State::sending : found->first;
}

std::string NewStamp() {
  std::random_device random;
  std::string stamp;
  for (int i = 0; i < 4; ++i) stamp += fmt::format("{:08x}", random());
  return stamp;
}

std::string Shortened(std::string_view text) {
  std::u32string characters = sql::Decode(text);
  if (characters.size() > kKeptReply) characters.resize(kKeptReply);
  return sql::Encode(characters);
}

std::string KeyIs(const SendingMarks::Line& line, std::string_view mode) {
  return fmt::format("eInvID={} AND SeqNo={} AND Mode={}", QuoteStr(line.first),
                     StripCommaOrZero(line.second), QuoteStr(mode));
}

State After(const SendingMark& before, SendingMark::Answer answer) {
  switch (answer) {
    case SendingMark::Answer::open:
      return State::sending;
    case SendingMark::Answer::refused:
      return before.Unknown() || before.state == State::recorded ? before.state : State::refused;
    case SendingMark::Answer::unsent:
      break;
  }
  return before.state == State::none ? State::free : before.state;
}

constexpr std::string_view kColumns =
    "SELECT eInvID,SeqNo,Stamp,State,UserID,PCName,SentAt,uuid,Reply FROM EInvSending WHERE ";

SendingMark MarkOf(const Recordset& row) {
  return {.state = StateOf(NullToEmpty(row.Field("State"))),
          .stamp = NullToEmpty(row.Field("Stamp")),
          .user = NullToEmpty(row.Field("UserID")),
          .computer = NullToEmpty(row.Field("PCName")),
          .sent_at = ShowDateTime(row.Field("SentAt")),
          .uuid = NullToEmpty(row.Field("uuid")),
          .reply = NullToEmpty(row.Field("Reply"))};
}

}  // namespace

bool SendingMark::UnderWay(const DateTime& now) const {
  constexpr int kLongestRequest = 120;  // seconds; a clerk who was asked something is in it
  const auto sent = DateTime::FromDisplay(sent_at);
  // One from the future is of a clock that has been set back since.
  return state == State::sending && reply.empty() && sent &&
         *sent < now.AddSeconds(kLongestRequest) && now < sent->AddSeconds(kLongestRequest);
}

std::map<SendingMarks::Line, SendingMark> SendingMarks::Read(const std::vector<Line>& lines) const {
  std::map<Line, SendingMark> marks;
  for (std::size_t from = 0; from < lines.size(); from += kLinesAQuery) {
    std::string ids;
    for (std::size_t at = from; at < std::min(from + kLinesAQuery, lines.size()); ++at) {
      ids += (ids.empty() ? "" : ",") + QuoteStr(lines[at].first);
    }
    for (Recordset rows = session_.Main().Query(
             fmt::format("{}Mode={} AND eInvID IN ({})", kColumns, QuoteStr(mode_), ids));
         !rows.Eof(); rows.MoveNext()) {
      marks[{NullToEmpty(rows.Field("eInvID")), NullToEmpty(rows.Field("SeqNo"))}] = MarkOf(rows);
    }
  }
  return marks;
}

SendingMark SendingMarks::ReadOne(const Line& line) const {
  const Recordset row = session_.Main().Query(std::string(kColumns) + KeyIs(line, mode_));
  return row.Eof() ? SendingMark() : MarkOf(row);
}

std::optional<SendingMark> SendingMarks::Claim(const Line& line, const SendingMark& seen) const {
  SendingMark mark = {.state = State::sending,
                      .stamp = NewStamp(),
                      .user = session_.CurrentUserID,
                      .computer = ThisHostName(),
                      .sent_at = ServerNow(session_.Main(), true),
                      .uuid = seen.uuid,
                      .reply = {}};
  const std::string at = SqlDateTime(mark.sent_at);
  std::int64_t won = 0;
  if (seen.stamp.empty()) {
    try {
      won = session_.Main().Execute(fmt::format(
          "INSERT INTO EInvSending (eInvID,SeqNo,Mode,Stamp,State,UserID,PCName,SentAt,uuid,Reply) "
          "SELECT {},{},{},{},{},{},{},{},'','' WHERE NOT EXISTS (SELECT eInvID FROM EInvSending "
          "WHERE {})",
          QuoteStr(line.first), StripCommaOrZero(line.second), QuoteStr(mode_),
          QuoteStr(mark.stamp), QuoteStr(NameOf(mark.state)), QuoteStr(mark.user),
          QuoteStr(mark.computer), at, KeyIs(line, mode_)));
    } catch (const SqlError& error) {
      if (error.number() != kDuplicateKeyNumber) throw;
    }
  } else {
    won = session_.Main().Execute(fmt::format(
        "UPDATE EInvSending SET Stamp={},State={},UserID={},PCName={},SentAt={},Reply='' WHERE {} "
        "AND Stamp={}",
        QuoteStr(mark.stamp), QuoteStr(NameOf(mark.state)), QuoteStr(mark.user),
        QuoteStr(mark.computer), at, KeyIs(line, mode_), QuoteStr(seen.stamp)));
  }
  if (won != 1) return std::nullopt;
  return mark;
}

void SendingMarks::Settle(const Line& line, SendingMark& mark, State state, std::string_view uuid,
                          std::string_view reply) const {
  const std::string kept = Shortened(reply);
  session_.Main().Execute(
      fmt::format("UPDATE EInvSending SET State={},uuid={},Reply={} WHERE {} AND Stamp={}",
                  QuoteStr(NameOf(state)), QuoteStr(uuid), QuoteStr(kept), KeyIs(line, mode_),
                  QuoteStr(mark.stamp)));
  mark.state = state;
  mark.uuid = uuid;
  mark.reply = kept;
}

void SendingMarks::SettleWithout(const Line& line, SendingMark& mark, const SendingMark& before,
                                 SendingMark::Answer answer, std::string_view why) const {
  // Never without a word: that is the sign of a sender who still waits.
  const bool keeps = answer == SendingMark::Answer::unsent && !before.reply.empty();
  Settle(line, mark, After(before, answer), before.uuid, keeps ? before.reply : why);
}

std::optional<Caption> FaultOfUuid(Connection& main, std::string_view uuid,
                                   const StatusReply& reply, std::string_view id) {
  if (reply.error || reply.uuid != uuid) {
    return Caption{fmt::format("The service knows no document {}", uuid),
                   fmt::format("服务上没有单据 {}", uuid)};
  }
  const std::string other = ScalarQuery(
      main, fmt::format("SELECT SID FROM SelfBillMast WHERE uuid={0} UNION ALL SELECT eInvID FROM "
                        "EInvMast WHERE uuid={0} AND eInvID<>{1}",
                        QuoteStr(uuid), QuoteStr(id)));
  if (other.empty()) return std::nullopt;
  return Caption{fmt::format("{} is the uuid of {}", uuid, other),
                 fmt::format("{} 是 {} 的 uuid", uuid, other)};
}

}  // namespace kaunter
