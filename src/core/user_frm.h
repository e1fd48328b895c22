// UserFrm: the users, their rights and the menu entries that they see.
#pragma once

#include <string>
#include <vector>

#include "core/menu.h"
#include "core/record.h"
#include "core/session_screen.h"
#include "core/user_rights.h"

namespace kaunter {

class UserFrm : public SessionScreen {
 public:
  // `menu`: the entries of the program, which the rights list offers.
  UserFrm(Session& session, Desk& desk, std::vector<MenuEntry> menu);

  Tab Pages{*this, "Pages"};
  Frame UserPage{*this, "UserPage", {"User", "用户"}, &Pages};
  TextBox UserID{*this, "UserID", {"User ID", "用户编号"}, Kind::text, &UserPage};
  TextBox UserName{*this, "UserName", {"Name", "姓名"}, Kind::text, &UserPage};
  ComboBox UserLevel{*this,
                     "UserLevel",
                     {"Level", "级别"},
                     {"Clerk", "Supervisor", "Manager", "Admin"},
                     &UserPage};
  TextBox UserDept{*this, "UserDept", {"Password", "密码"}, Kind::password, &UserPage};
  TextBox UserDept2{*this, "UserDept2", {"Password again", "确认密码"}, Kind::password, &UserPage};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}, {}, &UserPage};
  TextBox gcc2{*this,
               "gcc2",
               {"Companies allowed, one a line", "可进入的公司，一行一个"},
               Kind::memo,
               &UserPage};
  TextBox TimeStart{*this, "TimeStart", {"Sign in from", "可进入时间从"}, Kind::time, &UserPage};
  TextBox TimeEnd{*this, "TimeEnd", {"Sign in until", "可进入时间到"}, Kind::time, &UserPage};
  Frame Rights{*this, "Rights", {"Rights", "权限"}, &UserPage};
  CheckBox AccessLoan{*this, "AccessLoan", {"Loan screens", "贷款画面"}, &Rights};
  CheckBox AccessPayment{*this, "AccessPayment", {"Payment screens", "付款画面"}, &Rights};
  CheckBox AllowEdit{*this, "AllowEdit", {"Change records", "更改资料"}, &Rights};
  CheckBox AllowDelete{*this, "AllowDelete", {"Delete records", "删除资料"}, &Rights};
  CheckBox AllowDisc{*this, "AllowDisc", {"Give discount", "给予折扣"}, &Rights};
  CheckBox AllowCreditLimit{*this, "AllowCreditLimit", {"Set credit limit", "设定信用额"}, &Rights};
  CheckBox FollowUpFlag{*this, "FollowUpFlag", {"Follow up at sign in", "进入时跟进"}, &Rights};
  CheckBox Special{*this, "Special", {"Special user", "特别用户"}, &Rights};
  Frame PersonPage{*this, "PersonPage", {"Person", "个人资料"}, &Pages};
  TextBox UserNIC{*this, "UserNIC", {"New IC", "新身份证"}, Kind::text, &PersonPage};
  TextBox UserOIC{*this, "UserOIC", {"Old IC", "旧身份证"}, Kind::text, &PersonPage};
  Button cmdCardReader{
      *this, "cmdCardReader", {"Read MyKad", "读取身份证"}, ButtonRole::plain, &PersonPage};
  TextBox UserDOB{*this, "UserDOB", {"Date of Birth", "出生日期"}, Kind::date, &PersonPage};
  ComboBox UserGender{*this, "UserGender", {"Gender", "性别"}, {"MALE", "FEMALE"}, &PersonPage};
  ComboBox UserRace{*this, "UserRace", {"Race", "种族"}, {}, &PersonPage};
  TextBox UserAdd1{*this, "UserAdd1", {"Address", "地址"}, Kind::text, &PersonPage};
  TextBox UserAdd2{*this, "UserAdd2", {"Address 2", "地址 2"}, Kind::text, &PersonPage};
  TextBox UserAdd3{*this, "UserAdd3", {"Address 3", "地址 3"}, Kind::text, &PersonPage};
  TextBox UserPostCode{*this, "UserPostCode", {"Post Code", "邮区"}, Kind::text, &PersonPage};
  TextBox UserCity{*this, "UserCity", {"City", "城市"}, Kind::text, &PersonPage};
  TextBox UserState{*this, "UserState", {"State", "州"}, Kind::text, &PersonPage};
  TextBox UserHP1{*this, "UserHP1", {"Mobile", "手机"}, Kind::text, &PersonPage};
  TextBox UserHP2{*this, "UserHP2", {"Mobile 2", "手机 2"}, Kind::text, &PersonPage};
  TextBox Pic1{*this, "Pic1", {"Picture", "照片"}, Kind::text, &PersonPage};
  Frame MenuPage{*this, "MenuPage", {"Menu", "功能表"}, &Pages};
  Grid LS1;
  Button SelectAllCmd{
      *this, "SelectAllCmd", {"Select &All", "全选(&A)"}, ButtonRole::plain, &MenuPage};
  Button SelectNoneCmd{
      *this, "SelectNoneCmd", {"Select &None", "全不选(&N)"}, ButtonRole::plain, &MenuPage};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  bool Typed() const;
  void LeaveUserID();
  void LeaveNewIc();
  void ReadCard();
  void LeaveTime(TextBox& box, const Caption& invalid);
  bool CheckTime(TextBox& box, const Caption& invalid);
  void LoadUser(const std::string& id);
  void ClearAll();
  void TickAll(bool on);
  void TickRightsOf(const std::string& id);

  void Save();
  bool CheckBeforeSave();
  UserRights TypedRights() const;
  std::string PasswordToStore() const;
  bool CheckLevels(const UserRights& stored);
  bool CheckGiven(const UserRights& stored, const UserRights& typed);
  bool RefuseBeyond(const RightBeyond& beyond, const Caption& text);
  void LogChange(const UserRights& from, const UserRights& to);
  std::string AllowedList() const;
  void Write(const UserRights& stored, const UserRights& typed);
  void Delete();

  std::vector<MenuEntry> menu_;
  Record record_;
  std::string
      stored_hash_;  // of the loaded user; the password box shows it, and it is not hashed again
};

}  // namespace kaunter
