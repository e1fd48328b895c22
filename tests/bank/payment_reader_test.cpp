// The payment reader at an office with two loans: what each line is told to do, what it does, and
// that no money is taken twice, whatever is read again and wherever the work is cut.
#include "bank/payment_reader_frm.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "collections/ledger_check.h"
#include "loans/rebuild.h"
#include "reports/run_report.h"
#include "screen/cancel_offer.h"
#include "tests/loans/loan_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

constexpr int kDate = 0, kLoanID = 1, kAmount = 4, kType = 5, kOutlook = 6, kRemarks = 7,
              kPayID = 8, kError = 9, kRef = 10;

// A bar whose Stop is pressed while line `last` is in work; never where it is 0.
struct StoppedBar : ProgressBar, CancelOffer {
  explicit StoppedBar(int last_line) : last(last_line) {}
  void SetRange(int) override {}
  void SetText(std::string_view) override {}
  void Step(int) override {}
  void SetPosition(int) override { ++seen; }
  void OfferCancel(std::string_view) override {}
  bool Cancelled() const override { return last > 0 && seen >= last; }
  int last;
  int seen = 0;
};

struct ReaderDesk : AgreeingDesk {
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<StoppedBar>(stop_at);
  }
  int stop_at = 0;
  std::string PickFile(std::string_view title, std::string_view, std::string_view) override {
    titles.emplace_back(title);
    return file;
  }
  std::string PickFolder(std::string_view, std::string_view) override { return folder; }
  std::string file, folder;
  std::vector<std::string> titles;
};

class PaymentReaderTest : public ::testing::Test, protected LoanOffice {
 protected:
  PaymentReaderTest() {
    MakeLoan("HQ0001-001", LoanScheme::kPersonal, "1200", "12");  // 12 instalments of 112.00
    MakeLoan("HQ0001-002", LoanScheme::kFlexi, "1200", "12");
    office.Run("UPDATE LoanMast SET PayOutAmt=1200,TotCollectorAmt=0,TotInt=0");
    std::filesystem::copy_file(test::SourceDir() + "/reports/BankLayouts.txt",
                               office.folder.File("BankLayouts.txt"));
    counter.folder = office.folder.path();
  }

  static std::string Line(const std::string& day, int sen, const std::string& reference) {
    std::string line(64, ' ');
    line.replace(10, 8, day);
    line.replace(31, 11, fmt::format("{:011}", sen));
    line[42] = 'C';
    return line + reference + "\r\n";
  }
  void File(const std::string& name, const std::string& bytes) {
    counter.file = office.folder.File(name);
    std::ofstream(counter.file, std::ios::binary) << bytes;
  }
  std::unique_ptr<PaymentReaderfrm> Open() {
    auto screen = std::make_unique<PaymentReaderfrm>(office.session, counter);
    screen->Load();
    screen->Bank.Pick("PBB");
    return screen;
  }
  std::unique_ptr<PaymentReaderfrm> Read(const std::string& name, const std::string& bytes) {
    File(name, bytes);
    auto screen = Open();
    screen->ReadCmd.Click();
    EXPECT_EQ(Last(), "Complete reading");
    return screen;
  }
  std::string Last() {
    return counter.messages.back().substr(counter.messages.back().find(": ") + 2);
  }
  void Process(PaymentReaderfrm& screen) {
    screen.Guard([&] { screen.SaveCmd.Click(); });
  }
  std::string Payments() {
    return Lines("SELECT PayID,PayAmt,InstalAmt,IntAmt FROM PaymentMast ORDER BY PayID");
  }
  std::string Records() {
    return Lines("SELECT RefNo,Remarks,PayID FROM PaymentReader ORDER BY RefNo");
  }
  std::string Faults() {
    std::string faults;
    for (const LedgerFault& fault :
         CheckCompany(main(), "HQ", [](const auto&) { return true; }).faults) {
      faults += fault.LoanID + " " + fault.what.english + "\n";
    }
    return faults;
  }
  // Of the line: ticked, what will happen, remarks.
  std::string Told(PaymentReaderfrm& screen, int row) {
    return fmt::format("{}{}|{}", screen.DG.Ticked(row) ? "x " : "", screen.DG.Cell(row, kOutlook),
                       screen.DG.Cell(row, kRemarks));
  }

  const std::string three = Line("20240131", 11200, "HQ0001-001") +
                            Line("20240131", 5000, "hq0001-001") +
                            Line("20240131", 3000, "HQ0001-002");
  ReaderDesk counter;
};

TEST_F(PaymentReaderTest, EachLineTellsWhatItWillDoAndDoesIt) {
  auto screen =
      Read("PBB.txt",
           Line("20240131", 11200, "HQ0001-001") + "\r\n" + Line("20240131", 15000, "HQ0001-001") +
               Line("20240131", 107300, "HQ0001-001") + Line("20240131", 107200, "HQ0001-001") +
               Line("20240131", 0, "HQ0001-001") + Line("20231231", 100, "HQ0001-001") +
               Line("20240131", 100, "HQ0001-009") + Line("20240131", 200000, "HQ0001-002"));
  EXPECT_EQ(counter.titles, std::vector<std::string>{"Select Bank Text File"});
  EXPECT_EQ(screen->DG.Row(0),
            (std::vector<std::string>{
                "31-01-2024", "HQ0001-001", "HQ0001", "Tan 'Ah' Kow", "112.00", "CASH",
                "In full. 12.00 interest, 100.00 of instalment 1", "", "", "", "PBB.txt-001"}));
  const char* const told[] = {
      "x In full. 12.00 interest, 100.00 of instalment 1|",
      "x Part. 24.00 interest, 126.00 of instalments 2 to 3; 74.00 of instalment 3 stays open|",
      "x Part. 108.00 interest, 965.00 of instalments 3 to 12; 9.00 of instalment 12 stays open|",
      "Payment amount cannot more than loan balance amount|",
      "There is no amount|",
      "Payment date cannot eariler than loan date|",
      "\"HQ0001-009\" is not a loan|",
      nullptr};
  for (int row = 0; told[row] != nullptr; ++row) EXPECT_EQ(Told(*screen, row), told[row]) << row;
  EXPECT_THAT(Told(*screen, 7), HasSubstr("Total payment cannot more than"));
  EXPECT_EQ(screen->DG.Cell(6, kRef), "PBB.txt-008");  // the blank line counts
  screen->CmdCheckAll.Click();
  EXPECT_THAT(screen->TotalLBL.Text(), HasSubstr("8 lines, 3 to take, 1,335.00"));
  for (int row = 0; row < 8; ++row) screen->DG.Tick(row, true);
  Process(*screen);
  EXPECT_EQ(Last(), "Process completed");
  EXPECT_EQ(Payments(),
            "HQ0001-001-001 112 112 0\nHQ0001-001-002 150 150 0\nHQ0001-001-003 1073 1073 0\n");
  const char* const errors[] = {"",
                                "",
                                "",
                                "Payment amount cannot more than loan balance amount",
                                "Payment amount required on loan ID HQ0001-001",
                                "Payment date cannot eariler than loan date",
                                "Loan record not found",
                                "Total payment cannot more than"};
  for (int row = 0; row < 8; ++row) {
    const bool done = *errors[row] == '\0';
    EXPECT_EQ(screen->DG.Cell(row, kRemarks), done ? "Payment Done" : screen->DG.Cell(row, kError));
    EXPECT_THAT(screen->DG.Cell(row, kError), HasSubstr(errors[row])) << row;
    EXPECT_EQ(screen->DG.Ticked(row), !done);
  }
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentReader WHERE ErrMsg<>''"), "5");
  EXPECT_EQ(
      Lines("SELECT CollectInfoID,SalesmanID,PaymentStatus,DeletePayID,Settlement,SchID,"
            "PayableAmt,LastDueDate,NextDueDate FROM PaymentMast WHERE PayID='HQ0001-001-003'"),
      "CASH NIL ACTIVE  0 3 74 2024-03-31 2024-04-30\n");
  EXPECT_EQ(Faults(), "");
}

TEST_F(PaymentReaderTest, TheLoanOfAnotherCompanyIsNone) {
  office.session.CurrentLevel = 3;
  office.Run("UPDATE LoanMast SET CompCode='KL' WHERE LoanID='HQ0001-002'");
  auto screen = Read("A.txt", three);
  EXPECT_EQ(Told(*screen, 2), "\"HQ0001-002\" is not a loan|");
  EXPECT_EQ(screen->DG.Cell(2, 3), "");
  screen->DG.Tick(2, true);
  Process(*screen);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast WHERE LoanID='HQ0001-002'"), "0");
  Put(screen->TrxDate, "31-01-2024");
  for (Button* list : {&screen->DueCmd, &screen->ListCmd}) {
    list->Click();
    EXPECT_EQ(Column(screen->DG, kLoanID).find("HQ0001-002"), std::string::npos);
  }
}

TEST_F(PaymentReaderTest, NothingIsTakenASecondTime) {
  auto screen = Read("A.txt", three);
  Process(*screen);
  const std::string paid = Payments();
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "3");
  // The same file: done, and no hand ticks it.
  screen = Read("a.TXT", three);
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(Told(*screen, row), "Already done|Payment Done");
    screen->DG.Tick(row, true);
    EXPECT_FALSE(screen->DG.Ticked(row));
  }
  Process(*screen);
  EXPECT_THAT(Last(), HasSubstr("Please tick"));
  // Under another name: warned of, and taken only by hand and by a second word.
  screen = Read("B.txt", three);
  EXPECT_THAT(Told(*screen, 0), HasSubstr("The same line was taken as A.txt-001. "));
  screen->CmdCheckAll.Click();
  EXPECT_THAT(screen->TotalLBL.Text(), HasSubstr("0 to take"));
  screen->DG.Tick(1, true);
  counter.refused = "1 of the ticked lines look as if they had been taken already. Take them too ?";
  Process(*screen);
  EXPECT_EQ(Payments(), paid);
  counter.refused.clear();
  screen->DG.Tick(1, true);
  Process(*screen);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "4");
  // Another file under the first one's name.
  screen = Read("A.txt", Line("20240131", 700, "HQ0001-001"));
  EXPECT_THAT(Told(*screen, 0), HasSubstr("Rename this file"));
  screen->DG.Tick(0, true);
  Process(*screen);
  EXPECT_THAT(screen->DG.Cell(0, kError), HasSubstr("Rename this file"));
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "4");
  EXPECT_EQ(Scalar("SELECT Remarks FROM PaymentReader WHERE RefNo='A.txt-001'"), "Payment Done");
  // Taken at the counter.
  Pay("HQ0001-001-050", "HQ0001-001", "2024-01-31", "7");
  screen = Read("C.txt", Line("20240131", 700, "HQ0001-001"));
  EXPECT_THAT(Told(*screen, 0), HasSubstr("Payment HQ0001-001-050 has the same day and amount. "));
  EXPECT_FALSE(screen->DG.Ticked(0));
  // Its payment was deleted: the person decides.
  office.Run("DELETE FROM PaymentMast WHERE PayID='HQ0001-001-002'");
  screen = Read("A.txt", three);
  EXPECT_THAT(Told(*screen, 1), HasSubstr("Its payment HQ0001-001-002 was deleted: tick it"));
  screen->DG.Tick(1, true);
  Process(*screen);
  EXPECT_EQ(screen->DG.Cell(1, kRemarks), "Payment Done");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "5");
}

TEST_F(PaymentReaderTest, AnotherDesktopIsNoticedWhereTheMoneyIsStored) {
  auto slow = Read("A.txt", three);
  auto renamed = Read("B.txt", three);
  auto quick = Read("A.txt", three);
  Process(*quick);
  const std::string paid = Payments();
  Process(*slow);
  EXPECT_EQ(Payments(), paid);
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(slow->DG.Cell(row, kRemarks), "Payment Done");
    EXPECT_EQ(slow->DG.Cell(row, kPayID), quick->DG.Cell(row, kPayID));
  }
  Process(*renamed);
  EXPECT_EQ(Payments(), paid);
  EXPECT_THAT(renamed->DG.Cell(0, kError),
              HasSubstr("Since it was listed: The same line was taken as A.txt-001"));
}

TEST_F(PaymentReaderTest, WhatTheCounterTookSinceTheListIsNotTakenAgain) {
  auto of_file = Read("A.txt", Line("20240131", 11200, "HQ0001-001"));
  auto of_plan = Open();
  Put(of_plan->TrxDate, "31-01-2024");
  of_plan->ListCmd.Click();
  EXPECT_TRUE(of_file->DG.Ticked(0) && of_plan->DG.Ticked(0));
  Pay("HQ0001-001-050", "HQ0001-001", "2024-01-31", "112");
  RebuildLoan(main(), "HQ0001-001");
  Process(*of_file);
  EXPECT_EQ(
      of_file->DG.Cell(0, kError),
      "Since it was listed: Payment HQ0001-001-050 has the same day and amount. Read the list "
      "again to decide on it");
  Process(*of_plan);
  EXPECT_THAT(of_plan->DG.Cell(0, kError),
              HasSubstr("Since it was listed: Of instalment 1 only 0.00"));
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast WHERE LoanID='HQ0001-001'"), "1");
  // Two lines of a file are two payments, however alike.
  office.Run("DELETE FROM PaymentMast");
  RebuildLoan(main(), "HQ0001-001");
  Process(*of_file);
  EXPECT_EQ(Payments(), "HQ0001-001-001 112 112 0\n");
  of_file = Read("A.txt", Line("20240131", 11200, "HQ0001-001") + "\r\n" +
                              Line("20240131", 11200, "HQ0001-001").insert(60, "2"));
  EXPECT_TRUE(of_file->DG.Ticked(1)) << Told(*of_file, 1);
}

TEST_F(PaymentReaderTest, ALineThatStandsTwiceInItsFileIsTakenTwiceOnlyByHand) {
  auto screen =
      Read("A.txt", Line("20240131", 100, "HQ0001-001") + Line("20240131", 100, "HQ0001-001"));
  EXPECT_THAT(Told(*screen, 1), HasSubstr("The same line stands in this file as A.txt-001. "));
  EXPECT_FALSE(screen->DG.Ticked(1));
  screen->DG.Tick(1, true);
  Process(*screen);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "2");
}

TEST_F(PaymentReaderTest, StopEndsBetweenTwoLinesAndTheRestStaysTicked) {
  auto screen = Read("A.txt", three);
  counter.stop_at = 2;
  Process(*screen);
  EXPECT_EQ(Last(), "Stopped after 2 of 3 payments");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "2");
  EXPECT_TRUE(screen->DG.Ticked(2));
  screen->ReadCmd.Click();
  EXPECT_EQ(Last(), "Stopped, nothing was read");
  EXPECT_EQ(screen->DG.RowCount(), 0);
}

// The processing fails at each of its statements in turn, once or from there on; another reading
// and another press then leave each line paid once, and no loan behind.
TEST_F(PaymentReaderTest, AFailureAtAnyStatementTakesNothingTwice) {
  const auto read = [&](ReaderSource source) {
    if (source == ReaderSource::file) return Read("A.txt", three);
    auto screen = Open();
    Put(screen->TrxDate, "31-01-2024");
    (source == ReaderSource::due ? screen->DueCmd : screen->ListCmd).Click();
    return screen;
  };
  const std::string january = "HQ0001-001 112\nHQ0001-002 106.62\n";
  for (const ReaderSource source : {ReaderSource::file, ReaderSource::planned, ReaderSource::due}) {
    bool reached = true;
    for (int at = 1; reached; ++at) {
      SCOPED_TRACE(testing::Message() << "source " << static_cast<int>(source) << " at " << at);
      const bool stays = at % 2 == 0;
      office.Run(
          "DELETE FROM PaymentMast;DELETE FROM PaymentReader;UPDATE PaymentList SET PayID=''");
      RebuildLoan(main(), "HQ0001-001");
      RebuildLoan(main(), "HQ0001-002");
      RebuildCustomer(main(), "HQ0001");
      auto screen = read(source);
      int count = 0;
      main().SetFaultHook([&](std::string_view statement) {
        if (statement.starts_with("ROLLBACK")) return;
        ++count;
        if (count == at || (stays && count > at)) throw SqlError(1105, "the disk is full");
      });
      Process(*screen);
      main().SetFaultHook({});
      reached = count >= at;
      ASSERT_FALSE(main().InTransaction());
      screen = read(source);
      Process(*screen);
      ASSERT_EQ(Lines("SELECT LoanID,PayAmt FROM PaymentMast ORDER BY LoanID,PayAmt DESC"),
                source == ReaderSource::file ? "HQ0001-001 112\nHQ0001-001 50\nHQ0001-002 30\n"
                                             : january);
      if (source == ReaderSource::file) {
        ASSERT_EQ(Scalar("SELECT COUNT(*) FROM PaymentReader WHERE Remarks='Payment Done'"), "3");
        ASSERT_EQ(Faults(), "");
      }
    }
  }
}

TEST_F(PaymentReaderTest, ASundayOrAHolidayFailsOrGivesWay) {
  const std::string lines = Line("20240128", 1000, "HQ0001-001") +  // a Sunday
                            Line("20240129", 1100, "HQ0001-001") +  // a holiday behind it
                            Line("20240130", 1200, "HQ0001-001");
  office.Run("INSERT INTO HolidayMast (HolidayDate,HolidayName) VALUES ('2024-01-29','Day off')");
  const auto days = [&] {
    office.Run("DELETE FROM PaymentMast;DELETE FROM PaymentReader");
    RebuildLoan(main(), "HQ0001-001");
    auto screen = Read("A.txt", lines);
    for (int row = 0; row < 3; ++row) screen->DG.Tick(row, true);
    const std::string outlook = Told(*screen, 0);
    Process(*screen);
    return Column(screen->DG, kError) + "/" + outlook + "/" +
           Lines("SELECT PayDate FROM PaymentMast ORDER BY PayID");
  };
  EXPECT_THAT(days(), HasSubstr("2024-01-28\n2024-01-29\n2024-01-30\n"));
  office.session.settings.CheckHoliday = true;
  const std::string failed = days();
  EXPECT_THAT(failed, HasSubstr("Payment date 28-01-2024 is Sunday or Public Holiday on loan ID "
                                "HQ0001-001 Payment date 29-01-2024 is Sunday"));
  EXPECT_THAT(failed, ::testing::EndsWith("/2024-01-30\n"));
  office.session.settings.AutoChangePayDate = true;
  const std::string moved = days();
  EXPECT_THAT(moved, HasSubstr("x On 30-01-2024. "));
  EXPECT_THAT(moved, ::testing::EndsWith("/2024-01-30\n2024-01-30\n2024-01-30\n"));
}

TEST_F(PaymentReaderTest, PlannedPaymentsAreMarkedAndThoseOfPaidRowsLeftOut) {
  auto screen = Open();
  screen->TrxDate.SetText("");
  screen->ListCmd.Click();
  EXPECT_EQ(Last(), "Date is required");
  const auto list = [&](const char* day) {
    Put(screen->TrxDate, day);
    screen->ListCmd.Click();
    EXPECT_EQ(Last(), "Complete reading");
    return Column(screen->DG, kRef) + Column(screen->DG, kDate);
  };
  EXPECT_EQ(counter.questions.size(), 0u);
  const std::string february = "Plan-HQ0001-001-002 Plan-HQ0001-002-002 29-02-2024 29-02-2024 ";
  EXPECT_EQ(list("29-02-2024"), february);
  EXPECT_EQ(counter.questions.back().substr(counter.questions.back().find("Confirm")),
            "Confirm to read from payment record ?");
  Process(*screen);
  EXPECT_EQ(Lines("SELECT LoanID,SeqNo,PayID,UserID FROM PaymentList WHERE PayID<>'' ORDER BY 1"),
            "HQ0001-001 2 HQ0001-001-001 AMY\nHQ0001-002 2 HQ0001-002-001 AMY\n");
  EXPECT_EQ(list("29-02-2024"), "");
  // What comes over the counter pays the first open rows; a plan knows nothing of it.
  Pay("HQ0001-001-050", "HQ0001-001", "2024-01-06", "150");
  RebuildLoan(main(), "HQ0001-001");
  office.session.settings.PayToDate = true;
  list("31-03-2024");
  EXPECT_EQ(Column(screen->DG, kRef), "Plan-HQ0001-001-003 Plan-HQ0001-002-003 ");
  EXPECT_THAT(Told(*screen, 0), HasSubstr("Of instalment 3 only 74.00 is open. "));
  EXPECT_TRUE(screen->DG.Ticked(1));
  EXPECT_FALSE(screen->DG.Ticked(0));
}

TEST_F(PaymentReaderTest, DueInstalmentsArePaidOnceThoughListedTwice) {
  office.session.settings.CheckHoliday = false;
  auto first = Open();
  auto second = Open();
  for (auto* screen : {first.get(), second.get()}) {
    Put(screen->TrxDate, "29-02-2024");
    screen->DueCmd.Click();
    EXPECT_EQ(Last(), "Complete reading");
    ASSERT_EQ(screen->DG.RowCount(), 4);
    EXPECT_THAT(Told(*screen, 0), HasSubstr("x Due 31-01-2024. In full. "));
    EXPECT_EQ(screen->DG.Cell(0, kDate), "29-02-2024");
  }
  Process(*first);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "4");
  Process(*second);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "4");
  EXPECT_EQ(second->DG.Cell(0, kError), "Instalment 1 was paid meanwhile");
  EXPECT_EQ(Faults(), "");
}

TEST_F(PaymentReaderTest, FailedLinesAreAFileThatCanBeReadAgain) {
  auto screen =
      Read("A.txt", Line("20240131", 11200, "HQ0001-001") + "a line of something\r\n" +
                        Line("20240231", 100, "HQ0001-001") + Line("20240131", 3300, "HQ0001-O2"));
  EXPECT_THAT(screen->TotalLBL.Text(), HasSubstr("1 other lines passed by"));
  Process(*screen);
  screen->FailedCmd.Click();
  const std::string name = "A-failed-310124-140509.txt";
  EXPECT_EQ(Last(), "2 lines at " + office.folder.File(name));
  std::ostringstream bytes;
  bytes << std::ifstream(office.folder.File(name), std::ios::binary).rdbuf();
  EXPECT_EQ(bytes.str(), Line("20240231", 100, "HQ0001-001") + Line("20240131", 3300, "HQ0001-O2"));
  screen = Read(name, bytes.str());
  // The clerk puts right what the customer mistyped.
  EXPECT_TRUE(screen->DG.Edit(1, kLoanID, "HQ0001-003"));
  EXPECT_THAT(Last(), HasSubstr("not found"));
  EXPECT_EQ(screen->DG.Cell(1, kLoanID), "HQ0001-O2");
  EXPECT_TRUE(screen->DG.Edit(1, kLoanID, "hq0001-002"));
  EXPECT_EQ(screen->DG.Cell(1, kLoanID), "HQ0001-002");
  EXPECT_TRUE(screen->DG.Edit(0, kLoanID, "HQ0001-002"));
  EXPECT_THAT(Last(), HasSubstr("cannot be changed"));
  Process(*screen);
  EXPECT_EQ(Payments(), "HQ0001-001-001 112 112 0\nHQ0001-002-001 33 33 0\n");
  // Read again it tells which loan was meant, and whether that one is behind.
  office.Run("UPDATE LoanMast SET TotPay=0 WHERE LoanID='HQ0001-002'");
  screen = Read(name, bytes.str());
  EXPECT_EQ(screen->DG.Cell(1, kLoanID), "HQ0001-002");
  EXPECT_THAT(Told(*screen, 1), HasSubstr("Already done, its balance is behind"));
  Process(*screen);
  EXPECT_EQ(Faults(), "");
  // In the first file the line is known by what stands in it.
  screen = Read("A.txt", Line("20240131", 11200, "HQ0001-001") + "\r\n\r\n" +
                             Line("20240131", 3300, "HQ0001-O2"));
  EXPECT_TRUE(screen->DG.Edit(1, kLoanID, "HQ0001-002"));
  EXPECT_THAT(Told(*screen, 1), HasSubstr("The same line was taken as " + name + "-002"));
}

TEST_F(PaymentReaderTest, WhatCannotBeReadLeavesNothing) {
  auto screen = Open();
  screen->Bank.SetIndex(-1);
  screen->ReadCmd.Click();
  EXPECT_EQ(Last(), "Inport Text File Bank is require");
  screen->Bank.Pick("PBB");
  File("A.txt", "");
  screen->ReadCmd.Click();
  EXPECT_THAT(Last(), HasSubstr("an error occur during reading text file\n"));
  EXPECT_THAT(Last(), HasSubstr("is empty"));
  std::string many;
  for (int i = 0; i <= 20000; ++i) many += Line("20240131", 100, "X");
  File("A.txt", many);
  screen->ReadCmd.Click();
  EXPECT_THAT(Last(), HasSubstr("There are more than 20000 lines: split the file"));
  EXPECT_EQ(screen->DG.RowCount(), 0);
  std::ofstream(office.folder.File("BankLayouts.txt")) << "layout \"A\"\nfixxed";
  Open();
  EXPECT_THAT(Last(), HasSubstr("BankLayouts.txt, line 2: \"fixxed\" is not known"));
  std::filesystem::remove(office.folder.File("BankLayouts.txt"));
  Open()->ReadCmd.Click();
  EXPECT_THAT(Last(), HasSubstr("is the file BankLayouts.txt beside the program?"));
}

TEST_F(PaymentReaderTest, ThePaperHasEveryLineWithItsFate) {
  auto screen =
      Read("A.txt", three + Line("20240131", 100, "NONE") + Line("20240131", 200, "HQ0001-001"));
  screen->DG.Tick(4, false);
  Process(*screen);
  screen->CmdPrint.Click();
  ASSERT_EQ(counter.printed.size(), 1u);
  EXPECT_EQ(counter.printed[0].ReportTitle, "A.txt (PBB)");
  for (const bool chinese : {false, true}) {
    ReportJob job = counter.printed[0];
    job.ReportFileName = test::SourceDir() + "/reports/" + "PaymentReader.rpt";
    job.Chinese = chinese;
    std::string paper;
    const Recordset rows = RunWholeReport(job).rows;
    for (const auto& row : rows.rows()) paper += row.back().ToText() + " " + row[4].ToText() + "\n";
    EXPECT_EQ(paper, chinese ? "已收取 112\n已收取 50\n已收取 30\n失败 1\n没有收取 2\n"
                             : "Taken 112\nTaken 50\nTaken 30\nFailed 1\nNot taken 2\n");
  }
}

}  // namespace
}  // namespace kaunter
