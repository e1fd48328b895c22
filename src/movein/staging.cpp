#include "movein/staging.h"

#include <fmt/format.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <stdexcept>

#include "core/values.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

constexpr int kPage = 200;
constexpr char kUnit = '\x1F';    // between a column and its text
constexpr char kRecord = '\x1E';  // behind the text

std::string Packed(const Texts& texts) {
  std::string packed;
  for (const auto& [column, text] : texts) packed += column + kUnit + text + kRecord;
  return packed;
}

Texts Unpacked(std::string_view packed) {
  Texts texts;
  while (!packed.empty()) {
    const auto unit = packed.find(kUnit);
    const auto end = packed.find(kRecord, unit);
    texts.emplace(packed.substr(0, unit), packed.substr(unit + 1, end - unit - 1));
    packed.remove_prefix(end + 1);
  }
  return texts;
}

// Text order is the order of the days.
std::string DayKey(const Texts& texts) {
  const auto day = DateTime::FromDisplay(TextOf(texts, "PayDate"));
  return day ? day->ToCanonical() : "";
}

// "kaunter-movein-<process>-XXXXXX". What a killed run has left, personal data, goes now.
constexpr std::string_view kFolder = "kaunter-movein-";

void RemoveLeftovers(const std::filesystem::path& place) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(place, ignored)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kFolder)) continue;
    const int process = std::atoi(name.c_str() + kFolder.size());
    const bool alive = process <= 0 || kill(process, 0) == 0 || errno != ESRCH;
    if (!alive) std::filesystem::remove_all(entry.path(), ignored);
  }
}

std::filesystem::path OwnFolder() {
  const std::filesystem::path place = std::filesystem::temp_directory_path();
  RemoveLeftovers(place);
  std::string name = (place / fmt::format("{}{}-XXXXXX", kFolder, getpid())).string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("No room for the lines of the files in " + name);
  }
  return name;
}

int KindNumber(MoveKind kind) { return static_cast<int>(kind); }

}  // namespace

Staging::Staging(const Clock& clock) : folder_(OwnFolder()) {
  lines_ = OpenSqlite("MoveIn", (folder_ / "lines.db").string(), true, clock);
  lines_->Execute(
      "CREATE TABLE Staged (Kind int NOT NULL, FileLine int NOT NULL, OldKey nvarchar(100) NOT "
      "NULL, IC nvarchar(100) NOT NULL, Parent nvarchar(100) NOT NULL, DayKey nvarchar(20) NOT "
      "NULL, Refused int NOT NULL, Cells nvarchar(max) NULL, CONSTRAINT PK_Staged PRIMARY KEY "
      "(Kind,FileLine))");
  lines_->BeginTrans();
}

Staging::~Staging() {
  lines_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void Staging::Add(const StagedLine& line) {
  lines_->Execute(
      fmt::format("INSERT INTO Staged (Kind,FileLine,OldKey,IC,Parent,DayKey,Refused,Cells) VALUES "
                  "({},{},{},{},{},{},{},{})",
                  KindNumber(line.kind), line.line, QuoteStr(line.key), QuoteStr(line.ic),
                  QuoteStr(line.parent), QuoteStr(DayKey(line.texts)), line.refused ? 1 : 0,
                  QuoteStr(Packed(line.texts))));
}

void Staging::Close() {
  lines_->CommitTrans();
  for (const char* index :
       {"CREATE INDEX IX_Staged_Key ON Staged (Kind,OldKey,FileLine)",
        "CREATE INDEX IX_Staged_IC ON Staged (Kind,IC,FileLine)",
        "CREATE INDEX IX_Staged_Parent ON Staged (Kind,Parent,DayKey,FileLine)"}) {
    lines_->Execute(index);
  }
}

std::vector<StagedLine> Staging::Read(const std::string& where, const std::string& order,
                                      int most) {
  std::vector<StagedLine> lines;
  for (Recordset row = lines_->Query(fmt::format(
           "SELECT {}Kind,FileLine,OldKey,IC,Parent,Refused,Cells FROM Staged WHERE {} ORDER BY {}",
           most > 0 ? fmt::format("TOP {} ", most) : "", where, order));
       !row.Eof(); row.MoveNext()) {
    StagedLine line;
    line.kind = static_cast<MoveKind>(CLng(row.Field(0).ToText()));
    line.line = CLng(row.Field(1).ToText());
    line.key = NullToEmpty(row.Field(2));
    line.ic = NullToEmpty(row.Field(3));
    line.parent = NullToEmpty(row.Field(4));
    line.refused = row.Field(5).ToText() == "1";
    line.texts = Unpacked(NullToEmpty(row.Field(6)));
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<StagedLine> Staging::Customers(int behind) {
  return Read(fmt::format("Kind={} AND FileLine>{}", KindNumber(MoveKind::customers), behind),
              "FileLine", kPage);
}

std::optional<std::string> Staging::NextStranger(MoveKind kind, std::string_view behind) {
  const int above = KindNumber(kind) - 1;
  std::string known = fmt::format(
      "NOT EXISTS (SELECT b.FileLine FROM Staged as b WHERE b.Kind={} AND b.OldKey=a.Parent)",
      above);
  if (kind == MoveKind::loans) {
    known += fmt::format(
        " AND NOT EXISTS (SELECT c.FileLine FROM Staged as c WHERE c.Kind={} AND c.IC=a.Parent)",
        above);
  }
  const Recordset row = lines_->Query(fmt::format(
      "SELECT TOP 1 a.Parent FROM Staged as a WHERE a.Kind={} AND a.Parent>{} AND {} ORDER BY "
      "a.Parent",
      KindNumber(kind), QuoteStr(behind), known));
  if (row.Eof()) return std::nullopt;
  return NullToEmpty(row.Field(0));
}

std::vector<StagedLine> Staging::LoansOf(std::string_view customer, std::string_view ic) {
  std::string where = fmt::format("Kind={} AND ", KindNumber(MoveKind::loans));
  where += ic.empty() ? "Parent=" + QuoteStr(customer)
                      : fmt::format("Parent IN ({},{})", QuoteStr(customer), QuoteStr(ic));
  return Read(where, "FileLine", 0);
}

std::vector<StagedLine> Staging::PaymentsOf(std::string_view loan) {
  return Read(fmt::format("Kind={} AND Parent={}", KindNumber(MoveKind::payments), QuoteStr(loan)),
              "DayKey,FileLine", 0);
}

std::optional<StagedLine> Staging::Earlier(const StagedLine& line) {
  if (line.key.empty()) return std::nullopt;
  std::vector<StagedLine> lines =
      Read(fmt::format("Kind={} AND OldKey={} AND FileLine<{}", KindNumber(line.kind),
                       QuoteStr(line.key), line.line),
           "FileLine", 1);
  if (lines.empty()) return std::nullopt;
  return std::move(lines.front());
}

std::optional<int> Staging::EarlierIc(const StagedLine& line) {
  if (line.ic.empty()) return std::nullopt;
  const Recordset row = lines_->Query(
      fmt::format("SELECT MIN(FileLine) FROM Staged WHERE Kind={} AND IC={} AND FileLine<{}",
                  KindNumber(line.kind), QuoteStr(line.ic), line.line));
  if (row.Eof() || row.Field(0).IsNull()) return std::nullopt;
  return CLng(row.Field(0).ToText());
}

}  // namespace kaunter
