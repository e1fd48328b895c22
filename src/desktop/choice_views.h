// Views of what is chosen: lists, check boxes, options, buttons.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/control_view.h"

namespace kaunter {

// A list in which typing finds the entry; free text only where the control takes it.
class ComboBoxView : public ControlView {
 public:
  ComboBoxView(ScreenFace& face, ComboBox& combo);

  QWidget* widget() override { return box_; }
  bool has_label() const override { return true; }
  bool is_box() const override { return true; }
  void TakeFocus() override;
  void Commit() override;
  bool UseKey(const QKeyEvent& event) override;

 protected:
  void Show() override;

 private:
  void FillItems();
  QString Meant(const QString& typed) const;
  bool PopupKey(QKeyEvent& event);

  ComboBox& combo_;
  QComboBox* box_;
  std::vector<std::string> shown_items_;
  QString completed_;  // what was typed when an entry took its place
  bool committing_ = false;
};

class CheckBoxView : public ControlView {
 public:
  CheckBoxView(ScreenFace& face, CheckBox& check);
  QWidget* widget() override { return box_; }
  bool is_box() const override { return true; }

 protected:
  void Show() override;

 private:
  CheckBox& check_;
  QCheckBox* box_;
};

class OptionView : public ControlView {
 public:
  OptionView(ScreenFace& face, Option& option);
  QWidget* widget() override { return box_; }
  bool is_box() const override { return true; }

 protected:
  void Show() override;

 private:
  Option& option_;
  QRadioButton* box_;
};

class ButtonView : public ControlView {
 public:
  ButtonView(ScreenFace& face, Button& button);
  QWidget* widget() override { return box_; }
  QPushButton& push_button() { return *box_; }

 protected:
  void Show() override;

 private:
  Button& button_;
  QPushButton* box_;
};

}  // namespace kaunter
