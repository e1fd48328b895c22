#include "compliance/amla_frm.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/identity.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/sequences.h"
#include "core/session_report.h"
#include "core/values.h"
#include "screen/text.h"

namespace kaunter {
namespace {

const Caption kReadFailed{"an error occur during reading of record", "阅读资料时出现错误"};
const Caption kNotFound{"Record not found", "找不到资料"};
const Caption kInvalidReportDate{"Invalid Date, Please check", "日期不正确，请检查"};
const Caption kCustomerNotFound{"Customer not found", "找不到顾客"};

constexpr const char* kOthers = "Others (please specify)";

// What is filed and printed is the English text, whatever language the screen speaks.
std::vector<std::string> Grounds() {
  return {"Client settles loan with one lump sum payment",
          "Client settles loan long before its end without a plain reason",
          "Cash paid is far above what the client earns",
          "Cash is paid in parts that each stay below the threshold",
          "A person without a link to the client pays for him",
          "Client cannot explain where the money comes from",
          "Client borrows and repays again and again within a short time",
          "Client will not show identity papers, or delays them",
          "Identity papers look altered or belong to somebody else",
          "Name or identity number stands on a watch list",
          "Loan is taken for another person who is not named",
          "Purpose of the loan is unclear, or changes when asked",
          "Collateral belongs to a person without a link to the client",
          "Client gives up the transaction when asked for papers",
          "Client is nervous, or is told what to say by a companion",
          kOthers};
}

std::vector<std::string> IdentityTypes() {
  return {"MYKAD", "MYPR", "PASSPORT", "POLICE", "ARMY", "COMPANY REGISTRATION"};
}

// Short numbers are a key, and each company counts for itself.
std::string DrawNumber(Connection& main, const std::string& company) {
  return NextSeries(main, "STR", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT TrxID FROM AMLATrans WHERE TrxID=" + QuoteStr(number)).Eof();
  });
}

std::string Joined(std::initializer_list<std::string> parts, std::string_view between) {
  std::string all;
  for (const std::string& part : parts) {
    if (Trim(part).empty()) continue;
    if (!all.empty()) all += between;
    all += Trim(part);
  }
  return all;
}

}  // namespace

AMLAFrm::AMLAFrm(Session& session, Desk& desk)
    : SessionScreen("AMLAFrm", {"Suspicious Transaction Report (STR)", "可疑交易报告"}, session,
                    desk),
      IDType(*this, "IDType", {"ID Type", "证件种类"}, IdentityTypes(), &IdentityPage, true),
      MaritalStatus(
          *this, "MaritalStatus", {"Marital Status", "婚姻状况"},
          {"SINGLE", "IN RELATIONSHIP", "ENGAGED", "MARRIED", "SEPARATED", "DIVORCED", "WIDOWED"},
          &WorkPage, true),
      SpouseIDType(*this, "SpouseIDType", {"Spouse ID Type", "配偶证件种类"}, IdentityTypes(),
                   &WorkPage, true),
      TransType(*this, "TransType", {"Transaction Type", "交易种类"},
                {"LOAN APPLICATION", "LOAN PAID OUT", "LOAN REPAYMENT", "LOAN SETTLEMENT"},
                &SuspicionPage, true),
      SuspiciousWork(*this, "SuspiciousWork", {"Grounds for Suspicion", "可疑理由"}, Grounds(),
                     &SuspicionPage),
      record_("AMLATrans", "TrxID") {
  BindRecord();
  OfferPicker(session, TrxID, "AMLAPop", [this](const std::string& id) { LoadReport(id); });
  TrxID.onLeave = [this] { LeaveNumber(); };
  SearchCmd.onClick = [this] { TrxID.onSearch(); };
  OfferPicker(session, CustID, "CustPop", [this](const std::string& id) {
    CustID.SetText(id);
    LeaveCustomer();
  });
  CustID.onLeave = [this] { LeaveCustomer(); };
  for (TextBox* box : {&NRIC, &SpouseNIC}) {
    box->onLeave = [this, box] { CheckIc(*box); };
  }
  Trans.onLeave = [this] { CheckTrans(); };
  TransAmt.onLeave = [this] { CheckAmount(); };
  for (TextBox* box : {&TrxDate, &TransDate}) {
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box, kInvalidReportDate); };
  }
  CmdPrint.onClick = [this] { Print(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
  CapTexts(session, *this);
}

// In the order in which the columns are written.
void AMLAFrm::BindRecord() {
  record_.AddValue("TrxID", [this] { return QuoteStr(TrxID.text()); }).InsertOnly();
  record_.Add(TrxDate, As::date).Add(Nationality).Add(Name1).Add(Name2).Add(Name3).Add(Name4);
  record_.Add(NRIC).Add(OldIC).Add(OthIC).Add(IDType).Add(Gender).Add(email).Add(Tel1).Add(Tel2);
  record_.Add(HP).Add(Fax).Add(Add1).Add(Add2).Add(Add3).Add(Add4).Add(BizType).Add(Occupation);
  record_.Add(JobDetail).Add(EmployerName).Add(EmploymentArea).Add(OtherWork).Add(MaritalStatus);
  record_.Add(SpouseName).Add(SpouseNIC).Add(SpouseOIC).Add(SpouseOthIC).Add(SpouseIDType);
  record_.Add(SpousePassportNo).Add(SpousePassportCountry).Add(Trans).Add(CustID).Add(TransType);
  record_.Add(TransDate, As::date).Add(TransAmt, As::money).Add(LoanType).Add(SuspiciousWork);
  record_.Add(CrimeDesc).Add(CrimeEnv).Add(CompCode);
}

void AMLAFrm::Load() {
  about_ = TakeSuspicion(session());
  record_.TakeWidths(main());
  TrxID.max_length = kKeyLength;
  for (TextBox* date : {&TrxDate, &TransDate}) date->max_length = kDateLength;
  FillCompanies(CompCode, session());
  StartNew();
  if (!about_.cust_id.empty()) OpenForCaller();
}

bool AMLAFrm::RequestClose() { return MayDiscard(record_.Changed()); }

void AMLAFrm::Unload() { GiveReportNumber(session(), saved_id_); }

void AMLAFrm::StartNew() {
  record_.Clear();
  loaded_id_.clear();
  filled_for_.clear();
  TrxDate.SetText(ServerNow(main(), false));
  ChooseHome(session(), CompCode);
  ShowKey();
  record_.Remember();
}

void AMLAFrm::ShowKey() {
  TrxID.SetText(loaded_id_);
  TrxID.SetMark(false);
  CmdPrint.SetEnabled(!IsNew());
}

// --- the person and the record that the report is about

void AMLAFrm::OpenForCaller() {
  bool found = false;
  std::string reported;
  if (!ReadOrTell(session(), *this, "STR " + about_.cust_id, kReadFailed,
                  [&] { found = FillFromCaller(reported); })) {
    found = false;
  } else if (!found) {
    Tell(MessageKind::critical, kNotFound);
  }
  if (!found) {
    about_ = {};
    StartNew();
    return;
  }
  if (!about_.comp_code.empty()) CompCode.SetText(about_.comp_code);
  record_.Remember();
  if (!reported.empty() && Confirm({fmt::format("{} was reported already. Open it ?", reported),
                                    fmt::format("已呈报 {}。要打开它吗？", reported)})) {
    LoadReport(reported);
  }
}

bool AMLAFrm::FillFromCaller(std::string& reported) {
  const bool of_a_loan = !about_.loan_id.empty();
  if (of_a_loan && !FillLoan(reported)) return false;
  if (!about_.pay_id.empty() && !FillPayment(reported)) return false;
  return FillCustomer(about_.cust_id, of_a_loan);
}

bool AMLAFrm::FillLoan(std::string& reported) {
  const Recordset row = main().Query(fmt::format(
      "SELECT TrxDate,LoanAmt,LoanAmt2,LoanType,AMLAID FROM LoanMast WHERE LoanID={} AND CustID={}"
      "{}",
      QuoteStr(about_.loan_id), QuoteStr(about_.cust_id), AndCompany(session(), "CompCode")));
  if (row.Eof()) return false;
  TransType.SetText("LOAN PAID OUT");
  TransDate.SetText(ShowDate(row.Field("TrxDate")));
  TransAmt.SetText(ShowMoney(row.Field(session().Special ? "LoanAmt2" : "LoanAmt")));
  LoanType.SetText(NullToEmpty(row.Field("LoanType")));
  reported = NullToEmpty(row.Field("AMLAID"));
  return true;
}

// The amount is what the counter took.
bool AMLAFrm::FillPayment(std::string& reported) {
  const Recordset row = main().Query(
      fmt::format("SELECT PayDate,PayAmt,IntAmt,CollectorAmt,ChargeAmt,DiscAmt,Settlement,AMLAID "
                  "FROM PaymentMast WHERE PayID={}{}",
                  QuoteStr(about_.pay_id), AndCompany(session(), "CompCode")));
  if (row.Eof()) return false;
  Money amount;
  for (const char* part : {"PayAmt", "IntAmt", "CollectorAmt", "ChargeAmt"}) {
    amount += Sen(row, part);
  }
  amount -= Sen(row, "DiscAmt");
  const bool settles = NullToEmpty(row.Field("Settlement")) == "1";
  TransType.SetText(settles ? "LOAN SETTLEMENT" : "LOAN REPAYMENT");
  TransDate.SetText(ShowDate(row.Field("PayDate")));
  TransAmt.SetText(ShowMoney(Value(amount)));
  reported = NullToEmpty(row.Field("AMLAID"));
  return true;
}

// A loan of the own company shows its customer, whatever company he belongs to.
bool AMLAFrm::FillCustomer(const std::string& id, bool of_any_company) {
  const Recordset row = main().Query(fmt::format(
      "SELECT CustName,CustNIC,CustOIC,CustOthIC,CustAdd1,CustAdd2,CustAdd3,CustPostCode,CustCity,"
      "CustState,CustTel1,CustTel2,Custfax,CustHP1,CustGender,MaritalStatus,CustComp,CustCompPos,"
      "CustCompBiz,CustSpouseName,CustSpouseNIC,CustSpouseOIC FROM CustMast WHERE CustID={}{}",
      QuoteStr(id), of_any_company ? "" : AndCompany(session(), "CompCode")));
  if (row.Eof()) return false;
  const auto text = [&row](const char* column) { return NullToEmpty(row.Field(column)); };
  const struct {
    TextBox& box;
    const char* column;
  } boxes[] = {{Name1, "CustName"},
               {NRIC, "CustNIC"},
               {OldIC, "CustOIC"},
               {OthIC, "CustOthIC"},
               {Tel1, "CustTel1"},
               {Tel2, "CustTel2"},
               {Fax, "Custfax"},
               {HP, "CustHP1"},
               {EmployerName, "CustComp"},
               {Occupation, "CustCompPos"},
               {BizType, "CustCompBiz"},
               {SpouseName, "CustSpouseName"},
               {SpouseNIC, "CustSpouseNIC"},
               {SpouseOIC, "CustSpouseOIC"}};
  for (const auto& one : boxes) one.box.SetText(text(one.column));
  Gender.SetText(text("CustGender"));
  MaritalStatus.SetText(text("MaritalStatus"));
  Add1.SetText(Joined({text("CustAdd1"), text("CustAdd2"), text("CustAdd3"),
                       Joined({text("CustPostCode"), text("CustCity")}, " "), text("CustState")},
                      ", "));
  CustID.SetText(id);
  filled_for_ = id;
  return true;
}

// Another customer's data take the place of those that stand there; a report that is stored keeps
// what was filed.
void AMLAFrm::LeaveCustomer() {
  CustID.SetText(Trim(CustID.text()));
  if (CustID.empty() || SameText(CustID.text(), filled_for_)) return;
  if (!IsNew() && !Confirm({"Fill Part A from this customer anew ?", "以此顾客重新填写 A 部？"})) {
    filled_for_ = CustID.text();
    return;
  }
  const std::string id = CustID.text();
  bool found = false;
  const bool read = ReadOrTell(session(), *this, "Customer " + id, kReadFailed, [&] {
    found = FillCustomer(id, false);
    if (!found || !IsNew()) return;
    const std::string company =
        ScalarQuery(main(), "SELECT CompCode FROM CustMast WHERE CustID=" + QuoteStr(id));
    if (MayUseCompany(session(), company)) CompCode.SetText(company);
  });
  if (read && !found) Refuse(CustID, kCustomerNotFound);
}

// --- a report that was filed

void AMLAFrm::LeaveNumber() {
  LeaveKey(
      TrxID, loaded_id_, record_.Changed(), [this](std::string id) { LoadReport(std::move(id)); },
      [this] { StartNew(); });
}

void AMLAFrm::LoadReport(std::string id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "STR " + id, kReadFailed, [&] {
        row = main().Query("SELECT * FROM AMLATrans WHERE TrxID=" + QuoteStr(id));
      })) {
    return;
  }
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    TrxID.SetText(id);
    Refuse(TrxID, kNotFound);
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    TrxID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  loaded_id_ = NullToEmpty(row.Field("TrxID"));
  filled_for_ = CustID.text();
  ShowKey();
  record_.Remember();
}

// --- the save

bool AMLAFrm::CheckIc(TextBox& box) {
  box.SetText(MaskNewIc(Trim(box.text())));
  if (!box.empty() && !IsNewIc(box.text())) {
    return Refuse(box, {"Invalid New IC, Please check", "新身份证不正确，请检查"});
  }
  box.SetMark(false);
  return true;
}

bool AMLAFrm::CheckTrans() {
  Trans.SetText(Upper(Trim(Trans.text())));
  if (!Trans.empty() && Trans.index() < 0) {
    return Refuse(Trans, {"Invalid value, Please check", "数值不正确，请检查"});
  }
  Trans.SetMark(false);
  return true;
}

bool AMLAFrm::CheckAmount() {
  TransAmt.SetText(Trim(TransAmt.text()));
  if (!TransAmt.empty() && (!IsNumeric(TransAmt.text()) || Sen(TransAmt) < Money())) {
    return Refuse(TransAmt, {"Invalid Amount, Please check", "金额不正确，请检查"});
  }
  if (!TransAmt.empty()) TransAmt.SetText(ShowMoney(Value(TransAmt.text())));
  TransAmt.SetMark(false);
  return true;
}

// What a customer record holds may be longer than the report takes, and nothing is cut in silence.
bool AMLAFrm::CheckLengths() {
  for (Control* control : controls()) {
    int most = 0;
    if (const auto* box = dynamic_cast<TextBox*>(control)) most = box->max_length;
    if (const auto* list = dynamic_cast<ComboBox*>(control)) most = list->max_length;
    if (most == 0 || CharacterCount(control->Text()) <= static_cast<std::size_t>(most)) continue;
    return Refuse(*control,
                  {fmt::format("{} has at most {} characters", control->caption().english, most),
                   fmt::format("{}最多 {} 个字", control->caption().chinese, most)});
  }
  return true;
}

bool AMLAFrm::Check() {
  if (!SameText(Trim(TrxID.text()), loaded_id_)) return Refuse(TrxID, kNotFound);
  if (!RequireDate(session(), TrxDate, kInvalidReportDate, kInvalidReportDate)) return false;
  // Without a company she herself would not find it again, and the paper has no head.
  if (CompCode.empty() || !MayUseCompany(session(), CompCode.text())) {
    return Refuse(CompCode, {"Company Code is require", "请选择公司"});
  }
  if (Trim(Name1.text()).empty()) return Refuse(Name1, {"Name is required", "请输入姓名"});
  if (!CheckIc(NRIC) || !CheckIc(SpouseNIC) || !CheckTrans()) return false;
  if (!CheckDateBox(session(), TransDate, kInvalidReportDate) || !CheckAmount()) return false;
  if (SuspiciousWork.text() == kOthers && Trim(CrimeDesc.text()).empty()) {
    return Refuse(CrimeDesc, {"Please specify the grounds for suspicion", "请说明可疑理由"});
  }
  return CheckLengths();
}

void AMLAFrm::Save() {
  if (!Check() || !Confirm({"Confirm to save ?", "确定储存？"})) return;
  const bool was_new = IsNew();
  const bool saved = AttemptOnRecord(
      "STR " + loaded_id_, {"an error occur during saving of record", "储存资料时出现错误"},
      [this] { Store(); });
  if (!saved) {
    TrxID.SetText(loaded_id_);  // a new number went back with the rollback
    return;
  }
  loaded_id_ = saved_id_ = TrxID.text();
  ShowKey();
  record_.Remember();
  WriteLog(session(),
           LogLine(session(), fmt::format("STR {} {}, customer {}", loaded_id_,
                                          was_new ? "created" : "changed", CustID.text())));
  Tell(MessageKind::information, {"Record saved", "资料已储存"});
}

void AMLAFrm::Store() {
  if (IsNew()) {
    TrxID.SetText(DrawNumber(main(), CompCode.text()));
    main().Execute(record_.InsertStatement());
  } else {
    ExecuteOnRow(main(), record_.UpdateStatement(loaded_id_) + AndCompany(session(), "CompCode"),
                 loaded_id_);
  }
  // A report on somebody else that was looked up meanwhile is not that of this loan.
  if (!SameText(CustID.text(), about_.cust_id)) return;
  const std::string number = QuoteStr(TrxID.text());
  if (!about_.loan_id.empty()) {
    ExecuteOnRow(main(),
                 fmt::format("UPDATE LoanMast SET AMLAID={} WHERE LoanID={}", number,
                             QuoteStr(about_.loan_id)),
                 about_.loan_id);
  }
  // The column is the loan's, the value the payment's: so it is, and nobody mends it. The payment
  // takes the number when its own screen saves it.
  if (!about_.pay_id.empty()) {
    main().Execute(fmt::format("UPDATE PaymentMast SET AMLAID={} WHERE LoanID={}", number,
                               QuoteStr(about_.pay_id)));
  }
}

// --- the paper

void AMLAFrm::Print() {
  if (record_.Changed()) {
    Refuse({"Please save the report before it is printed", "请先储存报告再打印"});
    return;
  }
  if (!Confirm({"Confirm to print STR report ?", "确定打印可疑交易报告？"})) return;
  ReportJob job = SessionReport(session(), "STR-BNM.rpt");
  job.SelectionFormula = "{AMLATrans.TrxID}=" + QuoteStr(loaded_id_);
  job.ParameterFields[0] = fmt::format(
      "RptID;{};True", ScalarQuery(main(), "SELECT AMLAOfficer FROM CompMast WHERE CompCode=" +
                                               QuoteStr(CompCode.text())));
  desk().Print(job);
}

}  // namespace kaunter
