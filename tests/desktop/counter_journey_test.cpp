// A clerk's day at the counter by keys alone: one customer after the other, refusals on the way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "collections/payment_frm.h"
#include "test_screen.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

class CounterDesk : public QuietDesk {
 public:
  void Print(const ReportJob& job) override {
    printed.push_back(job.SelectionFormula);
    ScreenFace::NoteTalk();
  }
  std::vector<std::string> printed;
};

class CounterJourney : public ::testing::Test, protected LoanOffice {
 protected:
  CounterJourney() {
    MakeLoan("HQ0001-001", LoanScheme::kPersonal, "1200", "12");
    MakeLoan("HQ0001-002", LoanScheme::kFlexi, "1200", "12");
    office.Run("UPDATE LoanMast SET PayOutAmt=1200,DepositAmt2=0,TotCollectorAmt=0,TotInt=0");
    office.session.CallerTag = "New Payment";
    screen = std::make_unique<PaymentFrm>(office.session, desk);
    dialog = std::make_unique<ScreenDialog>(*screen, nullptr);
    EXPECT_TRUE(OpenScreen::Show(*dialog));
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    OpenScreen::Press(*dialog, key, modifiers);
  }
  // The text goes into the box that has the cursor, and Enter leaves it.
  void Enter(const char* text) {
    QTest::keyClicks(QApplication::focusWidget(), text);
    Press(Qt::Key_Return);
  }
  std::string At() const { return screen->focus() ? screen->focus()->name() : ""; }

  CounterDesk desk;
  std::unique_ptr<PaymentFrm> screen;
  std::unique_ptr<ScreenDialog> dialog;
};

TEST_F(CounterJourney, ThreeBoxesAndASaveThenTheReceiptThenTheNextCustomer) {
  EXPECT_EQ(At(), "LoanID");
  Enter("HQ0001-001");
  EXPECT_EQ(At(), "PayDate");
  Enter("31012024");
  EXPECT_EQ(At(), "TotPay");
  QTest::keyClicks(QApplication::focusWidget(), "112");
  Press(Qt::Key_S, Qt::ControlModifier);  // out of the box whose amount it saves
  EXPECT_THAT(desk.messages, ElementsAre("Payment ID HQ0001-001-001 Saved"));
  EXPECT_EQ(Scalar("SELECT PayAmt FROM PaymentMast"), "112");
  // Enter prints, and once more gives the second copy.
  EXPECT_EQ(At(), "CmdPrint");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(desk.printed.size(), 2u);
  // The next customer of another loan, by the button's letter.
  Press(Qt::Key_L, Qt::AltModifier);
  // A button that is pressed by its letter is seen to go down first.
  for (int i = 0; i < 40 && At() != "LoanID"; ++i) QTest::qWait(10);
  EXPECT_EQ(At(), "LoanID");
  EXPECT_EQ(screen->PayDate.text(), "");
  Enter("HQ0001-002");
  Enter("31.1.2024");
  Enter("100");
  // A flexi loan's split is typed too; what is only shown is passed over.
  std::string stops;
  for (int i = 0; i < 4; ++i) {
    stops += At() + " ";
    Press(Qt::Key_Return);
  }
  EXPECT_EQ(stops, "PayAmt InstalAmt PayExtra IntAmt ");
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "2");
}

TEST_F(CounterJourney, ARefusedBoxKeepsTheCursorAndItsTextUntilItIsMended) {
  Enter("HQ0001-009");
  EXPECT_THAT(desk.messages, ElementsAre("Loan ID HQ0001-009 not found"));
  EXPECT_EQ(At(), "LoanID");
  Enter("HQ0001-001");
  Enter("31022024");
  EXPECT_EQ(desk.messages.back(), "Invalid Date, Please check");
  EXPECT_EQ(At() + " " + screen->PayDate.text(), "PayDate 31-02-2024");
  Press(Qt::Key_A, Qt::ControlModifier);
  Enter("31012024");
  Enter("ten");
  EXPECT_EQ(At() + " " + screen->TotPay.text(), "TotPay ten");
  Press(Qt::Key_A, Qt::ControlModifier);
  Enter("112");
  // Whoever goes on with Enter gets to the save in the end, through each box once.
  int stops = 0;
  while (desk.messages.back() != "Payment ID HQ0001-001-001 Saved" && stops < 40) {
    Press(Qt::Key_Return);
    ++stops;
  }
  EXPECT_LT(stops, 25);
  EXPECT_EQ(Scalar("SELECT PayAmt FROM PaymentMast"), "112");
}

}  // namespace
}  // namespace kaunter
