// Views of a TextBox: a line, with a calendar or a search button where the box has one, and a memo.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QValidator>

#include "desktop/control_view.h"

class QAction;

namespace kaunter {

// Refuses a text that is longer than a box takes, whole, so that nothing is ever cut silently.
class LengthValidator : public QValidator {
 public:
  LengthValidator(int characters, QObject* parent) : QValidator(parent), characters_(characters) {}
  State validate(QString& text, int& position) const override;

 private:
  int characters_;
};

class TextBoxView : public ControlView {
 public:
  TextBoxView(ScreenFace& face, TextBox& box);

  QWidget* widget() override { return edit_; }
  bool has_label() const override { return true; }
  bool is_box() const override { return true; }
  void TakeFocus() override;
  bool UseKey(const QKeyEvent& event) override;
  void DrawAsFigure() override;
  // What was reckoned in an amount box becomes its result.
  void Commit() override;

  QLineEdit& edit() { return *edit_; }

 protected:
  void Show() override;

 private:
  void Equip();
  void Edited(const QString& text);
  void Fit();
  void ShowText(const QString& text);
  void Put(const QString& text);
  void OpenCalendar();
  bool StepDate(const QKeyEvent& event);
  void Search();
  bool IsRightAligned() const;

  TextBox& box_;
  QLineEdit* edit_;
  QAction* button_ = nullptr;  // calendar or search
  QString shown_;              // what stood there before the last edit
};

class MemoView : public ControlView {
 public:
  MemoView(ScreenFace& face, TextBox& box);

  QWidget* widget() override { return edit_; }
  bool has_label() const override { return true; }
  bool is_box() const override { return true; }
  bool UseKey(const QKeyEvent& event) override;

 protected:
  void Show() override;

 private:
  void Edited();
  std::size_t BytesBefore(int position) const;

  TextBox& box_;
  QPlainTextEdit* edit_;
  bool showing_ = false;
};

// What a person types into a date box, brought nearer to dd-mm-yyyy: "0102" is "01-02", a slash or
// a point is a dash. Only ever applied while the text grows, so that deleting works as usual.
QString DateAsTyped(const QString& text);
// A day and a month of one digit get their zero when the box is left; anything else stays.
QString DateAsLeft(const QString& text);
// Digits set between the signs of a mask: "9001011" in "######-##-####" is "900101-1".
QString MaskAsTyped(const QString& mask, const QString& text);

}  // namespace kaunter
