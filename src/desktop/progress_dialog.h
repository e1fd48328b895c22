// Long work with a bar: a small window without a way to interrupt, since the work has none.
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
  void reject() override {}  // the work goes on

 private:
  void Draw(bool at_once);
  QLabel* text_;
  QProgressBar* bar_;
  QElapsedTimer drawn_;
};

std::unique_ptr<ProgressBar> MakeProgress(std::string_view title, QWidget* parent);

}  // namespace kaunter
