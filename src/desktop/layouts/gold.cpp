#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who sells above, the items below, and under them what they come to.
Layout FrmBuyGoldLayout() {
  return {"FrmBuyGold",
          {1180, 680},
          Down({Across({Group({"Purchase", "买入"}, 2,
                              {"LoanID", "TrxDate", "CompCode", "UserID", "DateCreated"}),
                        Group({"Seller", "卖方"}, 1, {"CustID", "CustName", "Remarks"})},
                       {3, 2}),
                Fill("Vsd2"), Figures({"TotEstAmt", "TotAmt", "OtherAmt", "PayAmt"}),
                Fields(2, {"HandLBL", "DiffLBL"})}),
          {"CmdPrint", "CmdDelete", "CmdClear", "SaveCmd", "CancelCmd"}};
}

// The list of what was bought, and under it what is still there and what was earned.
Layout FrmSellGoldLayout() {
  return {
      "FrmSellGold",
      {1340, 720},
      Down({Across({Fields(3, {"CompCode", "DateFrom", "DateTo"}), ButtonsHere({"CmdGo"})}, {3, 1}),
            Fill("Vsd2"), Across({Fill("HandDG"), Fill("ResultDG")})},
           {0, 5, 2}),
      {"CmdPrint", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
