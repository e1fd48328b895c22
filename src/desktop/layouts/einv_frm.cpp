#include "desktop/layouts/layouts.h"

namespace kaunter {

// What is asked for above, the documents, and below them what is known of the one that is pointed
// at.
Layout EInvFrmLayout() {
  return {"EInvFrm",
          {1320, 740},
          Down({Across({Fields(3, {"CompCode", Line({"SendType", "SubmitMethod"}),
                                   Line({"DateFrom", "DateTo"})}),
                        ButtonsHere({"SaveCmd"})},
                       {1, 0}),
                Fields(1, {"TokenLBL"}),
                Across({Fields(2, {"StateFilter", "C3"}), Fields(1, {"ResultLBL"})}, {4, 5}),
                Fill("vsd"), Across({Fields(1, {"Checks"}), Fields(1, {"Msg"})})},
               {0, 0, 0, 1, 0}),
          {"CmdPrint", "CmdStatus", "CmdSettle", "CmdClear", "CancelCmd"}};
}

}  // namespace kaunter
