#include "movein/staging.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "core/values.h"
#include "platform/private_file.h"
#include "platform/process.h"
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
    if (process > 0 && !ProcessRuns(process)) std::filesystem::remove_all(entry.path(), ignored);
  }
}

std::filesystem::path OwnFolder() {
  const std::filesystem::path place = std::filesystem::temp_directory_path();
  RemoveLeftovers(place);
  return MakePrivateFolder((place / fmt::format("{}{}-", kFolder, ThisProcess())).string());
}

// A table a kind: an index then begins with what its lines are looked up by.
std::string TableName(MoveKind kind) { return fmt::format("Staged_{}", MoveKindName(kind)); }

}  // namespace

Staging::Staging(const Clock& clock) : folder_(OwnFolder()) {
  lines_ = OpenSqlite("MoveIn", (folder_ / "lines.db").string(), true, clock);
  for (const MoveKind kind : kMoveKinds) {
    lines_->Execute(fmt::format(
        "CREATE TABLE {0} (FileLine int NOT NULL, OldKey nvarchar(100) NOT NULL, IC nvarchar(100) "
        "NOT NULL, Parent nvarchar(100) NOT NULL, DayKey nvarchar(20) NOT NULL, Refused int NOT "
        "NULL, Cells nvarchar(max) NULL, CONSTRAINT PK_{0} PRIMARY KEY (FileLine))",
        TableName(kind)));
  }
  lines_->BeginTrans();
}

Staging::~Staging() {
  lines_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void Staging::Add(const StagedLine& line) {
  lines_->Execute(fmt::format(
      "INSERT INTO {} (FileLine,OldKey,IC,Parent,DayKey,Refused,Cells) VALUES "
      "({},{},{},{},{},{},{})",
      TableName(line.kind), line.line, QuoteStr(line.key), QuoteStr(line.ic), QuoteStr(line.parent),
      QuoteStr(DayKey(line.texts)), line.refused ? 1 : 0, QuoteStr(Packed(line.texts))));
}

void Staging::Close() {
  lines_->CommitTrans();
  for (const MoveKind kind : kMoveKinds) {
    for (const char* columns : {"OldKey,FileLine", "IC,FileLine", "Parent,DayKey,FileLine"}) {
      std::string name = columns;
      std::replace(name.begin(), name.end(), ',', '_');
      lines_->Execute(
          fmt::format("CREATE INDEX IX_{0}_{1} ON {0} ({2})", TableName(kind), name, columns));
    }
  }
}

std::vector<StagedLine> Staging::Read(MoveKind kind, const std::string& where,
                                      const std::string& order, int most) {
  std::vector<StagedLine> lines;
  for (Recordset row = lines_->Query(fmt::format(
           "SELECT {}FileLine,OldKey,IC,Parent,Refused,Cells FROM {} WHERE {} ORDER BY {}",
           most > 0 ? fmt::format("TOP {} ", most) : "", TableName(kind), where, order));
       !row.Eof(); row.MoveNext()) {
    StagedLine line;
    line.kind = kind;
    line.line = CLng(row.Field(0).ToText());
    line.key = NullToEmpty(row.Field(1));
    line.ic = NullToEmpty(row.Field(2));
    line.parent = NullToEmpty(row.Field(3));
    line.refused = row.Field(4).ToText() == "1";
    line.texts = Unpacked(NullToEmpty(row.Field(5)));
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<StagedLine> Staging::Customers(int behind) {
  return Read(MoveKind::customers, fmt::format("FileLine>{}", behind), "FileLine", kPage);
}

std::optional<std::string> Staging::NextStranger(MoveKind kind, std::string_view behind) {
  const std::string above =
      TableName(kind == MoveKind::loans ? MoveKind::customers : MoveKind::loans);
  std::string known =
      fmt::format("NOT EXISTS (SELECT b.FileLine FROM {} as b WHERE b.OldKey=a.Parent)", above);
  if (kind == MoveKind::loans) {
    known +=
        fmt::format(" AND NOT EXISTS (SELECT c.FileLine FROM {} as c WHERE c.IC=a.Parent)", above);
  }
  const Recordset row = lines_->Query(
      fmt::format("SELECT TOP 1 a.Parent FROM {} as a WHERE a.Parent>{} AND {} ORDER BY a.Parent",
                  TableName(kind), QuoteStr(behind), known));
  if (row.Eof()) return std::nullopt;
  return NullToEmpty(row.Field(0));
}

std::vector<StagedLine> Staging::LoansOf(std::string_view customer, std::string_view ic) {
  const std::string where =
      ic.empty() ? "Parent=" + QuoteStr(customer)
                 : fmt::format("Parent IN ({},{})", QuoteStr(customer), QuoteStr(ic));
  return Read(MoveKind::loans, where, "FileLine", 0);
}

std::vector<StagedLine> Staging::PaymentsOf(std::string_view loan) {
  return Read(MoveKind::payments, "Parent=" + QuoteStr(loan), "DayKey,FileLine", 0);
}

std::optional<StagedLine> Staging::Earlier(const StagedLine& line) {
  if (line.key.empty()) return std::nullopt;
  std::vector<StagedLine> lines =
      Read(line.kind, fmt::format("OldKey={} AND FileLine<{}", QuoteStr(line.key), line.line),
           "FileLine", 1);
  if (lines.empty()) return std::nullopt;
  return std::move(lines.front());
}

std::optional<int> Staging::EarlierIc(const StagedLine& line) {
  if (line.ic.empty()) return std::nullopt;
  const Recordset row =
      lines_->Query(fmt::format("SELECT MIN(FileLine) FROM {} WHERE IC={} AND FileLine<{}",
                                TableName(MoveKind::customers), QuoteStr(line.ic), line.line));
  if (row.Eof() || row.Field(0).IsNull()) return std::nullopt;
  return CLng(row.Field(0).ToText());
}

bool Staging::HasReceipt(std::string_view number) {
  return !lines_
              ->Query(fmt::format("SELECT TOP 1 FileLine FROM {} WHERE OldKey={}",
                                  TableName(MoveKind::payments), QuoteStr(number)))
              .Eof();
}

}  // namespace kaunter
