#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout InvoicefrmLayout() {
  return {"Invoicefrm",
          {820, 520},
          Down({Across({Group({"Document", "单据"}, 1, {"ChargeID", "PType", "TrxDate", "LoanID"}),
                        Group({"Customer", "顾客"}, 1, {"CustName", "CustID", "CompCode"})}),
                Group({"Charge", "收费"}, 3,
                      {"ChargeAmt", Wide("ChargeDesc"), "DueDate", "LateAmt", "LateInt"})}),
          {"CmdNew", "CmdPrint", "CmdDelete", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
