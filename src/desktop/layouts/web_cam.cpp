#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout WebCamLayout() {
  return {"WebCam",
          {760, 420},
          Across({Down({Heading({"Camera", "摄像头"}), Fill("Preview")}, {0, 1}),
                  Down({Heading({"Picture", "照片"}), Fill("Taken")}, {0, 1})}),
          {"CmdCapture", "OKCmd", "CancelCmd"}};
}

}  // namespace kaunter
