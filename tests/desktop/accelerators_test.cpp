#include "desktop/accelerators.h"

#include <gtest/gtest.h>

#include <map>

#include "test_screen.h"

namespace kaunter {
namespace {

class Crowded : public Screen {
 public:
  explicit Crowded(Desk& desk_of_test) : Screen("Crowded", {"Crowded", "挤"}, desk_of_test) {}
  Tab Pages{*this, "Pages"};
  Frame One{*this, "One", {"One", "一"}, &Pages};
  Frame Two{*this, "Two", {"Two", "二"}, &Pages};
  Button Add{*this, "Add", {"&Add", "加(&A)"}, ButtonRole::plain, &One};
  Button Pay{*this, "Pay", {"Cal. &Payment", "计算(&P)"}, ButtonRole::plain, &One};
  Button Add2{*this, "Add2", {"&Add", "加(&A)"}, ButtonRole::plain, &Two};
  Button Clear{*this, "Clear", {"&Clear", "清除(&C)"}};
  Button Prev{*this, "Prev", {"&Previous", "上一个(&P)"}};
  Button Both{*this, "Both", {"P && &L", "P && L(&L)"}};
  Button Close{*this, "Close", {"&Close", "关闭(&C)"}, ButtonRole::cancel};
  Button C{*this, "C", {"&C", "C(&C)"}};
};

TEST(AcceleratorsTest, ALetterThatIsTakenGivesWayToAnother) {
  QuietDesk desk;
  Crowded screen(desk);
  const auto text = [](const Button& button) {
    return ButtonText(button, false) + " " + ButtonText(button, true);
  };
  EXPECT_EQ(text(screen.Close), "&Close 关闭(&C)");
  // C is the way out's.
  EXPECT_EQ(text(screen.Clear), "C&lear 清除(&L)");
  EXPECT_EQ(text(screen.Prev), "&Previous 上一个(&P)");
  // P is the window's, C the way out's, A taken on this page, L that of Clear: Y is the next.
  EXPECT_EQ(text(screen.Pay), "Cal. Pa&yment 计算(&Y)");
  // All letters of its own are taken.
  EXPECT_EQ(text(screen.Both), "P && L P && L");
  EXPECT_EQ(text(screen.Add), "&Add 加(&A)");
  // Pages are never open together.
  EXPECT_EQ(text(screen.Add2), "&Add 加(&A)");
  EXPECT_EQ(text(screen.C), "C C");
}

}  // namespace
}  // namespace kaunter
