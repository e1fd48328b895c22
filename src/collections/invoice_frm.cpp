#include "collections/invoice_frm.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/report_path.h"
#include "core/sequences.h"
#include "core/session_report.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "loans/charge_totals.h"
#include "screen/hourglass.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr std::string_view kInvoice = "Invoice";
constexpr std::string_view kCreditNote = "Credit Note";
constexpr std::string_view kBatch = "Batch";
constexpr std::string_view kTermEnd = "Batch Term End Interest";
constexpr std::string_view kPayment = "Payment";

const Caption kNotFound{"Invoice not found", "找不到发票"};

// Short numbers are a key, and each company counts for itself.
std::string DrawNumber(Connection& main, std::string_view kind, const std::string& company) {
  return NextSeries(
      main, SameText(kind, kCreditNote) ? "CN" : "INV", company, false,
      [&main](const std::string& number) {
        return !main.Query("SELECT ChargeID FROM ChargeMast WHERE ChargeID=" + QuoteStr(number))
                    .Eof();
      });
}

}  // namespace

Invoicefrm::Invoicefrm(Session& session, Desk& desk)
    : SessionScreen("Invoicefrm", {"Invoice / Credit Note", "发票／贷项通知"}, session, desk),
      record_("ChargeMast", "ChargeID"),
      right_(session, desk) {
  for (TextBox* box : {&CustID, &CustName, &CompCode, &DueDate, &LateAmt, &LateInt}) {
    box->SetLocked(true);
  }
  BindRecord();
  OfferPicker(session, ChargeID, "InvPop", [this](const std::string& id) { LoadCharge(id); });
  ChargeID.onLeave = [this] { LeaveChargeID(); };
  LoanID.picker = "LoanPop";
  LoanID.onSearch = [this] {
    if (!LoanID.Editable()) return;
    const std::string id = Pick(this->session(), this->desk(), "LoanPop");
    if (id.empty()) return;
    LoanID.SetText(id);
    ShowLoan();
  };
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (!SameText(LoanID.text(), shown_loan_)) ShowLoan();
  };
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate); };
  ChargeAmt.onLeave = [this] { LeaveAmount(); };
  ChargeDesc.onLeave = [this] {
    ChargeDesc.SetText(ApplyCapLock(this->session(), ChargeDesc.text()));
  };
  CmdNew.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  CmdPrint.onClick = [this] { Print(); };
  CmdDelete.onClick = [this] { Delete(); };
  SaveCmd.onClick = [this] { Save(); };
}

// Every row that this screen writes falls due on its own date, is based on its own amount and has
// no lateness; other rows show theirs until they are saved here.
void Invoicefrm::BindRecord() {
  record_.AddValue("ChargeID", [this] { return QuoteStr(ChargeID.text()); }).InsertOnly();
  record_.Add(TrxDate, As::date);
  record_.Add(LoanID).InsertOnly().Add(CustID).InsertOnly().Add(CompCode).InsertOnly();
  record_.AddValue("DueDate", [this] { return SqlDate(TrxDate.text()); });
  record_.AddValue("LateAmt", [this] { return StripCommaOrZero(ChargeAmt.text()); });
  record_.AddValue("LateInt", [] { return "0"; });
  record_.Add(ChargeAmt, As::money).Add(ChargeDesc);
  record_.AddValue("UserID", [this] { return QuoteStr(session().CurrentUserID); }).InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerTime(main())); }).InsertOnly();
  record_.Add(PType).InsertOnly();
  record_.Add(DueDate, As::date).ReadOnly();
  record_.Add(LateAmt, As::money).ReadOnly().Add(LateInt, As::money).ReadOnly();
}

void Invoicefrm::Load() {
  record_.TakeWidths(main());
  ChargeID.max_length = LoanID.max_length;  // keys of one width
  TrxDate.max_length = kDateLength;
  ChargeAmt.max_length = kMoneyLength;
  const std::string wanted =
      session().CallerTag == "Edit Charge" ? session().PickerExtra : std::string();
  StartNew();
  if (!wanted.empty()) LoadCharge(wanted);
}

bool Invoicefrm::IsDocument() const {
  return SameText(PType.text(), kInvoice) || SameText(PType.text(), kCreditNote);
}

bool Invoicefrm::MayBeDeleted() const { return IsDocument() || SameText(PType.text(), kBatch); }
bool Invoicefrm::HasPaper() const { return MayBeDeleted() || SameText(PType.text(), kTermEnd); }

// --- showing a charge

void Invoicefrm::StartNew() {
  record_.Clear();
  ChargeID.Clear();
  CustName.Clear();
  PType.SetText(std::string(kInvoice));
  loaded_id_.clear();
  shown_loan_.clear();
  loaded_values_.clear();
  right_.Forget();
  PType.SetLocked(false);
  LoanID.SetLocked(false);
  CmdDelete.SetEnabled(false);
  CmdPrint.SetEnabled(false);
  for (Control* box : controls()) box->SetMark(false);
  record_.Remember();
}

void Invoicefrm::LeaveChargeID() {
  LeaveKey(
      ChargeID, loaded_id_, record_.Changed(),
      [this](std::string id) { LoadCharge(std::move(id)); }, [this] { StartNew(); });
}

void Invoicefrm::LoadCharge(std::string id) {
  const Recordset row = main().Query("SELECT * FROM ChargeMast WHERE ChargeID=" + QuoteStr(id));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(ChargeID, kNotFound);
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    ChargeID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  ChargeID.SetText(NullToEmpty(row.Field("ChargeID")));
  CustName.SetText(
      ScalarQuery(main(), "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(CustID.text())));
  KeepAsStored({row.Field("TrxDate"), row.Field("ChargeAmt")});
}

void Invoicefrm::KeepAsStored(std::vector<Value> values) {
  loaded_id_ = ChargeID.text();
  shown_loan_ = LoanID.text();
  loaded_values_ = std::move(values);
  // A change of kind or loan would be another document.
  PType.SetLocked(true);
  LoanID.SetLocked(true);
  CmdDelete.SetEnabled(true);
  CmdPrint.SetEnabled(HasPaper());
  record_.Remember();
}

bool Invoicefrm::ShowLoan() {
  CustID.Clear();
  CustName.Clear();
  CompCode.Clear();
  shown_loan_.clear();
  if (LoanID.empty()) return true;
  const std::string key = QuoteStr(LoanID.text());
  const std::string customer =
      ScalarQuery(main(), "SELECT CustID FROM LoanMast WHERE LoanID=" + key);
  const Recordset row = main().Query(
      "SELECT l.LoanID,l.CompCode,c.CustName FROM LoanMast as l INNER JOIN CustMast as c on "
      "l.CustID=c.CustID WHERE l.LoanID=" +
      key);
  if (customer.empty() || row.Eof() ||
      !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(LoanID, LoanNotFound(LoanID.text()));
  }
  LoanID.SetText(NullToEmpty(row.Field("LoanID")));
  LoanID.SetMark(false);
  CustID.SetText(customer);
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  CompCode.SetText(NullToEmpty(row.Field("CompCode")));
  shown_loan_ = LoanID.text();
  return true;
}

void Invoicefrm::LeaveAmount() {
  ChargeAmt.SetText(Trim(ChargeAmt.text()));
  if (ChargeAmt.empty()) return;
  if (!Money::TryText(ChargeAmt.text())) {
    Refuse(ChargeAmt, kInvalidAmount);
    return;
  }
  ChargeAmt.SetText(ShowMoney(ChargeAmt.text()));
  ChargeAmt.SetMark(false);
}

bool Invoicefrm::RequestClose() { return MayDiscard(record_.Changed()); }

// --- the save

bool Invoicefrm::RefuseRight() {
  const std::string& user = session().CurrentUserID;
  return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                 fmt::format("用户 {} 的级别不可更改或删除记录", user)});
}

bool Invoicefrm::CheckAmount() {
  const Caption required{"Amount is required", "请输入金额"};
  if (ChargeAmt.empty()) return Refuse(ChargeAmt, required);
  if (!Money::TryText(ChargeAmt.text())) {
    return Refuse(ChargeAmt, kInvalidAmount);
  }
  ChargeAmt.SetText(ShowMoney(ChargeAmt.text()));
  return !Sen(ChargeAmt).IsZero() || Refuse(ChargeAmt, required);
}

bool Invoicefrm::CheckLoan() {
  if (LoanID.empty()) return Refuse(LoanID, kLoanRequired);
  return SameText(LoanID.text(), shown_loan_) || ShowLoan();
}

bool Invoicefrm::CheckLinkAccounts() {
  return !IsDocument() || RequireLinkAccounts(session(), *this, {"ARINV", "ARCN"});
}

bool Invoicefrm::Check() {
  // A number typed and never found belongs to no record; numbers are drawn, not chosen.
  if (!SameText(ChargeID.text(), loaded_id_)) {
    return Refuse(ChargeID, kNotFound);
  }
  if (SameText(PType.text(), kPayment)) {
    return Refuse({"You are not allow to edit record", "您不可更改记录"});
  }
  if (!IsNew() &&
      !right_.MayChange({"save " + loaded_id_, "储存 " + loaded_id_}, CompCode.text())) {
    return RefuseRight();
  }
  if (!RequireDate(session(), TrxDate, {"Date is required", "请输入日期"}) || !CheckAmount()) {
    return false;
  }
  if (Trim(ChargeDesc.text()).empty()) {
    return Refuse(ChargeDesc, {"Description is required", "请输入说明"});
  }
  return CheckLoan() && CheckLinkAccounts();
}

void Invoicefrm::Save() {
  if (!Check() || !Confirm({"Confirm to save record ?", "确定储存记录？"})) return;
  if (!Write([this] { Store(); })) {
    // A new charge's number went back with the rollback: the box must not go on showing it.
    ChargeID.SetText(loaded_id_);
    return;
  }
  DueDate.SetText(TrxDate.text());
  LateAmt.SetText(ChargeAmt.text());
  LateInt.SetText("0.00");
  KeepAsStored({TrxDate.text(), ChargeAmt.text()});
  TellLinkedAccounts();
  Tell(MessageKind::information, {"Record saved", "记录已储存"});
}

void Invoicefrm::Store() {
  const bool is_new = IsNew();
  const std::string loan = QuoteStr(LoanID.text());
  // Another desktop may have deleted the loan while the question stood.
  if (main().Query("SELECT LoanID FROM LoanMast WHERE LoanID=" + loan).Eof()) {
    throw std::runtime_error(session().In(LoanNotFound(LoanID.text())));
  }
  if (is_new) {
    ChargeID.SetText(DrawNumber(main(), PType.text(), CompCode.text()));
    main().Execute(record_.InsertStatement());
  } else {
    ExecuteOnRow(main(), record_.UpdateStatement(loaded_id_), loaded_id_);
  }
  WriteAudit(session(), is_new ? "Create" : "Modify", PType.text(), CompCode.text(),
             ChargeID.text(), loaded_values_);
  RefreshChargeTotals(main(), LoanID.text());
}

bool Invoicefrm::Write(const std::function<void()>& write) {
  return Attempt(fmt::format("{} {} - Loan ID {}", PType.text(), loaded_id_, LoanID.text()),
                 {"an error occur during saving record", "储存记录时发生错误"}, [this, &write] {
                   const Hourglass busy(desk());
                   write();
                 });
}

// The charge stands whatever becomes of it in the accounts. There a credit note is the amount by
// which the debt falls, so what reduces the charges here is positive.
void Invoicefrm::TellLinkedAccounts() {
  if (!LinkIsOn(session()) || !IsDocument()) return;
  const std::string& id = ChargeID.text();
  const bool credit = SameText(PType.text(), kCreditNote);
  const std::string account = LinkAccount(main(), credit ? "ARCN" : "ARINV");
  bool linked = false;
  if (credit) {
    linked = LinkARCN(session(), desk(),
                      {id, TrxDate.text(), CustID.text(), "Credit Note - " + ChargeDesc.text(),
                       account, "", -Sen(ChargeAmt)});
  } else {
    linked =
        LinkARInvoice(session(), desk(), {id, TrxDate.text(), CustID.text(), Sen(ChargeAmt)}) &&
        LinkARInvoiceLine(session(), desk(),
                          {id, account, "Invoice for " + CustName.text(), Sen(ChargeAmt)});
  }
  if (linked) return;
  desk().Message(
      MessageKind::warning, "Alert !!",
      session().In({fmt::format("{} {} to {} not linked", PType.text(), id, CustName.text()),
                    fmt::format("{} {}（{}）未能连接会计系统", credit ? "贷项通知" : "发票", id,
                                CustName.text())}));
}

// --- the delete

void Invoicefrm::Delete() {
  if (IsNew()) return;
  const std::string kind = PType.text();
  if (!MayBeDeleted()) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  const std::string id = loaded_id_;
  if (!right_.MayDelete({"delete " + id, "删除 " + id}, CompCode.text())) {
    RefuseRight();
    return;
  }
  if (!ConfirmLoss({fmt::format("Confirm to delete {} ?", id), fmt::format("确定删除 {}？", id)})) {
    return;
  }
  const bool deleted = Write([&] {
    ExecuteOnRow(main(), "DELETE FROM ChargeMast WHERE ChargeID=" + QuoteStr(id), id);
    WriteAudit(session(), "Delete", kind, CompCode.text(), id, loaded_values_);
    RefreshChargeTotals(main(), LoanID.text());
  });
  if (!deleted) return;
  Tell(MessageKind::information, {fmt::format("{} deleted", id), fmt::format("{} 已删除", id)});
  StartNew();
}

// --- the paper

void Invoicefrm::Print() {
  const std::string file =
      SameText(PType.text(), kCreditNote) ? "ARCreditNote.rpt" : "ARInvoice.rpt";
  ReportJob job = SessionReport(session(), file);
  if (!ReportFileExists(job.ReportFileName)) {
    Refuse({fmt::format("Report file {} not found", file), fmt::format("找不到报表文件 {}", file)});
    return;
  }
  if (record_.Changed()) {
    Refuse({"Please save the changes first", "请先储存更改"});
    return;
  }
  job.SelectionFormula = "{ChargeMast.ChargeID} = " + QuoteStr(loaded_id_);
  job.ReportTitle = PType.text();
  job.ParameterFields[0] = fmt::format("RptID;{};True", PType.text());
  desk().Print(job);
}

}  // namespace kaunter
