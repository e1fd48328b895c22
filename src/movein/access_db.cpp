#include "movein/access_db.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/audit.h"
#include "core/log.h"
#include "core/places.h"
#include "core/startup.h"
#include "core/telling.h"
#include "core/values.h"
#include "movein/file_trouble.h"
#include "movein/trouble_list.h"
#include "platform/sql/data_source.h"
#include "platform/sql/embedded_copy.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;
constexpr std::size_t kMostShown = 2000;
constexpr const char* kFiles = "Jet (*.mdb *.accdb *.dat)";

const Caption kTitle{"DB Conversion", "旧资料转换"};
const Caption kFailed{
    "an error occur during conversion. What was copied stays: run it again with "
    "Clear Data, or take the copy of the office back",
    "转换时发生错误。已复制的仍保留：请勾选清除资料再执行，或恢复公司的副本"};

std::vector<Bar::Part> Share(double share) {
  return {{{"Done", "完成"}, share, Bar::Part::Tone::good},
          {{"Open", "未完"}, 1 - share, Bar::Part::Tone::quiet}};
}

}  // namespace

AccessDB::AccessDB(Session& session, Desk& desk)
    : SessionScreen("AccessDB", kTitle, session, desk) {
  CmdFile.onClick = [this] {
    const std::string file =
        this->desk().PickFile(this->session().In(kTitle), PickStart(this->session()), kFiles);
    if (!file.empty()) FileName.SetText(file);
  };
  CompCode.onLeave = [this] { CompCode.SetText(Trim(CompCode.text())); };
  FileName.onLeave = [this] { FileName.SetText(Trim(FileName.text())); };
  CmdDry.onClick = [this] { DryRun(); };
  SSCommand1.onClick = [this] { Process(); };
  CmdExport.onClick = [this] { ExportList(); };
}

void AccessDB::Load() {
  const Recordset shape = main().Query("SELECT CompCode FROM CompMast WHERE 1=0");
  CompCode.max_length = shape.columns()[0].width;
  CmdExport.SetEnabled(false);
  // Who sees the figures of the books alone brings none.
  if (session().CurrentLevel >= kLevel && !session().Special) return;
  for (Control* control : std::initializer_list<Control*>{
           &CompCode, &FileName, &CmdFile, &ClearData, &ExpOpt, &CmdDry, &SSCommand1}) {
    control->SetEnabled(false);
  }
  Refuse({fmt::format("User {} Level not allow to convert data", session().CurrentUserID),
          fmt::format("用户 {} 的级别不可转换资料", session().CurrentUserID)});
}

bool AccessDB::CheckBoxes() {
  if (FileName.empty()) return Refuse(FileName, {"Data file is required", "请选择资料文件"});
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is required", "请输入公司编号"});
  if (CompCode.text().find_first_of("\"#") != std::string::npos) {
    return Refuse(CompCode, {"A company code has no \" and no #", "公司编号不可有 \" 和 #"});
  }
  if (ClearData.checked()) return true;
  const std::string& code = CompCode.text();
  if (main().Query("SELECT CompCode FROM CompMast WHERE CompCode=" + QuoteStr(code)).Eof()) {
    return true;
  }
  return Refuse(CompCode, {fmt::format("Company Code {} existed, please use other", code),
                           fmt::format("公司编号 {} 已存在，请用其他编号", code)});
}

std::unique_ptr<OdbcSource> AccessDB::Open() {
  try {
    const Hourglass busy(desk());
    return OpenLegacyFile(FileName.text());
  } catch (const FileTrouble& trouble) {
    Refuse(FileName, trouble.text);
    return nullptr;
  }
}

LegacyGoOn AccessDB::Watch(StopBar& bar) {
  return [this, &bar](const LegacyProgress& progress) {
    ShowProgress(progress);
    return bar.GoOn(progress.done, progress.total,
                    fmt::format("{}: {} / {}", progress.what, progress.done, progress.total));
  };
}

void AccessDB::ShowProgress(const LegacyProgress& progress) {
  const std::string process = "DB Connection - Process " + progress.what;
  SetTitle({process, "旧资料转换 - " + progress.what});
  TablesBar.Set(
      Share(progress.steps == 0 ? 0 : static_cast<double>(progress.step) / progress.steps),
      fmt::format("{} / {}", progress.step, progress.steps));
  RowsBar.Set(Share(progress.total == 0
                        ? 1
                        : static_cast<double>(progress.done) / static_cast<double>(progress.total)),
              fmt::format("{} / {}", progress.done, progress.total));
}

void AccessDB::DryRun() {
  if (!CheckBoxes()) return;
  const auto source = Open();
  if (!source) return;
  try {
    StopBar bar(*this, kTitle);
    LegacyCopy copy(session(), *source, CompCode.text(), ExpOpt.checked());
    ShowReport(copy.Check(ClearData.checked(), Watch(bar)));
  } catch (const std::exception& failure) {
    LogRollback(session(), "DB Conversion", failure);
    Refuse(FileName, {failure.what(), failure.what()});
    return;
  }
  SetTitle(kTitle);
  Tell(MessageKind::information,
       report_.complete
           ? Caption{"Dry run completed, nothing was stored", "试搬完毕，没有储存任何资料"}
           : Caption{"Stopped, nothing was stored", "已停止，没有储存任何资料"});
}

bool AccessDB::Fits(LegacyCopy& copy) {
  {
    StopBar bar(*this, kTitle);
    ShowReport(copy.Check(ClearData.checked(), Watch(bar)));
  }
  if (!report_.complete) {
    Tell(MessageKind::information, {"Stopped, nothing was stored", "已停止，没有储存任何资料"});
    return false;
  }
  if (report_.stops) {
    return Refuse(CompCode, {"Keys of the file exist in the office: see the list. Nothing was "
                             "stored",
                             "文件中有公司已有的键：请看列表。没有储存任何资料"});
  }
  return report_.left_out == 0 ||
         ConfirmLoss({fmt::format("{} rows do not fit and will be left out: see the list. Go on ?",
                                  report_.left_out),
                      fmt::format("{} 行不合，将不转入：请看列表。要继续吗？", report_.left_out)});
}

std::optional<std::string> AccessDB::OfficeFile() const {
  return EmbeddedFile(OfficeConnectionString(session(), session().ConnDatabase),
                      session().data_sources);
}

// Of all companies, and so in words that nobody says by mistake.
bool AccessDB::ConfirmClearing() {
  const std::string loans = ScalarQuery(main(), "SELECT COUNT(*) FROM LoanMast");
  Caption question{
      fmt::format("Clear Data empties the tables of ALL companies: {} loans will be gone.", loans),
      fmt::format("清除资料会清空所有公司的表格：{} 笔贷款将消失。", loans)};
  const auto add = [&question](const char* english, const char* chinese) {
    question.english += std::string(" ") + english;
    question.chinese += chinese;
  };
  if (ExpOpt.checked()) add("Expenses alone will come in their place.", "只会转入开销。");
  if (!OfficeFile()) {
    add("No copy is kept of a database on a server: back it up first.",
        "服务器上的数据库不留副本：请先备份。");
  }
  add("Type their number to go on", "请输入此数目以继续");
  const std::string typed = desk().Input(session().In(kTitle), session().In(question));
  if (Trim(typed) == loans) return true;
  return Refuse(ClearData, {"The number of loans was not typed: nothing was cleared",
                            "没有输入贷款数目：没有清除任何资料"});
}

// The copy is what is cleared: no save of another desktop comes between.
std::string AccessDB::Clear() {
  SetTitle({"DB Connection - Clearing Database", "旧资料转换 - 清除资料"});
  std::string kept;
  Transaction transaction(main());
  if (const auto file = OfficeFile()) {
    kept = fmt::format("{}.before-{}", *file, Format(session().clock.Now(), "yyyymmdd-hhnnss"));
    CopySqlite(*file, kept);
  }
  std::vector<const char*> tables = ClearedTables();
  // What was moved in, and which payment a bank's line made: their numbers will be drawn anew.
  tables.insert(tables.end(), {"MoveInMast", "PaymentReader"});
  for (const char* table : tables) {
    if (TableExists(main(), table)) main().Execute(fmt::format("Delete from {}", table));
  }
  transaction.Commit();
  return kept;
}

void AccessDB::Process() {
  if (!CheckBoxes() || !ConfirmLoss({"Confirm to process ?", "确定执行？"})) return;
  const auto source = Open();
  if (!source) return;
  bool complete = false;
  std::string kept;
  try {
    LegacyCopy copy(session(), *source, CompCode.text(), ExpOpt.checked());
    if (!Fits(copy)) {
      SetTitle(kTitle);
      return;
    }
    if (ClearData.checked()) {
      if (!ConfirmClearing()) {
        SetTitle(kTitle);
        return;
      }
      const Hourglass busy(desk());
      kept = Clear();
      WriteAudit(session(), "Delete", "DB Conversion", CompCode.text(), "Clear Data", {});
      Log(fmt::format("cleared, the office before it is {}", kept.empty() ? "not copied" : kept));
    }
    StopBar bar(*this, kTitle);
    complete = copy.Run(Watch(bar));
  } catch (const std::exception& failure) {
    SetTitle(kTitle);
    LogRollback(session(), "DB Conversion", failure);
    Refuse(FailedOrRefused(kFailed, failure));
    return;
  }
  SetTitle(kTitle);
  Log(fmt::format("{} into {} {}", FileName.text(), CompCode.text(),
                  complete ? "completed" : "stopped"));
  WriteAudit(session(), "Create", "DB Conversion", CompCode.text(),
             complete ? "completed" : "stopped", {});
  const Caption behind =
      kept.empty() ? Caption{"", ""}
                   : Caption{"\nThe office as it was before: " + kept, "\n转换前的公司：" + kept};
  Tell(MessageKind::information,
       complete ? Caption{"Process completed" + behind.english, "处理完毕" + behind.chinese}
                : Caption{"Stopped: what was copied stays. Run it again with Clear Data" +
                              behind.english,
                          "已停止：已复制的仍保留。请勾选清除资料再执行" + behind.chinese});
}

void AccessDB::ShowReport(LegacyReport report) {
  report_ = std::move(report);
  CountDG.Clear();
  for (const LegacyCount& count : report_.counts) {
    CountDG.AddRow({count.table, std::to_string(count.rows), std::to_string(count.good),
                    std::to_string(count.skipped), std::to_string(count.left_out), count.columns});
  }
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones;
  for (const LegacyTrouble& trouble : report_.troubles) {
    if (rows.size() == kMostShown) break;
    rows.push_back({trouble.table, trouble.row == 0 ? "" : std::to_string(trouble.row), trouble.key,
                    trouble.column, trouble.value, session().In(trouble.reason)});
    tones.push_back(trouble.kind == LegacyTrouble::Kind::note ? RowTone::plain : RowTone::bad);
  }
  ResultLBL.SetText(session().In(
      {fmt::format("{} rows will not fit, {} lines in the list", report_.left_out,
                   report_.troubles.size()),
       fmt::format("{} 行不合，列表 {} 行", report_.left_out, report_.troubles.size())}));
  DG.SetRows(std::move(rows), tones);
  CmdExport.SetEnabled(!report_.troubles.empty());
}

void AccessDB::ExportList() {
  std::vector<std::vector<std::string>> rows{{"Table", "Row", "Key", "Column", "Value", "Reason"}};
  for (const LegacyTrouble& trouble : report_.troubles) {
    rows.push_back({trouble.table, std::to_string(trouble.row), trouble.key, trouble.column,
                    trouble.value, session().In(trouble.reason)});
  }
  ExportTroubles(session(), *this, "Conversion", rows);
}

void AccessDB::Log(const std::string& text) const {
  WriteLog(session(), LogLine(session(), "DB Conversion - " + text));
}

}  // namespace kaunter
