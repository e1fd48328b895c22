// ControlView: the widget, or the few widgets, that show one control.
#pragma once

#include <QLabel>
#include <QPointer>
#include <QWidget>
#include <memory>

#include "desktop/screen_face.h"
#include "screen/control.h"

namespace kaunter {

class ControlView {
 public:
  ControlView(ScreenFace& face, Control& control) : face_(face), control_(control) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  ScreenFace& face() const { return face_; }
  Control& control() const { return control_; }

  // What stands in the layout.
  virtual QWidget* widget() = 0;
  // What takes the keyboard; null when nothing does.
  virtual QWidget* focus_widget() { return widget(); }
  // The caption before the box, made when first asked for; null for controls that carry their own.
  QLabel* label();
  virtual bool has_label() const { return false; }
  QLabel* made_label() const { return label_; }  // null when nobody asked for it
  // A stop on the road of Enter.
  virtual bool is_box() const { return false; }

  // Brings visibility, state, caption, tip, mark and contents up to date.
  void Refresh();
  // Gives to the control what the widget holds and the control does not know yet.
  virtual void Commit() {}
  // Puts the keyboard focus there and selects what a person would type over.
  virtual void TakeFocus();
  // A key that this kind of control uses itself. True when it is used up.
  virtual bool UseKey(const QKeyEvent&) { return false; }
  // As a figure to be looked at: larger, and while it is locked without a frame.
  virtual void DrawAsFigure();

 protected:
  // Contents and state from the control into the widget; never fires an act.
  virtual void Show() = 0;
  bool Act(const std::function<void()>& act) { return face_.Act(act); }
  // Sets a property that the style reads, and has the widget drawn anew.
  static void Flag(QWidget* widget, const char* property, bool on);

 private:
  ScreenFace& face_;
  Control& control_;
  QPointer<QLabel> label_;
};

// The view for a control of any type.
std::unique_ptr<ControlView> MakeView(ScreenFace& face, Control& control);

}  // namespace kaunter
