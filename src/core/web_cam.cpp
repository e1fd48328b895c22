#include "core/web_cam.h"

#include <filesystem>
#include <stdexcept>

#include "core/values.h"
#include "platform/whole_file.h"
#include "screen/camera.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStem = "tempimage";
constexpr const char* kEnding = ".bmp";

// A picture file in the place of a camera, for practice and where there is none.
class StillCamera : public Camera {
 public:
  explicit StillCamera(std::string path) : path_(std::move(path)) {}
  bool Capture(const std::string& path) override {
    try {
      CopyWholeFile(path_, path);
      return true;
    } catch (const std::runtime_error&) {
      return false;
    }
  }
  std::string Still() const override { return path_; }

 private:
  std::string path_;
};

std::shared_ptr<Camera> StartCamera(const Session& session, Desk& desk) {
  std::error_code error;
  const fs::path still(session.Camera);
  if (SameText(still.extension().string(), kEnding) && fs::is_regular_file(still, error)) {
    return std::make_shared<StillCamera>(session.Camera);
  }
  return desk.OpenCamera(session.Camera);
}

}  // namespace

WebCam::WebCam(Session& session, Desk& desk)
    : SessionScreen("WebCam", {"Web Camera", "网络摄像头"}, session, desk),
      camera_(StartCamera(session, desk)),
      captured_(kStem, kEnding, false),
      result_(kStem, kEnding, false) {
  CmdCapture.onClick = [this] { Capture(); };
  OKCmd.onClick = [this] {
    result_.Take(captured_);
    Close();
  };
}

void WebCam::Load() {
  Preview.Watch(camera_);
  OKCmd.SetEnabled(false);
  CmdCapture.SetEnabled(camera_ != nullptr);
}

void WebCam::Unload() {
  Preview.Watch(nullptr);
  camera_.reset();
}

void WebCam::Capture() {
  Taken.SetPath({});
  OKCmd.SetEnabled(false);
  if (!camera_->Capture(captured_.Reserve(session()))) {
    captured_.Drop();
    Tell(MessageKind::critical,
         {"error intialize webcam\nThe camera gives no picture. Is another program using it ?",
          "无法启动网络摄像头\n摄像头没有画面。是否有其他程序正在使用？"});
    return;
  }
  Taken.SetPath(captured_.path());
  OKCmd.SetEnabled(true);
  FocusOn(OKCmd);
}

bool TakePicture(Session& session, const Screen& screen, WaitingPicture& picture) {
  WebCam camera(session, screen.desk());
  if (!camera.started()) {
    screen.desk().Message(MessageKind::critical, session.In(camera.title()),
                          session.In({"error intialize webcam", "无法启动网络摄像头"}));
    return false;
  }
  screen.desk().ShowModal(camera);
  picture.Take(camera.result());
  return true;
}

}  // namespace kaunter
