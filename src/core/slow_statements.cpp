#include "core/slow_statements.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>

#include "core/log_files.h"
#include "core/secrets.h"
#include "core/session.h"
#include "platform/rolling_file.h"
#include "platform/sql/slow_sink.h"

namespace kaunter {
namespace {

constexpr std::string_view kKind = "slow";
constexpr std::size_t kLongestText = 500;
constexpr std::uintmax_t kLargest = 256UL << 10U;  // some thousand lines

// "14:05:09<tab>812<tab>MainConn<tab>statement"
void AddLine(const std::string& line, std::map<std::string, SlowStatement>* found) {
  const std::size_t time = line.find('\t');
  const std::size_t took = time == std::string::npos ? time : line.find('\t', time + 1);
  const std::size_t name = took == std::string::npos ? took : line.find('\t', took + 1);
  if (name == std::string::npos) return;
  long milliseconds = 0;
  std::from_chars(line.data() + time + 1, line.data() + took, milliseconds);
  const std::string text = line.substr(name + 1);
  SlowStatement& statement = (*found)[text];
  statement.statement = text;
  ++statement.times;
  statement.total += milliseconds;
  statement.longest = std::max(statement.longest, milliseconds);
}

}  // namespace

void NoteSlowStatements(const Session& session, std::chrono::milliseconds from) {
  // By value: a connection may outlive its session.
  SetSlowSink(from,
              [folder = LogFolder(session), clock = session.clock](
                  std::string_view name, std::string_view sql, std::chrono::milliseconds took) {
                const DateTime now = clock.Now();
                std::string text = WithoutLiterals(sql);
                if (text.size() > kLongestText) text = text.substr(0, kLongestText) + "...";
                RollingFile(DayFilePath(folder, kKind, now), kLargest, 1)
                    .Add(fmt::format("{:02}:{:02}:{:02}\t{}\t{}\t{}\n", now.hour, now.minute,
                                     now.second, took.count(), name, text));
              });
}

std::vector<SlowStatement> SlowStatementsOf(const Session& session, const DateTime& day) {
  std::map<std::string, SlowStatement> found;
  const std::string path = DayFilePath(LogFolder(session), kKind, day).string();
  for (const char* behind : {"", ".1"}) {
    std::ifstream file(path + behind);
    for (std::string line; std::getline(file, line);) AddLine(line, &found);
  }
  std::vector<SlowStatement> statements;
  for (auto& [text, statement] : found) statements.push_back(std::move(statement));
  std::stable_sort(
      statements.begin(), statements.end(),
      [](const SlowStatement& a, const SlowStatement& b) { return a.total > b.total; });
  return statements;
}

}  // namespace kaunter
