#include "compliance/watch_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "core/central_database.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/staged_rows.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr std::string_view kUsesCopy = "UseWatchListCopy";
constexpr std::size_t kRowsTogether = 500;         // in one transaction
constexpr std::chrono::minutes kLongestFetch(30);  // a stop comes before
constexpr int kAbandonedAfterDays = 1;

WatchEntry EntryOf(const Recordset& row) {
  const auto text = [&row](std::string_view column) {
    return Trim(NullToEmpty(row.Field(column)));
  };
  return {text("RefNo"), text("Name"), text("NRIC"), text("PassportNo"), text("OtherInformation")};
}

std::vector<WatchEntry> EntriesOf(Recordset rows) {
  std::vector<WatchEntry> entries;
  entries.reserve(rows.RowCount());
  for (; !rows.Eof(); rows.MoveNext()) entries.push_back(EntryOf(rows));
  return entries;
}

// What no desktop reads any more: copies older than the one before that in use, and those that
// nobody has finished for a day.
void DropOldCopies(Connection& main, const DateTime& now, int in_use) {
  const std::string before =
      ScalarQuery(main, fmt::format("SELECT MAX(CopyID) FROM AMLACopyHead WHERE Finished='1' AND "
                                    "CopyID<{}",
                                    in_use));
  const std::string old =
      fmt::format("(Finished='1' AND CopyID<{}) OR (Finished='0' AND CopyDate<{})",
                  before.empty() ? "0" : before, SqlDateTime(now.AddDays(-kAbandonedAfterDays)));
  Transaction transaction(main);
  main.Execute("DELETE FROM AMLACopy WHERE CopyID IN (SELECT CopyID FROM AMLACopyHead WHERE " +
               old + ")");
  main.Execute("DELETE FROM AMLACopyHead WHERE " + old);
  transaction.Commit();
}

int BeginCopy(Session& session, const DateTime& now, std::size_t entries) {
  Connection& main = session.Main();
  Transaction transaction(main);
  const int id = CLng(ScalarQuery(main, "SELECT isnull(MAX(CopyID),0)+1 FROM AMLACopyHead"));
  main.Execute(fmt::format(
      "INSERT INTO AMLACopyHead (CopyID,CopyDate,Entries,Finished,UserID) VALUES ({},{},{},'0',{})",
      id, SqlDateTime(now), entries, QuoteStr(session.CurrentUserID)));
  transaction.Commit();
  return id;
}

void FinishCopy(const Session& session, int id, std::size_t entries) {
  Connection& main = session.Main();
  Transaction transaction(main);
  const std::string kept =
      ScalarQuery(main, fmt::format("SELECT COUNT(*) FROM AMLACopy WHERE CopyID={}", id));
  if (kept != std::to_string(entries)) {
    throw std::runtime_error(
        session.In({fmt::format("{} of {} entries are there: take the copy again", kept, entries),
                    fmt::format("{} 项中只有 {} 项：请重新取得副本", entries, kept)}));
  }
  main.Execute(fmt::format("UPDATE AMLACopyHead SET Finished='1' WHERE CopyID={}", id));
  transaction.Commit();
}

}  // namespace

std::optional<WatchCopy> CopyInUse(Connection& main) {
  const Recordset head = main.Query(
      "SELECT CopyID,CopyDate,Entries,UserID FROM AMLACopyHead WHERE CopyID=(SELECT MAX(CopyID) "
      "FROM AMLACopyHead WHERE Finished='1')");
  if (head.Eof()) return std::nullopt;
  return WatchCopy{CLng(NullToEmpty(head.Field("CopyID"))), *head.Field("CopyDate").AsDate(),
                   CLng(NullToEmpty(head.Field("Entries"))), NullToEmpty(head.Field("UserID"))};
}

std::vector<WatchEntry> ReadCopy(const Session& session, const WatchCopy& copy) {
  auto entries = EntriesOf(session.Main().Query(
      fmt::format("SELECT RefNo,Name,NRIC,PassportNo,OtherInformation FROM AMLACopy WHERE "
                  "CopyID={} ORDER BY EntryNo",
                  copy.CopyID)));
  if (entries.size() != static_cast<std::size_t>(copy.entries)) {
    throw std::runtime_error(session.In(
        {fmt::format("The copy of the watch list has {} of its {} entries: take it again",
                     entries.size(), copy.entries),
         fmt::format("名单副本的 {} 项中只有 {} 项：请重新取得副本", copy.entries,
                     entries.size())}));
  }
  return entries;
}

bool UsesCopy(Connection& main) { return ReadSetting(main, kUsesCopy) == "1"; }

void SetUsesCopy(Connection& main, bool on) {
  Transaction transaction(main);
  main.Execute(fmt::format("DELETE FROM Systemast WHERE Param={}", QuoteStr(kUsesCopy)));
  main.Execute(fmt::format("INSERT INTO Systemast (Param,Value) VALUES ({},'{}')",
                           QuoteStr(kUsesCopy), on ? 1 : 0));
  transaction.Commit();
}

std::vector<WatchEntry> FetchWatchList(const Session& session) {
  auto entries =
      EntriesOf(ReadCentralDatabase(
                    session, {"SELECT RefNo,Name,NRIC,PassportNo,OtherInformation FROM AMLAMast"},
                    kLongestFetch)
                    .front());
  // A row twice would have to be decided twice.
  std::ranges::sort(entries);
  entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
  if (entries.empty()) {
    throw std::runtime_error(session.In({"The central list has no entry; the copy stays as it was",
                                         "中央名单没有任何资料；副本保持不变"}));
  }
  return entries;
}

bool StoreCopy(Session& session, const std::vector<WatchEntry>& entries,
               const std::function<bool(int done)>& progress) {
  Connection& main = session.Main();
  const DateTime now = ServerTime(main);
  const int id = BeginCopy(session, now, entries.size());
  for (std::size_t first = 0; first < entries.size(); first += kRowsTogether) {
    if (!progress(static_cast<int>(first))) return false;
    const std::size_t end = std::min(first + kRowsTogether, entries.size());
    Transaction transaction(main);
    Batch batch;
    for (std::size_t i = first; i < end; ++i) {
      const WatchEntry& entry = entries[i];
      batch.Add(
          fmt::format("INSERT INTO AMLACopy "
                      "(CopyID,EntryNo,RefNo,Name,NRIC,PassportNo,OtherInformation) VALUES "
                      "({},{},{},{},{},{},{})",
                      id, i + 1, QuoteStr(entry.RefNo), QuoteStr(entry.Name), QuoteStr(entry.NRIC),
                      QuoteStr(entry.PassportNo), QuoteStr(entry.OtherInformation)));
      batch.SendWhenFull(main);
    }
    batch.Send(main);
    transaction.Commit();
  }
  FinishCopy(session, id, entries.size());
  try {
    DropOldCopies(main, now, id);
  } catch (const SqlError&) {
    // They go with the next copy; this one is in use.
  }
  return true;
}

}  // namespace kaunter
