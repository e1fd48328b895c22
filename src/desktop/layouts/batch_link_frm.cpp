#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout BatchLinkfrmLayout() {
  return {"BatchLinkfrm",
          {1180, 680},
          Down({Across({Fields(3, {"LoanID", "DateFrom", "DateTo"}),
                        ButtonsHere({"Command1", "Command2"})},
                       {1, 0}),
                Fill("DG"), Fill("DG2")}),
          {"SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
