// Long work with a bar: a small window without a way to interrupt, unless the work offers one.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <memory>

#include "screen/desk.h"

class QLabel;
class QProgressBar;

namespace kaunter {

class ProgressDialog : public QDialog {
 public:
  ProgressDialog(std::string_view title, QWidget* parent);
  void SetRange(int steps);
  void SetText(std::string_view text);
  void SetPosition(int position);
  int position() const;
  int range() const;  // 0 while nobody knows how long the work is
  // A button that asks the work to end; Esc does the same.
  void OfferCancel(std::string_view caption);
  bool cancelled() const { return cancelled_; }
  void reject() override;  // without an offer the work goes on

 private:
  void Draw(bool at_once);
  QLabel* text_;
  QProgressBar* bar_;
  QElapsedTimer drawn_;
  bool offered_ = false;
  bool cancelled_ = false;
};

std::unique_ptr<ProgressBar> MakeProgress(std::string_view title, QWidget* parent);

}  // namespace kaunter
