#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout SpecialRptLayout() {
  return {
      "SpecialRpt",
      {1342, 700},
      Down({Across({Fields(3, {"CompCode", "Bank", "DateFrom", "DateTo", "LoanGroupID", "SortBy"}),
                    ButtonsHere({"Command1"})},
                   {1, 0}),
            Fill("DG"), Across({Title("TotalLBL"), Fields(1, {"PayDate"})}, {3, 1})}),
      {"SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
