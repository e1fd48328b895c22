#include "desktop/report_wait.h"

#include <fmt/format.h>

#include "desktop/progress_dialog.h"

namespace kaunter {
namespace {

constexpr int kShortReport = 400;  // milliseconds
constexpr int kSteps = 1000;

std::string TextOf(ReportStage stage, std::size_t done, std::size_t of, bool chinese) {
  switch (stage) {
    case ReportStage::reading:
      return chinese ? "正在读取记录..." : "The rows are being read ...";
    case ReportStage::laying_out:
      return fmt::format(fmt::runtime(chinese ? "正在排版：第 {} 行，共 {} 行"
                                              : "The pages are being made: row {} of {}"),
                         done, of);
    case ReportStage::writing:
      return fmt::format(
          fmt::runtime(chinese ? "正在输出：第 {} 页，共 {} 页" : "Page {} of {} is being written"),
          done + 1, of);
  }
  return {};
}

}  // namespace

ReportWait::ReportWait(QWidget* parent, bool chinese) : parent_(parent), chinese_(chinese) {
  since_.start();
}

ReportWait::~ReportWait() = default;

ReportProgress ReportWait::progress() {
  return
      [this](ReportStage stage, std::size_t done, std::size_t of) { return Tell(stage, done, of); };
}

void ReportWait::Open() {
  dialog_ = std::make_unique<ProgressDialog>(chinese_ ? "报表" : "Report", parent_);
  dialog_->OfferCancel(chinese_ ? "停止" : "Stop");
}

bool ReportWait::Tell(ReportStage stage, std::size_t done, std::size_t of) {
  if (!dialog_ && since_.elapsed() < kShortReport) return true;
  if (!dialog_) Open();
  // A bar without a range moves by itself.
  const int range = of > 0 ? kSteps : 0;
  if (dialog_->range() != range) dialog_->SetRange(range);
  dialog_->SetText(TextOf(stage, done, of, chinese_));
  if (of > 0) dialog_->SetPosition(static_cast<int>(done * kSteps / of));
  return !dialog_->cancelled();
}

}  // namespace kaunter
