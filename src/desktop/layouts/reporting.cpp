#include "desktop/layouts/layouts.h"

namespace kaunter {

// What limits the report above, the filter lists below, what is chosen at their foot.
Layout ReportFrmLayout() {
  return {"ReportFrm",
          {940, 680},
          Down({Title("LoanLBL"),
                Across({Group({"Period and Numbers", "期间与编号"}, 2,
                              {"DateFrom", "DateTo", Line({"IDFrom", "SearchCmd1"}),
                               Line({"IDTo", "SearchCmd2"})}),
                        Group({"Options", "选项"}, 1, {"Check1", "Check2", "Check3", "Check4"})},
                       {5, 2}),
                Fields(1, {"NoteLBL"}), Fields(1, {"ListCombo"}),
                Across({Fill("List1"),
                        Down({ButtonsHere({"InSingle"}), ButtonsHere({"InAll"}),
                              ButtonsHere({"OutSingle"}), ButtonsHere({"OutAll"})}),
                        Fill("List2")},
                       {4, 0, 4}),
                Fields(1, {"SelectedLbl"})},
               {0, 0, 0, 0, 1, 0}),
          {"SaveCmd", "CancelCmd"}};
}

// The loan above, its documents below, where they go at the foot.
Layout FrmPrintingLayout() {
  return {"frmPrinting",
          {900, 640},
          Down({Fields(2, {"LoanID", "CustName"}), Fields(1, {"Check1"}), Fill("vsd"),
                Fields(2, {"Option1", "Option2"})}),
          {"SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
