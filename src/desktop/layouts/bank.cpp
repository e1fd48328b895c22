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

}  // namespace kaunter
