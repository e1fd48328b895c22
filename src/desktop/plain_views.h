// Views of what is looked at (labels, pictures, bars) and of what holds others (frames, tabs).
#pragma once

#include <QFrame>
#include <QLabel>
#include <QTabWidget>
#include <optional>

#include "desktop/control_view.h"

namespace kaunter {

class LabelView : public ControlView {
 public:
  LabelView(ScreenFace& face, Label& label);
  QWidget* widget() override { return text_; }
  QWidget* focus_widget() override { return nullptr; }

 protected:
  void Show() override;

 private:
  Label& label_control_;
  QLabel* text_;
};

class PictureWidget : public QWidget {
 public:
  using QWidget::QWidget;
  // Read behind the window and shown when it is there.
  void SetPath(const QString& path);
  void SetPicture(const QPixmap& picture);
  QSize sizeHint() const override { return {200, 200}; }
  QSize minimumSizeHint() const override { return {120, 100}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::optional<QString> shown_;  // the FileMark; nothing where no file is shown
  QPixmap picture_;
};

class PictureView : public ControlView {
 public:
  PictureView(ScreenFace& face, Picture& picture);
  QWidget* widget() override { return view_; }
  QWidget* focus_widget() override { return nullptr; }

 protected:
  void Show() override;

 private:
  Picture& picture_;
  PictureWidget* view_;
};

// Parts side by side, their captions below, the text of the bar at the right.
class BarWidget : public QWidget {
 public:
  explicit BarWidget(QWidget* parent) : QWidget(parent) {}
  void Set(const std::vector<Bar::Part>& parts, const QString& text, bool chinese);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int PartWidth(const QString& caption) const;  // with its dot and the gap behind it
  int LegendWidth() const;

  std::vector<Bar::Part> parts_;
  QString text_;
  bool chinese_ = false;
};

class BarView : public ControlView {
 public:
  BarView(ScreenFace& face, Bar& bar);
  QWidget* widget() override { return view_; }
  QWidget* focus_widget() override { return nullptr; }
  bool has_label() const override { return !control().caption().english.empty(); }

 protected:
  void Show() override;

 private:
  Bar& bar_;
  BarWidget* view_;
};

// A card with a title; the layout puts its contents into body().
class FrameView : public ControlView {
 public:
  FrameView(ScreenFace& face, Frame& frame);
  QWidget* widget() override { return card_; }
  QWidget* focus_widget() override { return nullptr; }
  QWidget* body() { return body_; }
  // Without a frame of its own, where it stands in a card already.
  void SetBare();
  void SetLow();

 protected:
  void Show() override;

 private:
  Frame& frame_;
  QFrame* card_;
  QLabel* title_;
  QWidget* body_;
};

class TabView : public ControlView {
 public:
  TabView(ScreenFace& face, Tab& tab);
  QWidget* widget() override { return tabs_; }
  QWidget* focus_widget() override { return nullptr; }
  // `declared` is its number among the pages of the screen: the order shown may be another one.
  void AddPage(Frame& page, int declared, QWidget* contents);

 protected:
  void Show() override;

 private:
  Tab& tab_;
  QTabWidget* tabs_;
  std::vector<Frame*> pages_;
  std::vector<int> declared_;
};

// A title for a card: bold, a little larger than the text.
QLabel* CardTitle(QWidget* parent);

}  // namespace kaunter
