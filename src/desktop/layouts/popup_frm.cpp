#include "desktop/layouts/layouts.h"

namespace kaunter {

// What is looked for above, the rows with all the room, the pages below them.
Layout PopupFrmLayout() {
  return {"PopupFrm",
          {1060, 660},
          Down({Fields(3, {Line({"SearchString", "SearchCmd"}), "SortOrder", "CompCode", "AreaCode",
                           "LoanGroupID", "LoanTypeID", "CollectInfoID", "HideLoanChk"}),
                Fill("DG"),
                Across({Fields(1, {"iLimit"}), ButtonsHere({"Command3", "Command2"}),
                        Fields(1, {"Label8"})},
                       {0, 0, 1})}),
          {"SaveCmd", "Command1"}};
}

}  // namespace kaunter
