// NewCustFrm: the customer, with employer, spouse, referrers, documents, photos, check list, the
// list of the loans and the credit limit.
#pragma once

#include <string>
#include <vector>

#include "core/card_values.h"
#include "core/record.h"
#include "core/session_screen.h"
#include "core/waiting_picture.h"
#include "customers/photo_server.h"
#include "screen/file_grid.h"
#include "screen/picture_strip.h"

namespace kaunter {

class NewCustFrm : public SessionScreen {
 public:
  NewCustFrm(Session& session, Desk& desk);

  // The customer at a glance, whatever page is shown.
  Frame Glance{*this, "Glance"};
  Picture Photo{*this, "Photo", {"Photo", "照片"}, &Glance};
  Label GlanceLBL{*this, "GlanceLBL", {}, &Glance};
  Bar CreditBar{*this, "CreditBar", {"Credit", "信用额"}, &Glance};
  Tab Pages{*this, "Pages"};
  TabPage CustomerPage{*this, "CustomerPage", {"Customer", "顾客"}, Pages};
  TextBox CustID{*this, "CustID", {"Customer ID", "顾客编号"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox CustNickName{*this, "CustNickName", {"Nick Name", "别名"}};
  ComboBox AreaCode{*this, "AreaCode", {"Personal / Company", "个人／公司"}};
  ComboBox CustStatus{*this,
                      "CustStatus",
                      {"Status", "状态"},
                      {"ACTIVE", "BAD DEBT", "BLACKLIST", "REJECT", "KIV", "AMLA"}};
  TextBox CustNIC{*this, "CustNIC", {"New IC", "新身份证"}};
  TextBox CustOIC{*this, "CustOIC", {"Old IC", "旧身份证"}};
  TextBox CustOthIC{*this, "CustOthIC", {"Other IC", "其他证件"}};
  Button cmdCardReader{*this, "cmdCardReader", {"Read MyKad", "读取身份证"}};
  TextBox DOB{*this, "DOB", {"Date of Birth", "出生日期"}, Kind::date};
  ComboBox CustGender{*this, "CustGender", {"Gender", "性别"}, {"MALE", "FEMALE"}};
  ComboBox CustRace{*this, "CustRace", {"Race", "种族"}};
  ComboBox MaritalStatus{*this,
                         "MaritalStatus",
                         {"Marital Status", "婚姻状况"},
                         {"SINGLE", "MARRIED", "DIVORCED", "WIDOWED"},
                         true};
  ComboBox WargaNegara{
      *this, "WargaNegara", {"Citizenship", "国籍"}, {"MALAYSIA", "BUKAN WARGANEGARA"}, true};
  TextBox CustChild{*this, "CustChild", {"Children", "子女人数"}, Kind::integer};
  TextBox MotherName{*this, "MotherName", {"Mother's Name", "母亲姓名"}};
  ComboBox PreLanguage{*this,
                       "PreLanguage",
                       {"Preferred Language", "惯用语言"},
                       {"MALAY", "ENGLISH", "CHINESE", "TAMIL"},
                       true};
  ComboBox Academic{*this,
                    "Academic",
                    {"Education", "学历"},
                    {"PRIMARY", "SECONDARY", "DIPLOMA", "DEGREE"},
                    true};
  TextBox CompNo{*this, "CompNo", {"Co. Reg. No", "公司注册号码"}};
  ComboBox OldCode{
      *this, "OldCode", {"Bumi / Non Bumi", "土著／非土著"}, {"Bumi", "Non Bumi"}, true};
  ComboBox CompCatCode{*this, "CompCatCode", {"Company Category", "公司类别"}};
  TextBox CustAdd1{*this, "CustAdd1", {"Address", "地址"}};
  TextBox CustAdd2{*this, "CustAdd2", {"Address 2", "地址 2"}};
  TextBox CustAdd3{*this, "CustAdd3", {"Address 3", "地址 3"}};
  TextBox CustPostCode{*this, "CustPostCode", {"Post Code", "邮区"}};
  TextBox CustCity{*this, "CustCity", {"City", "城市"}};
  ComboBox CustState{*this,
                     "CustState",
                     {"State", "州"},
                     {"JOHOR", "KEDAH", "KELANTAN", "MELAKA", "NEGERI SEMBILAN", "PAHANG", "PERAK",
                      "PERLIS", "PULAU PINANG", "SABAH", "SARAWAK", "SELANGOR", "TERENGGANU",
                      "W.P. KUALA LUMPUR", "W.P. LABUAN", "W.P. PUTRAJAYA"},
                     true};
  TextBox CustHP1{*this, "CustHP1", {"Mobile 1", "手机 1"}};
  TextBox CustHP2{*this, "CustHP2", {"Mobile 2", "手机 2"}};
  TextBox CustTel1{*this, "CustTel1", {"Tel 1", "电话 1"}};
  TextBox CustTel2{*this, "CustTel2", {"Tel 2", "电话 2"}};
  TextBox CustFax{*this, "CustFax", {"Fax", "传真"}};
  TextBox email{*this, "email", {"E-mail", "电邮"}};
  TabPage ContactPage{*this, "ContactPage", {"Home", "住家"}, Pages};
  ComboBox HouseStatus{
      *this, "HouseStatus", {"House", "房屋"}, {"OWN", "RENTED", "FAMILY", "QUARTERS"}, true};
  TextBox HouseLiving{*this, "HouseLiving", {"Years Living There", "居住年数"}};
  TextBox CustVehicleNo{*this, "CustVehicleNo", {"Vehicle No", "车牌"}};
  TextBox CustVehicleModel{*this, "CustVehicleModel", {"Vehicle Model", "车型"}};
  TextBox Remark{*this, "Remark", {"Remark", "备注"}, Kind::memo};
  TabPage WorkPage{*this, "WorkPage", {"Employment", "职业"}, Pages};
  ComboBox JobType{*this,
                   "JobType",
                   {"Job Type", "职业种类"},
                   {"NIL", "Government", "Private", "Own Business", "Unemployment", "Student"}};
  ComboBox Employer{*this,
                    "Employer",
                    {"Employer", "雇主"},
                    {"Government", "Private", "Own Business", "Unemployment", "Student"},
                    true};
  TextBox CustComp{*this, "CustComp", {"Company", "公司名称"}};
  TextBox CustCompBiz{*this, "CustCompBiz", {"Business", "业务"}};
  TextBox CustCompPos{*this, "CustCompPos", {"Position", "职位"}};
  TextBox CustCompIncome{*this, "CustCompIncome", {"Monthly Income", "月入"}, Kind::money};
  TextBox CustCompAdd1{*this, "CustCompAdd1", {"Address", "地址"}};
  TextBox CustCompAdd2{*this, "CustCompAdd2", {"Address 2", "地址 2"}};
  TextBox CustCompAdd3{*this, "CustCompAdd3", {"Address 3", "地址 3"}};
  TextBox CustCompPostCode{*this, "CustCompPostCode", {"Post Code", "邮区"}};
  TextBox CustCompTel1{*this, "CustCompTel1", {"Tel 1", "电话 1"}};
  TextBox CustCompTel2{*this, "CustCompTel2", {"Tel 2", "电话 2"}};
  TextBox CustCompFax{*this, "CustCompFax", {"Fax", "传真"}};
  TextBox StartWorkDate{*this, "StartWorkDate", {"Working Since", "入职日期"}, Kind::date};
  TextBox EndWorkDate{*this, "EndWorkDate", {"Worked Until", "离职日期"}, Kind::date};
  TextBox SalaryDate{*this, "SalaryDate", {"Salary Day", "发薪日"}};
  TextBox CustCompName2{*this, "CustCompName2", {"Second Company", "第二公司"}};
  TextBox CustCompPos2{*this, "CustCompPos2", {"Second Position", "第二职位"}};
  TextBox CustCompWork2{*this, "CustCompWork2", {"Second Work", "第二工作"}};
  TabPage SpousePage{*this, "SpousePage", {"Spouse", "配偶"}, Pages};
  TextBox CustSpouseName{*this, "CustSpouseName", {"Name", "姓名"}};
  TextBox CustSpouseNIC{*this, "CustSpouseNIC", {"New IC", "新身份证"}};
  TextBox CustSpouseOIC{*this, "CustSpouseOIC", {"Old IC", "旧身份证"}};
  Button cmdSpouseCardReader{*this, "cmdSpouseCardReader", {"Read MyKad", "读取身份证"}};
  TextBox CustSpouseDOB{*this, "CustSpouseDOB", {"Date of Birth", "出生日期"}, Kind::date};
  ComboBox CustSpouseGender{*this, "CustSpouseGender", {"Gender", "性别"}, {"MALE", "FEMALE"}};
  ComboBox CustSpouseRace{*this, "CustSpouseRace", {"Race", "种族"}};
  TextBox CustSpouseHP1{*this, "CustSpouseHP1", {"Mobile", "手机"}};
  TextBox CustSpouseemail{*this, "CustSpouseemail", {"E-mail", "电邮"}};
  TextBox CustSpouseComp{*this, "CustSpouseComp", {"Company", "公司名称"}};
  TextBox CustSpouseCompBiz{*this, "CustSpouseCompBiz", {"Business", "业务"}};
  TextBox CustSpouseCompPos{*this, "CustSpouseCompPos", {"Position", "职位"}};
  TextBox CustSpouseCompIncome{
      *this, "CustSpouseCompIncome", {"Monthly Income", "月入"}, Kind::money};
  TextBox CustSpouseCompAdd1{*this, "CustSpouseCompAdd1", {"Address", "地址"}};
  TextBox CustSpouseCompAdd2{*this, "CustSpouseCompAdd2", {"Address 2", "地址 2"}};
  TextBox CustSpouseCompAdd3{*this, "CustSpouseCompAdd3", {"Address 3", "地址 3"}};
  TextBox CustSpouseCompPostCode{*this, "CustSpouseCompPostCode", {"Post Code", "邮区"}};
  TextBox CustSpouseCompCity{*this, "CustSpouseCompCity", {"City", "城市"}};
  TextBox CustSpouseCompState{*this, "CustSpouseCompState", {"State", "州"}};
  TextBox CustSpouseCompTel1{*this, "CustSpouseCompTel1", {"Tel", "电话"}};
  TextBox CustSpouseCompFax1{*this, "CustSpouseCompFax1", {"Fax", "传真"}};
  TabPage BankPage{*this, "BankPage", {"Bank", "银行"}, Pages};
  TextBox BankAccNo{*this, "BankAccNo", {"Bank Account No", "银行户口"}};
  TextBox BankTransferName{*this, "BankTransferName", {"Transfer Name", "转账姓名"}};
  TextBox BankCagaran{*this, "BankCagaran", {"Bank", "银行"}};
  TextBox ATMCardNo{*this, "ATMCardNo", {"ATM Card No", "提款卡号码"}};
  TextBox ATMPinNo{*this, "ATMPinNo", {"ATM Pin No", "提款卡密码"}, Kind::password};
  TextBox CreditLimit{*this, "CreditLimit", {"Credit Limit", "信用额"}, Kind::money};
  ComboBox CreditLimitType{*this,
                           "CreditLimitType",
                           {"Credit Limit Type", "信用额种类"},
                           {"", "Full Settled", "Outstanding"}};
  TextBox AppID{*this, "AppID", {"Application", "贷款申请"}};
  ComboBox AppType{
      *this, "AppType", {"Application Role", "申请角色"}, {"Applicant", "Guarantor", "Chargor"}};
  TextBox Relationship{*this, "Relationship", {"Relationship", "关系"}};
  Button CmdLinkApp{*this, "CmdLinkApp", {"&Link Application", "连接申请(&L)"}};
  Grid AppDG;
  TabPage RefererPage{*this, "RefererPage", {"Referrers", "介绍人"}, Pages};
  TextBox RefererName{*this, "RefererName", {"Name", "姓名"}};
  TextBox RefererRelationship{*this, "RefererRelationship", {"Relationship", "关系"}};
  TextBox RefererNIC{*this, "RefererNIC", {"New IC", "新身份证"}};
  TextBox RefererOIC{*this, "RefererOIC", {"Old IC", "旧身份证"}};
  Button cmdRefererCardReader{*this, "cmdRefererCardReader", {"Read MyKad", "读取身份证"}};
  TextBox RefererHP1{*this, "RefererHP1", {"Mobile", "手机"}};
  TextBox Refereremail{*this, "Refereremail", {"E-mail", "电邮"}};
  TextBox RefererComp{*this, "RefererComp", {"Company", "公司名称"}};
  TextBox RefererCompBiz{*this, "RefererCompBiz", {"Business", "业务"}};
  TextBox RefererCompPos{*this, "RefererCompPos", {"Position", "职位"}};
  TextBox RefererCompIncome{*this, "RefererCompIncome", {"Monthly Income", "月入"}, Kind::money};
  TextBox RefererCompAdd1{*this, "RefererCompAdd1", {"Address", "地址"}};
  TextBox RefererCompAdd2{*this, "RefererCompAdd2", {"Address 2", "地址 2"}};
  TextBox RefererCompAdd3{*this, "RefererCompAdd3", {"Address 3", "地址 3"}};
  TextBox RefererCompTel1{*this, "RefererCompTel1", {"Tel", "电话"}};
  TextBox RefererCompFax1{*this, "RefererCompFax1", {"Fax", "传真"}};
  Button AddEditCmd{*this, "AddEditCmd", {"&Add / Edit", "加入／更改(&A)"}};
  Button RemoveRefCmd{*this, "RemoveRefCmd", {"&Remove", "移除(&R)"}};
  Grid RefLV;
  TabPage DocumentPage{*this, "DocumentPage", {"Documents", "文件"}, Pages};
  TextBox DocDesc{*this, "DocDesc", {"Description", "说明"}};
  Button AddDocCmd{*this, "AddDocCmd", {"&Add Document", "加入文件(&A)"}};
  Button RemoveDocCmd{*this, "RemoveDocCmd", {"&Remove", "移除(&R)"}};
  Button OpenDocCmd{*this, "OpenDocCmd", {"&Open", "打开(&O)"}};
  FileGrid DocDG;
  Picture DocPreview{*this, "DocPreview", {"Preview", "预览"}};
  PictureStrip DocStrip{*this, "DocStrip", {"Documents", "文件"}};
  // Files of this PC on their way to the office's server.
  Bar SendBar{*this, "SendBar", {"To the server", "传到服务器"}};
  Button StopSendCmd{*this, "StopSendCmd", {"S&top", "停止(&T)"}};
  Button SendAgainCmd{*this, "SendAgainCmd", {"Send A&gain", "重新传送(&G)"}};
  TabPage PhotoPage{*this, "PhotoPage", {"Photos", "照片"}, Pages};
  TextBox Pic1{*this, "Pic1", {"Picture 1", "照片 1"}};
  TextBox Pic2{*this, "Pic2", {"Picture 2", "照片 2"}};
  TextBox Pic3{*this, "Pic3", {"Picture 3", "照片 3"}};
  TextBox Pic4{*this, "Pic4", {"Picture 4", "照片 4"}};
  TextBox Pic5{*this, "Pic5", {"Picture 5", "照片 5"}};
  TextBox Pic6{*this, "Pic6", {"MyKad Picture", "身份证照片"}};
  Button CmdWebCam{*this, "CmdWebCam", {"Ca&mera", "拍照(&M)"}};
  Picture PhotoPreview{*this, "PhotoPreview", {"Preview", "预览"}};
  PictureStrip PhotoStrip{*this, "PhotoStrip", {"Photos", "照片"}};
  TabPage CheckListPage{*this, "CheckListPage", {"Check List", "查核表"}, Pages};
  Grid CheckListDG;
  TabPage LoanPage{*this, "LoanPage", {"Loans", "贷款"}, Pages};
  CheckBox OpenLoansChk{*this, "OpenLoansChk", {"Open loans only", "只看未结清"}};
  Grid LoanDG;
  TextBox SumProfit{*this, "SumProfit", {"Profit", "盈利"}, Kind::money};
  TextBox SumLoanAmt{*this, "SumLoanAmt", {"Total Loan", "贷款总额"}, Kind::money};
  TextBox SumLoanBal{*this, "SumLoanBal", {"Total Balance", "结余总额"}, Kind::money};
  TextBox SumPayOutAmt{*this, "SumPayOutAmt", {"Total Paid Out", "支出总额"}, Kind::money};
  TextBox SumTopUpAmt{*this, "SumTopUpAmt", {"Total Top Up", "加借总额"}, Kind::money};
  EndPages pages_end{*this};
  TextBox SearchText{*this, "SearchText", {"Find by old code or IC", "以旧编号或身份证查找"}};
  Button CmdPrev{*this, "CmdPrev", {"&Previous", "上一个(&P)"}};
  Button CmdNext{*this, "CmdNext", {"Ne&xt", "下一个(&X)"}};
  Button CmdNew{*this, "CmdNew", {"&Import", "输入(&I)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CmdNewLoan{*this, "CmdNewLoan", {"New Loa&n", "新贷款(&N)"}};
  Button CmdLoan{*this, "CmdLoan", {"L&oan", "贷款(&O)"}};
  Button CmdPay{*this, "CmdPay", {"Pa&yment", "付款(&Y)"}};
  Button CmdBuyGold{*this, "CmdBuyGold", {"Buy &Gold", "买入黄金(&G)"}};
  Button CmdSTR{*this, "CmdSTR", {"Submit S&TR", "呈报(&T)"}};
  Button ECust{*this, "ECust", {"&E-Invoice", "电子发票(&E)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  // Beside a delete that the person has no right to.
  Button CmdAllowDelete{*this, "CmdAllowDelete", {"Manager...", "经理..."}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;
  // Photos that come from the server and files that go there.
  void Tick() override;

 private:
  // new_cust_frm.cpp: the record
  void BindRecord();
  void BindEvents();
  void LoadCustomer(const std::string& id);
  void LoadByText();
  void StartNew();
  void ClearAll();
  void ShowNeighbour(bool next);  // whatever the company
  // Opens a screen for this customer, or for one of the loans.
  void OpenFor(const std::string& screen, const std::string& command,
               const std::string& loan_id = {});

  // new_cust_save.cpp: checks, write, delete
  void Save();
  bool MayEdit();
  bool AddTypedReferrer();
  bool CheckBoxes();
  void Write();
  void WriteLists(const std::string& id);
  void SendToAccounts(const std::string& id);
  void DeleteAfterPassword();
  void ShowDeleteRight();
  void AskManagerToDelete();
  Caption DeleteRequest() const;
  void Delete();

  // new_cust_card.cpp: the reader of identity cards
  void BindCardReader();
  void ReadCustomerCard();
  void OfferCardPaper(const CardValues& card);
  void KeepCardPhoto(const std::string& id);
  void TakePhoto();

  // new_cust_events.cpp: what happens when a box is left
  void LeaveNewIc(TextBox& ic, TextBox& birth);
  void CheckDuplicate(TextBox& box, const std::string& column, const Caption& kind);
  void LeaveMoney(TextBox& box);
  void LeaveArea();

  // new_cust_screening.cpp: the watch list
  void FollowCompany();
  void TidyBox(TextBox& box);
  void ScreenOnLeave(const std::string& ic, const std::string& passport);
  void ScreenSaved();
  void ShowListed();
  void OfferReporting();
  void ReportSuspicion();

  // new_cust_files.cpp: documents and photos
  void LoadDocuments(const std::string& id);
  const std::string& DocumentOwner() const;
  bool MayAddDocument();
  void ChooseDocument();
  void AddDocuments(const std::vector<std::string>& files);
  void RemoveDocuments();
  std::string DocumentFolder(int row) const;
  std::string DocumentPath(int row) const;  // on this PC; "" when its name is none
  void ShowDocumentStrip();
  void ShowDocument(int row);
  bool MayOpenFile(const std::string& file);
  void OpenDocument();
  std::string PhotoPath(const TextBox& box);
  void ShowPhoto(const std::string& id);
  void ShowSending();
  void ChoosePhoto(TextBox& box, int number);
  bool MayKeepPhoto(TextBox& box);
  void KeepPhoto(TextBox& box, int number, const std::string& file);

  // new_cust_lists.cpp: referrers, check list, loans, applications, import
  void LoadLists(const std::string& id);
  void LoadReferrers(const std::string& id);
  std::vector<TextBox*> ReferrerBoxes();
  bool AddReferrer();
  void EditReferrer(int row);
  void LoadCheckList(const std::string& id);
  void LoadLoans(const std::string& id);
  void ShowCredit(const std::string& id);
  void ShowGlance();
  void Import();
  void LoadApplications(const std::string& id);
  bool CheckApplication();
  void LinkApplication();
  bool Changed() const;
  std::string Lists() const;  // all rows as one text: tells whether something was changed

  Record record_;
  std::string loaded_id_;             // the stored customer shown; "" for a new one
  std::vector<Value> loaded_values_;  // for the audit: name, the three identity numbers, date
  std::string remembered_lists_;
  ShownPhotos shown_photos_;
  WaitingPicture card_photo_{"cust", ".jpg"};  // of the card, until the record is saved
  bool delete_approved_ = false;  // a manager has opened the delete of the record shown
  bool list_away_ = false;        // the watch list did not answer for the record shown
  bool edit_approved_ = false;    // a manager has approved edits of the record shown
  bool delete_mode_ = false;
  int referrer_row_ = -1;  // the row that the boxes show; -1 for a new one
};

}  // namespace kaunter
