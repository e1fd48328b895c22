// WebCam: what the camera of this PC sees, and a picture of it for a box of the caller.
#pragma once

#include <memory>
#include <string>

#include "core/session_screen.h"
#include "core/waiting_picture.h"

namespace kaunter {

class Camera;

class WebCam : public SessionScreen {
 public:
  WebCam(Session& session, Desk& desk);

  Picture Preview{*this, "Preview", {"Camera", "摄像头"}};
  Picture Taken{*this, "Taken", {"Picture", "照片"}};
  Button CmdCapture{*this, "CmdCapture", {"&Capture", "拍照(&C)"}, ButtonRole::primary};
  Button OKCmd{*this, "OKCmd", {"&Use This Picture", "采用照片(&U)"}};
  Button CancelCmd{*this, "CancelCmd", {"C&lose", "关闭(&L)"}, ButtonRole::cancel};

  void Load() override;
  void Unload() override;

  bool started() const { return camera_ != nullptr; }
  // The picture that the person agreed to; an empty path where there was none.
  WaitingPicture& result() { return result_; }

 private:
  void Capture();

  std::shared_ptr<Camera> camera_;
  WaitingPicture captured_;
  WaitingPicture result_;
};

// Shows the camera. False, and told, where none starts; else `picture` is what was taken, if
// anything was.
bool TakePicture(Session& session, const Screen& screen, WaitingPicture& picture);

}  // namespace kaunter
