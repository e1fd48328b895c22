// Desk: the conversation between a screen and whoever sits before it. The desktop draws it,
// kaunter-play speaks it; a screen knows no other way out.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class Camera;
class Screen;
struct ReportJob;

enum class MessageKind { critical, warning, question, information, plain };

// Long work with a bar; the destructor closes it.
class ProgressBar {
 public:
  virtual ~ProgressBar() = default;
  virtual void SetRange(int steps) = 0;
  virtual void SetText(std::string_view text) = 0;
  virtual void Step(int by = 1) = 0;
  virtual void SetPosition(int position) = 0;
};

class Desk {
 public:
  virtual ~Desk() = default;

  virtual void Message(MessageKind kind, std::string_view title, std::string_view text) = 0;
  // Yes/no question; true for yes.
  virtual bool Ask(std::string_view title, std::string_view text) = 0;
  // The same where yes destroys or discards something: Enter alone answers no.
  virtual bool AskBeforeLoss(std::string_view title, std::string_view text) {
    return Ask(title, text);
  }
  // A line of text; "" when cancelled.
  virtual std::string Input(std::string_view title, std::string_view text,
                            std::string_view preset = {}) = 0;
  // A path, "" when cancelled. `pattern` is "Pictures (*.jpg *.png)".
  virtual std::string PickFile(std::string_view title, std::string_view folder,
                               std::string_view pattern) = 0;
  virtual std::string PickFolder(std::string_view title, std::string_view folder) = 0;

  // Opens the screen of the catalogue by its name, modally; returns when it has been closed.
  virtual void Show(std::string_view screen_name) = 0;
  // The catalogue has a screen of this name: a button for one that is not built yet stays hidden.
  virtual bool CanShow(std::string_view) const { return false; }
  // Shows a screen that the caller made and keeps (the main window's dialogs, pickers with
  // arguments).
  virtual void ShowModal(Screen& screen) = 0;

  virtual std::unique_ptr<ProgressBar> Progress(std::string_view title) = 0;
  virtual void Hourglass(bool on) = 0;
  virtual void Beep() = 0;

  // Starts a report: preview on the desktop, PDF under --out in kaunter-play.
  virtual void Print(const ReportJob& job) = 0;
  // Starts the camera whose name has this part, any where the part is empty; null where there is
  // none, or the face cannot have one.
  virtual std::shared_ptr<Camera> OpenCamera(std::string_view) { return nullptr; }
  // Hands a document or address to the operating system.
  virtual void Open(std::string_view target) = 0;
  // Starts a program and returns at once; false when it could not be started.
  virtual bool Start(std::string_view program, const std::vector<std::string>& arguments) = 0;
};

}  // namespace kaunter
