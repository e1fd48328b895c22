// What each report entry of the menu starts, in both languages: the file and the title that the
// office knows its paper by. The table is written down here a second time.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "app/catalogue.h"
#include "app/menu_table.h"
#include "core/main_frm.h"
#include "screen/report_job.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

struct Row {
  const char *entry, *title, *file;
  bool both = false;  // the Chinese paper has a name of its own
};

constexpr bool kBoth = true;

const Row kListings[] = {
    {"AdvRptMnu", "Advertisement Listing", "AdvertisementList", kBoth},
    {"AreaCodeRtMnu", "Area Code Listing", "AreaCodeList", kBoth},
    {"BankCodeRptMnu", "Bank Code Listing", "BankCode", kBoth},
    {"CompCatRptMnu", "Collectin Type Listing", "CompanyCategoryList"},
    {"ColInfoRptMnu", "Collectin Type Listing", "CollectInfoList", kBoth},
    {"CompCodeRptMnu", "Company Code Listing", "CompCodeList", kBoth},
    {"LoanStatRptMnu", "Loan Status Listing", "LoanGroupList", kBoth},
    {"LoanTypeRptMnu", "Loan Repayment Listing", "LoanTypeList", kBoth},
    {"SalesmanRptMnu", "Salesman Listing", "SalesmanList", kBoth},
};

const Row kReports[] = {
    {"CustRptMnu", "Customer Profile", "CustMastList", kBoth},
    {"RefereRptMnu", "Referer Information", "RefererList", kBoth},
    {"CustLoanListMnu", "Customer Loan Listing", "CustLoanList"},
    {"DadDebtListMnu", "Bad Debt Listing", "BadDebtListing"},
    {"LoanRptMnu", "Loan Report", "LoanMastList", kBoth},
    {"LoanRpt2Mnu", "Loan Report By Loan Term", "LoanMastList2", kBoth},
    {"LoanRptByCust", "Loan Report By Customer", "CustLoanMastList", kBoth},
    {"LoanCollRptMnu", "Loan Collateral Report", "LoanCollateral", kBoth},
    {"LoanGuarantorRptMnu", "Loan Guarantor Report", "LoanGuarantorList", kBoth},
    {"LoanSchRptMnu", "Loan Schedule By Company Report", "LoanSchList", kBoth},
    {"LoanRptCreatedDateMnu", "Loan Report By Date Created", "LoanCreatedDate"},
    {"ExpectCollMnu", "Expected Collection", "ExpectedCollection"},
    {"AgingRptMnu", "Aging Report", "AgingMonth"},
    {"UnmatchIntRptMnu", "Unmatch Interest Listing", "Loan Interest Report"},
    {"CDDLoanMnu", "CDD Loan", "CDD"},
    {"CDDPaymentMnu", "CDD Payment", "CDD2"},
    {"LoanThresholdMnu", "Loan Exceed Threshold Report", "LoanExceedThreshold"},
    {"PaymentThresholdMnu", "Payment Exceed Threshold Report", "PaymentExceedThreshold"},
    {"ChargeList1RptMnu", "Batch Late Interest / Invoice / CN / Payment", "ChargeList"},
    {"LateChargeInvMnu", "Batch Late Charges Invoice", "ARInvoice"},
    {"BuyGoldRptMnu", "Loan Type Report", "BuyGoldList", kBoth},
    {"SellGoldRptMnu", "Sell Gold Report", "SellGoldList", kBoth},
    {"StaffCommRptMnu", "Salesman Commission", "LoanCommList", kBoth},
    {"StatementofAccRptMnu", "Statement of Account", "StatementList"},
    {"SummaryPnLRptMnu", "Summary P && L", "SummaryPnL"},
    {"SummaryBSRptMnu", "Summary P && L", "SummaryBS"},
    {"PayRptMnu", "Payment Report", "PaymentList", kBoth},
    {"PayRpt2Mnu", "Payment Report By Loan Term", "PaymentList3", kBoth},
    {"PaymentRptLoanMnu", "Payment Report By Loan", "LoanPaymentList", kBoth},
    {"TrxRptMnu", "Loan Collection Report", "PaymentList2", kBoth},
    {"PaymentRptByCreatedDateMnu", "Payment Report By Date Created", "PaymentCreatedDate"},
    {"PaymentReceiptMnu", "Payment Receipt", "Payment Receipt"},
    {"DailyCollRptMnu", "Daily Collection Report", "DailyCollection", kBoth},
    {"DueDateRpt", "Due Date Report", "DueDate", kBoth},
    {"DueDateSumm2", "Due Date Summary", "DueDate2", kBoth},
    {"DueDateSumm3", "Due Date Summary", "DueDate3", kBoth},
    {"DueDateListSummMnu", "Due Date Summary", "DueDate4", kBoth},
    {"DueDateListMnu", "Due Date Listing", "DueDate5", kBoth},
    {"OutBalMnu", "Outstanding Report", "Outstanding", kBoth},
    {"OutBal2Mnu", "Outstanding By Loan Term Report", "Outstanding2", kBoth},
    {"UnsettleIntRpt", "Unsettle Interest Report", "OustandingInt", kBoth},
    {"ChqRptMnu", "Cheque Report", "ChqMastList", kBoth},
    {"LoanChqRptMnu", "Cheque Report By Loan", "LoanChqMastList", kBoth},
    {"FollowUpListDetMnu", "Follow Up Report", "FollowUpDetList", kBoth},
    {"ReminderRptMnu", "Reminder Letter", "Reminder"},
    {"PersonalExpRptMnu", "Expenses Report", "PersonalExpReport", kBoth},
    {"ExpRptByCreatedDateMnu", "Expenses", "PersonalExpCreatedDate"},
    {"CashBookRpt", "Cash Book Report", "CashBook", kBoth},
    {"DailyReport", "Cash Book Report", "AccountReport", kBoth},
    {"CBBalRpt", "Cash Book Balance", "CBBalance", kBoth},
    {"CBImprove", "Cash Book Improvement", "CBImprovement", kBoth},
    {"CBIncome", "Cash Book Income", "CBIncome", kBoth},
    {"CashVoucher", "Cash Voucher", "CashVoucher"},
    {"AgreeRpt", "Agreement Letter", "Agree1"},
    {"LejarRpt", "Lejar Akuan Report", "LejarAkuan"},
    {"RekodRpt", "Rekod Transaksi", "RekodTrans"},
    {"YearRpt", "Yealy Loan Report", "YearlyLoan"},
    {"NewLampiranMnu", "New Lampiran", "NewLampiran"},
    {"SuppTransMnu", "Supplier Invoice / CN / Payment", "SuppTrans"},
    {"SMSSentCompMnu", "SMS By Company", "SMSCompList"},
    {"SMSSentHPMnu", "SMS By HP Report", "SMSHPList"},
    {"EInvSubmit", "E-Invoicing Submission Listing", "EInvoicing"},
    {"AuditLogsMnu", "User Audit Logs", "AuditLogs"},
    {"LateIntRptMnu", "Late Interest Report", "LateInterest"},
};

std::string FileOf(const Row& row, bool chinese) {
  return std::string(row.file) + (row.both && chinese ? "C.rpt" : ".rpt");
}

struct MenuDesk : SilentDesk {
  void Show(std::string_view name) override {
    shown.push_back(std::string(name));
    if (on_show) on_show();
  }
  void Print(const ReportJob& job) override {
    printed.push_back(job);
    if (on_show) on_show();
  }
  std::function<void()> on_show;
  std::vector<std::string> shown;
  std::vector<ReportJob> printed;
};

// The main window of the built-in administrator, to whom every entry is shown.
struct MenuOffice {
  explicit MenuOffice(const std::string& app_path = {}) {
    Session& session = office.session;
    if (!app_path.empty()) session.AppPath = app_path;
    session.CurrentLevel = 5;
    session.CurrentCompCode = "HQ";
    session.CurrentCompDesc = "Head Office";
  }
  MainFrm& Start() {
    main.reset();  // it takes the session's menu with it
    main = std::make_unique<MainFrm>(office.session, desk, MenuTable(), ScreenExists);
    main->FillAtStart();
    main->menu().ApplyRights(office.session);
    return *main;
  }
  void LayFile(const std::string& name) {
    std::ofstream(office.session.AppPath + "/" + name) << "-";
  }
  bool Enabled(const char* entry) { return main->menu().Find(entry)->enabled; }

  Office office{Office::State::patched};
  MenuDesk desk;
  std::unique_ptr<MainFrm> main;
};

TEST(ReportMenu, EachEntryStartsItsFileUnderItsTitleInBothLanguages) {
  MenuOffice o;
  Session& session = o.office.session;
  for (const Row& row : kListings) o.LayFile(FileOf(row, false));
  for (const Row& row : kReports) o.LayFile(FileOf(row, false));
  for (const bool chinese : {false, true}) {
    session.ChineseFlag = chinese;
    MainFrm& main = o.Start();
    std::string panel;
    o.desk.on_show = [&] { panel = main.Panel(1); };
    for (const Row& row : kReports) {
      SCOPED_TRACE(row.entry);
      o.desk.shown.clear();
      ASSERT_TRUE(main.ChooseMenu(row.entry));
      EXPECT_EQ(o.desk.shown, std::vector<std::string>{"ReportFrm"});
      EXPECT_EQ(session.ReportFile, FileOf(row, chinese));
      EXPECT_EQ(session.MsgTitle, row.title);
      EXPECT_EQ(panel, row.title);
      EXPECT_EQ(main.Panel(1), session.ProgramTitle);
    }
    for (const Row& row : kListings) {
      SCOPED_TRACE(row.entry);
      o.desk.printed.clear();
      ASSERT_TRUE(main.ChooseMenu(row.entry));
      ASSERT_EQ(o.desk.printed.size(), 1U);
      const ReportJob& job = o.desk.printed.front();
      EXPECT_EQ(job.ReportFileName, session.AppPath + "/" + FileOf(row, chinese));
      EXPECT_EQ(job.ReportTitle, "Head Office");
      EXPECT_EQ(job.SelectionFormula, "");
      EXPECT_TRUE(job.ParameterFields.empty());
      EXPECT_EQ(job.Connect, session.MainConn.get());
      EXPECT_EQ(session.MsgTitle, row.title);
      EXPECT_EQ(panel, "AMY") << "the person stands in the first panel while it runs";
      EXPECT_EQ(main.Panel(1), session.ProgramTitle);
    }
  }
}

TEST(ReportMenu, NoEntryOfTheMenuIsForgottenHere) {
  std::set<std::string> known;
  for (const Row& row : kListings) known.insert(row.entry);
  for (const Row& row : kReports) known.insert(row.entry);
  for (const MenuEntry& entry : MenuTable()) {
    const bool report =
        entry.action == MenuAction::report || entry.action == MenuAction::direct_list;
    EXPECT_EQ(report, known.contains(entry.name)) << entry.name;
  }
}

TEST(ReportMenu, AnEntryWithoutItsFileIsGrey) {
  MenuOffice o;
  o.Start();
  for (const char* entry : {"LoanRptMnu", "CustLoanListMnu", "AdvRptMnu", "AgreeRpt"}) {
    EXPECT_FALSE(o.Enabled(entry)) << entry;
    EXPECT_FALSE(o.main->ChooseMenu(entry)) << entry;
  }
  EXPECT_TRUE(o.desk.shown.empty());
  // A file of both languages serves both names; the Chinese one alone serves nobody in English.
  o.LayFile("LoanMastList.rpt");
  o.LayFile("CustMastListC.rpt");
  o.LayFile("AdvertisementList.rpt");
  o.Start();
  EXPECT_TRUE(o.Enabled("LoanRptMnu"));
  EXPECT_TRUE(o.Enabled("AdvRptMnu"));
  EXPECT_FALSE(o.Enabled("CustRptMnu"));
}

// A file of the office opens no door that its menu entry closes.
TEST(ReportMenu, AnOwnFileTakesCriteriaAndRightOfTheFileThatItIsLike) {
  MenuOffice o;
  Session& session = o.office.session;
  const std::string list =
      "query\nSELECT CompCode FROM LoanMast WHERE {selection}\nend\n"
      "title \"A\" \"甲\"\ncolumn \"C\" CompCode text 9\n";
  std::filesystem::create_directory(session.AppPath + "/OwnReports");
  const auto lay = [&](const std::string& file, const std::string& text) {
    std::ofstream(session.AppPath + "/" + file) << text;
  };
  for (const char* file : {"LoanMastList", "BankCode", "Form"})
    lay(file + std::string(".rpt"), list);
  lay("OwnReports/a.rpt", "like \"b.rpt\"\n");
  lay("OwnReports/b.rpt", "like \"LoanMastList.rpt\"\n");
  lay("OwnReports/c.rpt", "like \"BankCode.rpt\"\n");
  lay("OwnReports/d.rpt", "like \"Form.rpt\"\n");
  lay("OwnReports/e.rpt", list);
  lay("OwnReports/f.rpt", "kolumn\n");
  session.CurrentLevel = 2;
  o.office.Run(
      "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('AMY','ReportsMnu',1),"
      "('AMY','MasterRptMnu',2),('AMY','TranRptMnu',3),('AMY','AnaRptMnu',4)");
  const std::string screen = "ReportFrm LoanMastList";
  const struct {
    bool rights;
    bool chinese;
    std::vector<std::string> done;  // for a.rpt to f.rpt; "" for a refusal
  } cases[] = {{false, false, {"", "", "", "", "e.rpt", ""}},
               {true, false, {screen + ".rpt A", screen + ".rpt A", "c.rpt", "", "e.rpt", ""}},
               {true, true, {screen + "C.rpt 甲", screen + "C.rpt 甲", "c.rpt", "", "e.rpt", ""}}};
  for (const auto& c : cases) {
    if (c.rights && !c.chinese) {
      o.office.Run(
          "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('AMY','LoanRptMnu',5),"
          "('AMY','BankCodeRptMnu',6)");
    }
    session.ChineseFlag = c.chinese;
    o.Start();
    const auto own = MakeScreen("OwnReportsFrm", session, o.desk);
    own->Load();
    auto& grid = dynamic_cast<Grid&>(*own->Find("DG"));
    ASSERT_EQ(grid.RowCount(), 6);
    for (int row = 0; row < 6; ++row) {
      std::string done;
      const auto before = o.desk.messages.size();
      o.desk.printed.clear();
      o.desk.on_show = [&] {
        if (!done.empty()) return;  // the print of the criteria
        if (!o.desk.printed.empty()) {
          EXPECT_EQ(o.desk.printed.back().Companies, "'HQ'");
          done = std::filesystem::path(o.desk.printed.back().ReportFileName).filename();
          return;
        }
        done = o.desk.shown.back() + " " + session.ReportFile + " " + session.MsgTitle;
        // What that screen prints in the end is the office's own.
        const auto criteria = MakeScreen("ReportFrm", session, o.desk);
        criteria->Load();
        for (const char* box : {"DateFrom", "DateTo"}) {
          dynamic_cast<TextBox&>(*criteria->Find(box)).SetText("01-01-2024");
        }
        dynamic_cast<Button&>(*criteria->Find("InAll")).Click();
        dynamic_cast<Button&>(*criteria->Find("SaveCmd")).Click();
        ASSERT_EQ(o.desk.printed.size(), 1U);
        EXPECT_EQ(o.desk.printed[0].ReportFileName, session.AppPath + "/" + grid.Cell(row, 1));
        EXPECT_NE(o.desk.printed[0].SelectionFormula.find("{LoanMast.CompCode} = 'HQ'"),
                  std::string::npos);
      };
      grid.Open(row, 0);
      EXPECT_EQ(done, c.done[static_cast<std::size_t>(row)]) << row;
      EXPECT_EQ(o.desk.messages.size() - before, done.empty() ? 1U : 0U) << row;
    }
  }
}

TEST(ReportMenu, AnInstalledCopyOffersAll) {
  MenuOffice o(test::SourceDir() + "/reports");
  o.Start();
  for (const char* entry :
       {"AgreeRpt", "LoanRptMnu", "StatementofAccRptMnu", "PrintingMnu", "BuyGoldMnu",
        "SellGoldMnu", "BuyGoldRptMnu", "SellGoldRptMnu", "YearRpt", "NewLampiranMnu",
        "LampiranB1Mnu", "NPLLoanMnu", "SMSSentCompMnu", "SMSSentHPMnu", "SMSFunctionMnu",
        "SMSTemplateMnu", "EInvMenu", "EInvSubmit"}) {
    EXPECT_TRUE(o.Enabled(entry)) << entry;
  }
}

}  // namespace
}  // namespace kaunter
