// DesktopDesk: the desk as a person at a window sees it.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

#include "reports/workbook_desk.h"
#include "screen/clipboard_desk.h"
#include "screen/desk.h"
#include "screen/meanwhile.h"
#include "screen/picture_desk.h"

namespace kaunter {

class DesktopDesk : public Desk,
                    public WorkbookDesk,
                    public ClipboardDesk,
                    public PictureDesk,
                    public MeanwhileDesk {
 public:
  // Makes a screen of the catalogue; null when it is unknown.
  std::function<std::unique_ptr<Screen>(std::string_view)> make;
  // The language in force.
  std::function<bool()> chinese;

  // The window that stands behind everything; null before it is made.
  void SetMainWindow(QWidget* window) { main_window_ = window; }

  void Message(MessageKind kind, std::string_view title, std::string_view text) override;
  bool Ask(std::string_view title, std::string_view text) override;
  bool AskBeforeLoss(std::string_view title, std::string_view text) override;
  std::string Input(std::string_view title, std::string_view text,
                    std::string_view preset) override;
  std::string PickFile(std::string_view title, std::string_view folder,
                       std::string_view pattern) override;
  std::string PickFolder(std::string_view title, std::string_view folder) override;
  void Show(std::string_view screen_name) override;
  bool CanShow(std::string_view screen_name) const override;
  void ShowModal(Screen& screen) override;
  std::unique_ptr<ProgressBar> Progress(std::string_view title) override;
  void Hourglass(bool on) override;
  void Beep() override;
  void Print(const ReportJob& job) override;
  void WriteWorkbook(const ReportRows& rows, const std::string& path) override;
  void Copy(std::string_view text) override;
  std::shared_ptr<Camera> OpenCamera(std::string_view name) override;
  Made MakeJpeg(const std::string& source, const std::string& target) override;
  void Open(std::string_view target) override;
  bool Start(std::string_view program, const std::vector<std::string>& arguments) override;

 private:
  QWidget* Front() const;
  bool IsChinese() const { return chinese && chinese(); }

  QPointer<QWidget> main_window_;
  bool hourglass_ = false;
};

}  // namespace kaunter
