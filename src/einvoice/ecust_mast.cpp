#include "einvoice/ecust_mast.h"

#include <fmt/format.h>

#include <utility>

#include "compliance/aml.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/values.h"
#include "einvoice/tax_identity.h"

namespace kaunter {
namespace {

constexpr std::string_view kBehindCode = " - ";
constexpr const char* kHome = "MYS";
constexpr const char* kNoPostCode = "00000";

std::string WithoutDashes(const Value& value) {
  std::string text = NullToEmpty(value);
  std::erase(text, '-');
  return text;
}

// The lines of an address as one; a comma at the end of a line is not told twice.
std::string Joined(const Recordset& row, std::initializer_list<const char*> columns) {
  std::string all;
  for (const char* column : columns) {
    std::string line = Trim(NullToEmpty(row.Field(column)));
    while (line.ends_with(',')) line.pop_back();
    if (line.empty()) continue;
    if (!all.empty()) all += ", ";
    all += line;
  }
  return all;
}

}  // namespace

ECustMast::ECustMast(Session& session, Desk& desk)
    : SessionScreen("ECustMast", {"Customer Detial - E-Invocing", "电子发票资料"}, session, desk),
      record_("ECustMast", "CustID"),
      right_(session, desk),
      tin_(session, *this) {
  record_.AddValue("CustID", [this] { return QuoteStr(id_); }).InsertOnly();
  record_.Add(TIN).Add(MISCCode).Add(Address).Add(PostCode).Add(City).Add(State).Add(Country);
  record_.Add(Phone).Add(Email).Add(CustType).Add(CustTypeID).Add(CustName);
  const auto trimmed = [](TextBox& box) {
    box.onLeave = [&box] { box.SetText(Trim(box.text())); };
  };
  for (TextBox* box : {&CustTypeID, &TIN, &City}) trimmed(*box);
  CustName.onLeave = [this] {
    CustName.SetText(ApplyCapLock(this->session(), TidyText(CustName.text())));
  };
  Address.onLeave = [this] { Address.SetText(TidyText(Address.text())); };
  Phone.onLeave = [this] { CheckPhone(this->session(), Phone); };
  Email.onLeave = [this] { CheckEmail(this->session(), Email); };
  PostCode.onLeave = [this] { CheckPostCode(this->session(), PostCode, Country.text()); };
  State.onLeave = [this] { LeaveState(); };
  State.onPick = [this] { LeaveState(); };
  State.onKey = [this](std::string_view key) {
    if (key == "F2" && State.Editable()) PickState();
  };
  OfferTaxCode(session, MISCCode, MiscName, kTaxMiscCode);
  OfferTaxCode(session, Country, CountryName, kTaxCountry);
  Command1.onClick = [this] { GetTin(); };
  SaveCmd.onClick = [this] { Save(); };
}

void ECustMast::Load() {
  record_.TakeWidths(main());
  session().MsgTitle = title().In(chinese());  // whoever opened it has its own again afterwards
  id_ = session().HandOverCustID;
  const bool found = ReadOrTell(
      session(), *this, "Tax identity " + id_,
      {"an error occur during reading customer detail", "阅读顾客资料时出现错误"}, [this] {
        if (!FindOwner()) return;
        FillStates();
        Read();
      });
  if (!found || comp_code_.empty()) Close();
  record_.Remember();
}

bool ECustMast::RequestClose() { return MayDiscard(record_.Changed()); }

// --- showing

bool ECustMast::FindOwner() {
  const std::string id = QuoteStr(id_);
  const Recordset customer = main().Query("SELECT CompCode FROM CustMast WHERE CustiD=" + id);
  is_company_ = customer.Eof();
  const std::string company =
      is_company_ ? ScalarQuery(main(), "SELECT CompCode FROM CompMast WHERE CompCode=" + id)
                  : NullToEmpty(customer.Field(0));
  if (company.empty() || !MayUseCompany(session(), company)) {
    return Refuse({fmt::format("{} not found", id_), fmt::format("找不到 {}", id_)});
  }
  comp_code_ = company;
  return true;
}

void ECustMast::FillStates() {
  std::vector<std::string> states;
  for (Recordset row = main().Query("SELECT * FROM eState where StateCode <> " +
                                    QuoteStr(kNoState) + " ORDER BY StateCode");
       !row.Eof(); row.MoveNext()) {
    states.push_back(NullToEmpty(row.Field("StateCode")) + std::string(kBehindCode) +
                     NullToEmpty(row.Field("StateName")));
  }
  State.SetItems(std::move(states));
}

Recordset ECustMast::Stored() const {
  return main().Query("SELECT * FROM ECustMast WHERE CustID=" + QuoteStr(id_));
}

void ECustMast::Read() {
  record_.Clear();
  const Recordset row = Stored();
  has_row_ = !row.Eof();
  if (has_row_) {
    record_.Load(row);
    row_.Take(row);
  } else if (is_company_) {
    FillFromCompany();
  } else {
    FillFromCustomer();
  }
  ShowNames();
  Who.SetText(fmt::format("{} {}", id_, CustName.text()));
}

void ECustMast::FillFromCustomer() {
  const Recordset row = main().Query(
      "SELECT case when AreaCode='COMPANY' then 'BRN' else case when CustNIC <> '' then 'NRIC' "
      "else "
      "'PASSPORT' end end as [CustType],case when AreaCode='COMPANY' then CompNo else case when "
      "CustNIC <> '' then CustNIC else CustOIC end end as [CustTypeID],CustAdd2,CustAdd3,CustCity,"
      "CustState,replace(CustAdd1,char(13) + char(10),' ') as [CustAdd1],CustHP1,email,CustName "
      "FROM CustMast WHERE CustID=" +
      QuoteStr(id_));
  if (row.Eof()) return;
  CustType.SetText(NullToEmpty(row.Field("CustType")));
  CustTypeID.SetText(WithoutDashes(row.Field("CustTypeID")));
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  Address.SetText(Joined(row, {"CustAdd1", "CustAdd2", "CustAdd3"}));
  PostCode.SetText(kNoPostCode);
  City.SetText(NullToEmpty(row.Field("CustCity")));
  State.SetText(StateCodeOf(main(), NullToEmpty(row.Field("CustState"))));
  Country.SetText(kHome);
  Phone.SetText(WithoutDashes(row.Field("CustHP1")));
  Email.SetText(NullToEmpty(row.Field("email")));
}

// Companies keep their city in the column Fax and their postcode in HP2: that is wanted.
void ECustMast::FillFromCompany() {
  const Recordset row = main().Query(
      "SELECT 'BRN' as [CustType],CompNo as [CustTypeID],replace(Address,char(13) + char(10),' ') "
      "as [Address],Tel1,email,CompDesc,Fax as [City],HP2 as [Postcode] FROM CompMast WHERE "
      "CompCode=" +
      QuoteStr(id_));
  if (row.Eof()) return;
  CustType.SetText(NullToEmpty(row.Field("CustType")));
  CustTypeID.SetText(WithoutDashes(row.Field("CustTypeID")));
  CustName.SetText(NullToEmpty(row.Field("CompDesc")));
  Address.SetText(NullToEmpty(row.Field("Address")));
  PostCode.SetText(NullToEmpty(row.Field("Postcode")));
  City.SetText(NullToEmpty(row.Field("City")));
  Country.SetText(kHome);
  Phone.SetText(WithoutDashes(row.Field("Tel1")));
  Email.SetText(NullToEmpty(row.Field("email")));
}

void ECustMast::ShowNames() {
  MiscName.SetText(TaxCodeName(main(), kTaxMiscCode, MISCCode.text()));
  StateName.SetText(TaxCodeName(main(), kTaxState, State.text()));
  CountryName.SetText(TaxCodeName(main(), kTaxCountry, Country.text()));
}

void ECustMast::GetTin() {
  const std::string tin = tin_.Get(comp_code_, CustType, CustTypeID);
  if (tin.empty()) return;
  TIN.SetText(tin);
  FocusOn(TIN);
}

// The list shows the same ones; this finds them by a part of their name.
void ECustMast::PickState() {
  const std::string code = Pick(session(), desk(), kTaxState.picker, {}, kNoState);
  if (code.empty()) return;
  State.SetText(code);
  LeaveState();
}

// --- the save

// What is chosen from the list is its code.
bool ECustMast::LeaveState() {
  State.SetText(State.text().substr(0, State.text().find(kBehindCode)));
  return CheckTaxCode(session(), State, StateName, kTaxState);
}

bool ECustMast::CheckRequired() {
  const struct {
    Control& box;
    Caption refusal;
  } required[] = {{MISCCode, {"Misc Code required", "请输入行业代码"}},
                  {Address, {"Address required", "请输入地址"}},
                  {Phone, {"Phone required", "请输入电话"}},
                  {PostCode, {"PostCode required", "请输入邮政编码"}},
                  {City, {"City required", "请输入城市"}},
                  {State, {"State required", "请选择州属"}},
                  {Country, {"Country required", "请输入国家"}}};
  for (const auto& one : required) {
    if (Trim(one.box.Text()).empty()) return Refuse(one.box, one.refusal);
  }
  return true;
}

// Again: a box that was refused when it was left still holds what it was refused for.
bool ECustMast::CheckFields() {
  return CheckTaxCode(session(), MISCCode, MiscName, kTaxMiscCode) &&
         CheckPhone(session(), Phone) && CheckPostCode(session(), PostCode, Country.text()) &&
         LeaveState() && CheckTaxCode(session(), Country, CountryName, kTaxCountry) &&
         CheckEmail(session(), Email);
}

void ECustMast::Save() {
  if (!CheckRequired() || !CheckFields()) return;
  if (has_row_ &&
      !right_.MayChange({"save tax identity " + id_, "储存电子发票资料 " + id_}, comp_code_)) {
    const std::string& user = session().CurrentUserID;
    Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
            fmt::format("用户 {} 的级别不可更改或删除记录", user)});
    return;
  }
  if (!Confirm({"Confirm to save Customer Detail ?", "确定储存电子发票资料？"})) return;
  Recordset written;
  if (!AttemptOnRecord(
          "Tax identity " + id_,
          {"an error occur during saving customer detail", "储存电子发票资料时出现错误"},
          [&] { Store(written); })) {
    return;
  }
  row_.Take(written);
  has_row_ = true;
  record_.Remember();
  Tell(MessageKind::information, {"Customer detail saved", "电子发票资料已储存"});
  WriteLog(session(), LogLine(session(), fmt::format("Tax identity {} saved", id_)));
}

// Two desktops may both begin the record, or work on it.
void ECustMast::Store(Recordset& written) {
  const bool exists =
      !ScalarQuery(main(), "SELECT CustID from ECustMast WHERE CustID=" + QuoteStr(id_)).empty();
  if (has_row_) {
    row_.Expect(Stored(), id_);
  } else if (exists) {
    throw RowChanged(id_);
  }
  if (exists) {
    ExecuteOnRow(main(), record_.UpdateStatement(id_), id_);
  } else {
    main().Execute(record_.InsertStatement());
  }
  written = Stored();
}

}  // namespace kaunter
