#include "core/company_screens.h"

#include <fmt/format.h>

#include "core/open_for.h"
#include "core/picker.h"
#include "core/picture_file.h"
#include "core/values.h"

namespace kaunter {
namespace {

const Caption kSaveQuestion{"Confirm to save record ?", "确定储存资料？"};

// One beside the program is kept by its short name: other PCs may have their program elsewhere.
void OfferPicture(Session& session, TextBox& box) {
  box.picker = "file";
  box.onSearch = [&session, &box] {
    std::string file = ChoosePicture(session, box);
    if (file.starts_with(session.AppPath + "/")) file.erase(0, session.AppPath.size() + 1);
    if (!file.empty()) box.SetText(file);
  };
}

}  // namespace

CompCodeFrm::CompCodeFrm(Session& session, Desk& desk)
    : SessionScreen("CompCodeFrm", {"Company Code Setup", "公司设定"}, session, desk),
      record_("CompMast", "CompCode") {
  record_.Add(CompCode)
      .Add(CompDesc)
      .Add(AreaCode)
      .Add(Address)
      .Add(PersonIncharge)
      .Add(Tel1)
      .Add(Tel2)
      .Add(Fax)
      .Add(HP1)
      .Add(HP2)
      // The cash book moves the balances; here they only show, and a new company begins with none.
      .Add(CashInHand, As::money)
      .ReadOnly()
      .Add(CashInBank, As::money)
      .ReadOnly()
      .Add(CompNo)
      .Add(LicenseNo)
      .Add(email)
      .Add(CompanyType)
      .Add(ICNo)
      .Add(SerialReceiptNo)
      .Add(SMSName)
      .Add(DisableSTR)
      .Add(SQLPath)
      .Add(ClientID)
      .Add(ClientSecret)
      .Add(MyTaxClientID)
      .Add(MyTaxClientSecret)
      .Add(LogoFile)
      .Add(Letterhead);
  for (const char* balance : {"CashInHand", "CashInBank"}) {
    record_.AddValue(balance, [] { return std::string("0"); }).InsertOnly();
  }
  if (session.settings.AMLA) {
    record_.Add(AMLA)
        .Add(AMLACheckIC)
        .Add(AMLALoan, As::money)
        .Add(AMLAPayment, As::money)
        .Add(AMLAWarning)
        .Add(AMLAOfficer);
  }
  AmlPage.SetVisible(session.settings.AMLA);
  CashInHand.SetLocked(true);
  CashInBank.SetLocked(true);
  CompCode.onLeave = [this] { LeaveCode(); };
  OfferPicker(session, CompCode, "CompPop", [this](const std::string& id) {
    if (MayLeaveRecord(record_.Changed())) LoadCompany(id);
  });
  OfferPicture(session, LogoFile);
  OfferPicture(session, Letterhead);
  AMLALoan.onLeave = [this] { CheckAmount(AMLALoan); };
  AMLAPayment.onLeave = [this] { CheckAmount(AMLAPayment); };
  ECust.onClick = [this] {
    OpenFor(this->session(), this->desk(), "ECustMast", "E-Invoice",
            HandOver{CompCode.text(), {}, {}});
  };
  SaveCmd.onClick = [this] { Save(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) ClearAll();
  };
  CmdDelete.onClick = [this] { Delete(); };
}

void CompCodeFrm::Load() {
  record_.TakeWidths(main());
  FillItems(AreaCode, main(), "SELECT AreaCode FROM AreaMast ORDER BY AreaCode");
  CmdDelete.SetEnabled(false);
  ECust.SetVisible(session().settings.EInv && desk().CanShow("ECustMast"));
  ECust.SetEnabled(false);
  record_.Remember();
}

bool CompCodeFrm::RequestClose() { return MayDiscard(record_.Changed()); }

void CompCodeFrm::LeaveCode() {
  CompCode.SetText(Upper(Trim(CompCode.text())));
  if (!CompCode.empty()) LoadCompany(CompCode.text());
}

void CompCodeFrm::LoadCompany(const std::string& code) {
  const Recordset row =
      main().Query(fmt::format("SELECT * FROM CompMast WHERE CompCode={}", QuoteStr(code)));
  CmdDelete.SetEnabled(!row.Eof() && MayDelete(code));
  ECust.SetEnabled(!row.Eof());
  if (row.Eof()) return;
  record_.Clear();
  record_.Load(row);
}

bool CompCodeFrm::MayDelete(const std::string& code) {
  if (SameText(code, "HQ") || SameText(code, "NIL")) return false;
  const std::string quoted = QuoteStr(code);
  return ScalarQuery(main(), "SELECT COUNT(LoanID) FROM LoanMast WHERE CompCode=" + quoted) ==
             "0" &&
         ScalarQuery(main(), "SELECT COUNT(*) FROM CustMast WHERE CompCode=" + quoted) == "0";
}

bool CompCodeFrm::CheckAmount(TextBox& box) {
  box.SetText(Trim(box.text()));
  if (!box.empty() && !IsNumeric(box.text())) {
    return Refuse(box, {"Invalid amount, please check", "数额不正确，请检查"});
  }
  if (!box.empty()) box.SetText(ShowMoney(Value(Money::FromText(box.text()))));
  box.SetMark(false);
  return true;
}

void CompCodeFrm::Save() {
  CompCode.SetText(Upper(Trim(CompCode.text())));
  if (!CheckAmount(AMLALoan) || !CheckAmount(AMLAPayment)) return;
  if (SMSName.empty()) {
    Refuse(SMSName, {" SMS Name is required", "请输入短讯名称"});
    return;
  }
  if (CompCode.empty()) {
    Refuse(CompCode, {"Company Code is required", "请输入公司编号"});
    return;
  }
  const std::string code = CompCode.text();
  const bool exists =
      !ScalarQuery(main(),
                   fmt::format("SELECT CompCode FROM CompMast WHERE CompCode={}", QuoteStr(code)))
           .empty();
  // A code is a part of file names, of lists in quotes and of the numbers that its counters give.
  if (!exists &&
      code.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-") != std::string::npos) {
    Refuse(CompCode,
           {"Company Code takes letters, digits and - only", "公司编号只可有字母、数字和 -"});
    return;
  }
  if (!Confirm(kSaveQuestion)) return;
  ExecuteOnRow(main(), exists ? record_.UpdateStatement(code) : record_.InsertStatement(), code);
  LoadCompany(code);
}

void CompCodeFrm::Delete() {
  const std::string code = CompCode.text();
  if (!MayDelete(code)) return;
  if (!ConfirmLoss({fmt::format("Confirm to delete {}", code), fmt::format("确定刪除 {}", code)}))
    return;
  ExecuteOnRow(main(), fmt::format("DELETE FROM CompMast WHERE CompCode={}", QuoteStr(code)), code);
  ClearAll();
  Tell(MessageKind::information, {fmt::format("{} deleted", code), fmt::format("{} 已删除", code)});
}

void CompCodeFrm::ClearAll() {
  record_.Clear();
  CmdDelete.SetEnabled(false);
  ECust.SetEnabled(false);
  FocusOn(CompCode);
}

CompProfileFrm::CompProfileFrm(Session& session, Desk& desk)
    : SessionScreen("CompProfileFrm", {"Vendor Information", "本公司资料"}, session, desk),
      record_("CompanyProfile", "") {
  for (TextBox* box : {&CompanyName, &RegNo, &LicenseNo, &Tel, &Fax, &email, &Address1, &Address2,
                       &Address3, &PostCode, &City, &State, &LogoFile}) {
    record_.Add(*box);
  }
  OfferPicture(session, LogoFile);
  SaveCmd.onClick = [this] { Save(); };
}

void CompProfileFrm::Load() {
  record_.TakeWidths(main());
  const Recordset row = main().Query("SELECT * FROM CompanyProfile");
  if (!row.Eof()) record_.Load(row);
}

bool CompProfileFrm::RequestClose() { return MayDiscard(record_.Changed()); }

void CompProfileFrm::Save() {
  if (!Confirm(kSaveQuestion)) return;
  if (main().Execute(record_.UpdateOnlyRow()) == 0) main().Execute(record_.InsertStatement());
  session().CompanyName = CompanyName.text();
  record_.Remember();
  Close();
}

}  // namespace kaunter
