#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who is billed for above, the items and what they come to below, and beside them what the service
// would refuse or has said.
Layout SelfBillFrmLayout() {
  return {"SelfBillFrm",
          {1320, 720},
          Down({Across({Group({"Document", "单据"}, 1,
                              {"SID", "InvoiceNo", "TrxDate", "CompCode",
                               Line({"SelfBillTaxCat", "SelfBillStatus"}), "uuid", "UserLBL"}),
                        Group({"Supplier", "供应商"}, 1,
                              {"SuppName", Line({"SuppIDType", "SuppIDNo"}),
                               Beside({"SuppTin", "Command1"}), "SuppMiscCode", "MiscName",
                               Line({"SuppSST", "SuppBankAcc"}), Line({"SuppTel", "SuppEmail"})}),
                        Group({"Address", "地址"}, 1,
                              {"SuppAdd", Line({"SuppPostCode", "SuppCity"}), "SuppState",
                               "StateName", "SuppCountry", "CountryName"})},
                       {6, 7, 7}),
                Across({Down({Fill("vsd"), Fields(2, {"SelfBillAmt", "SelfBillTaxAmt"})}, {1, 0}),
                        Down({Fill("CheckDG"), Fill("Result")}, {3, 2})},
                       {5, 3})},
               {0, 1}),
          {"SSCommand3", "CmdStatus", "SSCommand4", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
