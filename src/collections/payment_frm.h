// PaymentFrm: the counter screen. One repayment of one loan is taken, changed or removed. It opens
// in a mode, held as text: "New Payment", "Edit Payment", "Delete Payment"; with a loan in
// HandOverLoanID, a payment in PickerExtra and a settlement quotation in HandOverQuote when the
// caller has them.
//
// The screen stores one row of PaymentMast and then has the loan rebuilt; it applies nothing to the
// schedule itself.
//
//   payment_frm.cpp         binding, opening, modes, navigation, papers
//   payment_frm_load.cpp    a loan or a stored payment comes on the screen
//   payment_frm_split.cpp   boxes that are left: how the money is split
//   payment_frm_checks.cpp  the checks of a save, in their order
//   payment_frm_save.cpp    the write and what follows it; delete
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "collections/payment_preview.h"
#include "core/record.h"
#include "core/refusal.h"
#include "core/session_screen.h"
#include "customers/customer_photo.h"

namespace kaunter {

class PaymentFrm : public SessionScreen {
 public:
  PaymentFrm(Session& session, Desk& desk);

  CustomerPhoto CustPhoto{*this, "CustPhoto", {"Photo", "照片"}};
  Label ModeLBL{*this, "ModeLBL"};
  // What the clerk types first.
  Frame Identity{*this, "Identity"};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}, Kind::text, &Identity};
  TextBox PayDate{*this, "PayDate", {"Date", "付款日"}, Kind::date, &Identity};
  TextBox TotPay{*this, "TotPay", {"Total Payment", "付款总额"}, Kind::money, &Identity};
  TextBox PayID{*this, "PayID", {"Payment Code", "付款编号"}, Kind::text, &Identity};
  ComboBox PaymentStatus{*this,
                         "PaymentStatus",
                         {"Payment Status", "付款状态"},
                         {"ACTIVE", "VOID", "DELETED"},
                         &Identity};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}, Kind::text, &Identity};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}, Kind::text, &Identity};
  TextBox AltCode{*this, "AltCode", {"Alternate Code", "另用编号"}, Kind::text, &Identity};
  TextBox CompCode{*this, "CompCode", {"Company", "公司"}, Kind::text, &Identity};
  TextBox UserID{*this, "UserID", {"User", "用户"}, Kind::text, &Identity};
  // The loan at a glance, whatever page is shown.
  Frame Glance{*this, "Glance"};
  TextBox OldLoanBal{*this, "OldLoanBal", {"Loan Balance", "贷款结余"}, Kind::money, &Glance};
  TextBox DragIntType{
      *this, "DragIntType", {"Outstanding Charges", "未付收费"}, Kind::money, &Glance};
  // Of those, what the save of a new payment waives for its date.
  TextBox WaivedAmt{*this, "WaivedAmt", {"Waived by Date", "按日期豁免"}, Kind::money, &Glance};
  TextBox ActPayable{*this, "ActPayable", {"Instalment Due", "本期应还"}, Kind::money, &Glance};
  TextBox NewLoanBal{*this, "NewLoanBal", {"New Balance", "新结余"}, Kind::money, &Glance};
  Button ListCmd{*this, "ListCmd", {"Late Charge", "逾期收费"}, ButtonRole::plain, &Glance};

  Tab SSTab1{*this, "SSTab1"};
  TabPage PaymentPage{*this, "PaymentPage", {"Payment", "付款"}, SSTab1};
  TextBox PayAmt{*this, "PayAmt", {"Payment Installment", "分期付款"}, Kind::money};
  TextBox InstalAmt{*this, "InstalAmt", {"Towards Schedule", "还入时间表"}, Kind::money};
  TextBox PayExtra{*this, "PayExtra", {"Extra Capital", "额外本金"}, Kind::money};
  TextBox IntAmt{*this, "IntAmt", {"Interest Payment", "逾期利息付款"}, Kind::money};
  TextBox ChargeAmt{*this, "ChargeAmt", {"Other Charges", "其他收费"}, Kind::money};
  TextBox CollectorAmt{*this, "CollectorAmt", {"Collector Fee", "收账费"}, Kind::money};
  TextBox Memo5{*this, "Memo5", {"Late Interest / Disc", "逾期利息／折扣"}, Kind::money};
  TextBox DiscAmt{*this, "DiscAmt", {"Late Interest / Disc", "逾期利息／折扣"}, Kind::money};
  TextBox MPayment{*this, "MPayment", {"Multiple Payment", "多期付款"}, Kind::integer};
  Label SplitLBL{*this, "SplitLBL"};  // the payment in words
  ComboBox CollectInfoID{*this, "CollectInfoID", {"Collection Type", "收款方式"}, {}, true};
  ComboBox Bank{*this, "Bank", {"Bank Code", "银行"}, {}, true};
  ComboBox ChqNo{*this, "ChqNo", {"Cheque No", "支票号码"}, {}, true};
  TextBox ReceiptNo{*this, "ReceiptNo", {"Receipt No", "收据号码"}};
  ComboBox LampiranStatus{*this, "LampiranStatus", {"Loan Group", "贷款组别"}, {}, true};
  ComboBox SalesmanID{*this, "SalesmanID", {"Salesman ID", "业务员"}, {}, true};
  TextBox SalesmanComm{*this, "SalesmanComm", {"Salesman Comm", "业务员佣金"}, Kind::money};
  TextBox TopAmt{*this, "TopAmt", {"Topup per Term", "每期加借"}, Kind::money};
  TextBox TopTerm{*this, "TopTerm", {"Topup Terms", "加借期数"}, Kind::integer};
  TextBox TopUpAmt{*this, "TopUpAmt", {"Topup Amount", "加借额"}, Kind::money};
  TextBox Memo1{*this, "Memo1", {"Remark", "备注"}};
  TextBox Memo2{*this, "Memo2", {"Remark 2", "备注 2"}};
  TextBox Memo3{*this, "Memo3", {"Remark 3", "备注 3"}};
  TextBox SchID{*this, "SchID", {"Schedule", "期数"}, Kind::integer};
  TextBox LastDueDate{*this, "LastDueDate", {"Due Date", "到期日"}, Kind::date};
  TextBox NextDueDate{*this, "NextDueDate", {"Next Due Date", "下期到期日"}, Kind::date};
  TextBox IntDate{*this, "IntDate", {"Interest Date", "利息日期"}, Kind::date};
  TextBox PayableAmt{*this, "PayableAmt", {"Payable Amt", "应还"}, Kind::money};
  TextBox OutIntAmt{*this, "OutIntAmt", {"Interest / Balance", "利息／结余"}, Kind::money};
  TextBox IntChargeAmt{*this, "IntChargeAmt", {"Interest / Balance", "利息／结余"}, Kind::money};
  TextBox OutDragAmt{*this, "OutDragAmt", {"Capital / Balance", "本金／结余"}, Kind::money};
  TextBox DragInt{*this, "DragInt", {"Capital / Balance", "本金／结余"}, Kind::money};
  ComboBox DragLoan{
      *this, "DragLoan", {"Loan Scheme", "贷款方案"}, {"Personal Loan", "Flexi Loan"}};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}};
  TextBox LoanType{*this, "LoanType", {"Loan Type", "还款方式"}};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款额"}, Kind::money};
  TextBox PayOutAmt{*this, "PayOutAmt", {"Total Drawdown", "放款总额"}, Kind::money};
  TextBox InsRate{*this, "InsRate", {"Interest Rate", "利率"}, Kind::rate};
  TextBox LateChargePerDay{*this, "LateChargePerDay", {"Late Int Rate", "逾期利率"}, Kind::rate};
  TextBox OfferDays{*this, "OfferDays", {"Grace Days", "宽限天数"}, Kind::integer};

  TabPage BankPage{*this, "BankPage", {"Bank Withdrawal", "银行提款"}, SSTab1};
  TextBox WithdrawDate{*this, "WithdrawDate", {"Withdraw Date", "提款日期"}, Kind::date};
  TextBox BankOpenBal{*this, "BankOpenBal", {"Open Balance", "原有结余"}, Kind::money};
  TextBox WithdrawAmt{*this, "WithdrawAmt", {"Withdraw Amount", "提款额"}, Kind::money};
  TextBox RepaymentAmt{*this, "RepaymentAmt", {"Repayment", "还款额"}, Kind::money};
  TextBox BankinReturn{*this, "BankinReturn", {"Bank in Return", "存回"}, Kind::money};
  TextBox BankCloseBal{*this, "BankCloseBal", {"Current Balance", "现有结余"}, Kind::money};

  TabPage ListPage{*this, "ListPage", {"List of Payments", "付款记录"}, SSTab1};
  Grid DG;

  TabPage AmlPage{*this, "AmlPage", {"AML/CFT", "反洗钱"}, SSTab1};
  ComboBox AMLACode{*this, "AMLACode", {"Source of Fund", "资金来源"}, {}, true};
  TextBox AMLADesc{*this, "AMLADesc", {"Description", "说明"}, Kind::memo};
  TextBox AMLAID{*this, "AMLAID", {"STR No", "报告号码"}};
  Button SSCommand5{*this, "SSCommand5", {"Submit S&TR", "呈报(&T)"}};
  Button SSCommand6{*this, "SSCommand6", {"C&DD", "尽职审查(&D)"}};

  EndPages pages_end{*this};
  Button CmdPrev{*this, "CmdPrev", {"&Previous", "上一个(&P)"}};
  Button CmdNext{*this, "CmdNext", {"Ne&xt", "下一个(&X)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CmdPrint{*this, "CmdPrint", {"Pr&int Receipt", "打印收据(&I)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  void Tick() override { CustPhoto.Look(); }
  bool RequestClose() override;
  void Unload() override;

 private:
  // A box that takes an amount: what is said of letters or of an amount below zero.
  struct AmountBox {
    TextBox* box;
    Caption invalid;
    bool may_be_negative = false;
  };

  // --- payment_frm.cpp
  void BindRecord();
  void BindEvents();
  void FillLists();
  // The loan of a customer who has just one that runs; "" for none or several.
  std::string OnlyLoanOf(const std::string& cust_id);
  bool IsNew() const { return PaymentMode == "New Payment"; }
  bool IsEdit() const { return PaymentMode == "Edit Payment"; }
  bool IsDelete() const { return PaymentMode == "Delete Payment"; }
  bool IsFlexi() const { return DragLoan.index() == 1; }
  void ClearScreen();
  void StartAgain();  // a blank screen of the mode, ready for the next customer
  void ShowMode();
  // What the mode, the scheme and the payment shown let be typed.
  void ApplyLocks();
  void ShowAml();
  void ShowNeighbour(bool next);
  bool Typed() const;
  // Asks when something but the key itself was typed; on No the key goes back to what it was.
  bool MayReplace(TextBox& key, const std::string& before);
  void PrintReceipt();
  void PrintCdd();
  void ReportSuspicion();

  // --- payment_frm_load.cpp
  // Puts the loan of this code (either of its two) on the screen, for a new payment or for its list
  // of payments. False when it takes no payment; told already.
  bool OpenLoan(const std::string& code);
  void LoadPayment(std::string id);
  // The loan of LoanID behind a stored payment. False when it takes no payment.
  bool ShowLoanOfPayment();
  Recordset ReadLoan(const std::string& id);
  bool MayTakePayment(const Recordset& loan);
  void FillFromLoan(const Recordset& loan);
  void StartAmounts();
  void ShowInstalment();        // what the row SchID asks for
  void ShowStoredInstalment();  // the same, leaving alone what the payment has stored
  void LoadPayments();
  void ApplyQuote(const SettlementQuote& quote);
  // The loan as the rebuild of the payment will find it.
  void ReadLedger();

  // --- payment_frm_split.cpp
  void BindAmounts();
  // A number that the box takes; a blank one too. Else it is refused in the box's own words.
  bool LeaveAmount(TextBox& box);
  static bool Fits(const AmountBox& amount);
  bool CheckAmount(const AmountBox& amount);
  bool CheckTotal();
  // The same for all amount boxes and dates, without leaving them.
  bool CheckFigures();
  // The total is a sum that no one typed, and gives back no more than was paid too much.
  bool GivesBack(Money total) const;
  void LeaveTotal();
  void LeavePayAmt();
  // PayAmt goes to the schedule unless it is split already; the balance and the total follow.
  void SpreadPayAmt();
  void ShowNewBalance();
  void ShowTotal();
  // What the payment as it is typed would do; nothing while it cannot be told.
  std::optional<PaymentPreview> Preview() const;
  void ShowSplit();
  // The loan's group follows an edit over the line between owing and owing nothing.
  void OfferGroup(const std::optional<PaymentPreview>& preview);
  void LeaveInstalment();
  void LeaveExtra();
  bool LeaveRefund();
  Money FlexiLimit();
  bool CheckFlexiLimit();  // false when told
  bool LeaveMultiple();
  void LeaveTopUp(TextBox& box);
  bool CheckTopTerm();
  bool LeaveCheque();
  void LeaveBankFigure(TextBox& box);
  bool LeavePayDate();
  void FindLateCharges();
  void ForgetLateCharges();
  void ShowLateCharges();  // ListCmd

  // --- payment_frm_checks.cpp
  bool CheckAll();
  bool Passes(const std::optional<Refusal>& refusal);  // told where it is one
  bool CheckDrawn();
  bool CheckDiscountRight();
  bool MayEdit();
  void FillBlanks();
  bool CheckBalance();
  bool CheckTally();
  bool CheckDate();
  bool CheckNotNothing();
  // What leaving a box refuses, for boxes that were never left or kept what was refused.
  bool CheckLeftBoxes();
  bool CheckAmlThreshold();
  // Questions, for what is hardly ever meant.
  bool AgreedToCredit();
  bool AgreedToExtra();

  // --- payment_frm_save.cpp
  Payment Collected() const;
  void Save();
  void SavePayment();
  void StorePayment(Payment& payment);
  bool WritePayment(Payment& payment);
  // These throw when another desktop has taken away what the write stands on.
  void RefuseStaleLoan(const Payment& payment);
  void RefuseStalePayment();
  void RefuseTakenCheque(const Payment& payment);
  void WaiveLateCharges();
  void TellLinkedAccounts(const Payment& payment);
  void RemovePayment();
  void LogDone(const std::string& id, const char* what);

  Record record_;
  std::vector<AmountBox> amounts_;
  std::string PaymentMode = "New Payment";
  std::string callers_title_;
  std::string loaded_loan_;
  std::string loaded_payment_;
  Payment snapshot_;                  // the payment as loaded; empty for a new one
  std::optional<LedgerLoan> ledger_;  // of loaded_loan_
  std::string offered_group_;         // what the balance of an edit stands for
  // Zeroes the late charges that an earlier PayDate makes obsolete; empty when none was looked for.
  std::string PendingChargeUpdate;
  std::string late_charges_;    // the SELECT of the same rows
  bool SignedIn = false;        // a manager has, since the screen was cleared
  std::string split_total_;     // the TotPay that IntAmt and PayAmt stand for
  std::string checked_date_;    // the PayDate that passed
  std::string checked_cheque_;  // the ChqNo that was looked up
};

// The group of a loan that a payment leaves with this balance.
const char* GroupFor(Money balance);

// The amount of a box as its column keeps it; 0 for a blank and for what is no amount.
Money AmountIn(const TextBox& box);

}  // namespace kaunter
