#include "desktop/layouts/layouts.h"

namespace kaunter {

// The loan and the cheque in hand above, all of its cheques below.
Layout ChqCtrlFrmLayout() {
  return {"ChqCtrlFrm",
          {980, 640},
          Down({Across({Group({"Loan", "贷款"}, 1, {"LoanID", "CustName", "LoanDate"}),
                        Group({"Cheque", "支票"}, 2,
                              {"ChqNo", "ChqDate", "ChqAmt", "ChqBank", "ChqStatus"})},
                       {4, 5}),
                Fill("ChqDG")}),
          {"SearchCmd", "Cmd1", "Cmd3", "Cmd4", "ExitCmd"}};
}

}  // namespace kaunter
