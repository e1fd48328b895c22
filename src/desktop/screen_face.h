// ScreenFace keeps the widgets of one screen in step with its controls, and turns what the person
// does into acts of the screen: entering and leaving boxes, typing, picking, pressing.
//
// Changes that the screen makes are gathered and drawn once the act is over. The focus travels in
// two steps: Qt moves it, then the old control is left and the new one entered, in that order, so
// that a screen may put the focus back or show a message while it is left.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "screen/screen.h"

class QKeyEvent;
class QWidget;

namespace kaunter {

class ControlView;

class ScreenFace : public QObject, public ScreenObserver {
 public:
  // `host` is the window that holds the widgets; it outlives the face.
  ScreenFace(Screen& screen, QWidget* host);
  ~ScreenFace() override;

  Screen& screen() const { return screen_; }
  QWidget* host() const { return host_; }
  bool chinese() const { return screen_.chinese(); }

  // The view of a control, made when first asked for.
  ControlView& View(Control& control);
  ControlView* Find(const Control& control) const;

  // The order of Enter and Tab; controls without a view are skipped.
  void SetOrder(const std::vector<Control*>& order);

  // Runs an act of the person inside the screen's guard. False when it failed or the screen is
  // gone.
  bool Act(const std::function<void()>& act);
  bool acting() const { return acting_ > 0; }
  // The desk talked to the person (message, question, another screen): counts as an answer to a
  // key.
  static void NoteTalk() { ++talks_; }

  // Gives what is typed to the control and settles who is left and who is entered.
  void Settle();
  // Presses a button as a click would: the box that has the focus is left first.
  void Press(Button& button);
  // The button of Ctrl+S: SaveCmd, else the primary one; null for none that can be pressed.
  Button* SaveButton() const;
  Button* PrimaryButton() const;
  // Focus to the control that the screen asked for, else to the first box.
  void StartFocus();
  // Draws all that changed at once.
  void RefreshNow();
  void RefreshAll();

  // Tells that the focus is on the widget of this control.
  void FocusArrived(ControlView& view);
  // Keys that every box shares. True when the key is used up.
  bool OnKey(ControlView& view, const QKeyEvent& event);
  // Enter: on to the next box, in the last one the primary action.
  void MoveOn(ControlView& from);

  // --- ScreenObserver
  void ControlChanged(Control& control) override;
  void FocusMoved(Control& control) override;
  void TitleChanged() override;
  void Closed() override;

  std::function<void()> onTitle;
  std::function<void()> onClosed;
  std::function<void(Control&)> onControl;  // before the change is drawn

 private:
  void SettleSoon(int milliseconds);
  bool LookUp(ControlView& view);
  bool TypeOnwards(ControlView& view, const QKeyEvent& event);
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool Alive() const { return !screen_.closed(); }

  Screen& screen_;
  QWidget* host_;
  std::vector<std::unique_ptr<ControlView>> views_;
  QHash<const Control*, ControlView*> by_control_;
  QHash<const QObject*, ControlView*> by_widget_;
  std::vector<Control*> order_;
  QSet<Control*> dirty_;
  QTimer refresh_;
  ControlView* active_ = nullptr;   // entered
  ControlView* pending_ = nullptr;  // has the focus
  const Control* put_back_ = nullptr;
  bool settling_ = false;
  int acting_ = 0;
  unsigned heard_ = 0;  // how often the screen told something
  static inline unsigned talks_ = 0;
};

}  // namespace kaunter
