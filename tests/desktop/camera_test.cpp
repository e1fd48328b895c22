// What a camera sees on the screen, without one.
#include "desktop/camera.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include "desktop/control_view.h"
#include "desktop/screen_dialog.h"
#include "desktop/text.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {
namespace {

struct FakeCamera : LiveCamera {
  using LiveCamera::Lose;
  using LiveCamera::Take;
};

TEST(CameraView, ShowsEachPictureAndTakesTheLast) {
  SilentDesk desk;
  Screen screen("WebCam", {"Web Camera"}, desk);
  Picture preview(screen, "Preview", {"Camera"});
  Picture taken(screen, "Taken", {"Picture"});
  Button capture(screen, "CmdCapture", {"Capture"}), use(screen, "OKCmd", {"Use"}),
      close(screen, "CancelCmd", {"Close"});
  ScreenDialog dialog(screen, nullptr);
  auto camera = std::make_shared<FakeCamera>();
  const QTemporaryDir folder;
  const std::string file = S(folder.filePath("tempimage.bmp"));
  preview.Watch(camera);
  dialog.show();
  QApplication::processEvents();
  EXPECT_FALSE(camera->Capture(file));  // nothing is seen yet
  const auto colour = [&] {
    QWidget* view = dialog.face().View(preview).widget();
    return view->grab().toImage().pixelColor(view->rect().center());
  };
  for (const QColor& seen : {QColor(Qt::red), QColor(Qt::blue)}) {
    QImage image(32, 24, QImage::Format_RGB32);
    image.fill(seen);
    camera->Take(image);
    EXPECT_EQ(colour(), seen);
    ASSERT_TRUE(camera->Capture(file));
    EXPECT_EQ(QImage(Q(file)).pixelColor(3, 3), seen);
  }
  camera->Lose();
  EXPECT_NE(colour(), QColor(Qt::blue));
  EXPECT_FALSE(camera->Capture(file));
}

}  // namespace
}  // namespace kaunter
