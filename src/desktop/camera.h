// The camera of this PC. A build without Qt Multimedia has none and says so as a PC without one
// does.
#pragma once

#include <QObject>
#include <QPixmap>
#include <memory>
#include <string_view>

#include "screen/camera.h"

namespace kaunter {

// A camera whose pictures move: each is told and can be taken.
class LiveCamera : public QObject, public Camera {
  Q_OBJECT

 public:
  bool Capture(const std::string& path) override;

 signals:
  void Seen(const QPixmap& picture);

 protected:
  void Take(QImage picture);
  void Lose();

 private:
  QImage picture_;  // the last one
};

// The one whose name has this part, the PC's own where the part is empty; null where there is none.
std::shared_ptr<Camera> StartCamera(std::string_view name);

}  // namespace kaunter
