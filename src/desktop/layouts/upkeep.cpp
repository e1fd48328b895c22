#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout BackupFrmLayout() {
  return {"BackupFrm",
          {1100, 560},
          Down({Fields(1, {Beside({"Folder", "CmdFolder"})}), Title("ResultLBL"), Fill("DG"),
                Title("PicturesLBL"), Title("RestoreLBL")},
               {0, 0, 1, 0, 0}),
          {"BackupCmd", "CancelCmd"}};
}

}  // namespace kaunter
