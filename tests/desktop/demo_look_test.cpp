// The screens with the demo office's rows: no key, name or figure is cut, on the clerks' monitors
// and on a screen of 1920 x 1080 at 200 %, where half of its points are left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTabWidget>
#include <cstdlib>

#include "app/catalogue.h"
#include "core/pickers.h"
#include "desktop/look_check.h"
#include "test_screen.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::IsEmpty;

struct Opened {
  const char* screen;
  const char* picker;  // or the box that is filled
  const char* text;
  const char* press = "";
};

constexpr Opened kOpened[] = {
    {"NewCustFrm", "CustID", "AB0001"},
    {"NewLoanFrm", "LoanID", "CD0004-001"},
    {"PaymentFrm", "LoanID", "CD0004-001"},
    {"LoanSettlementfrm", "PayID", "CD0003-001-003"},
    {"FollowupFrm", "HisLoanID", "AB0003-001"},
    {"DueDateFrm", "DateTo", "29-02-2024", "SearchCmd"},
    {"Reminderfrm", "CalSearchTo", "31-01-2024", "SearchCmd"},
    {"SpecialRpt", "CompCode", "AB", "Command1"},
    {"BatchLinkfrm", "LoanID", "AB0003-001", "Command1"},
    {"LateIntfrm", "", ""},
    {"PaymentReaderfrm", "TrxDate", "31-01-2024", "DueCmd"},
    {"SIProcessfrm", "ToDate", "29-02-2024", "SaveCmd"},
    {"CashBookFrm", "CashBookNo", "60"},
    {"RecalcCashBookFrm", "CompCode", "AB", "CheckCmd"},
    {"FrmBuyGold", "LoanID", "B0008"},
    {"PersonalEpxFrm", "TrxID", "11"},
    {"Supplierfrm", "SuppID", "S0001"},
    {"SuppTransfrm", "TransID", "T0001"},
    {"FrmSellGold", "DateFrom", "01-01-2023", "CmdGo"},
    {"NPLExportfrm", "SQLID", "Customers without a telephone", "SaveCmd"},
    {"ReturnFiguresFrm", "DateFrom", "01-01-2023", "CountCmd"},
};

TEST(DemoLookTest, KeysNamesAndFiguresAreWholeAtBothSizes) {
  Office office(Office::State::base);
  const std::string bin = test::BinaryDir() + "/bin";
  const std::string database = office.folder.File("demo.db");
  const std::string make = test::SourceDir() + "/script/demo '" + bin + "' '" +
                           office.folder.path() + "' make -- --database '" + database + "'";
  ASSERT_EQ(std::system(make.c_str()), 0);
  office.session.MainConn = OpenSqlite("MainConn", database, false, office.session.clock);
  office.session.CurrentLevel = 4;
  std::vector<Opened> all(std::begin(kOpened), std::end(kOpened));
  for (const Picker& picker : AllPickers()) {
    if (!picker.linked) all.push_back({"PopupFrm", picker.name.c_str(), ""});
  }
  QuietDesk desk;
  int rows = 0;
  for (const QSize room : {QSize(1342, 720), QSize(936, 492)}) {
    for (const Opened& opened : all) {
      const bool popup = std::string(opened.screen) == "PopupFrm";
      if (popup) office.session.PickerName = opened.picker;
      office.session.PickerExtra = "AB0001-001";
      const std::unique_ptr<Screen> screen = MakeScreen(opened.screen, office.session, desk);
      ScreenDialog dialog(*screen, nullptr);
      ASSERT_TRUE(dialog.Open()) << opened.screen << " " << opened.picker;
      if (Control* box = popup ? nullptr : screen->Find(opened.picker)) {
        box->Enter();
        if (auto* text = dynamic_cast<TextBox*>(box)) text->Type(opened.text);
        if (auto* list = dynamic_cast<ComboBox*>(box)) list->Pick(opened.text);
        box->Leave();
      }
      if (auto* button = dynamic_cast<Button*>(screen->Find(opened.press))) button->Click();
      // One layout asks for the next, and a window that grows by itself is held to the size of the
      // screen of tests.
      for (int i = 0; i < 3; ++i) {
        dialog.resize(dialog.FirstSize().boundedTo(room));
        dialog.resize(dialog.SizeForTables().boundedTo(room));
        OpenScreen::Wait();
      }
      for (const Control* control : screen->controls()) {
        if (const auto* grid = dynamic_cast<const Grid*>(control)) rows += grid->RowCount();
      }
      std::vector<std::string> problems;
      auto* tabs = dialog.findChild<QTabWidget*>();
      for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
        if (tabs) tabs->setCurrentIndex(page);
        OpenScreen::Wait();
        for (std::string& problem : LookProblems(dialog)) problems.push_back(std::move(problem));
      }
      // Half a monitor is too low for a whole page.
      std::erase_if(problems, [](const std::string& p) { return p.starts_with("scrolls by"); });
      EXPECT_THAT(problems, IsEmpty())
          << opened.screen << " " << opened.picker << " " << room.width();
      screen->Close();
    }
  }
  EXPECT_GT(rows, 500);
}

}  // namespace
}  // namespace kaunter
