#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who it is above, what was bought and paid below.
Layout SupplierfrmLayout() {
  return {
      "Supplierfrm",
      {1060, 700},
      Down({Across({Group({"Supplier", "供应商"}, 1,
                          {"SuppID", "SuppName", "CompCode", "TrxDate", "UserID", "DateCreated"}),
                    Group({"Address", "地址"}, 1, {Stacked({"Add1", "Add2", "Add3", "Add4"})}),
                    Group({"Contact", "联络"}, 1, {"Tel1", "Tel2", "Remark"})},
                   {7, 4, 4}),
            Fields(1, {"HintLBL"}), Fill("SuppTransDG")}),
      {"SearchCmd", "CmdTrans", "CmdDelete", "CmdClear", "SaveCmd", "CancelCmd"}};
}

Layout SuppTransfrmLayout() {
  return {"SuppTransfrm",
          {900, 470},
          Down({Group({"Transaction", "交易"}, 2,
                      {"TransID", "TransType", "TrxDate", "TransAmt", Wide("TransDesc")}),
                Across({Group({"Supplier", "供应商"}, 1,
                              {"SuppID", "SuppName", "UserID", "DateCreated"}),
                        Group({"For a Loan", "用于贷款"}, 1, {"LoanID", "CustID", "CompCode"})})}),
          {"SearchCmd", "CmdDelete", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
