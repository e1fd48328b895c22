#include "desktop/layouts/layouts.h"

namespace kaunter {

// What the office is at the left, what was slow today beside it.
Layout AboutFrmLayout() {
  return {"AboutFrm",
          {1180, 660},
          Down({Across({Fill("DG"), Fill("SlowDG")}, {4, 5}), Fields(1, {"PrivacyLBL"})}, {1, 0}),
          {"CopyCmd", "CancelCmd"}};
}

}  // namespace kaunter
