// The persons of a loan: its customer, the second applicant, the guarantors with their photos, and
// the application that it comes from.
#include <fmt/format.h>

#include <filesystem>
#include <optional>

#include "core/amounts.h"
#include "core/card_boxes.h"
#include "core/company_access.h"
#include "core/identity.h"
#include "core/picker.h"
#include "core/picture_file.h"
#include "core/unsent_files.h"
#include "core/values.h"
#include "customers/credit_limit.h"
#include "customers/document_store.h"
#include "loans/application.h"
#include "loans/new_loan_frm.h"

namespace kaunter {

void NewLoanFrm::BindPersonEvents() {
  CustID.onLeave = [this] {
    CustID.SetText(Upper(Trim(CustID.text())));
    CustID.SetMark(false);
    if (!CustID.empty()) LoadCustomer(LoanMode != "New Loan");
  };
  OfferPicker(session(), CustID, "CustPop", [this](const std::string& id) {
    CustID.SetText(id);
    LoadCustomer(LoanMode != "New Loan");
  });
  CustID2.onLeave = [this] {
    CustID2.SetText(Upper(Trim(CustID2.text())));
    CustID2.SetMark(false);
    if (!CustID2.empty()) LoadSecondApplicant();
  };
  OfferPicker(session(), CustID2, "CustPop", [this](const std::string& id) {
    CustID2.SetText(id);
    LoadSecondApplicant();
  });
  CustNIC2.mask = kNewIcMask;
  CustNIC2.onLeave = [this] { CustNIC2.SetText(MaskNewIc(Trim(CustNIC2.text()))); };
  for (GuarantorBoxes& boxes : guarantors) {
    boxes.GuarantorNIC.mask = kNewIcMask;
    boxes.GuarantorNIC.onLeave = [&boxes] {
      boxes.GuarantorNIC.SetText(MaskNewIc(Trim(boxes.GuarantorNIC.text())));
    };
    boxes.cmdCardReader.onClick = [this, &boxes] { ReadCard(boxes); };
    boxes.CmdGetGuarantor.onClick = [this, &boxes] { TakeGuarantor(boxes); };
    boxes.Pic.picker = "file";
    boxes.Pic.onLeave = [this, &boxes] {
      if (boxes.Pic.empty()) pending_photos_[boxes.index].clear();
      ShowPhotos();
    };
    boxes.Pic.onSearch = [this, &boxes] { ChoosePhoto(boxes); };
  }
  SSCommand3.onClick = [this] { TakeApplication(); };
}

// --- the customer

bool NewLoanFrm::LoadCustomer(bool lenient) {
  const std::string company = QuoteStr(CompCode.text());
  if (!lenient) {
    for (const std::string& sql :
         {fmt::format("Select CustID from LoanMast where OldLoanCode = {} and CompCode={}",
                      QuoteStr(CustID.text()), company),
          fmt::format("Select CustID from CustMast where CustNIC = {} and CompCode={}",
                      QuoteStr(CustID.text()), company)}) {
      const std::string id = ScalarQuery(main(), sql);
      if (id.empty()) continue;
      CustID.SetText(id);
      break;
    }
  }
  const std::string id = CustID.text();
  const Recordset row = main().Query(fmt::format(
      "SELECT CustStatus,CustName,CustNIC,ATMCardNo,ATMPinNo,BankAccNo,BankTransferName,"
      "BankCagaran,CreditLimit,CreditLimitType,CompCode,Pic1 FROM CustMast WHERE CustID={}",
      QuoteStr(id)));
  const std::string own_company = row.Eof() ? std::string() : NullToEmpty(row.Field("CompCode"));
  if (row.Eof() || (!lenient && !MayUseCompany(session(), own_company))) {
    CustName.Clear();
    return Refuse(CustID,
                  {fmt::format("Customer ID {} not found", id), fmt::format("找不到顾客 {}", id)});
  }
  const std::string status = NullToEmpty(row.Field("CustStatus"));
  if (!SameText(status, "ACTIVE")) {
    if (!lenient) {
      CustID.Clear();
      CustName.Clear();
      return Refuse(CustID, {fmt::format("No loan for {} customer", status),
                             fmt::format("状态 {} 的顾客不可贷款", status)});
    }
    Tell(MessageKind::information, {fmt::format("{} customer, Please take note", status),
                                    fmt::format("请注意：顾客状态为 {}", status)});
  }
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  CustPhoto.Show(session(), id, NullToEmpty(row.Field("Pic1")));
  // A loan that stands keeps its company and the limit that it was given under.
  if (!lenient) {
    CompCode.SetText(own_company);
    CreditLimit.SetText(ShowMoney(row.Field("CreditLimit")));
    LoadCheckList();
    ShowAml();
  }
  ShowCredit(Sen(row.Field("CreditLimit")), NullToEmpty(row.Field("CreditLimitType")));
  if (!Bank.empty()) return true;
  const Recordset bank = main().Query(
      fmt::format("SELECT TOP 1 ATMCardNo,ATMPinNo,Bank,BankBranch FROM LoanMast WHERE CustID={} "
                  "AND LoanID <>{} ORDER BY LoanID DESC",
                  QuoteStr(id), QuoteStr(loaded_id_)));
  if (bank.Eof()) {
    Bank.SetText("CASH");
    return true;
  }
  ATMCardNo.SetText(NullToEmpty(bank.Field("ATMCardNo")));
  ATMPinNo.SetText(NullToEmpty(bank.Field("ATMPinNo")));
  Bank.SetText(NullToEmpty(bank.Field("Bank")));
  BankBranch.SetText(NullToEmpty(bank.Field("BankBranch")));
  return true;
}

// What the customer may still borrow today, whatever the limit was when the loan was made.
void NewLoanFrm::ShowCredit(Money limit, const std::string& limit_type) {
  if (limit_type.empty()) {
    CreditLBL.SetText(session().In({"No credit limit", "没有信用额限制"}));
    return;
  }
  const struct CreditBar credit = MeasureCredit(main(), CustID.text(), limit, limit_type);
  CreditLBL.SetText(fmt::format("{} {}", session().In({"Credit", "可用信用额"}), credit.label));
  CreditLBL.tip = credit.tip;
}

void NewLoanFrm::LoadSecondApplicant() {
  const std::string id = CustID2.text();
  const Recordset row = main().Query(fmt::format(
      "SELECT CustName,CustNIC,CustAdd1,CompCode FROM CustMast WHERE CustID={}", QuoteStr(id)));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(CustID2,
           {fmt::format("Customer ID {} not found", id), fmt::format("找不到顾客 {}", id)});
    return;
  }
  CustName2.SetText(NullToEmpty(row.Field("CustName")));
  CustNIC2.SetText(NullToEmpty(row.Field("CustNIC")));
  CustAdd12.SetText(NullToEmpty(row.Field("CustAdd1")));
}

// --- guarantors

// Takes what is known of the person from the latest other loan on which he stands as guarantor,
// first or second.
void NewLoanFrm::TakeGuarantor(GuarantorBoxes& boxes) {
  const std::string nic = Trim(boxes.GuarantorNIC.text());
  const std::string name = Trim(boxes.GuarantorName.text());
  for (int set = 0; set < 2 && !(nic.empty() && name.empty()); ++set) {
    const std::string suffix = set == 0 ? "" : "2";
    const std::string pic = set == 0 ? "Pic1" : "Pic2";
    std::string columns = "LoanID," + pic;
    for (const Control* box : boxes.All()) columns += "," + GuarantorBoxes::Column(*box, suffix);
    const Recordset row = main().Query(fmt::format(
        "SELECT TOP 1 {} FROM LoanMast WHERE {}={}{} AND LoanID <> {} ORDER BY LoanID DESC",
        columns, (nic.empty() ? "GuarantorName" : "GuarantorNIC") + suffix,
        QuoteStr(nic.empty() ? name : nic), AndCompany(session(), "CompCode"),
        QuoteStr(loaded_id_)));
    if (row.Eof()) continue;
    for (Control* box : boxes.All()) {
      const Value& value = row.Field(GuarantorBoxes::Column(*box, suffix));
      if (box->type() == ControlType::combo_box) {
        static_cast<ComboBox*>(box)->SetText(NullToEmpty(value));
      } else {
        auto& text = *static_cast<TextBox*>(box);
        text.SetText(text.kind() == Kind::money ? ShowMoney(value) : NullToEmpty(value));
      }
    }
    TakePhotoOf(boxes, NullToEmpty(row.Field("LoanID")), NullToEmpty(row.Field(pic)),
                fmt::format("guarantor{}.jpg", set));
    Tell(MessageKind::information, {"Guarantor Info assigned", "已取得担保人资料"});
    return;
  }
  Tell(MessageKind::information, {"No info found", "没有资料"});
}

// An older loan has the photo under a name that its row does not tell.
void NewLoanFrm::TakePhotoOf(GuarantorBoxes& boxes, const std::string& loan,
                             const std::string& photo, const std::string& untold) {
  const std::string& file = photo.empty() ? untold : photo;
  if (!IsPlainFileName(file)) return;
  if (!photo.empty() && !FetchPhoto(session(), *this, loan, file)) return;
  const std::string path = KeptPath(session(), loan, file);
  if (std::filesystem::exists(path)) SetPhoto(boxes, path);
}

// The file is kept when the loan is saved.
void NewLoanFrm::SetPhoto(GuarantorBoxes& boxes, const std::string& file) {
  pending_photos_[boxes.index] = file;
  boxes.Pic.SetText(file.empty()
                        ? std::string()
                        : NewPhotoStem(session(), fmt::format("guarantor{}", boxes.index)) +
                              std::filesystem::path(file).extension().string());
  ShowPhotos();
}

void NewLoanFrm::ReadCard(GuarantorBoxes& boxes) {
  WaitingPicture photo("cust", ".jpg");
  const auto filled =
      ReadCardInto(session(), {.name = boxes.GuarantorName,
                               .new_ic = boxes.GuarantorNIC,
                               .others = {{CardField::old_ic, &boxes.GuarantorOIC},
                                          {CardField::gender, &boxes.GuarantorGender}},
                               .race = &boxes.GuarantorRace,
                               .photo_file = photo.Reserve(session())});
  if (!filled) return;
  const bool waited = !boxes.card_photo.path().empty();
  boxes.card_photo.Take(photo);
  const std::string& path = boxes.card_photo.path();
  if (!path.empty() || waited || filled->another) SetPhoto(boxes, path);
}

void NewLoanFrm::ChoosePhoto(GuarantorBoxes& boxes) {
  const std::string file = ChoosePicture(session(), boxes.Pic);
  if (!file.empty()) SetPhoto(boxes, file);
}

void NewLoanFrm::Tick() {
  if (shown_photos_.Tick(session(), *this)) ShowPhotos();
  CustPhoto.Look();
  TellUnsent(session(), *this);
}

void NewLoanFrm::ShowPhotos() {
  for (GuarantorBoxes& boxes : guarantors) {
    const std::string& pending = pending_photos_[boxes.index];
    std::string path = pending;
    if (path.empty() && !boxes.Pic.empty() && !loaded_id_.empty()) {
      path = shown_photos_.Path(session(), *this, loaded_id_, boxes.Pic.text());
    }
    boxes.Photo.SetPath(path);
    boxes.Photo.SetVisible(!path.empty());
  }
}

// --- the application

bool NewLoanFrm::CheckApplicant(const std::string& application) {
  const std::string owner = OtherApplicant(main(), application, CustID.text());
  return owner.empty() ||
         Refuse(CustID, {fmt::format("Application {} belongs to {}, and customer {} has no part in "
                                     "it. Choose an application of this customer.",
                                     application, owner, CustID.text()),
                         fmt::format("申请 {} 属于 {}，与顾客 {} 无关。请选择此顾客的申请。",
                                     application, owner, CustID.text())});
}

void NewLoanFrm::TakeApplication() {
  if (CustID.empty()) {
    Refuse(CustID, {"Customer Code is requried", "请输入顾客编号"});
    return;
  }
  const std::string id = Pick(session(), desk(), "AppPop", {}, "LOAN " + CustID.text());
  if (!id.empty() && !CheckApplicant(id)) return;
  const auto application = id.empty() ? std::nullopt : ReadApplication(main(), id, CustID.text());
  if (!application) return;
  Record terms("AppMast", "AppID");
  terms.Add(NextDueDate, As::date).Add(DragLoan, As::index).Add(InsRate, As::rate);
  for (TextBox* box : {&LoanAmt, &LoanAmt2, &TopUpAmt, &TermInt}) terms.Add(*box, As::money);
  terms.Add(LoanTypeID).Add(LoanType).Add(LoanPurpose).Add(LoanTerm).Add(LoanTerm3);
  terms.AddPage(PropertyPage);
  terms.Load(application->row);
  if (LoanTerm3.empty()) LoanTerm3.SetText("0");
  // The application keeps its interest-only instalments in LoanTerm3, a loan in LoanTerm2.
  LoanTerm2.SetText(LoanTerm3.text());
  SpecialSch.SetEnabled(TermsOpen && DragLoan.index() == 1);
  LoanTerm3.SetEnabled(TermsOpen && DragLoan.index() == 1);
  AgreementNo.SetText(id);
  taken_application_ = id;
  CustID2.SetText(application->second_applicant);
  if (!CustID2.empty()) LoadSecondApplicant();
  if (LateChargePerDay.empty()) LateChargePerDay.SetText(InsRate.text());
  AutomaticFees();
  CalculatePayment(false);
}

}  // namespace kaunter
