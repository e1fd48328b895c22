// NPLExportfrm, "Data Exporter": named statements that are kept, run for a range of dates, looked
// at and written as a file. What the regulator's upload wants comes from the central database.
//
// A clerk runs what is kept. Up to a manager a statement reads and nothing else; an administrator
// runs what he types.
#pragma once

#include <ostream>
#include <string>

#include "core/record.h"
#include "core/session_screen.h"

namespace kaunter {

class NPLExportfrm : public SessionScreen {
 public:
  NPLExportfrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  ComboBox SQLID{*this, "SQLID", {"Data Export Name", "输出名称"}, {}, true};
  TextBox SQLStatement{*this, "SQLStatement", {"SQL Statement", "SQL 语句"}, Kind::memo};
  CheckBox FromDate{*this, "FromDate", {"Asks for a first date", "需要开始日期"}};
  CheckBox ToDate{*this, "ToDate", {"Asks for a last date", "需要结束日期"}};
  CheckBox ExportHeader{*this, "ExportHeader", {"Column names first", "首行为栏名"}};
  CheckBox Quote{*this, "Quote", {"Fields in quotes", "栏位加引号"}};
  TextBox DateFrom{*this, "DateFrom", {"From Date", "开始日期"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"To Date", "结束日期"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this, "DG", {"Result", "结果"}, {{{"Result", "结果"}}}};
  Button Command4{*this, "Command4", {"Get &IDEAL Template", "取 &IDEAL 范本"}};
  Button Command1{*this, "Command1", {"Save S&tatement", "储存语句(&T)"}};
  Button Command2{*this, "Command2", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button SSCommand1{*this, "SSCommand1", {"Export &CSV", "输出 &CSV"}};
  Button CmdExcel{*this, "CmdExcel", {"Export &Excel", "输出 &Excel"}};
  Button SaveCmd{*this, "SaveCmd", {"&Process", "执行(&P)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void ShowRights();
  void FillNames();
  void ChooseName();
  void ForgetStatement();
  void ForgetResult();
  void KeepStatement();
  void DeleteStatement();
  void GetTemplate();

  bool Uses(std::string_view place) const;
  bool RequireDates();
  bool MayRun(const std::string& statement);
  std::string Filled() const;
  void Process();
  // False when the person stopped it. Throws SqlError.
  bool Run(const std::string& statement, bool reads);
  void ShowResult();

  std::string ChosenFile(const Caption& question, const char* extension);
  void WriteLines(std::ostream& out) const;
  void ExportCsv();
  void ExportExcel();
  void Offer(const std::string& file, const Caption& text);

  Record record_;
  std::string chosen_;    // the name whose statement was read; "" for none
  std::string kept_;      // the statement as it is kept
  bool central_ = false;  // it is the central database's
  Recordset result_;
};

}  // namespace kaunter
