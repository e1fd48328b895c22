#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout PersonalEpxFrmLayout() {
  return {"PersonalEpxFrm",
          {860, 380},
          Down({Group({"Expense", "开销"}, 2,
                      {"TrxID", "CompCode", "ExpDate", "UserID", Wide("ExpDesc")}),
                Group({"Amount", "金额"}, 2, {"DebitAmt", "CreditAmt", "CBCat", "Bank", "ChqNo"})}),
          {"SearchCmd", "CmdList", "CmdPrint", "DeleteCmd", "Command2", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
