// The view of a PictureStrip: small pictures that come one after another, read behind the window.
#pragma once

#include <QListWidget>

#include "desktop/control_view.h"
#include "screen/picture_strip.h"

namespace kaunter {

class StripView : public ControlView {
 public:
  StripView(ScreenFace& face, PictureStrip& strip);
  QWidget* widget() override { return list_; }

 protected:
  void Show() override;

 private:
  PictureStrip& strip_;
  QListWidget* list_;
  std::vector<PictureStrip::Item> shown_;
  QStringList marks_;  // of their files: one may come later
};

}  // namespace kaunter
