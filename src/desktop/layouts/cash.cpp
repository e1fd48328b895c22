#include "desktop/layouts/layouts.h"

namespace kaunter {

// The movement that is being entered above, the company's balances beside it, its latest rows
// below.
Layout CashBookFrmLayout() {
  return {"CashBookFrm",
          {1060, 680},
          Down({Across({Group({"Movement", "进出"}, 2,
                              {"CashBookNo", "TranDate", "TranType", "TranAmt", Wide("CBCat"),
                               Wide("TranDesc"), Wide("TranMemo")}),
                        Group({"Company", "公司"}, 1,
                              {"CompCode", "CompDesc", "CashInHand", "CashInBank"})},
                       {5, 3}),
                Fields(1, {"HintLBL"}), Fill("DG")}),
          {"Command1", "SearchCmd", "CmdClear", "RecalcCmd", "SaveCmd", "CancelCmd"}};
}

// Where the walk begins above, what it found below.
Layout RecalcCashBookFrmLayout() {
  return {"RecalcCashBookFrm",
          {1140, 640},
          Down({Fields(4, {"CompCode", "CBOpenDate", "CBOpenCash", "CBOpenBank", Wide("HintLBL")}),
                Fields(1, {"ResultLBL"}), Fill("DG")}),
          {"CmdPrint", "RecalcCmd", "CheckCmd", "CancelCmd"}};
}

}  // namespace kaunter
