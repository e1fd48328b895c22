// The layout tables that the desktop has, one function a file.
#include "desktop/layout_table.h"
#include "desktop/layouts/layouts.h"
#include "screen/text.h"

namespace kaunter {

const std::vector<Layout>& AllLayouts() {
  static const std::vector<Layout> layouts = {
      FirstStartFrmLayout(),     UserLoginLayout(),
      LoanCalcfrmLayout(),       PopupFrmLayout(),
      NewCustFrmLayout(),        UserFrmLayout(),
      CompCodeFrmLayout(),       CompProfileFrmLayout(),
      SetupFrmLayout(),          FrmNicLayout(),
      NewLoanFrmLayout(),        LoanAppFrmLayout(),
      SettlementfrmLayout(),     LoanSettlementfrmLayout(),
      PaymentFrmLayout(),        InvoicefrmLayout(),
      BatchLinkfrmLayout(),      SpecialRptLayout(),
      FollowupFrmLayout(),       DueDateFrmLayout(),
      ReminderfrmLayout(),       ReportFrmLayout(),
      FrmPrintingLayout(),       ChqCtrlFrmLayout(),
      FrmUserSignInLayout(),     CashBookFrmLayout(),
      RecalcCashBookFrmLayout(), AccessPasswordFrmLayout(),
      FrmBuyGoldLayout(),        FrmSellGoldLayout(),
      PersonalEpxFrmLayout(),    SupplierfrmLayout(),
      SuppTransfrmLayout(),      ReturnFiguresFrmLayout(),
      NplLoanFrmLayout(),        LampiranB1Layout(),
      AMLAFrmLayout(),           NPLExportfrmLayout(),
      SIProcessfrmLayout(),      SelfBillFrmLayout(),
      ECustMastLayout(),         EInvFrmLayout(),
      PaymentReaderfrmLayout(),  SMSfrmLayout(),
      SMSTemplatefrmLayout(),    MoveInFrmLayout(),
      AccessDBLayout(),          BackupFrmLayout(),
      WatchListFrmLayout(),      WebCamLayout(),
      LinkResendfrmLayout(),     AboutFrmLayout(),
      MoveOfficeFrmLayout(),     PhotoBrowseFrmLayout(),
  };
  return layouts;
}

const Layout* FindLayout(std::string_view screen_name) {
  for (const Layout& layout : AllLayouts()) {
    if (SameName(layout.screen, screen_name)) return &layout;
  }
  return nullptr;
}

}  // namespace kaunter
