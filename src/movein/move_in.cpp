#include "movein/move_in.h"

#include <fmt/format.h>

#include <filesystem>

#include "core/identity.h"
#include "core/log.h"
#include "core/values.h"
#include "movein/file_trouble.h"
#include "movein/move_in_writer.h"

namespace kaunter {
namespace {

constexpr int kTellEach = 500;  // lines

// Reads a file into the staging database.
class Stager {
 public:
  Stager(Session& session, Staging& staging, MoveReport& report)
      : session_(session), staging_(staging), report_(report) {}

  // False when the person has ended it.
  bool Take(const MoveInSource& source, const MayGoOn& go_on) {
    const Mapping& mapping = source.mapping;
    TextSource text(source.path, mapping.encoding);
    CsvReader csv(text, mapping.separator);
    CsvRecord record;
    csv.Next(&record);
    const LineReader reader(session_.Main(), mapping, NamedHeadings(record.cells));
    MoveCounts& counts = report_.Of(mapping.kind);
    const Caption name = MoveKindCaption(mapping.kind);
    while (csv.Next(&record)) {
      Stage(mapping.kind, reader, record);
      if (++counts.lines % kTellEach != 0) continue;
      constexpr std::uintmax_t kKilo = 1024;
      if (!go_on({{fmt::format("Reading: {}", name.english), "读取：" + name.chinese},
                  static_cast<int>(text.done() / kKilo),
                  static_cast<int>(text.size() / kKilo) + 1})) {
        return false;
      }
    }
    return true;
  }

 private:
  void Stage(MoveKind kind, const LineReader& reader, const CsvRecord& record) {
    StagedLine line;
    line.kind = kind;
    line.line = record.line;
    LineTroubles troubles;
    line.texts = reader.Read(record, &troubles);
    for (LineTrouble& trouble : troubles) {
      line.refused = line.refused || trouble.refused;
      report_.Add(std::move(trouble));
    }
    if (kind == MoveKind::customers) {
      line.ic = TextOf(line.texts, "CustNIC");
      for (const char* column : {"TheirCode", "CustNIC", "CustOIC", "CustOthIC", "CompNo"}) {
        if (line.key.empty()) line.key = TextOf(line.texts, column);
      }
    } else {
      const char* const key = kind == MoveKind::loans ? "OldLoanCode" : "ReceiptNo";
      const char* const parent = kind == MoveKind::loans ? "Customer" : "Loan";
      line.key = TextOf(line.texts, key);
      line.parent = MaskNewIc(TextOf(line.texts, parent));
      if (line.parent.empty()) {
        RefuseStranded(line, parent);
        return;
      }
    }
    staging_.Add(line);
  }

  // Nothing leads to it.
  void RefuseStranded(const StagedLine& line, const char* parent) {
    ++report_.Of(line.kind).refused;
    if (line.refused) return;
    report_.Add({line.kind, line.line, parent, "",
                 line.kind == MoveKind::loans ? Caption{"Customer ID required", "请输入顾客编号"}
                                              : Caption{"Loan ID required", "请输入贷款编号"},
                 true});
  }

  Session& session_;
  Staging& staging_;
  MoveReport& report_;
};

class MoveRun {
 public:
  MoveRun(Session& session, const MoveInJob& job, bool write, const MayGoOn& go_on)
      : session_(session), job_(job), go_on_(go_on), staging_(session.clock) {
    if (!write) return;
    MovedFrom from;
    std::string* const names[] = {&from.customers, &from.loans, &from.payments};
    for (const MoveKind kind : kMoveKinds) {
      const auto& source = Source(kind);
      if (!source) continue;
      *names[static_cast<std::size_t>(kind)] =
          std::filesystem::path(source->path).filename().string();
    }
    writer_.emplace(session, job.company, from, staging_);
  }

  MoveReport Run() {
    Stager stager(session_, staging_, report_);
    for (const MoveKind kind : kMoveKinds) {
      if (Source(kind) && !stager.Take(*Source(kind), go_on_)) return std::move(report_);
    }
    staging_.Close();
    MovePlanner planner(session_, job_.company, staging_, report_);
    report_.complete = TakeCustomers(planner) && TakeStrangers(planner, MoveKind::loans) &&
                       TakeStrangers(planner, MoveKind::payments);
    return std::move(report_);
  }

 private:
  const std::optional<MoveInSource>& Source(MoveKind kind) const {
    return job_.sources[static_cast<std::size_t>(kind)];
  }

  bool TakeCustomers(MovePlanner& planner) {
    int behind = 0;
    for (auto page = staging_.Customers(behind); !page.empty(); page = staging_.Customers(behind)) {
      for (const StagedLine& line : page) {
        if (!GoOn()) return false;
        behind = line.line;
        Store(planner.OfLine(line));
      }
    }
    return true;
  }

  bool TakeStrangers(MovePlanner& planner, MoveKind kind) {
    std::string behind;
    for (auto key = staging_.NextStranger(kind, behind); key;
         key = staging_.NextStranger(kind, behind)) {
      if (!GoOn()) return false;
      behind = *key;
      Store(planner.OfStranger(kind, *key));
    }
    return true;
  }

  void Store(CustomerPlan plan) {
    if (!writer_ || plan.Empty() || writer_->Write(plan)) return;
    throw std::runtime_error(session_.In(
        {fmt::format("Another desktop has taken the customer {} or what belongs to it meanwhile. "
                     "Run the dry run again",
                     plan.key),
         fmt::format("另一台电脑刚搬入了顾客 {} 或其资料。请再试搬一次", plan.key)}));
  }

  bool GoOn() {
    int done = 0;
    int total = 0;
    for (const MoveCounts& counts : report_.counts) {
      done += counts.known + counts.refused + counts.waiting + counts.good;
      total += counts.lines;
    }
    return go_on_(
        {writer_ ? Caption{"Moving in", "搬入"} : Caption{"Checking", "检查"}, done, total});
  }

  Session& session_;
  const MoveInJob& job_;
  const MayGoOn& go_on_;
  Staging staging_;
  MoveReport report_;
  std::optional<MoveWriter> writer_;
};

}  // namespace

FileLook LookAt(const std::string& path, Encoding encoding, char separator, std::size_t samples) {
  TextSource text(path, encoding);
  CsvReader csv(text, separator);
  FileLook look;
  look.encoding = text.encoding();
  look.separator = csv.separator();
  CsvRecord record;
  if (csv.Next(&record)) look.headings = NamedHeadings(record.cells);
  while (look.samples.size() < samples && csv.Next(&record)) look.samples.push_back(record);
  return look;
}

MoveReport MoveIn(Session& session, const MoveInJob& job, bool write, const MayGoOn& go_on) {
  return MoveRun(session, job, write, go_on).Run();
}

}  // namespace kaunter
