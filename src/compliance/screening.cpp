#include "compliance/screening.h"

#include <fmt/format.h>

#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>

#include "compliance/watch_list.h"
#include "core/central_database.h"
#include "core/log.h"
#include "core/session.h"
#include "core/values.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

// What is looked up: one number, in the column of its kind.
struct Lookup {
  std::string number;
  std::string_view column;
  std::string_view kind;  // as the message names it
};

Lookup FirstOf(const IdentityNumbers& asked) {
  if (!asked.ic.empty()) return {asked.ic, "NRIC", "IC"};
  return {asked.passport1.empty() ? asked.passport2 : asked.passport1, "PassportNo", "Passport No"};
}

// The first entry of the list with the number, as the message tells it; "" when there is none.
std::string FindEntry(Connection& connection, const Lookup& lookup, std::string_view list) {
  const Recordset entry =
      connection.Query(fmt::format("SELECT RefNo,Name,{0},OtherInformation FROM {2} {0}={1}",
                                   lookup.column, QuoteStr(lookup.number), list));
  if (entry.Eof()) return {};
  return fmt::format("AML/CFT detected on {}: {}\n\nRef. No.: {}\n\nName: {}\n\n{}", lookup.kind,
                     NullToEmpty(entry.Field(lookup.column)), NullToEmpty(entry.Field("RefNo")),
                     NullToEmpty(entry.Field("Name")),
                     NullToEmpty(entry.Field("OtherInformation")));
}

// Shared with the thread that asks the list, which may go on when nobody waits for it any more.
class Answers {
 public:
  explicit Answers(std::vector<Lookup> lookups) : lookups_(std::move(lookups)) {
    entries_.resize(lookups_.size());
  }
  void AskAll(Connection& central) {
    for (std::size_t i = 0; i < lookups_.size(); ++i) {
      std::string entry = FindEntry(central, lookups_[i], "AMLAMast WHERE");
      const std::lock_guard lock(mutex_);
      entries_[i] = std::move(entry);
    }
  }
  // What was answered so far; a number that was not has none.
  std::vector<std::optional<std::string>> SoFar() {
    const std::lock_guard lock(mutex_);
    return entries_;
  }

 private:
  const std::vector<Lookup> lookups_;
  std::mutex mutex_;
  std::vector<std::optional<std::string>> entries_;
};

// The numbers stand in the log, so that they can be looked up by hand.
void Note(const Session& session, const std::string& line, const Caption& status) {
  try {
    WriteLog(session, LogLine(session, " - AML/CFT screening of " + line));
  } catch (const std::exception&) {
    // A log that cannot be written must not stop the counter either.
  }
  if (session.status) session.status(session.In(status));
}

// The office's own copy, where that is to serve; nothing where it is not, or cannot be had.
std::optional<WatchCopy> CopyToServe(Session& session) {
  try {
    return UsesCopy(session.Main()) ? CopyInUse(session.Main()) : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<std::string> FindInCopy(Session& session, const WatchCopy& copy,
                                      const Lookup& lookup) {
  try {
    std::string text =
        FindEntry(session.Main(), lookup, fmt::format("AMLACopy WHERE CopyID={} AND", copy.CopyID));
    if (text.empty()) return text;
    const std::string date = ShowDateTime(copy.CopyDate);
    return text + "\n\n" +
           session.In({fmt::format("From the office's copy of the list, taken {}. The central "
                                   "database is away.",
                                   date),
                       fmt::format("取自本公司于 {} 备存的名单副本。中央数据库无法连接。", date)});
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

// Why the list did not answer all; "" when it did.
std::string Ask(const Session& session, const std::shared_ptr<Answers>& answers, Line line) {
  if (line == Line::is_down) return "the central database did not answer just before";
  try {
    if (!HasCentralDatabase(session)) return "no data source AMLA on this PC";
    AskCentralDatabase(session, kScreeningTime,
                       [answers](Connection& central) { answers->AskAll(central); });
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return {};
}

}  // namespace

std::vector<ScreeningResult> LookUpIdentities(Session& session,
                                              const std::vector<IdentityNumbers>& asked,
                                              Line line) {
  std::vector<ScreeningResult> results(asked.size());
  if (!session.settings.AMLA || !session.aml.AMLA || !session.aml.AMLACheckIC) return results;
  std::vector<Lookup> lookups;
  std::vector<std::size_t> places;  // of each look-up among those asked
  for (std::size_t i = 0; i < asked.size(); ++i) {
    Lookup lookup = FirstOf(asked[i]);
    if (lookup.number.empty()) continue;
    lookups.push_back(std::move(lookup));
    places.push_back(i);
  }
  if (lookups.empty()) return results;
  const auto answers = std::make_shared<Answers>(lookups);
  const std::string why = Ask(session, answers, line);
  auto entries = answers->SoFar();
  const auto copy = why.empty() ? std::nullopt : CopyToServe(session);
  std::string by_copy;
  std::string unanswered;
  for (std::size_t i = 0; i < lookups.size(); ++i) {
    ScreeningResult& result = results[places[i]];
    result.line_down = !entries[i];
    if (!entries[i] && copy) {
      entries[i] = FindInCopy(session, *copy, lookups[i]);
      if (entries[i]) by_copy += (by_copy.empty() ? "" : ", ") + lookups[i].number;
    }
    if (!entries[i]) {
      result.found = Screening::away;
      unanswered += (unanswered.empty() ? "" : ", ") + lookups[i].number;
    } else if (!entries[i]->empty()) {
      result.found = Screening::hit;
      result.text = *entries[i];
    }
  }
  if (!by_copy.empty()) {
    const std::string date = ShowDateTime(copy->CopyDate);
    Note(session, fmt::format("{} by the copy of {}: {}", by_copy, date, why),
         {fmt::format("AML/CFT screening by the copy of {}: the central database is away", date),
          fmt::format("反洗钱名单以 {} 的副本核对：中央数据库无法连接", date)});
  }
  if (!unanswered.empty()) {
    Note(session, fmt::format("{} not done: {}", unanswered, why),
         {"AML/CFT screening not done: the central database is away",
          "未能核对反洗钱名单：中央数据库无法连接"});
  }
  return results;
}

void TellHit(Desk& desk, const ScreeningResult& hit) {
  desk.Message(MessageKind::warning, "AML/CFT Screening", hit.text);
}

ScreeningResult ScreenIdentity(Session& session, Desk& desk, const IdentityNumbers& asked,
                               Line line) {
  ScreeningResult result = LookUpIdentities(session, {asked}, line).front();
  if (result.found == Screening::hit) TellHit(desk, result);
  return result;
}

}  // namespace kaunter
