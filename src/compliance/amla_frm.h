// AMLAFrm, "Suspicious Transaction Report (STR)": what a compliance officer files about a person,
// perhaps for a loan or a payment. Opened from those and from the customer, whose boxes it then
// fills, or from the menu to look up what was reported.
#pragma once

#include <string>

#include "compliance/suspicion.h"
#include "core/record.h"
#include "core/session_screen.h"

namespace kaunter {

class AMLAFrm : public SessionScreen {
 public:
  AMLAFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;
  void Unload() override;

  TextBox TrxID{*this, "TrxID", {"STR No", "报告号码"}};
  TextBox TrxDate{*this, "TrxDate", {"Date of Reporting", "呈报日期"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Tab Pages{*this, "Pages"};
  TabPage IdentityPage{*this, "IdentityPage", {"Part A: Identity", "A 部：身份"}, Pages};
  ComboBox Nationality{
      *this, "Nationality", {"Nationality", "国籍"}, {"MALAYSIAN", "NON MALAYSIAN"}, true};
  TextBox Name1{*this, "Name1", {"Name", "姓名"}};
  TextBox Name2{*this, "Name2", {"Other Name", "其他姓名"}};
  TextBox Name3{*this, "Name3", {"Other Name 2", "其他姓名 2"}};
  TextBox Name4{*this, "Name4", {"Other Name 3", "其他姓名 3"}};
  TextBox NRIC{*this, "NRIC", {"New IC", "新身份证"}};
  TextBox OldIC{*this, "OldIC", {"Old IC", "旧身份证"}};
  TextBox OthIC{*this, "OthIC", {"Other IC", "其他证件"}};
  ComboBox IDType;
  ComboBox Gender{*this, "Gender", {"Gender", "性别"}, {"MALE", "FEMALE"}, true};
  TextBox email{*this, "email", {"E-mail", "电邮"}};
  TextBox Tel1{*this, "Tel1", {"Tel (House)", "电话（住家）"}};
  TextBox Tel2{*this, "Tel2", {"Tel (Office)", "电话（公司）"}};
  TextBox HP{*this, "HP", {"Mobile", "手机"}};
  TextBox Fax{*this, "Fax", {"Fax", "传真"}};
  TextBox Add1{*this, "Add1", {"Residential Address", "住址"}};
  TextBox Add2{*this, "Add2", {"Correspondence Address", "通讯地址"}};
  TextBox Add3{*this, "Add3", {"Other Address", "其他地址"}};
  TextBox Add4{*this, "Add4", {"Previous Address", "以前地址"}};
  TabPage WorkPage{*this, "WorkPage", {"Part A: Work and Family", "A 部：职业与家庭"}, Pages};
  TextBox BizType{*this, "BizType", {"Business Type", "业务种类"}};
  TextBox Occupation{*this, "Occupation", {"Occupation", "职业"}};
  TextBox JobDetail{*this, "JobDetail", {"Job Description", "工作内容"}};
  TextBox EmployerName{*this, "EmployerName", {"Employer", "雇主"}};
  TextBox EmploymentArea{*this, "EmploymentArea", {"Employment Area", "就业地区"}};
  TextBox OtherWork{*this, "OtherWork", {"Other Work", "其他工作"}};
  ComboBox MaritalStatus;
  TextBox SpouseName{*this, "SpouseName", {"Spouse Name", "配偶姓名"}};
  TextBox SpouseNIC{*this, "SpouseNIC", {"Spouse New IC", "配偶新身份证"}};
  TextBox SpouseOIC{*this, "SpouseOIC", {"Spouse Old IC", "配偶旧身份证"}};
  TextBox SpouseOthIC{*this, "SpouseOthIC", {"Spouse Other IC", "配偶其他证件"}};
  ComboBox SpouseIDType;
  TextBox SpousePassportNo{*this, "SpousePassportNo", {"Spouse Passport No", "配偶护照号码"}};
  TextBox SpousePassportCountry{
      *this, "SpousePassportCountry", {"Spouse Passport Country", "配偶护照国家"}};
  TabPage SuspicionPage{
      *this, "SuspicionPage", {"Parts B and C: Suspicion", "B、C 部：交易与可疑之处"}, Pages};
  ComboBox Trans{*this,
                 "Trans",
                 {"Attempted but not Completed Transaction", "试图而未完成的交易"},
                 {"YES", "NO"},
                 true};
  TextBox CustID{*this, "CustID", {"Customer Ref No", "顾客编号"}};
  ComboBox TransType;
  TextBox TransDate{*this, "TransDate", {"Transaction Date", "交易日期"}, Kind::date};
  TextBox TransAmt{*this, "TransAmt", {"Transaction Amount", "交易额"}, Kind::money};
  ComboBox LoanType{*this, "LoanType", {"Loan Type", "贷款种类"}, {"Secured", "Unsecured"}, true};
  ComboBox SuspiciousWork;
  TextBox CrimeDesc{
      *this, "CrimeDesc", {"Description of the Suspicion", "可疑之处说明"}, Kind::memo};
  TextBox CrimeEnv{*this, "CrimeEnv", {"Circumstances", "当时情况"}, Kind::memo};
  EndPages pages_end{*this};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "查找(&R)"}};
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  void BindRecord();
  void StartNew();
  void ShowKey();

  // The person and the record that the report is about.
  void OpenForCaller();
  bool FillFromCaller(std::string& reported);
  bool FillLoan(std::string& reported);
  bool FillPayment(std::string& reported);
  bool FillCustomer(const std::string& id, bool of_any_company);
  void LeaveCustomer();

  void LeaveNumber();
  // By value: the box that the number may come from is filled anew.
  void LoadReport(std::string id);

  bool CheckIc(TextBox& box);
  bool CheckTrans();
  bool CheckAmount();
  bool CheckLengths();
  bool Check();
  void Save();
  void Store();
  void Print();

  Record record_;
  Suspicion about_;
  std::string loaded_id_;   // "" for a new report
  std::string saved_id_;    // what goes back to where the report was asked for
  std::string filled_for_;  // the customer whose data stand in the boxes
};

}  // namespace kaunter
