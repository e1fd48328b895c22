// PlayDesk: the desk of a script. Message boxes are printed and pass by; questions take the queued
// replies; an open screen hands the word back to the script until it is closed.
#pragma once

#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "play/transcript.h"
#include "reports/workbook_desk.h"
#include "screen/clipboard_desk.h"
#include "screen/desk.h"
#include "screen/picture_desk.h"
#include "screen/report_job.h"
#include "screen/screen.h"

namespace kaunter {

// The script behind the desk.
class PlayHost {
 public:
  virtual ~PlayHost() = default;
  // Runs commands until `screen` is closed.
  virtual void RunUntilClosed(Screen& screen) = 0;
  // A new screen of the catalogue; null when there is none of that name.
  virtual std::unique_ptr<Screen> MakeScreen(std::string_view name) = 0;
  // Stops the script: what it wants cannot be done.
  virtual void StopScript(const std::string& why) = 0;
  virtual bool stopped() const = 0;
};

class PlayDesk : public Desk, public WorkbookDesk, public ClipboardDesk, public PictureDesk {
 public:
  using Renderer = std::function<void(const ReportJob& job, const std::string& path)>;
  using Launcher =
      std::function<bool(const std::string& program, const std::vector<std::string>& arguments)>;

  struct Reply {
    std::string text;
    int line = 0;  // of the command that queued it
  };
  // An open screen and the box in it that was typed into and not left yet.
  struct OpenScreen {
    Screen* screen = nullptr;
    Control* typed = nullptr;
  };

  explicit PlayDesk(std::ostream& out) : transcript_(out) {}

  void SetHost(PlayHost* host) { host_ = host; }
  // Writes a report as PDF; without one, or without a folder, reports are only noted.
  void SetRenderer(Renderer renderer, std::string folder);
  void SetLauncher(Launcher launcher) { launcher_ = std::move(launcher); }

  Transcript& transcript() { return transcript_; }
  void Queue(Reply reply) { replies_.push_back(std::move(reply)); }
  const std::deque<Reply>& replies() const { return replies_; }
  const std::optional<ReportJob>& last_report() const { return last_report_; }
  // From the bottom; the main window is not among them.
  std::list<OpenScreen>& open_screens() { return open_; }

  void Message(MessageKind kind, std::string_view title, std::string_view text) override;
  bool Ask(std::string_view title, std::string_view text) override;
  std::string Input(std::string_view title, std::string_view text,
                    std::string_view preset) override;
  std::string PickFile(std::string_view title, std::string_view folder,
                       std::string_view pattern) override;
  std::string PickFolder(std::string_view title, std::string_view folder) override;
  void Show(std::string_view screen_name) override;
  bool CanShow(std::string_view screen_name) const override;
  void ShowModal(Screen& screen) override;
  std::unique_ptr<ProgressBar> Progress(std::string_view title) override;
  void Hourglass(bool) override {}
  void Beep() override {}
  void Print(const ReportJob& job) override;
  void WriteWorkbook(const ReportRows& rows, const std::string& path) override;
  void Copy(std::string_view text) override;
  Made MakeJpeg(const std::string& source, const std::string& target) override;
  void Open(std::string_view target) override;
  bool Start(std::string_view program, const std::vector<std::string>& arguments) override;

 private:
  std::string TakeReply(std::string_view title, std::string_view text);
  std::string ReportPath(const ReportJob& job);
  // After the script has stopped, an action that does not come to its end is ended by a failure.
  void CheckPatience();

  Transcript transcript_;
  PlayHost* host_ = nullptr;
  Renderer renderer_;
  std::string report_folder_;
  Launcher launcher_;
  std::deque<Reply> replies_;
  std::list<OpenScreen> open_;
  std::optional<ReportJob> last_report_;
  std::vector<std::string> report_paths_;
  int calls_after_stop_ = 0;
};

// "C:\Kaunter\LoanMastList.rpt" and "/opt/kaunter/LoanMastList.rpt" give "LoanMastList.rpt".
std::string ReportBaseName(std::string_view report_file);

}  // namespace kaunter
