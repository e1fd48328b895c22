#include "desktop/message_box.h"

#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/text.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kIconSize = 40;
constexpr int kNarrowest = 290;

// A sign in the tones of the theme: a filled circle with "!", "?" or "i".
QPixmap Sign(MessageKind kind, double ratio) {
  QColor color = Look().accent;
  QString mark = "i";
  if (kind == MessageKind::critical) {
    color = Look().bad;
    mark = "!";
  } else if (kind == MessageKind::warning) {
    color = Look().warn;
    mark = "!";
  } else if (kind == MessageKind::question) {
    mark = "?";
  }
  QPixmap pixmap(QSize(kIconSize, kIconSize) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(QRectF(2, 2, kIconSize - 4, kIconSize - 4));
  painter.setPen(Qt::white);
  painter.setFont(ScaledFont(1.7, true));
  painter.drawText(QRectF(0, 0, kIconSize, kIconSize), Qt::AlignCenter, mark);
  return pixmap;
}

void Dress(QMessageBox& box, MessageKind kind, std::string_view title, std::string_view text) {
  box.setWindowTitle(Q(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(Q(text));
  // The box makes its layout anew for a sign, so what is done to the layout comes behind it.
  if (kind != MessageKind::plain) box.setIconPixmap(Sign(kind, box.devicePixelRatioF()));
  auto* grid = static_cast<QGridLayout*>(box.layout());
  grid->setContentsMargins(20, 18, 20, 16);
  // A least width set on the label would be the width at which Qt cuts the text.
  grid->addItem(new QSpacerItem(kNarrowest, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

QPushButton* MakePrimary(QPushButton* button) {
  button->setProperty("role", "primary");
  return button;
}

}  // namespace

void ShowMessage(QWidget* parent, MessageKind kind, std::string_view title, std::string_view text,
                 bool chinese) {
  QMessageBox box(parent);
  Dress(box, kind, title, text);
  auto* ok = MakePrimary(box.addButton(chinese ? "确定(&O)" : "&OK", QMessageBox::AcceptRole));
  box.setDefaultButton(ok);
  box.setEscapeButton(ok);
  box.exec();
}

bool AskYesNo(QWidget* parent, std::string_view title, std::string_view text, bool chinese,
              Preset preset) {
  QMessageBox box(parent);
  Dress(box, MessageKind::question, title, text);
  auto* yes = box.addButton(chinese ? "是(&Y)" : "&Yes", QMessageBox::YesRole);
  auto* no = box.addButton(chinese ? "否(&N)" : "&No", QMessageBox::NoRole);
  box.setDefaultButton(MakePrimary(preset == Preset::yes ? yes : no));
  box.setEscapeButton(no);
  box.exec();
  return box.clickedButton() == yes;
}

QString AskLine(QWidget* parent, std::string_view title, std::string_view text,
                std::string_view preset, bool chinese) {
  QDialog dialog(parent);
  dialog.setWindowTitle(Q(title));
  auto* layout = new QVBoxLayout(&dialog);
  layout->setContentsMargins(kMargin + 4, kMargin, kMargin + 4, kMargin);
  layout->setSpacing(kGap);
  auto* label = new QLabel(Q(text), &dialog);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  auto* edit = new QLineEdit(Q(preset), &dialog);
  edit->setMinimumWidth(360);
  edit->selectAll();
  auto* ok = MakePrimary(new QPushButton(chinese ? "确定(&O)" : "&OK", &dialog));
  auto* cancel = new QPushButton(chinese ? "取消(&C)" : "&Cancel", &dialog);
  ok->setDefault(true);
  cancel->setAutoDefault(false);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(ok);
  row->addWidget(cancel);
  layout->addWidget(label);
  layout->addWidget(edit);
  layout->addSpacing(4);
  layout->addLayout(row);
  QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
  QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
  edit->setFocus();
  return dialog.exec() == QDialog::Accepted ? edit->text() : QString();
}

}  // namespace kaunter
