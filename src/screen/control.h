// The controls of a screen: named things with text or rows that a person, or a script, works on.
// They know no widget; a face draws them and calls their Enter/Put/Leave/Click operations, never
// their fields.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

class Camera;
class Screen;
class Control;

// What a box holds: decides alignment, the keyboard, the calendar button; not what may be typed.
enum class Kind { text, memo, password, money, rate, integer, date, time };

enum class ControlType {
  container,
  label,
  text_box,
  combo_box,
  check_box,
  option,
  button,
  grid,
  picture,
  bar
};

class Control {
 public:
  Control(Screen& screen, Control* parent, ControlType type, std::string name, Caption caption);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }
  ControlType type() const { return type_; }
  Screen& screen() const { return screen_; }
  Control* parent() const { return parent_; }  // container, or null at the top of the screen
  const Caption& caption() const { return caption_; }
  void SetCaption(Caption caption);

  bool enabled() const { return enabled_; }
  bool visible() const { return visible_; }
  bool locked() const { return locked_; }  // shown, focusable, not editable
  void SetEnabled(bool on);
  void SetVisible(bool on);
  void SetLocked(bool on);
  // A person can reach it: itself and all its containers visible.
  bool Reachable() const;
  // Enabled, itself and all its containers.
  bool Active() const;
  // A person can change it: reachable, enabled (containers too), not locked.
  bool Editable() const;

  // A short help shown as a tip and told by `describe`; may be empty.
  Caption tip;
  // Marks the control as the one a refusal is about, until it is left with another text.
  void SetMark(bool on);
  bool marked() const { return marked_; }
  // While the control is left: the text that stood in it, whatever its screen did since.
  const std::string& left_text() const { return left_text_; }

  // What `show` and `expect` see.
  virtual std::string Text() const { return {}; }

  std::function<void()> onEnter;
  std::function<void()> onLeave;
  std::function<void()> onClick;
  std::function<void(std::string_view key)> onKey;  // "F2", "Enter", "PgUp", "Delete" ...

  // The face's side. Each does what a person's act does, events included. Entering twice fires
  // once; what was never entered is not left.
  void Enter();
  void Leave();
  void Key(std::string_view key);
  bool entered() const { return entered_; }

 protected:
  void Changed();  // tells the face to draw it anew

 private:
  Screen& screen_;
  Control* parent_;
  ControlType type_;
  std::string name_;
  Caption caption_;
  bool enabled_ = true;
  bool visible_ = true;
  bool locked_ = false;
  bool marked_ = false;
  bool entered_ = false;
  std::string left_text_;
  std::string mark_text_;  // what stood in the control when it was marked
};

// Groups controls for whoever draws them.
class Frame : public Control {
 public:
  Frame(Screen& screen, std::string name, Caption caption = {}, Control* parent = nullptr);
  bool is_tab_set() const { return tab_set_; }
  bool is_page() const;

 protected:
  bool tab_set_ = false;
};

// A set of pages; its children are Frames, one a page.
class Tab : public Frame {
 public:
  Tab(Screen& screen, std::string name, Caption caption = {}, Control* parent = nullptr);
  int page() const { return page_; }
  // By order of declaration, from 0; fires onPage when it turned. A page that is not there is a
  // fault (std::out_of_range).
  void SetPage(int page);
  std::function<void()> onPage;

 private:
  int page_ = 0;
};

// A page of a tab set that gathers what is declared after it: a control without a container of its
// own stands on the page declared last, until EndPages.
class TabPage : public Frame {
 public:
  TabPage(Screen& screen, std::string name, Caption caption, Tab& tab);
};

// Controls declared after it stand on no page again.
struct EndPages {
  explicit EndPages(Screen& screen);
};

class Label : public Control {
 public:
  Label(Screen& screen, std::string name, Caption caption = {}, Control* parent = nullptr);
  // A label without a text of its own shows its caption.
  std::string Text() const override;
  void SetText(std::string text);

 private:
  std::string text_;
};

class TextBox : public Control {
 public:
  TextBox(Screen& screen, std::string name, Caption caption, Kind kind = Kind::text,
          Control* parent = nullptr);
  Kind kind() const { return kind_; }
  std::string Text() const override { return text_; }
  const std::string& text() const { return text_; }
  bool empty() const { return text_.empty(); }
  // From the screen's own code: no events.
  void SetText(std::string text);
  void Clear() { SetText({}); }
  // Longest text in characters; 0 for no bound. A face takes no more (the rest of a paste is
  // refused whole).
  int max_length = 0;
  // "######-##-####": '#' is a digit, all else stands as written. Empty for none.
  std::string mask;
  // The picker that F2 and the search button beside the box open; empty for none.
  std::string picker;
  std::function<void()> onSearch;
  // The text is a name, a number of an identity card or a telephone number, and no code: Enter
  // looks it up with onSearch.
  std::function<bool()> onAskNoCode;
  std::function<void()> onChange;

  // The face's side: puts the text as typed (fires onChange when it differs). Bare digits that fill
  // the mask get its signs. False when the text is longer than the box takes; then nothing changes.
  bool Type(std::string text);
  // Types a text where the cursor stands, which then stands behind it; at the end where no face has
  // told of one. False as for Type.
  bool Insert(std::string_view text);
  // The face's side: bytes of the text before the cursor.
  void NoteCursor(std::size_t bytes) { cursor_ = bytes; }
  std::size_t cursor() const { return cursor_ < text_.size() ? cursor_ : text_.size(); }

 private:
  void Put(std::string text);

  Kind kind_;
  std::string text_;
  std::size_t cursor_ = std::string::npos;
};

// A list to choose from; `editable` takes free text too.
class ComboBox : public Control {
 public:
  ComboBox(Screen& screen, std::string name, Caption caption, std::vector<std::string> items = {},
           Control* parent = nullptr, bool editable = false);
  ComboBox(Screen& screen, std::string name, Caption caption, std::vector<std::string> items,
           bool editable)
      : ComboBox(screen, std::move(name), std::move(caption), std::move(items), nullptr, editable) {
  }
  std::string Text() const override { return text_; }
  const std::string& text() const { return text_; }
  bool empty() const { return text_.empty(); }
  int index() const;  // of the text among the items, without regard to case; -1 when it is none
  const std::vector<std::string>& items() const { return items_; }
  bool editable() const { return editable_; }
  void SetItems(std::vector<std::string> items);
  void SetText(std::string text);  // no events
  void SetIndex(int index);        // -1 empties; no events
  void Clear() { SetText({}); }
  std::function<void()> onPick;
  int max_length = 0;

  // The face's side: picks or types (fires onPick when the entry changed). False when not editable
  // and the text is no entry.
  bool Pick(std::string_view text);
  bool PickIndex(int index);

 private:
  std::vector<std::string> items_;
  std::string text_;
  bool editable_;
};

class CheckBox : public Control {
 public:
  CheckBox(Screen& screen, std::string name, Caption caption, Control* parent = nullptr);
  std::string Text() const override { return checked_ ? "1" : "0"; }
  bool checked() const { return checked_; }
  void SetChecked(bool on);  // no events
  void Tick(bool on);        // the face's side: fires onClick when it changed

 private:
  bool checked_ = false;
};

// One choice of several; those with the same parent and group exclude each other.
class Option : public Control {
 public:
  Option(Screen& screen, std::string name, Caption caption, Control* parent = nullptr,
         std::string group = {});
  std::string Text() const override { return chosen_ ? "1" : "0"; }
  bool chosen() const { return chosen_; }
  const std::string& group() const { return group_; }
  void SetChosen(bool on);  // clears the others of the group; no events
  void Choose();            // the face's side: fires onClick

 private:
  bool chosen_ = false;
  std::string group_;
};

enum class ButtonRole { plain, primary, cancel, danger };

// A cancel button without onClick closes its screen as its cross does. "SaveCmd" answers to Ctrl+S.
class Button : public Control {
 public:
  Button(Screen& screen, std::string name, Caption caption, ButtonRole role = ButtonRole::plain,
         Control* parent = nullptr);
  ButtonRole role() const { return role_; }
  std::string shortcut;  // "Ctrl+S"; empty for none
  void Click();          // the face's side: nothing when it cannot be reached or is disabled

 private:
  ButtonRole role_;
};

class Picture : public Control {
 public:
  Picture(Screen& screen, std::string name, Caption caption = {}, Control* parent = nullptr);
  std::string Text() const override { return path_; }
  void SetPath(std::string path);
  // Shows what a camera sees, until there is none.
  void Watch(std::shared_ptr<Camera> camera);
  Camera* camera() const { return camera_.get(); }

 private:
  std::string path_;
  std::shared_ptr<Camera> camera_;
};

// A drawn bar of parts side by side (paid, due, open; credit used and left).
class Bar : public Control {
 public:
  struct Part {
    Caption caption;
    double share = 0;  // of the whole, 0 to 1
    enum class Tone { good, warn, bad, quiet } tone = Tone::quiet;
  };
  Bar(Screen& screen, std::string name, Caption caption = {}, Control* parent = nullptr);
  std::string Text() const override { return text_; }
  const std::vector<Part>& parts() const { return parts_; }
  void Set(std::vector<Part> parts, std::string text);

 private:
  std::vector<Part> parts_;
  std::string text_;
};

}  // namespace kaunter
