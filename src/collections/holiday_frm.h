// HolidayFrm lists the public holidays of a year and copies them to the next; HolidayModifyFrm
// adds, changes or deletes one. A copied holiday falls on the same day and month: those that move
// are changed by hand.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class HolidayFrm : public SessionScreen {
 public:
  HolidayFrm(Session& session, Desk& desk);

  ComboBox HolidayYear{*this, "HolidayYear", {"Year", "年份"}};
  Grid DG{*this,
          "DG",
          {"Holidays", "公共假期"},
          {{{"Date", "日期"}, Kind::date, 12},
           {{"Holiday", "假期"}, Kind::text, 45},
           {{"User", "用户"}, Kind::text, 12}}};
  Button SaveCmd{*this, "SaveCmd", {"&New", "新增(&N)"}, ButtonRole::primary};
  Button Command1{*this, "Command1", {"&Edit", "更改(&E)"}};
  Button CopyCmd{*this, "CopyCmd", {"Copy to Next &Year", "复制到下一年(&Y)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  // Lists the year; the years to choose from follow what is stored.
  void List(const std::string& year);
  void Edit(int row);
  // Opens the dialog for a holiday (dd-mm-yyyy), "" for a new one, and lists the year of what it
  // saved.
  void Modify(const std::string& date);
  void CopyToNextYear();
};

class HolidayModifyFrm : public SessionScreen {
 public:
  // `date` is the holiday to change (dd-mm-yyyy), "" for a new one.
  HolidayModifyFrm(Session& session, Desk& desk, std::string date);

  TextBox HolidayDate{*this, "HolidayDate", {"Date", "日期"}, Kind::date};
  TextBox HolidayName{*this, "HolidayName", {"Holiday", "假期"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button Command2{*this, "Command2", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

  // The year of the holiday saved last, "" when none was.
  const std::string& saved_year() const { return saved_year_; }

 private:
  bool IsNew() const { return date_.empty(); }
  bool CheckDate();
  void Save();
  void Delete();

  std::string date_;
  std::string loaded_;  // date and name as they were shown or saved last
  std::string saved_year_;
};

}  // namespace kaunter
