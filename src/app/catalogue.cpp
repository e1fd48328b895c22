#include "app/catalogue.h"

#include "app/menu_table.h"
#include "bank/is_setup_frm.h"
#include "bank/payment_reader_frm.h"
#include "bank/si_process_frm.h"
#include "cash/buy_gold_frm.h"
#include "cash/cash_book_frm.h"
#include "cash/personal_epx_frm.h"
#include "cash/recalc_cash_book_frm.h"
#include "cash/sell_gold_frm.h"
#include "cash/supp_transfrm.h"
#include "cash/supplierfrm.h"
#include "collections/batch_link_frm.h"
#include "collections/batch_list_frm.h"
#include "collections/chq_ctrl_frm.h"
#include "collections/due_date_frm.h"
#include "collections/followup_frm.h"
#include "collections/holiday_frm.h"
#include "collections/invoice_frm.h"
#include "collections/late_int_frm.h"
#include "collections/loan_late_charge_frm.h"
#include "collections/loan_settlement_frm.h"
#include "collections/payment_frm.h"
#include "collections/receipt_screens.h"
#include "collections/reminder_frm.h"
#include "collections/settlement_frm.h"
#include "collections/special_rpt.h"
#include "collections/verify_ledger_frm.h"
#include "compliance/aml_desc_frm.h"
#include "compliance/amla_frm.h"
#include "compliance/npl_exportfrm.h"
#include "compliance/npl_loan_frm.h"
#include "compliance/return_figures_frm.h"
#include "compliance/watch_list_frm.h"
#include "core/company_screens.h"
#include "core/password_screens.h"
#include "core/photo_browse_frm.h"
#include "core/popup_frm.h"
#include "core/session.h"
#include "core/setup_frm.h"
#include "core/user_frm.h"
#include "core/values.h"
#include "customers/frm_nic.h"
#include "customers/new_cust_frm.h"
#include "einvoice/ecust_mast.h"
#include "einvoice/einv_frm.h"
#include "einvoice/self_bill_frm.h"
#include "links/link_acc_setup_frm.h"
#include "links/link_db_frm.h"
#include "links/link_resend_frm.h"
#include "links/sms_templatefrm.h"
#include "links/smsfrm.h"
#include "loans/drawdown.h"
#include "loans/loan_app_frm.h"
#include "loans/loan_calc_frm.h"
#include "loans/loan_extend_frm.h"
#include "loans/new_loan_frm.h"
#include "loans/update_sch.h"
#include "movein/access_db.h"
#include "movein/move_in_frm.h"
#include "reporting/frm_printing.h"
#include "reporting/lampiran_b1.h"
#include "reporting/own_reports_frm.h"
#include "reporting/report_frm.h"
#include "screen/screen.h"
#include "upkeep/about_frm.h"
#include "upkeep/backup_frm.h"
#include "upkeep/move_office_frm.h"

namespace kaunter {
namespace {

template <typename T>
std::unique_ptr<Screen> Make(Session& session, Desk& desk) {
  return std::make_unique<T>(session, desk);
}

std::unique_ptr<Screen> MakeUserFrm(Session& session, Desk& desk) {
  return std::make_unique<UserFrm>(session, desk, MenuTable());
}

struct Entry {
  std::string_view name;
  std::unique_ptr<Screen> (*make)(Session&, Desk&);
};

// One a line, in alphabetical order.
// clang-format off
constexpr Entry kScreens[] = {
    {"AboutFrm", Make<AboutFrm>},
    {"AccessDB", Make<AccessDB>},
    {"AMLADescFrm", Make<AMLADescFrm>},
    {"AMLAFrm", Make<AMLAFrm>},
    {"BackupFrm", Make<BackupFrm>},
    {"BatchLinkfrm", Make<BatchLinkfrm>},
    {"BatchListfrm", Make<BatchListfrm>},
    {"CashBookFrm", Make<CashBookFrm>},
    {"ChangePasswordfrm", Make<ChangePasswordfrm>},
    {"ChqCtrlFrm", Make<ChqCtrlFrm>},
    {"CompCodeFrm", Make<CompCodeFrm>},
    {"CompProfileFrm", Make<CompProfileFrm>},
    {"Drawdown", Make<Drawdown>},
    {"DueDateFrm", Make<DueDateFrm>},
    {"ECustMast", Make<ECustMast>},
    {"EInvFrm", Make<EInvFrm>},
    {"FollowupFrm", Make<FollowupFrm>},
    {"FrmBuyGold", Make<FrmBuyGold>},
    {"frmNIC", Make<frmNIC>},
    {"frmPrinting", Make<frmPrinting>},
    {"FrmSellGold", Make<FrmSellGold>},
    {"HolidayFrm", Make<HolidayFrm>},
    {"Invoicefrm", Make<Invoicefrm>},
    {"ISSetupfrm", Make<ISSetupfrm>},
    {"LampiranB1", Make<LampiranB1>},
    {"LateIntfrm", Make<LateIntfrm>},
    {"LinkAccSetupfrm", Make<LinkAccSetupfrm>},
    {"LinkDBfrm", Make<LinkDBfrm>},
    {"LinkResendfrm", Make<LinkResendfrm>},
    {"LoanAppFrm", Make<LoanAppFrm>},
    {"LoanCalcfrm", Make<LoanCalcfrm>},
    {"LoanExtendfrm", Make<LoanExtendfrm>},
    {"LoanLateChargefrm", Make<LoanLateChargefrm>},
    {"LoanSettlementfrm", Make<LoanSettlementfrm>},
    {"MoveInFrm", Make<MoveInFrm>},
    {"MoveOfficeFrm", Make<MoveOfficeFrm>},
    {"NewCustFrm", Make<NewCustFrm>},
    {"NewLoanFrm", Make<NewLoanFrm>},
    {"NPLExportfrm", Make<NPLExportfrm>},
    {"NPLLoanFrm", Make<NPLLoanFrm>},
    {"OwnReportsFrm", Make<OwnReportsFrm>},
    {"PaymentFrm", Make<PaymentFrm>},
    {"PaymentReaderfrm", Make<PaymentReaderfrm>},
    {"PersonalEpxFrm", Make<PersonalEpxFrm>},
    {"PhotoBrowseFrm", Make<PhotoBrowseFrm>},
    {"PopupFrm", Make<PopupFrm>},
    {"RecalcCashBookFrm", Make<RecalcCashBookFrm>},
    {"RecalcReceiptNo", Make<RecalcReceiptNo>},
    {"ReceiptNoFrm", Make<ReceiptNoFrm>},
    {"Reminderfrm", Make<Reminderfrm>},
    {"ReportFrm", Make<ReportFrm>},
    {"ReturnFiguresFrm", Make<ReturnFiguresFrm>},
    {"Settlementfrm", Make<Settlementfrm>},
    {"SelfBillFrm", Make<SelfBillFrm>},
    {"SetupFrm", Make<SetupFrm>},
    {"SIProcessfrm", Make<SIProcessfrm>},
    {"SMSfrm", Make<SMSfrm>},
    {"SMSTemplatefrm", Make<SMSTemplatefrm>},
    {"SpecialRpt", Make<SpecialRpt>},
    {"Supplierfrm", Make<Supplierfrm>},
    {"SuppTransfrm", Make<SuppTransfrm>},
    {"UpdateSch", Make<UpdateSch>},
    {"UserFrm", MakeUserFrm},
    {"VerifyLedgerFrm", Make<VerifyLedgerFrm>},
    {"WatchListFrm", Make<WatchListFrm>},
};
// clang-format on

const Entry* FindEntry(std::string_view name) {
  for (const Entry& entry : kScreens) {
    if (SameText(entry.name, name)) return &entry;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<Screen> MakeScreen(std::string_view name, Session& session, Desk& desk) {
  const Entry* entry = FindEntry(name);
  return entry == nullptr ? nullptr : entry->make(session, desk);
}

bool ScreenExists(std::string_view name) { return FindEntry(name) != nullptr; }

std::vector<std::string> ScreenNames() {
  std::vector<std::string> names;
  for (const Entry& entry : kScreens) names.emplace_back(entry.name);
  return names;
}

}  // namespace kaunter
