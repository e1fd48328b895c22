// A window lives on while a long statement or another program runs; other statements wait.
#include "desktop/long_wait.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QWidget>

#include "platform/sql/connection.h"
#include "platform/sql/waiting.h"
#include "platform/tool.h"
#include "test_screen.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

// Asks to be painted again each time it has been.
class Restless : public QWidget {
 public:
  int paints = 0;

 protected:
  void paintEvent(QPaintEvent*) override {
    ++paints;
    update();
  }
};

constexpr char kLong[] =
    "SELECT COUNT(*) FROM NumberMast AS a, NumberMast AS b, NumberMast AS c WHERE "
    "a.LoanNo<>b.CustID AND b.LoanNo<>c.CustID AND a.CustID=c.CustID";

TEST(LongWait, TheWindowIsPainted) {
  Office office(Office::State::patched);
  Connection& main = office.session.Main();
  main.BeginTrans();
  for (int i = 0; i < 300; ++i) {
    main.Execute("INSERT INTO NumberMast VALUES ('L" + std::to_string(i) + "','001','001')");
  }
  main.CommitTrans();
  Restless window;
  window.show();
  QCoreApplication::processEvents();
  PaintDuringStatements();
  const auto paints = [&](const auto& work) {
    const int before = window.paints;
    work();
    return window.paints - before;
  };
  EXPECT_GE(paints([&] {
              QElapsedTimer clock;
              for (clock.start(); clock.elapsed() < 400;) {
                EXPECT_EQ(main.Query(kLong).Field(0).ToText(), "90000");
              }
            }),
            3);
  EXPECT_GE(paints([] { EXPECT_EQ(RunTool("sleep", {"0.4"}).status, 0); }), 3);
  SetWhileWaiting({});
}

TEST(LongWait, AStatementFromWithinIsRefused) {
  Office office(Office::State::patched);
  Connection& main = office.session.Main();
  std::string refusal;
  SetWhileWaiting([&] {
    try {
      main.Query("SELECT COUNT(*) FROM CustMast");
    } catch (const std::logic_error& fault) {
      refusal = fault.what();
    }
  });
  main.Query("SELECT COUNT(*) FROM Systemast AS a, Systemast AS b, Systemast AS c, Systemast AS d");
  SetWhileWaiting({});
  EXPECT_NE(refusal.find("CustMast"), std::string::npos) << refusal;
}

// The screen moves the focus and goes on with a long statement.
TEST(LongWait, NoBoxIsLeftInTheMiddleOfAStatement) {
  OpenScreen open;
  open.Go(open.screen.LoanID);
  std::vector<std::string> within;
  open.screen.SaveCmd.onClick = [&] {
    open.screen.FocusOn(open.screen.PayAmt);
    open.screen.events.clear();
    QElapsedTimer clock;
    for (clock.start(); clock.elapsed() < 150;) ActWhileWaiting();  // as an engine does
    within = open.screen.events;
  };
  PaintDuringStatements();
  open.dialog.face().Act([&] { open.screen.SaveCmd.Click(); });
  SetWhileWaiting({});
  EXPECT_EQ(within, std::vector<std::string>());
  QTest::qWait(50);
  EXPECT_TRUE(open.Heard("leave LoanID"));
  EXPECT_TRUE(open.Heard("enter PayAmt"));
}

}  // namespace
}  // namespace kaunter
