#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout PhotoBrowseFrmLayout() {
  return {"PhotoBrowseFrm",
          {1000, 600},
          Down({Fields(1, {Wide("FolderName")}),
                Across({Fill("DirList"), Fill("FileList"), Fill("Preview")}, {2, 3, 4}),
                Fields(1, {Wide("FileName")})}),
          {"OtherCmd", "OkCmd", "CancelCmd"}};
}

}  // namespace kaunter
