// NewLoanFrm: the loan, with its schedule, payments, charges, drawdowns, guarantors, collateral and
// documents. It opens in a mode (LoanMode): a new loan, edit, delete, close, open back, or one of
// two inquiries that change nothing.
//
//   new_loan_frm.cpp        the record: binding, opening, load, locks
//   new_loan_events.cpp     what happens when a box is left
//   new_loan_lists.cpp      the grids and their keys
//   new_loan_persons.cpp    customer, guarantors, application
//   new_loan_checks.cpp     the checks of a save, in their order
//   new_loan_save.cpp       the write and what follows it; close, open, delete
#pragma once

#include <string>
#include <vector>

#include "core/record.h"
#include "customers/customer_photo.h"
#include "customers/photo_server.h"
#include "loans/guarantor_boxes.h"
#include "loans/loan_screen.h"
#include "loans/loan_totals.h"
#include "loans/property_boxes.h"
#include "loans/schedule_store.h"
#include "loans/terms.h"

namespace kaunter {

class NewLoanFrm : public LoanScreen {
 public:
  NewLoanFrm(Session& session, Desk& desk);

  CustomerPhoto CustPhoto{*this, "CustPhoto", {"Photo", "照片"}};
  Label LoanLBL{*this, "LoanLBL"};  // the mode
  Frame Identity{*this, "Identity"};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}, Kind::text, &Identity};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}, Kind::text, &Identity};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}, Kind::text, &Identity};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}, {}, &Identity};
  // Of the customer, kept with the loan as it stood when the loan was saved.
  TextBox CreditLimit{*this, "CreditLimit", {"Credit Limit", "信用额"}, Kind::money, &Identity};
  // The loan at a glance, whatever page is shown.
  Frame Glance{*this, "Glance"};
  Label BalanceLBL{*this, "BalanceLBL", {"Balance", "结余"}, &Glance};
  Label NextDueLBL{*this, "NextDueLBL", {"Next Due", "下期到期"}, &Glance};
  Label ArrearsLBL{*this, "ArrearsLBL", {"Arrears", "拖欠"}, &Glance};
  Label CreditLBL{*this, "CreditLBL", {"Credit", "信用"}, &Glance};
  Bar InstalmentBar{*this, "InstalmentBar", {"Instalments", "分期"}, &Glance};

  Tab SSTab1{*this, "SSTab1"};
  TabPage LoanPage{*this, "LoanPage", {"Loan", "贷款"}, SSTab1};
  TextBox OldLoanCode{*this, "OldLoanCode", {"Alternate Code", "另用编号"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  ComboBox LoanTypeID{*this, "LoanTypeID", {"Loan Type", "还款方式"}};
  ComboBox LoanType{
      *this, "LoanType", {"Repayment / Collateral", "抵押"}, {"Secured", "Unsecured"}};
  ComboBox DragLoan{
      *this, "DragLoan", {"Loan Scheme", "贷款方案"}, {"Personal Loan", "Flexi Loan"}};
  ComboBox LoanPurpose{*this, "LoanPurpose", {"Interest Method", "利息算法"}, {"FLAT", "REDUCING"}};
  ComboBox DragIntType{*this,
                       "DragIntType",
                       {"Interest Payment", "付息方式"},
                       {"Interest Pay First", "Interest Pay Later"}};
  ComboBox IntType{*this, "IntType", {"Interest Type", "利息种类"}, {"%", "$"}};
  Label Label51{*this, "Label51"};  // hidden with LoanAmt, which carries its own caption
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款额"}, Kind::money};
  TextBox LoanAmt2{*this, "LoanAmt2", {"Loan Amount 2", "贷款额 2"}, Kind::money};
  TextBox TopUpAmt{*this, "TopUpAmt", {"Top Up Amount", "加借额"}, Kind::money};
  TextBox InsRate{*this, "InsRate", {"Interest Rate % p.a.", "年利率 %"}, Kind::rate};
  TextBox InsRate2{
      *this, "InsRate2", {"Interest Rate % p.a. (copy)", "年利率 %（副本）"}, Kind::rate};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}, Kind::integer};
  TextBox LoanTerm2{*this, "LoanTerm2", {"Grace Period", "宽限期数"}, Kind::integer};
  TextBox LoanTerm3{*this, "LoanTerm3", {"Bullet Term", "期满期数"}, Kind::integer};
  TextBox NextDueDate{*this, "NextDueDate", {"Next Due Date", "下期到期日"}, Kind::date};
  TextBox NextCall{*this, "NextCall", {"Next Call", "下次联络"}, Kind::date};
  TextBox FirstPayment{*this, "FirstPayment", {"First Payment", "首期金额"}, Kind::money};
  TextBox InstallmentAmt{*this, "InstallmentAmt", {"Installment Amt", "每期金额"}, Kind::money};
  TextBox LastPayment{*this, "LastPayment", {"Last Payment", "末期金额"}, Kind::money};
  TextBox InstallmentAmt2{
      *this, "InstallmentAmt2", {"Installment Amt (copy)", "每期金额（副本）"}, Kind::money};
  TextBox LastPayment2{
      *this, "LastPayment2", {"Last Payment (copy)", "末期金额（副本）"}, Kind::money};
  TextBox PayOutAmt2{*this, "PayOutAmt2", {"Grace Interest", "宽限期利息"}, Kind::money};
  TextBox LateChargePerDay{
      *this, "LateChargePerDay", {"Late Int Rate PA", "逾期年利率 %"}, Kind::rate};
  TextBox OfferDays{*this, "OfferDays", {"Offer Days", "宽限天数"}, Kind::integer};
  CheckBox SpecialSch{*this, "SpecialSch", {"Special Schedule", "特别时间表"}};
  TextBox StopInt{*this, "StopInt", {"Stop Interest", "停止利息"}, Kind::date};
  TextBox EndTermIntDate{
      *this, "EndTermIntDate", {"Term End Interest Start at", "期满利息始于"}, Kind::date};
  ComboBox LoanStatus{*this, "LoanStatus", {"Loan Status", "贷款状态"}, {"ACTIVE", "CLOSED"}};
  TextBox LoanDuration{*this, "LoanDuration", {"Status Date", "状态日期"}, Kind::date};
  ComboBox LoanGroupID{*this, "LoanGroupID", {"Loan Group", "贷款组别"}};
  TextBox ProcessFee{*this, "ProcessFee", {"Processing Fee", "手续费"}, Kind::money};
  TextBox DepositAmt{*this, "DepositAmt", {"Stamp Fee", "印花税"}, Kind::money};
  TextBox DepositAmt2{*this, "DepositAmt2", {"Others", "其他"}, Kind::money};
  TextBox TermInt{*this, "TermInt", {"MRTA Premium", "房贷保险费"}, Kind::money};
  TextBox OathsAmt{*this, "OathsAmt", {"Fire Insurance", "火险"}, Kind::money};
  TextBox LegalFee{*this, "LegalFee", {"Legal Fee", "律师费"}, Kind::money};
  TextBox MiscAmt{*this, "MiscAmt", {"Misc Charges", "杂费"}, Kind::money};
  ComboBox SalesmanID{*this, "SalesmanID", {"Salesman", "业务员"}};
  TextBox SalesmanComm{*this, "SalesmanComm", {"Salesman Comm", "业务员佣金"}, Kind::money};
  ComboBox AdvertiseID{*this, "AdvertiseID", {"Get Know", "得知途径"}};
  TextBox Introducer{*this, "Introducer", {"Introducer", "介绍人"}};
  TextBox IntroducerAmt{*this, "IntroducerAmt", {"Introducer Comm", "介绍人佣金"}, Kind::money};
  TextBox Memo1{*this, "Memo1", {"Remark", "备注"}, Kind::memo};
  Button Command3{*this, "Command3", {"Cal. &Payment", "计算还款额(&P)"}};
  Button Command5{*this, "Command5", {"Cal. I&nt", "计算利率(&N)"}};
  Button Command9{*this, "Command9", {"Cal. Loan A&mt", "计算贷款额(&M)"}};
  Button Command8{*this, "Command8", {"Payment &Reader", "付款读取(&R)"}};
  Button SSCommand3{*this, "SSCommand3", {"From A&pplication", "取自申请(&P)"}};

  TabPage SchedulePage{*this, "SchedulePage", {"Schedule", "时间表"}, SSTab1};
  CheckBox SchChanged{*this, "SchChanged", {"New Schedule", "新时间表"}};
  Grid vsd3;
  Label ScheduleTotalLBL{*this, "ScheduleTotalLBL"};

  TabPage PaymentPage{*this, "PaymentPage", {"Payments", "付款"}, SSTab1};
  Grid vsd4;
  TextBox TotPay{*this, "TotPay", {"Total Payment", "付款总额"}, Kind::money};
  TextBox TotInt{*this, "TotInt", {"Total Late Interest", "逾期利息总额"}, Kind::money};
  TextBox TotCharge{*this, "TotCharge", {"Total Charge", "收费总额"}, Kind::money};
  TextBox TotDiscAmt{*this, "TotDiscAmt", {"Total Discount", "折扣总额"}, Kind::money};
  TextBox TotCollectorAmt{*this, "TotCollectorAmt", {"Total Collector", "收账费总额"}, Kind::money};
  TextBox IntBal{*this, "IntBal", {"Interest Balance", "利息结余"}, Kind::money};
  TextBox LoanBal{*this, "LoanBal", {"Loan Balance", "贷款结余"}, Kind::money};
  TextBox CloseBal{*this, "CloseBal", {"Closing Balance", "结束结余"}, Kind::money};
  TextBox LastPaymentDate{
      *this, "LastPaymentDate", {"Last Payment Date", "最后付款日"}, Kind::date};
  TextBox LastPaymentNo{*this, "LastPaymentNo", {"Last Payment No", "最后付款编号"}};
  TextBox TotLoanInt{*this, "TotLoanInt", {"Total Loan Interest", "贷款利息总额"}, Kind::money};
  TextBox OrgDueDate{*this, "OrgDueDate", {"Original Due Date", "原定到期日"}, Kind::date};
  Button CmdSettle{*this, "CmdSettle", {"Settlement &Quotation", "结清报价(&Q)"}};

  TabPage ChargesPage{*this, "ChargesPage", {"Charges", "收费"}, SSTab1};
  Grid ChargesDG;
  Grid ChargesDG2;

  TabPage DrawDownPage{*this, "DrawDownPage", {"Drawdown / Cheques", "放款／支票"}, SSTab1};
  Grid DrawDownDG;
  TextBox PayOutAmt{*this, "PayOutAmt", {"Total Drawdown", "放款总额"}, Kind::money};
  Button CmdDrawDown{*this, "CmdDrawDown", {"New Dra&wdown", "新放款(&W)"}};
  Grid vsd;

  TabPage GuarantorPage{*this, "GuarantorPage", {"Guarantors", "担保人"}, SSTab1};
  Frame Guarantor1{*this, "Guarantor1", {"Guarantor 1", "担保人 1"}};
  Frame Guarantor2{*this, "Guarantor2", {"Guarantor 2", "担保人 2"}};
  GuarantorBoxes guarantors[2];
  Frame SecondApplicant{*this, "SecondApplicant", {"Second Applicant", "第二申请人"}};
  TextBox CustID2{*this, "CustID2", {"Customer Code", "顾客编号"}, Kind::text, &SecondApplicant};
  TextBox CustName2{
      *this, "CustName2", {"Customer Name", "顾客姓名"}, Kind::text, &SecondApplicant};
  TextBox CustNIC2{*this, "CustNIC2", {"New IC", "新身份证"}, Kind::text, &SecondApplicant};
  TextBox CustAdd12{*this, "CustAdd12", {"Address", "地址"}, Kind::text, &SecondApplicant};

  TabPage PropertyPage{*this, "PropertyPage", {"Collateral", "抵押品"}, SSTab1};
  PropertyBoxes property{*this};
  ComboBox OwnerName{*this, "OwnerName", {"Owner", "业主"}, {}, true};

  TabPage BankPage{*this, "BankPage", {"Bank / SI", "银行"}, SSTab1};
  ComboBox Bank{*this, "Bank", {"Bank", "银行"}, {}, true};
  TextBox BankBranch{*this, "BankBranch", {"Branch", "分行"}};
  TextBox BankBook{*this, "BankBook", {"Bank Book", "存折"}};
  TextBox ATMCardNo{*this, "ATMCardNo", {"ATM Card No", "提款卡号码"}};
  TextBox ATMPinNo{*this, "ATMPinNo", {"ATM Pin No", "提款卡密码"}, Kind::password};
  Frame SIDetail{*this, "SIDetail", {"[ SI Detail ]", "[ 自动转账 ]"}};
  TextBox SIBank{*this, "SIBank", {"SI Bank", "银行"}, Kind::text, &SIDetail};
  TextBox SIBankBranch{*this, "SIBankBranch", {"SI Branch", "分行"}, Kind::text, &SIDetail};
  TextBox SIBankContactPerson{
      *this, "SIBankContactPerson", {"SI Contact Person", "联络人"}, Kind::text, &SIDetail};
  TextBox SIBankContactNo{
      *this, "SIBankContactNo", {"SI Contact No", "联络电话"}, Kind::text, &SIDetail};
  TextBox SIBankNo{*this, "SIBankNo", {"SI Ref No", "参考号码"}, Kind::text, &SIDetail};
  TextBox SIBankAmt{*this, "SIBankAmt", {"SI Amount", "金额"}, Kind::money, &SIDetail};
  TextBox SIBankDate{*this, "SIBankDate", {"SI Date Start", "开始日期"}, Kind::date, &SIDetail};

  TabPage DocumentPage{*this, "DocumentPage", {"Documents", "文件"}, SSTab1};
  TextBox AgreementNo{*this, "AgreementNo", {"Agreement No", "合约号码"}};
  TextBox AgreementPrint{*this, "AgreementPrint", {"Agreement Printed", "合约已印"}};
  TextBox NumberToText{*this, "NumberToText", {"Amount in Words", "金额大写"}};
  TextBox StampingDate{*this, "StampingDate", {"Stamping Date", "盖印日期"}, Kind::date};
  TextBox Memo3{*this, "Memo3", {"Schedule J Repayment", "附表 J 还款"}, Kind::memo};
  TextBox Memo5{*this, "Memo5", {"Memo", "备忘"}, Kind::memo};
  Grid Vsd2;

  TabPage AmlPage{*this, "AmlPage", {"AML/CFT", "反洗钱"}, SSTab1};
  ComboBox AMLACode{*this, "AMLACode", {"Loan Purpose", "贷款用途"}, {}, true};
  TextBox AMLADesc{*this, "AMLADesc", {"Description", "说明"}, Kind::memo};
  TextBox AMLAID{*this, "AMLAID", {"STR No", "报告号码"}};
  Button SSCommand5{*this, "SSCommand5", {"Submit S&TR", "呈报(&T)"}};
  Button SSCommand6{*this, "SSCommand6", {"C&DD", "尽职审查(&D)"}};

  EndPages pages_end{*this};
  Button CmdPrev{*this, "CmdPrev", {"&Previous", "上一个(&P)"}};
  Button CmdNext{*this, "CmdNext", {"Ne&xt", "下一个(&X)"}};
  Button CmdNew{*this, "CmdNew", {"&New", "新增(&N)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CmdPrint{*this, "CmdPrint", {"Pr&int", "打印(&I)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;
  void Tick() override;

 private:
  // --- the record (new_loan_frm.cpp)
  void BindRecord();
  void BindEvents();
  void FillLists();
  void ApplySettings();  // what the office's settings and the person's rights show and lock
  void StartNew();       // CmdNew
  void ClearLoanScreen();
  void StartAgain();  // a blank screen of the mode in force
  // Fills the screen from the box LoanID; refuses with the told text and clears when it cannot.
  void LoadLoan();
  void LoadLoan(const std::string& id);
  bool PassesModeGate(const std::string& status);
  // Also keeps TermsOpen.
  void SetTermsOpen(bool open);
  void ShowMode();
  void ShowGlance();
  void ReportSuspicion();  // SSCommand5
  void ShowAml();          // the AML page, by the office's switch and that of the loan's company
  void ShowNeighbour(bool next);
  bool IsInquiry() const;
  bool Typed() const;  // something that no save has kept
  LoanTerms Terms() const;

  // --- boxes that are left (new_loan_events.cpp)
  void BindLoanEvents();
  // Trims the box and takes its mark away. True when something is left in it; blank text never
  // brings a message.
  bool Filled(TextBox& box);
  // The box holds an amount, then shown as "#,##0.00"; else `refusal` is told and it keeps the
  // focus. False for a blank box too.
  bool LeaveMoney(TextBox& box, const Caption& refusal);
  bool LeaveDate(TextBox& box, const Caption& refusal);
  void LeaveLoanTerm();
  void LeaveLoanTerm2();
  void LeaveLoanTerm3();
  void LeaveFirstPayment();
  void LeaveInstallmentAmt();
  void LeaveLastPayment();
  void LeaveCollateralValue();  // Memo4
  void PickScheme();            // DragLoan
  // CalcPayment of the open terms; false when it was refused, told with `prompts` only.
  bool CalculatePayment(bool prompts);
  void CalculateRate();     // Command5
  void CalculateLoanAmt();  // Command9
  void AutomaticFees();
  void StepNextDueDate(const Control& must_be_enabled);
  bool CheckOldLoanCode();  // false when the code belongs to another; told already

  // --- grids (new_loan_lists.cpp)
  void BindGridEvents();
  void LoadGrids();
  void ClearGrids();
  void LoadSchedule();
  void LoadPayments();
  void LoadCharges();
  void LoadDrawdowns();
  void LoadCheques();
  void LoadCheckList();
  void EditSchedule(int row, int column, const std::string& before);
  void SumSchedule();
  void BuildRepaymentText();
  std::vector<EditedLine> EditedLines() const;
  void OpenPayment(int row);
  void DeletePayment(int row);
  void OpenDrawdown(const std::string& sid);  // "" for a new release
  void OpenSettlement();
  void EditCheque(int row, int column, const std::string& before);
  void DeleteCheque(int row);

  // --- persons (new_loan_persons.cpp)
  void BindPersonEvents();
  // Takes CustID as typed: a customer, an alternate code, a new IC. `lenient`, of a loan that
  // stands: only notes a customer who is not ACTIVE. False when no loan can start.
  bool LoadCustomer(bool lenient);
  void ShowCredit(Money limit, const std::string& limit_type);
  void LoadSecondApplicant();
  void TakeGuarantor(GuarantorBoxes& boxes);
  void ReadCard(GuarantorBoxes& boxes);
  void TakePhotoOf(GuarantorBoxes& boxes, const std::string& loan, const std::string& photo,
                   const std::string& untold);
  void SetPhoto(GuarantorBoxes& boxes, const std::string& file);
  void ChoosePhoto(GuarantorBoxes& boxes);
  void ShowPhotos();
  void TakeApplication();
  // The customer of the loan has a part in the application; else it is refused with its owner.
  bool CheckApplicant(const std::string& application);

  // --- the checks of a save (new_loan_checks.cpp); each tells its own refusal
  bool CheckAll();  // all of them in their order
  // Marks the control and leaves the focus where it is.
  bool RefuseInPlace(Control& control, const Caption& text);
  bool MayAmend();
  class Boxes;  // as those that know no screen read them
  bool CheckBoxes();
  bool CheckAlternateCode();
  bool CheckFigures();
  bool CheckOpenTerms();
  bool CheckSchemeStays();
  bool CheckLowestRate();
  bool CheckInstalmentTotal();
  bool CheckLinkAccounts();
  bool CheckCredit();
  bool CheckEditedSchedule();
  bool CheckTotalRate();
  bool CheckAmlThreshold();

  // --- the save (new_loan_save.cpp)
  void SaveLoan();
  bool WriteLoanRecord();
  void StoreLoan(bool is_new);  // the statements of the transaction
  void TakeSaved(bool is_new);  // the loan stands: the screen edits it from here on
  void KeepGuarantorPhotos();
  LoanFigures Figures() const;  // of the boxes
  void WriteSchedule(bool is_new);
  void ReplayPayments();
  void LinkLoanDocuments();
  void ReloadAfterSave(const std::string& mode);
  void CloseOrOpen(bool close);
  void Delete();
  // The failure of a close, open or delete: log line and message. Its transaction is rolled back.
  void TellRolledBack(const std::exception& failure, const Caption& text);

  Record record_;
  std::string LoanMode;
  bool SaveOK = false;
  bool TermsOpen = false;
  bool SignedIn = false;
  LoanFigures OldValues;           // of the loaded row, to take its totals back
  std::string loaded_id_;          // the stored loan shown; "" for a new one
  std::string taken_application_;  // AppID that SSCommand3 brought
  std::string pending_photos_[2];  // chosen and not yet in the photo store
  ShownPhotos shown_photos_;
};

}  // namespace kaunter
