// LoanAppFrm: the application for a loan, before the loan exists: its terms, the persons linked to
// it, the conditions of its release, and two levels of decision. What both levels have approved can
// be taken into the loan screen; from then on the application is locked.
//
//   loan_app_frm.cpp    the record, its load, its locks, the decisions
//   loan_app_lists.cpp  persons, history, insurance lines, the printed papers
//   loan_app_save.cpp   payment figures, the checks of a save, the write
#pragma once

#include <string>
#include <vector>

#include "core/record.h"
#include "loans/loan_screen.h"
#include "loans/property_boxes.h"

namespace kaunter {

class LoanAppFrm : public LoanScreen {
 public:
  LoanAppFrm(Session& session, Desk& desk);

  Label StateLBL{*this, "StateLBL"};  // where the application stands, in a sentence
  Frame Identity{*this, "Identity"};
  TextBox AppID{*this, "AppID", {"Application No", "申请编号"}, Kind::text, &Identity};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}, Kind::text, &Identity};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}, Kind::text, &Identity};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}, Kind::text, &Identity};
  Frame Decision{*this, "Decision", {"Decision", "审批"}};
  ComboBox AppStatus{*this,
                     "AppStatus",
                     {"Recommendation", "推荐"},
                     {"Pending", "Processing", "Approved", "Rejected", "Cancel"},
                     &Decision};
  TextBox ApprovedUser{*this, "ApprovedUser", {"Recommended By", "推荐人"}, Kind::text, &Decision};
  TextBox ApprovalDate{
      *this, "ApprovalDate", {"Recommended On", "推荐日期"}, Kind::date, &Decision};
  ComboBox AppStatus2{
      *this, "AppStatus2", {"Approval", "批准"}, {"", "Approved", "Rejected"}, &Decision};
  TextBox ApprovedUser2{*this, "ApprovedUser2", {"Approved By", "批准人"}, Kind::text, &Decision};
  TextBox ApprovalDate2{*this, "ApprovalDate2", {"Approved On", "批准日期"}, Kind::date, &Decision};

  Tab SSTab1{*this, "SSTab1"};
  TabPage TermsPage{*this, "TermsPage", {"Application", "申请"}, SSTab1};
  Frame F1{*this, "F1", {"Terms", "条件"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}, {}, &F1};
  TextBox TrxDate{*this, "TrxDate", {"Application Date", "申请日期"}, Kind::date, &F1};
  TextBox LoanAmt2{*this, "LoanAmt2", {"Property Amount", "产业价"}, Kind::money, &F1};
  TextBox TopUpAmt{*this, "TopUpAmt", {"Top Up Amount", "加借额"}, Kind::money, &F1};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款额"}, Kind::money, &F1};
  TextBox TermInt{*this, "TermInt", {"MRTA Premium", "房贷保险费"}, Kind::money, &F1};
  ComboBox LoanTypeID{*this, "LoanTypeID", {"Loan Type", "还款方式"}, {}, &F1};
  ComboBox LoanType{
      *this, "LoanType", {"Repayment / Collateral", "抵押"}, {"Secured", "Unsecured"}, &F1};
  ComboBox DragLoan{
      *this, "DragLoan", {"Loan Scheme", "贷款方案"}, {"Personal Loan", "Flexi Loan"}, &F1};
  ComboBox LoanPurpose{
      *this, "LoanPurpose", {"Interest Method", "利息算法"}, {"FLAT", "REDUCING"}, &F1};
  TextBox InsRate{*this, "InsRate", {"Interest Rate % p.a.", "年利率 %"}, Kind::rate, &F1};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}, Kind::integer, &F1};
  TextBox LoanTerm3{*this, "LoanTerm3", {"Int Only", "只付利息期数"}, Kind::integer, &F1};
  TextBox NextDueDate{
      *this, "NextDueDate", {"Expected Installment Date", "预计还款日"}, Kind::date, &F1};
  TextBox InstallmentAmt{
      *this, "InstallmentAmt", {"Installment Amt", "每期金额"}, Kind::money, &F1};
  TextBox LastPayment{*this, "LastPayment", {"Last Payment", "末期金额"}, Kind::money, &F1};
  TextBox LoanBal{*this, "LoanBal", {"Loan Balance", "贷款结余"}, Kind::money, &F1};
  Button Command3{*this, "Command3", {"Cal. &Payment", "计算还款额(&P)"}, ButtonRole::plain, &F1};

  TabPage PropertyPage{*this, "PropertyPage", {"Collateral", "抵押品"}, SSTab1};
  Frame F2{*this, "F2", {"Collateral and Property", "抵押品与产业"}};
  PropertyBoxes property{*this, &F2};
  TextBox ReminderDate{*this, "ReminderDate", {"Reminder", "提醒日期"}, Kind::date, &F2};
  TextBox ReminderDate2{*this, "ReminderDate2", {"Reminder 2", "提醒日期 2"}, Kind::date, &F2};

  TabPage PersonPage{*this, "PersonPage", {"Applicants / Guarantors", "申请人／担保人"}, SSTab1};
  TextBox LinkCust{*this, "LinkCust", {"Customer Code", "顾客编号"}};
  TextBox LinkName{*this, "LinkName", {"Customer Name", "顾客姓名"}};
  TextBox LinkRelation{*this, "LinkRelation", {"Relationship", "关系"}};
  ComboBox LinkType{*this, "LinkType", {"Role", "身份"}, {"Applicant", "Guarantor", "Chargor"}};
  Button Command1{*this, "Command1", {"&Update Person", "更新人物(&U)"}};
  Grid LinkDG;

  TabPage ConditionPage{*this, "ConditionPage", {"Conditions", "条件"}, SSTab1};
  Label ConditionLBL{
      *this,
      "ConditionLBL",
      {"Conditions to be fulfilled before release of loan facilities:", "放款前须履行的条件："}};
  CheckBox Opt1{*this, "Opt1", {"Condition 1", "条件 1"}};
  CheckBox Opt2{*this, "Opt2", {"Condition 2", "条件 2"}};
  CheckBox Opt3{*this, "Opt3", {"Condition 3", "条件 3"}};
  CheckBox Opt4{*this, "Opt4", {"Condition 4", "条件 4"}};
  CheckBox Opt5{*this, "Opt5", {"Condition 5", "条件 5"}};
  TextBox OtherCond{*this, "OtherCond", {"Other Conditions", "其他条件"}, Kind::memo};

  TabPage HistoryPage{*this, "HistoryPage", {"History", "经过"}, SSTab1};
  Grid vsd;
  TabPage MrtaPage{*this, "MrtaPage", {"MRTA", "房贷保险"}, SSTab1};
  Grid vsdd;
  EndPages pages_end{*this};

  Button CmdNew{*this, "CmdNew", {"&New", "新申请(&N)"}};
  Button CmdPrint{*this, "CmdPrint", {"P&rint Application", "打印申请(&R)"}};
  Button SSCommand1{*this, "SSCommand1", {"&Letter of Offer", "要约函(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  // --- loan_app_frm.cpp
  void BindRecord();
  void BindEvents();
  void StartNew();
  void ClearAll();
  void LoadApplication(std::string id);
  bool LoadCustomer();
  // The CustMast row of a person that the user may see; nothing, and the box refused, otherwise.
  bool FindPerson(TextBox& box, TextBox& name, std::string* company = nullptr);
  void ApplyLocks();
  void ShowState();
  std::vector<TextBox*> TypedFigures() const;  // the boxes of numbers and dates to type in
  bool CheckTyped(TextBox& box);               // brings an amount into its shown form
  bool Typed() const;                          // something that no save has kept
  void DecideFirst();
  void DecideFinal();
  bool ApprovedTooEarly() const;  // by the final level, with no recommendation
  // The columns that a decision or a loan changes, as stored now: two saves that cross are told by
  // it. "" when the application is gone.
  std::string StoredDecision(const std::string& id) const;

  // --- loan_app_lists.cpp
  void BindListEvents();
  void LoadLists();
  void LoadPersons();
  void LinkPerson();
  void UnlinkPerson(int row);
  void EditHistory(int row, int column, const std::string& before);
  void EditMrta(int row, int column, const std::string& before);
  void KeepBlankLine(Grid& grid);  // the last line is the one to type a new one in
  std::string Lists() const;       // as one text: tells whether something was changed
  void PrintApplication();
  void PrintLetterOffer();
  std::string NamesOf(const std::string& role) const;

  // --- loan_app_save.cpp
  bool CalculatePayment();
  bool Save();
  bool CheckRequired();
  bool CheckCollateral();
  bool CheckDecision();
  bool CheckFigures();
  void Write(const std::string& id);
  void WriteLines(const std::string& id);

  Record record_;
  std::string loaded_id_;        // the stored application shown; "" for a new one
  std::string loaded_decision_;  // StoredDecision at load
  std::string drawn_id_;         // of the application that is being inserted
  std::string remembered_lists_;
};

}  // namespace kaunter
