#include "desktop/layouts/layouts.h"

namespace kaunter {

// The question in one line with its button, whose number it is in large text, then the loans.
Layout FrmNicLayout() {
  return {"frmNIC",
          {1060, 600},
          Down({Across({Fields(1, {Line({"CustIC", "CmdGo"})}), Title("CustName")}), Fill("DG")}),
          {"CancelCmd"}};
}

}  // namespace kaunter
