#include "play/play_desk.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <utility>

#include "play/script.h"
#include "qtservices/picture_file.h"
#include "qtservices/xlsx_file.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kPatience = 100;

class QuietProgress : public ProgressBar {
 public:
  void SetRange(int) override {}
  void SetText(std::string_view) override {}
  void Step(int) override {}
  void SetPosition(int) override {}
};

// Where the cursor stands when the screen itself has not placed it: in the first control that a
// person can change.
void FocusFirst(Screen& screen) {
  if (screen.focus() != nullptr) return;
  for (Control* control : screen.controls()) {
    switch (control->type()) {
      case ControlType::container:
      case ControlType::label:
      case ControlType::picture:
      case ControlType::bar:
        continue;
      default:
        if (!control->Editable()) continue;
        screen.NoteFocus(control);
        return;
    }
  }
}

}  // namespace

std::string ReportBaseName(std::string_view report_file) {
  const std::size_t slash = report_file.find_last_of("/\\");
  return std::string(slash == std::string_view::npos ? report_file : report_file.substr(slash + 1));
}

void PlayDesk::SetRenderer(Renderer renderer, std::string folder) {
  renderer_ = std::move(renderer);
  report_folder_ = std::move(folder);
}

void PlayDesk::CheckPatience() {
  if (host_ == nullptr || !host_->stopped()) return;
  if (++calls_after_stop_ > kPatience) {
    throw std::runtime_error("the script has stopped, and nobody answers any more");
  }
}

void PlayDesk::Message(MessageKind kind, std::string_view title, std::string_view text) {
  transcript_.Add({kind, std::string(title), std::string(text), false, {}, false});
}

std::string PlayDesk::TakeReply(std::string_view title, std::string_view text) {
  CheckPatience();
  TranscriptEntry entry{
      MessageKind::question, std::string(title), std::string(text), true, {}, false};
  if (replies_.empty()) {
    if (host_ != nullptr && !host_->stopped()) {
      host_->StopScript("no reply is queued for the question \"" + OneLine(entry.text) + "\" (" +
                        entry.title + ")");
    }
  } else {
    entry.answer = replies_.front().text;
    replies_.pop_front();
  }
  transcript_.Add(entry);
  return entry.answer;
}

bool PlayDesk::Ask(std::string_view title, std::string_view text) {
  const std::string answer = TakeReply(title, text);
  if (answer != "yes" && answer != "no" && host_ != nullptr && !host_->stopped()) {
    host_->StopScript("the question \"" + OneLine(text) + "\" wants yes or no, the reply is \"" +
                      OneLine(answer) + "\"");
  }
  return answer == "yes";
}

std::string PlayDesk::Input(std::string_view title, std::string_view text, std::string_view) {
  return TakeReply(title, text);
}

std::string PlayDesk::PickFile(std::string_view title, std::string_view, std::string_view pattern) {
  return TakeReply(title, pattern);
}

std::string PlayDesk::PickFolder(std::string_view title, std::string_view) {
  return TakeReply(title, "");
}

void PlayDesk::Show(std::string_view screen_name) {
  CheckPatience();
  if (host_ == nullptr || host_->stopped()) return;
  const std::unique_ptr<Screen> screen = host_->MakeScreen(screen_name);
  if (screen == nullptr) {
    host_->StopScript("there is no screen " + std::string(screen_name));
    return;
  }
  if (screen->MayOpen()) ShowModal(*screen);
}

bool PlayDesk::CanShow(std::string_view screen_name) const {
  return host_ != nullptr && host_->MakeScreen(screen_name) != nullptr;
}

void PlayDesk::ShowModal(Screen& screen) {
  CheckPatience();
  if (host_ == nullptr || host_->stopped()) return;
  screen.Reopen();
  open_.push_back({&screen, nullptr});
  if (!screen.Guard([&screen] { screen.Load(); })) screen.Close();
  if (!screen.closed()) {
    FocusFirst(screen);
    host_->RunUntilClosed(screen);
  }
  open_.pop_back();
}

std::unique_ptr<ProgressBar> PlayDesk::Progress(std::string_view) {
  return std::make_unique<QuietProgress>();
}

std::string PlayDesk::ReportPath(const ReportJob& job) {
  const std::string stem =
      std::filesystem::path(ReportBaseName(job.ReportFileName)).stem().string();
  const std::filesystem::path folder(report_folder_);
  std::string path = (folder / (stem + ".pdf")).string();
  const auto taken = [this](const std::string& candidate) {
    return std::any_of(report_paths_.begin(), report_paths_.end(),
                       [&](const std::string& used) { return SameName(used, candidate); });
  };
  for (int number = 2; taken(path); ++number) {
    path = (folder / (stem + "-" + std::to_string(number) + ".pdf")).string();
  }
  return path;
}

void PlayDesk::Print(const ReportJob& job) {
  last_report_ = job;
  std::string line = "report " + ReportBaseName(job.ReportFileName);
  if (renderer_ && !report_folder_.empty()) {
    std::filesystem::create_directories(report_folder_);
    const std::string path = ReportPath(job);
    renderer_(job, path);
    report_paths_.push_back(path);
    line += " -> " + path;
  }
  transcript_.Note(line);
}

void PlayDesk::WriteWorkbook(const ReportRows& rows, const std::string& path) {
  WriteXlsx(rows, path);
}

void PlayDesk::Copy(std::string_view text) { transcript_.Note("copied\n" + std::string(text)); }

PictureDesk::Made PlayDesk::MakeJpeg(const std::string& source, const std::string& target) {
  return WriteAsJpeg(source, target);
}

void PlayDesk::Open(std::string_view target) { transcript_.Note("open " + std::string(target)); }

bool PlayDesk::Start(std::string_view program, const std::vector<std::string>& arguments) {
  std::string line = "start " + std::string(program);
  for (const std::string& argument : arguments) line += " " + argument;
  transcript_.Note(line);
  return launcher_ && launcher_(std::string(program), arguments);
}

}  // namespace kaunter
