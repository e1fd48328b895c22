#include "desktop/camera.h"

#include <utility>

#include "desktop/text.h"

#ifdef KAUNTER_CAMERA
#include <QCamera>
#include <QCameraDevice>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QVideoFrame>
#include <QVideoSink>
#endif

namespace kaunter {

bool LiveCamera::Capture(const std::string& path) {
  return !picture_.isNull() && picture_.save(Q(path), "BMP");
}

void LiveCamera::Take(QImage picture) {
  if (picture.isNull()) return;
  picture_ = std::move(picture);
  emit Seen(QPixmap::fromImage(picture_));
}

void LiveCamera::Lose() {
  picture_ = QImage();
  emit Seen(QPixmap());
}

#ifdef KAUNTER_CAMERA
namespace {

class QtCamera : public LiveCamera {
 public:
  explicit QtCamera(const QCameraDevice& device) : camera_(device) {
    session_.setCamera(&camera_);
    session_.setVideoSink(&sink_);
    connect(&sink_, &QVideoSink::videoFrameChanged, this,
            [this](const QVideoFrame& frame) { Take(frame.toImage()); });
    // One that breaks off shows nothing that could be taken for now.
    connect(&camera_, &QCamera::errorOccurred, this, [this] { Lose(); });
    camera_.start();
  }

 private:
  QCamera camera_;
  QVideoSink sink_;
  QMediaCaptureSession session_;
};

}  // namespace

std::shared_ptr<Camera> StartCamera(std::string_view name) {
  for (const QCameraDevice& device : QMediaDevices::videoInputs()) {
    const bool own = name.empty() && device == QMediaDevices::defaultVideoInput();
    if (own || (!name.empty() && device.description().contains(Q(name), Qt::CaseInsensitive))) {
      return std::make_shared<QtCamera>(device);
    }
  }
  return nullptr;
}
#else
std::shared_ptr<Camera> StartCamera(std::string_view) { return nullptr; }
#endif

}  // namespace kaunter
