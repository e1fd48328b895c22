#include "desktop/progress_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/plain_views.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "screen/cancel_offer.h"

namespace kaunter {
namespace {

constexpr int kMillisecondsBetweenPictures = 40;

class DialogProgress : public ProgressBar, public CancelOffer {
 public:
  DialogProgress(std::string_view title, QWidget* parent) : dialog_(title, parent) {}
  void SetRange(int steps) override { dialog_.SetRange(steps); }
  void SetText(std::string_view text) override { dialog_.SetText(text); }
  void Step(int by) override { dialog_.SetPosition(dialog_.position() + by); }
  void SetPosition(int position) override { dialog_.SetPosition(position); }
  void OfferCancel(std::string_view caption) override { dialog_.OfferCancel(caption); }
  bool Cancelled() const override { return dialog_.cancelled(); }

 private:
  ProgressDialog dialog_;
};

}  // namespace

ProgressDialog::ProgressDialog(std::string_view title, QWidget* parent) : QDialog(parent) {
  setWindowTitle(Q(title));
  setWindowFlag(Qt::WindowCloseButtonHint, false);
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(28, 22, 28, 26);
  layout->setSpacing(kGap);
  auto* heading = new QLabel(Q(title), this);
  heading->setFont(ScaledFont(1.35, true));
  text_ = new QLabel(this);
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  text_->setProperty("muted", true);
  text_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  text_->setMinimumHeight(text_->fontMetrics().lineSpacing() * 3);
  bar_ = new QProgressBar(this);
  bar_->setTextVisible(false);
  bar_->setRange(0, 0);
  layout->addWidget(heading);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  setFixedWidth(440);
  show();
  Draw(true);
}

void ProgressDialog::SetRange(int steps) {
  bar_->setRange(0, steps);
  Draw(true);
}

void ProgressDialog::SetText(std::string_view text) {
  text_->setText(Q(text));
  Draw(false);
}

void ProgressDialog::SetPosition(int position) {
  bar_->setValue(position);
  Draw(position >= bar_->maximum());
}

int ProgressDialog::position() const { return std::max(bar_->value(), 0); }

int ProgressDialog::range() const { return bar_->maximum(); }

// The work must not become slower by being shown: a picture now and then is enough.
void ProgressDialog::Draw(bool at_once) {
  if (!at_once && drawn_.isValid() && drawn_.elapsed() < kMillisecondsBetweenPictures) return;
  // The dialog is modal: a key or click reaches nothing but its button.
  QApplication::processEvents(offered_ ? QEventLoop::AllEvents
                                       : QEventLoop::ExcludeUserInputEvents);
  drawn_.start();
}

void ProgressDialog::OfferCancel(std::string_view caption) {
  if (offered_) return;
  offered_ = true;
  auto* button = new QPushButton(Q(caption), this);
  connect(button, &QPushButton::clicked, this, &ProgressDialog::reject);
  layout()->addWidget(button);
  layout()->setAlignment(button, Qt::AlignRight);
  adjustSize();
  Draw(true);
}

void ProgressDialog::reject() {
  if (offered_) cancelled_ = true;
}

std::unique_ptr<ProgressBar> MakeProgress(std::string_view title, QWidget* parent) {
  return std::make_unique<DialogProgress>(title, parent);
}

}  // namespace kaunter
