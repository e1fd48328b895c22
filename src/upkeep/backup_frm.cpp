#include "upkeep/backup_frm.h"

#include <fmt/format.h>

#include "core/log.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/caption_error.h"
#include "screen/stop_bar.h"
#include "upkeep/backup.h"
#include "upkeep/office_place.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;

}  // namespace

BackupFrm::BackupFrm(Session& session, Desk& desk)
    : SessionScreen("BackupFrm", {"Backup", "备份"}, session, desk) {
  Folder.onLeave = [this] { ShowBackups(); };
  CmdFolder.onClick = [this] {
    const std::string folder = this->desk().PickFolder(
        this->session().In({"Choose a Folder", "请选择文件夹"}), Folder.text());
    if (folder.empty()) return;
    Folder.SetText(folder);
    ShowBackups();
  };
  BackupCmd.onClick = [this] { BackUp(); };
}

void BackupFrm::Load() {
  if (session().CurrentLevel < kLevel) {
    for (Control* control : std::initializer_list<Control*>{&Folder, &CmdFolder, &BackupCmd}) {
      control->SetEnabled(false);
    }
    Refuse({fmt::format("User {} Level not allow to back up the office", session().CurrentUserID),
            fmt::format("用户 {} 的级别不可备份公司", session().CurrentUserID)});
    return;
  }
  PicturesLBL.SetText(
      session().In({"Pictures and documents are not in a backup.", "备份不含照片和文件。"}));
  RestoreLBL.SetText(session().In(
      {"To go back to one: close Kaunter at every desk, then run kaunter-office restore.",
       "恢复备份：请在所有电脑关闭 Kaunter，然后执行 kaunter-office restore。"}));
  Folder.SetText(BackupFolderOf(session()));
  ShowBackups();
}

void BackupFrm::BackUp() {
  if (Trim(Folder.text()).empty()) {
    Refuse(Folder, {"Folder is required", "请输入文件夹"});
    return;
  }
  BackupResult result;
  try {
    StopBar bar(*this);
    // Which earlier ones go is the rule of the night's backup, and its alone.
    result = TakeBackup(session(), Trim(Folder.text()), std::nullopt, [&](const UpkeepStep& step) {
      return bar.GoOn(step.done, step.total, session().In(step.what));
    });
  } catch (const CaptionError& why) {
    WriteLog(session(), LogLine(session(), fmt::format("Backup refused - {}", why.what())));
    Refuse(Folder, why.text);
    return;
  } catch (const std::exception& failure) {
    LogRollback(session(), "Backup", failure);
    Refuse(Folder, FailedOrRefused({"No backup was made. Mend the cause and do it again.",
                                    "没有备份。请排除原因后再做一次。"},
                                   failure));
    return;
  }
  ShowBackups();
  if (!result.record) {
    Tell(MessageKind::information, {"Stopped: no backup was made", "已停止：没有备份"});
    return;
  }
  const BackupRecord& record = *result.record;
  WriteLog(session(),
           LogLine(session(), fmt::format("Backup {} - {} loans, {} receipts", record.folder,
                                          record.loans, record.receipts)));
  Caption told{
      fmt::format("Backed up and checked: {} loans, {} receipts", record.loans, record.receipts),
      fmt::format("已备份并检查：{} 笔贷款，{} 张收据", record.loans, record.receipts)};
  ResultLBL.SetText(session().In(told));
  for (const Caption& warning : result.warnings) {
    told.english += "\n" + warning.english;
    told.chinese += "\n" + warning.chinese;
  }
  Tell(result.warnings.empty() ? MessageKind::information : MessageKind::warning, told);
}

void BackupFrm::ShowBackups() {
  std::vector<std::vector<std::string>> rows;
  for (const BackupRecord& record : BackupsIn(Trim(Folder.text()))) {
    rows.push_back({Format(record.made, "dd-MM-yyyy hh:nn:ss"), record.office, record.machine,
                    std::to_string(record.loans), std::to_string(record.receipts), LedgerOf(record),
                    record.folder});
  }
  ResultLBL.SetText(session().In(
      {fmt::format("{} backup{} in this folder", rows.size(), rows.size() == 1 ? "" : "s"),
       fmt::format("此文件夹内有 {} 个备份", rows.size())}));
  DG.SetRows(std::move(rows));
}

std::string BackupFrm::LedgerOf(const BackupRecord& record) const {
  if (!record.ledger) return session().In({"not checked", "未核对"});
  if (record.faults == 0) return session().In({"all hold", "全部相符"});
  return session().In({fmt::format("{} figures do not hold", record.faults),
                       fmt::format("{} 个数字不符", record.faults)});
}

}  // namespace kaunter
