// How a loan or a stored payment comes on the payment screen.
#include <fmt/format.h>

#include "collections/instalment.h"
#include "collections/payment_frm.h"
#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/company_access.h"
#include "core/values.h"
#include "loans/money_gate.h"

namespace kaunter {
namespace {

constexpr const char* kSpecialRate = "18.00";  // what the special user sees of every rate

// Both keys of a loan work in the one box. Who belongs to no company searches all of them.
std::string RealLoanID(const Session& session, const std::string& code) {
  const std::string by_alternate_code =
      ScalarQuery(session.Main(),
                  fmt::format("SELECT LoanID FROM LoanMast WHERE OldLoanCode={}{}", QuoteStr(code),
                              session.CurrentCompCode.empty()
                                  ? ""
                                  : " AND CompCode=" + QuoteStr(session.CurrentCompCode)));
  return by_alternate_code.empty() ? code : by_alternate_code;
}

}  // namespace

// --- a loan

bool PaymentFrm::OpenLoan(const std::string& code) {
  const std::string id = RealLoanID(session(), code);
  const Recordset loan = ReadLoan(id);
  if (loan.Eof()) {
    ClearScreen();
    RefuseCode(LoanID, LoanNotFound(id));
    record_.Remember();  // a refused code is nothing to be lost
    return false;
  }
  if (!MayUseCompany(session(), NullToEmpty(loan.Field("CompCode")))) {
    ClearScreen();
    RefuseCode(LoanID, {"Loan ID not found", "找不到贷款编号"});
    record_.Remember();  // a refused code is nothing to be lost
    return false;
  }
  // A date or a receipt number typed before the first loan stays.
  if (!loaded_loan_.empty() || !loaded_payment_.empty()) ClearScreen();
  LoanID.SetText(id);
  LoanID.SetMark(false);
  loaded_loan_ = id;
  if (!MayTakePayment(loan)) return false;
  FillFromLoan(loan);
  ShowAml();
  StartAmounts();
  const std::string row = FirstOpenRow(main(), id);
  SchID.SetText(row);
  ShowInstalment();
  LoadPayments();
  ReadLedger();
  ApplyLocks();
  record_.Remember();
  if (!IsNew()) return true;
  if (AmountIn(OldLoanBal) <= Money()) {
    Refuse({"Loan settled, cannot make payment", "贷款已结清，不可付款"});
    return false;
  }
  if (const auto refusal = CheckRows(main(), id)) return Refuse(refusal->text);
  SaveCmd.SetEnabled(true);
  LeaveCheque();   // one typed before the loan brings its amount now
  LeavePayDate();  // and a date is looked at with it
  ShowSplit();
  return true;
}

void PaymentFrm::ReadLedger() { ledger_ = ReadLedgerLoan(main(), LoanID.text()); }

Recordset PaymentFrm::ReadLoan(const std::string& id) {
  return main().Query(fmt::format(
      "SELECT CustID,CompCode,LoanBal,LoanTypeID,OfferDays,IntType,FirstPayment,InstallmentAmt,"
      "LoanAmt,LoanAmt2,LateChargePerDay,LoanStatus,DragLoan,OldLoanCode,NextDueDate,InsRate,"
      "LoanTerm,oldloancode,Memo5,PayOutAmt,TotCollectorAmt,TotInt FROM LoanMast WHERE LoanID={}",
      QuoteStr(id)));
}

bool PaymentFrm::MayTakePayment(const Recordset& loan) {
  const std::string status = NullToEmpty(loan.Field("LoanStatus"));
  if (SameText(status, "ACTIVE")) return true;
  SaveCmd.SetEnabled(false);
  LoadPayments();
  SSTab1.SetPage(2);
  return Refuse(NoPaymentFor(status));
}

void PaymentFrm::FillFromLoan(const Recordset& loan) {
  CustID.SetText(NullToEmpty(loan.Field("CustID")));
  const Recordset customer =
      main().Query("SELECT CustName,Pic1 FROM CustMast WHERE CustID=" + QuoteStr(CustID.text()));
  const auto of_customer = [&customer](const char* column) {
    return customer.Eof() ? std::string() : NullToEmpty(customer.Field(column));
  };
  CustName.SetText(of_customer("CustName"));
  CustPhoto.Show(session(), CustID.text(), of_customer("Pic1"));
  CompCode.SetText(NullToEmpty(loan.Field("CompCode")));
  AltCode.SetText(NullToEmpty(loan.Field("OldLoanCode")));
  OldLoanBal.SetText(ShowMoney(loan.Field("LoanBal")));
  NewLoanBal.SetText(OldLoanBal.text());
  DragIntType.SetText(ShowMoney(Sen(loan, "TotCollectorAmt") + Sen(loan, "TotInt")));
  LoanType.SetText(NullToEmpty(loan.Field("LoanTypeID")));
  OfferDays.SetText(ShowInt(loan.Field("OfferDays")));
  LateChargePerDay.SetText(Show2dp(loan.Field("LateChargePerDay")));
  LoanTerm.SetText(fmt::format("{} X {} {}", ShowMoney(loan.Field("FirstPayment")),
                               NullToEmpty(loan.Field("LoanTerm")), LoanType.text()));
  const std::string scheme = NullToEmpty(loan.Field("DragLoan"));
  DragLoan.SetIndex(scheme.empty() || scheme == "0" ? 0 : 1);
  if (session().Special) {
    LoanAmt.SetText(ShowMoney(loan.Field("LoanAmt2")));
    InsRate.SetText(kSpecialRate);
    PayOutAmt.Clear();  // counts as nothing drawn: a special user takes no payment
  } else {
    LoanAmt.SetText(ShowMoney(loan.Field("LoanAmt")));
    InsRate.SetText(Show2dp(loan.Field("InsRate")));
    PayOutAmt.SetText(ShowMoney(loan.Field("PayOutAmt")));
  }
  // Those not yet taken.
  FillItems(ChqNo, main(),
            fmt::format("SELECT ChqNo FROM ChqMast WHERE LoanID={} AND PayID='' ORDER BY SeqNo",
                        QuoteStr(LoanID.text())));
}

void PaymentFrm::StartAmounts() {
  for (TextBox* box : {&TotPay, &PayAmt, &InstalAmt, &PayExtra, &IntAmt, &ChargeAmt, &CollectorAmt,
                       &DiscAmt, &Memo5, &SalesmanComm, &TopUpAmt, &TopAmt}) {
    box->SetText("0.00");
  }
  for (TextBox* box : {&MPayment, &TopTerm}) box->SetText("0");
  CollectInfoID.SetText("CASH");
  Bank.SetText("CASH");
  SalesmanID.SetText("NIL");
  PaymentStatus.SetText("ACTIVE");
  UserID.SetText(session().CurrentUserID);
  // A total or a cheque typed before the loan stands for nothing yet.
  split_total_.clear();
  checked_cheque_.clear();
}

void PaymentFrm::ShowInstalment() {
  const auto row = ReadInstalment(main(), LoanID.text(), SchID.text(),
                                  IsFlexi() && IsNew() ? LoanType.text() : std::string());
  if (!row) return;
  LastDueDate.SetText(row->DueDate);
  NextDueDate.SetText(row->NextDueDate);
  IntDate.SetText(row->IntDate);
  PayableAmt.SetText(ShowMoney(row->PayableAmt));
  ActPayable.SetText(ShowMoney(AmountIn(PayAmt) + (row->PayableAmt - row->Payment)));
  OutDragAmt.SetText(ShowMoney(row->CapitalAmt));
  OutIntAmt.SetText(ShowMoney(row->InterestAmt));
  DragInt.SetText(ShowMoney(row->capital_open));
  IntChargeAmt.SetText(ShowMoney(row->interest_open));
}

void PaymentFrm::ShowStoredInstalment() {
  TextBox* const stored[] = {&LastDueDate, &NextDueDate, &PayableAmt, &DragInt, &IntChargeAmt};
  std::vector<std::string> as_stored;
  for (TextBox* box : stored) as_stored.push_back(box->text());
  ShowInstalment();
  auto text = as_stored.begin();
  for (TextBox* box : stored) box->SetText(*text++);
}

void PaymentFrm::LoadPayments() {
  FillGrid(DG, main().Query(fmt::format(
                   "Select PayID,SchID,PayDate,PayAmt,IntAmt,Memo5,DiscAmt,TopUpAmt,NewLoanBal,"
                   "Memo1,ChargeAmt,ReceiptNo,CapPay,IntPay from PaymentMast where LoanID = {} "
                   "order by PayID",
                   QuoteStr(LoanID.text()))));
}

// --- a stored payment

// `id` may be the text of a box that is cleared here: a copy.
void PaymentFrm::LoadPayment(std::string id) {
  const Recordset row = main().Query("SELECT * FROM PaymentMast WHERE PayID=" + QuoteStr(id));
  if (row.Eof()) {
    ClearScreen();
    RefuseCode(PayID,
               {fmt::format("Payment ID {} not found", id), fmt::format("找不到付款编号 {}", id)});
    record_.Remember();  // a refused code is nothing to be lost
    return;
  }
  if (!MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    ClearScreen();
    RefuseCode(PayID, {"Payment ID not found", "找不到付款编号"});
    record_.Remember();  // a refused code is nothing to be lost
    return;
  }
  ClearScreen();
  record_.Load(row);
  loaded_payment_ = PayID.text();
  loaded_loan_ = LoanID.text();
  bool may_save = !IsNew();
  if (!SameText(PaymentStatus.text(), "ACTIVE")) {
    may_save = Refuse({fmt::format("No Edit for {} record", PaymentStatus.text()),
                       fmt::format("状态 {} 的记录不可更改", PaymentStatus.text())});
  }
  if (NullToEmpty(row.Field("Settlement")) == "1") {
    Tell(MessageKind::information, {"Settlement Payment cannot be edit", "结清付款不可更改"});
    may_save = false;
  }
  ShowTotal();
  MPayment.SetText("0");
  if (!ShowLoanOfPayment()) may_save = false;
  if (LampiranStatus.empty()) LampiranStatus.SetText("PINJAMAN SEMASA");
  if (IsEdit()) {
    OldLoanBal.SetText(ShowMoney(row.Field("OldLoanBal")));
    NewLoanBal.SetText(ShowMoney(row.Field("NewLoanBal")));
  }
  if (IsDelete()) NewLoanBal.SetText(ShowMoney(AmountIn(OldLoanBal) - AmountIn(PayAmt)));
  checked_date_ = PayDate.text();
  checked_cheque_ = ChqNo.text();
  snapshot_ = PaymentIn(row);
  offered_group_ = GroupFor(snapshot_.NewLoanBal);
  ShowSplit();
  SaveCmd.SetEnabled(may_save);
  ApplyLocks();
  ShowAml();
  record_.Remember();
}

bool PaymentFrm::ShowLoanOfPayment() {
  const Recordset loan = ReadLoan(LoanID.text());
  if (loan.Eof()) return Refuse(LoanNotFound(LoanID.text()));
  if (!MayUseCompany(session(), NullToEmpty(loan.Field("CompCode")))) {
    return Refuse({"Loan ID not found", "找不到贷款编号"});
  }
  if (!MayTakePayment(loan)) return false;
  FillFromLoan(loan);
  // What the row asked for at entry stays; the rest is as it is today.
  ShowStoredInstalment();
  LoadPayments();
  ReadLedger();
  return true;
}

// --- a settlement quotation

void PaymentFrm::ApplyQuote(const SettlementQuote& quote) {
  PayDate.SetText(quote.SettledDate);
  IntAmt.SetText(quote.OPayment);
  ChargeAmt.SetText(quote.ChargeAmt);
  if (quote.DragLoan == "1") {
    PayAmt.SetText(quote.PayAmt);
    InstalAmt.SetText(quote.NPayment);
    PayExtra.SetText(quote.EPayment);
    // More capital falls due by the date than is left: the instalments are paid by that much less.
    if (AmountIn(PayExtra) < Money()) {
      InstalAmt.SetText(ShowMoney(AmountIn(InstalAmt) + AmountIn(PayExtra)));
      PayExtra.SetText("0.00");
    }
    DiscAmt.SetText("0");
    ShowTotal();
  } else {
    PayAmt.SetText(quote.NPayment);
    InstalAmt.SetText(quote.NPayment);
    PayExtra.SetText("0");
    DiscAmt.SetText(quote.EPayment);
    SpreadPayAmt();
  }
  FindLateCharges();
  ShowSplit();
}

}  // namespace kaunter
