// A person stops long work at its bar: it ends there, says how far it came, and nothing is half
// done.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QTimer>

#include "collections/verify_ledger_frm.h"
#include "core/values.h"
#include "desktop/progress_dialog.h"
#include "einvoice/ecust_mast.h"
#include "einvoice/einv_frm.h"
#include "loans/rebuild.h"
#include "test_screen.h"
#include "tests/core/office.h"
#include "tests/einvoice/invoice_office.h"
#include "tests/einvoice/raw_server.h"

namespace kaunter {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;

constexpr int kLoans = 8000;  // many pictures of the bar long, on a fast machine too
constexpr int kLoansAtOnce = 250;

class BarDesk : public QuietDesk {
 public:
  std::unique_ptr<ProgressBar> Progress(std::string_view title) override {
    return MakeProgress(title, nullptr);
  }
};

// Presses the button, or Esc, once half of the work is done.
class Hand {
 public:
  explicit Hand(bool by_key) {
    QObject::connect(&timer_, &QTimer::timeout, [this, by_key] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* bar = dynamic_cast<ProgressDialog*>(window);
        if (bar == nullptr || bar->range() == 0 || bar->position() * 2 < bar->range()) continue;
        timer_.stop();
        stopped_at = bar->position();
        auto* button = bar->findChild<QPushButton*>();
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), "Stop");
        if (by_key) {
          QTest::keyClick(bar, Qt::Key_Escape);
        } else {
          QTest::mouseClick(button, Qt::LeftButton);
        }
      }
    });
    timer_.start(0);
  }
  int stopped_at = 0;

 private:
  QTimer timer_;
};

class StopTest : public ::testing::Test {
 protected:
  StopTest() {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    Connection& main = office.session.Main();
    main.BeginTrans();
    for (int i = 0; i < kLoans; ++i) {
      const std::string id = QuoteStr(fmt::format("L{:04}", i));
      main.Execute(
          fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,LoanAmt,LoanStatus) "
                      "VALUES ({},'C','HQ','0',600,'ACTIVE')",
                      id));
      for (int row = 1; row <= 6; ++row) {
        main.Execute(
            fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,"
                        "InterestAmt) VALUES ({0},{1},'2024-0{0}-15',110,100,10)",
                        row, id));
      }
    }
    for (int i = 0; i < kLoans; ++i) RebuildLoan(main, fmt::format("L{:04}", i));
    main.Execute("UPDATE LoanMast SET TotPay=5 WHERE LoanID='L0003'");
    main.CommitTrans();
  }
  std::string Loans() {
    return office.Lines("SELECT LoanID,TotPay,LoanBal,NextDueDate FROM LoanMast ORDER BY LoanID");
  }
  Office office{Office::State::patched};
  BarDesk desk;
};

TEST_F(StopTest, VerifyLedgerEndsWhereItIsStopped) {
  const std::string before = Loans();
  for (const bool by_key : {false, true}) {
    SCOPED_TRACE(by_key);
    VerifyLedgerFrm screen(office.session, desk);
    ScreenDialog dialog(screen, nullptr);
    dialog.Open();
    OpenScreen::Wait();
    desk.messages.clear();
    Hand hand(by_key);
    screen.VerifyCmd.Click();
    OpenScreen::Wait();
    EXPECT_GE(hand.stopped_at, kLoans / 2);
    EXPECT_LT(hand.stopped_at, kLoans);
    // The portion in work is finished, no other begun.
    const auto told = [](int loans) {
      return fmt::format("Stopped: 1 of {} loans does not hold", loans);
    };
    EXPECT_THAT(desk.messages,
                ElementsAre(AnyOf(told(hand.stopped_at), told(hand.stopped_at + kLoansAtOnce))));
    EXPECT_THAT(desk.messages, ElementsAre(screen.ResultLBL.Text()));
    EXPECT_FALSE(office.session.Main().InTransaction());
    EXPECT_EQ(Loans(), before);
    // What it has found is there to be worked on.
    ASSERT_GT(screen.DG.RowCount(), 0);
    EXPECT_EQ(screen.DG.Cell(0, 0), "L0003");
    EXPECT_TRUE(screen.RepairCmd.enabled());
  }
  EXPECT_THAT(office.Log().back(), MatchesRegex(".*Verify Ledger HQ - Stopped: .*"));
  // And it begins anew.
  VerifyLedgerFrm screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  desk.messages.clear();
  screen.VerifyCmd.Click();
  EXPECT_THAT(desk.messages, ElementsAre(fmt::format("1 of {} loans does not hold", kLoans)));
}

// Impatient: presses the button of the screen again and its cross, as long as the request is under
// way; then the bar's own button.
TEST_F(StopTest, ARequestIsGivenUpAndNothingElseCanBeDoneMeanwhile) {
  for (const char* name : {"http_proxy", "all_proxy"}) unsetenv(name);
  RawServer* running = nullptr;
  RawServer server([&](int, const std::string&) {
    while (!running->stopped()) usleep(1000);
    return std::string();
  });
  running = &server;
  office.Run("INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC) VALUES ('C','HQ','Tan','8')");
  office.Run("INSERT INTO Systemast (Param,Value) VALUES ('GetTokenURL'," +
             QuoteStr(server.Url("/token")) + ")");
  office.session.HandOverCustID = "C";
  ECustMast screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  ASSERT_TRUE(OpenScreen::Show(dialog));
  QPushButton* get_tin = nullptr;
  for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
    if (button->text() == "Get &TIN") get_tin = button;
  }
  ASSERT_NE(get_tin, nullptr);
  int looks = 0;
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, [&] {
    ProgressDialog* bar = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* found = dynamic_cast<ProgressDialog*>(window)) bar = found;
    }
    if (bar == nullptr) return;
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {},
                      get_tin->mapTo(&dialog, get_tin->rect().center()));
    dialog.close();
    if (++looks == 5) QTest::mouseClick(bar->findChild<QPushButton*>(), Qt::LeftButton);
  });
  hand.start(10);
  desk.messages.clear();
  QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {},
                    get_tin->mapTo(&dialog, get_tin->rect().center()));
  OpenScreen::Wait();
  hand.stop();
  EXPECT_GE(looks, 5);
  EXPECT_EQ(server.requests().size(), 1U);
  EXPECT_FALSE(screen.closed());
  EXPECT_THAT(desk.messages, testing::IsEmpty());
  EXPECT_THAT(office.Log().back(), testing::HasSubstr("given up"));
}

// The document on its way is still answered and recorded, what lies behind it stays ticked.
TEST(StopSubmission, EndsBetweenTwoDocuments) {
  constexpr int kDocuments = 450;  // some pictures of the bar long, on the fastest machine
  InvoiceOffice office;
  std::string statement;
  for (int i = 0; i < kDocuments; ++i) {
    statement += fmt::format("{}SELECT 'D{:03}' AS eInvID", i == 0 ? "" : " UNION ALL ", i);
  }
  statement =
      "SELECT d.eInvID,1 AS SeqNo,'2024-01-05' AS TrxDate,'' AS CustID,'' AS CustName,'HQ' AS "
      "CompCode,'' AS LoanID,'' AS SchID,'' AS InvType,'06' AS TaxType,'x' AS InvDesc,5 AS InvAmt,"
      "1 AS Qty,'' AS tin,'' AS CustTypeID,'' AS CustType,'' AS Phone,'' AS Email,'' AS Address,'' "
      "AS Postcode,'' AS City,'' AS State,'' AS Country FROM (" +
      statement + ") AS d";
  office.Run("INSERT INTO DataExport (SID,SQLStatement) VALUES ('VKT-Individual'," +
             QuoteStr(statement) + ")");
  struct : BarDesk {
    bool Ask(std::string_view, std::string_view) override { return true; }
  } desk;
  EInvFrm screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  OpenScreen::Wait();
  screen.DateFrom.SetText("01-01-2024");
  screen.DateTo.SetText("31-01-2024");
  screen.SaveCmd.Click();
  screen.C3.Tick(true);
  desk.messages.clear();
  Hand hand(false);
  screen.CmdPrint.Click();
  OpenScreen::Wait();
  ASSERT_GE(hand.stopped_at, kDocuments / 2);
  const int sent = std::stoi(office.Scalar("SELECT COUNT(*) FROM EInvMast"));
  EXPECT_GE(sent, kDocuments / 2);
  EXPECT_LT(sent, kDocuments);
  EXPECT_THAT(desk.messages, ElementsAre(testing::StartsWith("Stopped.")));
  for (int row = 0; row < kDocuments; ++row) EXPECT_EQ(screen.vsd.Ticked(row), row >= sent) << row;
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM EInvSending WHERE State <> 'recorded'"), "0");
}

}  // namespace
}  // namespace kaunter
