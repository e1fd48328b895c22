#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who is billed for above, and there what the service has said; below the items and what they come
// to, and beside them what it would refuse.
Layout SelfBillFrmLayout() {
  return {
      "SelfBillFrm",
      {1320, 720},
      Down(
          {Across({Group({"Document", "单据"}, 1,
                         {Line({"SID", "TrxDate"}), Line({"CompCode", "InvoiceNo"}),
                          Line({"SelfBillTaxCat", "SelfBillStatus"}), "uuid", "UserLBL", "Result"}),
                   Group({"Supplier", "供应商"}, 1,
                         {"SuppName", Line({"SuppIDType", "SuppIDNo"}),
                          Beside({"SuppTin", "Command1"}), "SuppMiscCode", "MiscName",
                          Line({"SuppSST", "SuppBankAcc"}), Line({"SuppTel", "SuppEmail"})}),
                   Group({"Address", "地址"}, 1,
                         {"SuppAdd", Line({"SuppPostCode", "SuppCity"}), "SuppState", "StateName",
                          "SuppCountry", "CountryName"})},
                  {8, 8, 7}),
           Across({Down({Fill("vsd"), Fields(2, {"SelfBillAmt", "SelfBillTaxAmt"})}, {1, 0}),
                   Fill("CheckDG")},
                  {5, 3})},
          {0, 1}),
      {"SSCommand3", "CmdStatus", "SSCommand4", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
