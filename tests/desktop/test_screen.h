// A screen with a control of every kind that writes down what happens to it, and a desk that says
// nothing.
#pragma once

#include <QApplication>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "desktop/choice_views.h"
#include "desktop/control_view.h"
#include "desktop/grid_view.h"
#include "desktop/screen_dialog.h"
#include "desktop/text_box_view.h"
#include "screen/report_job.h"
#include "screen/screen.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {

// Agrees to everything. What it is told counts as talk, as with the desktop's own desk.
class QuietDesk : public SilentDesk {
 public:
  void Message(MessageKind, std::string_view, std::string_view text) override {
    messages.emplace_back(text);
    ScreenFace::NoteTalk();
  }
  bool Ask(std::string_view, std::string_view) override { return true; }
  bool Start(std::string_view, const std::vector<std::string>&) override { return true; }
};

class TestScreen : public Screen {
 public:
  explicit TestScreen(Desk& desk_of_test) : Screen("TestFrm", {"Test", "测试"}, desk_of_test) {
    for (Control* control : controls()) {
      const std::string name = control->name();
      control->onEnter = [this, name] { events.push_back("enter " + name); };
      control->onLeave = [this, name] { events.push_back("leave " + name); };
    }
    LoanID.onSearch = [this] { events.push_back("search LoanID"); };
    LoanID.picker = "LoanPop";
    Short.max_length = 5;
    NIC.mask = "######-##-####";
    Bank.onPick = [this] { events.push_back("pick " + Bank.text()); };
    Special.onClick = [this] { events.push_back("tick " + Special.Text()); };
    SaveCmd.onClick = [this] { events.push_back("save"); };
    CancelCmd.onClick = [this] { Close(); };
    List.onRow = [this](int row) { events.push_back("row " + std::to_string(row)); };
    List.onOpen = [this](int row, int) { events.push_back("open " + std::to_string(row)); };
    List.onTick = [this](int row) { events.push_back("tick row " + std::to_string(row)); };
    List.onCellLeave = [this](int row, int column, const std::string& before) {
      events.push_back("cell " + std::to_string(row) + "," + std::to_string(column) + " was " +
                       before);
    };
  }
  void Unload() override { events.push_back("unload"); }

  TextBox LoanID{*this, "LoanID", {"&Loan ID", "贷款编号"}};
  TextBox Short{*this, "Short", {"Short", "短"}};
  TextBox PayAmt{*this, "PayAmt", {"Payment", "还款"}, Kind::money};
  TextBox PayDate{*this, "PayDate", {"Date", "日期"}, Kind::date};
  TextBox NIC{*this, "NIC", {"New IC", "身份证"}};
  ComboBox Bank{*this, "Bank", {"Bank", "银行"}, {"CIMB", "Maybank", "Public Bank"}};
  CheckBox Special{*this, "Special", {"Special", "特别"}};
  Frame Kinds{*this, "Kinds", {"Kind", "种类"}};
  Option Personal{*this, "Personal", {"Personal", "个人"}, &Kinds};
  Option Term{*this, "Term", {"Term", "定期"}, &Kinds};
  Tab Pages{*this, "Pages"};
  Frame First{*this, "First", {"First", "一"}, &Pages};
  TextBox Remark{*this, "Remark", {"Remark", "备注"}, Kind::memo, &First};
  Frame Second{*this, "Second", {"Second", "二"}, &Pages};
  TextBox Last{*this, "Last", {"Last", "末"}, Kind::text, &Second};
  Grid List{*this,
            "List",
            {"List", "列表"},
            {{{"No", "号"}, Kind::integer, 5}, {{"Amount", "金额"}, Kind::money, 10, true}}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "保存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  std::vector<std::string> events;
};

// The screen in an open dialog, with the few gestures that the tests speak.
struct OpenScreen {
  OpenScreen() : dialog(screen, nullptr) {
    Show(dialog);
    screen.events.clear();
  }
  // On a busy machine the 5 ms can be gone after the first round of events; what that round calls
  // for, a page laid out anew, has to come as well.
  static void Wait() {
    QTest::qWait(5);
    for (int round = 0; round < 4; ++round) QCoreApplication::processEvents();
  }
  // As a person meets it: in front, the focus where it begins. False when it does not open.
  static bool Show(ScreenDialog& dialog) {
    const bool open = dialog.Open();
    Wait();
    dialog.activateWindow();
    Wait();
    dialog.face().StartFocus();
    Wait();
    return open;
  }
  static void Press(ScreenDialog& dialog, int key,
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* target = QApplication::focusWidget();
    QTest::keyClick(target ? target : &dialog, static_cast<Qt::Key>(key), modifiers);
    Wait();
  }

  ControlView& View(Control& control) { return dialog.face().View(control); }
  QLineEdit& Edit(TextBox& box) { return static_cast<TextBoxView&>(View(box)).edit(); }
  QComboBox& Combo(ComboBox& box) { return *static_cast<QComboBox*>(View(box).widget()); }
  QTableView& Table() { return static_cast<GridView&>(View(screen.List)).table(); }
  void Go(Control& control) {
    View(control).TakeFocus();
    Wait();
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Press(dialog, key, modifiers);
  }
  void Type(const QString& text) {
    QTest::keyClicks(QApplication::focusWidget(), text);
    Wait();
  }
  std::string FocusName() const { return screen.focus() ? screen.focus()->name() : ""; }
  bool Heard(const std::string& event) const {
    return std::find(screen.events.begin(), screen.events.end(), event) != screen.events.end();
  }

  QuietDesk desk;
  TestScreen screen{desk};
  ScreenDialog dialog;
};

}  // namespace kaunter
