// One function a screen that deserves better than the order of its declarations.
#pragma once

#include "desktop/layout_table.h"

namespace kaunter {

Layout FirstStartFrmLayout();
Layout UserLoginLayout();
Layout AboutFrmLayout();
Layout FrmUserSignInLayout();
Layout AccessPasswordFrmLayout();
Layout LoanCalcfrmLayout();
Layout PopupFrmLayout();
Layout NewCustFrmLayout();
Layout NewLoanFrmLayout();
Layout PaymentFrmLayout();
Layout LoanAppFrmLayout();
Layout UserFrmLayout();
Layout CompCodeFrmLayout();
Layout CompProfileFrmLayout();
Layout SetupFrmLayout();
Layout FrmNicLayout();
Layout PhotoBrowseFrmLayout();
Layout EInvFrmLayout();
Layout FollowupFrmLayout();
Layout DueDateFrmLayout();
Layout ReminderfrmLayout();
Layout SettlementfrmLayout();
Layout LoanSettlementfrmLayout();
Layout InvoicefrmLayout();
Layout BatchLinkfrmLayout();
Layout CashBookFrmLayout();
Layout ChqCtrlFrmLayout();
Layout RecalcCashBookFrmLayout();
Layout PersonalEpxFrmLayout();
Layout SpecialRptLayout();
Layout SIProcessfrmLayout();
Layout PaymentReaderfrmLayout();
Layout SupplierfrmLayout();
Layout SuppTransfrmLayout();
Layout AMLAFrmLayout();
Layout AccessDBLayout();
Layout BackupFrmLayout();
Layout MoveInFrmLayout();
Layout NPLExportfrmLayout();
Layout ReportFrmLayout();
Layout FrmPrintingLayout();
Layout FrmBuyGoldLayout();
Layout FrmSellGoldLayout();
Layout ReturnFiguresFrmLayout();
Layout NplLoanFrmLayout();
Layout LampiranB1Layout();
Layout SelfBillFrmLayout();
Layout ECustMastLayout();
Layout LinkResendfrmLayout();
Layout SMSfrmLayout();
Layout SMSTemplatefrmLayout();
Layout WatchListFrmLayout();
Layout WebCamLayout();
Layout MoveOfficeFrmLayout();

}  // namespace kaunter
