// What a message says can be read to its end.
#include "desktop/message_box.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include "test_screen.h"

namespace kaunter {
namespace {

TEST(MessageBoxTest, NoTextIsCut) {
  std::string lines;
  for (int i = 0; i < 8; ++i) lines += "line " + std::to_string(i) + "\n";
  const std::string texts[] = {
      "No payment", "Confirm to retrieve all Late Charges from Loan ID AB0003-001 ?",
      "Receipt No R0001 is used before 01-01-2024, nothing was changed. Start from the first day "
      "of "
      "the series, or behind the last number in use",
      "收据号码 R0001 在 01-01-2024 之前已使用，没有更改。请从该系列的第一天或最后使用的号码之后开"
      "始",
      lines};
  for (const std::string& text : texts) {
    for (const MessageKind kind : {MessageKind::plain, MessageKind::critical}) {
      SCOPED_TRACE(text);
      bool seen = false;
      QTimer::singleShot(20, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        const auto& label = *box->findChild<QLabel*>("qt_msgbox_label");
        const QSize needed(
            label.wordWrap() ? 0 : label.sizeHint().width(),
            label.wordWrap() ? label.heightForWidth(label.width()) : label.sizeHint().height());
        EXPECT_GE(label.width(), needed.width());
        EXPECT_GE(label.height(), needed.height());
        EXPECT_LE(box->width(), 1000);
        seen = true;
        box->defaultButton()->click();
      });
      ShowMessage(nullptr, kind, "Kaunter", text, false);
      EXPECT_TRUE(seen);
    }
  }
}

TEST(MessageBoxTest, EnterAloneLosesNothing) {
  for (const Preset preset : {Preset::yes, Preset::no}) {
    QTimer::singleShot(20, qApp, [] {
      auto* box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr);
      QTest::keyClick(box->focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(AskYesNo(nullptr, "Kaunter", "Sure ?", false, preset), preset == Preset::yes);
  }
}

}  // namespace
}  // namespace kaunter
