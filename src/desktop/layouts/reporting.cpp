#include "desktop/layouts/layouts.h"

namespace kaunter {

// What limits the report above, the filter lists below, what is chosen at their foot.
Layout ReportFrmLayout() {
  return {
      "ReportFrm",
      {940, 640},
      Down({Title("LoanLBL"),
            Group({"Period and Numbers", "期间与编号"}, 2,
                  {"DateFrom", "DateTo", Line({"IDFrom", "SearchCmd1"}),
                   Line({"IDTo", "SearchCmd2"})}),
            Fields(4, {"Check1", "Check2", "Check3", "Check4"}), Fields(1, {"NoteLBL"}),
            Fields(2, {"ListCombo"}),
            Across({Fill("List1"), Down({Fields(1, {"InSingle", "InAll", "OutSingle", "OutAll"})}),
                    Fill("List2")},
                   {4, 1, 4}),
            Fields(1, {"SelectedLbl"})},
           {0, 0, 0, 0, 0, 1, 0}),
      {"FiguresCmd", "SaveCmd", "CancelCmd"}};
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
