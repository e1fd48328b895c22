// Screen: a unit of behaviour that owns named controls and reacts to them.
//
// A screen is made, then Load runs when it is about to be shown; it is closed by itself (Close) or
// by the person (RequestClose, which may refuse). No exception crosses a screen: a face runs each
// act through Guard, which gives an escaped failure to onFailure.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/control.h"
#include "screen/desk.h"
#include "screen/grid.h"

namespace kaunter {

// Implemented by the face that shows the screen.
class ScreenObserver {
 public:
  virtual ~ScreenObserver() = default;
  virtual void ControlChanged(Control& control) = 0;
  virtual void FocusMoved(Control& control) = 0;
  virtual void TitleChanged() = 0;
  virtual void Closed() = 0;
};

class Screen {
 public:
  Screen(std::string name, Caption title, Desk& desk);
  virtual ~Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  const std::string& name() const { return name_; }
  const Caption& title() const { return title_; }
  void SetTitle(Caption title);
  Desk& desk() const { return desk_; }

  // Which of the two texts a face shows; set from the session by the screen's maker.
  bool chinese() const { return chinese_; }
  void SetChinese(bool on);

  // The person may open it now. Asked by a face before it shows a screen of the catalogue; where it
  // says no, it has told why.
  virtual bool MayOpen() { return true; }
  // Called once, before the screen is first drawn.
  virtual void Load() {}
  // A person wants to close it (Esc, the window's cross). True closes. The default closes.
  virtual bool RequestClose() { return true; }
  // Called when it is closed, whoever closed it.
  virtual void Unload() {}
  // Once a second while shown, if wanted.
  virtual void Tick() {}

  void Close();
  bool closed() const { return closed_; }
  // The face's side: the person closes the window. Runs RequestClose under Guard, then Close; false
  // when the screen stays.
  bool TryClose();
  // The face's side: a screen that its caller keeps is shown once more.
  void Reopen() { closed_ = false; }

  // Moves the focus, turning the page of a tab that hides the control.
  void FocusOn(Control& control);
  // The page that gathers controls while they are declared.
  Control* open_page() const { return open_page_; }
  void OpenPage(Control* page) { open_page_ = page; }
  Control* focus() const { return focus_; }
  void NoteFocus(Control* control) { focus_ = control; }  // the face's side

  // In order of declaration, containers included: the tab order.
  const std::vector<Control*>& controls() const { return controls_; }
  // By name without regard to case; for faces and scripts only. Null when unknown.
  Control* Find(std::string_view name) const;
  std::vector<Control*> Children(const Control* parent) const;

  ScreenObserver* observer = nullptr;
  // What becomes of an exception that an act let through; set by the screen's maker (log line and
  // message).
  std::function<void(const std::exception&)> onFailure;
  // Before an act that stands in no other act of this screen.
  std::function<void()> onAct;
  // Behind it, when it has done all of its work; what it throws is told as a failure of the act.
  std::function<void()> onActed;
  // Runs an act of the person; false when it failed.
  bool Guard(const std::function<void()>& act);

 private:
  friend class Control;
  void Register(Control* control) { controls_.push_back(control); }

  std::string name_;
  Caption title_;
  Desk& desk_;
  std::vector<Control*> controls_;
  Control* focus_ = nullptr;
  Control* open_page_ = nullptr;
  bool chinese_ = false;
  bool closed_ = false;
  bool acting_ = false;
};

}  // namespace kaunter
