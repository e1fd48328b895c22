// OwnReportsFrm: the report files of the folder OwnReports. One that is like a file of the menu is
// printed with that file's criteria, by those who have the right of its entry; one that is like no
// file of the program is printed at once.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"

namespace kaunter {

struct MenuEntry;

class OwnReportsFrm : public SessionScreen {
 public:
  OwnReportsFrm(Session& session, Desk& desk);

  Grid DG{*this,
          "DG",
          {"Own Reports", "自订报告"},
          {{{"Report", "报告"}, Kind::text, 40},
           {{"Report File", "报告文件"}, Kind::text, 30},
           {{"Printed As", "打印方式"}, Kind::text, 30}}};
  Label NoteLBL{*this, "NoteLBL"};
  Button SaveCmd{*this, "SaveCmd", {"&Print", "打印(&P)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  struct OwnReport {
    std::string file;
    std::string title;
    const MenuEntry* entry = nullptr;  // of the file that it is like
    std::string program_file;  // one that no entry prints; "" when it is like none of the program
    std::string fault;         // why it cannot be read
  };

  OwnReport Look(const std::string& file);
  const MenuEntry* EntryOf(const std::string& file) const;
  std::string PrintedAs(const OwnReport& report) const;
  void Print();
  bool MayPrint(const OwnReport& report);
  void PrintPlainly(const OwnReport& report);

  std::vector<OwnReport> reports_;
};

}  // namespace kaunter
