#include "collections/payment_frm.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>

#include "compliance/aml.h"
#include "compliance/suspicion.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/screen_rights.h"
#include "core/session_report.h"
#include "core/values.h"
#include "platform/installation.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kAmountLength = 14;  // so that a few of them are summed without overflow
constexpr int kCountLength = 4;

struct Mode {
  const char* name;
  Caption shown;
  Caption button;
};

const Mode kModes[] = {
    {"New Payment", {"New Payment", "新付款"}, {"&Save", "储存(&S)"}},
    {"Edit Payment", {"Edit Payment", "更改付款"}, {"&Save", "储存(&S)"}},
    {"Delete Payment", {"Delete Payment", "删除付款"}, {"&Delete Payment", "删除付款(&D)"}},
};

const Mode& FindMode(const std::string& name) {
  for (const Mode& mode : kModes) {
    if (SameText(mode.name, name)) return mode;
  }
  return kModes[0];
}

std::vector<GridColumn> PaymentColumns() {
  return {{{"Payment Code", "付款编号"}, Kind::text, 15},
          {{"Schedule", "期数"}, Kind::integer, 7},
          {{"Date", "付款日"}, Kind::date, 10},
          {{"Amount", "金额"}, Kind::money, 10},
          {{"Interest Payment", "逾期利息付款"}, Kind::money, 12},
          {{"Late Interest", "逾期利息"}, Kind::money, 10},
          {{"Discount", "折扣"}, Kind::money, 8},
          {{"Topup", "加借"}, Kind::money, 8},
          {{"New Balance", "新结余"}, Kind::money, 11},
          {{"Remark", "备注"}, Kind::text, 14},
          {{"Other Charges", "其他收费"}, Kind::money, 11},
          {{"Receipt No", "收据号码"}, Kind::text, 12},
          {{"Capital", "本金"}, Kind::money, 10},
          {{"Interest", "利息"}, Kind::money, 10}};
}

}  // namespace

Money AmountIn(const TextBox& box) {
  const auto amount = Money::TryText(box.text());
  return amount ? Money::FromText(ShowMoney(*amount)) : Money();
}

const char* GroupFor(Money balance) {
  return balance > Money() ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
}

PaymentFrm::PaymentFrm(Session& session, Desk& desk)
    : SessionScreen("PaymentFrm", {"Payment", "付款"}, session, desk),
      DG(*this, "DG", {"Payments of the loan", "贷款的付款"}, PaymentColumns(), &ListPage),
      record_("PaymentMast", "PayID") {
  BindRecord();
  BindAmounts();
  BindEvents();
}

void PaymentFrm::BindRecord() {
  for (TextBox* box : {&BankOpenBal, &WithdrawAmt, &RepaymentAmt, &BankinReturn, &BankCloseBal}) {
    record_.Add(*box, As::money_or_null);
  }
  record_.AddPage(Identity, {&TotPay, &CustName, &AltCode});
  record_.AddPage(Glance, {&DragIntType, &WaivedAmt, &ActPayable});
  record_.AddPage(PaymentPage,
                  {&MPayment, &IntDate, &OutIntAmt, &OutDragAmt, &DragLoan, &LoanTerm, &LoanType,
                   &LoanAmt, &PayOutAmt, &InsRate, &LateChargePerDay, &OfferDays});
  record_.AddPage(BankPage);
  // Without the office's AML switch the table has no such columns.
  if (session().settings.AMLA) record_.AddPage(AmlPage);
}

void PaymentFrm::BindEvents() {
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (LoanID.empty() || SameText(LoanID.text(), loaded_loan_)) return;
    if (MayReplace(LoanID, loaded_loan_)) OpenLoan(LoanID.text());
  };
  OfferPicker(session(), LoanID, "LoanPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) OpenLoan(id);
  });
  PayID.onLeave = [this] {
    PayID.SetText(Trim(PayID.text()));
    if (PayID.empty() || SameText(PayID.text(), loaded_payment_)) return;
    if (MayReplace(PayID, loaded_payment_)) LoadPayment(PayID.text());
  };
  OfferPicker(session(), PayID, "PaymentPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadPayment(id);
  });
  const auto unless_unsaved = [this](auto act) {
    return [this, act] {
      if (MayLeaveRecord(Typed())) act();
    };
  };
  DG.onOpen = [this](int row, int) {
    if (!IsNew() && MayLeaveRecord(Typed())) LoadPayment(std::string(DG.Cell(row, 0)));
  };
  CmdPrev.onClick = unless_unsaved([this] { ShowNeighbour(false); });
  CmdNext.onClick = unless_unsaved([this] { ShowNeighbour(true); });
  CmdClear.onClick = unless_unsaved([this] { StartAgain(); });
  CmdPrint.onClick = [this] { PrintReceipt(); };
  SSCommand5.onClick = [this] { ReportSuspicion(); };
  SSCommand6.onClick = [this] { PrintCdd(); };
  ListCmd.onClick = [this] { ShowLateCharges(); };
  AMLACode.onLeave = [this] {
    if (!session().settings.LockAMLAReasonCode || AMLACode.empty() || AMLACode.index() >= 0) return;
    AMLACode.Clear();
    Refuse(AMLACode, {"Choose the Source of Fund from the list", "请从表中选择资金来源"});
  };
  SaveCmd.onClick = [this] { Save(); };
}

void PaymentFrm::Load() {
  // A picker empties what was handed over: it is taken first.
  PaymentMode = FindMode(session().CallerTag).name;
  std::string loan = session().HandOverLoanID;
  const std::string customer = session().HandOverCustID;
  const std::string payment = session().PickerExtra;
  const SettlementQuote quote = session().HandOverQuote;
  callers_title_ = std::exchange(session().MsgTitle, PaymentMode);
  record_.TakeWidths(main());
  TotPay.max_length = kAmountLength;
  for (const AmountBox& amount : amounts_) {
    amount.box->max_length = amount.box->kind() == Kind::integer ? kCountLength : kAmountLength;
  }
  for (TextBox* date : {&PayDate, &WithdrawDate}) date->max_length = kDateLength;
  FillLists();
  SSCommand6.SetVisible(std::filesystem::exists(FileOf(session().AppPath, "CDD2.rpt")));
  StartAgain();
  if (loan.empty() && !customer.empty()) loan = OnlyLoanOf(customer);
  if (!payment.empty() && !IsNew()) {
    LoadPayment(payment);
  } else if (!loan.empty() && OpenLoan(loan) && IsNew()) {
    if (!quote.DragLoan.empty()) ApplyQuote(quote);
    FocusOn(PayDate);
  }
}

void PaymentFrm::Unload() { session().MsgTitle = callers_title_; }

std::string PaymentFrm::OnlyLoanOf(const std::string& cust_id) {
  const Recordset loans = main().Query(
      fmt::format("SELECT LoanID FROM LoanMast WHERE CustID={} AND LoanStatus='ACTIVE' AND "
                  "LoanBal > 0",
                  QuoteStr(cust_id)));
  return loans.RowCount() == 1 ? NullToEmpty(loans.Field("LoanID")) : std::string();
}

void PaymentFrm::FillLists() {
  FillItems(CollectInfoID, main(), "SELECT CollectInfoID FROM CollectInfoMast ORDER BY 1");
  FillItems(Bank, main(), "SELECT BankCode FROM BankMast ORDER BY BankCode");
  FillItems(SalesmanID, main(), "SELECT SalesmanID FROM SalesmanMast ORDER BY SalesmanID");
  FillItems(LampiranStatus, main(), "SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID");
  if (session().settings.AMLA) FillReasonCodes(AMLACode, main(), "PaymentMast", "PAYMENT", true);
}

void PaymentFrm::ClearScreen() {
  record_.Clear();
  CustPhoto.Show(session(), {}, {});
  for (Control* control : controls()) {
    if (auto* box = dynamic_cast<TextBox*>(control)) {
      box->Clear();
      box->SetMark(false);
    }
  }
  DragLoan.Clear();
  ChqNo.SetItems({});
  DG.Clear();
  SplitLBL.SetText({});
  snapshot_ = {};
  ledger_.reset();
  offered_group_.clear();
  SignedIn = false;
  loaded_loan_.clear();
  loaded_payment_.clear();
  split_total_.clear();
  checked_date_.clear();
  checked_cheque_.clear();
  ForgetLateCharges();
  SaveCmd.SetEnabled(false);
  SSTab1.SetPage(0);
  ShowAml();
  ApplyLocks();
  record_.Remember();
}

void PaymentFrm::StartAgain() {
  ClearScreen();
  ShowMode();
  FocusOn(IsNew() ? LoanID : PayID);
}

void PaymentFrm::ShowMode() {
  const Mode& mode = FindMode(PaymentMode);
  ModeLBL.SetText(session().In(mode.shown));
  SetTitle(mode.shown);
  SaveCmd.SetCaption(mode.button);
}

void PaymentFrm::ApplyLocks() {
  for (Control* control : controls()) {
    if (control->type() != ControlType::text_box && control->type() != ControlType::combo_box) {
      continue;
    }
    // Nothing is typed into a payment that is to be deleted.
    control->SetLocked(IsDelete() && control != &LoanID && control != &PayID);
  }
  for (Control* shown : std::initializer_list<Control*>{
           &CustName,    &CustID,           &AltCode,    &CompCode,     &UserID,       &OldLoanBal,
           &DragIntType, &WaivedAmt,        &ActPayable, &NewLoanBal,   &SchID,        &LastDueDate,
           &NextDueDate, &IntDate,          &PayableAmt, &OutIntAmt,    &IntChargeAmt, &OutDragAmt,
           &DragInt,     &DragLoan,         &LoanTerm,   &LoanType,     &LoanAmt,      &PayOutAmt,
           &InsRate,     &LateChargePerDay, &OfferDays,  &BankinReturn, &BankCloseBal, &AMLAID}) {
    shown->SetLocked(true);
  }
  const bool is_stored = !loaded_payment_.empty();
  TotPay.SetLocked(!IsNew() || is_stored);
  if (!IsFlexi()) {
    InstalAmt.SetLocked(true);
    PayExtra.SetLocked(true);
  }
  PayID.SetEnabled(!IsNew());
  PaymentStatus.SetEnabled(IsEdit());
  CmdPrint.SetEnabled(is_stored);
}

bool PaymentFrm::Typed() const { return SaveCmd.enabled() && !IsDelete() && record_.Changed(); }

bool PaymentFrm::MayReplace(TextBox& key, const std::string& before) {
  const std::string typed = key.text();
  key.SetText(before);
  if (!MayLeaveRecord(Typed())) return false;
  key.SetText(typed);
  return true;
}

bool PaymentFrm::RequestClose() { return MayDiscard(Typed()); }

void PaymentFrm::ShowNeighbour(bool next) {
  // A person of one company walks through the payments of that company.
  const std::string id = NeighbourKey(main(), "PaymentMast", "PayID", PayID.text(), next,
                                      AndCompany(session(), "CompCode"));
  if (!id.empty()) LoadPayment(id);
}

// --- money laundering

void PaymentFrm::ShowAml() {
  AmlPage.SetVisible(!CompCode.empty() && LoadAMLSettings(session(), CompCode.text()));
  OfferShortcut(session(), SSCommand5, "AMLAFrm", {},
                !session().aml.DisableSTR && !loaded_payment_.empty());
  SSCommand6.SetEnabled(!loaded_payment_.empty());
}

void PaymentFrm::ReportSuspicion() {
  if (!Confirm(
          {"Confirm to report AML/CFT STR to Bank Negara ?", "确定向国家银行呈报可疑交易？"})) {
    return;
  }
  const std::string number = kaunter::ReportSuspicion(
      session(), desk(), {CustID.text(), CompCode.text(), LoanID.text(), loaded_payment_});
  if (number.empty()) return;
  AMLAID.SetText(number);
  if (IsDelete()) return;
  const Caption keep =
      SaveCmd.enabled()
          ? Caption{"Save the payment to keep the number with it.", "请储存付款，以便保留此号码。"}
          : Caption{"Save the payment with Edit Payment to keep the number with it.",
                    "请在“更改付款”中储存此付款，以便保留此号码。"};
  Tell(MessageKind::information, {fmt::format("{} is recorded. {}", number, keep.english),
                                  fmt::format("{} 已记录。{}", number, keep.chinese)});
}

// --- papers

void PaymentFrm::PrintReceipt() {
  const std::string& old_receipt = session().settings.OldReceipt;
  const std::string own_form = ReadSetting(main(), "OR");
  ReportJob job = SessionReport(session(), !own_form.empty()     ? own_form
                                           : old_receipt.empty() ? "Payment Receipt.rpt"
                                                                 : "Payment Receipt Old.rpt");
  job.SelectionFormula = "{PaymentMast.PayID}=" + QuoteStr(loaded_payment_);
  job.ParameterFields[0] = CountsAsTrue(old_receipt) ? "RptID;1;True" : "RptID;0;True";
  desk().Print(job);
}

void PaymentFrm::PrintCdd() {
  ReportJob job = SessionReport(session(), "CDD2.rpt");
  job.SelectionFormula = "{PaymentMast.PayID}=" + QuoteStr(loaded_payment_);
  job.ParameterFields[0] = "RptID;;True";
  desk().Print(job);
}

}  // namespace kaunter
