#include "movein/move_in_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "collections/ledger_check.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/places.h"
#include "core/session_report.h"
#include "core/staged_rows.h"
#include "core/telling.h"
#include "core/values.h"
#include "movein/file_trouble.h"
#include "movein/trouble_list.h"
#include "platform/host.h"
#include "platform/sql/transaction.h"
#include "platform/whole_file.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;
constexpr std::size_t kSamples = 500;
constexpr std::size_t kMostShown = 2000;
constexpr std::size_t kOnPaper = 120;  // characters of a cell
constexpr const char* kList = "MoveInList.rpt";
constexpr const char* kFiles = "CSV (*.csv *.txt *.tsv)";
constexpr std::string_view kExtension = ".map";

enum MapColumn { kOurs, kTheirs, kFixed, kCell, kTaken };

const Caption kFailed{"an error occur during moving old data in", "搬入旧资料时发生错误"};

std::vector<GridColumn> MapColumns() {
  return {{{"Our Field", "我们的栏位"}, Kind::text, 20},
          {{"Their Column", "他们的栏"}, Kind::text, 22, true},
          {{"Where Blank", "空白时"}, Kind::text, 16, true},
          {{"In the File", "文件内容"}, Kind::text, 22},
          {{"Is Taken As", "当作"}, Kind::text, 26, true}};
}

// Of a person who reads it: no doubt about day and month.
std::string InWords(std::string_view shown) {
  const auto date = DateTime::FromDisplay(shown);
  return date ? Format(*date, "d mmm yyyy") : std::string(shown);
}

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace

MovePage::MovePage(MoveInFrm& form, Tab& tab, MoveKind of)
    : kind(of),
      suffix(fmt::format("({})", static_cast<int>(of))),
      screen(form),
      page(form, std::string(MoveKindName(of)) + "Page", MoveKindCaption(of), tab),
      MapDG(form, "MapDG" + suffix, {}, MapColumns()) {
  mapping.kind = of;
}

MoveInFrm::MoveInFrm(Session& session, Desk& desk)
    : SessionScreen("MoveInFrm", {"Move Old Data In", "搬入旧资料"}, session, desk) {
  for (MovePage& page : pages) Bind(page);
  CmdDry.onClick = [this] { DryRun(); };
  SaveCmd.onClick = [this] { Move(); };
  CmdPrint.onClick = [this] { PrintList(); };
  CmdExport.onClick = [this] { ExportList(); };
}

void MoveInFrm::Bind(MovePage& page) {
  page.CmdFile.onClick = [this, &page] { ChooseFile(page); };
  page.File.onLeave = [this, &page] {
    page.File.SetText(Trim(page.File.text()));
    if (page.File.text() != page.File.left_text() || !page.look) TakeFile(page, true);
  };
  page.MapName.onPick = [this, &page] { TakeMapping(page); };
  page.CmdKeep.onClick = [this, &page] { KeepMapping(page); };
  for (ComboBox* box : {&page.Days, &page.Decimal}) {
    box->onPick = [this, &page] {
      TakeChoices(page);
      ShowSamples(page);
    };
  }
  for (ComboBox* box : {&page.Separator, &page.Letters}) {
    box->onPick = [this, &page] {
      TakeChoices(page);
      TakeFile(page, false);
    };
  }
  page.MapDG.onCellLeave = [this, &page](int row, int column, const std::string& before) {
    EditMapping(page, row, column, before);
  };
}

void MoveInFrm::Load() {
  for (MovePage& page : pages) ShowMapping(page);
  CmdPrint.SetEnabled(false);
  CmdExport.SetEnabled(false);
  // Who sees the figures of the books alone amends no loan.
  if (session().CurrentLevel < kLevel || session().Special) {
    for (Control* control : std::initializer_list<Control*>{&Pages, &CompCode, &CmdDry, &SaveCmd}) {
      control->SetEnabled(false);
    }
    Refuse({fmt::format("User {} Level not allow to move old data in", session().CurrentUserID),
            fmt::format("用户 {} 的级别不可搬入旧资料", session().CurrentUserID)});
    return;
  }
  FillCompanies(CompCode, session());
  ChooseHome(session(), CompCode);
  FillMappings();
}

// --- the files and their mappings

void MoveInFrm::ChooseFile(MovePage& page) {
  const std::string file =
      desk().PickFile(session().In(MoveKindCaption(page.kind)), PickStart(session()), kFiles);
  if (file.empty()) return;
  page.File.SetText(file);
  TakeFile(page, true);
}

void MoveInFrm::TakeFile(MovePage& page, bool guess) {
  page.look.reset();
  page.File.SetMark(false);
  if (!page.File.empty()) {
    try {
      const Hourglass busy(desk());
      page.look = LookAt(page.File.text(), page.mapping.encoding, page.mapping.separator, kSamples);
    } catch (const FileTrouble& trouble) {
      Refuse(page.File, trouble.text);
    }
  }
  if (page.look && guess && page.MapName.empty()) {
    const Mapping before = page.mapping;
    page.mapping = GuessMapping(page.kind, page.look->headings);
    page.mapping.days = before.days;
    page.mapping.decimal = before.decimal;
    page.mapping.separator = before.separator;
    page.mapping.encoding = before.encoding;
  }
  ShowMapping(page);
}

std::string MoveInFrm::MappingFolder() const { return session().AppPath + "/MoveIn"; }

void MoveInFrm::FillMappings() {
  std::array<std::vector<std::string>, 3> names;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(MappingFolder(), none)) {
    if (entry.path().extension() != kExtension) continue;
    try {
      const Mapping mapping = ParseMapping(FileText(entry.path().string()));
      names[static_cast<std::size_t>(mapping.kind)].push_back(entry.path().stem().string());
    } catch (const FileTrouble&) {
      // Told when it is chosen by its name.
    }
  }
  for (MovePage& page : pages) {
    std::vector<std::string>& own = names[static_cast<std::size_t>(page.kind)];
    std::sort(own.begin(), own.end());
    page.MapName.SetItems(std::move(own));
  }
}

void MoveInFrm::TakeMapping(MovePage& page) {
  const std::string path =
      fmt::format("{}/{}{}", MappingFolder(), FileNameOf(page.MapName.text()), kExtension);
  if (page.MapName.empty() || !std::filesystem::exists(path)) return;  // the name of a new one
  try {
    Mapping mapping = ParseMapping(FileText(path));
    if (mapping.kind != page.kind) {
      Refuse(page.MapName, {"This mapping is for another kind of file", "此对照不是这类文件的"});
      return;
    }
    page.mapping = std::move(mapping);
  } catch (const FileTrouble& trouble) {
    Refuse(page.MapName, trouble.text);
    return;
  }
  TakeFile(page, false);
}

void MoveInFrm::KeepMapping(MovePage& page) {
  page.MapName.SetText(Trim(page.MapName.text()));
  const std::string name = FileNameOf(page.MapName.text());
  if (name.empty()) {
    Refuse(page.MapName, {"Give the mapping a name first", "请先给对照一个名称"});
    return;
  }
  const std::string path = fmt::format("{}/{}{}", MappingFolder(), name, kExtension);
  if (std::filesystem::exists(path) &&
      !ConfirmLoss({fmt::format("A mapping {} is kept already. Replace it ?", name),
                    fmt::format("对照 {} 已存在。要取代吗？", name)})) {
    return;
  }
  try {
    std::filesystem::create_directories(MappingFolder());
    WriteWholeFile(path, [&](std::ostream& out) { out << MappingText(page.mapping); });
  } catch (const std::exception& failure) {
    LogRollback(session(), "Mapping " + name, failure);
    Refuse(page.MapName, {failure.what(), failure.what()});
    return;
  }
  FillMappings();
  page.MapName.SetText(name);
  Tell(MessageKind::information,
       {fmt::format("Mapping {} saved", name), fmt::format("对照 {} 已储存", name)});
}

void MoveInFrm::ShowMapping(MovePage& page) {
  const Mapping& mapping = page.mapping;
  page.Days.SetText(std::string(DayOrderName(mapping.days)));
  page.Decimal.SetText(std::string(1, mapping.decimal));
  page.Separator.SetText(std::string(SeparatorName(mapping.separator)));
  page.Letters.SetText(std::string(EncodingName(mapping.encoding)));
  std::vector<std::vector<std::string>> rows;
  for (const TargetField& field : TargetFields(page.kind)) {
    const FieldSource* const source = mapping.Find(field.column);
    const FieldSource nothing;
    const FieldSource& from = source != nullptr ? *source : nothing;
    rows.push_back({session().In(field.caption), from.column, from.fixed, "", ""});
  }
  page.MapDG.SetRows(std::move(rows));
  page.MapDG.SetColumnItems(kTheirs, page.look ? page.look->headings : std::vector<std::string>());
  page.MapDG.SetLocked(!page.look);
  ShowSamples(page);
}

void MoveInFrm::TakeChoices(MovePage& page) {
  page.mapping.days = DayOrderNamed(page.Days.text()).value_or(DayOrder::day_month_year);
  page.mapping.decimal = page.Decimal.text() == "," ? ',' : '.';
  page.mapping.separator = SeparatorNamed(page.Separator.text()).value_or('\0');
  page.mapping.encoding = EncodingNamed(page.Letters.text()).value_or(Encoding::automatic);
}

void MoveInFrm::EditMapping(MovePage& page, int row, int column, const std::string& before) {
  Grid& grid = page.MapDG;
  const TargetField& field = TargetFields(page.kind)[static_cast<std::size_t>(row)];
  const std::string text = Trim(grid.Cell(row, column));
  if (text == before) return;
  FieldSource& source = page.mapping.fields[field.column];
  if (column == kTheirs) source.column = text;
  if (column == kFixed) source.fixed = text;
  if (column == kTaken && !grid.Cell(row, kCell).empty()) {
    source.values[Upper(grid.Cell(row, kCell))] = text;
  }
  if (source.empty()) page.mapping.fields.erase(field.column);
  ShowSamples(page);
}

void MoveInFrm::ShowSamples(MovePage& page) {
  page.LookLBL.SetText({});
  if (!page.look) return;
  const FileLook& look = *page.look;
  page.LookLBL.SetText(session().In(
      {fmt::format("{} columns, {} between cells, {}", look.headings.size(),
                   SeparatorName(look.separator), EncodingCaption(look.encoding).english),
       fmt::format("{} 栏，分隔符 {}，{}", look.headings.size(), SeparatorName(look.separator),
                   EncodingCaption(look.encoding).chinese)}));
  auto samples = Samples(page);
  for (int row = 0; row < page.MapDG.RowCount(); ++row) {
    const Sample& sample = samples[TargetFields(page.kind)[static_cast<std::size_t>(row)].column];
    page.MapDG.SetCell(row, kCell, sample.cell);
    page.MapDG.SetCell(row, kTaken, sample.taken);
  }
}

// The first cell that is refused, so that it may be said what it is; else the first that holds
// something, or what stands in for a blank.
std::map<std::string, MoveInFrm::Sample, std::less<>> MoveInFrm::Samples(
    const MovePage& page) const {
  const FileLook& look = *page.look;
  const auto place = [&look](std::string_view heading) {
    const auto found =
        std::find_if(look.headings.begin(), look.headings.end(),
                     [heading](const std::string& theirs) { return SameText(theirs, heading); });
    return static_cast<std::size_t>(found - look.headings.begin());
  };
  // What the file does not have is told when it runs.
  Mapping mapping = page.mapping;
  for (auto& [column, source] : mapping.fields) {
    if (place(source.column) == look.headings.size()) source.column.clear();
  }
  const LineReader reader(main(), mapping, look.headings);
  std::map<std::string, Sample, std::less<>> samples;
  for (const CsvRecord& record : look.samples) {
    LineTroubles troubles;
    const Texts texts = reader.Read(record, &troubles);
    for (const LineTrouble& trouble : troubles) {
      Sample& sample = samples[trouble.field];
      if (!trouble.refused || sample.refused) continue;
      sample = {trouble.value, session().In(trouble.reason), true};
    }
    for (const auto& [column, text] : texts) {
      Sample& sample = samples[column];
      if (!sample.taken.empty()) continue;
      const std::size_t at = place(mapping.Find(column)->column);
      sample = {at < record.cells.size() ? TidyCell(record.cells[at]) : "", InWords(text)};
    }
  }
  return samples;
}

// --- the run

std::optional<MoveInJob> MoveInFrm::Job() {
  if (CompCode.empty()) {
    Refuse(CompCode, {"Company Code is required", "请选择公司"});
    return std::nullopt;
  }
  MoveInJob job;
  job.company = CompCode.text();
  bool any = false;
  for (MovePage& page : pages) {
    if (page.File.empty()) continue;
    if (!page.look) {
      TakeFile(page, true);
      if (!page.look) return std::nullopt;
    }
    if (const TargetField* const missing = page.mapping.Missing()) {
      Refuse(page.MapDG, {fmt::format("{}: say which column is {}",
                                      MoveKindCaption(page.kind).english, missing->caption.english),
                          fmt::format("{}：请说明哪一栏是{}", MoveKindCaption(page.kind).chinese,
                                      missing->caption.chinese)});
      return std::nullopt;
    }
    any = true;
    job.sources[static_cast<std::size_t>(page.kind)] = MoveInSource{page.File.text(), page.mapping};
  }
  if (any) return job;
  Refuse(pages[0].File, {"Choose a file first", "请先选择文件"});
  return std::nullopt;
}

std::string MoveInFrm::Footprint(const MoveInJob& job) const {
  std::string text = job.company;
  for (const auto& source : job.sources) {
    if (!source) continue;
    std::error_code none;
    text +=
        fmt::format("\n{} {} {}\n{}", source->path, std::filesystem::file_size(source->path, none),
                    std::filesystem::last_write_time(source->path, none).time_since_epoch().count(),
                    MappingText(source->mapping));
  }
  return text;
}

std::optional<MoveReport> MoveInFrm::Run(const MoveInJob& job, bool write) {
  try {
    StopBar bar(*this);
    return MoveIn(session(), job, write, [&](const MoveProgress& progress) {
      return bar.GoOn(
          progress.done, progress.total,
          fmt::format("{}: {} / {}", session().In(progress.what), progress.done, progress.total));
    });
  } catch (const FileTrouble& trouble) {
    Refuse(trouble.text);
  } catch (const std::exception& failure) {
    LogRollback(session(), "Move Old Data In", failure);
    Refuse(FailedOrRefused(kFailed, failure));
  }
  return std::nullopt;
}

void MoveInFrm::DryRun() {
  tried_.clear();
  const auto job = Job();
  if (!job) return;
  auto report = Run(*job, false);
  if (!report) return;
  if (report->complete) tried_ = Footprint(*job);
  const bool complete = report->complete;
  ShowReport(std::move(*report));
  Tell(MessageKind::information,
       complete ? Caption{"Dry run completed, nothing was stored", "试搬完毕，没有储存任何资料"}
                : Caption{"Stopped, nothing was stored", "已停止，没有储存任何资料"});
}

bool MoveInFrm::ConfirmMove(const MoveInJob& job) {
  const MoveCounts& customers = report_.Of(MoveKind::customers);
  const MoveCounts& loans = report_.Of(MoveKind::loans);
  const MoveCounts& payments = report_.Of(MoveKind::payments);
  if (customers.good + loans.good + payments.good == 0) {
    return Refuse(CmdDry, {"There is nothing to move in: see the list", "没有可搬入的：请看列表"});
  }
  int behind = 0;
  for (const MoveCounts& counts : report_.counts) behind += counts.refused + counts.waiting;
  // Thousands of records that nobody takes back: no matter of Enter alone.
  return ConfirmLoss(
      {fmt::format("Move {} customers, {} loans of {} and {} payments of {} into company {} ?\n{} "
                   "lines stay behind.",
                   customers.good, loans.good, ShowMoney(loans.amount), payments.good,
                   ShowMoney(payments.amount), job.company, behind),
       fmt::format("将 {} 位顾客、{} 笔贷款（{}）和 {} 笔付款（{}）搬入公司 {}？\n{} 行不搬入。",
                   customers.good, loans.good, ShowMoney(loans.amount), payments.good,
                   ShowMoney(payments.amount), job.company, behind)});
}

void MoveInFrm::Move() {
  const auto job = Job();
  if (!job) return;
  if (tried_ != Footprint(*job)) {
    Refuse(CmdDry, {"Make a dry run of these files first, and read its list",
                    "请先用这些文件试搬，并看其列表"});
    return;
  }
  if (!ConfirmMove(*job)) return;
  tried_.clear();
  auto report = Run(*job, true);
  if (!report) return;
  const bool complete = report->complete;
  ShowReport(std::move(*report));
  std::string told = "Move Old Data In " + job->company;
  for (const MoveKind kind : kMoveKinds) {
    const auto& source = job->sources[static_cast<std::size_t>(kind)];
    if (source) {
      told += fmt::format(" - {} of {} {} from {}", report_.Of(kind).good, report_.Of(kind).lines,
                          MoveKindName(kind), source->path);
    }
  }
  WriteLog(session(), LogLine(session(), told + (complete ? "" : " - stopped")));
  const Caption books = Verified(job->company);
  Tell(MessageKind::information,
       complete
           ? Caption{"Process completed\n" + books.english, "处理完毕\n" + books.chinese}
           : Caption{"Stopped. What has come stays; run it again, and it goes on from there\n" +
                         books.english,
                     "已停止。已搬入的保留；再次搬入会从那里继续\n" + books.chinese});
}

Caption MoveInFrm::Verified(const std::string& company) {
  const auto bar = desk().Progress(session().In(title()));
  const LedgerReport report = CheckCompany(main(), company, [&](const LedgerProgress& progress) {
    bar->SetRange(std::max(progress.total, 1));
    bar->SetText(
        session().In({fmt::format("Verify: {} of {} loans", progress.done, progress.total),
                      fmt::format("核对：{} / {} 笔贷款", progress.done, progress.total)}));
    bar->SetPosition(progress.done);
    return true;
  });
  if (report.faults.empty()) {
    return {fmt::format("The ledger is verified: {} loans, all hold", report.loans),
            fmt::format("账目已核对：{} 笔贷款，全部相符", report.loans)};
  }
  return {
      fmt::format("{} faults in the ledger: see Recalculate Loan Balance", report.faults.size()),
      fmt::format("账目有 {} 处不符：请看重算贷款结余", report.faults.size())};
}

// --- the list

void MoveInFrm::ShowReport(MoveReport report) {
  report_ = std::move(report);
  TotalDG.Clear();
  for (const MoveKind kind : kMoveKinds) {
    const MoveCounts& counts = report_.Of(kind);
    TotalDG.AddRow({session().In(MoveKindCaption(kind)), std::to_string(counts.lines),
                    std::to_string(counts.known), std::to_string(counts.refused),
                    std::to_string(counts.waiting), std::to_string(counts.good),
                    kind == MoveKind::customers ? "" : ShowMoney(counts.amount)});
  }
  std::stable_sort(report_.troubles.begin(), report_.troubles.end(),
                   [](const LineTrouble& a, const LineTrouble& b) {
                     return std::pair(a.kind, a.line) < std::pair(b.kind, b.line);
                   });
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones;
  for (const LineTrouble& trouble : report_.troubles) {
    if (rows.size() == kMostShown) break;
    const TargetField* const field = FindTarget(trouble.kind, trouble.field);
    rows.push_back({session().In(MoveKindCaption(trouble.kind)), std::to_string(trouble.line),
                    field != nullptr ? session().In(field->caption) : "", trouble.value,
                    trouble.refused ? session().In({"refused", "被拒"}) : "",
                    session().In(trouble.reason)});
    tones.push_back(trouble.refused ? RowTone::bad : RowTone::plain);
  }
  const std::size_t shown = rows.size();
  DG.SetRows(std::move(rows), tones);
  const std::size_t all = report_.troubles.size() + report_.untold;
  ResultLBL.SetText(session().In(
      shown == all
          ? Caption{fmt::format("{} lines in the list", all), fmt::format("列表 {} 行", all)}
          : Caption{fmt::format("{} of {} shown; export the list to see more", shown, all),
                    fmt::format("显示 {} / {}；请输出列表以看其余", shown, all)}));
  CmdPrint.SetEnabled(all > 0);
  CmdExport.SetEnabled(all > 0);
  Pages.SetPage(static_cast<int>(pages.size()));
}

void MoveInFrm::PrintList() {
  const std::string pcname = ThisHostName();
  const bool staged = Attempt("Move Old Data In", kFailed, [&] {
    DropStagedRows(main(), pcname, kList);
    Batch batch;
    int number = 0;
    for (const LineTrouble& trouble : report_.troubles) {
      const TargetField* const field = FindTarget(trouble.kind, trouble.field);
      batch.Add(fmt::format(
          "INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,s4,s5,c1,c2) VALUES "
          "({},{},{},{},{},{},{},{},{},{})",
          QuoteStr(pcname), QuoteStr(kList), QuoteStr(fmt::format("{:07}", ++number)),
          QuoteStr(session().In(MoveKindCaption(trouble.kind))),
          QuoteStr(field != nullptr ? session().In(field->caption) : ""),
          QuoteStr(FirstCharacters(trouble.value, kOnPaper)),
          QuoteStr(session().In(trouble.reason)),
          QuoteStr(trouble.refused ? session().In({"refused", "被拒"}) : ""), trouble.line,
          static_cast<int>(trouble.kind)));
      batch.SendWhenFull(main());
    }
    batch.Send(main());
  });
  if (!staged) return;
  ReportJob job = SessionReport(session(), kList);
  job.SelectionFormula = StagedFormula(pcname, kList);
  desk().Print(job);
}

void MoveInFrm::ExportList() {
  std::vector<std::vector<std::string>> rows{
      {"File", "Line", "Field", "In the file", "Refused", "Reason"}};
  for (const LineTrouble& trouble : report_.troubles) {
    rows.push_back({std::string(MoveKindName(trouble.kind)), std::to_string(trouble.line),
                    trouble.field, trouble.value, trouble.refused ? "refused" : "",
                    session().In(trouble.reason)});
  }
  ExportTroubles(session(), *this, "MoveIn", rows);
}

}  // namespace kaunter
