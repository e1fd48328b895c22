// AccessDB, "DB Conversion": a whole company out of a data file of the earlier desktop edition,
// under a new company code. A dry run counts and lists what will not fit. From level 4 on.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/session_screen.h"
#include "movein/legacy_copy.h"

namespace kaunter {

class StopBar;

class AccessDB : public SessionScreen {
 public:
  AccessDB(Session& session, Desk& desk);

  TextBox CompCode{*this, "CompCode", {"New Company Code", "新公司编号"}};
  TextBox FileName{*this, "FileName", {"Data File", "资料文件"}};
  Button CmdFile{*this, "CmdFile", {"Choose...", "选择..."}};
  CheckBox ClearData{*this, "ClearData", {"Clear Data", "清除资料"}};
  CheckBox ExpOpt{*this, "ExpOpt", {"Expenses Only", "只要开销"}};
  Bar TablesBar{*this, "TablesBar", {"Tables", "表格"}};
  Bar RowsBar{*this, "RowsBar", {"Rows", "行数"}};
  Grid CountDG{*this,
               "CountDG",
               {},
               {{{"Table", "表格"}, Kind::text, 14},
                {{"In the File", "文件行数"}, Kind::integer, 9},
                {{"Fit", "可用"}, Kind::integer, 8},
                {{"Skipped", "略过"}, Kind::integer, 8},
                {{"Left Out", "不入"}, Kind::integer, 8},
                {{"Columns Left Out", "不入的栏"}, Kind::text, 40}}};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {},
          {{{"Table", "表格"}, Kind::text, 12},
           {{"Row", "行"}, Kind::integer, 7},
           {{"Key", "键"}, Kind::text, 16},
           {{"Column", "栏"}, Kind::text, 14},
           {{"Value", "内容"}, Kind::text, 18},
           {{"Reason", "原因"}, Kind::text, 40}}};
  Button CmdExport{*this, "CmdExport", {"E&xport CSV", "输出 CSV(&X)"}};
  Button CmdDry{*this, "CmdDry", {"&Dry Run", "试搬(&D)"}};
  Button SSCommand1{*this, "SSCommand1", {"&Process", "执行(&P)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  // The file and the code are given, and the code is new where nothing is cleared.
  bool CheckBoxes();
  void DryRun();
  void Process();
  // What is wrong with the file was told, or the person took it back: nothing.
  std::unique_ptr<OdbcSource> Open();
  // False when it may not go on; told.
  bool Fits(LegacyCopy& copy);
  bool ConfirmClearing();
  // Where the embedded file of the office lies; nothing on a server.
  std::optional<std::string> OfficeFile() const;
  // Gives the name of the copy of what was cleared; "" on a server.
  std::string Clear();
  LegacyGoOn Watch(StopBar& bar);
  void ShowProgress(const LegacyProgress& progress);
  void ShowReport(LegacyReport report);
  void ExportList();
  void Log(const std::string& text) const;

  LegacyReport report_;
};

}  // namespace kaunter
