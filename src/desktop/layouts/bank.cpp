#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout SIProcessfrmLayout() {
  return {
      "SIProcessfrm",
      {1180, 680},
      Down({Across({Fields(2, {"ToDate", "PDate"}), ButtonsHere({"SaveCmd"})}, {1, 0}), Fill("vsd"),
            Across({Title("TotalLBL"), ButtonsHere({"CmdCheckAll", "CmdUncheckAll"})}, {1, 0})}),
      {"SSCommand1", "SetupCmd", "CmdClear", "CancelCmd"}};
}

Layout PaymentReaderfrmLayout() {
  return {
      "PaymentReaderfrm",
      {1342, 700},
      Down({Across({Fields(1, {"Bank"}), ButtonsHere({"ReadCmd"}), Fields(1, {"TrxDate"}),
                    ButtonsHere({"ListCmd", "DueCmd"})},
                   {2, 0, 1, 0}),
            Fill("DG"),
            Across({Title("TotalLBL"), ButtonsHere({"CmdCheckAll", "CmdUncheckAll"})}, {1, 0})}),
      {"CmdPrint", "FailedCmd", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
