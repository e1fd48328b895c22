#include "desktop/layouts/layouts.h"

namespace kaunter {

// A table of two columns needs no wide window.
Layout SetupFrmLayout() {
  return {"SetupFrm", {680, 560}, Fill("DG"), {"Command1", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
