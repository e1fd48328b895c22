#include "einvoice/self_bill_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/values.h"
#include "einvoice/self_bill_check.h"
#include "einvoice/tax_identity.h"
#include "screen/text.h"

namespace kaunter {
namespace {

enum Place { kNo, kClass, kDesc, kQty, kAmount, kTaxCat, kTaxPer, kTaxAmt, kPlaces };

constexpr const char* kUsualTax = "06";
constexpr const char* kNoAmount = "0.00";
constexpr const char* kOne = "1";
// As the columns hold them.
constexpr std::size_t kDescLength = 200;
constexpr std::size_t kCodeLength = 10;
constexpr std::size_t kQtyDigits = 9;
const Money kLargest = Money::FromText("9999999999.99");

const Caption kNotFound{"Record not found", "找不到记录"};
const Caption kTooLong{"The text is too long", "文字过长"};

bool IsFigure(int column) { return column == kAmount || column == kTaxPer || column == kTaxAmt; }

std::vector<std::string> Codes(Connection& main, const char* sql) {
  std::vector<std::string> codes;
  for (Recordset rows = main.Query(sql); !rows.Eof(); rows.MoveNext()) {
    codes.push_back(NullToEmpty(rows.Field(0)));
  }
  return codes;
}

}  // namespace

SelfBillFrm::SelfBillFrm(Session& session, Desk& desk)
    : SessionScreen("SelfBillFrm", {"Self-Bill Submission", "自开发票提交"}, session, desk),
      record_("SelfBillMast", "SID"),
      right_(session, desk),
      service_(session, desk),
      marks_(session, "SelfBill"),
      tin_(session, *this) {
  for (TextBox* box : {&SelfBillStatus, &uuid, &SelfBillAmt, &SelfBillTaxAmt, &Result}) {
    box->SetLocked(true);
  }
  BindRecord();
  BindChecks();
  OfferPicker(session, SID, "SelfBillPop", [this](const std::string& id) { LoadBill(id); });
  SID.onLeave = [this] { LeaveSID(); };
  SSCommand3.onClick = [this] { SID.onSearch(); };
  vsd.tip = {"Type in the last line to add one, Delete removes the line, F2 finds a code",
             "在最后一行输入以加入，Delete 键移除，F2 查代码"};
  vsd.onCellEnter = [this](int, int column) { entered_column_ = column; };
  vsd.onCellLeave = [this](int row, int column, const std::string& before) {
    LeaveCell(row, column, before);
  };
  vsd.onKey = [this](std::string_view key) {
    if (key == "Delete") RemoveLine();
    if (key == "F2") PickCode();
  };
  CompCode.onPick = [this] { SaveCmd.SetEnabled(LoadCompany()); };
  CompCode.onLeave = [this] {
    if (!CheckCompanyAccess(this->session(), this->desk(), CompCode)) FocusOn(CompCode);
  };
  Command1.onClick = [this] {
    const std::string tin = tin_.Get(CompCode.text(), SuppIDType, SuppIDNo);
    if (!tin.empty()) SuppTin.SetText(tin);
    ShowRemarks();
  };
  CmdStatus.onClick = [this] { AskStatus(); };
  SSCommand4.onClick = [this] { CancelBill(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void SelfBillFrm::BindRecord() {
  record_.AddValue("SID", [this] { return QuoteStr(SID.text()); }).InsertOnly();
  record_.Add(InvoiceNo).Add(TrxDate, As::date).Add(CompCode);
  record_.Add(SuppTin).Add(SuppIDNo).Add(SuppIDType).Add(SuppMiscCode).Add(SuppBankAcc);
  record_.Add(SuppSST).Add(SuppName).Add(SuppTel).Add(SuppEmail).Add(SuppAdd).Add(SuppPostCode);
  record_.Add(SuppCity).Add(SuppState).Add(SuppCountry);
  record_.Add(SelfBillTaxAmt, As::money).Add(SelfBillTaxCat).Add(SelfBillAmt, As::money);
  // No box to be typed in: a status that comes in is no change of the record.
  record_.AddValue("SelfBillStatus", [this] { return QuoteStr(SelfBillStatus.text()); });
  record_.AddValue("uuid", [] { return QuoteStr(""); }).InsertOnly();
  record_.AddValue("UserID", [this] { return QuoteStr(session().CurrentUserID); }).InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerTime(main())); }).InsertOnly();
}

// As each box is left; what was wrong stays in it, to be mended.
void SelfBillFrm::BindChecks() {
  TrxDate.onLeave = [this] { CheckDateBox(session(), TrxDate); };
  SuppTel.onLeave = [this] { CheckPhone(session(), SuppTel); };
  SuppEmail.onLeave = [this] { CheckEmail(session(), SuppEmail); };
  SuppPostCode.onLeave = [this] { CheckPostCode(session(), SuppPostCode, SuppCountry.text()); };
  OfferTaxCode(session(), SuppMiscCode, MiscName, kTaxMiscCode);
  OfferTaxCode(session(), SuppState, StateName, kTaxState);
  OfferTaxCode(session(), SuppCountry, CountryName, kTaxCountry);
  CapTexts(session(), *this);
  // The list of what would be refused keeps up with what is typed.
  for (Control* control : controls()) {
    if (control == &SID || control == &vsd ||
        (!dynamic_cast<TextBox*>(control) && !dynamic_cast<ComboBox*>(control))) {
      continue;
    }
    control->onLeave = [this, then = std::move(control->onLeave)] {
      if (then) then();
      ShowRemarks();
    };
  }
}

void SelfBillFrm::Load() {
  record_.TakeWidths(main());
  SID.max_length = kKeyLength;
  TrxDate.max_length = kDateLength;
  check_ = std::make_unique<DocumentCheck>(main());
  FillCompanies(CompCode, session());
  SelfBillTaxCat.SetItems(Codes(main(), "SELECT TaxCode FROM eTax ORDER BY TaxCode"));
  vsd.SetColumnItems(kTaxCat, SelfBillTaxCat.items());
  vsd.SetColumnItems(kClass, Codes(main(), "SELECT ClassCode FROM eClass ORDER BY ClassCode"));
  StartNew();
}

bool SelfBillFrm::RequestClose() { return MayDiscard(Changed()); }

bool SelfBillFrm::Changed() const { return record_.Changed() || Typed() != remembered_items_; }

// --- showing a document

void SelfBillFrm::StartNew() {
  for (Control* control : controls()) control->SetMark(false);
  record_.Clear();
  SID.Clear();
  SelfBillStatus.Clear();
  uuid.Clear();
  UserLBL.SetText({});
  loaded_id_.clear();
  right_.Forget();
  TrxDate.SetText(ServerNow(main(), false));
  SelfBillTaxCat.SetText(kUsualTax);
  CompCode.SetLocked(false);
  vsd.Clear();
  KeepBlankLine();
  SumUp();
  ShowNames();
  ShowResult({});
  ShowButtons();
  record_.Remember();
  remembered_items_ = Typed();
  ShowRemarks();
}

void SelfBillFrm::LeaveSID() {
  LeaveKey(
      SID, loaded_id_, Changed(), [this](std::string id) { LoadBill(std::move(id)); },
      [this] { StartNew(); });
}

void SelfBillFrm::LoadBill(std::string id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "Self-bill " + id,
                  {"an error occur during reading record", "阅读记录时出现错误"},
                  [&] { row = ReadRow(id); })) {
    return;
  }
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(SID, kNotFound);
    return;
  }
  if (!MayLeaveRecord(Changed())) {
    SID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  stored_.Take(row);
  SID.SetText(NullToEmpty(row.Field("SID")));
  SelfBillStatus.SetText(NullToEmpty(row.Field("SelfBillStatus")));
  uuid.SetText(NullToEmpty(row.Field("uuid")));
  const DateTime* made = row.Field("DateCreated").AsDate();
  UserLBL.SetText(
      fmt::format("User ID : {} Submited at {}", NullToEmpty(row.Field("UserID")),
                  made != nullptr ? Format(*made, "dd-mm-yyyy h:nn AMPM") : std::string()));
  if (!ReadItems(SID.text())) {
    StartNew();
    return;
  }
  KeepAsStored();
}

bool SelfBillFrm::ReadItems(const std::string& id) {
  std::vector<std::vector<std::string>> lines;
  const bool read = ReadOrTell(
      session(), *this, "Self-bill items " + id,
      {"an error occur during reading itemize record", "阅读项目记录时出现错误"}, [&] {
        Recordset row = main().Query("SELECT * FROM SelfBillTrans WHERE SID=" + QuoteStr(id) +
                                     " ORDER BY SeqNo");
        for (; !row.Eof(); row.MoveNext()) {
          const auto money = [&row](const char* column) { return ShowMoney(row.Field(column)); };
          lines.push_back(
              {std::to_string(lines.size() + 1), NullToEmpty(row.Field("SelfBillClassCode")),
               NullToEmpty(row.Field("SelfBillDesc")), NullToEmpty(row.Field("SelfBillQty")),
               money("SelfBillAmt"), NullToEmpty(row.Field("SelfBillTaxCat")),
               money("SelfBillTaxPer"), money("SelfBillTaxAmt")});
        }
      });
  if (!read) return false;
  vsd.SetRows(std::move(lines));
  KeepBlankLine();
  return true;
}

void SelfBillFrm::KeepAsStored() {
  loaded_id_ = SID.text();
  // The document lies with the service in the name of this company.
  CompCode.SetLocked(!uuid.empty());
  ShowNames();
  ShowButtons();
  record_.Remember();
  remembered_items_ = Typed();
  ShowRemarks();
}

void SelfBillFrm::ShowNames() {
  const auto show = [this](Label& label, const TaxCodeTable& table, const TextBox& box) {
    label.SetText(box.empty() ? std::string() : TaxCodeName(main(), table, box.text()));
  };
  show(MiscName, kTaxMiscCode, SuppMiscCode);
  show(StateName, kTaxState, SuppState);
  show(CountryName, kTaxCountry, SuppCountry);
}

void SelfBillFrm::ShowButtons() {
  SaveCmd.SetEnabled(true);
  CmdStatus.SetEnabled(!uuid.empty());
  SSCommand4.SetEnabled(!uuid.empty());
}

void SelfBillFrm::ShowResult(const std::string& text) {
  Result.SetText(text);
  Result.SetVisible(!text.empty());
}

// --- the items

bool SelfBillFrm::IsLine(int row) const {
  for (int column = kClass; column < kPlaces; ++column) {
    if (!vsd.Cell(row, column).empty()) return true;
  }
  return false;
}

int SelfBillFrm::Lines() const {
  int lines = 0;
  for (int row = 0; row < vsd.RowCount(); ++row) lines += IsLine(row) ? 1 : 0;
  return lines;
}

std::string SelfBillFrm::Typed() const {
  std::string all;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    for (int column = kClass; column < kPlaces; ++column) all += vsd.Cell(row, column) + "\t";
  }
  return all;
}

void SelfBillFrm::LeaveCell(int row, int column, const std::string& before) {
  vsd.SetMark(false);
  vsd.SetCell(row, column, Trim(vsd.Cell(row, column)));
  if (!IsLine(row)) return;  // the line that waits, or one whose last cell was emptied
  if (before.empty()) {
    for (const auto& [at, usual] : {std::pair{kQty, kOne},
                                    {kTaxCat, kUsualTax},
                                    {kAmount, kNoAmount},
                                    {kTaxPer, kNoAmount},
                                    {kTaxAmt, kNoAmount}}) {
      if (vsd.Cell(row, at).empty()) vsd.SetCell(row, at, usual);
    }
  }
  const std::string& text = vsd.Cell(row, column);
  if (column == kDesc) vsd.SetCell(row, kDesc, ApplyCapLock(session(), text));
  if (CharacterCount(text) > (column == kDesc ? kDescLength : kCodeLength) &&
      (column == kDesc || column == kClass || column == kTaxCat)) {
    vsd.SetCell(row, column, before);
    Refuse(vsd, kTooLong);
  }
  LeaveFigure(row, column);
  KeepBlankLine();
  SumUp();
  ShowRemarks();
}

// What is no amount, or no quantity, goes back to what a new line begins with.
bool SelfBillFrm::LeaveFigure(int row, int column) {
  const std::string text = vsd.Cell(row, column);
  if (IsFigure(column)) {
    const auto amount = Money::TryText(text);
    const bool good = amount && *amount <= kLargest && -*amount <= kLargest;
    vsd.SetCell(row, column, good ? ShowMoney(*amount) : kNoAmount);
    return good || Refuse(vsd, kInvalidAmount);
  }
  if (column != kQty) return true;
  const bool digits = !text.empty() && text.size() <= kQtyDigits &&
                      std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  if (digits && text.find_first_not_of('0') != std::string::npos) {
    vsd.SetCell(row, column, std::to_string(CLng(text)));
    return true;
  }
  vsd.SetCell(row, column, kOne);
  return Refuse(vsd, {"Invalid Qty", "数量不正确"});
}

void SelfBillFrm::PickCode() {
  const int row = vsd.current_row();
  const char* picker = entered_column_ == kClass    ? "eClassPop"
                       : entered_column_ == kTaxCat ? "eTaxPop"
                                                    : nullptr;
  if (picker == nullptr || row < 0 || !vsd.CellEditable(row, entered_column_)) return;
  const int column = entered_column_;
  const std::string code = Pick(session(), desk(), picker);
  if (!code.empty()) vsd.Edit(row, column, code);
}

void SelfBillFrm::RemoveLine() {
  const int row = vsd.current_row();
  if (row < 0 || row >= vsd.RowCount() || !IsLine(row) || !vsd.Editable()) return;
  // The words are those of another list, and known here so.
  if (!ConfirmLoss({fmt::format("Confirm to delete cheque {} ?", row + 1),
                    fmt::format("确定删除支票 {}？", row + 1)})) {
    return;
  }
  vsd.RemoveRow(row);
  KeepBlankLine();
  SumUp();
  ShowRemarks();
}

void SelfBillFrm::KeepBlankLine() {
  if (vsd.RowCount() == 0 || IsLine(vsd.RowCount() - 1)) {
    vsd.AddRow(std::vector<std::string>(kPlaces));
  }
  int number = 0;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    vsd.SetCell(row, kNo, IsLine(row) ? std::to_string(++number) : std::string());
  }
}

void SelfBillFrm::SumUp() {
  Money amount, tax;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    amount += Money::TryText(vsd.Cell(row, kAmount)).value_or(Money());
    tax += Money::TryText(vsd.Cell(row, kTaxAmt)).value_or(Money());
  }
  SelfBillAmt.SetText(ShowMoney(amount));
  SelfBillTaxAmt.SetText(ShowMoney(tax));
}

SelfBill SelfBillFrm::Bill() const {
  SelfBill bill{.SID = SID.text(),
                .SuppTin = SuppTin.text(),
                .SuppIDNo = SuppIDNo.text(),
                .SuppIDType = SuppIDType.text(),
                .SuppMiscCode = SuppMiscCode.text(),
                .SuppBankAcc = SuppBankAcc.text(),
                .SuppSST = SuppSST.text(),
                .SuppName = SuppName.text(),
                .SuppTel = SuppTel.text(),
                .SuppEmail = SuppEmail.text(),
                .SuppAdd = SuppAdd.text(),
                .SuppPostCode = SuppPostCode.text(),
                .SuppCity = SuppCity.text(),
                .SuppState = SuppState.text(),
                .SuppCountry = SuppCountry.text(),
                .SelfBillTaxCat = SelfBillTaxCat.text(),
                .SelfBillAmt = Sen(SelfBillAmt),
                .SelfBillTaxAmt = Sen(SelfBillTaxAmt),
                .items = {}};
  for (int row = 0; row < vsd.RowCount(); ++row) {
    if (!IsLine(row)) continue;
    const std::vector<std::string>& cells = vsd.Row(row);
    const auto money = [&cells](Place place) {
      return Money::TryText(cells[place]).value_or(Money());
    };
    bill.items.push_back({cells[kClass], cells[kDesc], cells[kQty], money(kAmount), cells[kTaxCat],
                          money(kTaxPer), money(kTaxAmt)});
  }
  return bill;
}

void SelfBillFrm::ShowRemarks() {
  std::vector<std::vector<std::string>> rows;
  const SelfBill bill = Bill();
  // A sheet that nothing was typed on has nothing to be refused.
  if (!IsNew() || Changed()) {
    for (const SelfBillRemark& remark : CheckSelfBill(main(), *check_, bill, CompCode.text())) {
      std::string field = session().In(remark.field);
      field.replace(0, 1, Upper(field.substr(0, 1)));
      rows.push_back({std::move(field), session().In(remark.what)});
    }
  }
  const std::vector<RowTone> tones(rows.size(), RowTone::warn);
  CheckDG.SetRows(std::move(rows), tones);
}

}  // namespace kaunter
