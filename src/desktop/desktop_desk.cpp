#include "desktop/desktop_desk.h"

#include <fmt/format.h>

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <QUrl>

#include "desktop/camera.h"
#include "desktop/message_box.h"
#include "desktop/print_report.h"
#include "desktop/progress_dialog.h"
#include "desktop/screen_dialog.h"
#include "desktop/text.h"
#include "qtservices/picture_file.h"
#include "qtservices/xlsx_file.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

QWidget* FrontOf(QWidget* main_window) {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  return main_window && main_window->isVisible() ? main_window : nullptr;
}

// A window manager that is still handing the keyboard to a window when that window closes leaves it
// with nobody, and keys go nowhere until somebody clicks. So whoever is in front now asks for it,
// and again until the managers have settled. A person who has gone to another program in between
// comes back to it by themselves; afterwards nothing is asked.
void TakeKeyboard(QWidget* main_window) {
  constexpr int kLooks[] = {0, 60, 200, 500};
  if (!main_window) return;
  for (const int after : kLooks) {
    QTimer::singleShot(after, main_window, [main_window] {
      QWidget* front = FrontOf(main_window);
      if (!front || QApplication::activePopupWidget() || QApplication::activeWindow()) return;
      front->activateWindow();
    });
  }
}

// Nobody reads a question under an hourglass: it is lifted while the person is spoken to. Whoever
// stands behind the question has the keyboard again.
class PointerFree {
 public:
  PointerFree(bool& hourglass, QWidget* main_window)
      : hourglass_(hourglass), was_(hourglass), main_window_(main_window) {
    ScreenFace::NoteTalk();
    if (was_) QApplication::restoreOverrideCursor();
    hourglass_ = false;
  }
  ~PointerFree() {
    TakeKeyboard(main_window_);
    if (hourglass_ == was_) return;
    hourglass_ = was_;
    if (was_) {
      QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
      QApplication::restoreOverrideCursor();
    }
  }

 private:
  bool& hourglass_;
  const bool was_;
  QPointer<QWidget> main_window_;
};

// "Pictures (*.jpg *.png)|All files (*)" and single patterns alike.
QString Filter(std::string_view pattern) { return Q(pattern).replace("|", ";;"); }

}  // namespace

QWidget* DesktopDesk::Front() const { return FrontOf(main_window_); }

void DesktopDesk::Message(MessageKind kind, std::string_view title, std::string_view text) {
  const PointerFree free(hourglass_, main_window_);
  ShowMessage(Front(), kind, title, text, IsChinese());
}

bool DesktopDesk::Ask(std::string_view title, std::string_view text) {
  const PointerFree free(hourglass_, main_window_);
  return AskYesNo(Front(), title, text, IsChinese(), Preset::yes);
}

bool DesktopDesk::AskBeforeLoss(std::string_view title, std::string_view text) {
  const PointerFree free(hourglass_, main_window_);
  return AskYesNo(Front(), title, text, IsChinese(), Preset::no);
}

std::string DesktopDesk::Input(std::string_view title, std::string_view text,
                               std::string_view preset) {
  const PointerFree free(hourglass_, main_window_);
  return S(AskLine(Front(), title, text, preset, IsChinese()));
}

std::string DesktopDesk::PickFile(std::string_view title, std::string_view folder,
                                  std::string_view pattern) {
  const PointerFree free(hourglass_, main_window_);
  return S(QFileDialog::getOpenFileName(Front(), Q(title), Q(folder), Filter(pattern)));
}

std::string DesktopDesk::PickFolder(std::string_view title, std::string_view folder) {
  const PointerFree free(hourglass_, main_window_);
  return S(QFileDialog::getExistingDirectory(Front(), Q(title), Q(folder)));
}

void DesktopDesk::Show(std::string_view screen_name) {
  std::unique_ptr<Screen> screen = make ? make(screen_name) : nullptr;
  if (!screen) {
    Message(MessageKind::information, "Kaunter",
            IsChinese() ? "此功能尚未提供。" : "This screen is not available yet.");
    return;
  }
  if (screen->MayOpen()) ShowModal(*screen);
}

bool DesktopDesk::CanShow(std::string_view screen_name) const {
  return make && make(screen_name) != nullptr;
}

void DesktopDesk::ShowModal(Screen& screen) {
  const PointerFree free(hourglass_, main_window_);
  ScreenDialog dialog(screen, Front());
  dialog.Run();
}

std::unique_ptr<ProgressBar> DesktopDesk::Progress(std::string_view title) {
  return MakeProgress(title, Front());
}

void DesktopDesk::Hourglass(bool on) {
  if (on == hourglass_) return;
  hourglass_ = on;
  if (on) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void DesktopDesk::Beep() { QApplication::beep(); }

void DesktopDesk::Print(const ReportJob& job) {
  const PointerFree free(hourglass_, main_window_);
  PrintReport(Front(), job, IsChinese());
}

void DesktopDesk::WriteWorkbook(const ReportRows& rows, const std::string& path) {
  WriteXlsx(rows, path);
}

void DesktopDesk::Copy(std::string_view text) { QApplication::clipboard()->setText(Q(text)); }

std::shared_ptr<Camera> DesktopDesk::OpenCamera(std::string_view name) { return StartCamera(name); }

PictureDesk::Made DesktopDesk::MakeJpeg(const std::string& source, const std::string& target) {
  return WriteAsJpeg(source, target);
}

void DesktopDesk::Open(std::string_view target) {
  const QString text = Q(target);
  const bool file = QFileInfo::exists(text);
  if (QDesktopServices::openUrl(file ? QUrl::fromLocalFile(QFileInfo(text).absoluteFilePath())
                                     : QUrl::fromUserInput(text))) {
    return;
  }
  if (file) {
    Message(MessageKind::critical, IsChinese() ? "打开文件" : "Open Documents",
            Caption{fmt::format("No association for file extension\n{}", target),
                    fmt::format("此电脑没有打开此类文件的程序\n{}", target)}
                .In(IsChinese()));
  } else {
    Message(MessageKind::critical, "Kaunter",
            Caption{fmt::format("{} could not be opened: this PC has no program for it.", target),
                    fmt::format("无法打开 {}：此电脑没有相应的程序。", target)}
                .In(IsChinese()));
  }
}

bool DesktopDesk::Start(std::string_view program, const std::vector<std::string>& arguments) {
  QStringList list;
  for (const std::string& argument : arguments) list << Q(argument);
  return QProcess::startDetached(Q(program), list);
}

}  // namespace kaunter
