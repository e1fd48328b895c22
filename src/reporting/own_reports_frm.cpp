#include "reporting/own_reports_frm.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "core/log.h"
#include "core/menu.h"
#include "core/report_path.h"
#include "core/session_report.h"
#include "core/values.h"
#include "reports/report_file.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLike = 8;

}  // namespace

OwnReportsFrm::OwnReportsFrm(Session& session, Desk& desk)
    : SessionScreen("OwnReportsFrm", {"Own Reports", "自订报告"}, session, desk) {
  DG.onOpen = [this](int, int) { Print(); };
  SaveCmd.onClick = [this] { Print(); };
}

void OwnReportsFrm::Load() {
  std::error_code none;  // an office need not have the folder
  for (const fs::path& file : ReportFilesOf(fs::path(session().AppPath) / kOwnReports, none)) {
    reports_.push_back(Look(file.filename().string()));
  }
  std::vector<std::vector<std::string>> rows;
  for (const OwnReport& report : reports_) {
    rows.push_back({report.title, report.file, PrintedAs(report)});
  }
  DG.SetRows(std::move(rows));
  SaveCmd.SetEnabled(!reports_.empty());
  if (!reports_.empty()) return DG.SetCurrentRow(0);
  NoteLBL.SetText(
      session().In({"There is no report file (.rpt) in the folder OwnReports beside the program.",
                    "程序旁的文件夹 OwnReports 内没有报告文件（.rpt）。"}));
}

OwnReportsFrm::OwnReport OwnReportsFrm::Look(const std::string& file) {
  const std::string path = (fs::path(session().AppPath) / kOwnReports / file).string();
  OwnReport report;
  report.file = report.title = file;
  try {
    const bool chinese = session().ChineseFlag && ReportFile::SpeaksChinese(path);
    ReportReading reading;
    reading.chinese = chinese;
    const std::string title = ReportFile::Read(path, reading).title;
    if (!title.empty()) report.title = title;
    std::string at = path;
    for (int step = 0; step <= kMostLike && !at.empty(); ++step) {
      const fs::path like(at);
      report.entry = EntryOf(like.filename().string());
      if (report.entry != nullptr) break;
      if (like.parent_path().filename() != kOwnReports) {
        report.program_file = like.filename().string();
      }
      at = ReportFile::LikeOf(at);
    }
  } catch (const std::runtime_error& fault) {
    report.fault = fault.what();
  }
  return report;
}

const MenuEntry* OwnReportsFrm::EntryOf(const std::string& file) const {
  if (session().menu == nullptr) return nullptr;
  for (const MenuEntry& entry : session().menu->entries()) {
    const bool prints =
        entry.action == MenuAction::report || entry.action == MenuAction::direct_list;
    if (prints && (SameText(entry.target, file) ||
                   (entry.chinese_report && SameText(ChineseReportName(entry.target), file)))) {
      return &entry;
    }
  }
  return nullptr;
}

std::string OwnReportsFrm::PrintedAs(const OwnReport& report) const {
  if (!report.fault.empty()) return session().In({"cannot be read", "无法读取"});
  if (report.entry != nullptr) return PlainCaption(report.entry->caption, session().ChineseFlag);
  return report.program_file;
}

void OwnReportsFrm::Print() {
  const int row = DG.current_row();
  if (row < 0) {
    Refuse(DG, {"Please choose a report", "请选择报告"});
    return;
  }
  const OwnReport& report = reports_.at(static_cast<std::size_t>(row));
  if (!MayPrint(report)) return;
  if (report.entry == nullptr || report.entry->action == MenuAction::direct_list) {
    PrintPlainly(report);
    return;
  }
  const bool chinese = report.entry->chinese_report && session().ChineseFlag;
  const std::string& file = report.entry->target;
  const std::string title = std::exchange(session().MsgTitle, report.title);
  session().ReportFile = chinese ? ChineseReportName(file) : file;
  session().CallerTag = std::string(kOwnReports) + "/" + report.file;
  desk().Show("ReportFrm");
  session().CallerTag.clear();
  session().MsgTitle = title;
}

bool OwnReportsFrm::MayPrint(const OwnReport& report) {
  if (!report.fault.empty()) return Refuse({report.fault, report.fault});
  if (report.entry == nullptr) {
    const std::string& file = report.program_file;
    return file.empty() ||
           Refuse(
               {fmt::format("{} is like {}, which a screen prints for the record that it shows. "
                            "Name it in ReportList/loan.ini, so that the Printing Desk offers it.",
                            report.file, file),
                fmt::format("{} 与 {} 同类，须从单笔资料的画面打印。请写入 ReportList/loan.ini，"
                            "即可从打印台打印。",
                            report.file, file)});
  }
  if (session().menu->Reachable(*report.entry)) return true;
  const Caption& entry = report.entry->caption;
  return Refuse(
      {fmt::format("{} is printed as \"{}\", which is not among your menu rights; they are "
                   "given in User Management",
                   report.file, PlainCaption(entry, false)),
       fmt::format("{} 按“{}”打印，您没有此功能的权限，可在用户管理中给予", report.file,
                   PlainCaption(entry, true))});
}

// The engine keeps the rows to the companies of the person.
void OwnReportsFrm::PrintPlainly(const OwnReport& report) {
  WriteLog(session(), LogLine(session(), report.title + " - Report Printed"));
  ReportJob job = SessionReport(session(), report.file);
  job.ReportTitle = session().CurrentCompDesc;
  desk().Print(job);
}

}  // namespace kaunter
