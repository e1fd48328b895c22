// BackupFrm, "Backup": a backup on demand, and what those that are there would bring back and lose.
// From level 4 on: whoever takes the whole books out of the house sees all companies.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"
#include "upkeep/backup_record.h"

namespace kaunter {

class BackupFrm : public SessionScreen {
 public:
  BackupFrm(Session& session, Desk& desk);

  TextBox Folder{*this, "Folder", {"Folder", "文件夹"}};
  Button CmdFolder{*this, "CmdFolder", {"Bro&wse", "浏览(&W)"}};
  Button BackupCmd{*this, "BackupCmd", {"&Back Up Now", "立即备份(&B)"}, ButtonRole::primary};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {"Backups", "备份"},
          {{{"Made", "时间"}, Kind::text, 18},
           {{"Office", "公司"}, Kind::text, 30},
           {{"Machine", "电脑"}, Kind::text, 14},
           {{"Loans", "贷款"}, Kind::integer, 9},
           {{"Receipts", "收据"}, Kind::integer, 9},
           {{"Ledger", "账目"}, Kind::text, 24},
           {{"Lies in", "所在"}, Kind::text, 50}}};
  Label PicturesLBL{*this, "PicturesLBL"};
  Label RestoreLBL{*this, "RestoreLBL"};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void BackUp();
  void ShowBackups();
  std::string LedgerOf(const BackupRecord& record) const;
};

}  // namespace kaunter
